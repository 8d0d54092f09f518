#pragma once

#include "tessaly/zetvariable.h"

namespace veldra {

// Where a query's data lives: provider, data source name and catalog.
class dbInfo final : public tessaly::zetVariable
{
public:
    QString provider() const { return m_provider; }
    void setProvider(const QString &provider) { m_provider = provider; }
    QString dsn() const { return m_dsn; }
    void setDsn(const QString &dsn) { m_dsn = dsn; }
    QString catalog() const { return m_catalog; }
    void setCatalog(const QString &catalog) { m_catalog = catalog; }

    std::shared_ptr<dbInfo> copy() const { return std::make_shared<dbInfo>(*this); }

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    tessaly::ObjectRef zetVariable_Copy() const override { return copy(); }
    QString zetVariable_Print() const override;
    QString zetVariable_GetCLSID() const override;
    QString zetVariable_GetTypeName() const override;

private:
    QString m_provider;
    QString m_dsn;
    QString m_catalog;
};

} // namespace veldra
