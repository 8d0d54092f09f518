#pragma once

#include "veldra/wizard/wizardpage.h"

class QPlainTextEdit;

namespace veldra {

class FinishStep;
class WizardState;

// Step 5: the finished statement, to read before Finish.
class FinishPage : public WizardPage
{
    Q_OBJECT

public:
    explicit FinishPage(WizardState &state, QWidget *parent = nullptr);

private:
    void showEntered() override;

    FinishStep &m_step;
    QPlainTextEdit *m_text;
};

} // namespace veldra
