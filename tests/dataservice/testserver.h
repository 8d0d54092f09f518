#pragma once

// For the data service tests: the throw-away PostgreSQL server's state file and the request
// documents they send.

#include <QFile>
#include <QMap>
#include <QString>

namespace testserver {

// The key=value lines pgserver.sh writes; reason says why there is no server when there is none.
inline QMap<QString, QString> readState(QString *reason, const QString &path = qEnvironmentVariable("VELDRA_TEST_PG"))
{
    QMap<QString, QString> state;
    QFile file(path);
    const QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed() : QString();
    for (const QString &line : text.split('\n')) {
        if (line.indexOf('=') > 0)
            state.insert(line.section('=', 0, 0), line.section('=', 1));
    }
    if (reason && !state.contains("host"))
        *reason = path.isEmpty() ? "VELDRA_TEST_PG is not set; run the test through CTest" : "no PostgreSQL server: " + text;
    return state;
}

// Text as a request carries it: markup escaped, double quotes left as typed.
inline QString escaped(const QString &text)
{
    return text.toHtmlEscaped().replace("&quot;", "\"");
}

inline QByteArray navigation(const QString &provider, const QString &dsn = {}, const QString &catalog = {},
                             const QString &table = {})
{
    return ("<query><get><content>column</content><target><provider>" + provider + "</provider><dsn>" + dsn
            + "</dsn><catalog>" + escaped(catalog) + "</catalog><table>" + table + "</table></target></get></query>")
            .toUtf8();
}

// A record request; parts holds {condition, group, order, rowcount}, empty ones left out.
inline QByteArray record(const QString &provider, const QString &dsn, const QString &catalog, const QString &table,
                         const QString &fields, const QStringList &parts = {})
{
    QString xml = "<query><get><content>record<field>" + escaped(fields) + "</field></content><target><provider>"
            + provider + "</provider><dsn>" + dsn + "</dsn><catalog>" + escaped(catalog) + "</catalog><table>"
            + escaped(table) + "</table></target>";
    const QStringList names{ "condition", "group", "order", "rowcount" };
    for (int i = 0; i < names.size(); ++i) {
        if (!parts.value(i).isEmpty())
            xml += '<' + names[i] + '>' + escaped(parts.value(i)) + "</" + names[i] + '>';
    }
    return (xml + "</get></query>").toUtf8();
}

} // namespace testserver
