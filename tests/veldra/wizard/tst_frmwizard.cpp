#include "../dialogs/recordinguiservice.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "tessaly/componentdocument.h"
#include "tessaly/error.h"
#include "tessaly/request.h"
#include "tessaly/modelhost.h"
#include "tessaly/variant.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/records/definitionfile.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/statementtext.h"
#include "veldra/resources/stringtable.h"
#include "veldra/wizard/frmwizard.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <QtTest/qtestspontaneevent.h>

using namespace veldra;
using Answer = tessaly::UiService::Answer;
using Buttons = tessaly::UiService::Buttons;

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
        model->zetPrimitiveModel_SetModel(host);
        model->zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
        host->clearReports();
    }
    void set(const QString &slot, const QVariant &value) { host->setSlotValue(slot, value); }
    QString requestText() const
    {
        const auto request = host->slotValue("request").value<tessaly::RequestRef>();
        return request ? request->text() : QString();
    }
    std::shared_ptr<SQLInfo> definition() const
    {
        return tessaly::objectCast<SQLInfo>(tessaly::variant::heldObject(host->slotValue("SQLInfo")));
    }

    std::shared_ptr<TsyParamConditionModel> model = std::make_shared<TsyParamConditionModel>();
    std::shared_ptr<tessaly::ModelHost> host = std::make_shared<tessaly::ModelHost>(model.get());
};

