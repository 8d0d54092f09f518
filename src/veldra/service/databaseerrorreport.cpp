#include "veldra/service/databaseerrorreport.h"

#include "tessaly/error.h"
#include "tessaly/uiservice.h"
#include "veldra/resources/stringtable.h"

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

void reportDatabaseErrorAsText(const DatabaseErrorReport &report)
{
    tessaly::UiService::instance().report(text(StringId::DatabaseErrorTitle), databaseErrorLines(report));
}

} // namespace veldra
