#include "veldra/wizard/grouporderpage.h"

#include "veldra/dialogs/formhelpers.h"
#include "veldra/wizard/grouporderstep.h"
#include "veldra/wizard/wizardstate.h"
#include "veldra/resources/extratext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

namespace veldra {

using namespace form;

GroupOrderPage::GroupOrderPage(WizardState &state, QWidget *parent)
    : WizardPage(state.groupOrder(), parent), m_step(state.groupOrder())
{
    setObjectName(QStringLiteral("GroupOrderPage"));
    auto *frame = newGroupBox(QStringLiteral("GrpOrdFrame"), StringId::GroupOrderStepCaption, this);

    m_topnCheck = newCheckBox(QStringLiteral("GrpOrdTopnCheck"), StringId::TopNCheck, frame);
    m_topnLabel = newLabel(QStringLiteral("GrpOrdTopnLabel"), StringId::TopNLabel, frame);
    m_topnText = new QLineEdit(frame);
    m_topnText->setObjectName(QStringLiteral("GrpOrdTopnText"));
    m_topnText->setMaximumWidth(m_topnText->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 14);
    m_topnLabel->setBuddy(m_topnText);
    m_topnParamCheck = newCheckBox(QStringLiteral("GrpOrdTopnParamCheck"), StringId::TopNParamCheck, frame);
    // Both "Make as a parameter" boxes read the same; a screen reader tells them apart by these.
    m_topnParamCheck->setAccessibleName(extraText(ExtraText::TopNParamName));

    m_groupCheck = newCheckBox(QStringLiteral("GrpOrdGroupCheck"), StringId::GroupByCheck, frame);
    m_groupList = new QListWidget(frame);
    m_groupList->setObjectName(QStringLiteral("GrpOrdGroupList"));
    m_groupList->setAccessibleName(extraText(ExtraText::GroupListName));

    m_orderCheck = newCheckBox(QStringLiteral("GrpOrdOrderCheck"), StringId::OrderByCheck, frame);
    m_orderLabel = newLabel(QStringLiteral("GrpOrdOrderLabel"), StringId::OrderByLabel, frame);
    m_orderCombo = new QComboBox(frame);
    m_orderCombo->setObjectName(QStringLiteral("GrpOrdOrderCombo"));
    m_orderLabel->setBuddy(m_orderCombo);
    // The system's option array OrderByOption: index 0 ascending, 1 descending.
    m_ascending = new QRadioButton(text(StringId::AscendingOption), frame);
    m_ascending->setObjectName(QStringLiteral("OrderByOption_0"));
    m_descending = new QRadioButton(text(StringId::DescendingOption), frame);
    m_descending->setObjectName(QStringLiteral("OrderByOption_1"));
    m_orderParamCheck = newCheckBox(QStringLiteral("GrpOrdOrderParamCheck"), StringId::OrderByParamCheck, frame);
    m_orderParamCheck->setAccessibleName(extraText(ExtraText::OrderByParamName));

    // Each clause's details sit indented under its check box.
    const int indent = style()->pixelMetric(QStyle::PM_IndicatorWidth) + 8;
    auto *rowCount = new QHBoxLayout;
    rowCount->addSpacing(indent);
    rowCount->addWidget(m_topnLabel);
    rowCount->addWidget(m_topnText);
    rowCount->addSpacing(12);
    rowCount->addWidget(m_topnParamCheck);
    rowCount->addStretch(1);
    auto *grouping = new QHBoxLayout;
    grouping->addSpacing(indent);
    grouping->addWidget(m_groupList, 1);
    auto *orderColumn = new QHBoxLayout;
    orderColumn->addSpacing(indent);
    orderColumn->addWidget(m_orderLabel);
    orderColumn->addWidget(m_orderCombo, 1);
    auto *orderOptions = new QHBoxLayout;
    orderOptions->addSpacing(indent);
    orderOptions->addWidget(m_ascending);
    orderOptions->addWidget(m_descending);
    orderOptions->addSpacing(12);
    orderOptions->addWidget(m_orderParamCheck);
    orderOptions->addStretch(1);

    auto *frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(m_topnCheck);
    frameLayout->addLayout(rowCount);
    frameLayout->addSpacing(8);
    frameLayout->addWidget(m_groupCheck);
    frameLayout->addLayout(grouping, 1);
    frameLayout->addSpacing(8);
    frameLayout->addWidget(m_orderCheck);
    frameLayout->addLayout(orderColumn);
    frameLayout->addLayout(orderOptions);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);

    connect(m_topnCheck, &QCheckBox::clicked, this, [this](bool on) {
        guarded(this, [this, on] {
            m_step.setRowCountOn(on);
            refreshRowCount();
        });
    });
    connect(m_topnText, &QLineEdit::textEdited, this,
            [this](const QString &text) { guarded(this, [this, &text] { m_step.setRowCountText(text); }); });
    m_topnText->installEventFilter(this);
    connect(m_topnParamCheck, &QCheckBox::clicked, this, [this](bool on) { m_step.setRowCountAsParam(on); });

