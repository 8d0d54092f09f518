#include "veldra/dialogs/wizparamdialog.h"

#include "tessaly/uiservice.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/dialogs/wizparameditdialog.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace veldra {

WizParamDialog::WizParamDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizParamDialog"));
    setWindowTitle(text(StringId::ParamListCaption));

    QGroupBox *frame = form::newGroupBox(QStringLiteral("ListFrame"), StringId::ParamListFrameCaption, this);
    m_list = form::newReportList(QStringLiteral("ParamList"),
                                 { StringId::ParamListNameHeader, StringId::ParamListTypeHeader,
                                   StringId::ParamListTitleHeader },
                                 frame);
    m_list->setAccessibleName(text(StringId::ParamListFrameCaption));
    m_list->setMinimumSize(form::textWidth(m_list, 76), m_list->fontMetrics().lineSpacing() * 10);
    QPushButton *add = form::newButton(QStringLiteral("AddButton"), StringId::ParamListAddButton, frame);
    QPushButton *modify = form::newButton(QStringLiteral("EditButton"), StringId::ParamListModifyButton, frame);
    QPushButton *remove = form::newButton(QStringLiteral("DeleteButton"), StringId::ParamListDeleteButton, frame);

    auto *side = new QVBoxLayout;
    side->addWidget(add);
    side->addWidget(modify);
    side->addWidget(remove);
    side->addStretch(1);
    auto *frameLayout = new QHBoxLayout(frame);
    frameLayout->addWidget(m_list, 1);
    frameLayout->addLayout(side);

    QLabel *selectedLabel = form::newLabel(QStringLiteral("SelectedLabel"), StringId::ParamListSelectedLabel, this);
    m_selected = form::newValueLabel(QStringLiteral("ParamSelectedText"), this);
    auto *selectedRow = new QHBoxLayout;
    selectedRow->addWidget(selectedLabel);
    selectedRow->addWidget(m_selected, 1);

    QDialogButtonBox *buttons = form::newButtonBox(this);
    m_ok = form::addButton(buttons, QStringLiteral("OKButton"), StringId::ParamListOKButton,
                           QDialogButtonBox::AcceptRole);
    form::addButton(buttons, QStringLiteral("CancelButton"), StringId::ParamListCancelButton,
                    QDialogButtonBox::RejectRole);
    m_ok->setDefault(true);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(frame, 1);
    layout->addLayout(selectedRow);
    layout->addWidget(buttons);

    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &WizParamDialog::rowSelected);
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &WizParamDialog::rowDoubleClicked);
    connect(add, &QPushButton::clicked, this, &WizParamDialog::addClicked);
    connect(modify, &QPushButton::clicked, this, &WizParamDialog::modifyClicked);
    connect(remove, &QPushButton::clicked, this, &WizParamDialog::deleteClicked);
    connect(buttons, &QDialogButtonBox::accepted, this, &WizParamDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    refresh();
}

WizParamDialog::~WizParamDialog()
{
    tessaly::detachChildSignals(this);
}

void WizParamDialog::setQueryDefinition(const std::shared_ptr<SQLInfo> &definition)
{
    m_decision.setDefinition(definition);
    refresh();
}

void WizParamDialog::refresh()
{
    {
        // Marking the chosen row is not a person's click.
        const QSignalBlocker blocker(m_list);
        m_list->clear();
        const QList<ParamListRow> rows = m_decision.rows();
        QList<QTreeWidgetItem *> items;
        items.reserve(rows.size());
        for (const ParamListRow &row : rows)
            items.append(new QTreeWidgetItem(QStringList{ row.name, row.type, row.title }));
        m_list->addTopLevelItems(items);
        // Names and kinds are short: they keep their whole width, the title takes the rest.
        for (const int column : { 0, 1 }) {
            m_list->resizeColumnToContents(column);
            const int width = m_list->columnWidth(column) + form::textWidth(m_list, 2);
            m_list->setColumnWidth(column, std::max(width, form::textWidth(m_list, 16)));
        }
        const int selected = ParamListDecision::selectedRow(rows);
        if (selected >= 0) {
            m_list->setCurrentItem(items.at(selected));
            m_list->scrollToItem(items.at(selected));
        } else {
            m_list->setCurrentItem(nullptr);
        }
    }
    refreshLabel();
}

void WizParamDialog::refreshLabel()
{
    m_selected->setText(m_decision.selectedName());
    m_ok->setEnabled(m_decision.okEnabled());
}

void WizParamDialog::rowSelected()
{
    const QList<QTreeWidgetItem *> selected = m_list->selectedItems();
    if (selected.isEmpty())
        return;
    m_decision.select(selected.first()->text(0));
    refreshLabel();
}

void WizParamDialog::rowDoubleClicked()
{
    if (m_list->selectedItems().isEmpty())
        return;
    rowSelected();
    modifyClicked();
}

void WizParamDialog::addClicked()
{
    // The new record reaches the definition only when the edit dialog is confirmed.
    edit(std::make_shared<ParamInfo>());
}

void WizParamDialog::modifyClicked()
{
    if (const std::shared_ptr<ParamInfo> parameter = m_decision.parameterToModify())
        edit(parameter);
}

void WizParamDialog::edit(const std::shared_ptr<ParamInfo> &parameter)
{
    form::guarded(this, [this, &parameter] {
        const auto definition = m_decision.definition();
        const ValueSource source{ m_accessor, definition ? definition->dbInfo() : nullptr };
        if (const auto confirmed = editParameter(this, parameter, source))
            m_decision.chooseParameter(*confirmed);
    });
    // Modify edits the held record as the person types, so even after Cancel the rows may be out
    // of date.
    refresh();
}

void WizParamDialog::deleteClicked()
{
    const QList<QTreeWidgetItem *> selected = m_list->selectedItems();
    if (selected.isEmpty())
        return;
    m_decision.deleteRow(m_list->indexOfTopLevelItem(selected.first()));
    refresh();
}

void WizParamDialog::okClicked()
{
    if (m_decision.selectedName().isEmpty())
        return;
    accept();
}

std::optional<QString> runParameterDialog(const std::shared_ptr<SQLInfo> &definition, TSAccessor *accessor,
                                          QWidget *parent)
{
    WizParamDialog dialog(parent);
    dialog.setQueryDefinition(definition);
    dialog.setAccessor(accessor);
    if (tessaly::UiService::instance().execDialog(dialog) != QDialog::Accepted)
        return std::nullopt;
    return dialog.selectedName();
}

} // namespace veldra
