#include "veldra/wizard/columnpage.h"

#include "tessaly/uiservice.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/dialogs/wizexprdialog.h"
#include "veldra/wizard/columnstep.h"
#include "veldra/resources/extratext.h"
#include "veldra/wizard/inlineeditdelegate.h"
#include "veldra/wizard/inlineeditlist.h"
#include "veldra/wizard/wizardstate.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace veldra {

using namespace form;
using tessaly::UiService;

namespace {

enum SelectColumn { AliasColumn, TypeColumn, NameColumn };

QString aliasTip()
{
    return extraText(ExtraText::AliasEditTip) + u'\n' + extraText(ExtraText::AliasRuleTip);
}

// Items are edited in place only where the page allows it, and never by a double-click: that
// inserts or removes.
QTreeWidget *newEditableList(const QString &objectName, const QList<StringId> &headers, int editColumn,
                             InlineEditDelegate **delegate, QWidget *parent)
{
    auto *list = new InlineEditList(editColumn, parent);
    setUpReportList(list, objectName, headers);
    *delegate = new InlineEditDelegate(editColumn, list);
    list->setItemDelegate(*delegate);
    return list;
}

} // namespace

ColumnPage::ColumnPage(WizardState &state, QWidget *parent)
    : WizardPage(state.columns(), parent), m_step(state.columns())
{
    setObjectName(QStringLiteral("ColumnPage"));

    // The source of new items: the chosen tables' columns and the free expressions.
    auto *sourceFrame = newGroupBox(QStringLiteral("SelectColumnListFrame"), StringId::SourceFrameCaption, this);
    m_tabs = new QTabWidget(sourceFrame);
    m_tabs->setObjectName(QStringLiteral("ColExprTab"));

    auto *columnTab = new QWidget(m_tabs);
    auto *tableLabel = newLabel(QStringLiteral("SelectTableComboLabel"), StringId::SelectTableLabel, columnTab);
    m_tableCombo = new QComboBox(columnTab);
    m_tableCombo->setObjectName(QStringLiteral("SelectTableCombo"));
    tableLabel->setBuddy(m_tableCombo);
    m_columnList = newReportList(QStringLiteral("SelectColumnList"), { StringId::ColumnListHeader }, columnTab);
    m_columnList->setAccessibleName(extraText(ExtraText::ColumnListName));
    auto *tableRow = new QHBoxLayout;
    tableRow->addWidget(tableLabel);
    tableRow->addWidget(m_tableCombo, 1);
    auto *columnLayout = new QVBoxLayout(columnTab);
    columnLayout->addLayout(tableRow);
    columnLayout->addWidget(m_columnList, 1);

    auto *functionTab = new QWidget(m_tabs);
    InlineEditDelegate *exprDelegate = nullptr;
    m_exprList = newEditableList(QStringLiteral("SelectExprList"), { StringId::FunctionListHeader }, 0, &exprDelegate,
                                 functionTab);
    m_exprList->setAccessibleName(extraText(ExtraText::ExpressionListName));
    auto *addButton = newButton(QStringLiteral("ExprAddButton"), StringId::ExprAddButton, functionTab);
    m_exprEditButton = newButton(QStringLiteral("ExprEditButton"), StringId::ExprModifyButton, functionTab);
    m_exprDeleteButton = newButton(QStringLiteral("ExprDeleteButton"), StringId::ExprDeleteButton, functionTab);
    // In Japanese "Delete" and the select list's "Remove" read the same.
    m_exprDeleteButton->setAccessibleName(extraText(ExtraText::DeleteExpressionName));
    auto *exprButtons = new QHBoxLayout;
    exprButtons->addStretch(1);
    exprButtons->addWidget(addButton);
    exprButtons->addWidget(m_exprEditButton);
    exprButtons->addWidget(m_exprDeleteButton);
    auto *functionLayout = new QVBoxLayout(functionTab);
    functionLayout->addWidget(m_exprList, 1);
    functionLayout->addLayout(exprButtons);

    m_tabs->addTab(columnTab, text(StringId::ColumnTab));
    m_tabs->addTab(functionTab, text(StringId::FunctionTab));
    auto *sourceLayout = new QVBoxLayout(sourceFrame);
    sourceLayout->addWidget(m_tabs);

    // Between the two frames: what moves items from the source into the select list and back.
    m_insertButton = newButton(QStringLiteral("SelectInsertButton"), StringId::SelectInsertButton, this);
    m_removeButton = newButton(QStringLiteral("SelectRemoveButton"), StringId::SelectRemoveButton, this);
    auto *moveButtons = new QVBoxLayout;
    moveButtons->addStretch(1);
    moveButtons->addWidget(m_insertButton);
    moveButtons->addWidget(m_removeButton);
    moveButtons->addStretch(1);

    auto *selectFrame = newGroupBox(QStringLiteral("SelectFrame"), StringId::SelectFrameCaption, this);
    InlineEditDelegate *aliasDelegate = nullptr;
    m_selectList = newEditableList(QStringLiteral("SelectList"),
                                   { StringId::SelectAliasHeader, StringId::SelectTypeHeader,
                                     StringId::SelectColumnQueryHeader },
                                   AliasColumn, &aliasDelegate, selectFrame);
    // A double click removes a row, as it always did; renaming is told here and offered in a
    // menu.
    m_selectList->headerItem()->setToolTip(AliasColumn, aliasTip());
    m_selectList->setAccessibleName(text(StringId::SelectFrameCaption));
    m_selectList->setAccessibleDescription(extraText(ExtraText::AliasEditDescription));
    m_selectList->setContextMenuPolicy(Qt::CustomContextMenu);
    m_selectMenu = new QMenu(m_selectList);
    m_selectMenu->setObjectName(QStringLiteral("SelectListMenu"));
    m_renameAction = m_selectMenu->addAction(extraText(ExtraText::RenameAliasAction));
    m_renameAction->setObjectName(QStringLiteral("RenameAliasAction"));
    m_renameAction->setShortcut(QKeySequence(Qt::Key_F2));
    m_removeAction = m_selectMenu->addAction(text(StringId::SelectRemoveButton));
    m_removeAction->setObjectName(QStringLiteral("RemoveSelectionAction"));
    // The display name takes what the alias and the type leave, and is never cut short: a
    // longer one widens its column and the list scrolls sideways (see fillSelectList).
    const int averageChar = m_selectList->fontMetrics().horizontalAdvance(QLatin1Char('x'));
    QHeaderView *header = m_selectList->header();
    header->setSectionResizeMode(TypeColumn, QHeaderView::ResizeToContents);
    header->resizeSection(AliasColumn, averageChar * 12);
    m_selectList->setMinimumWidth(averageChar * 36);
    m_upButton = newButton(QStringLiteral("SelectUpButton"), StringId::SelectUpButton, selectFrame);
    m_downButton = newButton(QStringLiteral("SelectDownButton"), StringId::SelectDownButton, selectFrame);
    auto *orderButtons = new QVBoxLayout;
    orderButtons->addStretch(1);
    orderButtons->addWidget(m_upButton);
    orderButtons->addWidget(m_downButton);
    orderButtons->addStretch(1);
    auto *selectLayout = new QHBoxLayout(selectFrame);
    selectLayout->addWidget(m_selectList, 1);
    selectLayout->addLayout(orderButtons);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(sourceFrame, 1);
    layout->addLayout(moveButtons);
    layout->addWidget(selectFrame, 2);

    connect(m_tableCombo, &QComboBox::currentIndexChanged, this,
            [this] { guarded(this, [this] { fillColumnList(); }); });
    connect(m_tabs, &QTabWidget::currentChanged, this, &ColumnPage::updateButtons);
    connect(m_columnList, &QTreeWidget::currentItemChanged, this, &ColumnPage::updateButtons);
    connect(m_columnList, &QTreeWidget::itemDoubleClicked, this, &ColumnPage::insertClicked);
    connect(m_exprList, &QTreeWidget::itemDoubleClicked, this, &ColumnPage::insertClicked);
    connect(m_exprList, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
        m_step.setSelectedExpression(item ? item->text(0) : QString());
        updateButtons();
    });
    connect(m_selectList, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *item) {
        m_step.setSelectedName(item ? item->text(NameColumn) : QString());
        updateButtons();
    });
    connect(m_selectList, &QTreeWidget::itemDoubleClicked, this, &ColumnPage::removeClicked);
    connect(m_selectList, &QWidget::customContextMenuRequested, this, &ColumnPage::showSelectMenu);
    connect(m_renameAction, &QAction::triggered, this, [this] {
        if (QTreeWidgetItem *item = m_selectList->currentItem())
            m_selectList->editItem(item, AliasColumn);
    });
    connect(m_removeAction, &QAction::triggered, this, &ColumnPage::removeClicked);
    connect(m_insertButton, &QPushButton::clicked, this, &ColumnPage::insertClicked);
    connect(m_removeButton, &QPushButton::clicked, this, &ColumnPage::removeClicked);
    connect(m_upButton, &QPushButton::clicked, this, [this] { moveClicked(-1); });
    connect(m_downButton, &QPushButton::clicked, this, [this] { moveClicked(1); });
    connect(addButton, &QPushButton::clicked, this, &ColumnPage::addExpression);
    connect(m_exprEditButton, &QPushButton::clicked, this, &ColumnPage::modifyExpression);
    connect(m_exprDeleteButton, &QPushButton::clicked, this, &ColumnPage::deleteExpression);

    connect(aliasDelegate, &InlineEditDelegate::edited, this, &ColumnPage::aliasEdited);
    exprDelegate->setStartHandler([this](const QModelIndex &index) {
        const QString expression = index.data().toString();
        switch (m_step.startExpressionEdit(expression)) {
        case ColumnStep::ExpressionEditStart::AskForDialog:
            // Asked once the view is done refusing the editor.
            QMetaObject::invokeMethod(this, [this, expression] { askForExpressionDialog(expression); },
                                      Qt::QueuedConnection);
            return InlineEditDelegate::Start::Refuse;
        case ColumnStep::ExpressionEditStart::InlineFromEmpty:
            return InlineEditDelegate::Start::FromEmpty;
        case ColumnStep::ExpressionEditStart::Inline:
            break;
        }
        return InlineEditDelegate::Start::FromText;
    });
    connect(exprDelegate, &InlineEditDelegate::edited, this,
            [this](int, const QString &oldText, const QString &newText) { expressionEdited(oldText, newText); });

    updateButtons();
}

