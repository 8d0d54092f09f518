#include "../common/definitions.h"
#include "wizardfixture.h"

#include "tessaly/namemap.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/tablelistmodel.h"
#include "veldra/wizard/tablestep.h"
#include "veldra/wizard/wizardstate.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace veldra;
using testdefs::keys;
using testservice::ScriptedService;

namespace {

std::shared_ptr<SQLInfo> definitionOn(const QString &path, const QStringList &tables = {})
{
    auto definition = std::make_shared<SQLInfo>();
    const QStringList p = path.split('/');
    definition->dbInfo()->setProvider(p.value(0));
    definition->dbInfo()->setDsn(p.value(1));
    definition->dbInfo()->setCatalog(p.value(2));
    for (const QString &name : tables) {
        auto table = std::make_shared<TableInfo>();
        table->setTableName(name);
        definition->tables()->setObject(name, table);
    }
    return definition;
}

QString marked(const QString &name)
{
    return name + text(StringId::UnavailableMarker);
}

} // namespace

class tst_WizardSteps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void startRefusesAMissingModelOrProxy();

    void databaseStepChoosesWhatTheDefinitionNames_data();
    void databaseStepChoosesWhatTheDefinitionNames();
    void choosingAProviderRefillsTheListsBelowIt();
    void databaseStepAsksOnlyForListedNames();
    void databaseStepWithoutAServiceHasEmptyLists();

    void enteringTheTableStepSettlesTheChosenTables_data();
    void enteringTheTableStepSettlesTheChosenTables();
    void tableStepStaysBehindWithoutTables_data();
    void tableStepStaysBehindWithoutTables();
    void checkingATableKeepsWhatTheColumnStepFilledIn();

    void tableListShowsAndChangesTheChosenTables();

private:
    void start(const std::shared_ptr<SQLInfo> &definition);
    // Picks a provider, data source and catalog on the database step, as a person does.
    void choose(const QString &path);
    QStringList chosen() const;

    std::unique_ptr<WizardState> m_state;
    std::shared_ptr<ScriptedService> m_proxy;
    QList<DatabaseErrorReport> m_reports;
};

void tst_WizardSteps::init()
{
    StringTable::setLanguage(Language::English);
    m_state = std::make_unique<WizardState>();
    m_proxy = testservice::sampleStructure();
    m_reports.clear();
}

void tst_WizardSteps::start(const std::shared_ptr<SQLInfo> &definition)
{
    QVERIFY(m_state->start(std::make_shared<testwizard::RecordingModel>(), m_proxy, definition));
    m_state->accessor()->setErrorReporter([this](const DatabaseErrorReport &report) { m_reports.append(report); });
}

void tst_WizardSteps::choose(const QString &path)
{
    DatabaseStep &step = m_state->database();
    step.initialize();
    const QStringList names = path.split('/');
    step.chooseProvider(names.value(0));
    step.chooseDataSource(names.value(1));
    step.chooseCatalog(names.value(2));
}

QStringList tst_WizardSteps::chosen() const
{
    const DatabaseStep &step = m_state->database();
    return { step.provider(), step.dsn(), step.catalog() };
}

void tst_WizardSteps::startRefusesAMissingModelOrProxy()
{
    for (const bool model : { false, true }) {
        WizardState state;
        QVERIFY(!state.start(model ? std::make_shared<testwizard::RecordingModel>() : nullptr,
                             model ? nullptr : m_proxy, std::make_shared<SQLInfo>()));
        QVERIFY(!state.model());
        QCOMPARE(state.definition()->zetVariable_Print(), SQLInfo().zetVariable_Print());
        QVERIFY(!state.accessor());
    }
}

void tst_WizardSteps::databaseStepChoosesWhatTheDefinitionNames_data()
{
    QTest::addColumn<QString>("definition");
    QTest::addColumn<QStringList>("dataSources");
    QTest::addColumn<QStringList>("catalogs");
    QTest::addColumn<QStringList>("chosen"); // provider, data source, catalog
    QTest::addColumn<bool>("complete");
    const QStringList sources{ "D1", marked("D2") };
    const QStringList catalogs{ "C1", "C2" };
    QTest::newRow("all there") << "P1/D1/C2" << sources << catalogs << QStringList{ "P1", "D1", "C2" } << true;
    QTest::newRow("catalog gone") << "P1/D1/C9" << sources << catalogs << QStringList{ "P1", "D1", "" } << false;
    QTest::newRow("source without catalogs")
            << "P1/D2/C1" << sources << QStringList() << QStringList{ "P1", marked("D2"), "" } << false;
    QTest::newRow("source gone") << "P1/D9/C1" << sources << QStringList() << QStringList{ "P1", "", "" } << false;
    QTest::newRow("provider without sources")
            << "P2/D1/C1" << QStringList() << QStringList() << QStringList{ "P2", "", "" } << false;
    QTest::newRow("provider gone") << "P9/D1/C1" << QStringList() << QStringList() << QStringList{ "", "", "" } << false;
    QTest::newRow("new definition") << "" << QStringList() << QStringList() << QStringList{ "", "", "" } << false;
}

