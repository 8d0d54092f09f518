#pragma once

#include "veldra/wizard/conditionstep.h"
#include "veldra/wizard/wizardpage.h"

class QComboBox;
class QListWidget;
class QPlainTextEdit;

namespace veldra {

// Step 3: the WHERE condition as free text, with buttons that put column names, operators,
// aggregate calls and parameter names at the caret.
class ConditionPage : public WizardPage
{
    Q_OBJECT

public:
    explicit ConditionPage(WizardState &state, QWidget *parent = nullptr);

    // Puts a parameter the definition holds at the caret, as the parameter dialog's OK does.
    void insertParameterToken(const QString &name);

private:
    void showOpened() override { showCondition(); }
    void showEntered() override;
    void fillColumnList();
    void showCondition();
    void insertColumn();
    void insertToken(int index);
    void openParameterDialog();
    void apply(const ConditionStep::Insertion &insertion);
    int selectionStart() const;
    int selectionEnd() const;

    WizardState &m_state;
    ConditionStep &m_step;
    QComboBox *m_tableCombo;
    QListWidget *m_columnList;
    QPlainTextEdit *m_conditionText;
};

} // namespace veldra
