<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>CliText</name>
    <message>
        <source>Usage: veldra COMMAND [OPTIONS]</source>
        <translation>使い方：veldra コマンド [オプション]</translation>
    </message>
    <message>
        <source>Commands:</source>
        <translation>コマンド：</translation>
    </message>
    <message>
        <source>Run &apos;veldra COMMAND --help&apos; for the options of a command.</source>
        <translation>コマンドのオプションは「veldra コマンド --help」で表示します。</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>オプション：</translation>
    </message>
    <message>
        <source>print the version of veldra</source>
        <translation>veldra のバージョンを表示する</translation>
    </message>
    <message>
        <source>print this help</source>
        <translation>このヘルプを表示する</translation>
    </message>
    <message>
        <source>print the options of COMMAND (the same as &apos;veldra COMMAND --help&apos;)</source>
        <translation>コマンドのオプションを表示する（「veldra コマンド --help」と同じ）</translation>
    </message>
    <message>
        <source>unknown command &apos;%1&apos;</source>
        <translation>不明なコマンドです：%1</translation>
    </message>
    <message>
        <source>print the SELECT statement text of a query definition</source>
        <translation>問い合わせ定義の SELECT 文を表示する</translation>
    </message>
    <message>
        <source>print the data-service request of a component, after setting slots</source>
        <translation>スロットを設定したうえで、コンポーネントのデータサービス要求を表示する</translation>
    </message>
    <message>
        <source>send a component&apos;s request to the data service and print the rows</source>
        <translation>コンポーネントの要求をデータサービスに送り、行を表示する</translation>
    </message>
    <message>
        <source>list the parameters of a component with their kinds and values</source>
        <translation>コンポーネントのパラメータを種類と値とともに一覧表示する</translation>
    </message>
    <message>
        <source>list providers, data sources, catalogs, tables or columns</source>
        <translation>プロバイダ、データソース、カタログ、テーブル、列を一覧表示する</translation>
    </message>
    <message>
        <source>write the library&apos;s class identifiers into the registry store</source>
        <translation>ライブラリのクラス識別子をレジストリに書き込む</translation>
    </message>
    <message>
        <source>open the query creation wizard on a component and save what it makes</source>
        <translation>コンポーネントに問い合わせ作成ウィザードを開き、作成結果を保存する</translation>
    </message>
    <message>
        <source>Prints the SELECT statement text of the query definition stored in FILE
(a saved definition, or a component document holding one). With --filled, the
parameters show their current values (after --set) instead of their markers. With
--engine, prints the exact SELECT the engine of the data source receives for the
component&apos;s request, without running it.</source>
        <translation>FILE（保存された問い合わせ定義、またはそれを含むコンポーネント文書）の SELECT 文を表示します。
--filled を付けると、パラメータはマーカーの代わりに現在の値（--set の後）で表示されます。
--engine を付けると、コンポーネントの要求に対してデータソースのエンジンが受け取る SELECT 文を、
実行せずにそのまま表示します。</translation>
    </message>
    <message>
        <source>Loads the component document DOC, writes each --set into the model&apos;s slot of that name
as the framework would, and prints the request the model publishes in its &quot;request&quot; slot.
Exit status: 0 a request was printed; 1 the definition yields no request (the missing
piece is named on standard error); 2 bad input (a file, a slot name or a value, or a
parameter without a value: each is named, and nothing is printed).</source>
        <translation>コンポーネント文書 DOC を読み込み、各 --set をモデルの同名のスロットに書き込んで、
モデルが「request」スロットに出す要求を表示します。
終了ステータス：0 要求を表示した。1 定義から要求ができない（足りないものを標準エラーに表示）。
2 入力の誤り（ファイル、スロット名、値、または値のないパラメータ。それぞれを示し、何も表示しません）。</translation>
    </message>
    <message>
        <source>Builds the request of the component in DOC as &apos;veldra request&apos; does, sends it to the data
service and prints the rows as they arrive. DOC may also be a bare query definition.
Exit status: 0 rows printed; 1 no request, or the service refused or failed it (the
database error report goes to standard error); 2 bad input (a parameter without a value
included: nothing is sent); 3 rows printed, but the data source&apos;s row cap cut the result;
4 standard output could not be written.</source>
        <translation>DOC のコンポーネントの要求を「veldra request」と同じように作り、データサービスに送って、
届いた行から表示します。DOC は問い合わせ定義のファイルでもかまいません。
終了ステータス：0 行を表示した。1 要求がない、またはサービスが拒否・失敗した（データベース
エラーの報告を標準エラーに表示）。2 入力の誤り（値のないパラメータを含む。何も送りません）。
3 行を表示したが、データソースの行数上限で打ち切られた。4 標準出力に書き込めなかった。</translation>
    </message>
    <message>
        <source>Lists the parameters of the query in DOC (a component document or a bare definition):
