#pragma once

#include <tessaly/serviceproxy.h>

#include <memory>

namespace dataservice {

class DataService;
class RowSink;

// Carries a request document to a data service in the same process and the response
// document back; the service's failures reach the caller as tessaly::Error.
class LocalServiceProxy : public tessaly::ServiceProxy
{
public:
    explicit LocalServiceProxy(std::shared_ptr<const DataService> service);

    QDomDocument request(const QDomDocument &requestDocument) override;
    // The rows of a record request handed to sink as they arrive, with the engine's types and
    // without a response document: for a host that shows the component's rows itself. Each
    // call has a connection of its own, so it may run on another thread than request().
    void select(const QByteArray &requestXml, RowSink &sink) const;

private:
    std::shared_ptr<const DataService> m_service;
};

} // namespace dataservice
