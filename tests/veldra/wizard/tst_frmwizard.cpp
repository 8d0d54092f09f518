#include "../common/recordingsite.h"
#include "../common/wizarddriver.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/variant.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/records/definitionfile.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/statementtext.h"
#include "veldra/wizard/frmwizard.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QTemporaryDir>
#include <QtTest/qtestspontaneevent.h>

using namespace veldra;
using Answer = tessaly::UiService::Answer;
using Buttons = tessaly::UiService::Buttons;
using testwizard::WizardDriver;

namespace {

// The in-process data service on the bundled sample, counting what it is asked; requests whose
// text holds failWhen fail as a refused request does.
class SampleProxy final : public tessaly::ServiceProxy
{
public:
    QDomDocument request(const QDomDocument &document) override
    {
        ++requests;
        const QString text = document.toString(-1);
        if (!failWhen.isEmpty() && text.contains(failWhen))
            throw tessaly::Error(qint32(0x80045006), "refused for the test");
        return m_service.request(document);
    }

    int requests = 0;
    QString failWhen;

private:
    dataservice::LocalServiceProxy m_service{ std::make_shared<dataservice::DataService>() };
};

// The component as a host holds it: the model behind its site.
struct Component
{
    Component()
    {
        model->zetPrimitiveModel_SetModel(site);
        model->zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
        site->reports.clear();
    }
    void set(const QString &slot, const QVariant &value) { host->setSlotValue(slot, value); }
    std::shared_ptr<SQLInfo> definition() const
    {
        return tessaly::objectCast<SQLInfo>(tessaly::variant::heldObject(host->slotValue("SQLInfo")));
    }

    std::shared_ptr<TsyParamConditionModel> model = std::make_shared<TsyParamConditionModel>();
    std::shared_ptr<tessaly::ModelHost> host = std::make_shared<tessaly::ModelHost>(model.get());
    std::shared_ptr<testdefs::RecordingModelSite> site = std::make_shared<testdefs::RecordingModelSite>(host);
};

std::shared_ptr<SQLInfo> sampleDefinition()
{
    auto definition = readDefinitionFile(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");
    return definition;
}

} // namespace

class tst_frmWizard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void newQueryWalksTheFirstStepsAndQuits();
    void existingQueryIsFinishedIntoTheModel();
    void leavingAsksFirst_data();
    void leavingAsksFirst();
    void failingTableRequestKeepsTheDatabaseStep();
    void clickOnANameOrItsBoxFlipsTheCheckOnce();
    void sampleQueryBuiltFromScratchIsTheShippedDefinition();

private:
    // Runs the wizard with session as the person; dialogs it opens are left to the service.
    bool run(frmWizard &wizard, const std::shared_ptr<SQLInfo> &definition,
             const std::function<void(WizardDriver &)> &session);

    QTemporaryDir m_config;
    std::shared_ptr<testui::RecordingUiService> m_ui;
    std::shared_ptr<SampleProxy> m_proxy;
    std::unique_ptr<Component> m_component;
};

void tst_frmWizard::initTestCase()
{
    QVERIFY(m_config.isValid());
    qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8()); // the bundled sample only
}

void tst_frmWizard::init()
{
    m_ui = std::make_shared<testui::RecordingUiService>();
    tessaly::UiService::setInstance(m_ui);
    m_proxy = std::make_shared<SampleProxy>();
    m_component = std::make_unique<Component>();
}

