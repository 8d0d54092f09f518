#pragma once

#include "veldra/dialogs/dbgetdecision.h"

#include <QDialog>

class QComboBox;
class QListWidget;
class QPushButton;

namespace veldra {

class WizParamEditDialog;

// Fetches a parameter's selection values from two columns of a table of the query's database:
// one column gives the values, the other the names shown. OK hands all pairs to the parameter
// edit dialog, replacing its values.
class WizParamDBGetDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamDBGetDialog(QWidget *parent = nullptr);
    ~WizParamDBGetDialog() override;

    // Starts over for the edit dialog: nothing chosen, no pairs, and the tables of the
    // database of the query its parameter list edits, read through the wizard's accessor.
    void start(WizParamEditDialog *editDialog);
    // The same without an edit dialog to take the database from.
    void start(WizParamEditDialog *editDialog, TSAccessor *accessor, const std::shared_ptr<dbInfo> &database);

    const std::shared_ptr<tessaly::NameMap> &result() const { return m_decision.result(); }

private:
    void fillTables();
    void tableChosen();
    void fillColumns(QComboBox *combo, const QStringList &entries);
    void keyColumnChosen();
    void valueColumnChosen();
    void showResult();
    void okClicked();

    DBGetDecision m_decision;
    WizParamEditDialog *m_editDialog = nullptr;
    QComboBox *m_tables;
    QComboBox *m_keyColumns;
    QComboBox *m_valueColumns;
    QListWidget *m_keys;
    QListWidget *m_names;
    QPushButton *m_ok;
};

} // namespace veldra
