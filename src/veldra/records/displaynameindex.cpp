#include "veldra/records/displaynameindex.h"

#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"

namespace veldra {

namespace {
// Below this many look-ups the scan costs less than hashing every item of a large definition.
constexpr qsizetype indexFrom = 32;
} // namespace

DisplayNameIndex::DisplayNameIndex(const SQLInfo &definition, qsizetype lookups) : m_definition(definition)
{
    if (lookups < indexFrom)
        return;
    m_indexed = true;
    const auto addItems = [this](const tessaly::NameMap &items) {
        for (int i = 0; i < items.count(); ++i) {
            if (const ColumnInfo *item = items.peekAt<ColumnInfo>(i)) {
                add(item->alias(), item);
                add(item->GetSelectionName(), item);
            }
        }
    };
    if (const auto &tables = definition.tables()) {
        for (int i = 0; i < tables->count(); ++i) {
            const TableInfo *table = tables->peekAt<TableInfo>(i);
            if (table && table->columns())
                addItems(*table->columns());
        }
    }
    if (const auto &expressions = definition.expressions())
        addItems(*expressions);
}

void DisplayNameIndex::add(const QString &name, const ColumnInfo *item)
{
    // The first item that answers to a name keeps it, as in the definition's own scan.
    if (!m_items.contains(name))
        m_items.insert(name, item);
}

const ColumnInfo *DisplayNameIndex::find(QStringView dispName) const
{
    if (!m_indexed)
        return m_definition.peekColumnInfoFromDispName(dispName);
    return m_items.value(QString::fromRawData(dispName.data(), dispName.size()));
}

} // namespace veldra
