#include "veldra/records/recordio.h"

namespace veldra::recordio {

bool readRecord(tessaly::TagStream &stream, const QString &element,
                const std::function<bool(const QString &child)> &readChild)
{
    if (stream.ReadTag() != element)
        return true;
    for (;;) {
        const QString child = stream.ReadTag();
        if (!readChild(child))
            break;
        stream.ReadEndTag();
    }
    stream.ReadEndTag();
    return true;
}

} // namespace veldra::recordio
