#pragma once

#include "veldra/veldra_export.h"

#include <QStringList>

#include <functional>

namespace veldra {

// A failed request for database structure: the error number, where the request went, and the
// service's reason (empty when it gave none).
struct VELDRA_EXPORT DatabaseErrorReport
{
    qint32 errorNumber = 0;
    QString provider;
    QString dsn;
    QString catalog;
    QString table;
    QString message;
};

// Where an accessor sends its failures. A desktop host installs one that shows the database
// error dialog; without one the report goes out as text.
using DatabaseErrorReporter = std::function<void(const DatabaseErrorReport &)>;

// The report as lines of text: the message, then "Error Code: 80004005", "Provider: ...",
// "Data Source: ...", "Catalog: ...", "Table: ...", in the current language. The reason is left
// to the host, which says it in its own words (the command line prints it on a line of its own).
VELDRA_EXPORT QStringList databaseErrorLines(const DatabaseErrorReport &report);

// The reporter of hosts without windows: the same lines through UiService::report.
VELDRA_EXPORT void reportDatabaseErrorAsText(const DatabaseErrorReport &report);

} // namespace veldra
