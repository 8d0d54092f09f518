#include "errorrecordingproxy.h"

#include "tessaly/error.h"

ErrorRecordingProxy::ErrorRecordingProxy(std::shared_ptr<tessaly::ServiceProxy> proxy) : m_proxy(std::move(proxy))
{
}

QDomDocument ErrorRecordingProxy::request(const QDomDocument &requestDocument)
{
    try {
        return m_proxy->request(requestDocument);
    } catch (const tessaly::Error &error) {
        m_lastErrorNumber = error.number();
        m_lastErrorMessage = error.message();
        throw;
    }
}
