#pragma once

#include "veldra/veldra_export.h"

#include <QList>
#include <QString>

namespace veldra {

// Every key of the string table. Code names a text by its key here, so a missing key is a
// build failure rather than an empty label at run time.
enum class StringId : int {
#define VELDRA_STRING(id, name, english, japanese) name = id,
#include "veldra/resources/strings.def"
#undef VELDRA_STRING
};

enum class Language { English, Japanese };

class VELDRA_EXPORT StringTable
{
public:
    // The language of the texts: VELDRA_LANG=en|ja when set, otherwise the locale's.
    static Language language();
    static void setLanguage(Language language);

    static QString text(StringId id);
    static QString text(StringId id, Language language);
    // Lookup by number, for texts whose key arrives as data; empty for an unknown key.
    static QString text(int id, Language language);
    static bool contains(int id);
    static QList<int> ids();
};

// The text of a key in the current language.
inline QString text(StringId id)
{
    return StringTable::text(id);
}

} // namespace veldra
