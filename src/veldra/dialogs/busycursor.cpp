#include "veldra/dialogs/busycursor.h"

#include "tessaly/uiservice.h"

namespace veldra {

BusyCursor::BusyCursor()
{
    tessaly::UiService::instance().setBusy(true);
}

BusyCursor::~BusyCursor()
{
    tessaly::UiService::instance().setBusy(false);
}

} // namespace veldra
