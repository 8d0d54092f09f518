#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

// The veldra tool as a user runs it: exit statuses, where messages go, and nothing half-printed.
class tst_Cli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void commandsAnswerWithStatusAndMessage_data();
    void commandsAnswerWithStatusAndMessage();
    void saveKeepsTheValuesSetForTheNextLoad();
    void editRefusesWithoutWindowsAndLeavesTheDocument_data();
    void editRefusesWithoutWindowsAndLeavesTheDocument();
    void formatsPrintEveryValueFaithfully_data();
    void formatsPrintEveryValueFaithfully();
    void jsonKeepsColumnOrderAndDuplicateNames();
    void rowCapCutIsSaidInEveryFormat_data();
    void rowCapCutIsSaidInEveryFormat();
    void failuresGiveOneStatusAndTheirCause_data();
    void failuresGiveOneStatusAndTheirCause();
    void helpVersionAndStandardInput();
    void parametersAndBareDefinitions();
    void japaneseTextsAndPunctuation();

private:
    struct Result
    {
        int status;
        QString out;
        QString err;
    };
    struct Options
    {
        QString config;      // XDG_CONFIG_HOME; the test's folder when empty
        QByteArray input;    // standard input
        QString outputFile;  // standard output goes there when set
        QString language = "en";
        QString platform;    // QT_QPA_PLATFORM; no display at all when empty
    };
    Result veldra(const QStringList &arguments) { return veldra(arguments, Options()); }
    Result veldra(const QStringList &arguments, const Options &options);
    QString writeConfig(const QString &name, const QString &ini);

    QTemporaryDir m_dir;
};

static const QString component = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.component.xml");
static const QString definition = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");

tst_Cli::Result tst_Cli::veldra(const QStringList &arguments, const Options &options)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", options.config.isEmpty() ? m_dir.path() : options.config);
    environment.insert("VELDRA_LANG", options.language);
    for (const char *name : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" })
        environment.remove(name);
    if (!options.platform.isEmpty())
        environment.insert("QT_QPA_PLATFORM", options.platform);
    process.setProcessEnvironment(environment);
    if (!options.outputFile.isEmpty())
        process.setStandardOutputFile(options.outputFile);
    process.start(QStringLiteral(VELDRA_BINARY), arguments);
    process.write(options.input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000))
        qFatal("veldra did not finish");
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
             QString::fromUtf8(process.readAllStandardError()) };
}

// A configuration folder NAME holding veldra/datasources.ini with INI; its path.
QString tst_Cli::writeConfig(const QString &name, const QString &ini)
{
    const QString folder = m_dir.filePath(name);
    QDir().mkpath(folder + "/veldra");
    QFile file(folder + "/veldra/datasources.ini");
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
    file.write(ini.toUtf8());
    return folder;
}

static QString odd()
{
    return QStringLiteral("odd.xml");
}

