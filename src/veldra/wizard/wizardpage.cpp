#include "veldra/wizard/wizardpage.h"

#include "tessaly/busycursor.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/wizard/wizardstep.h"

namespace veldra {

WizardPage::WizardPage(WizardStep &step, QWidget *parent) : QWidget(parent), m_step(step) { }

void WizardPage::initialize()
{
    form::guarded(this, [this] {
        m_step.initialize();
        showOpened();
    });
}

bool WizardPage::prepare()
{
    bool prepared = false;
    form::guarded(this, [this, &prepared] {
        const tessaly::BusyCursor busy;
        if (!m_step.prepare())
            return;
        showEntered();
        prepared = true;
    });
    Q_EMIT completeChanged();
    return prepared;
}

WizardPage::~WizardPage()
{
    // What the controls say as they go is no action of the person.
    tessaly::detachChildSignals(this);
}

} // namespace veldra
