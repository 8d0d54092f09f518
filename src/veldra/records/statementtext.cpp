#include "veldra/records/statementtext.h"

#include "veldra/records/displaynameindex.h"
#include "veldra/records/sqlinfo.h"

namespace veldra {

namespace {

const QString lineEnd = QStringLiteral("\r\n");
const QString indent = QStringLiteral("    ");

class Lines
{
public:
    void line(const QString &text = QString()) { m_text += text + lineEnd; }
    void indented(const QString &text, bool more) { line(indent + text + (more ? QStringLiteral(",") : QString())); }
    QString text() const { return m_text; }

private:
    QString m_text;
};

void appendRowLimit(Lines &out, const SQLInfo &query)
{
    if (query.topN() <= 0)
        return;
    if (query.topNAsParam())
        out.line(QStringLiteral("TOP <parameter(%1)>").arg(query.topN()));
    else
        out.line(QStringLiteral("TOP %1").arg(query.topN()));
}

// A skipped item leaves the separator of the item before it in place.
void appendSelections(Lines &out, const DisplayNameIndex &items, const StringList &selections)
{
    for (int position = 1; position <= selections.count(); ++position) {
        const QString &selection = selections.item(position);
        const ColumnInfo *column = items.find(selection);
        if (!column)
            continue;
        QString text = selection;
        if (!column->alias().isEmpty())
            text += QStringLiteral(" AS ") + column->alias();
        out.indented(text, position < selections.count());
    }
}

void appendTables(Lines &out, const SQLInfo &query)
{
    out.line(QStringLiteral("FROM"));
    const auto tables = query.tables();
    const int count = tables ? tables->count() : 0;
    for (int i = 0; i < count; ++i)
        out.indented(tables->key(i), i < count - 1);
}

void appendGrouping(Lines &out, const SQLInfo &query, const DisplayNameIndex &items, const StringList &selections)
{
    out.line();
    out.line(QStringLiteral("GROUP BY"));
    const auto groupBy = query.groupBy();
    if (groupBy && groupBy->count() > 0) {
        for (int position = 1; position <= groupBy->count(); ++position)
            out.indented(groupBy->item(position), position < groupBy->count());
        return;
    }
    for (int position = 1; position <= selections.count(); ++position) {
        const ColumnInfo *column = items.find(selections.item(position));
        if (column && column->columnType() == ColumnInfo::TableColumn)
            out.indented(column->GetSelectionName(), position < selections.count());
    }
}

void appendOrdering(Lines &out, const SQLInfo &query)
{
    static const OrderList noOrders;
    const auto orderBy = query.orderBy();
    const auto first = (orderBy ? *orderBy : noOrders).item(1);
    out.line();
    out.line(QStringLiteral("ORDER BY"));
    if (query.orderByAsParam())
        out.line(indent + QStringLiteral("<parameter>"));
    else
        out.line(indent + first->column() + (first->ascendant() ? QStringLiteral(" ASC") : QStringLiteral(" DESC")));
}

} // namespace

QString statementText(const SQLInfo &query)
{
    static const StringList noSelections;
    const StringList &selections = query.selections() ? *query.selections() : noSelections;

    const DisplayNameIndex items(query, selections.count() * (query.useGroupBy() ? 2 : 1));
    Lines out;
    out.line(QStringLiteral("SELECT"));
    appendRowLimit(out, query);
    appendSelections(out, items, selections);
    out.line();
    appendTables(out, query);
    if (!query.condition().isEmpty()) {
        out.line();
        out.line(QStringLiteral("WHERE"));
        out.line(query.condition());
    }
    if (query.useGroupBy())
        appendGrouping(out, query, items, selections);
    if (query.useOrderBy())
        appendOrdering(out, query);
    return out.text();
}

} // namespace veldra
