#include "veldra/component/requestbuilder.h"

#include "tessaly/namemap.h"
#include "veldra/component/parameterreference.h"
#include "veldra/records/sqlinfo.h"

namespace veldra {

namespace {

// An item after the first is preceded by ","; so an empty first item adds nothing, a later one a lone ",".
void join(QString &text, const QString &item)
{
    if (text.isEmpty()) {
        text = item;
    } else {
        text += u',';
        text += item;
    }
}

QString wrap(QStringView open, const QString &value, QStringView close)
{
    if (value.isEmpty())
        return {};
    QString result;
    result.reserve(open.size() + value.size() + close.size());
    result += open;
    result += value;
    result += close;
    return result;
}

QStringView trimBlanks(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == u' ')
        ++begin;
    while (end > begin && text.at(end - 1) == u' ')
        --end;
    return text.mid(begin, end - begin);
}

QString direction(bool ascending)
{
    return ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC");
}

} // namespace

QString RequestBuilder::escape(const QString &text)
{
    const QChar *data = text.constData();
    const qsizetype size = text.size();
    auto isSpecial = [](QChar c) { return c == u'<' || c == u'>' || c == u'&'; };
    qsizetype next = 0;
    while (next < size && !isSpecial(data[next]))
        ++next;
    if (next == size)
        return text;
    QString out;
    out.reserve(size + size / 8 + 8);
    qsizetype runStart = 0;
    for (; next < size; ++next) {
        const QChar c = data[next];
        if (!isSpecial(c))
            continue;
        out.append(data + runStart, next - runStart);
        out += c == u'<' ? QStringView(u"&lt;") : c == u'>' ? QStringView(u"&gt;") : QStringView(u"&amp;");
        runStart = next + 1;
    }
    out.append(data + runStart, size - runStart);
    return out;
}

template<typename Visit>
void RequestBuilder::forEachSelectedName(Visit visit) const
{
    if (m_in.selection.isEmpty())
        return;
    const QStringView selection(m_in.selection);
    qsizetype start = 0;
    for (;;) {
        const qsizetype comma = selection.indexOf(u',', start);
        visit(trimBlanks(selection.mid(start, (comma < 0 ? selection.size() : comma) - start)));
        if (comma < 0)
            return;
        start = comma + 1;
    }
}

QString RequestBuilder::contentBlock() const
{
    QString fields;
    fields.reserve(m_in.selection.size() * 3);
    forEachSelectedName([&](QStringView name) {
        const auto column = m_in.query->getColumnInfoFromDispName(name);
        if (!column)
            return;
        if (!fields.isEmpty())
            fields += u',';
        column->appendSelectionName(fields);
        // An empty alias differs too: the item then ends in a blank, which the service accepts.
        if (!column->hasSelectionName(column->alias())) {
            fields += u' ';
            fields += column->alias();
        }
    });
    return wrap(u"<content>record<field>", escape(fields), u"</field></content>");
}

QString RequestBuilder::tableNames() const
{
    QString names;
    const auto &tables = m_in.query->tables();
    if (!tables)
        return names;
    for (int i = 0; i < tables->count(); ++i)
        join(names, tables->key(i));
    return names;
}

QString RequestBuilder::targetBlock() const
{
    const auto &database = m_in.query->dbInfo();
    if (!database || database->provider().isEmpty() || database->dsn().isEmpty() || database->catalog().isEmpty())
        return {};
    const QString tables = tableNames();
    if (tables.isEmpty())
        return {};
    QString target;
    target.reserve(96 + database->provider().size() + database->dsn().size() + database->catalog().size() + tables.size());
    target += QStringView(u"<target><provider>");
    target += escape(database->provider());
    target += QStringView(u"</provider><dsn>");
    target += escape(database->dsn());
    target += QStringView(u"</dsn><catalog>");
    target += escape(database->catalog());
    target += QStringView(u"</catalog><table>");
    target += escape(tables);
    target += QStringView(u"</table></target>");
    return target;
}

QString RequestBuilder::conditionBlock() const
{
    const QString &condition = m_in.query->condition();
    if (condition.isEmpty())
        return {};
    QString out;
    out.reserve(condition.size());
    QVariant value;
    const QStringView rest = parameterreference::scan(condition, [&](QStringView before, QStringView reference) {
        out += before;
        // An unknown reference vanishes; a value goes in exactly as stored, quotes and all.
        if (m_in.parameters && m_in.parameters->lookup(reference.toString(), &value))
            out += value.toString();
    });
    out += rest;
    return wrap(u"<condition>", escape(out), u"</condition>");
}

QString RequestBuilder::groupBlock() const
{
    if (!m_in.query->useGroupBy())
        return {};
    QString list;
    const auto groupBy = m_in.query->groupBy();
    if (groupBy && groupBy->count() > 0) {
        for (const QString &item : *groupBy)
            join(list, item);
    } else {
        forEachSelectedName([&](QStringView name) {
            const auto column = m_in.query->getColumnInfoFromDispName(name);
            if (column && column->columnType() == ColumnInfo::TableColumn)
                join(list, column->GetSelectionName());
        });
    }
    return wrap(u"<group>", escape(list), u"</group>");
}

QString RequestBuilder::orderBlock() const
{
    if (!m_in.query->useOrderBy())
        return {};
    QString list;
    if (!m_in.query->orderByAsParam()) {
        if (const auto orderBy = m_in.query->orderBy()) {
            for (const auto &order : *orderBy) {
                if (order)
                    join(list, order->column() + direction(order->ascendant()));
            }
        }
    } else if (!m_in.orderBy.isEmpty()) {
        list = m_in.orderBy + direction(m_in.orderByAscendant);
    }
    return wrap(u"<order>", escape(list), u"</order>");
}

QString RequestBuilder::rowCountBlock() const
{
    if (m_in.query->topN() <= 0)
        return {};
    const qint32 count = m_in.query->topNAsParam() ? m_in.topN : m_in.query->topN();
    return QStringLiteral("<rowcount>") + QString::number(count) + QStringLiteral("</rowcount>");
}

std::optional<QString> RequestBuilder::build() const
{
    if (!m_in.query)
        return std::nullopt;
    const QString content = contentBlock();
    if (content.isEmpty())
        return std::nullopt;
    const QString target = targetBlock();
    if (target.isEmpty())
        return std::nullopt;
    const QString blocks[] = { content, target, conditionBlock(), groupBlock(), orderBlock(), rowCountBlock() };
    qsizetype size = 32;
    for (const QString &block : blocks)
        size += block.size();
    QString request;
    request.reserve(size);
    request += QStringView(u"<query><get>");
    for (const QString &block : blocks)
        request += block;
    request += QStringView(u"</get></query>");
    return request;
}

QString RequestBuilder::missingPiece() const
{
    if (!m_in.query)
        return QStringLiteral("no query definition");
    if (contentBlock().isEmpty())
        return m_in.selection.isEmpty()
                ? QStringLiteral("no fields: the \"selection\" slot is empty")
                : QStringLiteral("no fields: no name in the \"selection\" slot is a column or expression of the query");
    const auto database = m_in.query->dbInfo();
    if (!database || database->provider().isEmpty())
        return QStringLiteral("no provider");
    if (database->dsn().isEmpty())
        return QStringLiteral("no data source");
    if (database->catalog().isEmpty())
        return QStringLiteral("no catalog");
    if (tableNames().isEmpty())
        return QStringLiteral("no table");
    return {};
}

} // namespace veldra
