#pragma once

#include <QString>

namespace veldra {

// The literals a selection value may be, as the condition carries it to the engine unchanged.

// One literal the engines accept as written: a number (12, -3.5, 1e3, 007), a text in single
// quotes with every quote inside doubled ('O''Brien'), NULL, TRUE or FALSE in any case; or a
// list of these separated by commas, for IN. Blanks around the items are fine.
bool isSqlLiteral(const QString &value);

// 'text' with every single quote inside doubled.
QString sqlTextLiteral(const QString &text);

// What "Get from DB" stores with its literal choice on: a number written as a number is (no
// leading zeros, so a code such as 00501 stays text) stays bare, any other content becomes a
// text literal.
QString literalOfContent(const QString &content);

// What Quote makes of a value: a literal stays as it is, anything else becomes a text literal.
QString quotedValue(const QString &value);

} // namespace veldra
