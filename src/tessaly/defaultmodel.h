#pragma once

#include "tessaly/zetprimitivemodel.h"

namespace tessaly {

// The framework's default-model object: every model hands each operation to it first. It owns
// no slots of its own, so it answers unknown slots with nothing and stores nothing.
class DefaultModel final : public zetPrimitiveModel
{
public:
    bool zetPrimitiveModel_SetModel(const std::shared_ptr<zetModelSite> &site) override;
    bool zetPrimitiveModel_onInitialize(int kind) override;
    bool zetPrimitiveModel_onCleanup() override;
    bool zetPrimitiveModel_onCopy(zetPrimitiveModel &source) override;
    QVariant zetPrimitiveModel_onGetSlotValue(const QString &name) override;
    bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) override;
    bool zetPrimitiveModel_onSave(TagStream &stream) override;
    bool zetPrimitiveModel_onLoad(TagStream &stream) override;

private:
    std::shared_ptr<zetModelSite> m_site;
};

} // namespace tessaly
