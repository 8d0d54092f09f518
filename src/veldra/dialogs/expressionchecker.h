#pragma once

#include <QString>

namespace veldra {

// What the expression dialog asks of the form that opened it: does the query already hold
// this expression? (The wizard answers with its own comparison rule.)
class ExpressionChecker
{
public:
    virtual ~ExpressionChecker() = default;
    virtual bool expressionExists(const QString &expression) const = 0;

protected:
    ExpressionChecker() = default;
    ExpressionChecker(const ExpressionChecker &) = default;
    ExpressionChecker &operator=(const ExpressionChecker &) = default;
};

} // namespace veldra
