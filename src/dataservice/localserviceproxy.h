#pragma once

#include <tessaly/serviceproxy.h>

#include <memory>

namespace dataservice {

class DataService;

// Carries a request document to a data service in the same process and the response
// document back; the service's failures reach the caller as tessaly::Error.
class LocalServiceProxy : public tessaly::ServiceProxy
{
public:
    explicit LocalServiceProxy(std::shared_ptr<const DataService> service);

    QDomDocument request(const QDomDocument &requestDocument) override;

private:
    std::shared_ptr<const DataService> m_service;
};

} // namespace dataservice
