#pragma once

#include "veldra/dialogs/paramlistdecision.h"

#include <QDialog>

#include <memory>
#include <optional>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace veldra {

class ParamInfo;
class SQLInfo;
class TSAccessor;

// The parameter list of the condition page: the person picks one of the query's parameters,
// or adds, modifies or deletes parameters; OK confirms the chosen name. Changes go straight into
// the definition's parameters and stay after Cancel too.
class WizParamDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamDialog(QWidget *parent = nullptr);
    ~WizParamDialog() override;

    // Stores the definition whose parameters are listed and changed, and shows them.
    void setQueryDefinition(const std::shared_ptr<SQLInfo> &definition);
    // The wizard's accessor, for the selection values fetched from the database.
    void setAccessor(TSAccessor *accessor) { m_accessor = accessor; }

    const QString &selectedName() const { return m_decision.selectedName(); }

private:
    // Refills the list and the chosen name.
    void refresh();
    void refreshLabel();
    void rowSelected();
    void rowDoubleClicked();
    void addClicked();
    void modifyClicked();
    void deleteClicked();
    void okClicked();
    void edit(const std::shared_ptr<ParamInfo> &parameter);

    ParamListDecision m_decision;
    TSAccessor *m_accessor = nullptr;
    QTreeWidget *m_list;
    QLabel *m_selected;
    QPushButton *m_ok;
};

// Runs the parameter list on a definition: the name of the parameter that OK confirms, or
// nothing after Cancel.
std::optional<QString> runParameterDialog(const std::shared_ptr<SQLInfo> &definition, TSAccessor *accessor,
                                          QWidget *parent);

} // namespace veldra
