#include "../common/definitions.h"
#include "../common/wizarddriver.h"
#include "../dialogs/recordinguiservice.h"
#include "wizardfixture.h"

#include "veldra/resources/stringtable.h"
#include "veldra/wizard/columnpage.h"
#include "veldra/wizard/grouporderpage.h"
#include "veldra/wizard/grouporderstep.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QRegularExpression>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

using namespace veldra;
using namespace testdefs;
using tessaly::UiService;

namespace {

template<typename T>
T *child(QWidget &page, const QString &name)
{
    T *found = page.findChild<T *>(name);
    if (!found)
        qWarning("no control named %s", qPrintable(name));
    return found;
}

QStringList column(const QTreeWidget *list, int column)
{
    QStringList texts;
    for (int row = 0; row < list->topLevelItemCount(); ++row)
        texts.append(list->topLevelItem(row)->text(column));
    return texts;
}

} // namespace

class tst_WizardPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void columnPageRenamesAnAliasByMenuKeyOrClick();
    void columnPageTypesANewExpressionInPlace();
    void columnPageEditsALongExpressionInTheDialog_data();
    void columnPageEditsALongExpressionInTheDialog();
    void groupOrderPageEnablesWhatTheSwitchesAllow();

private:
    QStringList checkedGroups() const
    {
        QStringList names;
        for (const GroupOrderStep::GroupItem &item : m_state->groupOrder().groupItems()) {
            if (item.checked)
                names.append(item.name);
        }
        return names;
    }

    std::shared_ptr<testui::RecordingUiService> m_ui;
    std::unique_ptr<WizardState> m_state;
};

void tst_WizardPages::init()
{
    StringTable::setLanguage(Language::English);
    m_ui = std::make_shared<testui::RecordingUiService>();
    UiService::setInstance(m_ui);
    m_state = std::make_unique<WizardState>();
    testwizard::start(*m_state, testwizard::sampleQuery());
}

