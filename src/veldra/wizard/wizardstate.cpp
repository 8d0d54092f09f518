#include "veldra/wizard/wizardstate.h"

#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "tessaly/zetprimitivemodel.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/columnstep.h"
#include "veldra/wizard/conditionstep.h"
#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/finishstep.h"
#include "veldra/wizard/grouporderstep.h"
#include "veldra/wizard/tablestep.h"

namespace veldra {

WizardState::WizardState()
    : m_definition(std::make_shared<SQLInfo>()),
      m_database(std::make_unique<veldra::DatabaseStep>(*this)),
      m_tables(std::make_unique<veldra::TableStep>(*this)),
      m_columns(std::make_unique<veldra::ColumnStep>(*this)),
      m_condition(std::make_unique<veldra::ConditionStep>(*this)),
      m_groupOrder(std::make_unique<veldra::GroupOrderStep>(*this)),
      m_finish(std::make_unique<veldra::FinishStep>(*this)),
      m_steps{ m_database.get(), m_tables.get(), m_columns.get(), m_condition.get(), m_groupOrder.get(), m_finish.get() }
{
}

WizardState::~WizardState() = default;

bool WizardState::start(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                        const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                        const std::shared_ptr<tessaly::zetVariable> &definition)
{
    if (!model || !proxy)
        return false;
    m_model = model;
    if (definition) {
        auto copy = tessaly::objectCast<SQLInfo>(definition->zetVariable_Copy());
        if (!copy)
            throw tessaly::Error(tessaly::ErrorNumber::TypeMismatch,
                                 QStringLiteral("the definition to edit is not a query definition"));
        m_definition = std::move(copy);
    }
    if (!m_accessor) {
        m_accessor = std::make_unique<TSAccessor>();
        m_accessor->setTsProxy(proxy);
    }
    return true;
}

bool WizardState::setCurrentStep(int step)
{
    if (step < 0 || step >= StepCount)
        return false;
    m_currentStep = step;
    return true;
}

WizardStep &WizardState::step(int index) const
{
    if (index < 0 || index >= StepCount)
        throw tessaly::Error(tessaly::ErrorNumber::SubscriptOutOfRange,
                             QStringLiteral("the wizard has no step %1").arg(index));
    return *m_steps[size_t(index)];
}

bool WizardState::isStepComplete(int step) const
{
    return step >= 0 && step < StepCount && this->step(step).isComplete();
}

void WizardState::finish()
{
    const QVariant value = tessaly::variant::holding(m_definition);
    m_model->zetPrimitiveModel_onSetSlotValue(QStringLiteral("SQLInfo"), value);
    m_model->zetPrimitiveModel_onSetSlotValue(QStringLiteral("BuildUI"), value);
    m_currentStep = DatabaseStep;
}

void WizardState::quit()
{
    m_currentStep = DatabaseStep;
}

} // namespace veldra
