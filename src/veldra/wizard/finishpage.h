#pragma once

#include "veldra/wizard/wizardpage.h"

class QPlainTextEdit;

namespace veldra {

// Step 5: the finished statement, to read before Finish.
class FinishPage : public WizardPage
{
    Q_OBJECT

public:
    explicit FinishPage(WizardState &state, QWidget *parent = nullptr);

    // Shows the statement text of the working definition.
    bool prepare() override;

private:
    QPlainTextEdit *m_text;
};

} // namespace veldra
