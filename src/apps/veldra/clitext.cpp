#include "clitext.h"

#include "dataservice/errornumber.h"
#include "tessaly/error.h"
#include "veldra/resources/stringtable.h"

#include <QTranslator>

namespace {

bool japanese()
{
    return veldra::StringTable::language() == veldra::Language::Japanese;
}

struct Entry
{
    CliText id;
    const char16_t *english;
    const char16_t *japanese;
};

// Japanese texts use full-width punctuation throughout: （）「」、。：
const Entry entries[] = {
    { CliText::Usage, u"Usage: veldra COMMAND [OPTIONS]", u"使い方：veldra コマンド [オプション]" },
    { CliText::CommandsHeading, u"Commands:", u"コマンド：" },
    { CliText::MoreHelp, u"Run 'veldra COMMAND --help' for the options of a command.",
      u"コマンドのオプションは「veldra コマンド --help」で表示します。" },
    { CliText::UnknownCommand, u"unknown command '%1'", u"不明なコマンドです：%1" },
    { CliText::SqlSummary, u"print the SELECT statement text of a query definition",
      u"問い合わせ定義の SELECT 文を表示する" },
    { CliText::RequestSummary, u"print the data-service request of a component, after setting slots",
      u"スロットを設定したうえで、コンポーネントのデータサービス要求を表示する" },
    { CliText::RunSummary, u"send a component's request to the data service and print the rows",
      u"コンポーネントの要求をデータサービスに送り、行を表示する" },
    { CliText::ParamsSummary, u"list the parameters of a component with their kinds and values",
      u"コンポーネントのパラメータを種類と値とともに一覧表示する" },
    { CliText::BrowseSummary, u"list providers, data sources, catalogs, tables or columns",
      u"プロバイダ、データソース、カタログ、テーブル、列を一覧表示する" },
    { CliText::RegisterSummary, u"write the library's class identifiers into the registry store",
      u"ライブラリのクラス識別子をレジストリに書き込む" },
    { CliText::EditSummary, u"open the query creation wizard on a component and save what it makes",
      u"コンポーネントに問い合わせ作成ウィザードを開き、作成結果を保存する" },

    { CliText::SqlDescription,
      u"Prints the SELECT statement text of the query definition stored in FILE\n"
      u"(a saved definition, or a component document holding one). With --filled, the\n"
      u"parameters show their current values (after --set) instead of their markers. With\n"
      u"--engine, prints the exact SELECT the engine of the data source receives for the\n"
      u"component's request, without running it.",
      u"FILE（保存された問い合わせ定義、またはそれを含むコンポーネント文書）の SELECT 文を表示します。\n"
      u"--filled を付けると、パラメータはマーカーの代わりに現在の値（--set の後）で表示されます。\n"
      u"--engine を付けると、コンポーネントの要求に対してデータソースのエンジンが受け取る SELECT 文を、\n"
      u"実行せずにそのまま表示します。" },
    { CliText::RequestDescription,
      u"Loads the component document DOC, writes each --set into the model's slot of that name\n"
      u"as the framework would, and prints the request the model publishes in its \"request\" slot.\n"
      u"Exit status: 0 a request was printed; 1 the definition yields no request (the missing\n"
      u"piece is named on standard error); 2 bad input (a file, a slot name or a value, or a\n"
      u"parameter without a value: each is named, and nothing is printed).",
      u"コンポーネント文書 DOC を読み込み、各 --set をモデルの同名のスロットに書き込んで、\n"
      u"モデルが「request」スロットに出す要求を表示します。\n"
      u"終了ステータス：0 要求を表示した。1 定義から要求ができない（足りないものを標準エラーに表示）。\n"
      u"2 入力の誤り（ファイル、スロット名、値、または値のないパラメータ。それぞれを示し、何も表示しません）。" },
    { CliText::RunDescription,
      u"Builds the request of the component in DOC as 'veldra request' does, sends it to the data\n"
      u"service and prints the rows as they arrive. DOC may also be a bare query definition.\n"
      u"Exit status: 0 rows printed; 1 no request, or the service refused or failed it (the\n"
      u"database error report goes to standard error); 2 bad input (a parameter without a value\n"
      u"included: nothing is sent); 3 rows printed, but the data source's row cap cut the result;\n"
      u"4 standard output could not be written.",
      u"DOC のコンポーネントの要求を「veldra request」と同じように作り、データサービスに送って、\n"
      u"届いた行から表示します。DOC は問い合わせ定義のファイルでもかまいません。\n"
      u"終了ステータス：0 行を表示した。1 要求がない、またはサービスが拒否・失敗した（データベース\n"
      u"エラーの報告を標準エラーに表示）。2 入力の誤り（値のないパラメータを含む。何も送りません）。\n"
      u"3 行を表示したが、データソースの行数上限で打ち切られた。4 標準出力に書き込めなかった。" },
    { CliText::ParamsDescription,
      u"Lists the parameters of the query in DOC (a component document or a bare definition):\n"
      u"each reference with its title, its kind (typed in, or chosen from a list), its current\n"
      u"value, and for a list its selection values (the value put into the condition = the text shown).",
      u"DOC（コンポーネント文書または問い合わせ定義）のパラメータを一覧表示します。参照ごとに\n"
      u"タイトル、種類（直接入力またはリストから選択）、現在の値、リストの場合は選択値\n"
      u"（条件に入る値 = 表示される文字列）を示します。" },
    { CliText::BrowseDescription,
      u"Lists the level below what is given: providers, a provider's data sources, a data source's\n"
      u"catalogs, a catalog's tables, or a table's columns. A failed request prints the database\n"
      u"error report and the service's reason on standard error and exits with status 1.",
      u"指定したものの一つ下の階層を一覧表示します：プロバイダ、プロバイダのデータソース、\n"
      u"データソースのカタログ、カタログのテーブル、テーブルの列。要求が失敗すると、データベース\n"
      u"エラーの報告とサービスの理由を標準エラーに表示し、ステータス 1 で終了します。" },
    { CliText::RegisterDescription,
      u"Writes the library's class identifiers (ProgID -> CLSID) into the registry store that\n"
      u"hosts read, so that records and the component answer their CLSIDs.",
      u"ライブラリのクラス識別子（ProgID → CLSID）をホストが読むレジストリに書き込み、\n"
      u"レコードとコンポーネントが CLSID を返せるようにします。" },
    { CliText::EditDescription,
      u"Opens the query creation wizard on the component in DOC, or on a new component when DOC\n"
      u"does not exist, against the configured data service. Finish saves the component into\n"
      u"DOC (a DOC that cannot be written is refused before the wizard opens; if the save still\n"
      u"fails, the component is kept in NAME.recovered.component.xml beside it or in a writable\n"
      u"folder). Quit leaves DOC as it was. Needs a display.",
      u"DOC のコンポーネント（DOC がなければ新しいコンポーネント）に、設定されたデータサービスを\n"
      u"使う問い合わせ作成ウィザードを開きます。「完了」でコンポーネントを DOC に保存します\n"
      u"（書き込めない DOC はウィザードを開く前に拒否します。それでも保存に失敗したときは、\n"
      u"隣か書き込めるフォルダーの NAME.recovered.component.xml に残します）。\n"
      u"「終了」では DOC を変更しません。ディスプレイが必要です。" },
    { CliText::EditDocArgument, u"a component document", u"コンポーネント文書" },
    { CliText::FileArgument, u"a saved query definition or component document; - reads standard input",
      u"保存された問い合わせ定義またはコンポーネント文書。- は標準入力" },
    { CliText::DocArgument, u"a saved component document or query definition; - reads standard input",
      u"保存されたコンポーネント文書または問い合わせ定義。- は標準入力" },
    { CliText::SetOption,
      u"write VALUE into the slot NAME (a parameter slot such as @@@Region, selection, TopN, OrderBy, "
      u"OrderByAscendant, UpdateRequest); repeatable",
      u"スロット NAME（@@@Region などのパラメータスロット、selection、TopN、OrderBy、OrderByAscendant、"
      u"UpdateRequest）に VALUE を書き込む。複数指定可" },
    { CliText::SetFirstOption, u"write VALUE into the slot NAME first; repeatable",
      u"先にスロット NAME に VALUE を書き込む。複数指定可" },
    { CliText::SaveOption, u"write the component, with the values set, to OUT",
      u"値を設定したコンポーネントを OUT に書き込む" },
    { CliText::FormatOption, u"table (default), csv, json or xml", u"table（既定）、csv、json、xml のいずれか" },
    { CliText::PickOption, u"choose VALUE for the parameter NAME by its value or shown text, quoted for the "
      u"engine; repeat it for a parameter that takes several values",
      u"パラメーター NAME の値を値または表示テキストで選ぶ（エンジン向けに引用）。複数の値を取るパラメーターには繰り返す" },
    { CliText::SourceOption, u"run on the data source NAME instead of the one the component names",
      u"コンポーネントが指定するデータソースではなくデータソース NAME で実行する" },
    { CliText::SettingOption, u"change a host setting of parameter NAME: KEY is multiple, default, table, value, "
      u"display, filter, order, descending or cache; repeatable",
      u"パラメーター NAME のホスト設定を変える。KEY は multiple、default、table、value、display、filter、order、"
      u"descending、cache。複数指定可" },
    { CliText::SearchOption, u"list only the values whose shown text holds TEXT",
      u"表示テキストに TEXT を含む値だけを一覧する" },
    { CliText::SettingWantsKey, u"--setting wants NAME:KEY=VALUE with KEY one of multiple, default, table, value, "
      u"display, filter, order, descending, cache (a cache in whole seconds), not \"%1\"",
      u"--setting には NAME:KEY=VALUE を指定してください（KEY は multiple、default、table、value、display、filter、"
      u"order、descending、cache、cache は秒数）。「%1」ではありません" },
    { CliText::PickWantsParameter, u"--pick: \"%1\" is no parameter of the query; its parameters are: %2",
      u"--pick：「%1」は問い合わせのパラメーターではありません。パラメーターは次のとおりです：%2" },
    { CliText::ParamSeveralValues, u"several values", u"複数の値" },
    { CliText::ParamRelativeDefault, u"default: %1 (%2 today)", u"既定値：%1（今日は %2）" },
    { CliText::ParamLiveList, u"values read from %1 %2 (table %3)", u"%1 %2 から読んだ値（テーブル %3）" },
    { CliText::ParamStoredList, u"values stored in the query", u"問い合わせに保存された値" },
    { CliText::ParamMore, u"... more: narrow the list with --search TEXT", u"... さらにあります。--search TEXT で絞り込んでください" },
    { CliText::FilledOption, u"show the parameters' current values instead of their markers",
      u"パラメータをマーカーではなく現在の値で表示する" },
    { CliText::EngineOption,
      u"print the SELECT the engine receives: values in place, its row limit, aliases resolved",
      u"エンジンが受け取る SELECT 文（値を埋め込み、行数の上限と別名の解決を含む）を表示する" },
    { CliText::EngineDsnOption, u"with --engine: for the data source NAME instead of the document's",
      u"--engine と共に：文書のデータソースの代わりにデータソース NAME について表示する" },
    { CliText::EngineCatalogOption, u"with --engine: for the catalog NAME instead of the document's",
      u"--engine と共に：文書のカタログの代わりにカタログ NAME について表示する" },
    { CliText::ProviderArgument, u"e.g. SQLite", u"例：SQLite" },
    { CliText::DsnArgument, u"a data source, e.g. Sample", u"データソース。例：Sample" },
    { CliText::CatalogArgument, u"e.g. main", u"例：main" },
    { CliText::TableArgument, u"a table or view", u"テーブルまたはビュー" },
    { CliText::RegistryFileOption, u"the registry file (default: %1)", u"レジストリファイル（既定：%1）" },
    { CliText::RemoveOption, u"remove the entries instead", u"代わりに登録を削除する" },

    { CliText::GiveOneFile, u"give exactly one FILE (see veldra %1 --help)",
      u"FILE を一つだけ指定してください（veldra %1 --help を参照）" },
    { CliText::NoDisplay, u"no display to show the wizard on: neither DISPLAY nor WAYLAND_DISPLAY is set",
      u"ウィザードを表示するディスプレイがありません（DISPLAY も WAYLAND_DISPLAY も未設定です）" },
    { CliText::EditWantsComponent,
      u"%1: not a component document; Finish saves a whole component, so a bare definition is not edited in place",
      u"%1：コンポーネント文書ではありません。「完了」はコンポーネント全体を保存するため、定義だけのファイルは直接編集しません" },
    { CliText::PlatformShowsNoWindows, u"the display platform \"%1\" shows no windows; run it on a desktop",
      u"表示プラットフォーム「%1」はウィンドウを表示できません。デスクトップで実行してください" },
    { CliText::GiveOneDoc, u"give exactly one DOC (see veldra %1 --help)",
      u"DOC を一つだけ指定してください（veldra %1 --help を参照）" },
    { CliText::RunUsage, u"give one DOC and a --format of table, csv, json or xml (see veldra run --help)",
      u"DOC を一つと、--format に table、csv、json、xml のいずれかを指定してください（veldra run --help を参照）" },
    { CliText::BrowseUsage, u"at most PROVIDER DSN CATALOG TABLE (see veldra browse --help)",
      u"指定できるのは PROVIDER DSN CATALOG TABLE までです（veldra browse --help を参照）" },
    { CliText::RegisterUsage, u"takes no arguments", u"引数は取りません" },
    { CliText::SetWantsAssignment, u"--set wants NAME=VALUE, not \"%1\"",
      u"--set には NAME=VALUE を指定してください：「%1」" },
    { CliText::YieldsNoRequest, u"%1 yields no request: %2", u"%1 から要求を作れません：%2" },
    { CliText::MissingValue, u"%1 has no value, so nothing is sent: give one with --set \"%1=...\"",
      u"%1 に値がないため、何も送りません。--set \"%1=...\" で指定してください" },
    { CliText::MissingTitledValue, u"%1 (\"%2\") has no value, so nothing is sent: give one with --set \"%1=...\"",
      u"%1（「%2」）に値がないため、何も送りません。--set \"%1=...\" で指定してください" },
    { CliText::UndefinedParameter,
      u"the condition refers to %1, which is no parameter of the query, so nothing is sent: define it in "
      u"the wizard (veldra edit) or take it out of the condition",
      u"条件が参照する %1 は問い合わせのパラメータではないため、何も送りません。ウィザード（veldra edit）で"
      u"定義するか、条件から外してください" },
    { CliText::EditTarget, u"Finish saves the component to %1 (replacing the file there)",
      u"「完了」でコンポーネントを %1 に保存します（既存のファイルを置き換えます）" },
    { CliText::EditNewTarget, u"Finish saves the component to %1 (a new file)",
      u"「完了」でコンポーネントを %1 に保存します（新しいファイル）" },
    { CliText::EditSaved, u"saved the component to %1", u"コンポーネントを %1 に保存しました" },
    { CliText::EditNotSaved, u"quit: %1 was not written", u"終了しました。%1 には書き込んでいません" },
    { CliText::EditKept, u"could not save: %1. The component is kept in %2; move it where you want it",
      u"保存できませんでした：%1。コンポーネントは %2 に残してあります。必要な場所に移してください" },
    { CliText::NothingFound, u"nothing found under %1", u"%1 の下には何もありません" },
    { CliText::NoSuchDataSource, u"there is no data source named \"%1\"; there are: %2",
      u"データソース「%1」はありません。あるのは：%2" },
    { CliText::CapNotice, u"the result was cut at the data source's row cap of %1 rows; there are more rows",
      u"結果はデータソースの行数上限 %1 行で打ち切られました。続きの行があります。" },
    { CliText::WriteFailed, u"standard output could not be written: %1", u"標準出力に書き込めませんでした：%1" },
    { CliText::IncompleteResult, u"the result is incomplete: the rows printed so far are not all of it",
      u"結果は不完全です。出力済みの行がすべてではありません。" },
    { CliText::StandardInput, u"standard input", u"標準入力" },

    { CliText::RowCountOne, u"(1 row)", u"（1 行）" },
    { CliText::RowCountMany, u"(%1 rows)", u"（%1 行）" },
    { CliText::RowCountCut, u"(%1 rows, cut at the data source's row cap of %2)",
      u"（%1 行、データソースの行数上限 %2 で打ち切り）" },
    { CliText::ParamTypedIn, u"typed in", u"直接入力" },
    { CliText::ParamChosenFromList, u"chosen from a list", u"リストから選択" },
    { CliText::ParamValue, u"value: %1", u"値：%1" },
    { CliText::ParamNoValue, u"value: none (give one with --set \"%1=...\")",
      u"値：なし（--set \"%1=...\" で指定してください）" },
    { CliText::NoParameters, u"the query has no parameters", u"この問い合わせにはパラメータがありません" },
    { CliText::ServeSummary, u"share the components of a folder over HTTP: an API and a web page",
      u"フォルダーのコンポーネントを HTTP で共有する（API と Web ページ）" },
    { CliText::ServeDescription,
      u"Serves every component document (*.component.xml) of DIR over HTTP: a web page at / and an API under "
      u"/api that needs the token (Authorization: Bearer). Documents added, changed or removed are seen "
      u"without a restart. See docs/http.md.",
      u"DIR のすべてのコンポーネント文書（*.component.xml）を HTTP で提供します。/ に Web ページ、/api に"
      u"トークン（Authorization: Bearer）が必要な API があります。追加・変更・削除された文書は再起動せずに"
      u"反映されます。docs/http.md を参照してください。" },
    { CliText::ServeDirArgument, u"the folder of component documents (or directory= in the configuration)",
      u"コンポーネント文書のフォルダー（設定ファイルの directory= でも可）" },
    { CliText::ServeConfigOption, u"read the settings of FILE (see packaging/serve.ini)", u"FILE の設定を読む（packaging/serve.ini を参照）" },
    { CliText::ServeListenOption, u"listen on ADDRESS (default 127.0.0.1; another than loopback needs --token-file)",
      u"ADDRESS で待ち受ける（既定は 127.0.0.1。ループバック以外には --token-file が必要）" },
    { CliText::ServePortOption, u"listen on PORT (default 8790; 0 takes a free one)", u"PORT で待ち受ける（既定は 8790。0 で空きポート）" },
    { CliText::ServeTokenFileOption, u"the file that holds the token (default ~/.config/veldra/serve.token, made when missing)",
      u"トークンのファイル（既定は ~/.config/veldra/serve.token。なければ作成）" },
    { CliText::ServeWorkersOption, u"answer N requests at once (default 8)", u"同時に N 件の要求に応答する（既定は 8）" },
    { CliText::ServeAccessLogOption, u"append the access log to FILE instead of standard error",
      u"アクセスログを標準エラーではなく FILE に追記する" },
    { CliText::ServeUsage, u"give one DIR, or directory= in the file of --config (see veldra serve --help)",
      u"DIR を 1 つ指定するか、--config のファイルに directory= を書いてください（veldra serve --help を参照）" },
    { CliText::ServeNeedsToken,
      u"%1 is not a loopback address: serving beyond this machine needs a token file of your own (--token-file "
      u"or token_file= in the configuration)",
      u"%1 はループバックアドレスではありません。このマシンの外に提供するには、自分で用意したトークンファイル"
      u"（--token-file または設定の token_file=）が必要です" },
    { CliText::ServeListening, u"serving the components of %2 at %3 (%1 found)",
      u"%2 のコンポーネントを %3 で提供しています（現在 %1 個）" },
    { CliText::ServeTokenAt, u"the API needs the token in %1 (Authorization: Bearer TOKEN)",
      u"API には %1 のトークンが必要です（Authorization: Bearer トークン）" },
    { CliText::ServeStopping, u"stopping: answers in flight have %1 s to finish",
      u"停止します。応答中のものは %1 秒以内に終えます" },
};

struct Reason
{
    qint32 number;
    const char16_t *japanese;
};

const Reason reasons[] = {
    { dataservice::ErrorNumber::Unspecified, u"データサービスでエラーが発生しました" },
    { dataservice::ErrorNumber::MalformedRequest, u"要求の形式が正しくありません" },
    { dataservice::ErrorNumber::UnknownProvider, u"プロバイダが見つかりません" },
    { dataservice::ErrorNumber::UnknownDataSource, u"データソースが見つかりません" },
    { dataservice::ErrorNumber::UnknownCatalog, u"カタログが見つかりません" },
    { dataservice::ErrorNumber::UnknownTable, u"テーブルまたはビューが見つかりません" },
    { dataservice::ErrorNumber::StatementRefused, u"文は拒否されました" },
    { dataservice::ErrorNumber::Timeout, u"制限時間を超えたため文を中止しました" },
    { dataservice::ErrorNumber::DatabaseError, u"データベースが文を実行できませんでした" },
    { dataservice::ErrorNumber::ConnectionFailed, u"データベースに接続できませんでした" },
    { dataservice::ErrorNumber::BadConfiguration, u"データソースの設定に誤りがあります" },
};

struct Pair
{
    const char16_t *english;
    const char16_t *japanese;
};

// QCommandLineParser's texts, as Qt 6 writes them.
const Pair parserEntries[] = {
    { u"Usage: %1", u"使い方：%1" },
    { u"[options]", u"[オプション]" },
    { u"Options:", u"オプション：" },
    { u"Arguments:", u"引数：" },
    { u"Displays help on commandline options.", u"コマンドラインオプションのヘルプを表示します。" },
    { u"Displays help including Qt specific options.", u"Qt 固有のオプションを含むヘルプを表示します。" },
    { u"Displays version information.", u"バージョン情報を表示します。" },
    { u"Unknown option '%1'.", u"不明なオプションです：%1" },
    { u"Unknown options: %1.", u"不明なオプションです：%1" },
    { u"Missing value after '%1'.", u"%1 の後に値がありません。" },
    { u"Unexpected value after '%1'.", u"%1 の後の値は受け付けません。" },
};

class ParserTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char * = nullptr, int = -1) const override
    {
        if (qstrcmp(context, "QCommandLineParser") != 0)
            return QString();
        const QString source = QString::fromUtf8(sourceText);
        for (const Pair &entry : parserEntries) {
            if (source == QStringView(entry.english))
                return QString::fromUtf16(entry.japanese);
        }
        return QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

QString cliText(CliText id)
{
    for (const Entry &entry : entries) {
        if (entry.id == id)
            return QString::fromUtf16(japanese() ? entry.japanese : entry.english);
    }
    return QString();
}

QString rowCountLine(qint64 rows, qint64 cap)
{
    if (cap >= 0)
        return cliText(CliText::RowCountCut).arg(rows).arg(cap);
    return rows == 1 ? cliText(CliText::RowCountOne) : cliText(CliText::RowCountMany).arg(rows);
}

QString serviceReason(qint32 number, const QString &message)
{
    if (!japanese())
        return message;
    for (const Reason &reason : reasons) {
        if (reason.number == number)
            return QString::fromUtf16(reason.japanese) + u'：' + message;
    }
    return message;
}

QTranslator *createParserTranslator()
{
    return japanese() ? new ParserTranslator : nullptr;
}
