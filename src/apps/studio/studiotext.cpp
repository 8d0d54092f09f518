#include "studiotext.h"

#include "veldra/resources/stringtable.h"

namespace {

struct Entry
{
    const char16_t *english;
    const char16_t *japanese;
};

// In the order of StudioText.
constexpr Entry entries[] = {
    { u"&File", u"ファイル(&F)" },
    { u"&Open...", u"開く(&O)..." },
    { u"&Save", u"保存(&S)" },
    { u"Save &As...", u"名前を付けて保存(&A)..." },
    { u"&Quit", u"終了(&Q)" },
    { u"&Query", u"クエリ(&Q)" },
    { u"Show &Request", u"要求を表示(&R)" },
    { u"Untitled", u"無題" },
    { u"%1 - Veldra Studio", u"%1 - Veldra Studio" },
    { u"Component documents (*.xml);;All files (*)", u"コンポーネント文書 (*.xml);;すべてのファイル (*)" },
    { u"Request", u"要求" },
    { u"Rows: %1", u"行数: %1" },
    { u"Rows: %1, cut at the data source's row cap", u"行数: %1 (データソースの上限で打ち切り)" },
    { u"Running the query...", u"問い合わせ中..." },
    { u"No request: %1", u"要求がありません: %1" },
    { u"Nothing is asked yet: give \"%1\" a value in its input on the left.",
      u"まだ問い合わせていません: 左の入力欄で「%1」に値を指定してください。" },
    { u"No request: the condition refers to %1, which is no parameter of the query; fix it with Query > Edit Query.",
      u"要求がありません: 条件が参照する %1 は問い合わせのパラメータではありません。クエリ > クエリの編集で直してください。" },
    { u"The data service refused the request: %1", u"データサービスが要求を拒否しました: %1" },
    { u"Cannot open the document", u"文書を開けません" },
    { u"Cannot save the document", u"文書を保存できません" },
    { u"Not saved yet: File > Save As chooses where the component goes",
      u"未保存: 保存先は ファイル > 名前を付けて保存 で選びます" },
    { u"Saved in %1", u"保存先: %1" },
    { u"Query changed, not saved yet: File > Save writes it to %1",
      u"クエリを変更しました (未保存): ファイル > 保存 で %1 に書き込みます" },
};

} // namespace

QString studioText(StudioText id)
{
    const Entry &entry = entries[int(id)];
    const bool japanese = veldra::StringTable::language() == veldra::Language::Japanese;
    return QString::fromUtf16(japanese ? entry.japanese : entry.english);
}
