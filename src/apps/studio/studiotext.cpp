#include "studiotext.h"

#include "host/translations.h"
#include "veldra/resources/stringtable.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace {

// In the order of StudioText.
const char *const entries[] = {
    QT_TRANSLATE_NOOP("StudioText", "&File"),
    QT_TRANSLATE_NOOP("StudioText", "&New"),
    QT_TRANSLATE_NOOP("StudioText", "&Open..."),
    QT_TRANSLATE_NOOP("StudioText", "Open &Recent"),
    QT_TRANSLATE_NOOP("StudioText", "(none yet)"),
    QT_TRANSLATE_NOOP("StudioText", "&Save"),
    QT_TRANSLATE_NOOP("StudioText", "Save &As..."),
    QT_TRANSLATE_NOOP("StudioText", "&Export Rows..."),
    QT_TRANSLATE_NOOP("StudioText", "&Quit"),
    QT_TRANSLATE_NOOP("StudioText", "&Edit"),
    QT_TRANSLATE_NOOP("StudioText", "&Copy"),
    QT_TRANSLATE_NOOP("StudioText", "Copy with Column &Names"),
    QT_TRANSLATE_NOOP("StudioText", "Select &All"),
    QT_TRANSLATE_NOOP("StudioText", "&Query"),
    QT_TRANSLATE_NOOP("StudioText", "&Run Again"),
    QT_TRANSLATE_NOOP("StudioText", "C&heck"),
    QT_TRANSLATE_NOOP("StudioText", "&View"),
    QT_TRANSLATE_NOOP("StudioText", "Show &Request"),
    QT_TRANSLATE_NOOP("StudioText", "Show &Chart"),
    QT_TRANSLATE_NOOP("StudioText", "Untitled"),
    QT_TRANSLATE_NOOP("StudioText", "%1[*] - Veldra Studio"),
    QT_TRANSLATE_NOOP("StudioText", "Component documents (*.xml);;All files (*)"),
    QT_TRANSLATE_NOOP("StudioText", "Request"),
    QT_TRANSLATE_NOOP("StudioText", "Inputs"),
    QT_TRANSLATE_NOOP("StudioText", "Rows"),
    QT_TRANSLATE_NOOP("StudioText", "Message about the rows"),
    QT_TRANSLATE_NOOP("StudioText", "%1 rows in %2 s"),
    QT_TRANSLATE_NOOP("StudioText", "Running the query... %1 rows so far"),
    QT_TRANSLATE_NOOP("StudioText", "Only the first %1 rows are shown: the data source's row cap cut the answer. Narrow the condition, or raise "
      "rowcap for the data source in datasources.ini."),
    QT_TRANSLATE_NOOP("StudioText", "Running the query..."),
    QT_TRANSLATE_NOOP("StudioText", "Nothing is asked yet."),
    QT_TRANSLATE_NOOP("StudioText", "The query failed; the reason is above the rows."),
    QT_TRANSLATE_NOOP("StudioText", "No request: %1"),
    QT_TRANSLATE_NOOP("StudioText", "Nothing is asked yet: give \"%1\" a value in its input on the left."),
    QT_TRANSLATE_NOOP("StudioText", "No request: the condition refers to %1, which is no parameter of the query; fix it with Query > Edit Query."),
    QT_TRANSLATE_NOOP("StudioText", "The data service refused the request (error 0x%1):\n%2"),
    QT_TRANSLATE_NOOP("StudioText", "BLOB, %1 bytes: %2"),
    QT_TRANSLATE_NOOP("StudioText", "Cannot open the document"),
    QT_TRANSLATE_NOOP("StudioText", "Cannot save the document"),
    QT_TRANSLATE_NOOP("StudioText", "Not saved yet: File > Save As chooses where the component goes"),
    QT_TRANSLATE_NOOP("StudioText", "Saved in %1"),
    QT_TRANSLATE_NOOP("StudioText", "Query changed, not saved yet: File > Save writes it to %1"),
    QT_TRANSLATE_NOOP("StudioText", "Unsaved changes"),
    QT_TRANSLATE_NOOP("StudioText", "\"%1\" has changes that are not saved. Save them first?"),
    QT_TRANSLATE_NOOP("StudioText", "Check"),
    QT_TRANSLATE_NOOP("StudioText", "The statement runs with the current values: its first row came after %1 s."),
    QT_TRANSLATE_NOOP("StudioText", "The statement runs with the current values, but gives no rows."),
    QT_TRANSLATE_NOOP("StudioText", "The data service refuses the statement with the current values (error 0x%1):\n%2"),
    QT_TRANSLATE_NOOP("StudioText", "CSV files (*.csv);;JSON files (*.json)"),
    QT_TRANSLATE_NOOP("StudioText", "Cannot export the rows"),
    QT_TRANSLATE_NOOP("StudioText", "Exported %1 rows to %2"),
    QT_TRANSLATE_NOOP("StudioText", "Chart"),
    QT_TRANSLATE_NOOP("StudioText", "C&hart:"),
    QT_TRANSLATE_NOOP("StudioText", "Bar"),
    QT_TRANSLATE_NOOP("StudioText", "Line"),
    QT_TRANSLATE_NOOP("StudioText", "&Labels from:"),
    QT_TRANSLATE_NOOP("StudioText", "Val&ues:"),
    QT_TRANSLATE_NOOP("StudioText", "Save as &PNG..."),
    QT_TRANSLATE_NOOP("StudioText", "Save as SV&G..."),
    QT_TRANSLATE_NOOP("StudioText", "Tick a column of numbers under Values to chart it."),
    QT_TRANSLATE_NOOP("StudioText", "The bar chart shows the first %1 of %2 rows; a line chart shows them all."),
    QT_TRANSLATE_NOOP("StudioText", "PNG images (*.png)"),
    QT_TRANSLATE_NOOP("StudioText", "SVG images (*.svg)"),
    QT_TRANSLATE_NOOP("StudioText", "Cannot save the chart"),
    QT_TRANSLATE_NOOP("StudioText", "&Data source:"),
    QT_TRANSLATE_NOOP("StudioText", "As the component names it"),
    QT_TRANSLATE_NOOP("StudioText", "%1 (several values)"),
    QT_TRANSLATE_NOOP("StudioText", "Type to narrow the list"),
    QT_TRANSLATE_NOOP("StudioText", "... more: type to narrow the list"),
    QT_TRANSLATE_NOOP("StudioText", "Chosen, but not on this page of the list: %1"),
    QT_TRANSLATE_NOOP("StudioText", "Parameters"),
    QT_TRANSLATE_NOOP("StudioText", "&Parameter Settings..."),
    QT_TRANSLATE_NOOP("StudioText", "&Parameter:"),
    QT_TRANSLATE_NOOP("StudioText", "Several &values"),
    QT_TRANSLATE_NOOP("StudioText", "Relative &default:"),
    QT_TRANSLATE_NOOP("StudioText", "List from &table:"),
    QT_TRANSLATE_NOOP("StudioText", "&Value column:"),
    QT_TRANSLATE_NOOP("StudioText", "&Shown column:"),
    QT_TRANSLATE_NOOP("StudioText", "&Filter:"),
    QT_TRANSLATE_NOOP("StudioText", "&Order by:"),
    QT_TRANSLATE_NOOP("StudioText", "Desc&ending"),
    QT_TRANSLATE_NOOP("StudioText", "&Keep the list for (seconds):"),
    QT_TRANSLATE_NOOP("StudioText", "Values of %1"),
};

static_assert(std::size(entries) == size_t(StudioText::ValuesOf) + 1, "one entry per StudioText");

} // namespace

QString studioText(StudioText id)
{
    return host::translatedText("StudioText", entries[int(id)]);
}

void installQtTranslations(QCoreApplication &application)
{
    if (veldra::StringTable::language() != veldra::Language::Japanese)
        return;
    auto *translator = new QTranslator(&application);
    if (translator->load(QStringLiteral("qtbase_ja"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}
