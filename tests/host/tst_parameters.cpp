#include "host/componentsession.h"
#include "host/livelists.h"
#include "host/parameterchoices.h"
#include "host/parameterliteral.h"
#include "host/savetarget.h"

#include "dataservice/dataservice.h"
#include "dataservice/rowsink.h"
#include "tessaly/componentdocument.h"
#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/resources/stringtable.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString sample = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-country.component.xml");

class CountingSink final : public dataservice::RowSink
{
public:
    qint64 rows = 0;
    void startTable(const QList<QByteArray> &) override { }
    void startRecord() override { }
    void value(const char *, qsizetype) override { }
    void numberValue(const char *, qsizetype) override { }
    void booleanValue(bool) override { }
    void blobValue(const char *, qsizetype) override { }
    void nullValue() override { }
    void endRecord() override { ++rows; }
    void endTable(qint64, bool, qint64) override { }
};

QString slot(host::ComponentSession &session, const QString &name)
{
    return tessaly::variant::toText(session.host().slotValue(name));
}

QStringList texts(const host::ListPage &page)
{
    QStringList texts;
    for (const host::ListEntry &entry : page.entries)
        texts.append(entry.text);
    return texts;
}

} // namespace

// The parameter settings a host keeps beside the component: dates that move, several values,
// lists read from the data source that follow each other, another data source. On SQLite and
// on the data service tests' throw-away PostgreSQL server, through the real data service.
class tst_Parameters : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    dataservice::DataSource m_postgres;
    QString m_noPostgres;

    std::shared_ptr<const dataservice::DataService> service(const QString &samplePath = {}) const
    {
        dataservice::DataSource local = dataservice::DataSourceCatalog::sampleDataSource();
        if (!samplePath.isEmpty())
            local.path = samplePath;
        return std::make_shared<const dataservice::DataService>(dataservice::DataSourceCatalog({ local, m_postgres }));
    }