void tst_frmWizard::cleanup()
{
    tessaly::UiService::setInstance(nullptr);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

bool tst_frmWizard::run(frmWizard &wizard, const std::shared_ptr<SQLInfo> &definition,
                        const std::function<void(WizardDriver &)> &session)
{
    m_ui->script = [&](QDialog &dialog) {
        if (&dialog != &wizard)
            return;
        WizardDriver driver(dialog);
        session(driver);
    };
    return wizard.StartWizard(m_component->model, m_proxy, definition);
}

void tst_frmWizard::newQueryWalksTheFirstStepsAndQuits()
{
    frmWizard wizard;
    const auto before = m_component->definition();
    int structureRequests = 0;
    const bool shown = run(wizard, nullptr, [&](WizardDriver &wizard) {
        QCOMPARE(wizard.step(), 0);
        QCOMPARE(wizard.back()->isEnabled(), false);
        QCOMPARE(wizard.next()->text(), text(StringId::NextButton));
        QCOMPARE(wizard.next()->isEnabled(), false);
        QVERIFY(wizard.choose("ProviderCombo", "SQLite"));
        QVERIFY(wizard.choose("DSNCombo", "Sample"));
        QVERIFY(!wizard.next()->isEnabled());
        QVERIFY(wizard.choose("CatalogCombo", "main"));
        QVERIFY(wizard.next()->isEnabled());
        structureRequests = m_proxy->requests;

        wizard.next()->click();
        QCOMPARE(wizard.step(), 1);
        QCOMPARE(m_proxy->requests, structureRequests + 1);
        QCOMPARE(m_ui->busyCalls, 1);
        QCOMPARE(m_ui->busyDepth, 0);
        QVERIFY(wizard.tableNames(Qt::Checked).isEmpty());
        QVERIFY(!wizard.next()->isEnabled());
        QVERIFY(wizard.back()->isEnabled());

        wizard.tables()->setData(wizard.tables()->index(2, 0), Qt::Checked, Qt::CheckStateRole);
        wizard.tables()->setData(wizard.tables()->index(0, 0), Qt::Checked, Qt::CheckStateRole);
        QCOMPARE(wizard.tableNames(Qt::Checked), QStringList({ "customers", "orders" }));
        QVERIFY(wizard.next()->isEnabled());

        wizard.next()->click();
        QCOMPARE(wizard.step(), 2);
        QVERIFY(!wizard.next()->isEnabled()); // no column chosen yet
        QCOMPARE(m_proxy->requests, structureRequests + 3); // the columns of the two tables

        // Back asks nothing and keeps the choices; forward again asks the service nothing.
        wizard.back()->click();
        wizard.back()->click();
        QCOMPARE(wizard.step(), 0);
        QVERIFY(!wizard.back()->isEnabled());
        wizard.next()->click();
        QCOMPARE(wizard.step(), 1);
        QCOMPARE(m_proxy->requests, structureRequests + 3);
        QCOMPARE(wizard.tableNames(Qt::Checked), QStringList({ "customers", "orders" }));
        m_ui->answerQueue = { Answer::Yes };
        wizard.quit()->click();
    });
    QVERIFY(shown);
    QCOMPARE(wizard.result(), int(QDialog::Rejected));
    QVERIFY(!wizard.isVisible());
    QCOMPARE(m_component->definition(), before);
}

void tst_frmWizard::existingQueryIsFinishedIntoTheModel()
{
    frmWizard wizard;
    const auto original = sampleDefinition();
    const auto before = m_component->definition();
    const bool shown = run(wizard, original, [&](WizardDriver &wizard) {
        QCOMPARE(wizard.find<QComboBox>("ProviderCombo")->currentText(), "SQLite");
        QCOMPARE(wizard.find<QComboBox>("DSNCombo")->currentText(), "Sample");
        QCOMPARE(wizard.find<QComboBox>("CatalogCombo")->currentText(), "main");
        QVERIFY(wizard.next()->isEnabled());
        wizard.next()->click();
        QCOMPARE(wizard.tableNames(Qt::Checked), QStringList({ "customers", "orders", "regions" }));
        for (int step = 2; step <= 5; ++step) {
            QVERIFY2(wizard.next()->isEnabled(), qPrintable(QString::number(wizard.step())));
            wizard.next()->click();
            QCOMPARE(wizard.step(), step);
        }
        QCOMPARE(wizard.next()->text(), text(StringId::FinishButton));
        QVERIFY(wizard.find<QPlainTextEdit>("FinishResultText")->isReadOnly());

        m_ui->answerQueue = { Answer::Cancel };
        wizard.next()->click();
        QCOMPARE(wizard.step(), 5);
        QCOMPARE(m_component->definition(), before);
        QVERIFY(m_component->site->reports.isEmpty());

        m_ui->answerQueue = { Answer::Ok };
        wizard.next()->click();
        QCOMPARE(wizard.step(), 0);
        QVERIFY(!wizard.back()->isEnabled());
    });
    QVERIFY(shown);
    QCOMPARE(m_ui->messages.size(), 2);
    for (const testui::Message &message : std::as_const(m_ui->messages)) {
        QCOMPARE(message.text, text(StringId::CreateQueryMessage));
        QCOMPARE(message.title, text(StringId::CreateQueryTitle));
        QCOMPARE(message.buttons, Buttons::OkCancel);
    }
    QCOMPARE(wizard.result(), int(QDialog::Accepted));
    const auto finished = m_component->definition();
    QCOMPARE(finished, wizard.state().definition());
    QVERIFY(finished != original);

    // The form is kept: the next session starts on the first step with the same accessor and
    // its cache.
    const TSAccessor *accessor = wizard.state().accessor();
    const int requests = m_proxy->requests;
    m_ui->answerQueue.clear();
    QVERIFY(run(wizard, original, [&](WizardDriver &wizard) {
        QCOMPARE(wizard.step(), 0);
        QVERIFY(!wizard.back()->isEnabled());
        wizard.next()->click();
        QCOMPARE(wizard.step(), 1);
        m_ui->answerQueue = { Answer::Yes };
        wizard.quit()->click();
    }));
    QCOMPARE(wizard.state().accessor(), accessor);
    QCOMPARE(m_proxy->requests, requests);
    QCOMPARE(m_component->definition(), finished);
}

void tst_frmWizard::leavingAsksFirst_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QList<Answer>>("answers");
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("left");
    QTest::newRow("Quit, Yes") << "quit" << QList<Answer>{ Answer::Yes } << true << true;
    QTest::newRow("Quit, No") << "quit" << QList<Answer>{ Answer::No } << true << false;
    QTest::newRow("Escape, Yes") << "escape" << QList<Answer>{ Answer::Yes } << true << true;
    QTest::newRow("Escape, No") << "escape" << QList<Answer>{ Answer::No } << true << false;
    QTest::newRow("close box, Yes") << "close box" << QList<Answer>{ Answer::Yes } << true << true;
    QTest::newRow("close box, No") << "close box" << QList<Answer>{ Answer::No } << true << false;
    QTest::newRow("closed by the program") << "close()" << QList<Answer>() << false << true;
}

