#include "veldra/wizard/conditionstep.h"

#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/wizard/wizardstate.h"

#include <algorithm>

namespace veldra {

namespace {

const char16_t *const tokens[ConditionStep::TokenCount] = {
    u"AND", u"OR", u"<", u">", u"<=", u">=", u"count()", u"sum()", u"=", u"NOT",
};

} // namespace

ConditionStep::ConditionStep(WizardState &state) : m_state(state) {}

void ConditionStep::prepare()
{
    m_state.pendingInsertText.clear();
}

QStringList ConditionStep::tableNames() const
{
    QStringList names;
    const tessaly::NameMap &chosen = *m_state.chosenTables;
    for (int i = 0; i < chosen.count(); ++i)
        names.append(chosen.key(i));
    return names;
}

QList<ConditionStep::ColumnItem> ConditionStep::columnItems(const QString &table) const
{
    QList<ColumnItem> items;
    const auto info = m_state.chosenTables->object<TableInfo>(table);
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

ConditionStep::Insertion ConditionStep::insertPendingText(int selectionStart, int selectionEnd)
{
    const int length = int(condition().size());
    Insertion insertion;
    insertion.start = std::clamp(std::min(selectionStart, selectionEnd), 0, length);
    insertion.end = std::clamp(std::max(selectionStart, selectionEnd), 0, length);
    insertion.text = m_state.pendingInsertText;
    insertion.caret = insertion.start + int(insertion.text.size());
    m_state.pendingInsertText.clear();
    return insertion;
}

ConditionStep::Insertion ConditionStep::insertColumnToken(const QString &table, const ColumnItem &item,
                                                          int selectionStart, int selectionEnd)
{
    m_state.pendingInsertText = item.key.isEmpty() ? table + u'.' + item.text + u' ' : item.text + u' ';
    return insertPendingText(selectionStart, selectionEnd);
}

ConditionStep::Insertion ConditionStep::insertToken(int index, int selectionStart, int selectionEnd)
{
    const QString caption = tokenCaption(index);
    m_state.pendingInsertText = caption + u' ';
    Insertion insertion = insertPendingText(selectionStart, selectionEnd);
    if (caption.endsWith(u')'))
        insertion.caret -= 2;
    return insertion;
}

std::optional<ConditionStep::Insertion> ConditionStep::insertParameterToken(const QString &name, int selectionStart,
                                                                           int selectionEnd)
{
    if (name.isEmpty() || !m_state.definition()->parameters()->object<ParamInfo>(name))
        return std::nullopt;
    m_state.pendingInsertText = name + u' ';
    return insertPendingText(selectionStart, selectionEnd);
}

} // namespace veldra
