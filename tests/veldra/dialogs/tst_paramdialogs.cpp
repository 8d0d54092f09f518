// The parameter dialogs driven as a person would, offscreen and by object name: the list, the
// edit dialog, the value edit dialog and the retrieval from the sample database through the
// real data service. Nested dialogs run from queued scripts.

#include "../common/definitions.h"
#include "recordinguiservice.h"
#include "../common/sampleservice.h"

#include "tessaly/namemap.h"
#include "veldra/dialogs/wizdberrordialog.h"
#include "veldra/dialogs/wizparamdbgetdialog.h"
#include "veldra/dialogs/wizparamdialog.h"
#include "veldra/dialogs/wizparameditdialog.h"
#include "veldra/dialogs/wizparamvaleditdialog.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

using namespace veldra;
using namespace testdefs;
using tessaly::NameMap;
using tessaly::UiService;

namespace {

// A control the dialog must have; a missing one is a broken form, not a failed expectation.
template<typename T>
T *the(const QObject &parent, const char *name)
{
    T *found = parent.findChild<T *>(QString::fromLatin1(name));
    if (!found)
        qFatal("%s has no %s", qPrintable(parent.objectName()), name);
    return found;
}

void click(const QObject &dialog, const char *button)
{
    QTest::mouseClick(the<QPushButton>(dialog, button), Qt::LeftButton);
}

bool enabled(const QObject &dialog, const char *control)
{
    return the<QWidget>(dialog, control)->isEnabled();
}

void type(const QObject &dialog, const char *edit, const QString &text)
{
    QTest::keyClicks(the<QLineEdit>(dialog, edit), text);
}

// Rows of a report list as "first|second|..." lines, the current row marked with "*".
QStringList rows(const QObject &dialog, const char *list)
{
    const QTreeWidget *tree = the<QTreeWidget>(dialog, list);
    QStringList result;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *item = tree->topLevelItem(i);
        QStringList columns;
        for (int c = 0; c < tree->columnCount(); ++c)
            columns.append(item->text(c));
        result.append(columns.join('|') + (item->isSelected() ? "*" : ""));
    }
    return result;
}

void selectRow(const QObject &dialog, const char *list, int row)
{
    QTreeWidget *tree = the<QTreeWidget>(dialog, list);
    tree->setCurrentItem(tree->topLevelItem(row));
}

QStringList items(const QObject &dialog, const char *list)
{
    const QListWidget *widget = the<QListWidget>(dialog, list);
    QStringList result;
    for (int i = 0; i < widget->count(); ++i)
        result.append(widget->item(i)->text());
    return result;
}

void choose(const QObject &dialog, const char *combo, const QString &entry)
{
    QComboBox *box = the<QComboBox>(dialog, combo);
    const int index = box->findText(entry);
    if (index < 0)
        qFatal("%s has no entry %s", combo, qPrintable(entry));
    box->setCurrentIndex(index);
}

QAbstractButton *typeOption(const QObject &dialog, int index)
{
    return the<QButtonGroup>(dialog, "TypeOption")->button(index);
}

} // namespace

class tst_ParamDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();


    void okInsertsTheChosenNameAndCancelInsertsNothing_data();
    void okInsertsTheChosenNameAndCancelInsertsNothing();
    void addStoresTheNewParameterOnlyWhenConfirmed_data();
    void addStoresTheNewParameterOnlyWhenConfirmed();
    void modifyEditsTheHeldRecordAndARenameKeepsTheOldKey();
    void deleteChoosesTheNextRowWithoutAQuestion();

    void editShowsTheKindAndEnablesTheValuesForAList_data();
    void editShowsTheKindAndEnablesTheValuesForAList();
    void theNameFieldKeepsThePrefixInFront_data();
    void theNameFieldKeepsThePrefixInFront();
    void okWithMissingInputSaysSoAndStaysOpen();
    void valuesAreModifiedQuotedAndDeletedByHand();
    void valueEditNeedsBothTexts_data();
    void valueEditNeedsBothTexts();

    void valuesFromTwoColumnsReplaceTheOldOnes();

private:
    std::shared_ptr<testui::RecordingUiService> m_ui;
};

void tst_ParamDialogs::init()
{
    StringTable::setLanguage(Language::English);
    m_ui = std::make_shared<testui::RecordingUiService>();
    UiService::setInstance(m_ui);
}