    connect(m_groupCheck, &QCheckBox::clicked, this, [this](bool on) {
        m_step.setGroupByOn(on);
        m_groupList->setEnabled(on);
    });
    // A click on an item's text flips its check, as a click on the box does.
    connect(m_groupList, &QListWidget::itemPressed, this,
            [this](QListWidgetItem *item) { m_pressedCheck = item->checkState(); });
    connect(m_groupList, &QListWidget::itemClicked, this, [this](QListWidgetItem *item) {
        if (item->checkState() == m_pressedCheck)
            item->setCheckState(m_pressedCheck == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    });
    connect(m_groupList, &QListWidget::itemChanged, this, [this](QListWidgetItem *item) {
        m_step.setGroupItemChecked(item->text(), item->checkState() == Qt::Checked);
    });

    connect(m_orderCheck, &QCheckBox::clicked, this, [this](bool on) {
        guarded(this, [this, on] {
            m_step.setOrderByOn(on);
            fillOrderList();
            refreshOrderDirection();
            refreshOrderParam();
        });
    });
    connect(m_ascending, &QRadioButton::clicked, this, [this] { m_step.setAscending(true); });
    connect(m_descending, &QRadioButton::clicked, this, [this] { m_step.setAscending(false); });
    connect(m_orderCombo, &QComboBox::currentIndexChanged, this, [this] {
        m_step.setOrderColumn(m_orderCombo->currentText());
        Q_EMIT completeChanged();
    });
    connect(m_orderParamCheck, &QCheckBox::clicked, this, [this](bool on) {
        guarded(this, [this, on] {
            m_step.setOrderByAsParam(on);
            fillOrderList();
            refreshOrderDirection();
        });
    });
}

void GroupOrderPage::showEntered()
{
    refreshRowCount();
    showGrouping();
    {
        const QSignalBlocker blocker(m_orderCheck);
        m_orderCheck->setChecked(m_step.orderByOn());
    }
    fillOrderList();
    refreshOrderDirection();
    refreshOrderParam();
}

bool GroupOrderPage::eventFilter(QObject *watched, QEvent *event)
{
    // A count below 1 cannot be left in the box.
    if (watched == m_topnText && event->type() == QEvent::FocusOut && m_topnText->isEnabled()
        && !GroupOrderStep::canLeaveRowCount(m_topnText->text())) {
        QTimer::singleShot(0, m_topnText, [edit = m_topnText] {
            edit->setFocus();
            edit->selectAll();
        });
    }
    return WizardPage::eventFilter(watched, event);
}

void GroupOrderPage::refreshRowCount()
{
    const QSignalBlocker blocker(m_topnParamCheck);
    m_topnCheck->setChecked(m_step.rowCountOn());
    const bool enabled = m_step.rowCountEnabled();
    m_topnLabel->setEnabled(enabled);
    m_topnText->setEnabled(enabled);
    m_topnParamCheck->setEnabled(enabled);
    m_topnText->setText(m_step.rowCountText());
    if (enabled)
        m_topnParamCheck->setChecked(m_step.rowCountAsParam());
}

void GroupOrderPage::showGrouping()
{
    m_groupCheck->setChecked(m_step.groupByOn());
    const QSignalBlocker blocker(m_groupList);
    m_groupList->clear();
    const QList<GroupOrderStep::GroupItem> items = m_step.groupItems();
    for (const GroupOrderStep::GroupItem &group : items) {
        auto *item = new QListWidgetItem(group.name, m_groupList);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(group.checked ? Qt::Checked : Qt::Unchecked);
    }
    m_groupList->setEnabled(m_step.groupByOn());
}

void GroupOrderPage::fillOrderList()
{
    {
        const QSignalBlocker blocker(m_orderCombo);
        m_orderCombo->clear();
        m_orderCombo->addItems(m_step.orderCandidates());
        m_orderCombo->setCurrentIndex(m_step.orderColumnIndex());
    }
    const bool enabled = m_step.orderColumnEnabled();
    m_orderLabel->setEnabled(enabled);
    m_orderCombo->setEnabled(enabled);
    Q_EMIT completeChanged();
}

void GroupOrderPage::refreshOrderDirection()
{
    (m_step.ascending() ? m_ascending : m_descending)->setChecked(true);
    const bool enabled = m_step.orderColumnEnabled();
    m_ascending->setEnabled(enabled);
    m_descending->setEnabled(enabled);
}

void GroupOrderPage::refreshOrderParam()
{
    m_orderParamCheck->setChecked(m_step.orderByAsParam());
    m_orderParamCheck->setEnabled(m_step.orderParamEnabled());
}

} // namespace veldra
