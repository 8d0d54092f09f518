#pragma once

#include <QByteArrayView>

#include <cstring>

namespace tessaly {

enum class Markup { Declaration, EndTag, StartTag };

// One pass over the bytes of an XML document before any parser sees them, for checks a parser
// would make slowly (it compares each attribute of an element with every other one). Skips
// comments, CDATA sections and processing instructions; calls visit(kind, offset) for each
// other '<', which returns the offset to go on from.
template<typename Visit>
void scanMarkup(QByteArrayView xml, Visit visit)
{
    const auto skipPast = [&](qsizetype from, const char *close) {
        const qsizetype at = xml.indexOf(close, from);
        return at < 0 ? xml.size() : at + qsizetype(std::strlen(close));
    };
    for (qsizetype i = xml.indexOf('<'); i >= 0 && i < xml.size(); i = xml.indexOf('<', i)) {
        const QByteArrayView rest = xml.sliced(i);
        if (rest.startsWith("<!--"))
            i = skipPast(i + 4, "-->");
        else if (rest.startsWith("<![CDATA["))
            i = skipPast(i + 9, "]]>");
        else if (rest.startsWith("<?"))
            i = skipPast(i + 2, "?>");
        else if (rest.startsWith("<!"))
            i = visit(Markup::Declaration, i);
        else if (rest.startsWith("</"))
            i = visit(Markup::EndTag, i);
        else
            i = visit(Markup::StartTag, i);
    }
}

} // namespace tessaly
