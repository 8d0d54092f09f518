#include "veldra/dialogs/wizparameditdialog.h"

#include "tessaly/uiservice.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/resources/extratext.h"
#include "veldra/dialogs/wizparamdbgetdialog.h"
#include "veldra/dialogs/wizparamvaleditdialog.h"
#include "veldra/records/paraminfo.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace veldra {

WizParamEditDialog::WizParamEditDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizParamEditDialog"));
    setWindowTitle(text(StringId::ParamEditCaption));

    QLabel *nameLabel = form::newLabel(QStringLiteral("NameLabel"), StringId::ParamEditNameLabel, this);
    m_name = form::newLineEdit(QStringLiteral("ParamEditNameText"), this, 32, nameLabel);
    QLabel *titleLabel = form::newLabel(QStringLiteral("TitleLabel"), StringId::ParamEditTitleLabel, this);
    m_title = form::newLineEdit(QStringLiteral("ParamEditTitleText"), this, 32, titleLabel);
    auto *fields = new QGridLayout;
    fields->addWidget(nameLabel, 0, 0);
    fields->addWidget(m_name, 0, 1);
    fields->addWidget(titleLabel, 1, 0);
    fields->addWidget(m_title, 1, 1);
    fields->setColumnStretch(1, 1);

    // The two options keep the system's one name; the group's ids are their indices.
    QGroupBox *typeFrame = form::newGroupBox(QStringLiteral("TypeFrame"), StringId::ParamEditTypeFrameCaption, this);
    m_type = new QButtonGroup(this);
    m_type->setObjectName(QStringLiteral("TypeOption"));
    auto *typeLayout = new QHBoxLayout(typeFrame);
    for (const auto &[option, caption] : { std::pair{ ParamEditDecision::StringFieldOption, StringId::ParamEditStringFieldOption },
                                           std::pair{ ParamEditDecision::ValueListOption, StringId::ParamEditValueListOption } }) {
        QRadioButton *button = form::newRadioButton(QStringLiteral("TypeOption"), caption, typeFrame);
        m_type->addButton(button, option);
        typeLayout->addWidget(button);
    }
    typeLayout->addStretch(1);

    m_valueFrame = form::newGroupBox(QStringLiteral("ValueFrame"), StringId::ParamEditValueFrameCaption, this);
    m_values = form::newReportList(QStringLiteral("ParamValList"),
                                   { StringId::ParamEditValueHeader, StringId::ParamEditNameHeader }, m_valueFrame);
    // The frame's caption is also the second type option's.
    m_values->setAccessibleName(extraText(ExtraText::ValueListName));
    m_values->setMinimumSize(form::textWidth(m_values, 40), m_values->fontMetrics().lineSpacing() * 8);
    m_values->header()->resizeSection(0, form::textWidth(m_values, 16));
    QPushButton *add = form::newButton(QStringLiteral("AddButton"), StringId::ParamEditAddButton, m_valueFrame);
    QPushButton *modify = form::newButton(QStringLiteral("EditButton"), StringId::ParamEditModifyButton, m_valueFrame);
    QPushButton *remove = form::newButton(QStringLiteral("DeleteButton"), StringId::ParamEditDeleteButton, m_valueFrame);
    QPushButton *get = form::newButton(QStringLiteral("GetButton"), StringId::ParamEditGetFromDBButton, m_valueFrame);
    // Ours, beside the system's buttons: values the condition cannot carry as written are told
    // below the list and quoted with one click.
    m_quote = new QPushButton(extraText(ExtraText::QuoteValuesButton), m_valueFrame);
    m_quote->setObjectName(QStringLiteral("QuoteButton"));
    m_quote->setToolTip(extraText(ExtraText::QuoteValuesTip));
    m_warning = new QLabel(m_valueFrame);
    m_warning->setObjectName(QStringLiteral("ValueWarningLabel"));
    m_warning->setTextFormat(Qt::PlainText);
    m_warning->setWordWrap(true);
    auto *side = new QVBoxLayout;
    side->addWidget(add);
    side->addWidget(modify);
    side->addWidget(remove);
    side->addSpacing(8);
    side->addWidget(get);
    side->addWidget(m_quote);
    side->addStretch(1);
    auto *valueLayout = new QGridLayout(m_valueFrame);
    valueLayout->addWidget(m_values, 0, 0);
    valueLayout->addLayout(side, 0, 1);
    valueLayout->addWidget(m_warning, 1, 0, 1, 2);
    valueLayout->setRowStretch(0, 1);

    QDialogButtonBox *buttons = form::newButtonBox(this);
    m_ok = form::addButton(buttons, QStringLiteral("OKButton"), StringId::ParamEditOKButton,
                           QDialogButtonBox::AcceptRole);
    form::addButton(buttons, QStringLiteral("CancelButton"), StringId::ParamEditCancelButton,
                    QDialogButtonBox::RejectRole);
    m_ok->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(typeFrame);
    layout->addWidget(m_valueFrame, 1);
    layout->addWidget(buttons);

    connect(m_name, &QLineEdit::textEdited, this, &WizParamEditDialog::nameEdited);
    connect(m_title, &QLineEdit::textEdited, this, &WizParamEditDialog::titleEdited);
    connect(m_type, &QButtonGroup::idToggled, this, &WizParamEditDialog::typeToggled);
    connect(add, &QPushButton::clicked, this, &WizParamEditDialog::addValueClicked);
    connect(modify, &QPushButton::clicked, this, &WizParamEditDialog::modifyValueClicked);
    connect(remove, &QPushButton::clicked, this, &WizParamEditDialog::deleteValueClicked);
    connect(get, &QPushButton::clicked, this, &WizParamEditDialog::getFromDBClicked);
    connect(m_quote, &QPushButton::clicked, this, &WizParamEditDialog::quoteClicked);
    connect(buttons, &QDialogButtonBox::accepted, this, &WizParamEditDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    setParameter(nullptr);
}

