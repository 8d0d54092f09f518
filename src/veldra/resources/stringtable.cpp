#include "veldra/resources/stringtable.h"

#include <QLocale>

#include <algorithm>
#include <optional>

namespace veldra {

namespace {

struct Entry
{
    int id;
    const char16_t *english;
    const char16_t *japanese;
};

constexpr Entry entries[] = {
#define VELDRA_STRING(id, name, english, japanese) { id, english, japanese },
#include "veldra/resources/strings.def"
#undef VELDRA_STRING
};

constexpr bool idsAreUnique()
{
    for (std::size_t i = 0; i < std::size(entries); ++i) {
        for (std::size_t j = i + 1; j < std::size(entries); ++j) {
            if (entries[i].id == entries[j].id)
                return false;
        }
    }
    return true;
}
static_assert(idsAreUnique(), "two texts of the string table share a key");

std::optional<Language> &chosenLanguage()
{
    static std::optional<Language> language;
    return language;
}

Language languageFromEnvironment()
{
    const QByteArray forced = qgetenv("VELDRA_LANG").toLower();
    if (forced.startsWith("ja"))
        return Language::Japanese;
    if (forced.startsWith("en"))
        return Language::English;
    return QLocale().language() == QLocale::Japanese ? Language::Japanese : Language::English;
}

const Entry *find(int id)
{
    const auto it = std::find_if(std::begin(entries), std::end(entries),
                                 [id](const Entry &entry) { return entry.id == id; });
    return it == std::end(entries) ? nullptr : it;
}

} // namespace

Language StringTable::language()
{
    if (!chosenLanguage())
        chosenLanguage() = languageFromEnvironment();
    return *chosenLanguage();
}

void StringTable::setLanguage(Language language)
{
    chosenLanguage() = language;
}

QString StringTable::text(StringId id)
{
    return text(int(id), language());
}

QString StringTable::text(StringId id, Language language)
{
    return text(int(id), language);
}

QString StringTable::text(int id, Language language)
{
    const Entry *entry = find(id);
    if (!entry)
        return {};
    return QString::fromUtf16(language == Language::Japanese ? entry->japanese : entry->english);
}

bool StringTable::contains(int id)
{
    return find(id) != nullptr;
}

QList<int> StringTable::ids()
{
    QList<int> result;
    for (const Entry &entry : entries)
        result.append(entry.id);
    return result;
}

} // namespace veldra
