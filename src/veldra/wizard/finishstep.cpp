#include "veldra/wizard/finishstep.h"

#include "veldra/records/statementtext.h"
#include "veldra/wizard/grouporderstep.h"
#include "veldra/wizard/wizardstate.h"

namespace veldra {

bool FinishStep::prepare()
{
    m_state.groupOrder().store();
    m_statement = statementText(*m_state.definition());
    return true;
}

} // namespace veldra
