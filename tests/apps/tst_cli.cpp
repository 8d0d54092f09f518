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
    void editRefusesWithoutWindowsAndLeavesTheDocument_data();
    void editRefusesWithoutWindowsAndLeavesTheDocument();

private:
    struct Result
    {
        int status;
        QString out;
        QString err;
    };
    // Runs without a display unless platform names one.
    Result veldra(const QStringList &arguments, const QString &platform = {});

    QTemporaryDir m_dir;
};

static const QString component = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.component.xml");
static const QString definition = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");

tst_Cli::Result tst_Cli::veldra(const QStringList &arguments, const QString &platform)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", m_dir.path()); // no user configuration
    environment.insert("VELDRA_LANG", "en");
    for (const char *name : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" })
        environment.remove(name);
    if (!platform.isEmpty())
        environment.insert("QT_QPA_PLATFORM", platform);
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
    QTest::newRow("run refuses a second statement with the error report")
            << QStringList { "run", component, "--set", "@@@Region='SW'; DELETE FROM orders" } << 1 << ""
            << "Error Code: 80045006";
    QTest::newRow("browse lists the sample catalog's tables")
            << QStringList { "browse", "SQLite", "Sample", "main" } << 0 << "customers\n" << "";
    QTest::newRow("browse reports an unknown data source")
            << QStringList { "browse", "SQLite", "Nope" } << 1 << "" << "Error Code: 80045003";
    QTest::newRow("unknown command") << QStringList { "frobnicate" } << 2 << "" << "unknown command";
    QTest::newRow("edit help needs no display") << QStringList { "edit", "--help" } << 0 << "Usage: veldra edit" << "";
    QTest::newRow("edit wants one document") << QStringList { "edit" } << 2 << "" << "exactly one DOC";
    QTest::newRow("edit refuses a document that is not a component")
            << QStringList { "edit", definition } << 2 << "" << "not a component document";
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
        const Result result = veldra({ "edit", document }, platform);
        QCOMPARE(result.status, 1);
        QVERIFY2(result.err.contains(errContains), qPrintable(result.err));
    }
    QVERIFY(!QFile::exists(created));
    QFile original(component), kept(copy);
    QVERIFY(original.open(QIODevice::ReadOnly) && kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), original.readAll());
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