void tst_WizardPages::cleanup()
{
    m_state.reset();
    UiService::setInstance(nullptr);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void tst_WizardPages::columnPageRenamesAnAliasByMenuKeyOrClick()
{
    QTest::failOnWarning(QRegularExpression("edit"));
    ColumnPage page(*m_state);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QVERIFY(page.prepare());
    auto *selectList = child<QTreeWidget>(page, "SelectList");
    QVERIFY(selectList->headerItem()->toolTip(0).contains("F2"));
    QCOMPARE(selectList->topLevelItem(1)->toolTip(0), selectList->headerItem()->toolTip(0));
    const auto editor = [selectList](int row) {
        return qobject_cast<QLineEdit *>(selectList->indexWidget(selectList->model()->index(row, 0)));
    };
    const auto typeIntoEditor = [&](int row, const QString &typed) {
        QTRY_VERIFY(editor(row));
        editor(row)->setText(typed);
        QTest::keyClick(editor(row), Qt::Key_Return);
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    };

    // The menu's Rename; a refused alias says so and the old label comes back.
    const QRect first = selectList->visualItemRect(selectList->topLevelItem(0));
    Q_EMIT selectList->customContextMenuRequested(first.center());
    auto *menu = child<QMenu>(page, "SelectListMenu");
    QTRY_VERIFY(menu->isVisible());
    child<QAction>(page, "RenameAliasAction")->trigger();
    menu->hide();
    typeIntoEditor(0, "Total");
    QCOMPARE(m_ui->messages.size(), 1);
    QCOMPARE(m_ui->messages[0].text, "You can not use this alias.");
    QCOMPARE(m_ui->messages[0].title, "Bad alias");
    QCOMPARE(selectList->topLevelItem(0)->text(0), "<Blank>");

    // F2 renames the alias wherever the row was clicked.
    selectList->setCurrentIndex(selectList->model()->index(0, 2));
    QTest::keyClick(selectList, Qt::Key_F2);
    typeIntoEditor(0, "Number");
    QCOMPARE(m_state->definition()->getColumnInfo("orders.id")->alias(), "Number");

    // A click on the alias of the selected row renames it, once the double-click time is over.
    const QPoint alias = selectList->visualItemRect(selectList->topLevelItem(1)).topLeft() + QPoint(5, 5);
    QTest::mouseClick(selectList->viewport(), Qt::LeftButton, {}, alias);
    QVERIFY(!editor(1));
    QTest::mouseClick(selectList->viewport(), Qt::LeftButton, {}, alias);
    typeIntoEditor(1, "Amount");
    QCOMPARE(m_state->definition()->getColumnInfo("orders.amount")->alias(), "Amount");

    // A double click there removes the row and opens no editor afterwards.
    selectList->setCurrentItem(selectList->topLevelItem(1));
    QTest::mouseClick(selectList->viewport(), Qt::LeftButton, {}, alias);
    QTest::mouseDClick(selectList->viewport(), Qt::LeftButton, {}, alias);
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    QCOMPARE(column(selectList, 2), QStringList({ "orders.id", "SUM(amount)" }));
    QVERIFY(!editor(1));

    // The menu's Remove.
    Q_EMIT selectList->customContextMenuRequested(first.center());
    child<QAction>(page, "RemoveSelectionAction")->trigger();
    menu->hide();
    QCOMPARE(column(selectList, 2), QStringList{ "SUM(amount)" });
}

void tst_WizardPages::columnPageTypesANewExpressionInPlace()
{
    ColumnPage page(*m_state);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QVERIFY(page.prepare());
    child<QTabWidget>(page, "ColExprTab")->setCurrentIndex(1);
    auto *expressions = child<QTreeWidget>(page, "SelectExprList");

    testwizard::WizardDriver(page).editInPlace("SelectExprList", 2, "COUNT(*)");
    QCOMPARE(m_ui->messages.size(), 1);
    QCOMPARE(m_ui->messages[0].text, "Same Query exist.");
    QCOMPARE(m_ui->messages[0].title, "Error");
    QCOMPARE(column(expressions, 0), QStringList({ "SUM(amount)", "COUNT(*)", "" }));

    testwizard::WizardDriver(page).editInPlace("SelectExprList", 2, "MAX(id)");
    QCOMPARE(column(expressions, 0), QStringList({ "SUM(amount)", "COUNT(*)", "MAX(id)", "" }));
    QCOMPARE(m_state->definition()->expressions()->object<ColumnInfo>("MAX(id)")->columnType(),
             ColumnInfo::Expression);
}

void tst_WizardPages::columnPageEditsALongExpressionInTheDialog_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("expressions");
    const QString longOne = "SUM(" + QString(247, 'a') + ")";
    QTest::newRow("Cancel: nothing") << int(UiService::Answer::Cancel)
                                     << QStringList{ "SUM(amount)", "COUNT(*)", longOne, "" };
    QTest::newRow("OK: edited in the dialog") << int(UiService::Answer::Ok)
                                              << QStringList{ "SUM(amount)", "COUNT(*)", "MIN(a)", "" };
}

void tst_WizardPages::columnPageEditsALongExpressionInTheDialog()
{
    QFETCH(int, answer);
    QFETCH(QStringList, expressions);
    const QString longOne = "SUM(" + QString(247, 'a') + ")";
    addExpression(*m_state->definition(), longOne);
    m_ui->answerQueue = { UiService::Answer(answer) };
    m_ui->script = [](QDialog &dialog) {
        dialog.findChild<QPlainTextEdit *>("AddExprText")->setPlainText("MIN(a)");
        dialog.findChild<QPushButton *>("OKButton")->click();
    };
    ColumnPage page(*m_state);
    QVERIFY(page.prepare());
    auto *list = child<QTreeWidget>(page, "SelectExprList");
    list->setCurrentItem(list->topLevelItem(2));
    list->editItem(list->topLevelItem(2), 0);
    QCoreApplication::processEvents();
    QVERIFY(!list->indexWidget(list->model()->index(2, 0)));
    QCOMPARE(m_ui->messages.size(), 1);
    QCOMPARE(m_ui->messages[0].title, "A long expression");
    QCOMPARE(m_ui->messages[0].buttons, UiService::Buttons::OkCancel);
    QCOMPARE(m_ui->dialogs.size(), answer == int(UiService::Answer::Ok) ? 1 : 0);
    QCOMPARE(column(list, 0), expressions);
}

