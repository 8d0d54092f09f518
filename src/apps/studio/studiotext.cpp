#include "studiotext.h"

#include "veldra/resources/stringtable.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace {

struct Entry
{
    const char16_t *english;
    const char16_t *japanese;
};

// In the order of StudioText.
constexpr Entry entries[] = {
    { u"&File", u"ファイル(&F)" },
    { u"&New", u"新規(&N)" },
    { u"&Open...", u"開く(&O)..." },
    { u"Open &Recent", u"最近使った文書(&R)" },
    { u"(none yet)", u"(まだありません)" },
    { u"&Save", u"保存(&S)" },
    { u"Save &As...", u"名前を付けて保存(&A)..." },
    { u"&Export Rows...", u"行をエクスポート(&E)..." },
    { u"&Quit", u"終了(&Q)" },
    { u"&Edit", u"編集(&E)" },
    { u"&Copy", u"コピー(&C)" },
    { u"Copy with Column &Names", u"列名付きでコピー(&N)" },
    { u"Select &All", u"すべて選択(&A)" },
    { u"&Query", u"クエリ(&Q)" },
    { u"&Run Again", u"再実行(&R)" },
    { u"C&heck", u"チェック(&H)" },
    { u"&View", u"表示(&V)" },
    { u"Show &Request", u"要求を表示(&R)" },
    { u"Show &Chart", u"グラフを表示(&C)" },
    { u"Untitled", u"無題" },
    { u"%1[*] - Veldra Studio", u"%1[*] - Veldra Studio" },
    { u"Component documents (*.xml);;All files (*)", u"コンポーネント文書 (*.xml);;すべてのファイル (*)" },
    { u"Request", u"要求" },
    { u"Inputs", u"入力" },
    { u"Rows", u"行" },
    { u"Message about the rows", u"行についてのメッセージ" },
    { u"%1 rows in %2 s", u"%1 行 (%2 秒)" },
    { u"Running the query... %1 rows so far", u"問い合わせ中... これまでに %1 行" },
    { u"Only the first %1 rows are shown: the data source's row cap cut the answer. Narrow the condition, or raise "
      u"rowcap for the data source in datasources.ini.",
      u"データソースの行数の上限で打ち切られたため、最初の %1 行だけを表示しています。条件を絞り込むか、"
      u"datasources.ini でデータソースの rowcap を引き上げてください。" },
    { u"Running the query...", u"問い合わせ中..." },
    { u"Nothing is asked yet.", u"まだ問い合わせていません。" },
    { u"The query failed; the reason is above the rows.", u"問い合わせに失敗しました。理由は行の上に表示しています。" },
    { u"No request: %1", u"要求がありません: %1" },
    { u"Nothing is asked yet: give \"%1\" a value in its input on the left.",
      u"まだ問い合わせていません: 左の入力欄で「%1」に値を指定してください。" },
    { u"No request: the condition refers to %1, which is no parameter of the query; fix it with Query > Edit Query.",
      u"要求がありません: 条件が参照する %1 は問い合わせのパラメータではありません。クエリ > クエリの編集で直してください。" },
    { u"The data service refused the request (error 0x%1):\n%2", u"データサービスが要求を拒否しました (エラー 0x%1):\n%2" },
    { u"BLOB, %1 bytes: %2", u"BLOB %1 バイト: %2" },
    { u"Cannot open the document", u"文書を開けません" },
    { u"Cannot save the document", u"文書を保存できません" },
    { u"Not saved yet: File > Save As chooses where the component goes",
      u"未保存: 保存先は ファイル > 名前を付けて保存 で選びます" },
    { u"Saved in %1", u"保存先: %1" },
    { u"Query changed, not saved yet: File > Save writes it to %1",
      u"クエリを変更しました (未保存): ファイル > 保存 で %1 に書き込みます" },
    { u"Unsaved changes", u"未保存の変更" },
    { u"\"%1\" has changes that are not saved. Save them first?", u"「%1」には保存されていない変更があります。先に保存しますか?" },
    { u"Check", u"チェック" },
    { u"The statement runs with the current values: its first row came after %1 s.",
      u"現在の値で文を実行できます: 最初の行は %1 秒で返りました。" },
    { u"The statement runs with the current values, but gives no rows.",
      u"現在の値で文を実行できますが、行はありません。" },
    { u"The data service refuses the statement with the current values (error 0x%1):\n%2",
      u"現在の値では、データサービスが文を拒否します (エラー 0x%1):\n%2" },
    { u"CSV files (*.csv);;JSON files (*.json)", u"CSV ファイル (*.csv);;JSON ファイル (*.json)" },
    { u"Cannot export the rows", u"行をエクスポートできません" },
    { u"Exported %1 rows to %2", u"%1 行を %2 にエクスポートしました" },
    { u"Chart", u"グラフ" },
    { u"C&hart:", u"グラフ(&H):" },
    { u"Bar", u"棒" },
    { u"Line", u"折れ線" },
    { u"&Labels from:", u"ラベルの列(&L):" },
    { u"Val&ues:", u"値の列(&U):" },
    { u"Save as &PNG...", u"PNG で保存(&P)..." },
    { u"Save as SV&G...", u"SVG で保存(&G)..." },
    { u"Tick a column of numbers under Values to chart it.", u"グラフにするには、値の列で数値の列にチェックを付けてください。" },
    { u"The bar chart shows the first %1 of %2 rows; a line chart shows them all.",
      u"棒グラフは %2 行のうち最初の %1 行を表示します。折れ線グラフはすべてを表示します。" },
    { u"PNG images (*.png)", u"PNG 画像 (*.png)" },
    { u"SVG images (*.svg)", u"SVG 画像 (*.svg)" },
    { u"Cannot save the chart", u"グラフを保存できません" },
    { u"&Data source:", u"データソース(&D):" },
    { u"As the component names it", u"コンポーネントが指定するもの" },
    { u"%1 (several values)", u"%1 (複数の値)" },
    { u"Type to narrow the list", u"入力して一覧を絞り込む" },
    { u"... more: type to narrow the list", u"... さらにあります: 入力して絞り込んでください" },
    { u"Chosen, but not on this page of the list: %1", u"選んだ値のうちこのページにないもの: %1 個" },
    { u"Parameters", u"パラメーター" },
    { u"&Parameter Settings...", u"パラメーターの設定(&P)..." },
    { u"&Parameter:", u"パラメーター(&P):" },
    { u"Several &values", u"複数の値(&V)" },
    { u"Relative &default:", u"相対的な既定値(&D):" },
    { u"List from &table:", u"一覧の読み込み元テーブル(&T):" },
    { u"&Value column:", u"値の列(&A):" },
    { u"&Shown column:", u"表示する列(&S):" },
    { u"&Filter:", u"絞り込み条件(&F):" },
    { u"&Order by:", u"並べ替え(&O):" },
    { u"Desc&ending", u"降順(&E)" },
    { u"&Keep the list for (seconds):", u"一覧を保持する秒数(&K):" },
    { u"Values of %1", u"%1 の値" },
};

static_assert(std::size(entries) == size_t(StudioText::ValuesOf) + 1, "one entry per StudioText");

} // namespace

QString studioText(StudioText id)
{
    const Entry &entry = entries[int(id)];
    const bool japanese = veldra::StringTable::language() == veldra::Language::Japanese;
    return QString::fromUtf16(japanese ? entry.japanese : entry.english);
}

void installQtTranslations(QCoreApplication &application)
{
    if (veldra::StringTable::language() != veldra::Language::Japanese)
        return;
    auto *translator = new QTranslator(&application);
    if (translator->load(QStringLiteral("qtbase_ja"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}
