#pragma once

#include "veldra/dialogs/valeditdecision.h"

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace veldra {

class WizParamEditDialog;

// Edits one selection value by hand: the value put into the query and the name shown for it.
// OK hands both to the parameter edit dialog.
class WizParamValEditDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamValEditDialog(QWidget *parent = nullptr);

    void setEditDialog(WizParamEditDialog *editDialog) { m_editDialog = editDialog; }
    // Empty texts for a new value.
    void setValueAndName(const QString &value, const QString &name);
    const QString &value() const { return m_decision.value(); }
    const QString &name() const { return m_decision.name(); }

private:
    void valueEdited(const QString &text);
    void nameEdited(const QString &text);
    void okClicked();

    ValEditDecision m_decision;
    WizParamEditDialog *m_editDialog = nullptr;
    QLineEdit *m_value;
    QLineEdit *m_name;
    QPushButton *m_ok;
};

} // namespace veldra
