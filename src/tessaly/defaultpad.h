#pragma once

#include "tessaly/zetprimitivepad.h"

namespace tessaly {

// The framework's default-pad object: every pad hands each operation to it first. It owns no
// slots of its own, so it answers unknown slots with nothing and stores nothing.
class DefaultPad final : public zetPrimitivePad
{
public:
    bool zetPrimitivePad_setPad(const std::shared_ptr<zetPadSite> &site) override;
    bool zetPrimitivePad_onInitialize(int kind) override;
    bool zetPrimitivePad_onCleanup() override;
    bool zetPrimitivePad_onCopy(zetPrimitivePad &source) override;
    QVariant zetPrimitivePad_onGetSlotValue(const QString &name) override;
    bool zetPrimitivePad_onSetSlotValue(const QString &name, const QVariant &value) override;
    bool zetPrimitivePad_onSave(TagStream &stream) override;
    bool zetPrimitivePad_onLoad(TagStream &stream) override;
    bool zetPrimitivePad_postOperation(const PadOperation &operation) override;
    bool zetPrimitivePad_onUpdateView(int kind) override;

    QString zetPrimitivePad_returnClassName() const override { return {}; }
    QString zetPrimitivePad_returnDisplayName() const override { return {}; }
    QString zetPrimitivePad_returnDescription() const override { return {}; }
    QString zetPrimitivePad_returnModelCLSID() const override { return {}; }
    QString zetPrimitivePad_returnPadCLSID() const override { return {}; }

private:
    std::shared_ptr<zetPadSite> m_site;
};

} // namespace tessaly
