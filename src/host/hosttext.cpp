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
    { u"%1: the settings name a parameter the query does not have", u"%1：設定に問い合わせにないパラメーターが指定されています" },
    { u"%1: \"%2\" is no relative date; use today, start-of-week, start-of-month or start-of-year, "
      u"optionally with an offset such as -30d, +1w, -1m or -2y",
      u"%1：「%2」は相対日付ではありません。today、start-of-week、start-of-month、start-of-year に、"
      u"必要なら -30d、+1w、-1m、-2y のような差を付けてください" },
    { u"%1: a list read from the data source needs its value column", u"%1：データソースから読む一覧には値の列が必要です" },
    { u"the lists refer to each other in a cycle: %1", u"一覧が互いを参照して循環しています：%1" },
    { u"%1: the list could not be read from the data source (%2); it shows the values stored in the query",
      u"%1：一覧をデータソースから読めませんでした（%2）。問い合わせに保存された値を表示しています" },
    { u"%1: the list waits for a value of %2", u"%1：一覧は %2 の値を待っています" },
    { u"%1: no value is chosen", u"%1：値が選ばれていません" },
    { u"there is no data source named \"%1\"; there are: %2", u"「%1」という名前のデータソースはありません。あるのは次のとおりです：%2" },
    { u"%1: %2", u"%1：%2" },
    { u"%1 takes one value; allow several values in its settings to choose more",
      u"%1 は値を一つだけ受け付けます。複数選ぶには設定で複数の値を許してください" },
};

} // namespace

QString hostText(HostText id)
{
    const Entry &entry = entries[int(id)];
    const bool japanese = veldra::StringTable::language() == veldra::Language::Japanese;
    return QString::fromUtf16(japanese ? entry.japanese : entry.english);
}

} // namespace host
