#pragma once

namespace veldra {

// One step of the query creation wizard without its window: what the step keeps, what it does
// when the person goes forward into it, and whether Next may leave it. The frame knows steps
// only through this.
class WizardStep
{
public:
    virtual ~WizardStep() = default;

    // When the wizard opens, for every step.
    virtual void initialize() { }
    // Going forward into the step; false keeps the wizard on the step it is on.
    virtual bool prepare() { return true; }
    // Whether Next may be enabled on the step.
    virtual bool isComplete() const { return true; }

protected:
    WizardStep() = default;
    WizardStep(const WizardStep &) = delete;
    WizardStep &operator=(const WizardStep &) = delete;
};

} // namespace veldra
