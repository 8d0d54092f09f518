#include "backend.h"

#include "errornumber.h"
#include "messagetext.h"
#include "request.h"
#include "sqlclause.h"

#include <tessaly/error.h>

#include <QSet>

#include <limits>

namespace dataservice {

namespace {

QString asciiLower(const QString &text)
{
    QString lower = text;
    for (QChar &c : lower) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + 32);
    }
    return lower;
}

} // namespace

Backend::Backend(DataSource dataSource)
    : m_dataSource(std::move(dataSource))
{
}

Backend::~Backend() = default;

QString Backend::quoteIdentifier(const QString &name)
{
    QString quoted = name;
    quoted.replace(u'"', QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

void Backend::checkCatalog(const QString &catalog)
{
    const QStringList known = catalogs();
    if (!known.contains(catalog))
        throw tessaly::Error(ErrorNumber::UnknownCatalog,
                             QStringLiteral("Data source %1 has no catalog named \"%2\"; it has: %3.")
                                 .arg(m_dataSource.name, MessageText::excerpt(catalog), known.join(QStringLiteral(", "))));
}

void Backend::unknownTable(const QString &catalog, const QString &table) const
{
    throw tessaly::Error(ErrorNumber::UnknownTable,
                         QStringLiteral("Catalog %1 of data source %2 has no table or view named \"%3\".")
                             .arg(catalog, m_dataSource.name, MessageText::excerpt(table)));
}

void Backend::refuseLength(qsizetype bytes) const
{
    throw tessaly::Error(ErrorNumber::StatementRefused,
                         QStringLiteral("The statement is refused: it would be %1 bytes long, more than the %2 bytes "
                                        "(1 MB) a statement of data source %3 may have.")
                             .arg(bytes).arg(StatementLimit).arg(m_dataSource.name));
}

qint64 Backend::fetchLimit(const Request &request) const
{
    // One past the cap shows a cut; a cap at the largest number has nothing past it.
    const qint64 cap = m_dataSource.rowCap;
    const qint64 pastCap = cap < std::numeric_limits<qint64>::max() ? cap + 1 : cap;
    return request.rowCount ? std::min(*request.rowCount, pastCap) : pastCap;
}

// The request's tables as the catalog names them; tables are looked up and quoted, so the
// table list cannot carry anything but names.
QStringList Backend::tableNames(const Request &request)
{
    const QList<StructureItem> known = tables(request.catalog);
    const Qt::CaseSensitivity cs = dialect() == SqlDialect::SQLite ? Qt::CaseInsensitive : Qt::CaseSensitive;
    QStringList names;
    for (const QString &piece : request.table.split(u',')) {
        const QString wanted = piece.trimmed();
        const auto found = std::find_if(known.begin(), known.end(), [&](const StructureItem &item) {
            return item.name.compare(wanted, cs) == 0;
        });
        if (found == known.end())
            unknownTable(request.catalog, wanted);
        names.append(found->name);
    }
    return names;
}

Backend::Statement Backend::buildStatement(const Request &request)
{
    // Each UTF-16 unit is at least one byte of UTF-8: a request this long can never fit.
    const qsizetype units = request.fields.size() + request.condition.size() + request.group.size()
                            + request.order.size();
    if (units > StatementLimit)
        refuseLength(units);
    const SqlDialect dialect = this->dialect();
    const QStringList tables = tableNames(request);
    QStringList from;
    for (const QString &table : tables)
        from.append(quoteIdentifier(request.catalog) + u'.' + quoteIdentifier(table));

    SqlClause(QStringLiteral("field list"), request.fields, dialect).check();
    Statement statement{QString(), FieldList(request.fields, dialect)};
    QString condition = request.condition;
    if (!condition.trimmed().isEmpty()) {
        // A real column of the same name is the engine's to resolve: the alias never hides it.
        bool loaded = false;
        QSet<QString> columnNames;
        condition = statement.fields.resolveAliases(condition, [&](const QString &name) {
            if (!loaded) {
                for (const QString &table : tables) {
                    for (const StructureItem &column : columns(request.catalog, table))
                        columnNames.insert(dialect == SqlDialect::SQLite ? asciiLower(column.name) : column.name);
                }
                loaded = true;
            }
            return columnNames.contains(asciiLower(name));
        });
    }

    struct Clause { const char *name; QString text; const char *prefix; const char *suffix; };
    const Clause clauses[] = {
        {"field list", statement.fields.statementText(), "SELECT ", ""},
        {"condition", condition, "\nWHERE (", ")"},
        {"group list", request.group, "\nGROUP BY ", ""},
        {"order list", request.order, "\nORDER BY ", ""},
    };
    QString &sql = statement.sql;
    for (const Clause &clause : clauses) {
        if (clause.text.trimmed().isEmpty())
            continue;
        SqlClause(QLatin1String(clause.name), clause.text, dialect).check();
        sql += QLatin1String(clause.prefix) + clause.text + QLatin1String(clause.suffix);
        if (&clause == &clauses[0])
            sql += QStringLiteral("\nFROM ") + from.join(QStringLiteral(", "));
    }
    sql += QStringLiteral("\nLIMIT ") + QString::number(fetchLimit(request));
    const qsizetype bytes = sql.toUtf8().size();
    if (bytes > StatementLimit)
        refuseLength(bytes);
    return statement;
}

} // namespace dataservice
