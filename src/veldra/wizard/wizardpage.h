#pragma once

#include <QWidget>

namespace veldra {

class WizardState;

// One step's face in frmWizard. A page shows what its step rules decide from the shared
// WizardState and forwards the person's actions to them; it keeps no state of its own that the
// rules need.
class WizardPage : public QWidget
{
    Q_OBJECT

public:
    WizardPage(WizardState &state, QWidget *parent = nullptr) : QWidget(parent), m_state(state) {}

    // Run for every step when the wizard opens (StartWizard's "initialisation of all steps").
    virtual void initialize() {}
    // Run when the person goes forward into the step; false keeps the wizard where it is.
    virtual bool prepare() { return true; }

Q_SIGNALS:
    // The step's completeness may have changed: the frame asks WizardState::isStepComplete.
    void completeChanged();

protected:
    WizardState &state() const { return m_state; }

private:
    WizardState &m_state;
};

} // namespace veldra
