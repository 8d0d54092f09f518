#include "veldra/wizard/tablestep.h"

#include "tessaly/namemap.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/wizardstate.h"

namespace veldra {

bool TableStep::prepare()
{
    TSAccessor *accessor = m_state.accessor();
    // The structure is read (and cached) by the database step; without it there are no tables.
    if (!accessor || !accessor->GetDatabaseStructure())
        return false;
    const auto tables = accessor->GetTablesAt(m_state.provider, m_state.dsn, m_state.catalog);
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
        m_state.chosenTables = std::move(chosen);
    }
    else if (database.provider() != m_state.provider || database.dsn() != m_state.dsn
             || database.catalog() != m_state.catalog) {
        m_state.chosenTables = std::make_shared<tessaly::NameMap>();
    }
    database.setProvider(m_state.provider);
    database.setDsn(m_state.dsn);
    database.setCatalog(m_state.catalog);

    m_tableNames.clear();
    m_tableNames.reserve(tables->count());
    for (int i = 0; i < tables->count(); ++i)
        m_tableNames.append(tables->key(i));
    return true;
}

bool TableStep::isChosen(const QString &table) const
{
    return m_state.chosenTables->contains(table);
}

void TableStep::setChosen(const QString &table, bool chosen)
{
    if (chosen) {
        // A table chosen already keeps the TableInfo the column step may have filled in.
        if (!m_state.chosenTables->contains(table))
            m_state.chosenTables->set(table, QVariant());
    }
    else {
        m_state.chosenTables->remove(table);
    }
}

} // namespace veldra
