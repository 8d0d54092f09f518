#include "wizardfixture.h"

#include "tessaly/variant.h"
#include "veldra/records/orderinfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/wizardstate.h"

#include <QTest>

using namespace veldra;
using testwizard::RecordingModel;

class tst_WizardState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startRefusesAMissingModelOrProxy_data();
    void startRefusesAMissingModelOrProxy();
    void startEditsACopyAndKeepsTheFirstAccessor();
    void stepCompleteness_data();
    void stepCompleteness();
    void finishHandsTheDefinitionToTheModelAndQuitDoesNot();
};

void tst_WizardState::startRefusesAMissingModelOrProxy_data()
{
    QTest::addColumn<bool>("model");
    QTest::addColumn<bool>("proxy");
    QTest::newRow("no model") << false << true;
    QTest::newRow("no proxy") << true << false;
}

void tst_WizardState::startRefusesAMissingModelOrProxy()
{
    QFETCH(bool, model);
    QFETCH(bool, proxy);
    WizardState state;
    QVERIFY(!state.start(model ? std::make_shared<RecordingModel>() : nullptr,
                         proxy ? testservice::sampleStructure() : nullptr, std::make_shared<SQLInfo>()));
    QVERIFY(!state.model());
    QCOMPARE(state.definition()->zetVariable_Print(), SQLInfo().zetVariable_Print());
    QVERIFY(!state.accessor());
}

void tst_WizardState::startEditsACopyAndKeepsTheFirstAccessor()
{
    WizardState state;
    auto model = std::make_shared<RecordingModel>();
    auto first = testservice::sampleStructure();
    auto original = std::make_shared<SQLInfo>();
    original->setCondition("a = 1");

    QVERIFY(state.start(model, first, original));
    QVERIFY(state.definition() != original);
    QCOMPARE(state.definition()->condition(), "a = 1");
    state.definition()->setCondition("edited");
    QCOMPARE(original->condition(), "a = 1");
    TSAccessor *accessor = state.accessor();
    QCOMPARE(accessor->tsProxy(), first);

    // Without a definition the last working copy stays; a later proxy is not used.
    QVERIFY(state.start(model, testservice::sampleStructure(), nullptr));
    QCOMPARE(state.definition()->condition(), "edited");
    QCOMPARE(state.accessor(), accessor);
    QCOMPARE(accessor->tsProxy(), first);

    QVERIFY(state.start(model, first, original));
    QCOMPARE(state.definition()->condition(), "a = 1");

    WizardState fresh;
    QVERIFY(fresh.start(model, first, nullptr));
    QVERIFY(fresh.definition());
}

void tst_WizardState::stepCompleteness_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<bool>("complete");
    const auto row = [](const char *name, int step, const QStringList &settings, bool complete) {
        QTest::newRow(name) << step << settings << complete;
    };
    row("database: nothing chosen", 0, {}, false);
    row("database: no catalog", 0, { "provider", "dsn" }, false);
    row("database: no provider", 0, { "dsn", "catalog" }, false);
    row("database: all three", 0, { "provider", "dsn", "catalog" }, true);
    row("tables: none", 1, {}, false);
    row("tables: one", 1, { "table" }, true);
    row("columns: none", 2, {}, false);
    row("columns: one", 2, { "selection" }, true);
    row("condition: always", 3, {}, true);
    row("ordering: off", 4, {}, true);
    row("ordering: fixed, no column", 4, { "useOrderBy" }, false);
    row("ordering: fixed, column chosen", 4, { "useOrderBy", "orderColumn" }, true);
    row("ordering: as parameter", 4, { "useOrderBy", "orderByAsParam" }, true);
    row("finish: always", 5, {}, true);
}

void tst_WizardState::stepCompleteness()
{
    QFETCH(int, step);
    QFETCH(QStringList, settings);
    QFETCH(bool, complete);
    WizardState state;
    QVERIFY(state.start(std::make_shared<RecordingModel>(), testservice::sampleStructure(), nullptr));
    SQLInfo &definition = *state.definition();
    if (settings.contains("provider"))
        state.provider = "P1";
    if (settings.contains("dsn"))
        state.dsn = "D1";
    if (settings.contains("catalog"))
        state.catalog = "C1";
    if (settings.contains("table"))
        state.chosenTables->set("T1", QVariant());
    if (settings.contains("selection"))
        definition.selections()->append("T1.a");
    definition.setUseOrderBy(settings.contains("useOrderBy"));
    definition.setOrderByAsParam(settings.contains("orderByAsParam"));
    if (settings.contains("orderColumn"))
        state.orderColumn = "T1.a";
    QCOMPARE(state.isStepComplete(step), complete);
}

void tst_WizardState::finishHandsTheDefinitionToTheModelAndQuitDoesNot()
{
    WizardState state;
    auto model = std::make_shared<RecordingModel>();
    QVERIFY(state.start(model, testservice::sampleStructure(), std::make_shared<SQLInfo>()));
    QVERIFY(state.setCurrentStep(WizardState::ConditionStep));
    QVERIFY(!state.setCurrentStep(WizardState::StepCount));
    QCOMPARE(state.currentStep(), int(WizardState::ConditionStep));

    state.quit();
    QVERIFY(model->writes.isEmpty());
    QVERIFY(state.isFirstStep());

    QVERIFY(state.setCurrentStep(WizardState::FinishStep));
    state.finish();
    QVERIFY(state.isFirstStep());
    QCOMPARE(model->writes.size(), 2);
    QCOMPARE(model->writes.at(0).first, "SQLInfo");
    QCOMPARE(model->writes.at(1).first, "BuildUI");
    for (const auto &write : std::as_const(model->writes))
        QCOMPARE(tessaly::variant::heldObject(write.second), state.definition());
}

QTEST_GUILESS_MAIN(tst_WizardState)
#include "tst_wizardstate.moc"
