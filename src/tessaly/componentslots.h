#pragma once

#include "tessaly/zetprimitivemodel.h"

#include <QStringList>

namespace tessaly {

class ModelHost;
class zetPrimitivePad;

// The component as the framework shows it to other objects (the wizard among them): one set of
// slots, the model's and the pad's. Writes go through the model's host, so reports and echoes
// happen as for any other writer; the pad's declared slots reach the pad.
class ComponentSlots final : public zetPrimitiveModel
{
public:
    ComponentSlots(zetPrimitiveModel *model, ModelHost *host, zetPrimitivePad *pad, const QStringList *padSlots)
        : m_model(model), m_host(host), m_pad(pad), m_padSlots(padSlots)
    {
    }

    bool zetPrimitiveModel_SetModel(const std::shared_ptr<zetModelSite> &site) override;
    bool zetPrimitiveModel_onInitialize(int kind) override;
    bool zetPrimitiveModel_onCleanup() override;
    bool zetPrimitiveModel_onCopy(zetPrimitiveModel &source) override;
    QVariant zetPrimitiveModel_onGetSlotValue(const QString &name) override;
    bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) override;
    bool zetPrimitiveModel_onSave(TagStream &stream) override;
    bool zetPrimitiveModel_onLoad(TagStream &stream) override;

private:
    bool isPadSlot(const QString &name) const { return m_pad && m_padSlots && m_padSlots->contains(name); }

    zetPrimitiveModel *m_model;
    ModelHost *m_host;
    zetPrimitivePad *m_pad;
    const QStringList *m_padSlots;
};

} // namespace tessaly
