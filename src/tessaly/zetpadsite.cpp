#include "tessaly/zetpadsite.h"

namespace tessaly {

zetPadSite::~zetPadSite() = default;

bool zetPadSite::readModelSlot(const QString &, QVariant *value)
{
    *value = QVariant();
    return false;
}

void zetPadSite::declarePadSlot(const QString &, const QString &) { }
void zetPadSite::reportSlotChanged(const QString &) { }
void zetPadSite::reportChangeCode(int) { }

void zetPadSite::watchModelSlot(const QString &, bool *accepted)
{
    *accepted = false;
}

zetChildPad *zetPadSite::createChildPad(const QString &)
{
    return nullptr;
}

void zetPadSite::removeChildPads() { }
void zetPadSite::refreshChildPads(const QString &) { }

std::shared_ptr<zetPrimitiveModel> zetPadSite::componentModel()
{
    return nullptr;
}

} // namespace tessaly
