#pragma once

#include <QWidget>

namespace veldra {

class WizardStep;

// One step's face in frmWizard. A page shows what its step decides and forwards the person's
// actions to it; it keeps no state of its own that the step's rules need.
class WizardPage : public QWidget
{
    Q_OBJECT

public:
    WizardPage(WizardStep &step, QWidget *parent = nullptr);
    ~WizardPage() override;

    // When the wizard opens: the step starts over and the page shows it.
    void initialize();
    // The person goes forward into the step: the step prepares, under the busy cursor, and the
    // page shows it. False keeps the wizard where it is; an error is shown to the person.
    bool prepare();

Q_SIGNALS:
    // The step's completeness may have changed: the frame asks the step again.
    void completeChanged();

protected:
    // What the page shows once the wizard opened, and once the step was entered.
    virtual void showOpened() {}
    virtual void showEntered() {}

private:
    WizardStep &m_step;
};

} // namespace veldra
