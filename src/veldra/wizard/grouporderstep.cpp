#include "veldra/wizard/grouporderstep.h"

#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/wizardstate.h"

namespace veldra {

namespace {

bool toRowCount(const QString &text, qint32 *count)
{
    try {
        *count = tessaly::variant::toLong(QVariant(text));
        return true;
    } catch (const tessaly::Error &) {
        return false;
    }
}

} // namespace

GroupOrderStep::GroupOrderStep(WizardState &state) : m_state(state) {}

void GroupOrderStep::initialize()
{
    const SQLInfo &definition = *m_state.definition();
    m_lastRowCount = definition.topN() >= 1 ? definition.topN() : DefaultRowCount;
    m_ascending = true;
    m_orderColumn.clear();
    if (!definition.orderByAsParam() && !definition.orderBy()->isEmpty()) {
        const auto &first = definition.orderBy()->item(1);
        m_orderColumn = first->column();
        m_ascending = first->ascendant();
    }
}

bool GroupOrderStep::prepare()
{
    const SQLInfo &definition = *m_state.definition();
    m_groupByChecked = definition.groupBy()->items();
    if (!definition.selections()->items().contains(m_orderColumn))
        m_orderColumn.clear();
    return true;
}

bool GroupOrderStep::rowCountOn() const
{
    return m_state.definition()->topN() >= 1;
}

QString GroupOrderStep::rowCountText() const
{
    return rowCountOn() ? QString::number(m_state.definition()->topN()) : QString();
}

bool GroupOrderStep::rowCountAsParam() const
{
    return m_state.definition()->topNAsParam();
}

void GroupOrderStep::setRowCountOn(bool on)
{
    m_state.definition()->setTopN(on ? m_lastRowCount : 0);
}

bool GroupOrderStep::setRowCountText(const QString &text)
{
    qint32 count = 0;
    if (!toRowCount(text, &count))
        return false;
    m_lastRowCount = count;
    m_state.definition()->setTopN(count);
    return true;
}

bool GroupOrderStep::canLeaveRowCount(const QString &text)
{
    qint32 count = 0;
    return toRowCount(text, &count) && count >= 1;
}

void GroupOrderStep::setRowCountAsParam(bool on)
{
    m_state.definition()->setTopNAsParam(on);
}

bool GroupOrderStep::groupByOn() const
{
    return m_state.definition()->useGroupBy();
}

void GroupOrderStep::setGroupByOn(bool on)
{
    m_state.definition()->setUseGroupBy(on);
}

QList<GroupOrderStep::GroupItem> GroupOrderStep::groupItems() const
{
    QList<GroupItem> items;
    for (const QString &name : *m_state.definition()->selections()) {
        if (!name.isEmpty())
            items.append({ name, m_groupByChecked.contains(name) });
    }
    return items;
}

void GroupOrderStep::setGroupItemChecked(const QString &name, bool checked)
{
    m_groupByChecked.removeAll(name);
    if (checked)
        m_groupByChecked.append(name);
}

bool GroupOrderStep::orderByOn() const
{
    return m_state.definition()->useOrderBy();
}

void GroupOrderStep::setOrderByOn(bool on)
{
    m_state.definition()->setUseOrderBy(on);
}

bool GroupOrderStep::orderByAsParam() const
{
    return m_state.definition()->orderByAsParam();
}

void GroupOrderStep::setOrderByAsParam(bool on)
{
    m_state.definition()->setOrderByAsParam(on);
}

QStringList GroupOrderStep::orderCandidates() const
{
    return m_state.definition()->selections()->items();
}

int GroupOrderStep::orderColumnIndex() const
{
    return int(orderCandidates().indexOf(m_orderColumn));
}

void GroupOrderStep::setOrderColumn(const QString &displayName)
{
    m_orderColumn = displayName;
}

bool GroupOrderStep::ascending() const
{
    return m_ascending;
}

void GroupOrderStep::setAscending(bool ascending)
{
    m_ascending = ascending;
}

bool GroupOrderStep::orderColumnEnabled() const
{
    return orderByOn() && !orderByAsParam();
}

bool GroupOrderStep::isComplete() const
{
    return !m_orderColumn.isEmpty() || !orderByOn() || orderByAsParam();
}

void GroupOrderStep::store()
{
    SQLInfo &definition = *m_state.definition();
    auto groupBy = std::make_shared<StringList>();
    for (const GroupItem &item : groupItems()) {
        if (item.checked)
            groupBy->append(item.name);
    }
    definition.setGroupBy(groupBy);

    if (!definition.useOrderBy())
        return;
    auto orderBy = std::make_shared<OrderList>();
    const auto add = [&orderBy](const QString &column, bool ascendant) {
        auto order = std::make_shared<OrderInfo>();
        order->setColumn(column);
        order->setAscendant(ascendant);
        orderBy->append(order);
    };
    if (definition.orderByAsParam()) {
        for (const QString &name : *definition.selections())
            add(name, true);
    } else {
        add(m_orderColumn, m_ascending);
    }
    definition.setOrderBy(orderBy);
}

} // namespace veldra