std::shared_ptr<SQLInfo> sampleDefinition()
{
    auto definition = readDefinitionFile(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");
    return definition;
}

// The wizard as a person sees it, found by the controls' names.
class WizardDriver
{
public:
    explicit WizardDriver(QDialog &dialog) : m_dialog(dialog) {}

    template<typename T>
    T *find(const char *name) const
    {
        T *widget = m_dialog.findChild<T *>(QLatin1String(name));
        if (!widget)
            qFatal("no control named %s", name);
        return widget;
    }

    int step() const { return find<QStackedWidget>("fraStep")->currentIndex(); }
    QPushButton *back() const { return find<QPushButton>("BackButton"); }
    QPushButton *next() const { return find<QPushButton>("NextButton"); }
    QPushButton *quit() const { return find<QPushButton>("QuitButton"); }

    // Picks an entry as a person does; false when the list does not hold it.
    bool choose(const char *comboName, const QString &entry) const
    {
        auto *combo = find<QComboBox>(comboName);
        const int index = combo->findText(entry);
        if (index < 0)
            return false;
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
        return true;
    }

    QStringList entries(const char *comboName) const
    {
        auto *combo = find<QComboBox>(comboName);
        QStringList list;
        for (int i = 0; i < combo->count(); ++i)
            list.append(combo->itemText(i));
        return list;
    }

    QAbstractItemModel *tables() const { return find<QListView>("TableSelectList")->model(); }
    QStringList tableNames(Qt::CheckState only) const
    {
        QStringList names;
        for (int row = 0; row < tables()->rowCount(); ++row) {
            const QModelIndex index = tables()->index(row, 0);
            if (only == Qt::PartiallyChecked || index.data(Qt::CheckStateRole).toInt() == only)
                names.append(index.data().toString());
        }
        return names;
    }
    // A mouse click on a table's name, or on its check box; the wizard must be shown.
    void clickTable(const QString &name, bool onBox = false) const
    {
        const QModelIndexList found = tables()->match(tables()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        if (found.isEmpty())
            qFatal("no table %s in the list", qPrintable(name));
        auto *list = find<QListView>("TableSelectList");
        list->scrollTo(found.first());
        QStyleOptionViewItem option;
        option.initFrom(list->viewport());
        option.rect = list->visualRect(found.first());
        option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
        option.text = name;
        const auto element = onBox ? QStyle::SE_ItemViewItemCheckIndicator : QStyle::SE_ItemViewItemText;
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->style()->subElementRect(element, &option, list).center());
    }

    void click(const char *buttonName) const { find<QPushButton>(buttonName)->click(); }
    void type(const char *editName, const QString &typed) const { QTest::keyClicks(find<QWidget>(editName), typed); }

    // Marks a row of a list, as a click on it does.
    void pick(const char *listName, const QString &row) const
    {
        if (auto *list = m_dialog.findChild<QListWidget *>(QLatin1String(listName))) {
            const auto found = list->findItems(row, Qt::MatchExactly);
            if (found.isEmpty())
                qFatal("no row %s in %s", qPrintable(row), listName);
            list->setCurrentItem(found.first());
            return;
        }
        auto *tree = find<QTreeWidget>(listName);
        const auto found = tree->findItems(row, Qt::MatchExactly);
        if (found.isEmpty())
            qFatal("no row %s in %s", qPrintable(row), listName);
        tree->setCurrentItem(found.first());
    }

    QStringList rows(const char *treeName, int column) const
    {
        auto *tree = find<QTreeWidget>(treeName);
        QStringList texts;
        for (int row = 0; row < tree->topLevelItemCount(); ++row)
            texts.append(tree->topLevelItem(row)->text(column));
        return texts;
    }

    // Renames a row in place (F2, typing, Enter); the wizard must be shown.
    void editInPlace(const char *treeName, int row, const QString &typed) const
    {
        auto *tree = find<QTreeWidget>(treeName);
        QTreeWidgetItem *item = tree->topLevelItem(row);
        tree->setCurrentItem(item);
        tree->editItem(item, 0);
        auto *editor = qobject_cast<QLineEdit *>(tree->indexWidget(tree->model()->index(row, 0)));
        if (!editor)
            qFatal("no editor opened in %s", treeName);
        editor->setText(typed);
        QTest::keyClick(editor, Qt::Key_Return);
        // The view commits the editor, and the page answers, each in a later turn of the loop.
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void shoot(const QString &name) const
    {
        const QString dir = qEnvironmentVariable("VELDRA_SHOTS");
        if (dir.isEmpty())
            return;
        const QString language = StringTable::language() == Language::Japanese ? "ja" : "en";
        m_dialog.grab().save(QDir(dir).filePath(name + '-' + language + ".png"));
    }

private:
    QDialog &m_dialog;
};

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
    void sampleQueryBuiltFromScratchMakesTheShippedRequest();

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
        wizard.shoot("step0");

        QVERIFY(wizard.choose("ProviderCombo", "SQLite"));
        QCOMPARE(wizard.entries("DSNCombo"), QStringList{ "Sample" });
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
        QCOMPARE(wizard.tableNames(Qt::PartiallyChecked),
                 QStringList({ "customers", "order_lines", "orders", "products", "regions", "sales_by_region", "staff" }));
        QVERIFY(wizard.tableNames(Qt::Checked).isEmpty());
        QVERIFY(!wizard.next()->isEnabled());
        QVERIFY(wizard.back()->isEnabled());

        wizard.tables()->setData(wizard.tables()->index(2, 0), Qt::Checked, Qt::CheckStateRole);
        wizard.tables()->setData(wizard.tables()->index(0, 0), Qt::Checked, Qt::CheckStateRole);
        QCOMPARE(wizard.tableNames(Qt::Checked), QStringList({ "customers", "orders" }));
        QVERIFY(wizard.next()->isEnabled());
        wizard.shoot("step1");

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

        m_ui->answerQueue = { Answer::No, Answer::Yes };
        wizard.quit()->click();
        QCOMPARE(wizard.step(), 1);
        wizard.quit()->click();
        QCOMPARE(wizard.step(), 0);
    });
    QVERIFY(shown);
    QCOMPARE(m_ui->messages.size(), 2);
    QCOMPARE(wizard.result(), int(QDialog::Rejected));
    QVERIFY(!wizard.isVisible());
    QCOMPARE(m_component->definition(), before);
}

