#pragma once

#include "tessaly/tessaly_export.h"

#include <QVariant>

#include <memory>

namespace tessaly {

class TagStream;
class zetModelSite;

// The data side of a component as the framework drives it.
class TESSALY_EXPORT zetPrimitiveModel
{
public:
    // Initialisation kinds: a new component and a reset give every slot its default; other
    // kinds keep the values (before a load).
    static constexpr int NewComponent = 0;
    static constexpr int BeforeLoad = 1;
    static constexpr int Reset = 2;

    virtual ~zetPrimitiveModel();

    virtual bool zetPrimitiveModel_SetModel(const std::shared_ptr<zetModelSite> &site) = 0;
    virtual bool zetPrimitiveModel_onInitialize(int kind) = 0;
    virtual bool zetPrimitiveModel_onCleanup() = 0;
    virtual bool zetPrimitiveModel_onCopy(zetPrimitiveModel &source) = 0;
    virtual QVariant zetPrimitiveModel_onGetSlotValue(const QString &name) = 0;
    // Raises tessaly::Error when the value cannot be converted for the slot.
    virtual bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) = 0;
    virtual bool zetPrimitiveModel_onSave(TagStream &stream) = 0;
    virtual bool zetPrimitiveModel_onLoad(TagStream &stream) = 0;
};

} // namespace tessaly
