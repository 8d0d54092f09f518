#include "veldra/resources/extratext.h"

#include "veldra/resources/stringtable.h"

namespace veldra {

namespace {

struct Entry
{
    ExtraText id;
    const char16_t *english;
    const char16_t *japanese;
};

// Japanese texts use full-width punctuation, as the system's Japanese texts do.
const Entry entries[] = {
    { ExtraText::AliasEditTip,
      u"Click the alias of the selected row, or press F2, to rename it. A double click removes the row.",
      u"選択した行の別名をクリックするか F2 キーを押すと、別名を変更できます。ダブルクリックすると行を削除します。" },
    { ExtraText::AliasRuleTip,
      u"An alias is a name of letters, digits and _ that is not an SQL key word, or a name in double quotes "
      u"such as \"Total Revenue\".",
      u"別名には、SQL のキーワードではない英字・数字・_ からなる名前か、\"Total Revenue\" のように二重引用符で囲んだ名前を使います。" },
    { ExtraText::RenameAliasAction, u"Rename Alias", u"別名の変更" },
    { ExtraText::UnavailableReason, u"%1 cannot be used: %2", u"%1 は使用できません：%2" },
    { ExtraText::NoCatalogsListed, u"the data service listed no catalogs for it.",
      u"データサービスがカタログを返しませんでした。" },
    { ExtraText::ReasonLabel, u"Reason:", u"理由：" },
    { ExtraText::StoreAsLiteralsCheck, u"Store text values as SQL literals ('...')",
      u"テキストの値を SQL リテラル（'...'）として格納する" },
    { ExtraText::QuoteValuesButton, u"Quote", u"引用符" },
    { ExtraText::QuoteValuesTip,
      u"Put every value that is not an SQL literal yet in single quotes; the names stay as they are.",
      u"SQL リテラルでない値をすべて単一引用符で囲みます。名前はそのままです。" },
    { ExtraText::NotLiteralWarning,
      u"Not an SQL literal, put into the condition as written: %1. Text values need single quotes ('...'); "
      u"Quote adds them.",
      u"SQL リテラルではないため、書かれたとおりに条件に入ります：%1。テキストの値には単一引用符（'...'）が必要です。"
      u"「引用符」で付けられます。" },
    { ExtraText::ColumnListName, u"Columns of the table", u"テーブルの列" },
    { ExtraText::ExpressionListName, u"Expressions", u"式の一覧" },
    { ExtraText::AliasEditDescription,
      u"F2 or the context menu key renames the alias of the current row.",
      u"F2 キーまたはコンテキストメニューキーで、現在の行の別名を変更できます。" },
    { ExtraText::DeleteExpressionName, u"Delete expression", u"式の削除" },
    { ExtraText::AddColumnToConditionName, u"Add the column to the condition", u"列を条件に追加" },
    { ExtraText::TopNParamName, u"Make the row count a parameter", u"行数をパラメータにする" },
    { ExtraText::OrderByParamName, u"Make the ordering a parameter", u"並べ替えをパラメータにする" },
    { ExtraText::GroupListName, u"Columns to group by", u"グループ化する列" },
    { ExtraText::ValueListName, u"Selection values", u"選択値の一覧" },
    { ExtraText::FoundValuesName, u"Values found", u"取得した値" },
    { ExtraText::FoundNamesName, u"Display names found", u"取得した表示名" },
    { ExtraText::ExpressionTextName, u"Expression", u"式" },
    { ExtraText::PadSelectionListName, u"Columns in the result", u"結果に含める列" },
};

} // namespace

QString extraText(ExtraText id)
{
    const bool japanese = StringTable::language() == Language::Japanese;
    for (const Entry &entry : entries) {
        if (entry.id == id)
            return QString::fromUtf16(japanese ? entry.japanese : entry.english);
    }
    return {};
}

} // namespace veldra
