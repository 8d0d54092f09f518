#include "messagetext.h"

#include <cstring>

namespace dataservice::MessageText {

QString excerpt(const QString &text, qsizetype limit)
{
    if (text.size() <= limit)
        return text;
    qsizetype keep = limit;
    if (text.at(keep - 1).isHighSurrogate())
        --keep;
    return text.left(keep) + QStringLiteral("... (%1 more characters)").arg(text.size() - keep);
}

QString fromEngine(const char *utf8, qsizetype limit)
{
    if (!utf8)
        return {};
    // strnlen: the message may be hundreds of megabytes, and is never copied whole.
    const qsizetype length = qsizetype(strnlen(utf8, size_t(limit) + 1));
    if (length <= limit)
        return QString::fromUtf8(utf8, length).trimmed();
    qsizetype keep = limit;
    while (keep > 0 && (static_cast<unsigned char>(utf8[keep]) & 0xC0) == 0x80)
        --keep; // do not split a character
    return QString::fromUtf8(utf8, keep)
        + QStringLiteral("... (cut; the engine's message is longer)");
}

} // namespace dataservice::MessageText