void ColumnPage::showOpened()
{
    m_tabs->setCurrentIndex(0);
}

void ColumnPage::showEntered()
{
    const QString shown = m_tableCombo->currentText();
    {
        const QSignalBlocker blocker(m_tableCombo);
        m_tableCombo->clear();
        m_tableCombo->addItems(m_step.tableNames());
        m_tableCombo->setCurrentIndex(std::max(0, m_tableCombo->findText(shown)));
    }
    fillColumnList();
    fillExpressionList();
    fillSelectList();
}

void ColumnPage::fillColumnList()
{
    // Built aside and added at once: a table can have thousands of columns.
    QList<QTreeWidgetItem *> items;
    const QStringList names = m_step.columnNames(m_tableCombo->currentText());
    items.reserve(names.size());
    for (const QString &name : names)
        items.append(new QTreeWidgetItem(QStringList{ name }));
    m_columnList->clear();
    m_columnList->addTopLevelItems(items);
    if (!items.isEmpty())
        m_columnList->setCurrentItem(items.first());
    updateButtons();
}

void ColumnPage::fillExpressionList()
{
    const QSignalBlocker blocker(m_exprList);
    m_exprList->clear();
    QStringList texts = m_step.expressionTexts();
    // The last row is where a new expression is typed.
    texts.append(QString());
    QTreeWidgetItem *current = nullptr;
    for (const QString &expression : std::as_const(texts)) {
        auto *item = new QTreeWidgetItem(m_exprList, QStringList{ expression });
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        if (!expression.isEmpty() && expression == m_step.selectedExpression())
            current = item;
    }
    if (current)
        m_exprList->setCurrentItem(current);
    else
        m_step.setSelectedExpression(QString());
    updateButtons();
}