void tst_Cli::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QFile truncated(m_dir.filePath("truncated.xml"));
    QFile source(definition);
    QVERIFY(source.open(QIODevice::ReadOnly) && truncated.open(QIODevice::WriteOnly));
    truncated.write(source.read(700));

    // A table of values that are hard to print, and a component over it with a parameter.
    const QString db = m_dir.filePath("odd.db");
    QCOMPARE(QProcess::execute("sqlite3", { db, "CREATE TABLE odd (id INTEGER, label TEXT, note TEXT, amount REAL, data BLOB);"
                                                "INSERT INTO odd VALUES (1, 'two' || char(10) || 'lines', '', 2.5, X'0001FF'),"
                                                " (2, ' lead', NULL, 10, NULL),"
                                                " (3, 'e' || char(769) || 'x', 'tab' || char(9) || 'here', NULL, NULL),"
                                                " (4, '漢字', 'a,\"b\"', -0.25, NULL);" }),
             0);
    QString columns;
    QString selections;
    for (const QString column : { "id", "label", "note", "amount", "data" }) {
        columns += "<Object key=\"" + column + "\"><ColumnInfo><alias></alias><columnType>1</columnType><express>" + column
                + "</express><table>odd</table></ColumnInfo></Object>";
        selections += "<Item>odd." + column + "</Item>";
    }
    QFile document(m_dir.filePath(odd()));
    QVERIFY(document.open(QIODevice::WriteOnly));
    document.write(("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Component><Model><ClassPart>"
                    "<Variable name=\"selection\">odd.id,odd.label,odd.note,odd.amount,odd.data</Variable>"
                    "<Variable name=\"SQLInfo\"><SQLInfo><dbInfo><DBInfo><provider>SQLite</provider><dsn>Odd</dsn>"
                    "<catalog>main</catalog></DBInfo></dbInfo><tables><NameMap><Object key=\"odd\"><TableInfo>"
                    "<tableName>odd</tableName><columns><NameMap>" + columns + "</NameMap></columns></TableInfo>"
                    "</Object></NameMap></tables><selections>" + selections + "</selections>"
                    "<useGroupBy>false</useGroupBy><useOrderBy>false</useOrderBy><topN>0</topN>"
                    "<parameters><NameMap><Object key=\"@@@Min\"><ParamInfo><paramType>1</paramType>"
                    "<paramName>@@@Min</paramName><title>Lowest id</title></ParamInfo></Object></NameMap></parameters>"
                    "<condition>odd.id &gt;= @@@Min</condition></SQLInfo></Variable>"
                    "<Variable name=\"parameters\"><NameMap><Text key=\"@@@Min\">0</Text></NameMap></Variable>"
                    "</ClassPart></Model></Component>\n").toUtf8());
    document.close();
    writeConfig(".", "[Odd]\nprovider=SQLite\npath=" + db + "\n");
    QCOMPARE(QProcess::execute("mkfifo", { m_dir.filePath("fifo") }), 0);
}

