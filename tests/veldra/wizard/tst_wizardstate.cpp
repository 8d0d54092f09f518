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
