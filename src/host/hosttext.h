#pragma once

#include <QString>

namespace host {

// The texts the hosts share, in English and Japanese, following the component's language
// choice (VELDRA_LANG=en|ja, otherwise the locale). Each host words its own messages; these
// are the ones they say alike.
enum class HostText {
    NotAnInput,
    NotASelection,
    NoRunTimeRowCount,
    FixedRowCount,
    NoRowCount,
    NoRunTimeOrdering,
    NotAnOrderChoice,
    CannotSetInput,
    FolderMissing,
    NotAFolder,
    FolderNotWritable,
    IsAFolder,
    NotARegularFile,
    FileNotWritable,
    NowhereToKeep,
    ListSeparator,
    SettingForNoParameter,
    NotARelativeDate,
    ListWithoutValue,
    ListCycle,
    ListUnreadable,
    ListWaits,
    NoValuesChosen,
    NoSuchSource,
    BadLiteral,
    OneValueOnly,
};

QString hostText(HostText id);

} // namespace host