void tst_ParamDialogs::cleanup()
{
    UiService::setInstance(nullptr);
    QVERIFY(m_ui->scripts.isEmpty()); // every queued dialog opened
    QCOMPARE(m_ui->busyDepth, 0);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void tst_ParamDialogs::okInsertsTheChosenNameAndCancelInsertsNothing_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("inserted");
    QTest::addColumn<bool>("closedByScript");
    QTest::newRow("OK hands the name on") << 1 << "OKButton" << QStringList{ "@@@b" } << true;
    QTest::newRow("Cancel hands nothing") << 1 << "CancelButton" << QStringList{} << true;
    QTest::newRow("OK without a choice is disabled") << -1 << "OKButton" << QStringList{} << false;
}

void tst_ParamDialogs::okInsertsTheChosenNameAndCancelInsertsNothing()
{
    QFETCH(int, row);
    QFETCH(QString, button);
    QFETCH(QStringList, inserted);
    QFETCH(bool, closedByScript);
    auto definition = std::make_shared<SQLInfo>();
    for (const QString name : { "@@@a", "@@@b" })
        definition->parameters()->setObject(name, parameter(name, 1, "T"));
    m_ui->script = [&](QDialog &shown) {
        QCOMPARE(rows(shown, "ParamList"), (QStringList{ "@@@a|String Field|T", "@@@b|String Field|T" }));
        QVERIFY(!enabled(shown, "OKButton"));
        if (row >= 0) {
            selectRow(shown, "ParamList", row);
            QCOMPARE(the<QLabel>(shown, "ParamSelectedText")->text(), "@@@b");
            QVERIFY(enabled(shown, "OKButton"));
        }
        click(shown, qPrintable(button));
    };
    const std::optional<QString> chosen = runParameterDialog(definition, nullptr, nullptr);
    QCOMPARE(chosen ? QStringList{ *chosen } : QStringList(), inserted);
    QCOMPARE(m_ui->closedByScript, closedByScript);
    QCOMPARE(definition->parameters()->count(), 2);
}

void tst_ParamDialogs::addStoresTheNewParameterOnlyWhenConfirmed_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("listed");
    QTest::newRow("OK") << "OKButton"
                        << QStringList{ "@@@a|String Field|A", "@@@region|String Field|Region*" };
    QTest::newRow("Cancel") << "CancelButton" << QStringList{ "@@@a|String Field|A*" };
}

void tst_ParamDialogs::addStoresTheNewParameterOnlyWhenConfirmed()
{
    QFETCH(QString, button);
    QFETCH(QStringList, listed);
    auto definition = std::make_shared<SQLInfo>();
    definition->parameters()->setObject("@@@a", parameter("@@@a", 1, "A"));
    WizParamDialog dialog;
    dialog.setQueryDefinition(definition);
    selectRow(dialog, "ParamList", 0);

    testui::DialogSeen opened;
    m_ui->then([](QDialog &list) { click(list, "AddButton"); })
            .then([&](QDialog &edit) {
                opened = m_ui->dialogs.last();
                QVERIFY(!enabled(edit, "OKButton"));
                QVERIFY(!typeOption(edit, 1)->isChecked() && typeOption(edit, 0)->isChecked());
                QVERIFY(!enabled(edit, "ValueFrame"));
                type(edit, "ParamEditNameText", "region");
                QVERIFY(!enabled(edit, "OKButton"));
                type(edit, "ParamEditTitleText", "Region");
                QVERIFY(enabled(edit, "OKButton"));
                click(edit, qPrintable(button));
            });
    UiService::instance().execDialog(dialog);
    QCOMPARE(opened.objectName, "WizParamEditDialog");
    QCOMPARE(opened.texts.value("ParamEditNameText"), "");
    QCOMPARE(rows(dialog, "ParamList"), listed);
    QCOMPARE(definition->parameters()->count(), listed.size());
    QCOMPARE(the<QLabel>(dialog, "ParamSelectedText")->text(), listed.last().section('|', 0, 0));
}

