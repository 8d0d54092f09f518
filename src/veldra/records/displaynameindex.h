#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

namespace veldra {

class ColumnInfo;
class SQLInfo;

// Finds items of a definition by display name as SQLInfo::peekColumnInfoFromDispName does (the
// first item, tables in map order and then expressions, whose alias or selection name is the
// name), for a caller about to look up many names: one pass over the definition, then constant
// time per name. It reads the definition when it is made and hears of no later change, so it
// lives for one batch of look-ups (one request build, one check of a selection) and goes.
class DisplayNameIndex
{
public:
    // lookups: how many names the caller means to look up. A few are found sooner by the
    // definition's own scan than by making the index first; then no index is made.
    DisplayNameIndex(const SQLInfo &definition, qsizetype lookups);

    const ColumnInfo *find(QStringView dispName) const;

private:
    void add(const QString &name, const ColumnInfo *item);

    const SQLInfo &m_definition;
    bool m_indexed = false;
    QHash<QString, const ColumnInfo *> m_items;
};

} // namespace veldra
