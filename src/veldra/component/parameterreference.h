#pragma once

#include "veldra/veldra_export.h"

#include <QString>
#include <QStringView>

#include <string_view>

namespace veldra {

// Parameter references in a condition: "@@@" followed by a name that ends before the first of
// 27 delimiter characters ( -=<>+/* ',{}()&^%$#@!;:?~\| ) or at the end of the text. The whole
// reference, "@@@" included, is the parameter's key.
namespace parameterreference {

inline constexpr QStringView marker = u"@@@";

VELDRA_EXPORT bool isDelimiter(QChar c);
// Position of the first delimiter at or after from, or -1.
VELDRA_EXPORT qsizetype findDelimiter(QStringView text, qsizetype from);

// Position of the first "@@@" at or after from, or -1. It looks for single "@" characters, which
// is several times faster than a search for the three-character marker.
inline qsizetype findMarker(QStringView text, qsizetype from)
{
    const std::u16string_view chars(text.utf16(), std::size_t(text.size()));
    for (std::size_t at = chars.find(u'@', std::size_t(from)); at != chars.npos;
         at = chars.find(u'@', at + 1)) {
        if (chars.size() - at >= std::size_t(marker.size()) && chars[at + 1] == u'@'
            && chars[at + 2] == u'@')
            return qsizetype(at);
    }
    return -1;
}

// Calls visit(stretchBefore, reference) for each reference in order, then returns the text after
// the last one. Stretches and references are views into text.
template<typename Visit>
QStringView scan(QStringView text, Visit visit)
{
    qsizetype position = 0;
    for (;;) {
        const qsizetype start = findMarker(text, position);
        if (start < 0)
            return text.mid(position);
        qsizetype end = findDelimiter(text, start + marker.size());
        if (end < 0)
            end = text.size();
        visit(text.mid(position, start - position), text.mid(start, end - start));
        position = end;
    }
}

} // namespace parameterreference
} // namespace veldra
