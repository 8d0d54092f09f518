#pragma once

#include <QString>

namespace dataservice {

// Messages carry names from requests and texts from engines; both can be as long as a
// hostile user makes them, so every message keeps only a bounded excerpt of either.
namespace MessageText {

constexpr qsizetype NameLimit = 200; // characters of a name quoted in a message
constexpr qsizetype EngineLimit = 2000; // bytes of an engine's own message

// The text, or its first characters and how much was left out.
QString excerpt(const QString &text, qsizetype limit = NameLimit);

// An engine's NUL-terminated UTF-8 message, read no further than the limit.
QString fromEngine(const char *utf8, qsizetype limit = EngineLimit);

} // namespace MessageText

} // namespace dataservice