void ColumnPage::fillSelectList()
{
    const QSignalBlocker blocker(m_selectList);
    m_selectList->clear();
    const QList<ColumnStep::SelectRow> rows = m_step.selectRows();
    const int selected = m_step.selectedRow();
    for (const ColumnStep::SelectRow &row : rows) {
        auto *item = new QTreeWidgetItem(m_selectList, QStringList{ row.label, row.type, row.displayName });
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setToolTip(AliasColumn, aliasTip());
    }
    m_selectList->resizeColumnToContents(NameColumn);
    if (selected >= 0)
        m_selectList->setCurrentItem(m_selectList->topLevelItem(selected));
    updateButtons();
}

void ColumnPage::showSelectMenu(const QPoint &position)
{
    QTreeWidgetItem *item = m_selectList->itemAt(position);
    if (!item)
        return;
    m_selectList->setCurrentItem(item);
    m_selectMenu->popup(m_selectList->viewport()->mapToGlobal(position));
}

QString ColumnPage::selectedDisplayName() const
{
    return m_step.selectedName();
}

QString ColumnPage::selectedExpressionText() const
{
    return m_step.selectedExpression();
}

void ColumnPage::updateButtons()
{
    m_upButton->setEnabled(m_step.canMoveUp());
    m_downButton->setEnabled(m_step.canMoveDown());
    m_removeButton->setEnabled(m_step.canRemove());
    m_exprEditButton->setEnabled(m_step.canChangeExpression());
    m_exprDeleteButton->setEnabled(m_step.canChangeExpression());
    const bool onColumns = m_tabs->currentIndex() == 0;
    m_insertButton->setEnabled(onColumns ? m_columnList->currentItem() != nullptr : m_step.canChangeExpression());
}

