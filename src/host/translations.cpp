#include "host/translations.h"

#include "veldra/resources/stringtable.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTranslator>

namespace host {

namespace {

bool japanese()
{
    return veldra::StringTable::language() == veldra::Language::Japanese;
}

} // namespace

QString translationsPath()
{
    const QString installed
            = QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../share/veldra/translations"));
    if (QFileInfo::exists(installed + QStringLiteral("/veldra_ja.qm")))
        return installed;
    return QStringLiteral(VELDRA_BUILD_TRANSLATIONS);
}

void installTranslations(QCoreApplication &application)
{
    if (!japanese())
        return;
    auto *translator = new QTranslator(&application);
    if (translator->load(QStringLiteral("veldra_ja"), translationsPath()))
        QCoreApplication::installTranslator(translator);
    else
        delete translator; // the English sources stand in
}

QString translatedText(const char *context, const char *source)
{
    return japanese() ? QCoreApplication::translate(context, source) : QString::fromUtf8(source);
}

} // namespace host