each reference with its title, its kind (typed in, or chosen from a list), its current
value, and for a list its selection values (the value put into the condition = the text shown).</source>
        <translation>DOC（コンポーネント文書または問い合わせ定義）のパラメータを一覧表示します。参照ごとに
タイトル、種類（直接入力またはリストから選択）、現在の値、リストの場合は選択値
（条件に入る値 = 表示される文字列）を示します。</translation>
    </message>
    <message>
        <source>Lists the level below what is given: providers, a provider&apos;s data sources, a data source&apos;s
catalogs, a catalog&apos;s tables, or a table&apos;s columns. A failed request prints the database
error report and the service&apos;s reason on standard error and exits with status 1.</source>
        <translation>指定したものの一つ下の階層を一覧表示します：プロバイダ、プロバイダのデータソース、
データソースのカタログ、カタログのテーブル、テーブルの列。要求が失敗すると、データベース
エラーの報告とサービスの理由を標準エラーに表示し、ステータス 1 で終了します。</translation>
    </message>
    <message>
        <source>Writes the library&apos;s class identifiers (ProgID -&gt; CLSID) into the registry store that
hosts read, so that records and the component answer their CLSIDs.</source>
        <translation>ライブラリのクラス識別子（ProgID → CLSID）をホストが読むレジストリに書き込み、
レコードとコンポーネントが CLSID を返せるようにします。</translation>
    </message>
    <message>
        <source>Opens the query creation wizard on the component in DOC, or on a new component when DOC
does not exist, against the configured data service. Finish saves the component into
DOC (a DOC that cannot be written is refused before the wizard opens; if the save still
fails, the component is kept in NAME.recovered.component.xml beside it or in a writable
folder). Quit leaves DOC as it was. Needs a display.</source>
        <translation>DOC のコンポーネント（DOC がなければ新しいコンポーネント）に、設定されたデータサービスを