void tst_ParamDialogs::modifyEditsTheHeldRecordAndARenameKeepsTheOldKey()
{
    auto definition = std::make_shared<SQLInfo>();
    const auto a = parameter("@@@a", 1, "A");
    definition->parameters()->setObject("@@@a", a);
    definition->parameters()->setObject("@@@b", parameter("@@@b", 1, "B"));
    WizParamDialog dialog;
    dialog.setQueryDefinition(definition);

    // A double click modifies the row. Cancel keeps what was typed: the record edited is the
    // one the definition holds.
    QTreeWidget *list = the<QTreeWidget>(dialog, "ParamList");
    list->setCurrentItem(list->topLevelItem(0));
    m_ui->then([](QDialog &edit) {
        QCOMPARE(the<QLineEdit>(edit, "ParamEditNameText")->text(), "@@@a");
        QCOMPARE(the<QLineEdit>(edit, "ParamEditTitleText")->text(), "A");
        type(edit, "ParamEditTitleText", "lpha");
        click(edit, "CancelButton");
    });
    Q_EMIT list->itemDoubleClicked(list->topLevelItem(0), 0);
    QCOMPARE(a->title(), "Alpha");
    QCOMPARE(rows(dialog, "ParamList").first(), "@@@a|String Field|Alpha*");

    // A new name: the copy goes under it and is chosen; the old key keeps the edited record.
    m_ui->then([](QDialog &edit) {
        QLineEdit *name = the<QLineEdit>(edit, "ParamEditNameText");
        name->setCursorPosition(name->text().size());
        QTest::keyClick(name, Qt::Key_Backspace);
        type(edit, "ParamEditNameText", "z");
        click(edit, "OKButton");
    });
    click(dialog, "EditButton");
    QCOMPARE(rows(dialog, "ParamList"),
             (QStringList{ "@@@z|String Field|Alpha", "@@@b|String Field|B", "@@@z|String Field|Alpha*" }));
    QCOMPARE(definition->parameters()->object<ParamInfo>("@@@a"), a);
    const auto stored = definition->parameters()->object<ParamInfo>("@@@z");
    QVERIFY(stored && stored != a);
    QCOMPARE(dialog.selectedName(), "@@@z");

    // A name that is no longer in the map opens nothing.
    definition->parameters()->remove("@@@z");
    click(dialog, "EditButton");
    QCOMPARE(m_ui->dialogs.size(), 2);
}

void tst_ParamDialogs::deleteChoosesTheNextRowWithoutAQuestion()
{
    auto definition = std::make_shared<SQLInfo>();
    for (const QString name : { "@@@a", "@@@b", "@@@c" })
        definition->parameters()->setObject(name, parameter(name, 1, "T"));
    WizParamDialog dialog;
    dialog.setQueryDefinition(definition);
    selectRow(dialog, "ParamList", 2);
    click(dialog, "DeleteButton");
    QCOMPARE(rows(dialog, "ParamList"), (QStringList{ "@@@a|String Field|T", "@@@b|String Field|T*" }));
    QCOMPARE(the<QLabel>(dialog, "ParamSelectedText")->text(), "@@@b");
    QVERIFY(m_ui->messages.isEmpty());
}

void tst_ParamDialogs::editShowsTheKindAndEnablesTheValuesForAList_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("pairs");
    QTest::addColumn<int>("checked"); // the option, -1 for none
    QTest::addColumn<bool>("valuesEnabled");
    QTest::addColumn<bool>("okEnabled");
    QTest::newRow("string field") << 1 << "" << 0 << false << true;
    QTest::newRow("list with values") << 2 << "NE=North East,SE=South East" << 1 << true << true;
    QTest::newRow("list without values") << 2 << "" << 1 << true << false;
    QTest::newRow("another kind") << 9 << "" << -1 << false << true;
}

void tst_ParamDialogs::editShowsTheKindAndEnablesTheValuesForAList()
{
    QFETCH(int, kind);
    QFETCH(QString, pairs);
    QFETCH(int, checked);
    QFETCH(bool, valuesEnabled);
    QFETCH(bool, okEnabled);
    const auto edited = parameter("@@@region", kind, "Region", pairs);
    WizParamEditDialog dialog;
    dialog.setParameter(edited);
    QCOMPARE(typeOption(dialog, 0)->isChecked(), checked == 0);
    QCOMPARE(typeOption(dialog, 1)->isChecked(), checked == 1);
    for (const char *control : { "ValueFrame", "ParamValList", "AddButton", "EditButton", "DeleteButton", "GetButton" })
        QVERIFY2(enabled(dialog, control) == valuesEnabled, control);
    QCOMPARE(enabled(dialog, "OKButton"), okEnabled);
    QCOMPARE(rows(dialog, "ParamValList").join(','), QString(pairs).replace('=', '|'));
    QCOMPARE(edited->paramType(), kind); // showing the kind changes nothing

    // A click on the string field keeps the values it leaves behind.
    QTest::mouseClick(typeOption(dialog, 0), Qt::LeftButton);
    QCOMPARE(edited->paramType(), 1);
    QVERIFY(!enabled(dialog, "GetButton"));
    QCOMPARE(edited->selections()->count(), int(pairs.count('=')));
}

