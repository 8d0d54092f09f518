#pragma once

#include "backend.h"

#include <QHash>
#include <QList>
#include <QPair>
#include <QSet>

#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace dataservice {

class SqliteFunctions;

// SQLite through its C API: the file opened read-only, every user statement prepared under
// an authorizer that lets through reads of the request's catalog and a list of harmless
// functions only, a progress handler that stops it at the deadline, and a tail check so a
// second statement can never run.
class SqliteBackend : public Backend
{
public:
    explicit SqliteBackend(DataSource dataSource);
    ~SqliteBackend() override;

    QStringList catalogs() override;
    QList<StructureItem> tables(const QString &catalog) override;
    QList<StructureItem> columns(const QString &catalog, const QString &table) override;
    void select(const Request &request, RowSink &sink) override;
    // False once a file of the data source was replaced (another file at its path): a kept
    // connection would go on reading the old one.
    bool reusable() const override;
    SqlDialect dialect() const override { return SqlDialect::SQLite; }

    // State the authorizer and progress handler work on; public for the C callbacks.
    struct Guard;

private:
    void open();
    void attach(const QString &name, const QString &path);
    sqlite3_stmt *prepareOwn(const QString &sql);
    sqlite3_stmt *prepareGuarded(const QString &sql, Guard &guard);
    QSet<QByteArray> unqualifiedNamesIn(const QString &catalog);
    QSet<QByteArray> findUnqualifiedNamesIn(const QString &catalog);
    void stream(sqlite3_stmt *statement, Guard &guard, const FieldList &fields, qint64 limit, RowSink &sink);
    [[noreturn]] void fail(qint32 number, const QString &what) const;
    [[noreturn]] void failStatement(const Guard &guard, int code, const QString &timeout) const;

    // The files' identities (device and inode) when they were opened.
    QList<QPair<quint64, quint64>> fileIdentities() const;
    // Forgets the structure read before when another connection committed to a file since.
    void forgetChangedStructure();

    sqlite3 *m_db = nullptr;
    std::unique_ptr<SqliteFunctions> m_functions;
    QList<QPair<quint64, quint64>> m_files;
    // What a kept connection read of sqlite_master, per catalog, and the files' data versions
    // it was read at; a request on a kept connection need not read the structure again.
    QByteArray m_dataVersions;
    std::vector<sqlite3_stmt *> m_versionQueries; // PRAGMA data_version per file, kept prepared
    QHash<QString, QList<StructureItem>> m_tables;
    QHash<QString, QSet<QByteArray>> m_unqualifiedNames;
};

} // namespace dataservice
