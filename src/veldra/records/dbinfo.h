#pragma once

#include "veldra/records/record.h"
#include "veldra/veldra_export.h"

namespace veldra {

// Where a query's data lives: provider, data source name and catalog.
class VELDRA_EXPORT dbInfo final : public Record<dbInfo>
{
public:
    static constexpr const char *classSuffix = ".DBInfo";
    static constexpr StringId typeName = StringId::DBInfoTypeName;

    const QString &provider() const { return m_provider; }
    void setProvider(const QString &provider) { m_provider = provider; }
    const QString &dsn() const { return m_dsn; }
    void setDsn(const QString &dsn) { m_dsn = dsn; }
    const QString &catalog() const { return m_catalog; }
    void setCatalog(const QString &catalog) { m_catalog = catalog; }

    std::shared_ptr<dbInfo> copy() const { return std::make_shared<dbInfo>(*this); }

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    QString zetVariable_Print() const override;

private:
    QString m_provider;
    QString m_dsn;
    QString m_catalog;
};

} // namespace veldra