使う問い合わせ作成ウィザードを開きます。「完了」でコンポーネントを DOC に保存します
（書き込めない DOC はウィザードを開く前に拒否します。それでも保存に失敗したときは、
隣か書き込めるフォルダーの NAME.recovered.component.xml に残します）。
「終了」では DOC を変更しません。ディスプレイが必要です。</translation>
    </message>
    <message>
        <source>a component document</source>
        <translation>コンポーネント文書</translation>
    </message>
    <message>
        <source>a saved query definition or component document; - reads standard input</source>
        <translation>保存された問い合わせ定義またはコンポーネント文書。- は標準入力</translation>
    </message>
    <message>
        <source>a saved component document or query definition; - reads standard input</source>
        <translation>保存されたコンポーネント文書または問い合わせ定義。- は標準入力</translation>
    </message>
    <message>
        <source>write VALUE into the slot NAME (a parameter slot such as @@@Region, selection, TopN, OrderBy, OrderByAscendant, UpdateRequest); repeatable</source>
        <translation>スロット NAME（@@@Region などのパラメータスロット、selection、TopN、OrderBy、OrderByAscendant、UpdateRequest）に VALUE を書き込む。複数指定可</translation>
    </message>
    <message>
        <source>write VALUE into the slot NAME first; repeatable</source>
        <translation>先にスロット NAME に VALUE を書き込む。複数指定可</translation>
    </message>
    <message>
        <source>write the component, with the values set, to OUT</source>
        <translation>値を設定したコンポーネントを OUT に書き込む</translation>
    </message>
    <message>
        <source>table (default), csv, json or xml</source>
        <translation>table（既定）、csv、json、xml のいずれか</translation>
    </message>
    <message>
        <source>show the parameters&apos; current values instead of their markers</source>
        <translation>パラメータをマーカーではなく現在の値で表示する</translation>
    </message>
    <message>
        <source>print the SELECT the engine receives: values in place, its row limit, aliases resolved</source>
        <translation>エンジンが受け取る SELECT 文（値を埋め込み、行数の上限と別名の解決を含む）を表示する</translation>
    </message>
    <message>
        <source>with --engine: for the data source NAME instead of the document&apos;s</source>
        <translation>--engine と共に：文書のデータソースの代わりにデータソース NAME について表示する</translation>
    </message>
    <message>
        <source>with --engine: for the catalog NAME instead of the document&apos;s</source>
        <translation>--engine と共に：文書のカタログの代わりにカタログ NAME について表示する</translation>
    </message>
    <message>
        <source>e.g. SQLite</source>
        <translation>例：SQLite</translation>
    </message>
    <message>
        <source>a data source, e.g. Sample</source>
        <translation>データソース。例：Sample</translation>
    </message>
    <message>
        <source>e.g. main</source>
        <translation>例：main</translation>
    </message>
    <message>
        <source>a table or view</source>
        <translation>テーブルまたはビュー</translation>
    </message>
    <message>
        <source>the registry file (default: %1)</source>
        <translation>レジストリファイル（既定：%1）</translation>
    </message>
    <message>
        <source>remove the entries instead</source>
        <translation>代わりに登録を削除する</translation>
    </message>
    <message>
        <source>give exactly one FILE (see veldra %1 --help)</source>
        <translation>FILE を一つだけ指定してください（veldra %1 --help を参照）</translation>
    </message>
    <message>
        <source>no display to show the wizard on: neither DISPLAY nor WAYLAND_DISPLAY is set</source>
        <translation>ウィザードを表示するディスプレイがありません（DISPLAY も WAYLAND_DISPLAY も未設定です）</translation>
    </message>
    <message>
        <source>%1: not a component document; Finish saves a whole component, so a bare definition is not edited in place</source>
        <translation>%1：コンポーネント文書ではありません。「完了」はコンポーネント全体を保存するため、定義だけのファイルは直接編集しません</translation>
    </message>
    <message>
        <source>the display platform &quot;%1&quot; shows no windows; run it on a desktop</source>
        <translation>表示プラットフォーム「%1」はウィンドウを表示できません。デスクトップで実行してください</translation>
    </message>
    <message>
        <source>give exactly one DOC (see veldra %1 --help)</source>
        <translation>DOC を一つだけ指定してください（veldra %1 --help を参照）</translation>
    </message>
    <message>
        <source>give one DOC and a --format of table, csv, json or xml (see veldra run --help)</source>
        <translation>DOC を一つと、--format に table、csv、json、xml のいずれかを指定してください（veldra run --help を参照）</translation>
    </message>
    <message>
        <source>--format &quot;%1&quot; is not one of table, csv, json or xml (letters in any case)</source>
        <translation>--format「%1」は使えません。table、csv、json、xml のいずれか（大文字・小文字は問いません）を指定してください</translation>
    </message>
    <message>
        <source>at most PROVIDER DSN CATALOG TABLE (see veldra browse --help)</source>
        <translation>指定できるのは PROVIDER DSN CATALOG TABLE までです（veldra browse --help を参照）</translation>
    </message>
    <message>
        <source>takes no arguments</source>
        <translation>引数は取りません</translation>
    </message>
    <message>
        <source>--set wants NAME=VALUE, not &quot;%1&quot;</source>
        <translation>--set には NAME=VALUE を指定してください：「%1」</translation>
    </message>
    <message>
        <source>%1 yields no request: %2</source>
        <translation>%1 から要求を作れません：%2</translation>
    </message>
    <message>
        <source>%1 has no value, so nothing is sent: give one with --set &quot;%1=...&quot;</source>
        <translation>%1 に値がないため、何も送りません。--set &quot;%1=...&quot; で指定してください</translation>
    </message>
    <message>
        <source>%1 (&quot;%2&quot;) has no value, so nothing is sent: give one with --set &quot;%1=...&quot;</source>
        <translation>%1（「%2」）に値がないため、何も送りません。--set &quot;%1=...&quot; で指定してください</translation>
    </message>
    <message>
        <source>the condition refers to %1, which is no parameter of the query, so nothing is sent: define it in the wizard (veldra edit) or take it out of the condition</source>
        <translation>条件が参照する %1 は問い合わせのパラメータではないため、何も送りません。ウィザード（veldra edit）で定義するか、条件から外してください</translation>
    </message>
    <message>
        <source>Finish saves the component to %1 (replacing the file there)</source>
        <translation>「完了」でコンポーネントを %1 に保存します（既存のファイルを置き換えます）</translation>
    </message>
    <message>
        <source>Finish saves the component to %1 (a new file)</source>
        <translation>「完了」でコンポーネントを %1 に保存します（新しいファイル）</translation>
    </message>
    <message>
        <source>saved the component to %1</source>
        <translation>コンポーネントを %1 に保存しました</translation>
    </message>
    <message>
        <source>quit: %1 was not written</source>
        <translation>終了しました。%1 には書き込んでいません</translation>
    </message>
    <message>
        <source>could not save: %1. The component is kept in %2; move it where you want it</source>
        <translation>保存できませんでした：%1。コンポーネントは %2 に残してあります。必要な場所に移してください</translation>
    </message>
    <message>
        <source>nothing found under %1</source>
        <translation>%1 の下には何もありません</translation>
    </message>
    <message>
        <source>no %1 data source is configured: add a group with provider=%1 to %2 (see docs/datasources.md)</source>
        <translation>%1 のデータソースが設定されていません。%2 に provider=%1 のグループを追加してください（docs/datasources.md を参照）</translation>
    </message>
    <message>
        <source>there is no data source named &quot;%1&quot;; there are: %2</source>
        <translation>データソース「%1」はありません。あるのは：%2</translation>
    </message>
    <message>
        <source>the result was cut at the data source&apos;s row cap of %1 rows; there are more rows</source>
        <translation>結果はデータソースの行数上限 %1 行で打ち切られました。続きの行があります。</translation>
    </message>
    <message>
        <source>standard output could not be written: %1</source>
        <translation>標準出力に書き込めませんでした：%1</translation>
    </message>
    <message>
        <source>the result is incomplete: the rows printed so far are not all of it</source>
        <translation>結果は不完全です。出力済みの行がすべてではありません。</translation>
    </message>
    <message>
        <source>standard input</source>
        <translation>標準入力</translation>
    </message>
    <message>
        <source>(1 row)</source>
        <translation>（1 行）</translation>
    </message>
    <message>
        <source>(%1 rows)</source>
        <translation>（%1 行）</translation>
    </message>
    <message>
        <source>(%1 rows, cut at the data source&apos;s row cap of %2)</source>
        <translation>（%1 行、データソースの行数上限 %2 で打ち切り）</translation>
    </message>
    <message>
        <source>typed in</source>
        <translation>直接入力</translation>
    </message>
    <message>
        <source>chosen from a list</source>
        <translation>リストから選択</translation>
    </message>
    <message>
        <source>value: %1</source>
        <translation>値：%1</translation>
    </message>
    <message>
        <source>value: none (give one with --set &quot;%1=...&quot;)</source>
        <translation>値：なし（--set &quot;%1=...&quot; で指定してください）</translation>
    </message>
    <message>
        <source>the query has no parameters</source>
        <translation>この問い合わせにはパラメータがありません</translation>
    </message>
    <message>
        <source>share the components of a folder over HTTP: an API and a web page</source>
        <translation>フォルダーのコンポーネントを HTTP で共有する（API と Web ページ）</translation>
    </message>
    <message>
        <source>Serves every component document (*.component.xml) of DIR over HTTP: a web page at / and an API under /api that needs the token (Authorization: Bearer). Documents added, changed or removed are seen without a restart. See docs/http.md.</source>
        <translation>DIR のすべてのコンポーネント文書（*.component.xml）を HTTP で提供します。/ に Web ページ、/api にトークン（Authorization: Bearer）が必要な API があります。追加・変更・削除された文書は再起動せずに反映されます。docs/http.md を参照してください。</translation>
    </message>
    <message>
        <source>the folder of component documents (or directory= in the configuration)</source>
        <translation>コンポーネント文書のフォルダー（設定ファイルの directory= でも可）</translation>
    </message>
    <message>
        <source>read the settings of FILE (see packaging/serve.ini)</source>
        <translation>FILE の設定を読む（packaging/serve.ini を参照）</translation>
    </message>
    <message>
        <source>listen on ADDRESS (default 127.0.0.1; another than loopback needs --token-file)</source>
        <translation>ADDRESS で待ち受ける（既定は 127.0.0.1。ループバック以外には --token-file が必要）</translation>
    </message>
    <message>
        <source>listen on PORT (default 8790; 0 takes a free one)</source>
        <translation>PORT で待ち受ける（既定は 8790。0 で空きポート）</translation>
    </message>
    <message>
        <source>the file that holds the token (default ~/.config/veldra/serve.token, made when missing)</source>
        <translation>トークンのファイル（既定は ~/.config/veldra/serve.token。なければ作成）</translation>
    </message>
    <message>
        <source>answer N requests at once (default 8)</source>
        <translation>同時に N 件の要求に応答する（既定は 8）</translation>
    </message>
    <message>
        <source>append the access log to FILE instead of standard error</source>
        <translation>アクセスログを標準エラーではなく FILE に追記する</translation>
    </message>
    <message>
        <source>give one DIR, or directory= in the file of --config (see veldra serve --help)</source>
        <translation>DIR を 1 つ指定するか、--config のファイルに directory= を書いてください（veldra serve --help を参照）</translation>
    </message>
    <message>
        <source>%1 is not a loopback address: serving beyond this machine needs a token file of your own (--token-file or token_file= in the configuration)</source>
        <translation>%1 はループバックアドレスではありません。このマシンの外に提供するには、自分で用意したトークンファイル（--token-file または設定の token_file=）が必要です</translation>
    </message>
    <message>
        <source>serving the components of %2 at %3 (%1 found)</source>
        <translation>%2 のコンポーネントを %3 で提供しています（現在 %1 個）</translation>
    </message>
    <message>
        <source>the API needs the token in %1 (Authorization: Bearer TOKEN)</source>
        <translation>API には %1 のトークンが必要です（Authorization: Bearer トークン）</translation>
    </message>
    <message>
        <source>stopping: answers in flight have %1 s to finish</source>
        <translation>停止します。応答中のものは %1 秒以内に終えます</translation>
    </message>
    <message>
        <source>choose VALUE for the parameter NAME by its value or shown text, quoted for the engine; repeat it for a parameter that takes several values</source>
        <translation>パラメーター NAME の値を値または表示テキストで選ぶ（エンジン向けに引用）。複数の値を取るパラメーターには繰り返す</translation>
    </message>
    <message>
        <source>run on the data source NAME instead of the one the component names</source>
        <translation>コンポーネントが指定するデータソースではなくデータソース NAME で実行する</translation>
    </message>
    <message>
        <source>change a host setting of parameter NAME: KEY is multiple, default, table, value, display, filter, order, descending or cache; repeatable</source>
        <translation>パラメーター NAME のホスト設定を変える。KEY は multiple、default、table、value、display、filter、order、descending、cache。複数指定可</translation>
    </message>
    <message>
        <source>list only the values whose shown text holds TEXT</source>
        <translation>表示テキストに TEXT を含む値だけを一覧する</translation>
    </message>
    <message>
        <source>--setting wants NAME:KEY=VALUE with KEY one of multiple, default, table, value, display, filter, order, descending, cache (a cache in whole seconds), not &quot;%1&quot;</source>
        <translation>--setting には NAME:KEY=VALUE を指定してください（KEY は multiple、default、table、value、display、filter、order、descending、cache、cache は秒数）。「%1」ではありません</translation>
    </message>
    <message>
        <source>--pick: &quot;%1&quot; is no parameter of the query; its parameters are: %2</source>
        <translation>--pick：「%1」は問い合わせのパラメーターではありません。パラメーターは次のとおりです：%2</translation>
    </message>
    <message>
        <source>several values</source>
        <translation>複数の値</translation>
    </message>
    <message>
        <source>default: %1 (%2 today)</source>
        <translation>既定値：%1（今日は %2）</translation>
    </message>
    <message>
        <source>values read from %1 %2 (table %3)</source>
        <translation>%1 %2 から読んだ値（テーブル %3）</translation>
    </message>
    <message>
        <source>values stored in the query</source>
        <translation>問い合わせに保存された値</translation>
    </message>
    <message>
        <source>... more: narrow the list with --search TEXT</source>
        <translation>... さらにあります。--search TEXT で絞り込んでください</translation>
    </message>
