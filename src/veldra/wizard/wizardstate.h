#pragma once

#include "veldra/veldra_export.h"

#include <QString>

#include <array>
#include <memory>

namespace tessaly {
class ServiceProxy;
class zetPrimitiveModel;
class zetVariable;
} // namespace tessaly

namespace veldra {

class ColumnStep;
class ConditionStep;
class DatabaseStep;
class FinishStep;
class GroupOrderStep;
class SQLInfo;
class TSAccessor;
class TableStep;
class WizardStep;

// Everything the query creation wizard knows while it is open, without any window: the
// component model that receives the result, the working copy of the definition, the one
// accessor of the form's life, the current step, and the six steps, each with its own choices
// and its own rule for Next.
class VELDRA_EXPORT WizardState
{
public:
    enum Step : int {
        DatabaseStep,
        TableStep,
        ColumnStep,
        ConditionStep,
        GroupOrderStep,
        FinishStep,
    };
    static constexpr int StepCount = 6;

    WizardState();
    ~WizardState();
    WizardState(const WizardState &) = delete;
    WizardState &operator=(const WizardState &) = delete;

    // The windowless part of StartWizard: false (and nothing kept) without a model or a proxy.
    // A definition passed in is copied, never edited in place; without one, the working copy of
    // the last run is kept (an empty one at first). The accessor is made on the first call and
    // kept, so a later proxy is not used.
    bool start(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
               const std::shared_ptr<tessaly::ServiceProxy> &proxy,
               const std::shared_ptr<tessaly::zetVariable> &definition);

    const std::shared_ptr<tessaly::zetPrimitiveModel> &model() const { return m_model; }
    const std::shared_ptr<SQLInfo> &definition() const { return m_definition; }
    // Null before the first start().
    TSAccessor *accessor() const { return m_accessor.get(); }

    int currentStep() const { return m_currentStep; }
    // False, and no change, outside 0..StepCount-1.
    bool setCurrentStep(int step);
    bool isFirstStep() const { return m_currentStep == DatabaseStep; }
    bool isLastStep() const { return m_currentStep == FinishStep; }

    // The step at an index 0..StepCount-1.
    WizardStep &step(int index) const;
    // Whether Next may be enabled on a step: that step's own rule; false outside the steps.
    bool isStepComplete(int step) const;

    veldra::DatabaseStep &database() const { return *m_database; }
    veldra::TableStep &tables() const { return *m_tables; }
    veldra::ColumnStep &columns() const { return *m_columns; }
    veldra::ConditionStep &condition() const { return *m_condition; }
    veldra::GroupOrderStep &groupOrder() const { return *m_groupOrder; }
    veldra::FinishStep &finishing() const { return *m_finish; }

    // Finish: the model's "SQLInfo" slot gets the working definition, then its "BuildUI" slot
    // the same object, and the next opening starts on the first step.
    void finish();
    // Quit: the model is not touched; the next opening starts on the first step.
    void quit();

private:
    std::shared_ptr<tessaly::zetPrimitiveModel> m_model;
    // Never null, so the pages can be built and shown before the first start().
    std::shared_ptr<SQLInfo> m_definition;
    std::unique_ptr<TSAccessor> m_accessor;
    int m_currentStep = DatabaseStep;

    std::unique_ptr<veldra::DatabaseStep> m_database;
    std::unique_ptr<veldra::TableStep> m_tables;
    std::unique_ptr<veldra::ColumnStep> m_columns;
    std::unique_ptr<veldra::ConditionStep> m_condition;
    std::unique_ptr<veldra::GroupOrderStep> m_groupOrder;
    std::unique_ptr<veldra::FinishStep> m_finish;
    // The same steps by index.
    std::array<WizardStep *, StepCount> m_steps;
};

} // namespace veldra
