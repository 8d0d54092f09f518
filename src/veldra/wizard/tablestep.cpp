#include "veldra/wizard/tablestep.h"

#include "tessaly/namemap.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/wizardstate.h"

namespace veldra {

TableStep::TableStep(WizardState &state) : m_state(state), m_chosen(std::make_shared<tessaly::NameMap>()) {}

bool TableStep::prepare()
{
    TSAccessor *accessor = m_state.accessor();
    // The structure is read (and cached) by the database step; without it there are no tables.
    if (!accessor || !accessor->GetDatabaseStructure())
        return false;
    const veldra::DatabaseStep &chosenDatabase = m_state.database();
    const auto tables = accessor->GetTablesAt(chosenDatabase.provider(), chosenDatabase.dsn(), chosenDatabase.catalog());
    if (!tables || tables->isEmpty())
        return false;

    SQLInfo &definition = *m_state.definition();
    const tessaly::NameMap &known = *definition.tables();
    dbInfo &database = *definition.dbInfo();
    if (known.count() > 0) {
        auto chosen = std::make_shared<tessaly::NameMap>();
        for (int i = 0; i < known.count(); ++i) {
            const QString name = known.key(i);
            if (tables->contains(name))
                chosen->set(name, known.item(i));
        }
        m_chosen = std::move(chosen);
    }
    else if (database.provider() != chosenDatabase.provider() || database.dsn() != chosenDatabase.dsn()
             || database.catalog() != chosenDatabase.catalog()) {
        m_chosen = std::make_shared<tessaly::NameMap>();
    }
    database.setProvider(chosenDatabase.provider());
    database.setDsn(chosenDatabase.dsn());
    database.setCatalog(chosenDatabase.catalog());

    m_tableNames = tables->keys();
    return true;
}

bool TableStep::isComplete() const
{
    return m_chosen->count() > 0;
}

QStringList TableStep::chosenNames() const
{
    return m_chosen->keys();
}

bool TableStep::isChosen(const QString &table) const
{
    return m_chosen->contains(table);
}

void TableStep::setChosen(const QString &table, bool chosen)
{
    if (chosen) {
        // A table chosen already keeps the TableInfo the column step may have filled in.
        if (!m_chosen->contains(table))
            m_chosen->set(table, QVariant());
    }
    else {
        m_chosen->remove(table);
    }
}

} // namespace veldra