</context>
<context>
    <name>HostText</name>
    <message>
        <source>&quot;%1&quot; is not an input of the component; its inputs are: %2</source>
        <translation>「%1」はコンポーネントの入力ではありません。入力は次のとおりです：%2</translation>
    </message>
    <message>
        <source>selection: &quot;%1&quot; is no column or expression of the query; its selections are: %2</source>
        <translation>selection：「%1」は問い合わせの列でも式でもありません。選択できるのは次のとおりです：%2</translation>
    </message>
    <message>
        <source>%1: the query takes no row count at run time (%2)</source>
        <translation>%1：この問い合わせは実行時に行数を受け付けません（%2）</translation>
    </message>
    <message>
        <source>its row count is fixed at %1 in the wizard</source>
        <translation>行数はウィザードで %1 に固定されています</translation>
    </message>
    <message>
        <source>it has no row count</source>
        <translation>行数の指定がありません</translation>
    </message>
    <message>
        <source>%1: the query takes no ordering at run time</source>
        <translation>%1：この問い合わせは実行時に並べ替えを受け付けません</translation>
    </message>
    <message>
        <source>OrderBy: &quot;%1&quot; is not one of the query&apos;s ordering choices: %2</source>
        <translation>OrderBy：「%1」は問い合わせの並べ替えの選択肢にありません。選択肢：%2</translation>
    </message>
    <message>
        <source>cannot set &quot;%1&quot; to &quot;%2&quot;: %3</source>
        <translation>「%1」を「%2」にできません：%3</translation>
    </message>
    <message>
        <source>%1: the folder %2 does not exist</source>
        <translation>%1：フォルダー %2 がありません</translation>
    </message>
    <message>
        <source>%1: %2 is not a folder</source>
        <translation>%1：%2 はフォルダーではありません</translation>
    </message>
    <message>
        <source>%1: the folder %2 cannot be written (%3)</source>
        <translation>%1：フォルダー %2 に書き込めません（%3）</translation>
    </message>
    <message>
        <source>%1: is a folder, not a file</source>
        <translation>%1：ファイルではなくフォルダーです</translation>
    </message>
    <message>
        <source>%1: not a regular file (a device, FIFO or socket)</source>
        <translation>%1：通常のファイルではありません（デバイス、FIFO、ソケット）</translation>
    </message>
    <message>
        <source>%1: the file cannot be written (%2)</source>
        <translation>%1：ファイルに書き込めません（%2）</translation>
    </message>
    <message>
        <source>%1; no writable folder was found to keep the component in</source>
        <translation>%1。コンポーネントを残せる書き込み可能なフォルダーが見つかりません</translation>
    </message>
    <message>
        <source>, </source>
        <translation>、</translation>
    </message>
    <message>
        <source>%1: the settings name a parameter the query does not have</source>
        <translation>%1：設定に問い合わせにないパラメーターが指定されています</translation>
    </message>
    <message>
        <source>%1: &quot;%2&quot; is no relative date; use today, start-of-week, start-of-month or start-of-year, optionally with an offset such as -30d, +1w, -1m or -2y</source>
        <translation>%1：「%2」は相対日付ではありません。today、start-of-week、start-of-month、start-of-year に、必要なら -30d、+1w、-1m、-2y のような差を付けてください</translation>
    </message>
    <message>
        <source>%1: a list read from the data source needs its value column</source>
        <translation>%1：データソースから読む一覧には値の列が必要です</translation>
    </message>
    <message>
        <source>the lists refer to each other in a cycle: %1</source>
        <translation>一覧が互いを参照して循環しています：%1</translation>
    </message>
    <message>
        <source>%1: the list could not be read from the data source (%2); it shows the values stored in the query</source>
        <translation>%1：一覧をデータソースから読めませんでした（%2）。問い合わせに保存された値を表示しています</translation>
    </message>
    <message>
        <source>%1: the list waits for a value of %2</source>
        <translation>%1：一覧は %2 の値を待っています</translation>
    </message>
    <message>
        <source>%1: no value is chosen</source>
        <translation>%1：値が選ばれていません</translation>
    </message>
    <message>
        <source>there is no data source named &quot;%1&quot;; there are: %2</source>
        <translation>「%1」という名前のデータソースはありません。あるのは次のとおりです：%2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>%1 takes one value; allow several values in its settings to choose more</source>
        <translation>%1 は値を一つだけ受け付けます。複数選ぶには設定で複数の値を許してください</translation>
    </message>
