#pragma once

#include "tessaly/tessaly_export.h"

#include <QDomDocument>

namespace tessaly {

// The framework's data service proxy: one request operation, a request document in and the
// response document out. A failure of the service is raised as tessaly::Error carrying the
// service's error number; a null document means the service gave no answer.
class TESSALY_EXPORT ServiceProxy
{
public:
    virtual ~ServiceProxy();
    virtual QDomDocument request(const QDomDocument &requestDocument) = 0;
};

} // namespace tessaly
