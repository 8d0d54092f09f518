#include "localserviceproxy.h"

#include "dataservice.h"
#include "errornumber.h"

#include <tessaly/error.h>

#include <QBuffer>

namespace dataservice {

LocalServiceProxy::LocalServiceProxy(std::shared_ptr<const DataService> service)
    : m_service(std::move(service))
{
}

QDomDocument LocalServiceProxy::request(const QDomDocument &requestDocument)
{
    if (!m_service)
        throw tessaly::Error(ErrorNumber::Unspecified, QStringLiteral("The proxy has no data service."));
    QBuffer response;
    response.open(QIODevice::WriteOnly);
    m_service->answer(requestDocument.toByteArray(-1), &response);
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!document.setContent(response.data(), &message, &line, &column))
        throw tessaly::Error(ErrorNumber::Unspecified,
                             QStringLiteral("The data service's response is not well-formed XML at line %1, "
                                            "column %2: %3.").arg(line).arg(column).arg(message));
    return document;
}

void LocalServiceProxy::select(const QByteArray &requestXml, RowSink &sink) const
{
    if (!m_service)
        throw tessaly::Error(ErrorNumber::Unspecified, QStringLiteral("The proxy has no data service."));
    m_service->select(requestXml, sink);
}

} // namespace dataservice