</context>
<context>
    <name>QCommandLineParser</name>
    <message>
        <source>Usage: %1</source>
        <translation>使い方：%1</translation>
    </message>
    <message>
        <source>[options]</source>
        <translation>[オプション]</translation>
    </message>
    <message>
        <source>Options:</source>
        <translation>オプション：</translation>
    </message>
    <message>
        <source>Arguments:</source>
        <translation>引数：</translation>
    </message>
    <message>
        <source>Displays help on commandline options.</source>
        <translation>コマンドラインオプションのヘルプを表示します。</translation>
    </message>
    <message>
        <source>Displays help including Qt specific options.</source>
        <translation>Qt 固有のオプションを含むヘルプを表示します。</translation>
    </message>
    <message>
        <source>Displays version information.</source>
        <translation>バージョン情報を表示します。</translation>
    </message>
    <message>
        <source>Unknown option &apos;%1&apos;.</source>
        <translation>不明なオプションです：%1</translation>
    </message>
    <message>
        <source>Unknown options: %1.</source>
        <translation>不明なオプションです：%1</translation>
    </message>
    <message>
        <source>Missing value after &apos;%1&apos;.</source>
        <translation>%1 の後に値がありません。</translation>
    </message>
    <message>
        <source>Unexpected value after &apos;%1&apos;.</source>
        <translation>%1 の後の値は受け付けません。</translation>
    </message>
