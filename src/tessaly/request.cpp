#include "tessaly/request.h"

#include "tessaly/error.h"

namespace tessaly {

std::shared_ptr<Request> Request::load(const QString &text)
{
    auto request = std::make_shared<Request>();
    request->m_text = text;
    return request;
}

QDomDocument Request::document() const
{
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!document.setContent(m_text, &message, &line, &column))
        throw Error(ErrorNumber::BadFileFormat,
                    QStringLiteral("request:%1:%2: %3").arg(line).arg(column).arg(message));
    return document;
}

} // namespace tessaly
