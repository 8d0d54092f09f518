#pragma once

#include "tessaly/tessaly_export.h"

#include <QVariant>

#include <memory>

namespace tessaly {

class NameMap;
class TagStream;
class zetPadSite;

// An operation the framework has just run on a pad, its parent or one of its children.
struct TESSALY_EXPORT PadOperation
{
    // Bit 20 of the code marks operations that carry a property change.
    static constexpr quint32 PropertyOperation = 1u << 20;

    zetPadSite *target = nullptr; // the site the operation ran on
    quint32 code = 0;
    std::shared_ptr<NameMap> parameters;
};

// The visual side of a component as the framework drives it.
class TESSALY_EXPORT zetPrimitivePad
{
public:
    // Initialisation kinds, as for models.
    static constexpr int NewComponent = 0;
    static constexpr int BeforeLoad = 1;
    static constexpr int Reset = 2;
    // The update-view kind sent when the model's settings changed behind the pad's back.
    static constexpr int SettingsChanged = 3;

    virtual ~zetPrimitivePad();

    virtual bool zetPrimitivePad_setPad(const std::shared_ptr<zetPadSite> &site) = 0;
    virtual bool zetPrimitivePad_onInitialize(int kind) = 0;
    virtual bool zetPrimitivePad_onCleanup() = 0;
    virtual bool zetPrimitivePad_onCopy(zetPrimitivePad &source) = 0;
    virtual QVariant zetPrimitivePad_onGetSlotValue(const QString &name) = 0;
    virtual bool zetPrimitivePad_onSetSlotValue(const QString &name, const QVariant &value) = 0;
    virtual bool zetPrimitivePad_onSave(TagStream &stream) = 0;
    virtual bool zetPrimitivePad_onLoad(TagStream &stream) = 0;
    virtual bool zetPrimitivePad_postOperation(const PadOperation &operation) = 0;
    virtual bool zetPrimitivePad_onUpdateView(int kind) = 0;

    virtual QString zetPrimitivePad_returnClassName() const = 0;
    virtual QString zetPrimitivePad_returnDisplayName() const = 0;
    virtual QString zetPrimitivePad_returnDescription() const = 0;
    virtual QString zetPrimitivePad_returnModelCLSID() const = 0;
    virtual QString zetPrimitivePad_returnPadCLSID() const = 0;
};

} // namespace tessaly
