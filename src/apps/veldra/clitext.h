#pragma once

#include <QString>

class QTranslator;

// The tool's own texts, in English and Japanese. The component's string table is the
// component's; these belong to the command line only. The language is the component's:
// VELDRA_LANG=en|ja, otherwise the locale.
enum class CliText {
    // veldra --help
    Usage,
    CommandsHeading,
    MoreHelp,
    UnknownCommand,
    SqlSummary,
    RequestSummary,
    RunSummary,
    ParamsSummary,
    BrowseSummary,
    RegisterSummary,
    EditSummary,
    // the commands' help
    SqlDescription,
    RequestDescription,
    RunDescription,
    ParamsDescription,
    BrowseDescription,
    RegisterDescription,
    EditDescription,
    EditDocArgument,
    FileArgument,
    DocArgument,
    SetOption,
    SetFirstOption,
    SaveOption,
    FormatOption,
    FilledOption,
    PickOption,
    SourceOption,
    SettingOption,
    SearchOption,
    SettingWantsKey,
    PickWantsParameter,
    ParamSeveralValues,
    ParamRelativeDefault,
    ParamLiveList,
    ParamStoredList,
    ParamMore,
    EngineOption,
    EngineDsnOption,
    EngineCatalogOption,
    ProviderArgument,
    DsnArgument,
    CatalogArgument,
    TableArgument,
    RegistryFileOption,
    RemoveOption,
    // messages
    GiveOneFile,
    GiveOneDoc,
    NoDisplay,
    EditWantsComponent,
    PlatformShowsNoWindows,
    RunUsage,
    BrowseUsage,
    RegisterUsage,
    SetWantsAssignment,
    YieldsNoRequest,
    MissingValue,
    MissingTitledValue,
    UndefinedParameter,
    EditTarget,
    EditNewTarget,
    EditSaved,
    EditNotSaved,
    EditKept,
    NothingFound,
    NoSuchDataSource,
    CapNotice,
    WriteFailed,
    IncompleteResult,
    StandardInput,
    // results
    RowCountOne,
    RowCountMany,
    RowCountCut,
    ParamTypedIn,
    ParamChosenFromList,
    ParamValue,
    ParamNoValue,
    NoParameters,
    // veldra serve
    ServeSummary,
    ServeDescription,
    ServeDirArgument,
    ServeConfigOption,
    ServeListenOption,
    ServePortOption,
    ServeTokenFileOption,
    ServeWorkersOption,
    ServeAccessLogOption,
    ServeUsage,
    ServeNeedsToken,
    ServeListening,
    ServeTokenAt,
    ServeStopping,
};

QString cliText(CliText id);

// "(N rows)" under a table; cap >= 0 says the row cap cut the result there.
QString rowCountLine(qint64 rows, qint64 cap);

// A failure of the data service or the platform as the tool says it: in Japanese a summary of
// the error number leads the service's own message.
QString serviceReason(qint32 number, const QString &message);

// Japanese for the texts of QCommandLineParser (usage line, headings, its own options and
// errors); nullptr when the language is English. Owned by the caller.
QTranslator *createParserTranslator();