void tst_ParamDialogs::theNameFieldKeepsThePrefixInFront_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("caret"); // -1: the prefix selected
    QTest::addColumn<QString>("keys"); // "<" is a backspace
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("caretAfter");
    QTest::newRow("x typed into the empty field") << "" << 0 << "x" << "@@@x" << 4;
    QTest::newRow("an @ of the prefix removed") << "@@@x" << 3 << "<" << "@@@@@x" << 5;
    QTest::newRow("the whole prefix selected and replaced") << "@@@x" << -1 << "y" << "@@@yx" << 4;
}

void tst_ParamDialogs::theNameFieldKeepsThePrefixInFront()
{
    QFETCH(QString, name);
    QFETCH(int, caret);
    QFETCH(QString, keys);
    QFETCH(QString, shown);
    QFETCH(int, caretAfter);
    const auto edited = parameter(name, 1, "T");
    WizParamEditDialog dialog;
    dialog.setParameter(edited);
    QLineEdit *field = the<QLineEdit>(dialog, "ParamEditNameText");
    if (caret < 0)
        field->setSelection(0, 3);
    else
        field->setCursorPosition(caret);
    for (const QChar key : keys) {
        if (key == '<')
            QTest::keyClick(field, Qt::Key_Backspace);
        else
            QTest::keyClicks(field, QString(key));
    }
    QCOMPARE(field->text(), shown);
    QCOMPARE(edited->paramName(), shown);
    QCOMPARE(field->cursorPosition(), caretAfter);
}

void tst_ParamDialogs::okWithMissingInputSaysSoAndStaysOpen()
{
    WizParamEditDialog dialog;
    dialog.setParameter(parameter("@@@a", 2, "A"));
    m_ui->script = [](QDialog &edit) {
        QVERIFY(!enabled(edit, "OKButton"));
        // The disabled button's handler is the last line of defence; it answers with a message.
        static_cast<WizParamEditDialog &>(edit).okClicked();
    };
    UiService::instance().execDialog(dialog);
    QVERIFY(!m_ui->closedByScript);
    QCOMPARE(m_ui->messages.size(), 1);
    QCOMPARE(m_ui->messages.first().text, "Input items required.");
    QCOMPARE(m_ui->messages.first().title, "Edit a parameter");
    QCOMPARE(m_ui->messages.first().buttons, UiService::Buttons::Ok);
}

void tst_ParamDialogs::valuesAreModifiedQuotedAndDeletedByHand()
{
    const auto edited = parameter("@@@region", 2, "Region", "NE=North East,SE=South East");
    WizParamEditDialog dialog;
    dialog.setParameter(edited);

    m_ui->then([](QDialog &values) {
        // The two captions a swap would confuse.
        QCOMPARE(the<QLabel>(values, "KeyLabel")->text(), "Value:");
        QCOMPARE(the<QLabel>(values, "ValueLabel")->text(), "Name:");
        type(values, "ParamValKeyText", "SE");
        type(values, "ParamValValText", "South East");
        click(values, "CancelButton");
    });
    click(dialog, "AddButton");
    QCOMPARE(rows(dialog, "ParamValList"), (QStringList{ "NE|North East", "SE|South East" }));

    // Modify opens on the chosen row; a changed name stays under the same value.
    selectRow(dialog, "ParamValList", 0);
    m_ui->then([](QDialog &values) {
        QCOMPARE(the<QLineEdit>(values, "ParamValKeyText")->text(), "NE");
        QCOMPARE(the<QLineEdit>(values, "ParamValValText")->text(), "North East");
        type(values, "ParamValValText", " Region");
        click(values, "OKButton");
    });
    click(dialog, "EditButton");
    QCOMPARE(rows(dialog, "ParamValList"), (QStringList{ "NE|North East Region*", "SE|South East" }));

    // A changed value keeps its row; values that are no SQL literal are told and quoted on request.
    QVERIFY(the<QLabel>(dialog, "ValueWarningLabel")->text().contains("NE, SE"));
    m_ui->then([](QDialog &values) {
        the<QLineEdit>(values, "ParamValKeyText")->setText("'NE'");
        click(values, "OKButton");
    });
    click(dialog, "EditButton");
    QCOMPARE(rows(dialog, "ParamValList"), (QStringList{ "'NE'|North East Region*", "SE|South East" }));
    QVERIFY(the<QLabel>(dialog, "ValueWarningLabel")->text().contains(": SE."));
    click(dialog, "QuoteButton");
    QCOMPARE(rows(dialog, "ParamValList"), (QStringList{ "'NE'|North East Region*", "'SE'|South East" }));
    QVERIFY(the<QLabel>(dialog, "ValueWarningLabel")->isHidden());
    QVERIFY(!enabled(dialog, "QuoteButton"));

    click(dialog, "DeleteButton");
    QCOMPARE(rows(dialog, "ParamValList"), QStringList{ "'SE'|South East*" });
    QVERIFY(m_ui->messages.isEmpty());
}