void tst_WizardSteps::databaseStepChoosesWhatTheDefinitionNames()
{
    QFETCH(QString, definition);
    QFETCH(QStringList, dataSources);
    QFETCH(QStringList, catalogs);
    QFETCH(QStringList, chosen);
    QFETCH(bool, complete);
    start(definitionOn(definition));
    DatabaseStep &step = m_state->database();
    step.initialize();

    QCOMPARE(step.providers().entries, QStringList({ "P1", "P2" }));
    QCOMPARE(step.dataSources().entries, dataSources);
    QCOMPARE(step.catalogs().entries, catalogs);
    QCOMPARE(this->chosen(), chosen);
    // The selected entry is the chosen one, or none.
    QCOMPARE(step.providers().selected, int(step.providers().entries.indexOf(chosen.at(0))));
    QCOMPARE(step.dataSources().selected, int(dataSources.indexOf(chosen.at(1))));
    QCOMPARE(step.catalogs().selected, int(catalogs.indexOf(chosen.at(2))));
    QCOMPARE(step.isComplete(), complete);
    // Only the structure read reports: D2's catalogs cannot be listed.
    QCOMPARE(m_reports.size(), 1);
    QCOMPARE(m_reports.at(0).dsn, "D2");
}

void tst_WizardSteps::choosingAProviderRefillsTheListsBelowIt()
{
    start(definitionOn("P1/D1/C2"));
    DatabaseStep &step = m_state->database();
    step.initialize();

    QVERIFY(step.chooseProvider("P2"));
    QVERIFY(step.dataSources().entries.isEmpty());
    QVERIFY(step.catalogs().entries.isEmpty());
    QCOMPARE(chosen(), QStringList({ "P2", "", "" }));

    // Back on the definition's provider, its data source and catalog are chosen again.
    QVERIFY(step.chooseProvider("P1"));
    QCOMPARE(chosen(), QStringList({ "P1", "D1", "C2" }));
    QVERIFY(!step.chooseProvider("P1"));

    QVERIFY(step.chooseDataSource(marked("D2")));
    QVERIFY(step.catalogs().entries.isEmpty());
    QVERIFY(!m_state->isStepComplete(WizardState::DatabaseStep));

    QVERIFY(step.chooseDataSource("D1"));
    QCOMPARE(step.catalogs().selected, 1);
    step.chooseCatalog("C1");
    QCOMPARE(step.catalogs().selected, 0);
    QVERIFY(m_state->isStepComplete(WizardState::DatabaseStep));
}

void tst_WizardSteps::databaseStepAsksOnlyForListedNames()
{
    start(definitionOn("P9/D9/C9"));
    DatabaseStep &step = m_state->database();
    step.initialize();
    // The structure is read once: providers, their data sources, and their catalogs (D2 fails).
    QCOMPARE(m_proxy->takePaths(), QStringList({ "", "P1", "P1/D1", "P1/D2", "P2" }));
    QCOMPARE(m_reports.size(), 1);

    QVERIFY(step.chooseProvider("P1"));
    QVERIFY(step.chooseDataSource(marked("D2")));
    // The marked entry says why, from what the structure read was told.
    QVERIFY(step.unavailableReason(marked("D2")).startsWith("D2 cannot be used: not scripted: <query>"));
    QVERIFY(step.unavailableReason("D1").isEmpty());
    QVERIFY(step.chooseDataSource("D1"));
    step.chooseCatalog("C2");
    QCOMPARE(m_proxy->takePaths(), QStringList());
    QCOMPARE(m_reports.size(), 1);
}

void tst_WizardSteps::databaseStepWithoutAServiceHasEmptyLists()
{
    m_proxy = std::make_shared<ScriptedService>();
    start(definitionOn("P1/D1/C1"));
    DatabaseStep &step = m_state->database();
    step.initialize();
    QVERIFY(step.providers().entries.isEmpty());
    QCOMPARE(step.providers().selected, -1);
    QVERIFY(step.dataSources().entries.isEmpty());
    QVERIFY(!step.chooseProvider(QString()));
    QVERIFY(!m_state->isStepComplete(WizardState::DatabaseStep));
    QCOMPARE(m_reports.size(), 1);
}

void tst_WizardSteps::enteringTheTableStepSettlesTheChosenTables_data()
{
    QTest::addColumn<QString>("definition");
    QTest::addColumn<QStringList>("definitionTables");
    QTest::addColumn<QStringList>("chosenBefore");
    QTest::addColumn<QStringList>("chosenAfter");
    QTest::newRow("definition's tables, minus the gone")
            << "P1/D1/C1" << QStringList{ "T3", "Gone", "T1" } << QStringList{ "T2" } << QStringList{ "T3", "T1" };
    QTest::newRow("definition's tables, other database")
            << "P2/D1/C1" << QStringList{ "T2" } << QStringList{ "T1" } << QStringList{ "T2" };
    QTest::newRow("same database keeps the choice")
            << "P1/D1/C1" << QStringList() << QStringList{ "T2", "T1" } << QStringList{ "T2", "T1" };
    QTest::newRow("other catalog empties the choice") << "P1/D1/C2" << QStringList() << QStringList{ "T2" } << QStringList();
    QTest::newRow("new definition empties the choice") << "" << QStringList() << QStringList{ "T2" } << QStringList();
}

