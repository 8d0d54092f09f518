#include "veldra/records/sqlinfo.h"

#include "tessaly/error.h"
#include "tessaly/variablefactory.h"
#include "veldra/records/recordio.h"
#include "veldra/records/tableinfo.h"

namespace veldra {

namespace {
const QString element = QStringLiteral("SQLInfo");
const QString itemElement = QStringLiteral("Item");
[[maybe_unused]] const bool registered =
        tessaly::VariableFactory::add(element, [] { return std::make_shared<SQLInfo>(); });

template<typename T>
std::shared_ptr<T> copyOf(const std::shared_ptr<T> &source)
{
    return source ? source->copy() : nullptr;
}

template<typename List>
std::shared_ptr<List> appendedCopy(const std::shared_ptr<List> &source)
{
    auto result = std::make_shared<List>();
    if (source) {
        for (int position = 1; position <= source->count(); ++position)
            result->append(source->item(position));
    }
    return result;
}

bool matchesDisplayName(const ColumnInfo &column, QStringView dispName)
{
    return ColumnInfo::sameText(column.alias(), dispName) || column.hasSelectionName(dispName);
}

// The position in a map, in map order, of the first column whose alias or selection name is
// dispName, or -1.
int findColumn(const tessaly::NameMap &columns, QStringView dispName)
{
    for (int i = 0; i < columns.count(); ++i) {
        const ColumnInfo *column = columns.peekAt<ColumnInfo>(i);
        if (column && matchesDisplayName(*column, dispName))
            return i;
    }
    return -1;
}

} // namespace

QString SQLInfo::getTableNames() const
{
    return m_tables ? m_tables->keys().join(u',') : QString();
}

QString SQLInfo::createTarget() const
{
    if (!m_dbInfo || m_dbInfo->provider().isEmpty())
        return {};
    QString target = QStringLiteral("<provider>") + m_dbInfo->provider() + QStringLiteral("</provider>");
    if (m_dbInfo->dsn().isEmpty())
        return target;
    target += QStringLiteral("<dsn>") + m_dbInfo->dsn() + QStringLiteral("</dsn>");
    if (m_dbInfo->catalog().isEmpty())
        return target;
    target += QStringLiteral("<catalog>") + m_dbInfo->catalog() + QStringLiteral("</catalog>");
    const QString names = getTableNames();
    if (names.isEmpty())
        return target;
    target += QStringLiteral("<table>") + names + QStringLiteral("</table>");
    return QStringLiteral("<target>") + target + QStringLiteral("</target>");
}

std::shared_ptr<ColumnInfo> SQLInfo::getColumnInfo(const QString &selname) const
{
    if (selname.isEmpty())
        throw tessaly::Error(tessaly::ErrorNumber::SubscriptOutOfRange,
                             QStringLiteral("an empty name selects no column"));
    const QStringList pieces = selname.split(u'.');
    const QString tablePart = pieces.size() == 1 ? QString() : pieces.at(0);
    const QString columnPart = pieces.size() == 1 ? pieces.at(0) : pieces.at(1);

    std::shared_ptr<ColumnInfo> result;
    if (m_tables) {
        if (!tablePart.isEmpty()) {
            const auto table = m_tables->object<TableInfo>(tablePart);
            if (table && table->columns())
                result = table->columns()->object<ColumnInfo>(columnPart);
        } else {
            for (int i = 0; i < m_tables->count() && !result; ++i) {
                const auto table = m_tables->objectAt<TableInfo>(i);
                if (table && table->columns())
                    result = table->columns()->object<ColumnInfo>(columnPart);
            }
        }
    }
    if (m_expressions) {
        if (const auto expression = m_expressions->object<ColumnInfo>(selname))
            result = expression;
    }
    return result;
}

SQLInfo::ColumnPlace SQLInfo::placeOfDispName(QStringView dispName) const
{
    if (m_tables) {
        for (int i = 0; i < m_tables->count(); ++i) {
            const TableInfo *table = m_tables->peekAt<TableInfo>(i);
            if (!table || !table->columns())
                continue;
            if (const int index = findColumn(*table->columns(), dispName); index >= 0)
                return { table->columns().get(), index };
        }
    }
    if (m_expressions) {
        if (const int index = findColumn(*m_expressions, dispName); index >= 0)
            return { m_expressions.get(), index };
    }
    return {};
}

std::shared_ptr<ColumnInfo> SQLInfo::getColumnInfoFromDispName(QStringView dispName) const
{
    const ColumnPlace place = placeOfDispName(dispName);
    return place.map ? place.map->objectAt<ColumnInfo>(place.index) : nullptr;
}

const ColumnInfo *SQLInfo::peekColumnInfoFromDispName(QStringView dispName) const
{
    const ColumnPlace place = placeOfDispName(dispName);
    return place.map ? place.map->peekAt<ColumnInfo>(place.index) : nullptr;
}

QString SQLInfo::getFieldAlias(const QString &expr) const
{
    const auto column = getColumnInfo(expr);
    return column ? column->alias() : QString();
}

QString SQLInfo::getFieldSelectionName(const QString &selname) const
{
    const auto column = getColumnInfo(selname);
    if (!column)
        throw tessaly::Error(tessaly::ErrorNumber::ObjectNotSet,
                             QStringLiteral("\"%1\" names no column or expression of the query").arg(selname));
    if (!column->alias().isEmpty())
        return column->alias();
    return column->table() + u'.' + column->express();
}

void SQLInfo::reconnectTables()
{
    if (!m_dbInfo || !m_tables)
        return;
    if (m_dbInfo->provider().isEmpty() || m_dbInfo->dsn().isEmpty() || m_dbInfo->catalog().isEmpty())
        return;
    for (int i = 0; i < m_tables->count(); ++i) {
        if (const auto table = m_tables->objectAt<TableInfo>(i))
            table->setDbInfo(m_dbInfo);
    }
}

std::shared_ptr<SQLInfo> SQLInfo::copy() const
{
    auto result = std::make_shared<SQLInfo>();
    result->m_dbInfo = copyOf(m_dbInfo);
    // The copied tables keep the source's dbInfo: TableInfo shares it on copy.
    result->m_tables = copyOf(m_tables);
    result->m_expressions = copyOf(m_expressions);
    result->m_parameters = copyOf(m_parameters);
    result->m_selections = appendedCopy(m_selections);
    result->m_groupBy = appendedCopy(m_groupBy);
    result->m_orderBy = appendedCopy(m_orderBy); // the same OrderInfo objects
    result->m_topN = m_topN;
    result->m_condition = m_condition;
    result->m_useGroupBy = m_useGroupBy;
    result->m_useOrderBy = m_useOrderBy;
    result->m_orderByAsParam = m_orderByAsParam;
    result->m_topNAsParam = m_topNAsParam;
    return result;
}

void SQLInfo::readStrings(tessaly::TagStream &stream, StringList &list)
{
    while (stream.ReadTag() == itemElement) {
        QString item;
        stream.ReadValue(item);
        list.append(item);
        stream.ReadEndTag();
    }
}

void SQLInfo::readOrders(tessaly::TagStream &stream, OrderList &list)
{
    while (stream.ReadTag() == itemElement) {
        auto order = std::make_shared<OrderInfo>();
        recordio::readObject(stream, order);
        list.append(order);
        stream.ReadEndTag();
    }
}

template<typename T>
static void ensure(std::shared_ptr<T> &member)
{
    if (!member)
        member = std::make_shared<T>();
}

bool SQLInfo::zetVariable_Read(tessaly::TagStream &stream)
{
    return recordio::readRecord(stream, element, [&](const QString &child) {
        if (child == u"dbInfo") {
            recordio::readObject(stream, m_dbInfo);
        } else if (child == u"tables") {
            recordio::readObject(stream, m_tables);
            reconnectTables();
        } else if (child == u"selections") {
            ensure(m_selections);
            readStrings(stream, *m_selections);
        } else if (child == u"groupBy") {
            ensure(m_groupBy);
            readStrings(stream, *m_groupBy);
        } else if (child == u"useGroupBy") {
            stream.ReadValue(m_useGroupBy);
        } else if (child == u"orderBy") {
            ensure(m_orderBy);
            readOrders(stream, *m_orderBy);
        } else if (child == u"useOrderBy") {
            stream.ReadValue(m_useOrderBy);
        } else if (child == u"orderByAsParam") {
            stream.ReadValue(m_orderByAsParam);
        } else if (child == u"parameters") {
            recordio::readObject(stream, m_parameters);
        } else if (child == u"expressions") {
            recordio::readObject(stream, m_expressions);
        } else if (child == u"topN") {
            stream.ReadValue(m_topN);
        } else if (child == u"topNAsParam") {
            stream.ReadValue(m_topNAsParam);
        } else if (child == u"condition") {
            stream.ReadValue(m_condition);
        } else {
            return false;
        }
        return true;
    });
}

void SQLInfo::writeStrings(tessaly::TagStream &stream, const QString &name, const StringList *list)
{
    stream.WriteTag(name);
    if (list) {
        for (int position = 1; position <= list->count(); ++position)
            recordio::writeChild(stream, itemElement, list->item(position));
    }
    stream.WriteEndTag();
}

void SQLInfo::writeOrders(tessaly::TagStream &stream, const OrderList *list)
{
    stream.WriteTag(QStringLiteral("orderBy"));
    if (list) {
        for (int position = 1; position <= list->count(); ++position)
            recordio::writeChild(stream, itemElement, tessaly::ObjectRef(list->item(position)));
    }
    stream.WriteEndTag();
}

bool SQLInfo::zetVariable_Write(tessaly::TagStream &stream)
{
    stream.WriteTag(element);
    recordio::writeChild(stream, QStringLiteral("dbInfo"), tessaly::ObjectRef(m_dbInfo));
    recordio::writeChild(stream, QStringLiteral("tables"), tessaly::ObjectRef(m_tables));
    writeStrings(stream, QStringLiteral("selections"), m_selections.get());
    writeStrings(stream, QStringLiteral("groupBy"), m_groupBy.get());
    recordio::writeChild(stream, QStringLiteral("useGroupBy"), m_useGroupBy);
    writeOrders(stream, m_orderBy.get());
    recordio::writeChild(stream, QStringLiteral("useOrderBy"), m_useOrderBy);
    recordio::writeChild(stream, QStringLiteral("orderByAsParam"), m_orderByAsParam);
    recordio::writeChild(stream, QStringLiteral("parameters"), tessaly::ObjectRef(m_parameters));
    recordio::writeChild(stream, QStringLiteral("expressions"), tessaly::ObjectRef(m_expressions));
    recordio::writeChild(stream, QStringLiteral("topN"), m_topN);
    recordio::writeChild(stream, QStringLiteral("topNAsParam"), m_topNAsParam);
    recordio::writeChild(stream, QStringLiteral("condition"), m_condition);
    stream.WriteEndTag();
    return true;
}

QString SQLInfo::zetVariable_Print() const
{
    return m_dbInfo ? m_dbInfo->zetVariable_Print() : QString();
}

} // namespace veldra
