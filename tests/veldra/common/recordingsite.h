#pragma once

// A model site that keeps every report in order (a slot name, or the change code as "#code")
// and passes everything on to the host behind it, which echoes as the framework does.

#include "tessaly/modelhost.h"

#include <QStringList>

namespace testdefs {

struct RecordingModelSite final : tessaly::zetModelSite
{
    explicit RecordingModelSite(std::shared_ptr<tessaly::ModelHost> host) : host(std::move(host)) { }
    void declareSlot(const QString &name, const QString &text) override { host->declareSlot(name, text); }
    bool declareParameterSlot(const QString &name, const QString &text) override { return host->declareParameterSlot(name, text); }
    void removeSlot(const QString &name) override { host->removeSlot(name); }
    void reportSlotChanged(const QString &name) override { reports.append(name); host->reportSlotChanged(name); }
    void reportChangeCode(int code) override { reports.append(u'#' + QString::number(code)); host->reportChangeCode(code); }

    std::shared_ptr<tessaly::ModelHost> host;
    QStringList reports;
};

} // namespace testdefs