</context>
<context>
    <name>ServiceReason</name>
    <message>
        <source>An error occurred in the data service</source>
        <translation>データサービスでエラーが発生しました</translation>
    </message>
    <message>
        <source>The request is malformed</source>
        <translation>要求の形式が正しくありません</translation>
    </message>
    <message>
        <source>The provider is not known</source>
        <translation>プロバイダが見つかりません</translation>
    </message>
    <message>
        <source>The data source is not known</source>
        <translation>データソースが見つかりません</translation>
    </message>
    <message>
        <source>The catalog is not known</source>
        <translation>カタログが見つかりません</translation>
    </message>
    <message>
        <source>The table or view is not known</source>
        <translation>テーブルまたはビューが見つかりません</translation>
    </message>
    <message>
        <source>The statement was refused</source>
        <translation>文は拒否されました</translation>
    </message>
    <message>
        <source>The statement was stopped at its time limit</source>
        <translation>制限時間を超えたため文を中止しました</translation>
    </message>
    <message>
        <source>The database could not run the statement</source>
        <translation>データベースが文を実行できませんでした</translation>
    </message>
    <message>
        <source>The database could not be connected to</source>
        <translation>データベースに接続できませんでした</translation>
    </message>
    <message>
        <source>The data source&apos;s configuration is wrong</source>
        <translation>データソースの設定に誤りがあります</translation>
    </message>
