#pragma once

#include "tessaly/namemap.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/record.h"
#include "veldra/veldra_export.h"

namespace veldra {

// One table of a query with its columns (a NameMap of ColumnInfo keyed by column name).
// Its dbInfo is not saved: the query reconnects it after reading.
class VELDRA_EXPORT TableInfo final : public Record<TableInfo>
{
public:
    static constexpr const char *classSuffix = ".TableInfo";
    static constexpr StringId typeName = StringId::TableInfoTypeName;

    const std::shared_ptr<veldra::dbInfo> &dbInfo() const { return m_dbInfo; }
    void setDbInfo(const std::shared_ptr<veldra::dbInfo> &info) { m_dbInfo = info; }
    const std::shared_ptr<tessaly::NameMap> &columns() const { return m_columns; }
    void setColumns(const std::shared_ptr<tessaly::NameMap> &columns) { m_columns = columns; }
    const QString &tableName() const { return m_tableName; }
    void setTableName(const QString &tableName) { m_tableName = tableName; }

    // Shares the dbInfo, copies the columns deeply.
    std::shared_ptr<TableInfo> copy() const;

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    QString zetVariable_Print() const override;

private:
    std::shared_ptr<veldra::dbInfo> m_dbInfo = std::make_shared<veldra::dbInfo>();
    std::shared_ptr<tessaly::NameMap> m_columns = std::make_shared<tessaly::NameMap>();
    QString m_tableName;
};

} // namespace veldra
