#pragma once

#include "veldra/dialogs/parameditdecision.h"

#include <QDialog>

#include <memory>
#include <optional>

class QButtonGroup;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace veldra {

class ParamInfo;
class TSAccessor;
class dbInfo;

// Where "Get from DB" reads selection values: the wizard's accessor and the query's database.
struct ValueSource
{
    TSAccessor *accessor = nullptr;
    std::shared_ptr<dbInfo> database;
};

// Edits one parameter: its name, title, kind and, for a parameter chosen from a list, its
// selection values. The record it is given changes as the person types; what OK confirms is a
// copy of it.
class WizParamEditDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamEditDialog(QWidget *parent = nullptr);
    ~WizParamEditDialog() override;

    // The record to edit; the fields show it.
    void setParameter(const std::shared_ptr<ParamInfo> &parameter);
    const std::shared_ptr<ParamInfo> &parameter() const { return m_decision.parameter(); }
    void setValueSource(ValueSource source) { m_source = std::move(source); }

    // OK: a valid parameter closes the dialog as accepted; otherwise the person is told that
    // input is missing. (The button is disabled while the parameter is not valid.)
    void okClicked();
    // What OK confirms: a copy of the record as edited.
    std::shared_ptr<ParamInfo> committedCopy() const { return m_decision.committedCopy(); }

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
    void quoteClicked();
    int selectedValueRow() const;

    ParamEditDecision m_decision;
    ValueSource m_source;
    QLineEdit *m_name;
    QLineEdit *m_title;
    QButtonGroup *m_type;
    QGroupBox *m_valueFrame;
    QTreeWidget *m_values;
    QPushButton *m_quote;
    QLabel *m_warning;
    QPushButton *m_ok;
};

// Runs the dialog on a parameter record, which changes as the person types: the copy that OK
// confirms, or nothing after Cancel.
std::optional<std::shared_ptr<ParamInfo>> editParameter(QWidget *parent, const std::shared_ptr<ParamInfo> &parameter,
                                                        const ValueSource &source);

} // namespace veldra
