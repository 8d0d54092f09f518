#pragma once

#include "veldra/records/sqlinfo.h"
#include "veldra/veldra_export.h"

namespace veldra {

// A query definition saved on its own: an XML document whose root element is <SQLInfo>.
// Reading raises tessaly::Error naming the file, line and column of what is wrong; writing
// goes to a file beside the target first, so a failed save leaves the old file intact.
VELDRA_EXPORT std::shared_ptr<SQLInfo> readDefinitionFile(const QString &fileName);
VELDRA_EXPORT std::shared_ptr<SQLInfo> readDefinition(const QByteArray &data, const QString &sourceName);
VELDRA_EXPORT void writeDefinitionFile(const QString &fileName, SQLInfo &query);
VELDRA_EXPORT QByteArray writeDefinition(SQLInfo &query);

} // namespace veldra
