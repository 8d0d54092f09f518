#pragma once

#include "tessaly/serviceproxy.h"

#include <memory>

// Passes requests on and keeps the last failure, whose message the component's accessor
// does not show, so that the tool can say why a request failed.
class ErrorRecordingProxy : public tessaly::ServiceProxy
{
public:
    explicit ErrorRecordingProxy(std::shared_ptr<tessaly::ServiceProxy> proxy);

    QDomDocument request(const QDomDocument &requestDocument) override;

    qint32 lastErrorNumber() const { return m_lastErrorNumber; }
    const QString &lastErrorMessage() const { return m_lastErrorMessage; }

private:
    std::shared_ptr<tessaly::ServiceProxy> m_proxy;
    qint32 m_lastErrorNumber = 0;
    QString m_lastErrorMessage;
};
