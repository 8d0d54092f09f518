#pragma once

#include "veldra/wizard/wizardstep.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace veldra {

class WizardState;

// The rules of the WHERE condition step: which columns the person can pick and what each
// button puts into the condition text, and where the caret goes. The condition text itself is
// the definition's; the page only shows it. The step is always complete: an empty condition is
// allowed.
class ConditionStep final : public WizardStep
{
public:
    static constexpr int TokenCount = 10;

    // An item of the column list: with an alias, its text is the alias and its key the
    // column's selection name; without one, its text is the column name and its key empty.
    struct ColumnItem
    {
        QString text;
        QString key;
    };

    // What an insertion does to the condition text: characters start..end (the selection) are
    // replaced by text, and the caret then stands at caret with nothing selected.
    struct Insertion
    {
        int start = 0;
        int end = 0;
        QString text;
        int caret = 0;
    };

    explicit ConditionStep(WizardState &state);

    QStringList tableNames() const;
    QList<ColumnItem> columnItems(const QString &table) const;
    // The caption of token button index (0..TokenCount-1); empty outside.
    static QString tokenCaption(int index);

    const QString &condition() const;
    void setCondition(const QString &condition);

    // Each insertion replaces the selection between selectionStart and selectionEnd (either
    // order) of the current condition.
    Insertion insertColumnToken(const QString &table, const ColumnItem &item, int selectionStart, int selectionEnd);
    // An aggregate token leaves the caret between its parentheses.
    Insertion insertToken(int index, int selectionStart, int selectionEnd);
    // Nothing for a name the definition holds no parameter under.
    std::optional<Insertion> insertParameterToken(const QString &name, int selectionStart, int selectionEnd);

private:
    Insertion insertText(const QString &text, int selectionStart, int selectionEnd) const;

    WizardState &m_state;
};

} // namespace veldra