void tst_ParamDialogs::valueEditNeedsBothTexts_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("okEnabled");
    QTest::newRow("both") << "NE" << "North East" << true;
    QTest::newRow("no name") << "NE" << "" << false;
    QTest::newRow("no value") << "" << "North East" << false;
}

void tst_ParamDialogs::valueEditNeedsBothTexts()
{
    QFETCH(QString, value);
    QFETCH(QString, name);
    QFETCH(bool, okEnabled);
    m_ui->script = [&](QDialog &shown) {
        QVERIFY(enabled(shown, "OKButton"));
        the<QLineEdit>(shown, "ParamValKeyText")->clear();
        the<QLineEdit>(shown, "ParamValValText")->clear();
        QVERIFY(!enabled(shown, "OKButton"));
        type(shown, "ParamValKeyText", value);
        type(shown, "ParamValValText", name);
        QCOMPARE(enabled(shown, "OKButton"), okEnabled);
        click(shown, "OKButton");
    };
    const std::optional<SelectionValue> confirmed = editSelectionValue(nullptr, "old", "Old");
    QCOMPARE(m_ui->closedByScript, okEnabled);
    QCOMPARE(confirmed ? confirmed->value + '=' + confirmed->name : QString(), okEnabled ? value + '=' + name : QString());
}

void tst_ParamDialogs::valuesFromTwoColumnsReplaceTheOldOnes()
{
    auto definition = std::make_shared<SQLInfo>();
    definition->setDbInfo(testservice::sampleDatabase());
    const auto proxy = testservice::sampleService();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    accessor.setErrorReporter(showDatabaseError);
    const auto edited = parameter("@@@region", 2, "Region", "XX=Old");
    WizParamEditDialog dialog;
    dialog.setParameter(edited);
    dialog.setValueSource({ &accessor, definition->dbInfo() });

    // Which tables, columns and pairs are offered is the decision's to test; here, the wiring.
    m_ui->then([&](QDialog &get) {
        // The two captions a swap would confuse.
        QCOMPARE(the<QLabel>(get, "KeyLabel")->text(), "Column as Selected Value");
        QCOMPARE(the<QLabel>(get, "ValueLabel")->text(), "Column as Display Name");
        choose(get, "ParamDBGTableCombo", "regions");
        choose(get, "ParamDBGKeyColCombo", "code");
        QVERIFY(!enabled(get, "OKButton"));
        choose(get, "ParamDBGValColCombo", "name");
        QCOMPARE(items(get, "ParamDBGValColList").size(), 6);
        QVERIFY(m_ui->busyCalls > 0); // the requests ran under the busy cursor
        the<QCheckBox>(get, "ParamDBGLiteralCheck")->click();
        QVERIFY(items(get, "ParamDBGKeyColList").contains("'NE'"));
        click(get, "OKButton");
    });
    click(dialog, "GetButton");
    QVERIFY(m_ui->closedByScript);
    QCOMPARE(edited->selections()->count(), 6);
    QVERIFY(!edited->selections()->contains("XX"));
    QCOMPARE(edited->selections()->item("'NE'").toString(), "North East");
    QVERIFY(the<QLabel>(dialog, "ValueWarningLabel")->isHidden());
    QCOMPARE(rows(dialog, "ParamValList").size(), 6);
    QVERIFY(enabled(dialog, "OKButton"));
    QCOMPARE(m_ui->dialogs.size(), 1); // no database error on the way
}

QTEST_MAIN(tst_ParamDialogs)
#include "tst_paramdialogs.moc"
