#pragma once

#include <QString>

namespace veldra {

// Whether the engines behind the data service take an alias as it is written: a plain name
// (a letter or _, then letters, digits or _; letters of any script) that neither engine
// reserves, or a name in double quotes with every quote inside doubled. Commas and control
// characters are refused inside quotes as well: the "selection" slot separates names with
// commas. The empty alias (no alias) is fine.
bool isUsableAlias(const QString &alias);

// Whether a word, in any case, is one the engines cannot take as a plain alias: PostgreSQL's
// reserved words, the words it reserves for functions and types, and those it takes as a label
// only after AS; and the key words SQLite cannot take as a name.
bool isReservedWord(const QString &word);

} // namespace veldra
