#include "veldra/component/requestbuilder.h"

#include "tessaly/namemap.h"
#include "veldra/component/parameterreference.h"
#include "veldra/component/textwriter.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"

namespace veldra {

namespace {

// Writes open, what fill writes, and close; or nothing at all when fill writes nothing.
template<typename Fill>
void appendElement(TextWriter &out, QStringView open, QStringView close, Fill fill)
{
    const qsizetype mark = out.size();
    out << open;
    const qsizetype valueStart = out.size();
    fill();
    if (out.size() == valueStart)
        out.truncate(mark);
    else
        out << close;
}

// Items of a list joined by ",": an item after the first is preceded by ",", so an empty first
// item adds nothing and a later one a lone ",".
class ListWriter
{
public:
    explicit ListWriter(TextWriter &out) : m_out(out), m_start(out.size()) { }
    TextWriter &next()
    {
        if (m_out.size() != m_start)
            m_out << u',';
        return m_out;
    }

private:
    TextWriter &m_out;
    qsizetype m_start;
};

QStringView trimBlanks(QStringView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == u' ')
        ++begin;
    while (end > begin && text.at(end - 1) == u' ')
        --end;
    return text.sliced(begin, end - begin);
}

QStringView direction(bool ascending)
{
    return ascending ? QStringView(u" ASC") : QStringView(u" DESC");
}

} // namespace

QString RequestBuilder::escape(const QString &text)
{
    if (TextWriter::findSpecial(QStringView(text).utf16(), 0, text.size()) == text.size())
        return text;
    TextWriter out;
    out.text(text);
    return out.toString();
}

QString RequestBuilder::block(Append append) const
{
    TextWriter out;
    (this->*append)(out);
    return out.toString();
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
        visit(trimBlanks(selection.sliced(start, (comma < 0 ? selection.size() : comma) - start)));
        if (comma < 0)
            return;
        start = comma + 1;
    }
}

const ColumnInfo *RequestBuilder::selectedItem(QStringView name) const
{
    if (!m_selected)
        m_selected.emplace(*m_in.query, QStringView(m_in.selection).count(u',') + 1);
    return m_selected->find(name);
}

void RequestBuilder::appendContent(TextWriter &out) const
{
    appendElement(out, u"<content>record<field>", u"</field></content>", [&] {
        ListWriter fields(out);
        forEachSelectedName([&](QStringView name) {
            const ColumnInfo *column = selectedItem(name);
            if (!column)
                return;
            appendSelectionName(fields.next(), *column);
            // An empty alias differs too: the item then ends in a blank, which the service accepts.
            if (!column->hasSelectionName(column->alias()))
                (out << u' ').text(column->alias());
        });
    });
}

void RequestBuilder::appendSelectionName(TextWriter &out, const ColumnInfo &column)
{
    if (column.columnType() == ColumnInfo::TableColumn)
        out.text(column.table()) << u'.';
    out.text(column.express());
}

void RequestBuilder::appendTarget(TextWriter &out) const
{
    const auto &database = m_in.query->dbInfo();
    if (!database || database->provider().isEmpty() || database->dsn().isEmpty()
        || database->catalog().isEmpty())
        return;
    const qsizetype mark = out.size();
    out << u"<target><provider>";
    out.text(database->provider()) << u"</provider><dsn>";
    out.text(database->dsn()) << u"</dsn><catalog>";
    out.text(database->catalog()) << u"</catalog><table>";
    const qsizetype tablesStart = out.size();
    out.text(m_in.query->getTableNames());
    if (out.size() == tablesStart)
        out.truncate(mark);
    else
        out << u"</table></target>";
}

void RequestBuilder::appendCondition(TextWriter &out) const
{
    const QString &condition = m_in.query->condition();
    out.reserve(out.size() + condition.size() + 32);
    // An unknown reference vanishes; a value goes in exactly as stored, quotes and all. The key
    // borrows the condition's characters: a lookup per reference, no copy.
    const auto substitute = [&](QStringView reference) {
        QVariant value;
        if (m_in.parameters
            && m_in.parameters->lookup(QString::fromRawData(reference.data(), reference.size()), &value))
            out.text(value.toString());
    };
    appendElement(out, u"<condition>", u"</condition>", [&] {
        const QStringView rest = parameterreference::scan(condition, [&](QStringView before, QStringView reference) {
            out.text(before);
            substitute(reference);
        });
        out.text(rest);
    });
}

void RequestBuilder::appendGroup(TextWriter &out) const
{
    if (!m_in.query->useGroupBy())
        return;
    appendElement(out, u"<group>", u"</group>", [&] {
        ListWriter list(out);
        const auto &groupBy = m_in.query->groupBy();
        if (groupBy && groupBy->count() > 0) {
            for (const QString &item : *groupBy)
                list.next().text(item);
            return;
        }
        forEachSelectedName([&](QStringView name) {
            const ColumnInfo *column = selectedItem(name);
            if (column && column->columnType() == ColumnInfo::TableColumn)
                appendSelectionName(list.next(), *column);
        });
    });
}

void RequestBuilder::appendOrder(TextWriter &out) const
{
    if (!m_in.query->useOrderBy())
        return;
    appendElement(out, u"<order>", u"</order>", [&] {
        if (m_in.query->orderByAsParam()) {
            if (!m_in.orderBy.isEmpty())
                out.text(m_in.orderBy) << direction(m_in.orderByAscendant);
            return;
        }
        ListWriter list(out);
        if (const auto &orderBy = m_in.query->orderBy()) {
            for (const auto &order : *orderBy) {
                if (order)
                    list.next().text(order->column()) << direction(order->ascendant());
            }
        }
    });
}

void RequestBuilder::appendRowCount(TextWriter &out) const
{
    if (m_in.query->topN() <= 0)
        return;
    const qint32 count = m_in.query->topNAsParam() ? m_in.topN : m_in.query->topN();
    out << u"<rowcount>" << QString::number(count) << u"</rowcount>";
}

std::optional<QString> RequestBuilder::build() const
{
    if (!m_in.query)
        return std::nullopt;
    TextWriter request;
    request << u"<query><get>";
    const qsizetype contentStart = request.size();
    appendContent(request);
    const qsizetype targetStart = request.size();
    appendTarget(request);
    if (targetStart == contentStart || request.size() == targetStart)
        return std::nullopt; // no fields, or no complete target
    appendCondition(request);
    appendGroup(request);
    appendOrder(request);
    appendRowCount(request);
    request << u"</get></query>";
    return request.toString();
}

QString RequestBuilder::missingPiece() const
{
    if (!m_in.query)
        return QStringLiteral("no query definition");
    if (contentBlock().isEmpty())
        return m_in.selection.isEmpty()
            ? QStringLiteral("no fields: the \"selection\" slot is empty")
            : QStringLiteral("no fields: no name in the \"selection\" slot is a column or "
                             "expression of the query");
    const auto &database = m_in.query->dbInfo();
    if (!database || database->provider().isEmpty())
        return QStringLiteral("no provider");
    if (database->dsn().isEmpty())
        return QStringLiteral("no data source");
    if (database->catalog().isEmpty())
        return QStringLiteral("no catalog");
    if (m_in.query->getTableNames().isEmpty())
        return QStringLiteral("no table");
    return {};
}

} // namespace veldra