void tst_Cli::commandsAnswerWithStatusAndMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("outStarts");
    QTest::addColumn<QString>("errContains");
    QTest::newRow("sql of a definition") << QStringList { "sql", definition } << 0 << "SELECT\r\nTOP 10\r\n" << "";
    QTest::newRow("sql of a component") << QStringList { "sql", component } << 0 << "SELECT\r\n" << "";
    QTest::newRow("sql of a truncated file names line and column")
            << QStringList { "sql", m_dir.filePath("truncated.xml") } << 2 << "" << "truncated.xml:";
    QTest::newRow("sql help") << QStringList { "sql", "--help" } << 0 << "Usage: veldra sql" << "";
    QTest::newRow("sql --engine prints what the engine receives")
            << QStringList { "sql", component, "--engine", "--set", "@@@Region='SW'" } << 0
            << "SELECT regions.name Region,customers.segment Segment,COUNT(orders.id) Orders,ROUND(SUM(orders.amount), 2) "
               "Revenue\nFROM \"main\".\"regions\", \"main\".\"customers\", \"main\".\"orders\"\n"
               "WHERE (customers.region_code = regions.code AND orders.customer_id = customers.id AND orders.status <> "
               "'cancelled' AND regions.code = 'SW' AND orders.order_date >= '2023-01-01')\n"
               "GROUP BY regions.name,customers.segment\nORDER BY ROUND(SUM(orders.amount), 2) DESC\nLIMIT 10\n"
            << "";
    QTest::newRow("sql --engine for a data source that is not there")
            << QStringList { "sql", component, "--engine", "--dsn", "Nope" } << 2 << "" << "no data source named \"Nope\"";
    QTest::newRow("request with a parameter")
            << QStringList { "request", component, "--set", "@@@Region='SW'" } << 0 << "<query><get><content>record"
            << "";
    QTest::newRow("request refuses an unknown input, naming the inputs")
            << QStringList { "request", component, "--set", "Nope=1" } << 2 << ""
            << "\"Nope\" is not an input of the component; its inputs are: selection, UpdateRequest, @@@Region, @@@FromDate\n";
    QTest::newRow("run names a parameter without a value and asks no engine")
            << QStringList { "run", definition } << 2 << ""
            << "veldra run: @@@FromDate (\"Orders from ('YYYY-MM-DD')\") has no value, so nothing is sent: "
               "give one with --set \"@@@FromDate=...\"\n";
    QTest::newRow("sql --filled names a parameter without a value")
            << QStringList { "sql", definition, "--filled" } << 2 << "" << "veldra sql: @@@FromDate";
    QTest::newRow("request names the missing piece")
            << QStringList { "request", component, "--set", "selection=" } << 1 << "" << "yields no request: no fields";
    QTest::newRow("request refuses a control character XML cannot carry")
            << QStringList { "request", component, "--set", QStringLiteral("@@@Region='a\u0001b'") } << 2 << ""
            << "character U+0001";
    QTest::newRow("reading a device stops at the size limit")
            << QStringList { "sql", "/dev/zero" } << 2 << "" << "reading stopped";
    QTest::newRow("save refuses to put a file in place of a FIFO")
            << QStringList { "request", component, "--save", m_dir.filePath("fifo") } << 2 << ""
            << "not a regular file";
    QTest::newRow("save refuses a directory")
            << QStringList { "request", component, "--save", m_dir.path() } << 2 << "" << "not a regular file";
    QTest::newRow("run refuses a second statement with the error report")
            << QStringList { "run", component, "--set", "@@@Region='SW'; DELETE FROM orders" } << 1 << ""
            << "Error Code: 80045006";
    QTest::newRow("browse lists the sample catalog's tables")
            << QStringList { "browse", "SQLite", "Sample", "main" } << 0 << "customers\n" << "";
    QTest::newRow("browse reports an unknown data source")
            << QStringList { "browse", "SQLite", "Nope" } << 1 << "" << "Error Code: 80045003";
    QTest::newRow("unknown command") << QStringList { "frobnicate" } << 2 << "" << "unknown command";
    QTest::newRow("a format in capitals") << QStringList { "run", component, "--format", "CSV" } << 0 << "Region,"
                                          << "";
    QTest::newRow("an unknown format is named")
            << QStringList { "run", component, "--format", "yaml" } << 2 << "" << "veldra run: --format \"yaml\"";
    QTest::newRow("help COMMAND is COMMAND --help") << QStringList { "help", "run" } << 0 << "Usage: veldra run" << "";
    QTest::newRow("a bad --set is said by its command")
            << QStringList { "run", component, "--set", "novalue" } << 2 << "" << "veldra run: --set wants NAME=VALUE";
    QTest::newRow("a --set without a name") << QStringList { "run", component, "--set", "=1" } << 2 << ""
                                            << "veldra run: --set wants NAME=VALUE";
    QTest::newRow("edit help needs no display") << QStringList { "edit", "--help" } << 0 << "Usage: veldra edit" << "";
    QTest::newRow("edit wants one document") << QStringList { "edit" } << 2 << "" << "exactly one DOC";
    QTest::newRow("edit refuses a document that is not a component")
            << QStringList { "edit", definition } << 2 << "" << "not a component document; Finish saves";
    QTest::newRow("edit refuses a target in a folder that does not exist, before the wizard")
            << QStringList { "edit", "/no/such/dir/x.component.xml" } << 2 << ""
            << "veldra edit: /no/such/dir/x.component.xml: the folder /no/such/dir does not exist\n";
}

void tst_Cli::commandsAnswerWithStatusAndMessage()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, outStarts);
    QFETCH(QString, errContains);
    const Result result = veldra(arguments);
    QVERIFY2(result.status == status, qPrintable(QString("status %1, stderr: %2").arg(result.status).arg(result.err)));
    if (status != 0)
        QCOMPARE(result.out, QString()); // a failure never leaves half an answer on standard output
    QVERIFY2(outStarts.isEmpty() || result.out.startsWith(outStarts), qPrintable(result.out.left(200)));
    QVERIFY2(result.err.contains(errContains), qPrintable(result.err));
}

