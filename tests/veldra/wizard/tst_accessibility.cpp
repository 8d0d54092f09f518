// The wizard, its dialogs and the pad as a person meets them through a screen reader and the
// keyboard alone: every control a person acts on has a name, unique in its window, in English
// and in Japanese; each step opens on its own first control; and a query is built from nothing
// without the mouse.

#include "../common/accessiblecontrols.h"
#include "../common/sampleservice.h"
#include "../common/wizarddriver.h"

#include "tessaly/modelhost.h"
#include "tessaly/variant.h"
#include "tessaly/widgets/padsite.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/dialogs/wizdberrordialog.h"
#include "veldra/dialogs/wizexprdialog.h"
#include "veldra/dialogs/wizparamdbgetdialog.h"
#include "veldra/dialogs/wizparamdialog.h"
#include "veldra/dialogs/wizparameditdialog.h"
#include "veldra/dialogs/wizparamvaleditdialog.h"
#include "veldra/records/definitionfile.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/frmwizard.h"

#include <QTemporaryDir>

using namespace veldra;
using testwizard::WizardDriver;

namespace {

std::shared_ptr<SQLInfo> sample()
{
    return readDefinitionFile(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");
}

// The model behind its site, as a host holds it.
struct Component
{
    Component()
    {
        model->zetPrimitiveModel_SetModel(host);
        model->zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
    }
    std::shared_ptr<TsyParamConditionModel> model = std::make_shared<TsyParamConditionModel>();
    std::shared_ptr<tessaly::ModelHost> host = std::make_shared<tessaly::ModelHost>(model.get());
};

QString problemsOf(QWidget &window)
{
    return testa11y::namingProblems(&window).join(u'\n');
}

void show(QWidget &window)
{
    window.show();
    window.activateWindow();
    QTRY_COMPARE(QApplication::activeWindow(), &window);
}

} // namespace

class tst_Accessibility : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_config;
    std::shared_ptr<testui::RecordingUiService> m_ui;
    std::shared_ptr<testservice::ScriptedService> m_service;

