#pragma once

#include "veldra/dialogs/paramlistdecision.h"

#include <QDialog>

#include <functional>
#include <memory>

class QLabel;
class QPushButton;
class QTreeWidget;

namespace veldra {

class ParamInfo;
class SQLInfo;
class TSAccessor;

// The parameter list of the condition page: the person picks one of the query's parameters,
// or adds, modifies or deletes parameters, and OK hands the chosen name to the condition.
// Changes go straight into the definition's parameters and stay after Cancel too.
class WizParamDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamDialog(QWidget *parent = nullptr);
    ~WizParamDialog() override;

    // Called with the chosen name on OK: the condition page inserts it as a parameter token.
    void setInsertParameterToken(std::function<void(const QString &name)> insert);
    // Stores the definition whose parameters are listed and changed, and shows them.
    void setQueryDefinition(const std::shared_ptr<SQLInfo> &definition);
    const std::shared_ptr<SQLInfo> &queryDefinition() const { return m_decision.definition(); }
    // The wizard's accessor, for the selection values fetched from the database.
    void setAccessor(TSAccessor *accessor) { m_accessor = accessor; }
    TSAccessor *accessor() const { return m_accessor; }

    const QString &selectedName() const { return m_decision.selectedName(); }

    // What the parameter edit dialog calls. chooseParameter stores the record under its name
    // (adding it or replacing what the name held) and makes it the chosen one.
    void chooseParameter(const std::shared_ptr<ParamInfo> &parameter);
    void removeParameter(const QString &name);
    // Refills the list and the chosen name.
    void refresh();

private:
    void refreshLabel();
    void rowSelected();
    void rowDoubleClicked();
    void addClicked();
    void modifyClicked();
    void deleteClicked();
    void okClicked();
    void editParameter(const std::shared_ptr<ParamInfo> &parameter);
    void commit();

    ParamListDecision m_decision;
    std::function<void(const QString &)> m_insert;
    TSAccessor *m_accessor = nullptr;
    QTreeWidget *m_list;
    QLabel *m_selected;
    QPushButton *m_ok;
};

} // namespace veldra
