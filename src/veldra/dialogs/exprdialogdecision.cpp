#include "veldra/dialogs/exprdialogdecision.h"

#include "veldra/dialogs/expressionchecker.h"

namespace veldra {

QString removeLineBreaks(QString text)
{
    text.remove(u'\r');
    text.remove(u'\n');
    return text;
}

ExprDialogDecision decideExpression(const QString &typed, const QString &original, bool editMode,
                                    const ExpressionChecker &checker)
{
    ExprDialogDecision decision;
    decision.expression = removeLineBreaks(typed);
    const bool exists = checker.expressionExists(decision.expression);
    decision.accepted = !exists || (editMode && decision.expression == original);
    return decision;
}

} // namespace veldra
