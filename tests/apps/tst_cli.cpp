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
    void runPrintsRowsFromTheSample();

private:
    struct Result
    {
        int status;
        QString out;
        QString err;
    };
    Result veldra(const QStringList &arguments);

    QTemporaryDir m_dir;
};

static const QString component = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.component.xml");
static const QString definition = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");

tst_Cli::Result tst_Cli::veldra(const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", m_dir.path()); // no user configuration
    environment.insert("VELDRA_LANG", "en");
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VELDRA_BINARY), arguments);
    if (!process.waitForFinished(60000))
        qFatal("veldra did not finish");
    return { process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
             QString::fromUtf8(process.readAllStandardError()) };
}

void tst_Cli::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QFile truncated(m_dir.filePath("truncated.xml"));
    QFile source(definition);
    QVERIFY(source.open(QIODevice::ReadOnly) && truncated.open(QIODevice::WriteOnly));
    truncated.write(source.read(700));
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
    QTest::newRow("request with a parameter")
            << QStringList { "request", component, "--set", "@@@Region='SW'" } << 0 << "<query><get><content>record"
            << "";
    QTest::newRow("request refuses a value the slot cannot take")
            << QStringList { "request", component, "--set", "TopN=abc" } << 2 << "" << "\"TopN\" to \"abc\"";
    QTest::newRow("request refuses an unknown slot")
            << QStringList { "request", component, "--set", "Nope=1" } << 2 << "" << "no slot \"Nope\"";
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

void tst_Cli::runPrintsRowsFromTheSample()
{
    const Result table = veldra({ "run", component });
    QCOMPARE(table.status, 0);
    QVERIFY2(table.out.startsWith("Region "), qPrintable(table.out));
    QVERIFY(table.out.contains("North East"));
    QVERIFY(table.out.contains("(3 rows)"));

    const Result csv = veldra({ "run", component, "--set", "@@@Region='SW'", "--format", "csv" });
    QCOMPARE(csv.status, 0);
    QVERIFY(csv.out.startsWith("Region,Segment,Orders,Revenue\r\nSouth West,"));
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
