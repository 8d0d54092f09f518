#include "veldra/wizard/wizardstate.h"

#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "tessaly/zetprimitivemodel.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/service/tsaccessor.h"

namespace veldra {

WizardState::WizardState() : m_definition(std::make_shared<SQLInfo>()) { }
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

bool WizardState::isStepComplete(int step) const
{
    switch (step) {
    case DatabaseStep:
        return !provider.isEmpty() && !dsn.isEmpty() && !catalog.isEmpty();
    case TableStep:
        return chosenTables && chosenTables->count() > 0;
    case ColumnStep:
        return m_definition && m_definition->selections()->count() > 0;
    case GroupOrderStep:
        return !orderColumn.isEmpty() || !m_definition || m_definition->orderByAsParam()
                || !m_definition->useOrderBy();
    default:
        return true;
    }
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