void tst_frmWizard::leavingAsksFirst()
{
    QFETCH(QString, how);
    QFETCH(QList<Answer>, answers);
    QFETCH(bool, asked);
    QFETCH(bool, left);
    frmWizard wizard;
    bool closeAccepted = false;
    QVERIFY(run(wizard, sampleDefinition(), [&](WizardDriver &driver) {
        driver.next()->click();
        QCOMPARE(driver.step(), 1);
        m_ui->answerQueue = answers;
        if (how == "quit") {
            driver.quit()->click();
        } else if (how == "escape") {
            QTest::keyClick(&wizard, Qt::Key_Escape);
        } else {
            QCloseEvent close;
            if (how == "close box")
                QSpontaneKeyEvent::setSpontaneous(&close);
            // notify(), unlike sendEvent(), keeps the event spontaneous, as the window system's is.
            QApplication::instance()->notify(&wizard, &close);
            closeAccepted = close.isAccepted();
        }
        // Leaving starts the next opening on the first step; staying keeps the step.
        QCOMPARE(driver.step(), left ? 0 : 1);
    }));
    QCOMPARE(m_ui->messages.size(), asked ? 1 : 0);
    if (asked) {
        QCOMPARE(m_ui->messages.at(0).text, text(StringId::QuitWizardMessage));
        QCOMPARE(m_ui->messages.at(0).title, text(StringId::QuitWizardTitle));
        QCOMPARE(m_ui->messages.at(0).buttons, Buttons::YesNo);
    }
    if (how.startsWith("close"))
        QCOMPARE(closeAccepted, left);
    QVERIFY(m_component->site->reports.isEmpty());
}

void tst_frmWizard::failingTableRequestKeepsTheDatabaseStep()
{
    frmWizard wizard;
    m_proxy->failWhen = "<catalog>main</catalog><table/>";
    QVERIFY(run(wizard, sampleDefinition(), [&](WizardDriver &wizard) {
        QVERIFY(wizard.next()->isEnabled());
        wizard.next()->click();
        QCOMPARE(wizard.step(), 0);
        QCOMPARE(m_ui->busyDepth, 0);
        m_ui->answerQueue = { Answer::Yes };
        wizard.quit()->click();
    }));
    QCOMPARE(m_ui->dialogs.size(), 2);
    QCOMPARE(m_ui->dialogs.at(1).objectName, "WizDBErrorDialog");
    QCOMPARE(m_ui->dialogs.at(1).texts.value("CatalogText"), "main");
}

void tst_frmWizard::clickOnANameOrItsBoxFlipsTheCheckOnce()
{
    frmWizard wizard;
    QVERIFY(run(wizard, nullptr, [&](WizardDriver &driver) {
        QVERIFY(driver.choose("ProviderCombo", "SQLite"));
        QVERIFY(driver.choose("DSNCombo", "Sample"));
        QVERIFY(driver.choose("CatalogCombo", "main"));
        driver.next()->click();
        wizard.show();
        QVERIFY(QTest::qWaitForWindowExposed(&wizard));
        driver.clickTable("orders");
        driver.clickTable("staff", true);
        QCOMPARE(driver.tableNames(Qt::Checked), QStringList({ "orders", "staff" }));
        QVERIFY(driver.next()->isEnabled());
        driver.clickTable("orders", true);
        driver.clickTable("staff");
        QVERIFY(driver.tableNames(Qt::Checked).isEmpty());
        QVERIFY(!driver.next()->isEnabled());
        m_ui->answerQueue = { Answer::Yes };
        driver.quit()->click();
    }));
    QVERIFY(!wizard.isVisible());
}

// The shipped sample, built by a person from nothing: the wizard's result must be the shipped
// definition to the letter.
void tst_frmWizard::sampleQueryBuiltFromScratchIsTheShippedDefinition()
{
    const auto sample = sampleDefinition();
    frmWizard form;
    const bool shown = run(form, nullptr, [&](WizardDriver &wizard) {
        testwizard::buildSampleQuery(form, *m_ui);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(wizard.find<QPlainTextEdit>("FinishResultText")->toPlainText(),
                 statementText(*sample).replace("\r\n", "\n"));
        m_ui->answerQueue = { Answer::Ok };
        wizard.next()->click();
    });
    QVERIFY(shown);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    // The same definition as the shipped one, to the letter.
    QCOMPARE(QString::fromUtf8(writeDefinition(*m_component->definition())), QString::fromUtf8(writeDefinition(*sample)));
    // The rows it gives, on both engines, are tst_wizardtorows's to check.
}

QTEST_MAIN(tst_frmWizard)
#include "tst_frmwizard.moc"
