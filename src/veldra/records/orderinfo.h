#pragma once

#include "veldra/records/record.h"
#include "veldra/veldra_export.h"

namespace veldra {

// One item of a fixed ORDER BY: a selection text and its direction.
class VELDRA_EXPORT OrderInfo final : public Record<OrderInfo>
{
public:
    static constexpr const char *classSuffix = ".OrderInfo";
    static constexpr StringId typeName = StringId::OrderInfoTypeName;

    const QString &column() const { return m_column; }
    void setColumn(const QString &column) { m_column = column; }
    bool ascendant() const { return m_ascendant; }
    void setAscendant(bool ascendant) { m_ascendant = ascendant; }

    std::shared_ptr<OrderInfo> copy() const { return std::make_shared<OrderInfo>(*this); }

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    QString zetVariable_Print() const override;

private:
    QString m_column;
    bool m_ascendant = true;
};

} // namespace veldra
