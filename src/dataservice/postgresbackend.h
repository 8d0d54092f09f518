#pragma once

#include "backend.h"

#include <QByteArrayList>

#include <memory>

struct pg_conn;
struct pg_result;

namespace dataservice {

// PostgreSQL through libpq, not through a generic driver: the extended protocol runs exactly
// one command per call, and single-row mode streams the rows. Each request runs in a
// READ ONLY transaction with a statement timeout and the catalog's schema as search path,
// and its plan is checked for relations outside that schema before it runs.
class PostgresBackend : public Backend
{
public:
    explicit PostgresBackend(DataSource dataSource);
    ~PostgresBackend() override;

    QStringList catalogs() override;
    QList<StructureItem> tables(const QString &catalog) override;
    QList<StructureItem> columns(const QString &catalog, const QString &table) override;
    void select(const Request &request, RowSink &sink) override;

private:
    using Result = std::unique_ptr<pg_result, void (*)(pg_result *)>;

    Result exec(const QString &sql, const QByteArrayList &parameters = {});
    void command(const QString &sql);
    void startReadOnly(const QString &catalog);
    void checkPlan(const QString &sql, const QString &catalog);
    void stream(const QString &sql, const QString &fields, qint64 limit, RowSink &sink);
    [[noreturn]] void failWith(pg_result *result, const QString &what) const;

    pg_conn *m_conn = nullptr;
};

} // namespace dataservice