void tst_WizardSteps::enteringTheTableStepSettlesTheChosenTables()
{
    QFETCH(QString, definition);
    QFETCH(QStringList, definitionTables);
    QFETCH(QStringList, chosenBefore);
    QFETCH(QStringList, chosenAfter);
    start(definitionOn(definition, definitionTables));
    TableStep &step = m_state->tables();
    for (const QString &name : chosenBefore)
        step.setChosen(name, true);
    choose("P1/D1/C1");
    m_proxy->takePaths();

    QVERIFY(step.prepare());
    QCOMPARE(step.tableNames(), QStringList({ "T1", "T2", "T3" }));
    QCOMPARE(step.chosenNames(), chosenAfter);
    // Tables taken from the definition are its own records, not empty entries.
    for (const QString &name : chosenAfter) {
        if (definitionTables.contains(name))
            QCOMPARE(step.chosen().object<TableInfo>(name), m_state->definition()->tables()->object<TableInfo>(name));
        QVERIFY(step.isChosen(name));
    }
    const dbInfo &database = *m_state->definition()->dbInfo();
    QCOMPARE(QStringList({ database.provider(), database.dsn(), database.catalog() }), QStringList({ "P1", "D1", "C1" }));

    // The tables are asked once; entering the step again uses the accessor's cache.
    QCOMPARE(m_proxy->takePaths().filter("P1/D1/C1").size(), 1);
    QVERIFY(step.prepare());
    QVERIFY(m_proxy->takePaths().isEmpty());
}

void tst_WizardSteps::tableStepStaysBehindWithoutTables_data()
{
    QTest::addColumn<QString>("catalog");
    QTest::addColumn<int>("reports");
    QTest::newRow("catalog without tables") << "C2" << 0;
    QTest::newRow("request fails") << "C9" << 1;
}

void tst_WizardSteps::tableStepStaysBehindWithoutTables()
{
    QFETCH(QString, catalog);
    QFETCH(int, reports);
    start(definitionOn("P1/D1/C1"));
    choose("P1/D1/" + catalog);
    m_reports.clear();
    TableStep &step = m_state->tables();
    step.setChosen("T1", true);

    QVERIFY(!step.prepare());
    QCOMPARE(step.chosenNames(), QStringList{ "T1" });
    QCOMPARE(m_state->definition()->dbInfo()->catalog(), "C1");
    QCOMPARE(m_reports.size(), reports);
}

void tst_WizardSteps::checkingATableKeepsWhatTheColumnStepFilledIn()
{
    start(definitionOn(""));
    TableStep &step = m_state->tables();
    auto info = std::make_shared<TableInfo>();
    step.chosen().setObject("T1", info);
    step.setChosen("T1", true);
    QCOMPARE(step.chosen().object<TableInfo>("T1"), info);
    step.setChosen("T2", true);
    QVERIFY(step.isChosen("T2"));
    QCOMPARE(step.chosenNames(), QStringList({ "T1", "T2" }));
    step.setChosen("T1", false);
    step.setChosen("T9", false);
    QCOMPARE(step.chosenNames(), QStringList{ "T2" });
}

void tst_WizardSteps::tableListShowsAndChangesTheChosenTables()
{
    start(definitionOn("P1/D1/C1"));
    choose("P1/D1/C1");
    TableStep &step = m_state->tables();
    step.setChosen("T2", true);
    TableListModel model(step);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(model.rowCount(), 0);

    QVERIFY(step.prepare());
    model.reload();
    QCOMPARE(model.rowCount(), 3);
    const auto checks = [&model] {
        QList<int> states;
        for (int row = 0; row < model.rowCount(); ++row)
            states.append(model.index(row).data(Qt::CheckStateRole).toInt());
        return states;
    };
    QCOMPARE(model.index(1).data().toString(), "T2");
    QCOMPARE(checks(), QList<int>({ Qt::Unchecked, Qt::Checked, Qt::Unchecked }));
    QVERIFY(model.flags(model.index(0)).testFlag(Qt::ItemIsUserCheckable));

    QSignalSpy chosen(&model, &TableListModel::chosenChanged);
    QVERIFY(model.setData(model.index(0), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(model.setData(model.index(1), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(checks(), QList<int>({ Qt::Checked, Qt::Unchecked, Qt::Unchecked }));
    QCOMPARE(step.chosenNames(), QStringList{ "T1" });
    QCOMPARE(chosen.size(), 2);
    // Checking what is checked already is no change.
    QVERIFY(model.setData(model.index(0), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(!model.setData(model.index(2), "T9", Qt::EditRole));
    QCOMPARE(chosen.size(), 2);
}

QTEST_GUILESS_MAIN(tst_WizardSteps)
#include "tst_wizardsteps.moc"
