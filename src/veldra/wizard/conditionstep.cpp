#include "veldra/wizard/conditionstep.h"

#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/wizard/tablestep.h"
#include "veldra/wizard/wizardstate.h"

#include <algorithm>

namespace veldra {

namespace {

const char16_t *const tokens[ConditionStep::TokenCount] = {
    u"AND", u"OR", u"<", u">", u"<=", u">=", u"count()", u"sum()", u"=", u"NOT",
};

} // namespace

ConditionStep::ConditionStep(WizardState &state) : m_state(state) {}

QStringList ConditionStep::tableNames() const
{
    return m_state.tables().chosenNames();
}

QList<ConditionStep::ColumnItem> ConditionStep::columnItems(const QString &table) const
{
    QList<ColumnItem> items;
    const auto info = m_state.tables().chosen().object<TableInfo>(table);
    if (!info || !info->columns())
        return items;
    const tessaly::NameMap &columns = *info->columns();
    items.reserve(columns.count());
    for (int i = 0; i < columns.count(); ++i) {
        const ColumnInfo *column = columns.peekAt<ColumnInfo>(i);
        if (!column)
            continue;
        if (column->alias().isEmpty())
            items.append({ column->express(), QString() });
        else
            items.append({ column->alias(), column->GetSelectionName() });
    }
    return items;
}

QString ConditionStep::tokenCaption(int index)
{
    return index >= 0 && index < TokenCount ? QString::fromUtf16(tokens[index]) : QString();
}

const QString &ConditionStep::condition() const
{
    return m_state.definition()->condition();
}

void ConditionStep::setCondition(const QString &condition)
{
    m_state.definition()->setCondition(condition);
}

ConditionStep::Insertion ConditionStep::insertText(const QString &text, int selectionStart, int selectionEnd) const
{
    const int length = int(condition().size());
    Insertion insertion;
    insertion.start = std::clamp(std::min(selectionStart, selectionEnd), 0, length);
    insertion.end = std::clamp(std::max(selectionStart, selectionEnd), 0, length);
    insertion.text = text;
    insertion.caret = insertion.start + int(insertion.text.size());
    return insertion;
}

ConditionStep::Insertion ConditionStep::insertColumnToken(const QString &table, const ColumnItem &item,
                                                          int selectionStart, int selectionEnd)
{
    const QString text = item.key.isEmpty() ? table + u'.' + item.text + u' ' : item.text + u' ';
    return insertText(text, selectionStart, selectionEnd);
}

ConditionStep::Insertion ConditionStep::insertToken(int index, int selectionStart, int selectionEnd)
{
    const QString caption = tokenCaption(index);
    Insertion insertion = insertText(caption + u' ', selectionStart, selectionEnd);
    if (caption.endsWith(u')'))
        insertion.caret -= 2;
    return insertion;
}

std::optional<ConditionStep::Insertion> ConditionStep::insertParameterToken(const QString &name, int selectionStart,
                                                                           int selectionEnd)
{
    if (name.isEmpty() || !m_state.definition()->parameters()->object<ParamInfo>(name))
        return std::nullopt;
    return insertText(name + u' ', selectionStart, selectionEnd);
}

} // namespace veldra
