#include "backend.h"

#include "errornumber.h"
#include "messagetext.h"
#include "request.h"

#include <tessaly/error.h>

#include <limits>

namespace dataservice {

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

qint64 Backend::fetchLimit(const Request &request) const
{
    // One past the cap shows a cut; a cap at the largest number has nothing past it.
    const qint64 cap = m_dataSource.rowCap;
    const qint64 pastCap = cap < std::numeric_limits<qint64>::max() ? cap + 1 : cap;
    return request.rowCount ? std::min(*request.rowCount, pastCap) : pastCap;
}

QString Backend::buildStatement(const Request &request, SqlClause::Dialect dialect)
{
    // Tables are looked up and quoted, so the table list cannot carry anything but names.
    const QList<StructureItem> known = tables(request.catalog);
    QStringList from;
    for (const QString &piece : request.table.split(u',')) {
        const QString wanted = piece.trimmed();
        const Qt::CaseSensitivity cs = dialect == SqlClause::Dialect::SQLite ? Qt::CaseInsensitive : Qt::CaseSensitive;
        const auto found = std::find_if(known.begin(), known.end(), [&](const StructureItem &item) {
            return item.name.compare(wanted, cs) == 0;
        });
        if (found == known.end())
            unknownTable(request.catalog, wanted);
        from.append(quoteIdentifier(request.catalog) + u'.' + quoteIdentifier(found->name));
    }

    struct Clause { const char *name; const QString &text; const char *prefix; const char *suffix; };
    const Clause clauses[] = {
        {"field list", request.fields, "SELECT ", ""},
        {"condition", request.condition, "\nWHERE (", ")"},
        {"group list", request.group, "\nGROUP BY ", ""},
        {"order list", request.order, "\nORDER BY ", ""},
    };
    QString sql;
    for (const Clause &clause : clauses) {
        if (clause.text.trimmed().isEmpty())
            continue;
        const SqlClause checked(QLatin1String(clause.name), clause.text, dialect);
        checked.check();
        sql += QLatin1String(clause.prefix) + clause.text + QLatin1String(clause.suffix);
        if (&clause == &clauses[0])
            sql += QStringLiteral("\nFROM ") + from.join(QStringLiteral(", "));
    }
    sql += QStringLiteral("\nLIMIT ") + QString::number(fetchLimit(request));
    return sql;
}

} // namespace dataservice
