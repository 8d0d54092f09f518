#pragma once

#include "veldra/records/record.h"
#include "veldra/veldra_export.h"

namespace veldra {

// One selectable item: a column of a table (kind 1) or a free expression (any other kind).
class VELDRA_EXPORT ColumnInfo final : public Record<ColumnInfo>
{
public:
    static constexpr const char *classSuffix = ".ColumnInfo";
    static constexpr StringId typeName = StringId::ColumnInfoTypeName;

    static constexpr qint32 TableColumn = 1;
    static constexpr qint32 Expression = 2;

    const QString &table() const { return m_table; }
    void setTable(const QString &table) { m_table = table; }
    qint32 columnType() const { return m_columnType; }
    void setColumnType(qint32 columnType) { m_columnType = columnType; }
    const QString &alias() const { return m_alias; }
    void setAlias(const QString &alias) { m_alias = alias; }
    const QString &express() const { return m_express; }
    void setExpress(const QString &express) { m_express = express; }

    // How the item is selected in a statement: "table.column" for a column, the expression
    // text otherwise. Nothing is quoted.
    QString GetSelectionName() const;
    // Whether name equals GetSelectionName(), without building it.
    bool hasSelectionName(QStringView name) const
    {
        if (m_columnType != TableColumn)
            return sameText(name, m_express);
        // The column part first: within a table, it is what tells names apart.
        const qsizetype dot = m_table.size();
        return name.size() == dot + 1 + m_express.size() && name.at(dot) == u'.'
                && sameText(name.sliced(dot + 1), m_express) && sameText(name.first(dot), m_table);
    }
    // Equality tested cheapest first: names in one table often share a length and a prefix.
    static bool sameText(QStringView a, QStringView b)
    {
        return a.size() == b.size() && (a.isEmpty() || (a.back() == b.back() && a == b));
    }

    std::shared_ptr<ColumnInfo> copy() const { return std::make_shared<ColumnInfo>(*this); }

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    QString zetVariable_Print() const override;

private:
    QString m_table;
    qint32 m_columnType = TableColumn;
    QString m_alias;
    QString m_express;
};

} // namespace veldra
