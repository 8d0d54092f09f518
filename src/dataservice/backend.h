#pragma once

#include "datasource.h"
#include "sqlclause.h"

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

// A connection to one data source for the length of one request.
class Backend
{
public:
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

protected:
    // The single SELECT for a record request, its clauses checked.
    QString buildStatement(const Request &request, SqlClause::Dialect dialect);
    // Rows to ask the engine for: the request's count, or one past the cap to see a cut.
    qint64 fetchLimit(const Request &request) const;

    void checkCatalog(const QString &catalog);
    [[noreturn]] void unknownTable(const QString &catalog, const QString &table) const;

    static QString quoteIdentifier(const QString &name);

    DataSource m_dataSource;
};

} // namespace dataservice