WizParamEditDialog::~WizParamEditDialog()
{
    tessaly::detachChildSignals(this);
}

void WizParamEditDialog::setParameter(const std::shared_ptr<ParamInfo> &parameter)
{
    m_decision.setParameter(parameter);
    m_name->setText(parameter ? parameter->paramName() : QString());
    m_title->setText(parameter ? parameter->title() : QString());
    {
        // Showing the kind is not a person's choice; a kind other than the two checks neither.
        const QSignalBlocker blocker(m_type);
        const int option = m_decision.typeOption();
        m_type->setExclusive(false);
        for (QAbstractButton *button : m_type->buttons())
            button->setChecked(m_type->id(button) == option);
        m_type->setExclusive(true);
    }
    showKind();
    fillValues();
}

void WizParamEditDialog::applyValidity()
{
    m_ok->setEnabled(m_decision.isValid());
}

void WizParamEditDialog::showKind()
{
    // The frame's buttons and list follow it.
    m_valueFrame->setEnabled(m_decision.valueAreaEnabled());
    applyValidity();
}

void WizParamEditDialog::fillValues()
{
    m_values->clear();
    const QList<SelectionValueRow> rows = m_decision.valueRows();
    QList<QTreeWidgetItem *> items;
    items.reserve(rows.size());
    QTreeWidgetItem *selected = nullptr;
    const QStringList nonLiterals = m_decision.nonLiteralValues();
    const QIcon warning = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    for (const SelectionValueRow &row : rows) {
        items.append(new QTreeWidgetItem(QStringList{ row.value, row.name }));
        if (nonLiterals.contains(row.value))
            items.last()->setIcon(0, warning);
        if (row.selected)
            selected = items.last();
    }
    m_values->addTopLevelItems(items);
    // Without a chosen value no row is marked: Modify and Delete then wait for a click.
    m_values->setCurrentItem(selected);
    if (selected)
        m_values->scrollToItem(selected);
    // A warning, not a refusal: OK keeps its own rule.
    m_quote->setEnabled(!nonLiterals.isEmpty());
    m_warning->setText(nonLiterals.isEmpty() ? QString()
                                             : extraText(ExtraText::NotLiteralWarning).arg(nonLiterals.join(QLatin1String(", "))));
    m_warning->setVisible(!nonLiterals.isEmpty());
    applyValidity();
}

void WizParamEditDialog::nameEdited(const QString &text)
{
    const QString name = m_decision.editName(text);
    if (name != text) {
        // The prefix goes in front of what was typed; the caret stays after the typing.
        const int caret = m_name->cursorPosition() + int(name.size() - text.size());
        m_name->setText(name);
        m_name->setCursorPosition(caret);
    }
    applyValidity();
}

void WizParamEditDialog::titleEdited(const QString &text)
{
    m_decision.editTitle(text);
    applyValidity();
}

void WizParamEditDialog::typeToggled(int option, bool checked)
{
    if (!checked)
        return;
    m_decision.chooseTypeOption(option);
    showKind();
}

int WizParamEditDialog::selectedValueRow() const
{
    const QList<QTreeWidgetItem *> selected = m_values->selectedItems();
    return selected.isEmpty() ? -1 : m_values->indexOfTopLevelItem(selected.first());
}

void WizParamEditDialog::addValueClicked()
{
    if (const std::optional<SelectionValue> added = editSelectionValue(this, QString(), QString())) {
        m_decision.storeValue(added->value, added->name);
        fillValues();
    }
}

void WizParamEditDialog::modifyValueClicked()
{
    const int row = selectedValueRow();
    if (row < 0)
        return;
    const QTreeWidgetItem *item = m_values->topLevelItem(row);
    const QString oldValue = item->text(0);
    if (const std::optional<SelectionValue> changed = editSelectionValue(this, oldValue, item->text(1))) {
        m_decision.modifyValue(oldValue, changed->value, changed->name);
        fillValues();
    }
}

void WizParamEditDialog::quoteClicked()
{
    if (m_decision.quoteValues())
        fillValues();
}

void WizParamEditDialog::deleteValueClicked()
{
    const int row = selectedValueRow();
    if (row < 0)
        return;
    m_decision.deleteRow(row);
    fillValues();
}

void WizParamEditDialog::getFromDBClicked()
{
    form::guarded(this, [this] {
        if (const auto values = retrieveSelectionValues(this, m_source.accessor, m_source.database)) {
            m_decision.takeValues(*values);
            fillValues();
        }
    });
}

void WizParamEditDialog::okClicked()
{
    if (!m_decision.isValid()) {
        tessaly::UiService::instance().message(text(StringId::InputItemsRequiredMessage),
                                               text(StringId::ParamEditCaption), tessaly::UiService::Buttons::Ok);
        return;
    }
    accept();
}

std::optional<std::shared_ptr<ParamInfo>> editParameter(QWidget *parent, const std::shared_ptr<ParamInfo> &parameter,
                                                        const ValueSource &source)
{
    WizParamEditDialog dialog(parent);
    dialog.setParameter(parameter);
    dialog.setValueSource(source);
    if (tessaly::UiService::instance().execDialog(dialog) != QDialog::Accepted)
        return std::nullopt;
    return dialog.committedCopy();
}

} // namespace veldra
