#pragma once

#include "tessaly/tessaly_export.h"

#include <QDomDocument>
#include <QMetaType>
#include <QString>

#include <memory>

namespace tessaly {

// The framework's request object: a request text loaded into a value that the host passes to
// the data service and saves with the component. The text is kept as it is; the document is
// parsed only when someone asks for it.
class TESSALY_EXPORT Request
{
public:
    // Creates the request value from its text (the framework's load operation).
    static std::shared_ptr<Request> load(const QString &text);

    const QString &text() const { return m_text; }
    // Raises tessaly::Error when the text is not well-formed XML.
    QDomDocument document() const;

private:
    QString m_text;
};

using RequestRef = std::shared_ptr<Request>;

} // namespace tessaly

Q_DECLARE_METATYPE(tessaly::RequestRef)
