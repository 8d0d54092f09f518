#pragma once

#include <QString>

namespace veldra {

class ExpressionChecker;

// What OK in the expression dialog does with the typed text.
struct ExprDialogDecision
{
    bool accepted = false;
    // The text without line breaks: what is stored on acceptance.
    QString expression;
};

// Removes every carriage return and line feed and nothing else: an expression typed over
// several lines is one line of SQL, and the parts join without a space.
QString removeLineBreaks(QString text);

// Accepts a new expression, or in edit mode the unchanged one; refuses any other expression
// the query already holds. The checker is asked with the text without line breaks.
ExprDialogDecision decideExpression(const QString &typed, const QString &original, bool editMode,
                                    const ExpressionChecker &checker);

} // namespace veldra