void tst_Cli::saveKeepsTheValuesSetForTheNextLoad()
{
    const QString saved = m_dir.filePath("saved.xml");
    const Result first = veldra({ "request", component, "--set", "@@@Region='OS'", "--save", saved });
    QCOMPARE(first.status, 0);
    const Result again = veldra({ "request", saved });
    QCOMPARE(again.out, first.out);
    QVERIFY(again.out.contains("regions.code = 'OS'"));
}

void tst_Cli::editRefusesWithoutWindowsAndLeavesTheDocument_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<QString>("errContains");
    QTest::newRow("no display") << "" << "no display to show the wizard on";
    QTest::newRow("a platform without windows") << "offscreen" << "\"offscreen\" shows no windows";
}

void tst_Cli::editRefusesWithoutWindowsAndLeavesTheDocument()
{
    QFETCH(QString, platform);
    QFETCH(QString, errContains);
    const QString created = m_dir.filePath("new.component.xml");
    const QString copy = m_dir.filePath("copy.component.xml");
    QFile::remove(copy);
    QVERIFY(QFile::copy(component, copy));
    for (const QString &document : { created, copy }) {
        Options options;
        options.platform = platform;
        const Result result = veldra({ "edit", document }, options);
        QCOMPARE(result.status, 1);
        QVERIFY2(result.err.contains(errContains), qPrintable(result.err));
    }
    QVERIFY(!QFile::exists(created));
    QFile original(component), kept(copy);
    QVERIFY(original.open(QIODevice::ReadOnly) && kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), original.readAll());
}

void tst_Cli::formatsPrintEveryValueFaithfully_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("expected");
    const QStringList all{ "run", m_dir.filePath(odd()), "--format" };
    const QStringList none{ "run", m_dir.filePath(odd()), "--set", "@@@Min=99", "--format" };
    // NULL apart from empty text, quotes doubled, a BLOB marked, the header always there.
    QTest::newRow("csv") << all + QStringList{ "csv" }
                         << "id,label,note,amount,data\r\n1,\"two\nlines\",\"\",2.5,\\x0001ff\r\n2, lead,,10.0,\r\n"
                            "3,e\u0301x,tab\there,,\r\n4,漢字,\"a,\"\"b\"\"\",-0.25,\r\n";
    QTest::newRow("csv, no rows") << none + QStringList{ "csv" } << "id,label,note,amount,data\r\n";
    QTest::newRow("json") << all + QStringList{ "json" }
                          << "{\"columns\": [\"id\", \"label\", \"note\", \"amount\", \"data\"],\n \"rows\": [\n"
                             "  [1, \"two\\nlines\", \"\", 2.5, {\"base64\": \"AAH/\"}],\n"
                             "  [2, \" lead\", null, 10.0, null],\n"
                             "  [3, \"e\u0301x\", \"tab\\there\", null, null],\n"
                             "  [4, \"漢字\", \"a,\\\"b\\\"\", -0.25, null]\n ],\n \"truncated\": false}\n";
    QTest::newRow("json, no rows") << none + QStringList{ "json" }
                                   << "{\"columns\": [\"id\", \"label\", \"note\", \"amount\", \"data\"],\n"
                                      " \"rows\": [],\n \"truncated\": false}\n";
    // The grid holds through a line break, a tab, a combining mark, wide characters and a leading blank.
    QTest::newRow("table") << all + QStringList{ "table" }
                           << "id | label      | note      | amount | data\n"
                              "---+------------+-----------+--------+---------\n"
                              " 1 | two\\nlines |           |    2.5 | \\x0001ff\n"
                              " 2 |  lead      | NULL      |   10.0 | NULL\n"
                              " 3 | e\u0301x         | tab\\there | NULL   | NULL\n"
                              " 4 | 漢字       | a,\"b\"     |  -0.25 | NULL\n"
                              "(4 rows)\n";
    QTest::newRow("table, no rows") << none + QStringList{ "table" }
                                    << "id | label | note | amount | data\n---+-------+------+--------+-----\n(0 rows)\n";
}

