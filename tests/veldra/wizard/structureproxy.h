#pragma once

// Test doubles for the wizard's step rules: a data service that knows only a structure, and a
// component model that keeps what is written into it.

#include "tessaly/error.h"
#include "tessaly/serviceproxy.h"
#include "tessaly/zetprimitivemodel.h"

#include <QDomDocument>
#include <QHash>
#include <QStringList>

namespace testwizard {

// Answers the structure requests ("provider/dsn/catalog" -> the names one level below) from a
// table; a path it does not know fails as a refused request does. Counts what it was asked.
class StructureProxy final : public tessaly::ServiceProxy
{
public:
    explicit StructureProxy(QHash<QString, QStringList> levels) : m_levels(std::move(levels)) {}

    QDomDocument request(const QDomDocument &document) override
    {
        const QDomElement target = document.documentElement().firstChildElement("get").firstChildElement("target");
        QStringList path;
        for (const char *level : { "provider", "dsn", "catalog", "table" })
            path.append(target.firstChildElement(level).text());
        while (!path.isEmpty() && path.last().isEmpty())
            path.removeLast();
        const QString key = path.join('/');
        requests.append(key);
        if (!m_levels.contains(key))
            throw tessaly::Error(qint32(0x80045006), "no such level: " + key);
        QString items;
        for (const QString &name : m_levels.value(key))
            items += "<item name=\"" + name + "\"/>";
        QDomDocument response;
        response.setContent("<response>" + items + "</response>");
        return response;
    }

    // Requests since the last call.
    QStringList take() { return std::exchange(requests, {}); }

    QStringList requests;

private:
    QHash<QString, QStringList> m_levels;
};

// Providers P1 and P2; P1 has D1 (catalogs C1, C2) and D2 (whose catalogs cannot be listed);
// P2 has no data sources. C1 holds T1, T2 and T3; C2 holds no tables.
inline std::shared_ptr<StructureProxy> sampleStructure()
{
    return std::make_shared<StructureProxy>(QHash<QString, QStringList>{
            { "", { "P1", "P2" } },
            { "P1", { "D1", "D2" } },
            { "P2", {} },
            { "P1/D1", { "C1", "C2" } },
            { "P1/D1/C1", { "T1", "T2", "T3" } },
            { "P1/D1/C2", {} },
    });
}

// A model that keeps every slot write, in order.
class RecordingModel final : public tessaly::zetPrimitiveModel
{
public:
    bool zetPrimitiveModel_SetModel(const std::shared_ptr<tessaly::zetModelSite> &) override { return true; }
    bool zetPrimitiveModel_onInitialize(int) override { return true; }
    bool zetPrimitiveModel_onCleanup() override { return true; }
    bool zetPrimitiveModel_onCopy(zetPrimitiveModel &) override { return true; }
    QVariant zetPrimitiveModel_onGetSlotValue(const QString &) override { return {}; }
    bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) override
    {
        writes.append({ name, value });
        return true;
    }
    bool zetPrimitiveModel_onSave(tessaly::TagStream &) override { return true; }
    bool zetPrimitiveModel_onLoad(tessaly::TagStream &) override { return true; }

    QList<std::pair<QString, QVariant>> writes;
};

} // namespace testwizard
