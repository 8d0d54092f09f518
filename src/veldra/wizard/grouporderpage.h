#pragma once

#include "veldra/wizard/wizardpage.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace veldra {

class GroupOrderStep;
class WizardState;

// Step 4: the row count, GROUP BY and ORDER BY of the query, each fixed or left to the
// component's user as a parameter.
class GroupOrderPage : public WizardPage
{
    Q_OBJECT

public:
    explicit GroupOrderPage(WizardState &state, QWidget *parent = nullptr);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showEntered() override;
    void refreshRowCount();
    void showGrouping();
    void fillOrderList();
    void refreshOrderDirection();
    void refreshOrderParam();

    GroupOrderStep &m_step;
    QCheckBox *m_topnCheck;
    QLabel *m_topnLabel;
    QLineEdit *m_topnText;
    QCheckBox *m_topnParamCheck;
    QCheckBox *m_groupCheck;
    QListWidget *m_groupList;
    QCheckBox *m_orderCheck;
    QLabel *m_orderLabel;
    QComboBox *m_orderCombo;
    QRadioButton *m_ascending;
    QRadioButton *m_descending;
    QCheckBox *m_orderParamCheck;
    Qt::CheckState m_pressedCheck = Qt::Unchecked;
};

} // namespace veldra
