#include "veldra/wizard/columnstep.h"

#include "veldra/records/displaynameindex.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/aliasname.h"
#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/tablestep.h"
#include "veldra/wizard/wizardstate.h"

#include <algorithm>

namespace veldra {

ColumnStep::ColumnStep(WizardState &state) : m_state(state) {}

void ColumnStep::initialize()
{
    m_selectedName.clear();
    m_selectedExpression.clear();
}

bool ColumnStep::prepare()
{
    SQLInfo &definition = *m_state.definition();
    tessaly::NameMap &chosen = m_state.tables().chosen();
    const DatabaseStep &database = m_state.database();
    auto tables = std::make_shared<tessaly::NameMap>();
    for (int i = 0; i < chosen.count(); ++i) {
        const QString name = chosen.key(i);
        auto table = chosen.objectAt<TableInfo>(i);
        if (!table) {
            TSAccessor *accessor = m_state.accessor();
            const auto known = accessor ? accessor->GetTableInfoAt(database.provider(), database.dsn(), database.catalog(), name)
                                        : nullptr;
            if (!known)
                return false;
            // The accessor's cache outlives this definition: aliases set here must not reach it.
            table = known->copy();
            chosen.setObject(name, table);
        }
        table->setDbInfo(definition.dbInfo());
        tables->setObject(name, table);
    }
    definition.setTables(tables);

    // A selection of a table no longer chosen would make a statement that cannot run.
    QStringList kept;
    const QStringList names = selections();
    const DisplayNameIndex items(definition, names.size());
    for (const QString &name : names) {
        if (items.find(name))
            kept.append(name);
    }
    if (kept.size() != names.size())
        setSelections(kept);
    return true;
}

bool ColumnStep::isComplete() const
{
    return m_state.definition()->selections()->count() > 0;
}

QStringList ColumnStep::tableNames() const
{
    return m_state.tables().chosenNames();
}

QStringList ColumnStep::columnNames(const QString &table) const
{
    QStringList names;
    const auto info = chosenTable(table);
    if (!info || !info->columns())
        return names;
    const tessaly::NameMap &columns = *info->columns();
    names.reserve(columns.count());
    for (int i = 0; i < columns.count(); ++i)
        names.append(columns.key(i));
    return names;
}

QStringList ColumnStep::expressionTexts() const
{
    QStringList texts;
    const tessaly::NameMap &expressions = *m_state.definition()->expressions();
    texts.reserve(expressions.count());
    for (int i = 0; i < expressions.count(); ++i)
        texts.append(expressions.key(i));
    return texts;
}

QList<ColumnStep::SelectRow> ColumnStep::selectRows() const
{
    const SQLInfo &definition = *m_state.definition();
    QList<SelectRow> rows;
    const DisplayNameIndex items(definition, definition.selections()->count());
    for (const QString &name : *definition.selections()) {
        const ColumnInfo *item = items.find(name);
        QString type;
        if (item)
            type = text(item->columnType() == ColumnInfo::TableColumn ? StringId::ColumnTab : StringId::FunctionTab);
        rows.append({ labelOf(item), type, name });
    }
    return rows;
}

int ColumnStep::selectedRow() const
{
    return int(selections().indexOf(m_selectedName));
}

bool ColumnStep::canMoveDown() const
{
    const int row = selectedRow();
    return row >= 0 && row + 1 < m_state.definition()->selections()->count();
}

bool ColumnStep::insertColumnSelection(const QString &table, const QString &column)
{
    const auto info = chosenTable(table);
    const auto item = info && info->columns() ? info->columns()->object<ColumnInfo>(column) : nullptr;
    return item && appendSelection(item->GetSelectionName());
}

bool ColumnStep::insertExpressionSelection(const QString &expression)
{
    return isExistExpression(expression) && appendSelection(expression);
}

void ColumnStep::removeSelection(const QString &displayName)
{
    QStringList names = selections();
    const qsizetype row = names.indexOf(displayName);
    if (row < 0)
        return;
    names.removeAt(row);
    setSelections(names);
    m_selectedName = names.isEmpty() ? QString() : names.at(std::min(row, names.size() - 1));
}

void ColumnStep::moveSelectionUp(const QString &displayName)
{
    moveSelection(displayName, -1);
}

void ColumnStep::moveSelectionDown(const QString &displayName)
{
    moveSelection(displayName, 1);
}

bool ColumnStep::isBadAlias(const QString &alias) const
{
    // Beside the duplicates, an alias the engines cannot take as written: the query would
    // fail only when it runs.
    if (!isUsableAlias(alias))
        return true;
    const SQLInfo &definition = *m_state.definition();
    for (const QString &name : *definition.selections()) {
        if (alias == name)
            return true;
        const ColumnInfo *item = definition.peekColumnInfoFromDispName(name);
        if (item && alias == item->alias())
            return true;
    }
    return false;
}

void ColumnStep::setSelectionAlias(const QString &displayName, const QString &alias)
{
    if (const auto item = m_state.definition()->getColumnInfoFromDispName(displayName))
        item->setAlias(alias);
}

ColumnStep::AliasEdit ColumnStep::editAlias(const QString &displayName, const QString &newText)
{
    if (newText == labelOf(m_state.definition()->peekColumnInfoFromDispName(displayName)))
        return AliasEdit::Unchanged;
    if (isBadAlias(newText))
        return AliasEdit::Refused;
    setSelectionAlias(displayName, newText);
    return AliasEdit::Accepted;
}

bool ColumnStep::isExistExpression(const QString &expression) const
{
    return m_state.definition()->expressions()->contains(expression);
}

void ColumnStep::addNewExpression(const QString &expression)
{
    auto item = std::make_shared<ColumnInfo>();
    item->setAlias(QString());
    item->setColumnType(ColumnInfo::Expression);
    item->setExpress(expression);
    m_state.definition()->expressions()->setObject(item->GetSelectionName(), item);
    m_selectedExpression.clear();
}

void ColumnStep::replaceExpression(const QString &oldText, const QString &newText)
{
    tessaly::NameMap &expressions = *m_state.definition()->expressions();
    const auto item = expressions.object<ColumnInfo>(oldText);
    if (!item)
        return;
    expressions.remove(oldText);
    item->setExpress(newText);
    const QString newName = item->GetSelectionName();
    expressions.setObject(newName, item);

    QStringList names = selections();
    if (const qsizetype row = names.indexOf(oldText); row >= 0) {
        names[row] = newName;
        setSelections(names);
        if (m_selectedName == oldText)
            m_selectedName = newName;
    }
    m_selectedExpression = newName;
}

void ColumnStep::deleteExpression(const QString &expression)
{
    if (!m_state.definition()->expressions()->remove(expression))
        return;
    QStringList names = selections();
    if (names.removeAll(expression) > 0)
        setSelections(names);
    m_selectedExpression.clear();
}

ColumnStep::ExpressionEditStart ColumnStep::startExpressionEdit(const QString &rowText) const
{
    if (rowText.size() > InlineEditLimit)
        return ExpressionEditStart::AskForDialog;
    return isExistExpression(rowText) ? ExpressionEditStart::Inline : ExpressionEditStart::InlineFromEmpty;
}

ColumnStep::ExpressionEditEnd ColumnStep::finishExpressionEdit(const QString &oldText, const QString &newText)
{
    if (newText.isEmpty() || newText == oldText)
        return ExpressionEditEnd::Cancelled;
    if (isExistExpression(newText))
        return ExpressionEditEnd::Duplicate;
    if (oldText.isEmpty()) {
        addNewExpression(newText);
        m_selectedExpression = newText;
        return ExpressionEditEnd::Added;
    }
    replaceExpression(oldText, newText);
    return ExpressionEditEnd::Replaced;
}

std::shared_ptr<TableInfo> ColumnStep::chosenTable(const QString &name) const
{
    return m_state.tables().chosen().object<TableInfo>(name);
}

QStringList ColumnStep::selections() const
{
    return m_state.definition()->selections()->items();
}

void ColumnStep::setSelections(const QStringList &names)
{
    // The ordered list can only grow; a new one replaces it.
    auto list = std::make_shared<StringList>();
    for (const QString &name : names)
        list->append(name);
    m_state.definition()->setSelections(list);
}

void ColumnStep::moveSelection(const QString &displayName, int by)
{
    QStringList names = selections();
    const qsizetype row = names.indexOf(displayName);
    if (row < 0 || row + by < 0 || row + by >= names.size())
        return;
    names.swapItemsAt(row, row + by);
    setSelections(names);
    m_selectedName = displayName;
}

QString ColumnStep::labelOf(const ColumnInfo *item) const
{
    return item && !item->alias().isEmpty() ? item->alias() : text(StringId::SelectBlankAlias);
}

bool ColumnStep::appendSelection(const QString &displayName)
{
    m_selectedName = displayName;
    if (selections().contains(displayName))
        return false;
    m_state.definition()->selections()->append(displayName);
    return true;
}

} // namespace veldra
