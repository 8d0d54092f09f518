#pragma once

#include <QString>

// The studio's own captions. The component's texts come from its string table; these belong to
// the host, in the same two languages, following the same language choice.
enum class StudioText {
    FileMenu,
    OpenAction,
    SaveAction,
    SaveAsAction,
    QuitAction,
    QueryMenu,
    ShowRequestAction,
    Untitled,
    WindowTitle,
    DocumentFilter,
    RequestHeading,
    RowCount,
    RowsCut,
    Running,
    NoRequest,
    MissingValue,
    UndefinedParameter,
    Refused,
    CannotOpen,
    CannotSave,
    NotSavedYet,
    SavedIn,
    ChangedSavesTo,
};

QString studioText(StudioText id);
