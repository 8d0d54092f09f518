#pragma once

#include <QString>

class QCoreApplication;

namespace host {

// The hosts' own texts (the command line's, the studio's and the ones they share) are English in
// the sources and reach other languages through Qt's translation files (veldra_LANG.qm), so
// translators work with Qt's own tools. The language is the component's: VELDRA_LANG=en|ja,
// otherwise the locale.

// Loads the translation of the current language, when there is one. The application owns it.
void installTranslations(QCoreApplication &application);

// The text of `source` in `context`: the source itself in English, the translation otherwise.
// Asked each time, so a language switched in the process (as tests do) is followed.
QString translatedText(const char *context, const char *source);

// Where the .qm files are: <bindir>/../share/veldra/translations, or the build tree's.
QString translationsPath();

} // namespace host
