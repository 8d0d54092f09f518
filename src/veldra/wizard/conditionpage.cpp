#include "veldra/wizard/conditionpage.h"

#include "veldra/dialogs/formhelpers.h"
#include "veldra/dialogs/wizparamdialog.h"
#include "veldra/resources/extratext.h"
#include "veldra/wizard/conditionstep.h"
#include "veldra/wizard/wizardstate.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextCursor>
#include <QVBoxLayout>

namespace veldra {

using namespace form;

namespace {
constexpr int KeyRole = Qt::UserRole;
} // namespace

ConditionPage::ConditionPage(WizardState &state, QWidget *parent)
    : WizardPage(state.condition(), parent), m_state(state), m_step(state.condition())
{
    setObjectName(QStringLiteral("ConditionPage"));

    auto *caption = newLabel(QStringLiteral("lblStep4"), StringId::ConditionStepCaption, this);

    auto *columnFrame = newGroupBox(QStringLiteral("CondColFrame"), StringId::CondColumnFrameCaption, this);
    m_tableCombo = new QComboBox(columnFrame);
    m_tableCombo->setObjectName(QStringLiteral("CondTableCombo"));
    m_tableCombo->setAccessibleName(nameFromCaption(StringId::SelectTableLabel));
    m_columnList = new QListWidget(columnFrame);
    m_columnList->setObjectName(QStringLiteral("CondColumnList"));
    m_columnList->setUniformItemSizes(true);
    m_columnList->setAccessibleName(extraText(ExtraText::ColumnListName));
    auto *addButton = newButton(QStringLiteral("CondColAddButton"), StringId::CondColumnAddButton, columnFrame);
    addButton->setAccessibleName(extraText(ExtraText::AddColumnToConditionName)); // its caption is ">>"
    auto *columnLayout = new QGridLayout(columnFrame);
    columnLayout->addWidget(m_tableCombo, 0, 0);
    columnLayout->addWidget(m_columnList, 1, 0);
    columnLayout->addWidget(addButton, 1, 1, Qt::AlignVCenter);

    auto *tokenFrame = newGroupBox(QStringLiteral("CondItemFrame"), StringId::CondTokenFrameCaption, this);
    auto *tokenLayout = new QGridLayout(tokenFrame);
    for (int index = 0; index < ConditionStep::TokenCount; ++index) {
        auto *button = new QPushButton(ConditionStep::tokenCaption(index), tokenFrame);
        // The system's control array CondItemButton, one name per index.
        button->setObjectName(QStringLiteral("CondItemButton_%1").arg(index));
        tokenLayout->addWidget(button, index / 2, index % 2);
        connect(button, &QPushButton::clicked, this, [this, index] { insertToken(index); });
    }
    auto *paramButton = newButton(QStringLiteral("CondParamButton"), StringId::CondParamButton, this);
    auto *tokenColumn = new QVBoxLayout;
    tokenColumn->addWidget(tokenFrame);
    tokenColumn->addWidget(paramButton);
    tokenColumn->addStretch(1);

    auto *conditionFrame = newGroupBox(QStringLiteral("CondCondFrame"), StringId::CondTextFrameCaption, this);
    m_conditionText = new QPlainTextEdit(conditionFrame);
    m_conditionText->setObjectName(QStringLiteral("ConditionText"));
    m_conditionText->setTabChangesFocus(true);
    m_conditionText->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    auto *conditionLayout = new QVBoxLayout(conditionFrame);
    conditionLayout->addWidget(m_conditionText);

    auto *top = new QHBoxLayout;
    top->addWidget(columnFrame, 1);
    top->addLayout(tokenColumn);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(caption);
    layout->addLayout(top, 3);
    layout->addWidget(conditionFrame, 2);

    connect(m_tableCombo, &QComboBox::currentIndexChanged, this,
            [this] { guarded(this, [this] { fillColumnList(); }); });
    connect(addButton, &QPushButton::clicked, this, &ConditionPage::insertColumn);
    connect(paramButton, &QPushButton::clicked, this, &ConditionPage::openParameterDialog);
    connect(m_columnList, &QListWidget::itemDoubleClicked, this, &ConditionPage::insertColumn);
    connect(m_conditionText, &QPlainTextEdit::textChanged, this, [this] {
        guarded(this, [this] { m_step.setCondition(m_conditionText->toPlainText()); });
        Q_EMIT completeChanged();
    });
}

void ConditionPage::showEntered()
{
    const QString shown = m_tableCombo->currentText();
    {
        const QSignalBlocker blocker(m_tableCombo);
        m_tableCombo->clear();
        m_tableCombo->addItems(m_step.tableNames());
        m_tableCombo->setCurrentIndex(std::max(0, m_tableCombo->findText(shown)));
    }
    fillColumnList();
    showCondition();
}

void ConditionPage::insertParameterToken(const QString &name)
{
    guarded(this, [this, &name] {
        if (const auto insertion = m_step.insertParameterToken(name, selectionStart(), selectionEnd()))
            apply(*insertion);
    });
}

void ConditionPage::fillColumnList()
{
    m_columnList->clear();
    const QList<ConditionStep::ColumnItem> items = m_step.columnItems(m_tableCombo->currentText());
    for (const ConditionStep::ColumnItem &column : items) {
        auto *item = new QListWidgetItem(column.text, m_columnList);
        item->setData(KeyRole, column.key);
    }
}

void ConditionPage::showCondition()
{
    {
        // Showing the condition is no change of it.
        const QSignalBlocker blocker(m_conditionText);
        m_conditionText->setPlainText(m_step.condition());
    }
    m_conditionText->moveCursor(QTextCursor::End);
}

void ConditionPage::insertColumn()
{
    guarded(this, [this] {
        const QListWidgetItem *item = m_columnList->currentItem();
        if (!item || !item->isSelected())
            return;
        const ConditionStep::ColumnItem column{ item->text(), item->data(KeyRole).toString() };
        apply(m_step.insertColumnToken(m_tableCombo->currentText(), column, selectionStart(), selectionEnd()));
    });
}

void ConditionPage::insertToken(int index)
{
    guarded(this, [this, index] { apply(m_step.insertToken(index, selectionStart(), selectionEnd())); });
}

void ConditionPage::openParameterDialog()
{
    guarded(this, [this] {
        if (const std::optional<QString> name = runParameterDialog(m_state.definition(), m_state.accessor(), this))
            insertParameterToken(*name);
    });
}

void ConditionPage::apply(const ConditionStep::Insertion &insertion)
{
    QTextCursor cursor = m_conditionText->textCursor();
    cursor.setPosition(insertion.start);
    cursor.setPosition(insertion.end, QTextCursor::KeepAnchor);
    // Through the cursor, so that the person can undo it; the change stores the condition.
    cursor.insertText(insertion.text);
    cursor.setPosition(insertion.caret);
    m_conditionText->setTextCursor(cursor);
    m_conditionText->setFocus();
}

int ConditionPage::selectionStart() const
{
    return m_conditionText->textCursor().selectionStart();
}

int ConditionPage::selectionEnd() const
{
    return m_conditionText->textCursor().selectionEnd();
}

} // namespace veldra
