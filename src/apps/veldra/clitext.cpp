#include "clitext.h"

#include "dataservice/errornumber.h"
#include "host/translations.h"
#include "tessaly/error.h"
#include "veldra/resources/stringtable.h"

#include <QCoreApplication>

namespace {

bool japanese()
{
    return veldra::StringTable::language() == veldra::Language::Japanese;
}

struct Entry
{
    CliText id;
    const char *english;
};

// The translations (src/host/translations/veldra_*.ts) use full-width punctuation
// throughout in Japanese: （）「」、。：
const Entry entries[] = {
    { CliText::Usage, QT_TRANSLATE_NOOP("CliText", "Usage: veldra COMMAND [OPTIONS]") },
    { CliText::CommandsHeading, QT_TRANSLATE_NOOP("CliText", "Commands:") },
    { CliText::MoreHelp, QT_TRANSLATE_NOOP("CliText", "Run 'veldra COMMAND --help' for the options of a command.") },
    { CliText::OptionsHeading, QT_TRANSLATE_NOOP("CliText", "Options:") },
    { CliText::VersionOption, QT_TRANSLATE_NOOP("CliText", "print the version of veldra") },
    { CliText::HelpOption, QT_TRANSLATE_NOOP("CliText", "print this help") },
    { CliText::HelpSummary, QT_TRANSLATE_NOOP("CliText", "print the options of COMMAND (the same as 'veldra COMMAND --help')") },
    { CliText::UnknownCommand, QT_TRANSLATE_NOOP("CliText", "unknown command '%1'") },
    { CliText::SqlSummary, QT_TRANSLATE_NOOP("CliText", "print the SELECT statement text of a query definition") },
    { CliText::RequestSummary, QT_TRANSLATE_NOOP("CliText", "print the data-service request of a component, after setting slots") },
    { CliText::RunSummary, QT_TRANSLATE_NOOP("CliText", "send a component's request to the data service and print the rows") },
    { CliText::ParamsSummary, QT_TRANSLATE_NOOP("CliText", "list the parameters of a component with their kinds and values") },
    { CliText::BrowseSummary, QT_TRANSLATE_NOOP("CliText", "list providers, data sources, catalogs, tables or columns") },
    { CliText::RegisterSummary, QT_TRANSLATE_NOOP("CliText", "write the library's class identifiers into the registry store") },
    { CliText::EditSummary, QT_TRANSLATE_NOOP("CliText", "open the query creation wizard on a component and save what it makes") },

    { CliText::SqlDescription,
      QT_TRANSLATE_NOOP("CliText", "Prints the SELECT statement text of the query definition stored in FILE\n"
      "(a saved definition, or a component document holding one). With --filled, the\n"
      "parameters show their current values (after --set) instead of their markers. With\n"
      "--engine, prints the exact SELECT the engine of the data source receives for the\n"
      "component's request, without running it.") },
    { CliText::RequestDescription,
      QT_TRANSLATE_NOOP("CliText", "Loads the component document DOC, writes each --set into the model's slot of that name\n"
      "as the framework would, and prints the request the model publishes in its \"request\" slot.\n"
      "Exit status: 0 a request was printed; 1 the definition yields no request (the missing\n"
      "piece is named on standard error); 2 bad input (a file, a slot name or a value, or a\n"
      "parameter without a value: each is named, and nothing is printed).") },
    { CliText::RunDescription,
      QT_TRANSLATE_NOOP("CliText", "Builds the request of the component in DOC as 'veldra request' does, sends it to the data\n"
      "service and prints the rows as they arrive. DOC may also be a bare query definition.\n"
      "Exit status: 0 rows printed; 1 no request, or the service refused or failed it (the\n"
      "database error report goes to standard error); 2 bad input (a parameter without a value\n"
      "included: nothing is sent); 3 rows printed, but the data source's row cap cut the result;\n"
      "4 standard output could not be written.") },
    { CliText::ParamsDescription,
      QT_TRANSLATE_NOOP("CliText", "Lists the parameters of the query in DOC (a component document or a bare definition):\n"
      "each reference with its title, its kind (typed in, or chosen from a list), its current\n"
      "value, and for a list its selection values (the value put into the condition = the text shown).") },
    { CliText::BrowseDescription,
      QT_TRANSLATE_NOOP("CliText", "Lists the level below what is given: providers, a provider's data sources, a data source's\n"
      "catalogs, a catalog's tables, or a table's columns. A failed request prints the database\n"
      "error report and the service's reason on standard error and exits with status 1.") },
    { CliText::RegisterDescription,
      QT_TRANSLATE_NOOP("CliText", "Writes the library's class identifiers (ProgID -> CLSID) into the registry store that\n"
      "hosts read, so that records and the component answer their CLSIDs.") },
    { CliText::EditDescription,
      QT_TRANSLATE_NOOP("CliText", "Opens the query creation wizard on the component in DOC, or on a new component when DOC\n"
      "does not exist, against the configured data service. Finish saves the component into\n"
      "DOC (a DOC that cannot be written is refused before the wizard opens; if the save still\n"
      "fails, the component is kept in NAME.recovered.component.xml beside it or in a writable\n"
      "folder). Quit leaves DOC as it was. Needs a display.") },
    { CliText::EditDocArgument, QT_TRANSLATE_NOOP("CliText", "a component document") },
    { CliText::FileArgument, QT_TRANSLATE_NOOP("CliText", "a saved query definition or component document; - reads standard input") },
    { CliText::DocArgument, QT_TRANSLATE_NOOP("CliText", "a saved component document or query definition; - reads standard input") },
    { CliText::SetOption,
      QT_TRANSLATE_NOOP("CliText", "write VALUE into the slot NAME (a parameter slot such as @@@Region, selection, TopN, OrderBy, "
      "OrderByAscendant, UpdateRequest); repeatable") },
    { CliText::SetFirstOption, QT_TRANSLATE_NOOP("CliText", "write VALUE into the slot NAME first; repeatable") },
    { CliText::SaveOption, QT_TRANSLATE_NOOP("CliText", "write the component, with the values set, to OUT") },
    { CliText::FormatOption, QT_TRANSLATE_NOOP("CliText", "table (default), csv, json or xml") },
    { CliText::FilledOption, QT_TRANSLATE_NOOP("CliText", "show the parameters' current values instead of their markers") },
    { CliText::EngineOption,
      QT_TRANSLATE_NOOP("CliText", "print the SELECT the engine receives: values in place, its row limit, aliases resolved") },
    { CliText::EngineDsnOption, QT_TRANSLATE_NOOP("CliText", "with --engine: for the data source NAME instead of the document's") },
    { CliText::EngineCatalogOption, QT_TRANSLATE_NOOP("CliText", "with --engine: for the catalog NAME instead of the document's") },
    { CliText::ProviderArgument, QT_TRANSLATE_NOOP("CliText", "e.g. SQLite") },
    { CliText::DsnArgument, QT_TRANSLATE_NOOP("CliText", "a data source, e.g. Sample") },
    { CliText::CatalogArgument, QT_TRANSLATE_NOOP("CliText", "e.g. main") },
    { CliText::TableArgument, QT_TRANSLATE_NOOP("CliText", "a table or view") },
    { CliText::RegistryFileOption, QT_TRANSLATE_NOOP("CliText", "the registry file (default: %1)") },
    { CliText::RemoveOption, QT_TRANSLATE_NOOP("CliText", "remove the entries instead") },

    { CliText::GiveOneFile, QT_TRANSLATE_NOOP("CliText", "give exactly one FILE (see veldra %1 --help)") },
    { CliText::NoDisplay, QT_TRANSLATE_NOOP("CliText", "no display to show the wizard on: neither DISPLAY nor WAYLAND_DISPLAY is set") },
    { CliText::EditWantsComponent,
      QT_TRANSLATE_NOOP("CliText", "%1: not a component document; Finish saves a whole component, so a bare definition is not edited in place") },
    { CliText::PlatformShowsNoWindows, QT_TRANSLATE_NOOP("CliText", "the display platform \"%1\" shows no windows; run it on a desktop") },
    { CliText::GiveOneDoc, QT_TRANSLATE_NOOP("CliText", "give exactly one DOC (see veldra %1 --help)") },
    { CliText::RunUsage, QT_TRANSLATE_NOOP("CliText", "give one DOC and a --format of table, csv, json or xml (see veldra run --help)") },
    { CliText::UnknownFormat, QT_TRANSLATE_NOOP("CliText", "--format \"%1\" is not one of table, csv, json or xml (letters in any case)") },
    { CliText::BrowseUsage, QT_TRANSLATE_NOOP("CliText", "at most PROVIDER DSN CATALOG TABLE (see veldra browse --help)") },
    { CliText::RegisterUsage, QT_TRANSLATE_NOOP("CliText", "takes no arguments") },
    { CliText::SetWantsAssignment, QT_TRANSLATE_NOOP("CliText", "--set wants NAME=VALUE, not \"%1\"") },
    { CliText::YieldsNoRequest, QT_TRANSLATE_NOOP("CliText", "%1 yields no request: %2") },
    { CliText::MissingValue, QT_TRANSLATE_NOOP("CliText", "%1 has no value, so nothing is sent: give one with --set \"%1=...\"") },
    { CliText::MissingTitledValue, QT_TRANSLATE_NOOP("CliText", "%1 (\"%2\") has no value, so nothing is sent: give one with --set \"%1=...\"") },
    { CliText::UndefinedParameter,
      QT_TRANSLATE_NOOP("CliText", "the condition refers to %1, which is no parameter of the query, so nothing is sent: define it in "
      "the wizard (veldra edit) or take it out of the condition") },
    { CliText::EditTarget, QT_TRANSLATE_NOOP("CliText", "Finish saves the component to %1 (replacing the file there)") },
    { CliText::EditNewTarget, QT_TRANSLATE_NOOP("CliText", "Finish saves the component to %1 (a new file)") },
    { CliText::EditSaved, QT_TRANSLATE_NOOP("CliText", "saved the component to %1") },
    { CliText::EditNotSaved, QT_TRANSLATE_NOOP("CliText", "quit: %1 was not written") },
    { CliText::EditKept, QT_TRANSLATE_NOOP("CliText", "could not save: %1. The component is kept in %2; move it where you want it") },
    { CliText::NothingFound, QT_TRANSLATE_NOOP("CliText", "nothing found under %1") },
    { CliText::NoDataSourceConfigured,
      QT_TRANSLATE_NOOP("CliText", "no %1 data source is configured: add a group with provider=%1 to %2 (see docs/datasources.md)") },
    { CliText::NoSuchDataSource, QT_TRANSLATE_NOOP("CliText", "there is no data source named \"%1\"; there are: %2") },
    { CliText::CapNotice, QT_TRANSLATE_NOOP("CliText", "the result was cut at the data source's row cap of %1 rows; there are more rows") },
    { CliText::WriteFailed, QT_TRANSLATE_NOOP("CliText", "standard output could not be written: %1") },
    { CliText::IncompleteResult, QT_TRANSLATE_NOOP("CliText", "the result is incomplete: the rows printed so far are not all of it") },
    { CliText::StandardInput, QT_TRANSLATE_NOOP("CliText", "standard input") },

    { CliText::RowCountOne, QT_TRANSLATE_NOOP("CliText", "(1 row)") },
    { CliText::RowCountMany, QT_TRANSLATE_NOOP("CliText", "(%1 rows)") },
    { CliText::RowCountCut, QT_TRANSLATE_NOOP("CliText", "(%1 rows, cut at the data source's row cap of %2)") },
    { CliText::ParamTypedIn, QT_TRANSLATE_NOOP("CliText", "typed in") },
    { CliText::ParamChosenFromList, QT_TRANSLATE_NOOP("CliText", "chosen from a list") },
    { CliText::ParamValue, QT_TRANSLATE_NOOP("CliText", "value: %1") },
    { CliText::ParamNoValue, QT_TRANSLATE_NOOP("CliText", "value: none (give one with --set \"%1=...\")") },
    { CliText::NoParameters, QT_TRANSLATE_NOOP("CliText", "the query has no parameters") },
    { CliText::ServeSummary, QT_TRANSLATE_NOOP("CliText", "share the components of a folder over HTTP: an API and a web page") },
    { CliText::ServeDescription,
      QT_TRANSLATE_NOOP("CliText", "Serves every component document (*.component.xml) of DIR over HTTP: a web page at / and an API under "
      "/api that needs the token (Authorization: Bearer). Documents added, changed or removed are seen "
      "without a restart. See docs/http.md.") },
    { CliText::ServeDirArgument, QT_TRANSLATE_NOOP("CliText", "the folder of component documents (or directory= in the configuration)") },
    { CliText::ServeConfigOption, QT_TRANSLATE_NOOP("CliText", "read the settings of FILE (see packaging/serve.ini)") },
    { CliText::ServeListenOption, QT_TRANSLATE_NOOP("CliText", "listen on ADDRESS (default 127.0.0.1; another than loopback needs --token-file)") },
    { CliText::ServePortOption, QT_TRANSLATE_NOOP("CliText", "listen on PORT (default 8790; 0 takes a free one)") },
    { CliText::ServeTokenFileOption, QT_TRANSLATE_NOOP("CliText", "the file that holds the token (default ~/.config/veldra/serve.token, made when missing)") },
    { CliText::ServeWorkersOption, QT_TRANSLATE_NOOP("CliText", "answer N requests at once (default 8)") },
    { CliText::ServeAccessLogOption, QT_TRANSLATE_NOOP("CliText", "append the access log to FILE instead of standard error") },
    { CliText::ServeUsage, QT_TRANSLATE_NOOP("CliText", "give one DIR, or directory= in the file of --config (see veldra serve --help)") },
    { CliText::ServeNeedsToken,
      QT_TRANSLATE_NOOP("CliText", "%1 is not a loopback address: serving beyond this machine needs a token file of your own (--token-file "
      "or token_file= in the configuration)") },
    { CliText::ServeListening, QT_TRANSLATE_NOOP("CliText", "serving the components of %2 at %3 (%1 found)") },
    { CliText::ServeTokenAt, QT_TRANSLATE_NOOP("CliText", "the API needs the token in %1 (Authorization: Bearer TOKEN)") },
    { CliText::ServeStopping, QT_TRANSLATE_NOOP("CliText", "stopping: answers in flight have %1 s to finish") },
    { CliText::PickOption, QT_TRANSLATE_NOOP("CliText", "choose VALUE for the parameter NAME by its value or shown text, quoted for the engine; repeat it for a parameter that takes several values") },
    { CliText::SourceOption, QT_TRANSLATE_NOOP("CliText", "run on the data source NAME instead of the one the component names") },
    { CliText::SettingOption, QT_TRANSLATE_NOOP("CliText", "change a host setting of parameter NAME: KEY is multiple, default, table, value, display, filter, order, descending or cache; repeatable") },
    { CliText::SearchOption, QT_TRANSLATE_NOOP("CliText", "list only the values whose shown text holds TEXT") },
    { CliText::SettingWantsKey, QT_TRANSLATE_NOOP("CliText", "--setting wants NAME:KEY=VALUE with KEY one of multiple, default, table, value, display, filter, order, descending, cache (a cache in whole seconds), not \"%1\"") },
    { CliText::PickWantsParameter, QT_TRANSLATE_NOOP("CliText", "--pick: \"%1\" is no parameter of the query; its parameters are: %2") },
    { CliText::ParamSeveralValues, QT_TRANSLATE_NOOP("CliText", "several values") },
    { CliText::ParamRelativeDefault, QT_TRANSLATE_NOOP("CliText", "default: %1 (%2 today)") },
    { CliText::ParamLiveList, QT_TRANSLATE_NOOP("CliText", "values read from %1 %2 (table %3)") },
    { CliText::ParamStoredList, QT_TRANSLATE_NOOP("CliText", "values stored in the query") },
    { CliText::ParamMore, QT_TRANSLATE_NOOP("CliText", "... more: narrow the list with --search TEXT") },
};

struct Reason
{
    qint32 number;
    const char *summary; // said before the service's own message in other languages than English
};

const Reason reasons[] = {
    { dataservice::ErrorNumber::Unspecified, QT_TRANSLATE_NOOP("ServiceReason", "An error occurred in the data service") },
    { dataservice::ErrorNumber::MalformedRequest, QT_TRANSLATE_NOOP("ServiceReason", "The request is malformed") },
    { dataservice::ErrorNumber::UnknownProvider, QT_TRANSLATE_NOOP("ServiceReason", "The provider is not known") },
    { dataservice::ErrorNumber::UnknownDataSource, QT_TRANSLATE_NOOP("ServiceReason", "The data source is not known") },
    { dataservice::ErrorNumber::UnknownCatalog, QT_TRANSLATE_NOOP("ServiceReason", "The catalog is not known") },
    { dataservice::ErrorNumber::UnknownTable, QT_TRANSLATE_NOOP("ServiceReason", "The table or view is not known") },
    { dataservice::ErrorNumber::StatementRefused, QT_TRANSLATE_NOOP("ServiceReason", "The statement was refused") },
    { dataservice::ErrorNumber::Timeout, QT_TRANSLATE_NOOP("ServiceReason", "The statement was stopped at its time limit") },
    { dataservice::ErrorNumber::DatabaseError, QT_TRANSLATE_NOOP("ServiceReason", "The database could not run the statement") },
    { dataservice::ErrorNumber::ConnectionFailed, QT_TRANSLATE_NOOP("ServiceReason", "The database could not be connected to") },
    { dataservice::ErrorNumber::BadConfiguration, QT_TRANSLATE_NOOP("ServiceReason", "The data source's configuration is wrong") },
};

// QCommandLineParser's own texts, as Qt 6 writes them: the parser asks the installed
// translation for them in its own context. Listed here so that lupdate keeps them.
[[maybe_unused]] const char *const parserTexts[] = {
    QT_TRANSLATE_NOOP("QCommandLineParser", "Usage: %1"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "[options]"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Options:"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Arguments:"),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Displays help on commandline options."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Displays help including Qt specific options."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Displays version information."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unknown option '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unknown options: %1."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Missing value after '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unexpected value after '%1'."),
};

} // namespace

QString cliText(CliText id)
{
    for (const Entry &entry : entries) {
        if (entry.id == id)
            return host::translatedText("CliText", entry.english);
    }
    return QString();
}

QString rowCountLine(qint64 rows, qint64 cap)
{
    if (cap >= 0)
        return cliText(CliText::RowCountCut).arg(rows).arg(cap);
    return rows == 1 ? cliText(CliText::RowCountOne) : cliText(CliText::RowCountMany).arg(rows);
}

QString serviceReason(qint32 number, const QString &message)
{
    if (!japanese())
        return message;
    for (const Reason &reason : reasons) {
        if (reason.number == number)
            return QCoreApplication::translate("ServiceReason", reason.summary) + u'：' + message;
    }
    return message;
}
