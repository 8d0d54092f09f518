#pragma once

// A wizard on a small database structure, for tests that need the accessor.

#include "tessaly/defaultmodel.h"
#include "tessaly/error.h"
#include "tessaly/serviceproxy.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/wizardstate.h"

#include <QDomDocument>
#include <QHash>
#include <QStringList>

namespace testwizard {

// Answers the structure requests from a table of levels: "" lists the providers, "P" the data
// sources of P, "P/D" its catalogs, "P/D/C" the tables and "P/D/C/T" the columns of T. A level
// it does not know fails as the service does.
class StructureService final : public tessaly::ServiceProxy
{
public:
    QDomDocument request(const QDomDocument &document) override
    {
        ++requests;
        QStringList path;
        for (const QString name : { "provider", "dsn", "catalog", "table" }) {
            const QString value = document.documentElement().elementsByTagName(name).item(0).toElement().text();
            if (value.isEmpty())
                break;
            path.append(value);
        }
        const QString level = path.join('/');
        if (!levels.contains(level))
            throw tessaly::Error(qint32(0x80004005), "no such level: " + level);
        QString xml = "<response>";
        for (const QString &name : levels.value(level))
            xml += "<item name=\"" + name + "\"/>";
        QDomDocument response;
        response.setContent(xml + "</response>");
        return response;
    }

    QHash<QString, QStringList> levels;
    int requests = 0;
};

// SQLite / Sample / main with the tables given as name -> columns.
inline std::shared_ptr<StructureService> sampleStructure(const QHash<QString, QStringList> &tables)
{
    auto service = std::make_shared<StructureService>();
    service->levels.insert("", { "SQLite" });
    service->levels.insert("SQLite", { "Sample" });
    service->levels.insert("SQLite/Sample", { "main" });
    service->levels.insert("SQLite/Sample/main", tables.keys());
    for (auto table = tables.cbegin(); table != tables.cend(); ++table)
        service->levels.insert("SQLite/Sample/main/" + table.key(), table.value());
    return service;
}

// Opens the wizard state on a copy of definition with the sample database chosen, and the
// definition's tables chosen, as the first two steps leave it.
inline void start(veldra::WizardState &state, const std::shared_ptr<veldra::SQLInfo> &definition,
                  const std::shared_ptr<tessaly::ServiceProxy> &service = sampleStructure({}))
{
    state.start(std::make_shared<tessaly::DefaultModel>(), service, definition);
    const tessaly::NameMap &tables = *state.definition()->tables();
    for (int i = 0; i < tables.count(); ++i)
        state.chosenTables->set(tables.key(i), tables.item(i));
    state.provider = "SQLite";
    state.dsn = "Sample";
    state.catalog = "main";
    state.definition()->dbInfo()->setProvider("SQLite");
    state.definition()->dbInfo()->setDsn("Sample");
    state.definition()->dbInfo()->setCatalog("main");
}

} // namespace testwizard
