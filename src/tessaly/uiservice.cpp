#include "tessaly/uiservice.h"

#include "tessaly/consoleuiservice.h"


namespace tessaly {

namespace {
std::shared_ptr<UiService> &installed()
{
    static std::shared_ptr<UiService> service;
    return service;
}
} // namespace

UiService::~UiService() = default;

UiService &UiService::instance()
{
    std::shared_ptr<UiService> &service = installed();
    if (!service)
        service = std::make_shared<ConsoleUiService>();
    return *service;
}

void UiService::setInstance(std::shared_ptr<UiService> service)
{
    installed() = std::move(service);
}

} // namespace tessaly