    // Runs the wizard on definition with session as the person.
    void runWizard(const std::shared_ptr<SQLInfo> &definition, const std::function<void(QDialog &)> &session)
    {
        frmWizard wizard;
        Component component;
        m_ui->script = [&](QDialog &dialog) {
            if (&dialog == &wizard)
                session(dialog);
        };
        QVERIFY(wizard.StartWizard(component.model, m_service, definition));
    }

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<Language>("language");
        QTest::newRow("en") << Language::English;
        QTest::newRow("ja") << Language::Japanese;
    }

    void initTestCase()
    {
        QVERIFY(m_config.isValid());
        qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8()); // the bundled sample only
    }

    void init()
    {
        QFETCH_GLOBAL(Language, language);
        StringTable::setLanguage(language);
        m_ui = std::make_shared<testui::RecordingUiService>();
        tessaly::UiService::setInstance(m_ui);
        m_service = testservice::sampleService();
    }

    void cleanup()
    {
        tessaly::UiService::setInstance(nullptr);
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void everyStepNamesEachControlOnce()
    {
        QStringList problems;
        runWizard(sample(), [&problems](QDialog &dialog) {
            WizardDriver wizard(dialog);
            show(dialog);
            for (int step = 0; step < 6; ++step) {
                QCOMPARE(wizard.step(), step);
                QVERIFY2(testa11y::interactiveControls(&dialog).size() > 3, "the walk found no controls");
                if (const QString found = problemsOf(dialog); !found.isEmpty())
                    problems.append(QString("step %1:\n%2").arg(step).arg(found));
                if (step == 2) { // the expressions' tab
                    wizard.find<QTabWidget>("ColExprTab")->setCurrentIndex(1);
                    if (const QString found = problemsOf(dialog); !found.isEmpty())
                        problems.append("expressions:\n" + found);
                }
                if (step < 5)
                    wizard.next()->click();
            }
            dialog.hide();
        });
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
    }

    void everyDialogNamesEachControlOnce()
    {
        const auto definition = sample();
        WizParamDialog list;
        list.setQueryDefinition(definition);
        WizParamEditDialog edit;
        edit.setParameter(definition->parameters()->object<ParamInfo>("@@@Region"));
        WizParamValEditDialog value;
        value.setValueAndName("'NE'", "North East");
        WizParamDBGetDialog fromDatabase;
        WizExprDialog expression;
        WizDBErrorDialog error;
        error.setReason("The database file does not exist.");
        QStringList problems;
        for (QDialog *dialog : std::initializer_list<QDialog *>{ &list, &edit, &value, &fromDatabase, &expression, &error }) {
            show(*dialog);
            if (const QString found = problemsOf(*dialog); !found.isEmpty())
                problems.append(dialog->objectName() + ":\n" + found);
            dialog->hide();
        }
        // A typed-in parameter shows no value list.
        edit.setParameter(definition->parameters()->object<ParamInfo>("@@@FromDate"));
        show(edit);
        problems.append(problemsOf(edit));
        edit.hide();
        problems.removeAll(QString());
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join(u'\n')));
    }

    // A query built from nothing with the keyboard alone: Tab reaches every control in turn,
    // Space and the arrows act on them, F2 renames an alias, Enter confirms a dialog.
    void theWholeJourneyNeedsOnlyTheKeyboard()
    {
        Component component;
        frmWizard wizard;
        const auto focused = [] { return QApplication::focusWidget(); };
        const auto press = [&](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            QTest::keyClick(focused(), Qt::Key(key), modifiers);
        };
        // Tabs forward until the named control has the focus; a control Tab never reaches fails.
        const auto tabTo = [&](const QString &name) {
            for (int tab = 0; tab < 60 && focused() && focused()->objectName() != name; ++tab)
                press(Qt::Key_Tab);
            QVERIFY2(focused() && focused()->objectName() == name,
                     qPrintable("Tab does not reach " + name + ", it stops on "
                                + (focused() ? focused()->objectName() : QString("nothing"))));
        };
        // Types the start of an entry of the focused list or choice, as a person finds one.
        const auto find = [&](const QString &start) {
            QTest::qWait(QApplication::keyboardInputInterval() + 50); // a new search, not a longer one
            QTest::keyClicks(focused(), start);
        };
        const auto openDialog = [&](const char *button, const std::function<void(QDialog &)> &person) {
            m_ui->then([person](QDialog &dialog) {
                show(dialog);
                person(dialog);
            });
            tabTo(button);
            QWidget *window = focused()->window();
            press(Qt::Key_Space);
            show(*window); // the window manager gives the focus back to the window that opened it
        };
        // F2, or the context menu key and "Rename Alias" (the key's event made as the desktop
        // makes it: at the current row).
        const auto renameAlias = [&](const QString &alias, bool byMenu) {
            tabTo("SelectList");
            press(Qt::Key_End);
            if (byMenu) {
                const QPoint at = focused()->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
                QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, at, focused()->mapToGlobal(at));
                QCoreApplication::sendEvent(focused(), &menuKey);
                QWidget *menu = QApplication::activePopupWidget();
                QVERIFY(menu);
                QWidget *window = focused()->window();
                QTest::keyClick(menu, Qt::Key_Down);
                QTest::keyClick(menu, Qt::Key_Return);
                show(*window);
            } else {
                press(Qt::Key_F2);
            }
            QVERIFY(qobject_cast<QLineEdit *>(focused()));
            press(Qt::Key_A, Qt::ControlModifier); // what the editor held is replaced
            QTest::keyClicks(focused(), alias);
            press(Qt::Key_Return);
            QCoreApplication::processEvents();
        };

        m_ui->script = [&](QDialog &dialog) {
            WizardDriver driver(dialog);
            show(dialog);
            // Step 0: the database; it opens on its first choice, not on Quit.
            QCOMPARE(focused()->objectName(), QString("ProviderCombo"));
            find("SQLite");
            tabTo("DSNCombo");
            find("Sample");
            tabTo("CatalogCombo");
            find("main");
            tabTo("NextButton");
            press(Qt::Key_Space);

            // Step 1: Next is disabled until a table is chosen; the focus is on the list.
            QCOMPARE(driver.step(), 1);
            QCOMPARE(focused()->objectName(), QString("TableSelectList"));
            for (const char *table : { "regions", "orders" }) {
                find(table);
                press(Qt::Key_Space);
            }
            tabTo("NextButton");
            press(Qt::Key_Space);

            // Step 2: a column with an alias and an expression with one.
            QCOMPARE(driver.step(), 2);
            tabTo("SelectTableCombo");
            find("regions");
            tabTo("SelectColumnList");
            find("name");
            tabTo("SelectInsertButton");
            press(Qt::Key_Space);
            renameAlias("Region", false);
            tabTo("SelectColumnList");
            press(Qt::Key_Tab, Qt::ControlModifier); // the expressions' tab
            openDialog("ExprAddButton", [&](QDialog &expression) {
                QCOMPARE(focused()->objectName(), QString("AddExprText"));
                QTest::keyClicks(focused(), "COUNT(orders.id)");
                press(Qt::Key_Tab);
                press(Qt::Key_Return);
                QVERIFY(!expression.isVisible());
            });
            tabTo("SelectExprList");
            find("COUNT");
            tabTo("SelectInsertButton");
            press(Qt::Key_Space);
            renameAlias("Orders", true);
            tabTo("NextButton");
            press(Qt::Key_Space);

            // Step 3: a condition on a new parameter chosen from a list of one value.
            QCOMPARE(driver.step(), 3);
            tabTo("CondTableCombo");
            find("regions");
            tabTo("CondColumnList");
            find("code");
            tabTo("CondColAddButton");
            press(Qt::Key_Space);
            QTest::keyClicks(driver.find<QWidget>("ConditionText"), "= "); // Tab also passes through it
            openDialog("CondParamButton", [&](QDialog &) {
                openDialog("AddButton", [&](QDialog &) {
                    tabTo("ParamEditNameText");
                    QTest::keyClicks(focused(), "Region");
                    tabTo("ParamEditTitleText");
                    QTest::keyClicks(focused(), "Region");
                    tabTo("TypeOption");
                    press(Qt::Key_Right); // the value list
                    openDialog("AddButton", [&](QDialog &) {
                        tabTo("ParamValKeyText");
                        QTest::keyClicks(focused(), "'NE'");
                        tabTo("ParamValValText");
                        QTest::keyClicks(focused(), "North East");
                        press(Qt::Key_Return);
                    });
                    tabTo("OKButton");
                    press(Qt::Key_Space);
                });
                tabTo("OKButton");
                press(Qt::Key_Space);
            });
            tabTo("NextButton");
            press(Qt::Key_Space);

            // Step 4: row count, grouping, ordering.
            QCOMPARE(driver.step(), 4);
            QCOMPARE(focused()->objectName(), QString("GrpOrdTopnCheck"));
            press(Qt::Key_Space);
            tabTo("GrpOrdTopnText");
            press(Qt::Key_A, Qt::ControlModifier);
            QTest::keyClicks(focused(), "10");
            tabTo("GrpOrdGroupCheck");
            press(Qt::Key_Space);
            tabTo("GrpOrdOrderCheck");
            press(Qt::Key_Space);
            tabTo("GrpOrdOrderCombo");
            find("COUNT");
            tabTo("OrderByOption_0");
            press(Qt::Key_Right); // descending
            tabTo("NextButton");
            press(Qt::Key_Space);

            // Step 5: Finish, and OK to the question.
            QCOMPARE(driver.step(), 5);
            tabTo("NextButton");
            press(Qt::Key_Space);
        };
        QVERIFY(wizard.StartWizard(component.model, m_service, nullptr));
        QVERIFY(!QTest::currentTestFailed());
        QCOMPARE(wizard.result(), int(QDialog::Accepted));

        const auto built = tessaly::objectCast<SQLInfo>(tessaly::variant::heldObject(component.host->slotValue("SQLInfo")));
        QCOMPARE(built->getTableNames(), QString("regions,orders"));
        QCOMPARE(built->selections()->count(), 2);
        QCOMPARE(built->selections()->item(1), QString("regions.name"));
        QCOMPARE(built->selections()->item(2), QString("COUNT(orders.id)"));
        QCOMPARE(built->getFieldAlias("regions.name"), QString("Region"));
        QCOMPARE(built->getFieldAlias("COUNT(orders.id)"), QString("Orders"));
        QCOMPARE(built->condition(), QString("regions.code = @@@Region "));
        QCOMPARE(built->parameters()->object<ParamInfo>("@@@Region")->selections()->key(0), QString("'NE'"));
        QVERIFY(built->useGroupBy());
        QCOMPARE(built->orderBy()->item(1)->column(), QString("COUNT(orders.id)"));
        QVERIFY(!built->orderBy()->item(1)->ascendant());
        QCOMPARE(built->topN(), 10);
    }

    void thePadNamesEachInputOnce()
    {
        auto definition = sample();
        definition->setTopNAsParam(true);
        definition->setOrderByAsParam(true);
        auto model = std::make_shared<TsyParamConditionModel>();
        TsyParamConditionPad pad;
        QWidget face;
        auto site = tessaly::PadSite::create(model, &face);
        site->initialize(&pad, tessaly::zetPrimitivePad::NewComponent);
        site->modelHost().setSlotValue("SQLInfo", tessaly::variant::holding(definition));
        site->setPadSlotValue("BuildUI", true);
        show(face);
        QCOMPARE(testa11y::interactiveControls(&face).size(), 6);
        QVERIFY2(problemsOf(face).isEmpty(), qPrintable(problemsOf(face)));
        site->cleanup();
    }
};

QTEST_MAIN(tst_Accessibility)
#include "tst_accessibility.moc"