void ColumnPage::insertClicked()
{
    guarded(this, [this] {
        if (m_tabs->currentIndex() == 0) {
            QTreeWidgetItem *item = m_columnList->currentItem();
            if (!item)
                return;
            m_step.insertColumnSelection(m_tableCombo->currentText(), item->text(0));
            // The next column is ready for the next Insert.
            if (QTreeWidgetItem *next = m_columnList->itemBelow(item))
                m_columnList->setCurrentItem(next);
        } else {
            m_step.insertExpressionSelection(selectedExpressionText());
        }
        fillSelectList();
    });
    Q_EMIT completeChanged();
}

void ColumnPage::removeClicked()
{
    guarded(this, [this] {
        m_step.removeSelection(selectedDisplayName());
        fillSelectList();
    });
    Q_EMIT completeChanged();
}

void ColumnPage::moveClicked(int by)
{
    guarded(this, [this, by] {
        if (by < 0)
            m_step.moveSelectionUp(selectedDisplayName());
        else
            m_step.moveSelectionDown(selectedDisplayName());
        fillSelectList();
    });
}

void ColumnPage::aliasEdited(int row, const QString &, const QString &newText)
{
    guarded(this, [this, row, newText] {
        const QString displayName = m_step.selectRows().value(row).displayName;
        switch (m_step.editAlias(displayName, newText)) {
        case ColumnStep::AliasEdit::Unchanged:
            return;
        case ColumnStep::AliasEdit::Refused:
            UiService::instance().message(text(StringId::BadAliasMessage), text(StringId::BadAliasTitle),
                                          UiService::Buttons::Ok);
            break;
        case ColumnStep::AliasEdit::Accepted:
            break;
        }
        fillSelectList();
    });
}

void ColumnPage::expressionEdited(const QString &oldText, const QString &newText)
{
    guarded(this, [this, &oldText, &newText] {
        const ColumnStep::ExpressionEditEnd end = m_step.finishExpressionEdit(oldText, newText);
        if (end == ColumnStep::ExpressionEditEnd::Duplicate)
            UiService::instance().message(text(StringId::SameQueryMessage), text(StringId::SameQueryTitle),
                                          UiService::Buttons::Ok);
        fillExpressionList();
        fillSelectList();
    });
}

void ColumnPage::askForExpressionDialog(const QString &expression)
{
    const UiService::Answer answer = UiService::instance().message(
            text(StringId::LongExpressionMessage), text(StringId::LongExpressionTitle), UiService::Buttons::OkCancel);
    if (answer != UiService::Answer::Ok)
        return;
    m_step.setSelectedExpression(expression);
    modifyExpression();
}

void ColumnPage::addExpression()
{
    guarded(this, [this] {
        const std::optional<QString> expression = editExpression(this, m_step, QString(), false);
        if (!expression || expression->isEmpty())
            return;
        m_step.addNewExpression(*expression);
        m_step.setSelectedExpression(*expression);
        fillExpressionList();
    });
}

void ColumnPage::modifyExpression()
{
    guarded(this, [this] {
        const QString oldText = selectedExpressionText();
        if (!m_step.isExistExpression(oldText))
            return;
        const std::optional<QString> newText = editExpression(this, m_step, oldText, true);
        if (!newText || newText->isEmpty() || *newText == oldText)
            return;
        m_step.replaceExpression(oldText, *newText);
        fillExpressionList();
        fillSelectList();
    });
}

void ColumnPage::deleteExpression()
{
    guarded(this, [this] {
        m_step.deleteExpression(selectedExpressionText());
        fillExpressionList();
        fillSelectList();
    });
    Q_EMIT completeChanged();
}

} // namespace veldra
