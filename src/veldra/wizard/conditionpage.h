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

    void initialize() override;
    bool prepare() override;

    // Called by the parameter dialog with the parameter the person chose to use.
    void insertParameterToken(const QString &name);

    ConditionStep &step() { return m_step; }

private:
    void fillColumnList();
    void showCondition();
    void insertColumn();
    void insertToken(int index);
    void openParameterDialog();
    void apply(const ConditionStep::Insertion &insertion);
    int selectionStart() const;
    int selectionEnd() const;

    ConditionStep m_step;
    QComboBox *m_tableCombo;
    QListWidget *m_columnList;
    QPlainTextEdit *m_conditionText;
};

} // namespace veldra