private Q_SLOTS:
    void initTestCase()
    {
        veldra::StringTable::setLanguage(veldra::Language::English);
        QMap<QString, QString> server;
        QFile state(qEnvironmentVariable("VELDRA_TEST_PG"));
        for (const QString &line : QString::fromUtf8(state.open(QIODevice::ReadOnly) ? state.readAll() : "").split('\n'))
            server.insert(line.section('=', 0, 0), line.section('=', 1));
        m_noPostgres = server.contains("host") ? QString() : "no PostgreSQL server (run the test through CTest)";
        m_postgres.name = "Team";
        m_postgres.provider = "PostgreSQL";
        m_postgres.connection = { { "host", server.value("host") }, { "port", server.value("port") },
                                  { "dbname", server.value("dbname") }, { "user", server.value("reader") } };
        m_postgres.catalogs = { "sales" };
        m_postgres.catalogMap = { { "main", "sales" } };
        qputenv("XDG_CONFIG_HOME", m_dir.path().toUtf8());
        QDir().mkpath(m_dir.filePath("veldra"));
        QFile ini(m_dir.filePath("veldra/datasources.ini"));
        QVERIFY(ini.open(QIODevice::WriteOnly));
        ini.write(QString("[Team]\nprovider=PostgreSQL\nhost=%1\nport=%2\ndbname=%3\nuser=%4\ncatalogs=sales\ncatalog.main=sales\n")
                          .arg(server.value("host"), server.value("port"), server.value("dbname"), server.value("reader"))
                          .toUtf8());
    }

    void relativeDatesAndLiterals_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("date"); // from Thursday 2024-02-29; empty: no relative date
        QTest::newRow("today") << "today" << "2024-02-29";
        QTest::newRow("30 days ago, any case and blanks") << " TODAY - 30d " << "2024-01-30";
        QTest::newRow("a month back from the 29th") << "today-1m" << "2024-01-29";
        QTest::newRow("a year on from a leap day") << "today+1y" << "2025-02-28";
        QTest::newRow("start of week is Monday") << "start-of-week" << "2024-02-26";
        QTest::newRow("start of month") << "start-of-month" << "2024-02-01";
        QTest::newRow("start of last year") << "start-of-year-1y" << "2023-01-01";
        QTest::newRow("two weeks on") << "today+2w" << "2024-03-14";
        QTest::newRow("an unknown unit is SQL") << "today-1q" << "";
        QTest::newRow("quoted is text") << "'today'" << "";
        QTest::newRow("a column named today_x") << "today_x" << "";
    }
    void relativeDatesAndLiterals()
    {
        QFETCH(QString, words);
        QFETCH(QString, date);
        const auto found = host::relativeDate(words, QDate(2024, 2, 29));
        QCOMPARE(found ? found->toString(Qt::ISODate) : QString(), date);
        if (found)
            QCOMPARE(host::dateLiteral(*found, "PostgreSQL"), "'" + date + "'");
        // Several values survive the way into one slot and back, commas and quotes inside included.
        const QStringList literals{ host::textLiteral("O'Brien, Jr.", "SQLite"), "12", host::textLiteral("", "SQLite") };
        QCOMPARE(host::splitLiterals(host::joinLiterals(literals)), literals);
        QVERIFY_THROWS_EXCEPTION(tessaly::Error, host::textLiteral(QString("a") + QChar(0), "PostgreSQL"));
    }

    // A document saved with the settings keeps them, and a host that knows nothing of them
    // (the component's own document reader) loads exactly what it loads without them.
    void settingsSurviveSavingAndAHostWithoutThem()
    {
        QFile file(sample);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray withSettings = file.readAll();
        QByteArray without = withSettings;
        without.remove(without.indexOf(" <Host>"), without.indexOf("</Host>") + 8 - without.indexOf(" <Host>"));
        QVERIFY(!without.contains("Host"));
        veldra::TsyParamConditionModel plain, reference;
        tessaly::ComponentDocument::load(withSettings, "with", plain);
        tessaly::ComponentDocument::load(without, "without", reference);
        QCOMPARE(tessaly::ComponentDocument::save(plain), tessaly::ComponentDocument::save(reference));

        host::ComponentSession session;
        session.load(withSettings, "sample");
        QCOMPARE(session.settings().parameters.size(), 3);
        host::HostSettings settings = session.settings();
        settings.edit("@@@Region").list.filter = "country = @@@Country AND name <> 'a\x01<b>\"'";
        session.setSettings(settings);
        // veldra edit saves through saveKeepingWork: the settings go along.
        const QString path = m_dir.filePath("edited.component.xml");
        QCOMPARE(host::saveKeepingWork(path, *session.model(), nullptr, &session.settings()).failure, QString());
        host::ComponentSession reloaded;
        reloaded.load(path);
        QVERIFY(reloaded.settings() == settings);
        QCOMPARE(slot(reloaded, "@@@Region"), "'NE','NW'");
    }

    void settingsThatCannotWorkAreRefusedByName_data()
    {
        QTest::addColumn<QString>("reference");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("message");
        QTest::newRow("a cycle of lists") << "@@@Country" << "filter" << "code IN (@@@Region)"
                                          << "the lists refer to each other in a cycle: @@@Country -> @@@Region -> @@@Country";
        QTest::newRow("a list on itself") << "@@@Region" << "filter" << "code <> @@@Region"
                                          << "the lists refer to each other in a cycle: @@@Region -> @@@Region";
        QTest::newRow("no such parameter") << "@@@City" << "default" << "today" << "@@@City: the settings name a parameter";
        QTest::newRow("not a relative date") << "@@@FromDate" << "default" << "yesterday" << "@@@FromDate: \"yesterday\" is no relative date";
        QTest::newRow("a list without value column") << "@@@Region" << "value" << "" << "@@@Region: a list read from the data source needs its value column";
    }
    void settingsThatCannotWorkAreRefusedByName()
    {
        QFETCH(QString, reference);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QString, message);
        host::ComponentSession session;
        session.load(sample);
        host::HostSettings settings = session.settings();
        host::ParameterSetting &setting = settings.edit(reference);
        if (key == "filter")
            setting.list.filter = value, setting.list.table = "regions", setting.list.valueColumn = "code";
        else if (key == "value")
            setting.list.valueColumn = value;
        else
            setting.relativeDefault = value;
        try {
            session.setSettings(settings);
            QFAIL("accepted");
        } catch (const tessaly::Error &error) {
            QVERIFY2(error.message().startsWith(message), qPrintable(error.message()));
        }
        QCOMPARE(session.settings().parameters.size(), 3); // the settings before stay
        // Nor does a document with them load.
        if (key == "filter") {
            QByteArray document = session.save();
            document.replace("filter=\"country = @@@Country\"", "filter=\"country = @@@Country AND code = @@@Region\"");
            QVERIFY_THROWS_EXCEPTION(tessaly::Error, host::ComponentSession().load(document, "cycle"));
        }
    }

    void listsFollowEachOtherAndNarrowInTheEngine_data()
    {
        QTest::addColumn<QString>("source");
        QTest::newRow("SQLite") << "";
        QTest::newRow("PostgreSQL") << "Team";
    }
    void listsFollowEachOtherAndNarrowInTheEngine()
    {
        QFETCH(QString, source);
        if (!source.isEmpty() && !m_noPostgres.isEmpty())
            QSKIP(qPrintable(m_noPostgres));
        const auto dataService = service();
        host::LiveLists lists(dataService);
        host::ComponentSession session;
        session.load(sample);
        if (!source.isEmpty())
            session.setSource(host::SourceChoice::named(source, dataService->dataSources()));
        host::ParameterChoices choices(session.host(), session.settings(), &lists, session.source());
        QCOMPARE(choices.settle(), QStringList());
        QCOMPARE(slot(session, "@@@Region"), "'NE','NW'"); // still held: kept
        QCOMPARE(texts(choices.page("@@@Region")), QStringList({ "Central", "North East", "North West", "South East", "South West" }));
        QCOMPARE(texts(choices.page("@@@Region", "ORTH")), QStringList({ "North East", "North West" }));
        for (const char *hostile : { "%", "_", "'", "\\", "a') OR ('1'='1" })
            QCOMPARE(texts(choices.page("@@@Region", hostile)), QStringList());

        // Country changes: the region list follows, and a region no longer in it gives way.
        choices.choose("@@@Country", { "Brevonia" });
        choices.settle({ "@@@Country" });
        QCOMPARE(slot(session, "@@@Region"), "'OS'");
        choices.choose("@@@Country", { "Avaland" });
        choices.choose("@@@Region", { "Central", "'SW'", "SW", "Atlantis" }); // by text, by value, twice, typed
        QCOMPARE(slot(session, "@@@Region"), "'CE','SW','Atlantis'");
        choices.settle({ "@@@Country" });
        QCOMPARE(slot(session, "@@@Region"), "'CE','SW'");
        choices.choose("@@@Region", {});
        QCOMPARE(session.request().missingValues.size(), 1);

        // The request takes the values through the slots and runs on the engine.
        session.setInput("@@@FromDate", "start-of-year-100y");
        choices.choose("@@@Region", { "Central", "South West" });
        const host::CurrentRequest request = session.request();
        QVERIFY(request.ready());
        CountingSink sink;
        dataService->select(request.text.toUtf8(), sink);
        QCOMPARE(sink.rows, 5);

        choices.page("@@@Region", "orth");
        const int hits = lists.cacheHits();
        choices.page("@@@Region", "orth");
        QCOMPARE(lists.cacheHits(), hits + 1);
    }

    void anUnreachableListShowsTheStoredValuesWithANote()
    {
        host::LiveLists lists(service(m_dir.filePath("gone.db")));
        host::ComponentSession session;
        session.load(sample);
        host::ParameterChoices choices(session.host(), session.settings(), &lists, session.source());
        const QStringList notes = choices.settle();
        QCOMPARE(notes.size(), 2);
        QVERIFY2(notes.first().startsWith("@@@Country: the list could not be read from the data source (The database file"), qPrintable(notes.first()));
        QCOMPARE(slot(session, "@@@Region"), "'NE','NW'");
        const host::ListPage page = choices.page("@@@Region");
        QVERIFY(!page.live);
        QCOMPARE(texts(page).size(), 6);
    }

    // veldra end to end: another data source, several values picked, a moving date.
    void theCommandLineRunsOneComponentOnEitherEngine_data() { listsFollowEachOtherAndNarrowInTheEngine_data(); }
    void theCommandLineRunsOneComponentOnEitherEngine()
    {
        QFETCH(QString, source);
        if (!source.isEmpty() && !m_noPostgres.isEmpty())
            QSKIP(qPrintable(m_noPostgres));
        const auto veldra = [&](QStringList arguments) {
            if (!source.isEmpty())
                arguments << "--source" << source;
            QProcess process;
            process.start(VELDRA_BINARY, arguments);
            process.waitForFinished(60000);
            return std::make_pair(process.exitCode(), QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError()));
        };
        auto [status, output] = veldra({ "run", sample, "--format", "csv", "--pick", "@@@Region=Central", "--pick", "@@@Region=SW",
                                         "--set", "@@@FromDate=start-of-year-100y" });
        QCOMPARE(status, 0);
        QCOMPARE(output.count("\r\n"), 6); // the header and five rows
        std::tie(status, output) = veldra({ "sql", sample, "--engine", "--pick", "@@@Country=Brevonia" });
        QCOMPARE(status, 0);
        QVERIFY2(output.contains(source.isEmpty() ? "\"main\".\"orders\"" : "\"sales\".\"orders\""), qPrintable(output));
        QVERIFY2(output.contains("regions.code IN ('OS')"), qPrintable(output));
        std::tie(status, output) = veldra({ "run", sample, "--pick", "@@@Region=" });
        QCOMPARE(status, 2);
        QVERIFY2(output.contains("@@@Region (\"Region\") has no value"), qPrintable(output));
    }
};

QTEST_GUILESS_MAIN(tst_Parameters)
#include "tst_parameters.moc"