void tst_Cli::formatsPrintEveryValueFaithfully()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, expected);
    const Result result = veldra(arguments);
    QVERIFY2(result.status == 0, qPrintable(result.err));
    QCOMPARE(result.out, expected);
}

void tst_Cli::jsonKeepsColumnOrderAndDuplicateNames()
{
    const Result result = veldra({ "run", component, "--set", "selection=orders.id,customers.id,Region", "--format", "json" });
    QVERIFY2(result.status == 0, qPrintable(result.err));
    QJsonParseError error;
    const QJsonObject json = QJsonDocument::fromJson(result.out.toUtf8(), &error).object();
    QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(error.errorString()));
    QCOMPARE(json.value("columns").toArray(), (QJsonArray{ "id", "id", "Region" }));
    const QJsonArray first = json.value("rows").toArray().first().toArray();
    QVERIFY(first.at(0).isDouble() && first.at(1).isDouble() && first.at(2).isString());
    QCOMPARE(json.value("truncated"), QJsonValue(false));
}

void tst_Cli::rowCapCutIsSaidInEveryFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("cutMark"); // how the output itself says so
    QTest::newRow("table") << "table" << "(2 rows, cut at the data source's row cap of 2)";
    QTest::newRow("csv") << "csv" << "\r\n";
    QTest::newRow("json") << "json" << "\"truncated\": true}";
    QTest::newRow("xml") << "xml" << "truncated=\"true\" rowcap=\"2\"";
}

void tst_Cli::rowCapCutIsSaidInEveryFormat()
{
    QFETCH(QString, format);
    QFETCH(QString, cutMark);
    const QString sample = QFileInfo(VELDRA_BINARY).absolutePath() + "/../share/veldra/sample.db";
    Options options;
    options.config = writeConfig("capped", "[Sample]\nprovider=SQLite\npath=" + sample + "\nrowcap=2\n");
    const Result result = veldra({ "run", component, "--format", format }, options);
    QCOMPARE(result.status, 3);
    QVERIFY2(result.err.contains("cut at the data source's row cap of 2 rows"), qPrintable(result.err));
    QVERIFY2(result.out.contains(cutMark), qPrintable(result.out));
    if (format == "csv")
        QCOMPARE(result.out.count("\r\n"), 3);
}

void tst_Cli::failuresGiveOneStatusAndTheirCause_data()
{
    QTest::addColumn<QString>("config"); // datasources.ini
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("errOnce"); // said exactly once on standard error
    const QString bad = "[Bad]\nprovider=Nope\n";
    const QString missing = "[Miss]\nprovider=SQLite\npath=/nonexistent/veldra.db\n";
    QTest::newRow("bad configuration: run") << bad << QStringList{ "run", component } << 2 << "[Bad]";
    QTest::newRow("bad configuration: browse") << bad << QStringList{ "browse" } << 2 << "[Bad]";
    QTest::newRow("bad configuration: browse a data source") << bad << QStringList{ "browse", "SQLite", "Sample" } << 2
                                                             << "[Bad]";
    QTest::newRow("browse says why a connection failed")
            << missing << QStringList{ "browse", "SQLite", "Miss" } << 1 << "veldra.db of data source Miss does not exist";
    QTest::newRow("browse reports the failure once")
            << missing << QStringList{ "browse", "SQLite", "Miss", "main" } << 1 << "Error Code: 80045009";
    QTest::newRow("browse a provider with nothing configured says how to configure one")
            << "" << QStringList{ "browse", "PostgreSQL" } << 1 << "add a group with provider=PostgreSQL to";
}

void tst_Cli::failuresGiveOneStatusAndTheirCause()
{
    QFETCH(QString, config);
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, errOnce);
    Options options;
    options.config = writeConfig(QString::number(QTest::currentDataTag() ? qHash(QByteArray(QTest::currentDataTag())) : 0),
                                 config);
    const Result result = veldra(arguments, options);
    QVERIFY2(result.status == status, qPrintable(QString("status %1, stderr: %2").arg(result.status).arg(result.err)));
    QCOMPARE(result.out, QString());
    QVERIFY2(result.err.count(errOnce) == 1, qPrintable(result.err));
}

