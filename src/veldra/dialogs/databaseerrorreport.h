#pragma once

#include <QStringList>

namespace veldra {

// A failed request for database structure: the error number and where the request went.
struct DatabaseErrorReport
{
    qint32 errorNumber = 0;
    QString provider;
    QString dsn;
    QString catalog;
    QString table;
};

// The report as lines of text: the message, then "Error Code: 80004005", "Provider: ...",
// "Data Source: ...", "Catalog: ...", "Table: ...", in the current language.
QStringList databaseErrorLines(const DatabaseErrorReport &report);

// Shows the database error dialog modally through the UI service, or, on a host without
// windows, hands the same lines to UiService::report.
void showDatabaseError(const DatabaseErrorReport &report);

} // namespace veldra
