#include "veldra/dialogs/databaseerrorreport.h"

#include "tessaly/error.h"
#include "tessaly/uiservice.h"
#include "veldra/dialogs/wizdberrordialog.h"
#include "veldra/resources/stringtable.h"

#include <QApplication>

namespace veldra {

namespace {
QString field(StringId label, const QString &value)
{
    const QString caption = text(label);
    // The Japanese captions end in a full-width colon that already carries its own space.
    return caption.endsWith(u':') ? caption + u' ' + value : caption + value;
}
} // namespace

QStringList databaseErrorLines(const DatabaseErrorReport &report)
{
    return {
        text(StringId::DatabaseErrorMessage),
        field(StringId::DBErrorCodeLabel, tessaly::Error::hexNumber(report.errorNumber)),
        field(StringId::DBErrorProviderLabel, report.provider),
        field(StringId::DBErrorDSNLabel, report.dsn),
        field(StringId::DBErrorCatalogLabel, report.catalog),
        field(StringId::DBErrorTableLabel, report.table),
    };
}

void showDatabaseError(const DatabaseErrorReport &report)
{
    tessaly::UiService &ui = tessaly::UiService::instance();
    if (!ui.showsWindows()) {
        ui.report(text(StringId::DatabaseErrorTitle), databaseErrorLines(report));
        return;
    }
    WizDBErrorDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(text(StringId::DatabaseErrorTitle));
    dialog.setMessage(text(StringId::DatabaseErrorMessage));
    dialog.setErrorCode(tessaly::Error::hexNumber(report.errorNumber));
    dialog.setProvider(report.provider);
    dialog.setDataSource(report.dsn);
    dialog.setCatalog(report.catalog);
    dialog.setTable(report.table);
    ui.execDialog(dialog);
}

} // namespace veldra
