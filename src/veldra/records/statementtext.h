#pragma once

#include "veldra/veldra_export.h"

#include <QString>

namespace veldra {

class SQLInfo;

// The query as readable SELECT text for the wizard's last page: CR LF after every line,
// four-space indents, parameters shown as markers. Display only; never sent to a service.
// Raises SubscriptOutOfRange when ordering is on but the order list is empty.
VELDRA_EXPORT QString statementText(const SQLInfo &query);

} // namespace veldra