void tst_WizardPages::groupOrderPageEnablesWhatTheSwitchesAllow()
{
    GroupOrderPage page(*m_state);
    page.initialize();
    QSignalSpy completeChanged(&page, &WizardPage::completeChanged);
    QVERIFY(page.prepare());
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    auto *topnCheck = child<QCheckBox>(page, "GrpOrdTopnCheck");
    auto *topnText = child<QLineEdit>(page, "GrpOrdTopnText");
    QVERIFY(!topnCheck->isChecked());
    QVERIFY(!topnText->isEnabled());
    topnCheck->click();
    QVERIFY(topnText->isEnabled());
    QVERIFY(child<QCheckBox>(page, "GrpOrdTopnParamCheck")->isEnabled());
    QCOMPARE(topnText->text(), "100");
    topnText->selectAll();
    QTest::keyClicks(topnText, "30");
    QCOMPARE(m_state->definition()->topN(), 30);
    topnCheck->click();
    QCOMPARE(m_state->definition()->topN(), 0);
    QVERIFY(!child<QLabel>(page, "GrpOrdTopnLabel")->isEnabled());
    topnCheck->click();
    QCOMPARE(topnText->text(), "30");
    QCOMPARE(m_state->definition()->topN(), 30);

    // A count below 1 cannot be left in the box.
    page.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    topnText->setFocus();
    topnText->selectAll();
    QTest::keyClicks(topnText, "0");
    topnCheck->setFocus();
    QTRY_VERIFY(topnText->hasFocus());
    QTest::keyClicks(topnText, "5");
    topnCheck->setFocus();
    QTest::qWait(10);
    QVERIFY(topnCheck->hasFocus());
    QCOMPARE(m_state->definition()->topN(), 5);

    auto *groupList = child<QListWidget>(page, "GrpOrdGroupList");
    QVERIFY(!groupList->isEnabled());
    child<QCheckBox>(page, "GrpOrdGroupCheck")->click();
    QVERIFY(groupList->isEnabled());
    // On the text and on the box alike, one click is one flip.
    const QRect text = groupList->visualItemRect(groupList->item(1));
    QTest::mouseClick(groupList->viewport(), Qt::LeftButton, {}, text.center());
    QCOMPARE(checkedGroups(), QStringList{ "orders.amount" });
    const QRect box = groupList->visualItemRect(groupList->item(2));
    QTest::mouseClick(groupList->viewport(), Qt::LeftButton, {}, QPoint(box.left() + box.height() / 2, box.center().y()));
    QTest::mouseClick(groupList->viewport(), Qt::LeftButton, {}, text.center());
    QCOMPARE(checkedGroups(), QStringList{ "SUM(amount)" });

    auto *combo = child<QComboBox>(page, "GrpOrdOrderCombo");
    auto *descending = child<QRadioButton>(page, "OrderByOption_1");
    QVERIFY(child<QRadioButton>(page, "OrderByOption_0")->isChecked());
    QVERIFY(!combo->isEnabled());
    child<QCheckBox>(page, "GrpOrdOrderCheck")->click();
    QVERIFY(combo->isEnabled());
    QVERIFY(descending->isEnabled());
    QVERIFY(!m_state->isStepComplete(WizardState::GroupOrderStep));
    combo->setCurrentIndex(2);
    QVERIFY(m_state->isStepComplete(WizardState::GroupOrderStep));
    descending->click();
    QVERIFY(!m_state->groupOrder().ascending());
    child<QCheckBox>(page, "GrpOrdOrderParamCheck")->click();
    QVERIFY(!combo->isEnabled());
    QVERIFY(!descending->isEnabled());
    QVERIFY(completeChanged.count() >= 3);

    m_state->groupOrder().store();
    QCOMPARE(m_state->definition()->groupBy()->items(), QStringList{ "SUM(amount)" });
    QCOMPARE(m_state->definition()->orderBy()->count(), 3);
}

QTEST_MAIN(tst_WizardPages)
#include "tst_wizardpages.moc"
