#include "tessaly/busycursor.h"

#include "tessaly/uiservice.h"

namespace tessaly {

BusyCursor::BusyCursor()
{
    UiService::instance().setBusy(true);
}

BusyCursor::~BusyCursor()
{
    UiService::instance().setBusy(false);
}

} // namespace tessaly
