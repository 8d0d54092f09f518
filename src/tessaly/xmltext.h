#pragma once

#include <QString>

#include <optional>

namespace tessaly::xmltext {

// Whether XML 1.0 carries the text unchanged: no characters outside its Char production,
// no unpaired surrogates, no carriage return (parsers fold it into a line feed) and, inside an
// attribute, no tab or line feed either (parsers turn them into blanks).
bool carriesUnchanged(const QString &text, bool inAttribute);

// The escaped form used when it does not: "\\" for a backslash and "\uHHHH" for every UTF-16
// unit that XML cannot carry. Everything else stays as it is.
QString escape(const QString &text, bool inAttribute);
std::optional<QString> unescape(const QString &text);

} // namespace tessaly::xmltext
