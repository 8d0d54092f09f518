#pragma once

#include <QString>

class QCoreApplication;

// The studio's own captions. The component's texts come from its string table; these belong to
// the host: English in the source, other languages through Qt's translation files
// (host/translations.h), following the same language choice.
enum class StudioText {
    FileMenu,
    NewAction,
    OpenAction,
    RecentMenu,
    NoRecent,
    SaveAction,
    SaveAsAction,
    ExportAction,
    QuitAction,
    EditMenu,
    CopyAction,
    CopyWithNamesAction,
    SelectAllAction,
    QueryMenu,
    RunAgainAction,
    CheckAction,
    ViewMenu,
    ShowRequestAction,
    ShowChartAction,
    Untitled,
    WindowTitle,
    DocumentFilter,
    RequestHeading,
    InputsName,
    RowsName,
    NoticeName,
    RowsIn,
    RowsSoFar,
    CapNotice,
    Running,
    NothingAsked,
    QueryFailed,
    NoRequest,
    MissingValue,
    UndefinedParameter,
    Refused,
    BlobValue,
    CannotOpen,
    CannotSave,
    NotSavedYet,
    SavedIn,
    ChangedSavesTo,
    UnsavedTitle,
    UnsavedQuestion,
    CheckTitle,
    CheckRuns,
    CheckRunsEmpty,
    CheckFails,
    ExportFilter,
    CannotExport,
    Exported,
    ChartName,
    ChartKind,
    BarChart,
    LineChart,
    ChartLabels,
    ChartValues,
    SavePng,
    SaveSvg,
    ChartNeedsNumbers,
    ChartFirstRows,
    PngFilter,
    SvgFilter,
    CannotSaveChart,
};

QString studioText(StudioText id);

// Qt's own texts (OK, Cancel, the file dialogs) in the language the studio speaks, from the Qt
// translations installed with Qt; without them those texts stay English.
void installQtTranslations(QCoreApplication &application);
