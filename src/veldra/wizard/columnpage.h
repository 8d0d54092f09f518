#pragma once

#include "veldra/wizard/wizardpage.h"

class QAction;
class QComboBox;
class QMenu;
class QPushButton;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace veldra {

class ColumnStep;
class WizardState;

// Step 2: the select list, built from the columns of the chosen tables and from free
// expressions, each item with an optional alias.
class ColumnPage : public WizardPage
{
    Q_OBJECT

public:
    explicit ColumnPage(WizardState &state, QWidget *parent = nullptr);

private:
    void showOpened() override;
    void showEntered() override;
    void fillColumnList();
    void fillExpressionList();
    void fillSelectList();
    QString selectedDisplayName() const;
    QString selectedExpressionText() const;
    void updateButtons();

    void insertClicked();
    void removeClicked();
    void showSelectMenu(const QPoint &position);
    void moveClicked(int by);
    void aliasEdited(int row, const QString &oldText, const QString &newText);
    void expressionEdited(const QString &oldText, const QString &newText);
    void askForExpressionDialog(const QString &expression);
    void addExpression();
    void modifyExpression();
    void deleteExpression();

    ColumnStep &m_step;
    QTreeWidget *m_selectList;
    QMenu *m_selectMenu;
    QAction *m_renameAction;
    QAction *m_removeAction;
    QPushButton *m_upButton;
    QPushButton *m_downButton;
    QPushButton *m_insertButton;
    QPushButton *m_removeButton;
    QTabWidget *m_tabs;
    QComboBox *m_tableCombo;
    QTreeWidget *m_columnList;
    QTreeWidget *m_exprList;
    QPushButton *m_exprEditButton;
    QPushButton *m_exprDeleteButton;
};

} // namespace veldra