</context>
<context>
    <name>StudioText</name>
    <message>
        <source>&amp;File</source>
        <translation>ファイル(&amp;F)</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>新規(&amp;N)</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>開く(&amp;O)...</translation>
    </message>
    <message>
        <source>Open &amp;Recent</source>
        <translation>最近使った文書(&amp;R)</translation>
    </message>
    <message>
        <source>(none yet)</source>
        <translation>(まだありません)</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>保存(&amp;S)</translation>
    </message>
    <message>
        <source>Save &amp;As...</source>
        <translation>名前を付けて保存(&amp;A)...</translation>
    </message>
    <message>
        <source>&amp;Export Rows...</source>
        <translation>行をエクスポート(&amp;E)...</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>終了(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>編集(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>コピー(&amp;C)</translation>
    </message>
    <message>
        <source>Copy with Column &amp;Names</source>
        <translation>列名付きでコピー(&amp;N)</translation>
    </message>
    <message>
        <source>Select &amp;All</source>
        <translation>すべて選択(&amp;A)</translation>
    </message>
    <message>
        <source>&amp;Query</source>
        <translation>クエリ(&amp;Q)</translation>
    </message>
    <message>
        <source>&amp;Run Again</source>
        <translation>再実行(&amp;R)</translation>
    </message>
    <message>
        <source>C&amp;heck</source>
        <translation>チェック(&amp;H)</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>表示(&amp;V)</translation>
    </message>
    <message>
        <source>Show &amp;Request</source>
        <translation>要求を表示(&amp;R)</translation>
    </message>
    <message>
        <source>Show &amp;Chart</source>
        <translation>グラフを表示(&amp;C)</translation>
    </message>
    <message>
        <source>Untitled</source>
        <translation>無題</translation>
    </message>
    <message>
        <source>%1[*] - Veldra Studio</source>
        <translation>%1[*] - Veldra Studio</translation>
    </message>
    <message>
        <source>Component documents (*.xml);;All files (*)</source>
        <translation>コンポーネント文書 (*.xml);;すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Request</source>
        <translation>要求</translation>
    </message>
    <message>
        <source>Inputs</source>
        <translation>入力</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>行</translation>
    </message>
    <message>
        <source>Message about the rows</source>
        <translation>行についてのメッセージ</translation>
    </message>
    <message>
        <source>%1 rows in %2 s</source>
        <translation>%1 行 (%2 秒)</translation>
    </message>
    <message>
        <source>Running the query... %1 rows so far</source>
        <translation>問い合わせ中... これまでに %1 行</translation>
    </message>
    <message>
        <source>Only the first %1 rows are shown: the data source&apos;s row cap cut the answer. Narrow the condition, or raise rowcap for the data source in datasources.ini.</source>
        <translation>データソースの行数の上限で打ち切られたため、最初の %1 行だけを表示しています。条件を絞り込むか、datasources.ini でデータソースの rowcap を引き上げてください。</translation>
    </message>
    <message>
        <source>Running the query...</source>
        <translation>問い合わせ中...</translation>
    </message>
    <message>
        <source>Nothing is asked yet.</source>
        <translation>まだ問い合わせていません。</translation>
    </message>
    <message>
        <source>The query failed; the reason is above the rows.</source>
        <translation>問い合わせに失敗しました。理由は行の上に表示しています。</translation>
    </message>
    <message>
        <source>No request: %1</source>
        <translation>要求がありません: %1</translation>
    </message>
    <message>
        <source>Nothing is asked yet: give &quot;%1&quot; a value in its input on the left.</source>
        <translation>まだ問い合わせていません: 左の入力欄で「%1」に値を指定してください。</translation>
    </message>
    <message>
        <source>No request: the condition refers to %1, which is no parameter of the query; fix it with Query &gt; Edit Query.</source>
        <translation>要求がありません: 条件が参照する %1 は問い合わせのパラメータではありません。クエリ &gt; クエリの編集で直してください。</translation>
    </message>
    <message>
        <source>The data service refused the request (error 0x%1):
%2</source>
        <translation>データサービスが要求を拒否しました (エラー 0x%1):
%2</translation>
    </message>
    <message>
        <source>BLOB, %1 bytes: %2</source>
        <translation>BLOB %1 バイト: %2</translation>
    </message>
    <message>
        <source>Cannot open the document</source>
        <translation>文書を開けません</translation>
    </message>
    <message>
        <source>Cannot save the document</source>
        <translation>文書を保存できません</translation>
    </message>
    <message>
        <source>Not saved yet: File &gt; Save As chooses where the component goes</source>
        <translation>未保存: 保存先は ファイル &gt; 名前を付けて保存 で選びます</translation>
    </message>
    <message>
        <source>Saved in %1</source>
        <translation>保存先: %1</translation>
    </message>
    <message>
        <source>Query changed, not saved yet: File &gt; Save writes it to %1</source>
        <translation>クエリを変更しました (未保存): ファイル &gt; 保存 で %1 に書き込みます</translation>
    </message>
    <message>
        <source>Unsaved changes</source>
        <translation>未保存の変更</translation>
    </message>
    <message>
        <source>&quot;%1&quot; has changes that are not saved. Save them first?</source>
        <translation>「%1」には保存されていない変更があります。先に保存しますか?</translation>
    </message>
    <message>
        <source>Check</source>
        <translation>チェック</translation>
    </message>
    <message>
        <source>The statement runs with the current values: its first row came after %1 s.</source>
        <translation>現在の値で文を実行できます: 最初の行は %1 秒で返りました。</translation>
    </message>
    <message>
        <source>The statement runs with the current values, but gives no rows.</source>
        <translation>現在の値で文を実行できますが、行はありません。</translation>
    </message>
    <message>
        <source>The data service refuses the statement with the current values (error 0x%1):
%2</source>
        <translation>現在の値では、データサービスが文を拒否します (エラー 0x%1):
%2</translation>
    </message>
    <message>
        <source>CSV files (*.csv);;JSON files (*.json)</source>
        <translation>CSV ファイル (*.csv);;JSON ファイル (*.json)</translation>
    </message>
    <message>
        <source>Cannot export the rows</source>
        <translation>行をエクスポートできません</translation>
    </message>
    <message>
        <source>Exported %1 rows to %2</source>
        <translation>%1 行を %2 にエクスポートしました</translation>
    </message>
    <message>
        <source>Chart</source>
        <translation>グラフ</translation>
    </message>
    <message>
        <source>C&amp;hart:</source>
        <translation>グラフ(&amp;H):</translation>
    </message>
    <message>
        <source>Bar</source>
        <translation>棒</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>折れ線</translation>
    </message>
    <message>
        <source>&amp;Labels from:</source>
        <translation>ラベルの列(&amp;L):</translation>
    </message>
    <message>
        <source>Val&amp;ues:</source>
        <translation>値の列(&amp;U):</translation>
    </message>
    <message>
        <source>Save as &amp;PNG...</source>
        <translation>PNG で保存(&amp;P)...</translation>
    </message>
    <message>
        <source>Save as SV&amp;G...</source>
        <translation>SVG で保存(&amp;G)...</translation>
    </message>
    <message>
        <source>Tick a column of numbers under Values to chart it.</source>
        <translation>グラフにするには、値の列で数値の列にチェックを付けてください。</translation>
    </message>
    <message>
        <source>The bar chart shows the first %1 of %2 rows; a line chart shows them all.</source>
        <translation>棒グラフは %2 行のうち最初の %1 行を表示します。折れ線グラフはすべてを表示します。</translation>
    </message>
    <message>
        <source>PNG images (*.png)</source>
        <translation>PNG 画像 (*.png)</translation>
    </message>
    <message>
        <source>SVG images (*.svg)</source>
        <translation>SVG 画像 (*.svg)</translation>
    </message>
    <message>
        <source>Cannot save the chart</source>
        <translation>グラフを保存できません</translation>
    </message>
    <message>
        <source>&amp;Data source:</source>
        <translation>データソース(&amp;D):</translation>
    </message>
    <message>
        <source>As the component names it</source>
        <translation>コンポーネントが指定するもの</translation>
    </message>
    <message>
        <source>%1 (several values)</source>
        <translation>%1 (複数の値)</translation>
    </message>
    <message>
        <source>Type to narrow the list</source>
        <translation>入力して一覧を絞り込む</translation>
    </message>
    <message>
        <source>... more: type to narrow the list</source>
        <translation>... さらにあります: 入力して絞り込んでください</translation>
    </message>
    <message>
        <source>Chosen, but not on this page of the list: %1</source>
        <translation>選んだ値のうちこのページにないもの: %1 個</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>パラメーター</translation>
    </message>
    <message>
        <source>&amp;Parameter Settings...</source>
        <translation>パラメーターの設定(&amp;P)...</translation>
    </message>
    <message>
        <source>&amp;Parameter:</source>
        <translation>パラメーター(&amp;P):</translation>
    </message>
    <message>
        <source>Several &amp;values</source>
        <translation>複数の値(&amp;V)</translation>
    </message>
    <message>
        <source>Relative &amp;default:</source>
        <translation>相対的な既定値(&amp;D):</translation>
    </message>
    <message>
        <source>List from &amp;table:</source>
        <translation>一覧の読み込み元テーブル(&amp;T):</translation>
    </message>
    <message>
        <source>&amp;Value column:</source>
        <translation>値の列(&amp;A):</translation>
    </message>
    <message>
        <source>&amp;Shown column:</source>
        <translation>表示する列(&amp;S):</translation>
    </message>
    <message>
        <source>&amp;Filter:</source>
        <translation>絞り込み条件(&amp;F):</translation>
    </message>
    <message>
        <source>&amp;Order by:</source>
        <translation>並べ替え(&amp;O):</translation>
    </message>
    <message>
        <source>Desc&amp;ending</source>
        <translation>降順(&amp;E)</translation>
    </message>
    <message>
        <source>&amp;Keep the list for (seconds):</source>
        <translation>一覧を保持する秒数(&amp;K):</translation>
    </message>
    <message>
        <source>Values of %1</source>
        <translation>%1 の値</translation>
    </message>
</context>
</TS>
