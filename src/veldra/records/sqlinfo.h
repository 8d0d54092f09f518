#pragma once

#include "tessaly/namemap.h"
#include "tessaly/orderedlist.h"
#include "veldra/records/columninfo.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/orderinfo.h"
#include "veldra/records/record.h"
#include "veldra/veldra_export.h"

namespace veldra {

using StringList = tessaly::OrderedList<QString>;
using OrderList = tessaly::OrderedList<std::shared_ptr<OrderInfo>>;

// The whole definition of one parametrised SELECT query. Object and collection members are
// held by reference: a setter keeps the object it is given.
class VELDRA_EXPORT SQLInfo final : public Record<SQLInfo>
{
public:
    static constexpr const char *classSuffix = ".SQLInfo";
    static constexpr StringId typeName = StringId::SQLInfoTypeName;

    const std::shared_ptr<tessaly::NameMap> &expressions() const { return m_expressions; }
    void setExpressions(const std::shared_ptr<tessaly::NameMap> &map) { m_expressions = map; }
    const std::shared_ptr<veldra::dbInfo> &dbInfo() const { return m_dbInfo; }
    void setDbInfo(const std::shared_ptr<veldra::dbInfo> &info) { m_dbInfo = info; }
    const std::shared_ptr<tessaly::NameMap> &parameters() const { return m_parameters; }
    void setParameters(const std::shared_ptr<tessaly::NameMap> &map) { m_parameters = map; }
    const QString &condition() const { return m_condition; }
    void setCondition(const QString &condition) { m_condition = condition; }
    qint32 topN() const { return m_topN; }
    void setTopN(qint32 topN) { m_topN = topN; }
    bool topNAsParam() const { return m_topNAsParam; }
    void setTopNAsParam(bool on) { m_topNAsParam = on; }
    bool useOrderBy() const { return m_useOrderBy; }
    void setUseOrderBy(bool on) { m_useOrderBy = on; }
    bool orderByAsParam() const { return m_orderByAsParam; }
    void setOrderByAsParam(bool on) { m_orderByAsParam = on; }
    const std::shared_ptr<OrderList> &orderBy() const { return m_orderBy; }
    void setOrderBy(const std::shared_ptr<OrderList> &list) { m_orderBy = list; }
    bool useGroupBy() const { return m_useGroupBy; }
    void setUseGroupBy(bool on) { m_useGroupBy = on; }
    const std::shared_ptr<StringList> &groupBy() const { return m_groupBy; }
    void setGroupBy(const std::shared_ptr<StringList> &list) { m_groupBy = list; }
    const std::shared_ptr<StringList> &selections() const { return m_selections; }
    void setSelections(const std::shared_ptr<StringList> &list) { m_selections = list; }
    const std::shared_ptr<tessaly::NameMap> &tables() const { return m_tables; }
    void setTables(const std::shared_ptr<tessaly::NameMap> &map) { m_tables = map; }

    // The target element of a request, as far as the definition is complete: only a database
    // with provider, dsn, catalog and at least one table gets the <target> wrapper.
    QString createTarget() const;
    // The table keys joined by ",".
    QString getTableNames() const;
    QString getFieldAlias(const QString &expr) const;
    // Raises ObjectNotSet for a name that resolves to nothing.
    QString getFieldSelectionName(const QString &selname) const;
    // The first item, tables before expressions, whose alias or selection name is dispName.
    std::shared_ptr<ColumnInfo> getColumnInfoFromDispName(QStringView dispName) const;
    // The same item without taking a reference, for callers that only read it at once.
    const ColumnInfo *peekColumnInfoFromDispName(QStringView dispName) const;
    // "table.column" or "column" resolved in the tables; an expression keyed by the whole name
    // wins over a column. Raises SubscriptOutOfRange for an empty name.
    std::shared_ptr<ColumnInfo> getColumnInfo(const QString &selname) const;

    // Gives each table the query's dbInfo object, when the database is fully named.
    void reconnectTables();

    std::shared_ptr<SQLInfo> copy() const;

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    QString zetVariable_Print() const override;

private:
    struct ColumnPlace
    {
        const tessaly::NameMap *map = nullptr;
        int index = -1;
    };
    ColumnPlace placeOfDispName(QStringView dispName) const;

    void readStrings(tessaly::TagStream &stream, StringList &list);
    void readOrders(tessaly::TagStream &stream, OrderList &list);
    void writeStrings(tessaly::TagStream &stream, const QString &name, const StringList *list);
    void writeOrders(tessaly::TagStream &stream, const OrderList *list);

    std::shared_ptr<tessaly::NameMap> m_expressions = std::make_shared<tessaly::NameMap>();
    std::shared_ptr<veldra::dbInfo> m_dbInfo = std::make_shared<veldra::dbInfo>();
    std::shared_ptr<tessaly::NameMap> m_parameters = std::make_shared<tessaly::NameMap>();
    QString m_condition;
    qint32 m_topN = 0;
    bool m_topNAsParam = false;
    bool m_useOrderBy = false;
    bool m_orderByAsParam = false;
    std::shared_ptr<OrderList> m_orderBy = std::make_shared<OrderList>();
    bool m_useGroupBy = false;
    std::shared_ptr<StringList> m_groupBy = std::make_shared<StringList>();
    std::shared_ptr<StringList> m_selections = std::make_shared<StringList>();
    std::shared_ptr<tessaly::NameMap> m_tables = std::make_shared<tessaly::NameMap>();
};

} // namespace veldra
