#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace dataservice {

// One named connection the service offers: which engine, where the data lives, and the
// limits every request against it runs under.
struct DataSource
{
    static constexpr qint64 DefaultRowCap = 100000;
    static constexpr int DefaultTimeoutMs = 30000;
    static constexpr int DefaultPoolSize = 4;
    static constexpr int MaxPoolSize = 1000;

    QString name;
    QString provider;                         // "SQLite" or "PostgreSQL"

    // SQLite: the database file (catalog "main") and further files attached read-only.
    QString path;
    QList<QPair<QString, QString>> attachments; // catalog name, file

    // PostgreSQL: libpq connection keywords and values (host, port, dbname, user, ...).
    QList<QPair<QString, QString>> connection;

    qint64 rowCap = DefaultRowCap;
    int timeoutMs = DefaultTimeoutMs;
    // A long-running host (veldra serve) keeps up to this many connections open and runs at
    // most this many queries on the data source at once.
    int poolSize = DefaultPoolSize;

    // The catalogs a request may name. SQLite: "main" and the attachments, whatever this
    // says. PostgreSQL: the schemas offered; empty means "public" only.
    QStringList catalogs = {};

    // PostgreSQL: per-query limits, set for each request's transaction (PostgreSQL's units).
    QString workMem = QStringLiteral("4MB");
    QString tempFileLimit = QStringLiteral("1GB");

    // For a component that names another data source and runs on this one (a host's choice of
    // source): its catalog (first) is this source's catalog (second). Unlisted ones keep their name.
    QList<QPair<QString, QString>> catalogMap = {};

    // The catalogs a request may name, with the defaults above applied.
    QStringList allowedCatalogs() const;
};

} // namespace dataservice
