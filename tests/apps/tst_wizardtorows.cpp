#include "../veldra/common/wizarddriver.h"

#include "editsession.h"
#include "resulttablemodel.h"
#include "studiowindow.h"

#include "tessaly/uiservice.h"

#include <QProcess>
#include <QTemporaryDir>

using Answer = tessaly::UiService::Answer;

namespace {

const QString shipped = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.component.xml");

// Each row as one line, the header first; a number by its value, since each engine writes its
// decimals its own way.
QStringList lines(const QList<QStringList> &rows)
{
    QStringList lines;
    for (QStringList row : rows) {
        for (QString &field : row) {
            bool number = false;
            const double value = field.toDouble(&number);
            field = number ? QString::number(value, 'g', 15) : field;
        }
        lines.append(row.join(','));
    }
    return lines;
}

// The rows `veldra run DOC --format csv` prints, or its exit status and standard error.
QStringList veldraRun(const QString &document)
{
    QProcess process;
    process.start(QStringLiteral(VELDRA_BINARY), { "run", document, "--format", "csv" });
    if (!process.waitForFinished(60000))
        qFatal("veldra run did not finish");
    if (process.exitCode() != 0)
        return { QString("status %1: ").arg(process.exitCode()) + process.readAllStandardError() };
    QList<QStringList> rows;
    for (const QString &line : QString::fromUtf8(process.readAllStandardOutput()).split("\r\n", Qt::SkipEmptyParts))
        rows.append(line.split(','));
    return lines(rows);
}

} // namespace

// The journey of a new user: `veldra edit` on a file that does not exist, the whole query built
// in the wizard and finished, then the rows, from `veldra run` and in the studio, with no value
// given by hand. On SQLite, and on the throw-away PostgreSQL server of the data service tests.
class tst_WizardToRows : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::shared_ptr<testui::RecordingUiService> m_ui;
    QString m_noPostgres; // why the PostgreSQL row skips

private Q_SLOTS:
    void initTestCase()
    {
        veldra::StringTable::setLanguage(veldra::Language::English);
        qputenv("XDG_CONFIG_HOME", m_dir.path().toUtf8());
        QMap<QString, QString> server;
        QFile state(qEnvironmentVariable("VELDRA_TEST_PG"));
        for (const QString &line : QString::fromUtf8(state.open(QIODevice::ReadOnly) ? state.readAll() : "").split('\n'))
            server.insert(line.section('=', 0, 0), line.section('=', 1));
        m_noPostgres = server.contains("host") ? QString() : "no PostgreSQL server (run the test through CTest)";
        if (!m_noPostgres.isEmpty())
            return; // the wizard would report the unreachable data source on every run
        QVERIFY(QDir().mkpath(m_dir.filePath("veldra")));
        QFile ini(m_dir.filePath("veldra/datasources.ini"));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write(QString("[Shop]\nprovider=PostgreSQL\nhost=%1\nport=%2\ndbname=%3\nuser=%4\ncatalogs=sales\n")
                          .arg(server.value("host"), server.value("port"), server.value("dbname"), server.value("reader"))
                          .toUtf8());
    }

    void init() { tessaly::UiService::setInstance(m_ui = std::make_shared<testui::RecordingUiService>()); }

    void cleanup()
    {
        tessaly::UiService::setInstance(nullptr);
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void aQueryBuiltFromNothingGivesRowsAtOnce_data()
    {
        QTest::addColumn<QString>("provider");
        QTest::addColumn<bool>("onAlias");
        QTest::newRow("SQLite") << "SQLite" << false;
        QTest::newRow("PostgreSQL") << "PostgreSQL" << false;
        QTest::newRow("SQLite, a condition on an alias") << "SQLite" << true;
        QTest::newRow("PostgreSQL, a condition on an alias") << "PostgreSQL" << true;
    }
    void aQueryBuiltFromNothingGivesRowsAtOnce()
    {
        QFETCH(QString, provider);
        QFETCH(bool, onAlias);
        const bool postgres = provider == "PostgreSQL";
        if (postgres && !m_noPostgres.isEmpty())
            QSKIP(qPrintable(m_noPostgres));
        const QStringList expected = veldraRun(shipped);
        QCOMPARE(expected.size(), 4); // the header and North East's three rows

        // The sample, with its row count as a run-time parameter and both parameters chosen from
        // lists, so that nothing needs typing to run.
        const testwizard::SampleChoices choices{ provider, postgres ? "Shop" : "Sample", postgres ? "sales" : "main", 3, true,
                                                 { "'2023-01-01'", "2023 on", "'2024-01-01'", "2024 on" }, onAlias };
        const QString document = m_dir.filePath(QTest::currentDataTag() + QString(".component.xml"));
        m_ui->script = [&](QDialog &wizard) {
            QCOMPARE(wizard.objectName(), QString("frmWizard"));
            testwizard::buildSampleQuery(wizard, *m_ui, choices);
            if (QTest::currentTestFailed())
                return;
            m_ui->answerQueue = { Answer::Ok };
            testwizard::WizardDriver(wizard).next()->click();
        };
        QCOMPARE(EditSession(document).run(), 0);

        QCOMPARE(veldraRun(document), expected);

        m_ui->windows = false;
        StudioWindow studio;
        studio.setQueryDelay(0);
        QVERIFY(studio.openDocument(document));
        QTRY_VERIFY_WITH_TIMEOUT(studio.isSettled(), 20000);
        QVERIFY2(!studio.lastAnswer().failed(), qPrintable(studio.lastAnswer().error));
        const ResultTableModel &results = studio.results();
        QList<QStringList> shown{ {} };
        for (int column = 0; column < results.columnCount(); ++column)
            shown[0].append(results.rows().columnName(column));
        for (int row = 0; row < results.rowCount(); ++row) {
            shown.append(QStringList());
            for (int column = 0; column < results.columnCount(); ++column)
                shown.last().append(results.plainText(results.storeRow(row), column));
        }
        QCOMPARE(lines(shown), expected);
    }

    // The folder is taken away while the person works: Finish keeps the query all the same, and
    // never over work kept before.
    void aSaveThatFailsAfterFinishLosesNothing()
    {
        const QString folder = m_dir.filePath("going");
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(shipped, folder + "/sales.component.xml"));
        EditSession edit(folder + "/sales.component.xml");
        m_ui->script = [&](QDialog &dialog) {
            QVERIFY(QDir(folder).removeRecursively());
            testwizard::WizardDriver wizard(dialog);
            while (wizard.step() < 5)
                wizard.next()->click();
            m_ui->answerQueue = { Answer::Ok };
            wizard.next()->click();
        };
        QVERIFY(QFile::copy(shipped, m_dir.filePath("sales.recovered.component.xml")));
        const QString working = QDir::currentPath();
        QDir::setCurrent(m_dir.path());
        const int status = edit.run();
        QDir::setCurrent(working);
        QCOMPARE(status, 2);
        QCOMPARE(veldraRun(m_dir.filePath("sales.recovered-2.component.xml")), veldraRun(shipped));
    }
};

QTEST_MAIN(tst_WizardToRows)
#include "tst_wizardtorows.moc"
