#pragma once

#include "veldra/dialogs/valeditdecision.h"

#include <QDialog>

#include <optional>

class QLineEdit;
class QPushButton;

namespace veldra {

// Edits one selection value by hand: the value put into the query and the name shown for it.
class WizParamValEditDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizParamValEditDialog(QWidget *parent = nullptr);
    ~WizParamValEditDialog() override;

    // Empty texts for a new value.
    void setValueAndName(const QString &value, const QString &name);
    const QString &value() const { return m_decision.value(); }
    const QString &name() const { return m_decision.name(); }

private:
    void valueEdited(const QString &text);
    void nameEdited(const QString &text);
    void okClicked();

    ValEditDecision m_decision;
    QLineEdit *m_value;
    QLineEdit *m_name;
    QPushButton *m_ok;
};

// Runs the dialog on a value and its name (empty texts for a new value): both as confirmed by OK,
// or nothing after Cancel.
std::optional<SelectionValue> editSelectionValue(QWidget *parent, const QString &value, const QString &name);

} // namespace veldra
