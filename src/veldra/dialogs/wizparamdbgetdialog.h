#pragma once

#include "veldra/dialogs/dbgetdecision.h"

#include <QDialog>

#include <optional>

class QCheckBox;
class QComboBox;
class QListWidget;
class QPushButton;

namespace veldra {

// Fetches a parameter's selection values from two columns of a table of the query's database:
// one column gives the values, the other the names shown.
class WizParamDBGetDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamDBGetDialog(QWidget *parent = nullptr);
    ~WizParamDBGetDialog() override;

    // Starts over: nothing chosen, no pairs, and the tables of the database, read through the
    // accessor (the wizard's, whose cache knows them).
    void start(TSAccessor *accessor, const std::shared_ptr<dbInfo> &database);

    // What OK stores: the pairs read, their values made SQL literals when the person chose so.
    std::shared_ptr<tessaly::NameMap> result() const { return m_decision.valuesToStore(); }

private:
    void fillTables();
    void tableChosen();
    void fillColumns(QComboBox *combo, const QStringList &entries);
    void keyColumnChosen();
    void valueColumnChosen();
    void showResult();
    void okClicked();

    DBGetDecision m_decision;
    QComboBox *m_tables;
    QComboBox *m_keyColumns;
    QComboBox *m_valueColumns;
    QListWidget *m_keys;
    QListWidget *m_names;
    QCheckBox *m_asLiterals;
    QPushButton *m_ok;
};

// Runs the dialog on the database of the query: the pairs confirmed by OK (value -> display
// name), or nothing after Cancel.
std::optional<std::shared_ptr<tessaly::NameMap>> retrieveSelectionValues(QWidget *parent, TSAccessor *accessor,
                                                                         const std::shared_ptr<dbInfo> &database);

} // namespace veldra
