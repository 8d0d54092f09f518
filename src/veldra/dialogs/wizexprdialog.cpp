#include "veldra/dialogs/wizexprdialog.h"

#include "tessaly/uiservice.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/exprdialogdecision.h"
#include "veldra/dialogs/expressionchecker.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/resources/extratext.h"
#include "veldra/resources/stringtable.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>


namespace veldra {

WizExprDialog::WizExprDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizExprDialog"));
    setWindowTitle(text(StringId::ExprDialogEditCaption));

    // Several lines, because long expressions are easier to write that way; OK joins them.
    m_text = new QPlainTextEdit(this);
    m_text->setObjectName(QStringLiteral("AddExprText"));
    m_text->setAccessibleName(extraText(ExtraText::ExpressionTextName));
    m_text->setTabChangesFocus(true);
    const QFontMetrics metrics = m_text->fontMetrics();
    m_text->setMinimumSize(form::textWidth(m_text, 64), metrics.lineSpacing() * 5);

    QDialogButtonBox *buttons = form::newButtonBox(this);
    QPushButton *ok = form::addButton(buttons, QStringLiteral("OKButton"), StringId::ExprDialogOKButton,
                                      QDialogButtonBox::AcceptRole);
    form::addButton(buttons, QStringLiteral("CancelButton"), StringId::ExprDialogCancelButton,
                    QDialogButtonBox::RejectRole);
    ok->setDefault(true);
    // OK checks the expression before it closes the dialog.
    connect(buttons, &QDialogButtonBox::accepted, this, &WizExprDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
}

bool WizExprDialog::Popup(const ExpressionChecker *checker, bool editMode)
{
    m_checker = checker;
    m_editMode = editMode;
    // The dialog is kept between uses: an earlier OK must not answer for this one.
    m_confirmed = false;
    setWindowTitle(text(editMode ? StringId::ExprDialogEditCaption : StringId::ExprDialogAddCaption));
    m_text->setPlainText(m_expression);
    m_text->selectAll();
    m_text->setFocus();
    tessaly::UiService::instance().execDialog(*this);
    return m_confirmed;
}

void WizExprDialog::okClicked()
{
    ExprDialogDecision decision;
    // Without a checker (the dialog shown without Popup) nothing can be decided: OK does nothing.
    if (!m_checker || !form::guarded(this, [&] {
            decision = decideExpression(m_text->toPlainText(), m_expression, m_editMode, *m_checker);
        }))
        return;
    if (!decision.accepted) {
        tessaly::UiService::instance().message(text(StringId::DuplicateExpressionMessage),
                                               text(StringId::DuplicateExpressionTitle),
                                               tessaly::UiService::Buttons::Ok);
        return;
    }
    m_expression = decision.expression;
    m_confirmed = true;
    accept();
}

std::optional<QString> editExpression(QWidget *parent, const ExpressionChecker &checker, const QString &expression,
                                      bool editMode)
{
    WizExprDialog dialog(parent);
    dialog.setExpression(expression);
    if (!dialog.Popup(&checker, editMode))
        return std::nullopt;
    return dialog.Expression();
}

WizExprDialog::~WizExprDialog()
{
    // What the controls say as they go is no action of the person.
    tessaly::detachChildSignals(this);
}

} // namespace veldra
