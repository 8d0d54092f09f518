#include "veldra/dialogs/wizparamdialog.h"

// Placeholder; see the header.

namespace veldra {

WizParamDialog::WizParamDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizParamDialog"));
}

} // namespace veldra
