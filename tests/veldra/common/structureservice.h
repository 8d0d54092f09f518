#pragma once

// A scripted data service for tests, and the small databases it describes.

#include "tessaly/error.h"
#include "tessaly/serviceproxy.h"
#include "veldra/records/dbinfo.h"

#include <QDomDocument>
#include <QHash>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace testservice {

// A response listing names, as the service answers a structure request.
inline QString names(const QStringList &list)
{
    QString items;
    for (const QString &name : list)
        items += "<item name=\"" + name + "\"/>";
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<response>" + items + "</response>";
}

// Answers, in this order: a request whose text contains `refusing` fails; a request scripted by
// its text gets its reply (a response text, an error number to raise, or QVariant() for an empty
// document); a request for the level below "provider/dsn/catalog/table" ("" for the providers)
// listed in `levels` gets its names; anything else goes to `fallback`, or fails as a refused
// request does. Keeps every request text, and the structure paths asked.
class ScriptedService final : public tessaly::ServiceProxy
{
public:
    void script(const QString &request, const QVariant &reply)
    {
        QDomDocument document;
        document.setContent(request);
        m_replies[document.toString(-1)] = reply;
    }

    QDomDocument request(const QDomDocument &document) override
    {
        const QString text = document.toString(-1);
        requests.append(text);
        if (!refusing.isEmpty() && text.contains(refusing))
            throw tessaly::Error(qint32(0x80004005), "refused by the test: " + text);
        QDomDocument response;
        if (m_replies.contains(text)) {
            const QVariant reply = m_replies.value(text);
            if (reply.typeId() == QMetaType::Int)
                throw tessaly::Error(reply.toInt(), "scripted failure");
            if (reply.isValid())
                response.setContent(reply.toString());
            return response;
        }
        const QDomElement target = document.documentElement().firstChildElement("get").firstChildElement("target");
        if (!target.isNull()) {
            QStringList path;
            for (const char *level : { "provider", "dsn", "catalog", "table" })
                path.append(target.firstChildElement(level).text());
            while (!path.isEmpty() && path.last().isEmpty())
                path.removeLast();
            const QString key = path.join('/');
            paths.append(key);
            if (levels.contains(key)) {
                response.setContent(names(levels.value(key)));
                return response;
            }
        }
        if (fallback)
            return fallback->request(document);
        throw tessaly::Error(qint32(0x80045006), "not scripted: " + text);
    }

    // Requests since the last call: their number, or the structure paths asked.
    int takeCount() { paths.clear(); return int(std::exchange(requests, {}).size()); }
    QStringList takePaths() { requests.clear(); return std::exchange(paths, {}); }

    QHash<QString, QStringList> levels;
    std::shared_ptr<tessaly::ServiceProxy> fallback;
    QString refusing;
    QStringList requests;
    QStringList paths;

private:
    QHash<QString, QVariant> m_replies;
};

// Providers P1 and P2; P1 has D1 (catalogs C1, C2) and D2 (whose catalogs cannot be listed);
// P2 has no data sources. C1 holds T1, T2 and T3; C2 holds no tables.
inline std::shared_ptr<ScriptedService> sampleStructure()
{
    auto service = std::make_shared<ScriptedService>();
    service->levels = {
        { "", { "P1", "P2" } }, { "P1", { "D1", "D2" } }, { "P2", {} }, { "P1/D1", { "C1", "C2" } },
        { "P1/D1/C1", { "T1", "T2", "T3" } }, { "P1/D1/C2", {} },
    };
    return service;
}

// SQLite / Sample / main with the tables given as name -> columns.
inline std::shared_ptr<ScriptedService> sqliteStructure(const QHash<QString, QStringList> &tables = {})
{
    auto service = std::make_shared<ScriptedService>();
    service->levels = { { "", { "SQLite" } }, { "SQLite", { "Sample" } }, { "SQLite/Sample", { "main" } },
                        { "SQLite/Sample/main", tables.keys() } };
    for (auto table = tables.cbegin(); table != tables.cend(); ++table)
        service->levels.insert("SQLite/Sample/main/" + table.key(), table.value());
    return service;
}

inline std::shared_ptr<veldra::dbInfo> sampleDatabase()
{
    auto database = std::make_shared<veldra::dbInfo>();
    database->setProvider("SQLite");
    database->setDsn("Sample");
    database->setCatalog("main");
    return database;
}

} // namespace testservice
