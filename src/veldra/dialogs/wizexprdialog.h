#pragma once

#include <QDialog>

#include <optional>

class QPlainTextEdit;

namespace veldra {

class ExpressionChecker;

// Lets the user type or change one free expression of the select list; refuses an expression
// the query already has.
class WizExprDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizExprDialog(QWidget *parent = nullptr);
    ~WizExprDialog() override;

    // On entry the expression to edit (or empty); after an accepted OK the accepted text.
    QString Expression() const { return m_expression; }
    void setExpression(const QString &expression) { m_expression = expression; }
    bool confirmed() const { return m_confirmed; }

    // Shows the dialog modally; true when the user ended with an accepted OK. The checker
    // must outlive the call.
    bool Popup(const ExpressionChecker *checker, bool editMode);

private:
    void okClicked();

    QPlainTextEdit *m_text;
    const ExpressionChecker *m_checker = nullptr;
    bool m_editMode = false;
    QString m_expression;
    bool m_confirmed = false;
};

// Runs the expression dialog on expression ("" to add one): the accepted text, or nothing after
// Cancel.
std::optional<QString> editExpression(QWidget *parent, const ExpressionChecker &checker, const QString &expression,
                                      bool editMode);

} // namespace veldra
