#include "datasource.h"

namespace dataservice {

QStringList DataSource::allowedCatalogs() const
{
    if (provider == u"SQLite") {
        QStringList names { QStringLiteral("main") };
        for (const auto &attachment : attachments)
            names.append(attachment.first);
        return names;
    }
    return catalogs.isEmpty() ? QStringList { QStringLiteral("public") } : catalogs;
}

} // namespace dataservice
