#pragma once

#include "backend.h"

#include <QByteArrayList>
#include <QHash>

#include <chrono>
#include <memory>
#include <optional>

struct pg_conn;
struct pg_result;

namespace dataservice {

// PostgreSQL through libpq, not through a generic driver: the extended protocol runs exactly
// one command per call, and single-row mode streams the rows. A role that could do more
// than read is refused on connecting. Each statement is first parsed by the engine and what
// it uses checked (relations of the catalog only, built-in functions that only compute),
// then run alone in a read-only transaction, in a session made read-only with the data
// source's limits and the catalog's schema as search path. Everything one request does, checks
// and run together, answers within the data source's timeout (and a grace period for the
// answer to arrive).
class PostgresBackend : public Backend
{
public:
    explicit PostgresBackend(DataSource dataSource);
    ~PostgresBackend() override;

    QStringList catalogs() override;
    QList<StructureItem> tables(const QString &catalog) override;
    QList<StructureItem> columns(const QString &catalog, const QString &table) override;
    void select(const Request &request, RowSink &sink) override;
    bool reusable() const override;
    SqlDialect dialect() const override { return SqlDialect::PostgreSQL; }
    void startRequest() override;

private:
    using Result = std::unique_ptr<pg_result, void (*)(pg_result *)>;

    Result run(const QString &sql, const QByteArrayList &parameters = {});
    Result exec(const QString &sql, const QByteArrayList &parameters = {});
    void command(const QString &sql);
    int remainingMs() const;
    void limitTime();
    void limitSessionTime();
    void cancel();
    void checkRole();
    [[noreturn]] void refuseRole(const QString &role, const QString &reason) const;
    void setLimits(const QString &catalog, bool local = true);
    void startReadOnly(const QString &catalog);
    void checkStatement(const QString &sql, const QString &catalog);
    void refuseFor(const pg_result *checked) const;
    pg_result *receive();
    [[noreturn]] void abandon(qint32 number, const QString &message);
    void stream(const QString &sql, const FieldList &fields, qint64 limit, RowSink &sink);
    [[noreturn]] void failWith(pg_result *result, const QString &what) const;

    std::chrono::steady_clock::time_point m_deadline;
    pg_conn *m_conn = nullptr;
    // Statements (catalog and text) this connection checked lately, and when: a pooled
    // connection asked the same statement again skips the check for a minute.
    QHash<QString, std::chrono::steady_clock::time_point> m_checked;
    std::optional<QString> m_sessionCatalog; // the catalog the session's limits are set for
    int m_sessionTimeoutMs = 0;
    // The tables of each catalog as read, and when; asked again after a minute.
    QHash<QString, std::pair<std::chrono::steady_clock::time_point, QList<StructureItem>>> m_tables;
};

} // namespace dataservice
