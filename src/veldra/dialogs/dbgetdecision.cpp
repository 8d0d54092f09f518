#include "veldra/dialogs/dbgetdecision.h"

#include "tessaly/namemap.h"
#include "veldra/dialogs/sqlliteral.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/service/tsaccessor.h"

namespace veldra {

void DBGetDecision::start(TSAccessor *accessor, const std::shared_ptr<dbInfo> &database)
{
    m_accessor = accessor;
    m_database = database;
    m_table.clear();
    m_keyColumn.clear();
    m_valueColumn.clear();
    m_tables.clear();
    m_result = std::make_shared<tessaly::NameMap>();
}

QStringList DBGetDecision::tables()
{
    m_tables.clear();
    if (!m_accessor || !m_database)
        return {};
    // The cached look-ups hang off the structure. The wizard has fetched it by now, so this
    // asks nothing then; opened on its own, the dialog fetches it first.
    if (!m_accessor->GetDatabaseStructure())
        return {};
    const auto tables = m_accessor->GetTablesAt(m_database->provider(), m_database->dsn(), m_database->catalog());
    if (tables)
        m_tables = tables->keys();
    return m_tables;
}

QStringList DBGetDecision::columns() const
{
    QStringList entries{ QString() };
    // The structure the look-up hangs off exists only once tables were listed; and an empty
    // name would ask for the catalog's tables instead of a table's columns.
    if (!m_accessor || !m_database || m_table.isEmpty() || !m_tables.contains(m_table))
        return entries;
    const auto table = m_accessor->GetTableInfoAt(m_database->provider(), m_database->dsn(),
                                                  m_database->catalog(), m_table);
    if (table && table->columns())
        entries += table->columns()->keys();
    return entries;
}

bool DBGetDecision::chooseTable(const QString &table)
{
    if (table == m_table)
        return false;
    m_table = table;
    // The columns of another table mean nothing here.
    m_keyColumn.clear();
    m_valueColumn.clear();
    m_result = std::make_shared<tessaly::NameMap>();
    return true;
}

bool DBGetDecision::chooseKeyColumn(const QString &column)
{
    if (column == m_keyColumn)
        return false;
    m_keyColumn = column;
    rebuildResult();
    return true;
}

bool DBGetDecision::chooseValueColumn(const QString &column)
{
    if (column == m_valueColumn)
        return false;
    m_valueColumn = column;
    rebuildResult();
    return true;
}

bool DBGetDecision::okEnabled() const
{
    return m_result && !m_result->isEmpty();
}

std::shared_ptr<tessaly::NameMap> DBGetDecision::valuesToStore() const
{
    if (!m_storeAsLiterals)
        return m_result;
    auto literals = std::make_shared<tessaly::NameMap>();
    for (int i = 0; i < m_result->count(); ++i)
        literals->set(literalOfContent(m_result->key(i)), m_result->item(i));
    return literals;
}

void DBGetDecision::rebuildResult()
{
    std::shared_ptr<tessaly::NameMap> pairs;
    if (m_accessor && m_database && !m_keyColumn.isEmpty() && !m_valueColumn.isEmpty())
        pairs = m_accessor->QueryKeyValueColumns(m_database, m_table, m_keyColumn, m_valueColumn);
    m_result = pairs ? pairs : std::make_shared<tessaly::NameMap>();
}

} // namespace veldra