void tst_Cli::helpVersionAndStandardInput()
{
    // Help is all a command does, whichever help is asked for.
    const QString registry = m_dir.filePath("registry.json");
    const Result help = veldra({ "register", "--help-all", "--file", registry });
    QCOMPARE(help.status, 0);
    QVERIFY(help.out.startsWith("Usage: veldra register"));
    QVERIFY(!QFile::exists(registry));

    QVERIFY(veldra({ "--help" }).out.contains("--version"));
    const Result version = veldra({ "--version" });
    QCOMPARE(version.status, 0);
    QVERIFY2(version.out.startsWith("veldra ") && version.out.contains('.'), qPrintable(version.out));

    QFile file(component);
    QVERIFY(file.open(QIODevice::ReadOnly));
    Options piped;
    piped.input = file.readAll();
    const Result run = veldra({ "run", "-", "--format", "csv" }, piped);
    QVERIFY2(run.status == 0, qPrintable(run.err));
    QVERIFY(run.out.startsWith("Region,Segment,Orders,Revenue\r\nNorth East,"));
    piped.input = "<Component>";
    const Result broken = veldra({ "sql", "-" }, piped);
    QCOMPARE(broken.status, 2);
    QVERIFY2(broken.err.contains("standard input:"), qPrintable(broken.err));

    // A full disk is a failure, whichever command writes.
    Options full;
    full.outputFile = "/dev/full";
    for (const QStringList &arguments : { QStringList{ "run", component, "--format", "csv" },
                                          QStringList{ "run", component, "--format", "xml" }, QStringList{ "sql", definition } }) {
        const Result result = veldra(arguments, full);
        QCOMPARE(result.status, 4);
        QVERIFY2(result.err.contains("standard output could not be written"), qPrintable(result.err));
    }
}

void tst_Cli::parametersAndBareDefinitions()
{
    const Result params = veldra({ "params", component });
    QCOMPARE(params.status, 0);
    QVERIFY2(params.out.startsWith("@@@Region  chosen from a list  \"Region\"\n  value: 'NE'\n  'NE' = North East\n"),
             qPrintable(params.out));
    QVERIFY(params.out.contains("@@@FromDate  typed in  \"Orders from ('YYYY-MM-DD')\"\n  value: '2023-01-01'\n"));

    // A bare definition: a list parameter at its first value, a typed one waiting for --set.
    const Result bare = veldra({ "params", definition });
    QVERIFY(bare.out.contains("value: 'NE'\n") && bare.out.contains("value: none (give one with --set \"@@@FromDate=...\")"));

    const Result filled = veldra({ "sql", component, "--filled", "--set", "@@@Region='SW'" });
    QCOMPARE(filled.status, 0);
    QVERIFY2(filled.out.contains("regions.code = 'SW' AND orders.order_date >= '2023-01-01'\r\n"), qPrintable(filled.out));
}

void tst_Cli::japaneseTextsAndPunctuation()
{
    Options japanese;
    japanese.language = "ja";
    const Result help = veldra({ "run", "--help" }, japanese);
    QVERIFY2(help.out.startsWith("使い方：veldra run [オプション] DOC\n"), qPrintable(help.out));
    QVERIFY(help.out.contains("オプション：") && !help.out.contains("Displays help"));
    QVERIFY(veldra({ "run", component }, japanese).out.endsWith("（3 行）\n"));
    const Result refused = veldra({ "run", component, "--set", "@@@Region='SW'; DELETE FROM orders" }, japanese);
    QCOMPARE(refused.status, 1);
    QVERIFY2(refused.err.contains("データベースエラー：") && refused.err.contains("（エラーコード：80045006、"), qPrintable(refused.err));
    QVERIFY2(refused.err.contains("veldra run: 文は拒否されました："), qPrintable(refused.err));
    QVERIFY2(!refused.err.contains(" (") && !refused.err.contains(", "), qPrintable(refused.err));
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
