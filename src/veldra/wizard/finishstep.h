#pragma once

#include "veldra/wizard/wizardstep.h"

#include <QString>

namespace veldra {

class WizardState;

// The last step: the finished statement, to read before Finish.
class FinishStep final : public WizardStep
{
public:
    explicit FinishStep(WizardState &state) : m_state(state) { }

    // Going forward into the step: the grouping step's choices go into the definition, then
    // the statement text is made from it.
    bool prepare() override;

    const QString &statement() const { return m_statement; }

private:
    WizardState &m_state;
    QString m_statement;
};

} // namespace veldra
