#pragma once

#include "veldra/dialogs/parameditdecision.h"

#include <QDialog>

#include <memory>

class QButtonGroup;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace tessaly {
class NameMap;
}

namespace veldra {

class ParamInfo;
class WizParamDialog;

// Edits one parameter: its name, title, kind and, for a parameter chosen from a list, its
// selection values. The record it is given changes as the person types; OK hands a copy to the
// parameter list, which stores it under its name and chooses it.
class WizParamEditDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamEditDialog(QWidget *parent = nullptr);
    ~WizParamEditDialog() override;

    // The list that receives the confirmed parameter, and whose accessor and definition the
    // retrieve-from-database dialog uses.
    void setListDialog(WizParamDialog *listDialog) { m_listDialog = listDialog; }
    WizParamDialog *listDialog() const { return m_listDialog; }

    // The record to edit; the fields show it.
    void setParameter(const std::shared_ptr<ParamInfo> &parameter);
    const std::shared_ptr<ParamInfo> &parameter() const { return m_decision.parameter(); }

    // What the selection value dialogs call: one value with its name (added, or renamed when
    // held, and chosen), a whole new set of values, or one value removed.
    void storeValue(const QString &value, const QString &name);
    void takeValues(const std::shared_ptr<tessaly::NameMap> &values);
    void removeValue(const QString &value);

    // OK: a valid parameter is handed on and the dialog closes; otherwise the person is told
    // that input is missing. (The button is disabled while the parameter is not valid.)
    void okClicked();

private:
    void applyValidity();
    void showKind();
    void fillValues();
    void nameEdited(const QString &text);
    void titleEdited(const QString &text);
    void typeToggled(int option, bool checked);
    void addValueClicked();
    void modifyValueClicked();
    void deleteValueClicked();
    void getFromDBClicked();
    void editValue(const QString &value, const QString &name);
    int selectedValueRow() const;

    ParamEditDecision m_decision;
    WizParamDialog *m_listDialog = nullptr;
    QLineEdit *m_name;
    QLineEdit *m_title;
    QButtonGroup *m_type;
    QGroupBox *m_valueFrame;
    QTreeWidget *m_values;
    QPushButton *m_ok;
};

} // namespace veldra
