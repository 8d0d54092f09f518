#pragma once

#include "veldra/dialogs/expressionchecker.h"
#include "veldra/wizard/wizardstep.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

namespace veldra {

class ColumnInfo;
class TableInfo;
class WizardState;

// The rules of the column and expression step: the select list (the definition's selections
// with their aliases), the columns of the chosen tables and the free expressions. The page
// shows what these functions return and forwards the person's actions to them.
class ColumnStep final : public WizardStep, public ExpressionChecker
{
public:
    // Longer expressions are edited in the expression dialog, not in the list.
    static constexpr int InlineEditLimit = 250;

    struct SelectRow
    {
        QString label; // the alias, or "<Blank>"
        QString type;  // "Column" or "Function"
        QString displayName;
    };

    enum class AliasEdit { Unchanged, Refused, Accepted };
    enum class ExpressionEditStart { Inline, InlineFromEmpty, AskForDialog };
    enum class ExpressionEditEnd { Cancelled, Duplicate, Added, Replaced };

    explicit ColumnStep(WizardState &state);

    // When the wizard opens: nothing is remembered as selected.
    void initialize() override;
    // Entry of the step: every chosen table gets its TableInfo (asked of the accessor for
    // tables not yet known) and the chosen tables become the definition's tables. Selections
    // that no longer name a column or expression of the query are dropped. False when the
    // columns of a table cannot be had.
    bool prepare() override;
    // Complete with at least one selected item.
    bool isComplete() const override;

    QStringList tableNames() const;
    // The column names of a chosen table, in the table's order.
    QStringList columnNames(const QString &table) const;
    QStringList expressionTexts() const;

    QList<SelectRow> selectRows() const;
    // The remembered selection of the select list, by display name.
    const QString &selectedName() const { return m_selectedName; }
    void setSelectedName(const QString &displayName) { m_selectedName = displayName; }
    // Its row in selectRows(), or -1.
    int selectedRow() const;

    // What the select list's buttons may do with the remembered selection.
    bool canMoveUp() const { return selectedRow() > 0; }
    bool canMoveDown() const;
    bool canRemove() const { return selectedRow() >= 0; }
    // Modify and Delete need an expression to work on.
    bool canChangeExpression() const { return isExistExpression(m_selectedExpression); }

    // False when nothing was added: an unknown item, or one already selected (which is then
    // remembered as the selection).
    bool insertColumnSelection(const QString &table, const QString &column);
    bool insertExpressionSelection(const QString &expression);
    // The row after the removed one is remembered next, or the one before it at the end.
    void removeSelection(const QString &displayName);
    void moveSelectionUp(const QString &displayName);
    void moveSelectionDown(const QString &displayName);

    bool isBadAlias(const QString &alias) const;
    void setSelectionAlias(const QString &displayName, const QString &alias);
    // The label edit of a select row, ended with newText.
    AliasEdit editAlias(const QString &displayName, const QString &newText);

    bool isExistExpression(const QString &expression) const;
    void addNewExpression(const QString &expression);
    // The selection that used the old text follows it.
    void replaceExpression(const QString &oldText, const QString &newText);
    // A selection of the expression goes with it.
    void deleteExpression(const QString &expression);
    const QString &selectedExpression() const { return m_selectedExpression; }
    void setSelectedExpression(const QString &expression) { m_selectedExpression = expression; }

    // The in-place edit of an expression row that shows rowText: too long ones go to the
    // dialog, a row that holds no expression is edited from empty.
    ExpressionEditStart startExpressionEdit(const QString &rowText) const;
    ExpressionEditEnd finishExpressionEdit(const QString &oldText, const QString &newText);

    bool expressionExists(const QString &expression) const override { return isExistExpression(expression); }

private:
    std::shared_ptr<TableInfo> chosenTable(const QString &name) const;
    QStringList selections() const;
    void setSelections(const QStringList &names);
    void moveSelection(const QString &displayName, int by);
    QString labelOf(const ColumnInfo *item) const;
    bool appendSelection(const QString &displayName);

    WizardState &m_state;
    QString m_selectedName;
    QString m_selectedExpression;
};

} // namespace veldra
