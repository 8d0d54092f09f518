#pragma once

// A model site that keeps every report in order (a slot name, or the change code as "#code")
// and passes everything on to the host behind it, which echoes as the framework does.

#include "tessaly/modelhost.h"

#include <QStringList>

#include <memory>

namespace testdefs {

class RecordingModelSite final : public tessaly::zetModelSite
{
public:
    explicit RecordingModelSite(std::shared_ptr<tessaly::ModelHost> host) : m_host(std::move(host)) { }

    QStringList reports;

    void declareSlot(const QString &name, const QString &description) override
    {
        m_host->declareSlot(name, description);
    }
    bool declareParameterSlot(const QString &name, const QString &description) override
    {
        return m_host->declareParameterSlot(name, description);
    }
    void removeSlot(const QString &name) override { m_host->removeSlot(name); }
    void reportSlotChanged(const QString &name) override
    {
        reports.append(name);
        m_host->reportSlotChanged(name);
    }
    void reportChangeCode(int code) override
    {
        reports.append(u'#' + QString::number(code));
        m_host->reportChangeCode(code);
    }

private:
    std::shared_ptr<tessaly::ModelHost> m_host;
};

} // namespace testdefs
