#pragma once

#include <QStringList>

#include <memory>

namespace tessaly {
class NameMap;
}

namespace veldra {

class TSAccessor;
class dbInfo;

// What the retrieve-from-database dialog decides, without its window: the tables of the
// query's database, the columns of the chosen table, and the value -> display name pairs of the
// two chosen columns. The accessor's structure cache answers the tables and columns; the pairs
// are asked anew each time a column changes.
class DBGetDecision
{
public:
    // Starts over: no table or columns chosen, an empty result. Neither may be null for
    // anything to be found; both must outlive the decision's use.
    void start(TSAccessor *accessor, const std::shared_ptr<dbInfo> &database);

    // Asks for the tables of the database, in the service's order (nothing when it cannot say).
    QStringList tables();
    // The column entries of the chosen table: a blank entry first, so that both columns start
    // unset, then its columns in order. Only a table that tables() listed is asked about.
    QStringList columns() const;

    const QString &table() const { return m_table; }
    const QString &keyColumn() const { return m_keyColumn; }
    const QString &valueColumn() const { return m_valueColumn; }

    // A choice that differs from the one held is taken and answers true; the same choice again
    // changes nothing and answers false. Another table unsets both columns and empties the
    // result; choosing a column asks for the pairs again.
    bool chooseTable(const QString &table);
    bool chooseKeyColumn(const QString &column);
    bool chooseValueColumn(const QString &column);

    // Value -> display name; empty until both columns are chosen, and after a failed request.
    const std::shared_ptr<tessaly::NameMap> &result() const { return m_result; }
    bool okEnabled() const;

    // Off at first: the values are stored as the columns hold them. On, text values become SQL
    // literals ('North East') and numbers stay as they are, so the condition can carry them.
    void setStoreAsLiterals(bool on) { m_storeAsLiterals = on; }
    bool storesAsLiterals() const { return m_storeAsLiterals; }
    // The pairs as they would be stored: the result, or a new map of it with literal values.
    std::shared_ptr<tessaly::NameMap> valuesToStore() const;

private:
    void rebuildResult();

    TSAccessor *m_accessor = nullptr;
    std::shared_ptr<dbInfo> m_database;
    QStringList m_tables;
    QString m_table;
    QString m_keyColumn;
    QString m_valueColumn;
    std::shared_ptr<tessaly::NameMap> m_result;
    bool m_storeAsLiterals = false;
};

} // namespace veldra