void tst_frmWizard::existingQueryIsFinishedIntoTheModel()
{
    frmWizard wizard;
    const auto original = sampleDefinition();
    const auto before = m_component->definition();
    QString finalText;
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
        const auto *statement = wizard.find<QPlainTextEdit>("FinishResultText");
        QVERIFY(statement->isReadOnly());
        finalText = statement->toPlainText();
        wizard.shoot("step5");

        m_ui->answerQueue = { Answer::Cancel };
        wizard.next()->click();
        QCOMPARE(wizard.step(), 5);
        QCOMPARE(m_component->definition(), before);
        QVERIFY(m_component->host->reports().isEmpty());

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
    QCOMPARE(finalText, statementText(*finished).replace("\r\n", "\n"));

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
    QVERIFY(m_component->host->reports().isEmpty());
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

// The shipped sample, built by a person from nothing: the wizard's result must ask the data
// service exactly what the shipped component asks.
void tst_frmWizard::sampleQueryBuiltFromScratchMakesTheShippedRequest()
{
    const auto sample = sampleDefinition();
    frmWizard form;
    const bool shown = run(form, nullptr, [&](WizardDriver &wizard) {
        form.show(); // renaming in place needs a window
        QVERIFY(QTest::qWaitForWindowExposed(&form));

        // Step 0: the database.
        QVERIFY(wizard.choose("ProviderCombo", "SQLite"));
        QVERIFY(wizard.choose("DSNCombo", "Sample"));
        QVERIFY(wizard.choose("CatalogCombo", "main"));
        wizard.next()->click();

        // Step 1: the tables, in the order the query names them.
        QCOMPARE(wizard.step(), 1);
        wizard.clickTable("regions");
        wizard.clickTable("customers");
        wizard.clickTable("orders");
        wizard.next()->click();

        // Step 2: two columns and two expressions, each with its alias.
        QCOMPARE(wizard.step(), 2);
        const auto insertColumn = [&](const QString &table, const QString &column) {
            QVERIFY(wizard.choose("SelectTableCombo", table));
            wizard.pick("SelectColumnList", column);
            wizard.click("SelectInsertButton");
        };
        insertColumn("regions", "name");
        insertColumn("customers", "segment");
        wizard.editInPlace("SelectList", 0, "Region");
        wizard.editInPlace("SelectList", 1, "Segment");
        // A column named and then left out again keeps its alias, as the sample's customer name does.
        insertColumn("customers", "name");
        wizard.editInPlace("SelectList", 2, "Customer");
        wizard.pick("SelectList", "Customer");
        wizard.click("SelectRemoveButton");

        wizard.find<QTabWidget>("ColExprTab")->setCurrentIndex(1);
        const auto addExpression = [&](const QString &expression) {
            m_ui->then([expression](QDialog &dialog) {
                WizardDriver exprDialog(dialog);
                exprDialog.find<QPlainTextEdit>("AddExprText")->setPlainText(expression);
                exprDialog.click("OKButton");
            });
            wizard.click("ExprAddButton");
            wizard.click("SelectInsertButton");
        };
        addExpression("COUNT(orders.id)");
        addExpression("ROUND(SUM(orders.amount), 2)");
        wizard.editInPlace("SelectList", 2, "Orders");
        wizard.editInPlace("SelectList", 3, "Revenue");
        QCOMPARE(wizard.rows("SelectList", 0), QStringList({ "Region", "Segment", "Orders", "Revenue" }));
        QCOMPARE(wizard.rows("SelectList", 2),
                 QStringList({ "regions.name", "customers.segment", "COUNT(orders.id)", "ROUND(SUM(orders.amount), 2)" }));
        const auto *selectList = wizard.find<QTreeWidget>("SelectList");
        QVERIFY(selectList->columnWidth(2) > selectList->fontMetrics().horizontalAdvance("ROUND(SUM(orders.amount), 2)"));
        QVERIFY(m_ui->messages.isEmpty());
        wizard.next()->click();

        // Step 3: the condition, from the column list, the token buttons, the parameter dialogs
        // and a little typing.
        QCOMPARE(wizard.step(), 3);
        const auto column = [&](const QString &table, const QString &name) {
            QVERIFY(wizard.choose("CondTableCombo", table));
            wizard.pick("CondColumnList", name);
            wizard.click("CondColAddButton");
        };
        const auto token = [&](const QString &caption) {
            for (auto *button : form.findChildren<QPushButton *>()) {
                if (button->objectName().startsWith("CondItemButton_") && button->text() == caption)
                    return button->click();
            }
            QFAIL(qPrintable("no token button " + caption));
        };
        // Add in the parameter list, fill in the edit dialog (and a value dialog per listed
        // value), and OK in the list inserts the parameter.
        const auto parameter = [&](const QString &name, const QString &title, const QStringList &values) {
            m_ui->then([](QDialog &dialog) {
                WizardDriver list(dialog);
                list.click("AddButton");
                list.click("OKButton");
            });
            m_ui->then([=](QDialog &dialog) {
                WizardDriver edit(dialog);
                edit.type("ParamEditNameText", name);
                edit.type("ParamEditTitleText", title);
                const auto kinds = dialog.findChildren<QRadioButton *>("TypeOption");
                kinds.value(values.isEmpty() ? 0 : 1)->click();
                for (qsizetype i = 0; i < values.size(); i += 2)
                    edit.click("AddButton");
                edit.click("OKButton");
            });
            for (qsizetype i = 0; i < values.size(); i += 2) {
                m_ui->then([value = values.at(i), shown = values.at(i + 1)](QDialog &dialog) {
                    WizardDriver valueDialog(dialog);
                    valueDialog.type("ParamValKeyText", value);
                    valueDialog.type("ParamValValText", shown);
                    valueDialog.click("OKButton");
                });
            }
            wizard.click("CondParamButton");
        };
        column("customers", "region_code");
        token("=");
        column("regions", "code");
        token("AND");
        column("orders", "customer_id");
        token("=");
        column("customers", "id");
        token("AND");
        column("orders", "status");
        wizard.type("ConditionText", "<> 'cancelled' "); // no token for "<>"
        token("AND");
        column("regions", "code");
        token("=");
        parameter("Region", "Region",
                  { "'NE'", "North East", "'NW'", "North West", "'SE'", "South East", "'SW'", "South West",
                    "'CE'", "Central", "'OS'", "Overseas" });
        token("AND");
        column("orders", "order_date");
        token(">=");
        parameter("FromDate", "Orders from ('YYYY-MM-DD')", {});
        QTest::keyClick(wizard.find<QPlainTextEdit>("ConditionText"), Qt::Key_Backspace); // the last blank
        QCOMPARE(wizard.find<QPlainTextEdit>("ConditionText")->toPlainText(), sample->condition());
        QVERIFY(m_ui->scripts.isEmpty());
        QVERIFY(m_ui->messages.isEmpty());
        wizard.next()->click();

        // Step 4: ten rows, grouped, the largest revenue first.
        QCOMPARE(wizard.step(), 4);
        wizard.find<QCheckBox>("GrpOrdTopnCheck")->click();
        wizard.find<QLineEdit>("GrpOrdTopnText")->selectAll();
        wizard.type("GrpOrdTopnText", "10");
        wizard.find<QCheckBox>("GrpOrdGroupCheck")->click();
        wizard.find<QCheckBox>("GrpOrdOrderCheck")->click();
        QVERIFY(wizard.choose("GrpOrdOrderCombo", "ROUND(SUM(orders.amount), 2)"));
        wizard.find<QRadioButton>("OrderByOption_1")->click();
        wizard.next()->click();

        // Step 5: the statement, and Finish.
        QCOMPARE(wizard.step(), 5);
        QCOMPARE(wizard.find<QPlainTextEdit>("FinishResultText")->toPlainText(),
                 statementText(*sample).replace("\r\n", "\n"));
        m_ui->answerQueue = { Answer::Ok };
        wizard.next()->click();
    });
    QVERIFY(shown);
    QCOMPARE(form.result(), int(QDialog::Accepted));
    QCOMPARE(m_ui->messages.size(), 1);
    QCOMPARE(m_ui->messages.at(0).text, text(StringId::CreateQueryMessage));

    // The same definition as the shipped one, to the letter.
    const auto built = m_component->definition();
    QVERIFY(built);
    QCOMPARE(QString::fromUtf8(writeDefinition(*built)), QString::fromUtf8(writeDefinition(*sample)));

    // And the same request, given the shipped component's selection and parameter values.
    Component shipped;
    tessaly::ComponentDocument::load(VELDRA_SOURCE_DIR "/samples/sales-by-region.component.xml", *shipped.model);
    m_component->set("selection", "Region,Segment,Orders,Revenue");
    m_component->set("@@@Region", "'NE'");
    m_component->set("@@@FromDate", "'2023-01-01'");
    // The shipped document holds no request: the host asks for one, as `veldra request` does.
    shipped.set("UpdateRequest", true);
    QVERIFY(!shipped.requestText().isEmpty());
    QCOMPARE(m_component->requestText(), shipped.requestText());
}

QTEST_MAIN(tst_frmWizard)
#include "tst_frmwizard.moc"
