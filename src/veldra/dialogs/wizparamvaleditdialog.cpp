#include "veldra/dialogs/wizparamvaleditdialog.h"

#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "tessaly/uiservice.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace veldra {

WizParamValEditDialog::WizParamValEditDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizParamValEditDialog"));
    setWindowTitle(text(StringId::ValEditCaption));

    QLabel *valueLabel = form::newLabel(QStringLiteral("KeyLabel"), StringId::ValEditValueLabel, this);
    m_value = form::newLineEdit(QStringLiteral("ParamValKeyText"), this, 32, valueLabel);
    QLabel *nameLabel = form::newLabel(QStringLiteral("ValueLabel"), StringId::ValEditNameLabel, this);
    m_name = form::newLineEdit(QStringLiteral("ParamValValText"), this, 32, nameLabel);
    auto *fields = new QGridLayout;
    fields->addWidget(valueLabel, 0, 0);
    fields->addWidget(m_value, 0, 1);
    fields->addWidget(nameLabel, 1, 0);
    fields->addWidget(m_name, 1, 1);
    fields->setColumnStretch(1, 1);

    QDialogButtonBox *buttons = form::newButtonBox(this);
    m_ok = form::addButton(buttons, QStringLiteral("OKButton"), StringId::ValEditOKButton,
                           QDialogButtonBox::AcceptRole);
    form::addButton(buttons, QStringLiteral("CancelButton"), StringId::ValEditCancelButton,
                    QDialogButtonBox::RejectRole);
    m_ok->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addStretch(1);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetMinimumSize);

    connect(m_value, &QLineEdit::textChanged, this, &WizParamValEditDialog::valueEdited);
    connect(m_name, &QLineEdit::textChanged, this, &WizParamValEditDialog::nameEdited);
    connect(buttons, &QDialogButtonBox::accepted, this, &WizParamValEditDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    setValueAndName(QString(), QString());
}

void WizParamValEditDialog::setValueAndName(const QString &value, const QString &name)
{
    // Set first: a text equal to what the box shows reports no change.
    m_decision.setValue(value);
    m_decision.setName(name);
    m_value->setText(value);
    m_name->setText(name);
    m_ok->setEnabled(m_decision.okEnabled());
}

void WizParamValEditDialog::valueEdited(const QString &text)
{
    m_decision.setValue(text);
    m_ok->setEnabled(m_decision.okEnabled());
}

void WizParamValEditDialog::nameEdited(const QString &text)
{
    m_decision.setName(text);
    m_ok->setEnabled(m_decision.okEnabled());
}

void WizParamValEditDialog::okClicked()
{
    if (!m_decision.okEnabled())
        return;
    accept();
}

std::optional<SelectionValue> editSelectionValue(QWidget *parent, const QString &value, const QString &name)
{
    WizParamValEditDialog dialog(parent);
    dialog.setValueAndName(value, name);
    if (tessaly::UiService::instance().execDialog(dialog) != QDialog::Accepted)
        return std::nullopt;
    return SelectionValue{ dialog.value(), dialog.name() };
}

WizParamValEditDialog::~WizParamValEditDialog()
{
    // What the controls say as they go is no action of the person.
    tessaly::detachChildSignals(this);
}

} // namespace veldra
