#include "tessaly/componentslots.h"

#include "tessaly/modelhost.h"
#include "tessaly/zetprimitivepad.h"

namespace tessaly {

bool ComponentSlots::zetPrimitiveModel_SetModel(const std::shared_ptr<zetModelSite> &site)
{
    return m_model->zetPrimitiveModel_SetModel(site);
}

bool ComponentSlots::zetPrimitiveModel_onInitialize(int kind)
{
    return m_model->zetPrimitiveModel_onInitialize(kind);
}

bool ComponentSlots::zetPrimitiveModel_onCleanup()
{
    return m_model->zetPrimitiveModel_onCleanup();
}

bool ComponentSlots::zetPrimitiveModel_onCopy(zetPrimitiveModel &source)
{
    return m_model->zetPrimitiveModel_onCopy(source);
}

QVariant ComponentSlots::zetPrimitiveModel_onGetSlotValue(const QString &name)
{
    return isPadSlot(name) ? m_pad->zetPrimitivePad_onGetSlotValue(name) : m_host->slotValue(name);
}

bool ComponentSlots::zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value)
{
    if (isPadSlot(name))
        return m_pad->zetPrimitivePad_onSetSlotValue(name, value);
    m_host->setSlotValue(name, value);
    return true;
}

bool ComponentSlots::zetPrimitiveModel_onSave(TagStream &stream)
{
    return m_model->zetPrimitiveModel_onSave(stream);
}

bool ComponentSlots::zetPrimitiveModel_onLoad(TagStream &stream)
{
    return m_model->zetPrimitiveModel_onLoad(stream);
}

} // namespace tessaly
