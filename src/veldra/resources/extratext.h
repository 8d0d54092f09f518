#pragma once

#include <QString>

namespace veldra {

// Texts of the controls and hints we add beside the system's own. They are ours, not the
// system's, so they stay out of the numbered string table; they follow the same language.
enum class ExtraText {
    AliasEditTip,
    AliasRuleTip,
    RenameAliasAction,
    UnavailableReason,
    NoCatalogsListed,
    ReasonLabel,
    StoreAsLiteralsCheck,
    QuoteValuesButton,
    QuoteValuesTip,
    NotLiteralWarning,
    // Names that assistive technology says for controls whose caption is missing, shared or
    // says nothing of what they do.
    ColumnListName,
    ExpressionListName,
    AliasEditDescription,
    DeleteExpressionName,
    AddColumnToConditionName,
    TopNParamName,
    OrderByParamName,
    GroupListName,
    ValueListName,
    FoundValuesName,
    FoundNamesName,
    ExpressionTextName,
    PadSelectionListName,
};

QString extraText(ExtraText id);

} // namespace veldra
