#pragma once

#include "datasource.h"
#include "fieldlist.h"
#include "sqllexer.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace dataservice {

struct Request;
class RowSink;

// One entry of a structure listing: a table or view, or a column with its data type.
struct StructureItem
{
    QString name;
    QString type;
};

// A connection to one data source, serving one request at a time (a pool may keep it for the next).
class Backend
{
public:
    // Bytes of one statement's text, on every engine: SQLite's SQLITE_LIMIT_SQL_LENGTH, and
    // the same for PostgreSQL, whose server would parse and plan any size.
    static constexpr qsizetype StatementLimit = 1024 * 1024;

    explicit Backend(DataSource dataSource);
    virtual ~Backend();
    Backend(const Backend &) = delete;
    Backend &operator=(const Backend &) = delete;

    virtual QStringList catalogs() = 0;
    // Tables and views of a catalog; throws UnknownCatalog.
    virtual QList<StructureItem> tables(const QString &catalog) = 0;
    // Columns in the table's own order; throws UnknownCatalog, UnknownTable.
    virtual QList<StructureItem> columns(const QString &catalog, const QString &table) = 0;
    // Runs the record request as one read-only SELECT and hands the rows to the sink as they arrive.
    virtual void select(const Request &request, RowSink &sink) = 0;
    // Whether the connection may serve another request (a pool keeps it): open and idle.
    virtual bool reusable() const { return true; }
    // A kept connection takes another request: what bounds one request starts again.
    virtual void startRequest() {}
    virtual SqlDialect dialect() const = 0;

    // The SELECT this engine receives for the record request, built and checked as select()
    // builds it, without running it.
    virtual QString statement(const Request &request) { return buildStatement(request).sql; }

protected:
    struct Statement
    {
        QString sql;
        FieldList fields;
    };

    // The single SELECT for a record request, its clauses checked.
    Statement buildStatement(const Request &request);
    // Rows to ask the engine for: the request's count, or one past the cap to see a cut.
    qint64 fetchLimit(const Request &request) const;

    void checkCatalog(const QString &catalog);
    [[noreturn]] void unknownTable(const QString &catalog, const QString &table) const;

    static QString quoteIdentifier(const QString &name);

    DataSource m_dataSource;

private:
    QStringList tableNames(const Request &request);
    [[noreturn]] void refuseLength(qsizetype bytes) const;
};

} // namespace dataservice
