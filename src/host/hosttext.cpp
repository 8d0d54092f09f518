#include "host/hosttext.h"

#include "veldra/resources/stringtable.h"

namespace host {

namespace {

struct Entry
{
    const char16_t *english;
    const char16_t *japanese;
};

// In the order of HostText. Japanese texts use full-width punctuation.
constexpr Entry entries[] = {
    { u"\"%1\" is not an input of the component; its inputs are: %2",
      u"「%1」はコンポーネントの入力ではありません。入力は次のとおりです：%2" },
    { u"selection: \"%1\" is no column or expression of the query; its selections are: %2",
      u"selection：「%1」は問い合わせの列でも式でもありません。選択できるのは次のとおりです：%2" },
    { u"%1: the query takes no row count at run time (%2)", u"%1：この問い合わせは実行時に行数を受け付けません（%2）" },
    { u"its row count is fixed at %1 in the wizard", u"行数はウィザードで %1 に固定されています" },
    { u"it has no row count", u"行数の指定がありません" },
    { u"%1: the query takes no ordering at run time", u"%1：この問い合わせは実行時に並べ替えを受け付けません" },
    { u"OrderBy: \"%1\" is not one of the query's ordering choices: %2",
      u"OrderBy：「%1」は問い合わせの並べ替えの選択肢にありません。選択肢：%2" },
    { u"cannot set \"%1\" to \"%2\": %3", u"「%1」を「%2」にできません：%3" },
    { u"%1: the folder %2 does not exist", u"%1：フォルダー %2 がありません" },
    { u"%1: %2 is not a folder", u"%1：%2 はフォルダーではありません" },
    { u"%1: the folder %2 cannot be written (%3)", u"%1：フォルダー %2 に書き込めません（%3）" },
    { u"%1: is a folder, not a file", u"%1：ファイルではなくフォルダーです" },
    { u"%1: not a regular file (a device, FIFO or socket)", u"%1：通常のファイルではありません（デバイス、FIFO、ソケット）" },
    { u"%1: the file cannot be written (%2)", u"%1：ファイルに書き込めません（%2）" },
    { u"%1; no writable folder was found to keep the component in", u"%1。コンポーネントを残せる書き込み可能なフォルダーが見つかりません" },
    { u", ", u"、" },
};

} // namespace

QString hostText(HostText id)
{
    const Entry &entry = entries[int(id)];
    const bool japanese = veldra::StringTable::language() == veldra::Language::Japanese;
    return QString::fromUtf16(japanese ? entry.japanese : entry.english);
}

} // namespace host
