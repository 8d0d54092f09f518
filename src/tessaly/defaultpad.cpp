#include "tessaly/defaultpad.h"

#include "tessaly/querycontainer.h"
#include "tessaly/zetchildpad.h"

namespace tessaly {

zetPrimitivePad::~zetPrimitivePad() = default;
zetChildPad::~zetChildPad() = default;
QueryContainer::~QueryContainer() = default;

bool DefaultPad::zetPrimitivePad_setPad(const std::shared_ptr<zetPadSite> &site)
{
    m_site = site;
    return true;
}

bool DefaultPad::zetPrimitivePad_onInitialize(int)
{
    return true;
}

bool DefaultPad::zetPrimitivePad_onCleanup()
{
    return true;
}

bool DefaultPad::zetPrimitivePad_onCopy(zetPrimitivePad &)
{
    return true;
}

QVariant DefaultPad::zetPrimitivePad_onGetSlotValue(const QString &)
{
    return {};
}

bool DefaultPad::zetPrimitivePad_onSetSlotValue(const QString &, const QVariant &)
{
    return false;
}

bool DefaultPad::zetPrimitivePad_onSave(TagStream &)
{
    return true;
}

bool DefaultPad::zetPrimitivePad_onLoad(TagStream &)
{
    return true;
}

bool DefaultPad::zetPrimitivePad_postOperation(const PadOperation &)
{
    return true;
}

bool DefaultPad::zetPrimitivePad_onUpdateView(int)
{
    return true;
}

} // namespace tessaly
