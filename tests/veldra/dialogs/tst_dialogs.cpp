#include "recordinguiservice.h"

#include "tessaly/consoleuiservice.h"
#include "veldra/service/databaseerrorreport.h"
#include "veldra/dialogs/exprdialogdecision.h"
#include "veldra/dialogs/expressionchecker.h"
#include "veldra/dialogs/formhelpers.h"
#include "tessaly/error.h"
#include "veldra/dialogs/wizdberrordialog.h"
#include "veldra/dialogs/wizexprdialog.h"
#include "veldra/resources/stringtable.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace veldra;
using tessaly::UiService;

namespace {

// The wizard's part: the expressions the query already holds, compared exactly.
struct ExistingExpressions final : ExpressionChecker
{
    explicit ExistingExpressions(QStringList expressions) : held(std::move(expressions)) {}
    bool expressionExists(const QString &e) const override { asked.append(e); return held.contains(e); }
    QStringList held;
    mutable QStringList asked;
};

// Types text into the expression dialog, if given, then clicks a button.
void press(QDialog &dialog, const QString &button, const QString &text = {})
{
    auto *edit = dialog.findChild<QPlainTextEdit *>("AddExprText");
    auto *pushButton = dialog.findChild<QPushButton *>(button);
    QVERIFY2(pushButton && (text.isNull() || edit), qPrintable(button));
    if (!text.isNull())
        edit->setPlainText(text);
    QTest::mouseClick(pushButton, Qt::LeftButton);
}

} // namespace

class tst_Dialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void lineBreaksAreRemovedWithoutASpace();
    void expressionDialogDecidesOnTheTextWithoutLineBreaks_data();
    void expressionDialogDecidesOnTheTextWithoutLineBreaks();
    void databaseErrorShowsTheHexCodeAndWhereTheRequestWent_data();
    void databaseErrorShowsTheHexCodeAndWhereTheRequestWent();
    void databaseErrorDialogClosesOnOkOnlyAndDetailDoesNothing();
    void anErrorInAHandlerIsShownToThePerson();
    void consoleWritesOneLineAndAnswersQuestionsNegatively_data();
    void consoleWritesOneLineAndAnswersQuestionsNegatively();

private:
    std::shared_ptr<testui::RecordingUiService> m_ui;
};

void tst_Dialogs::init()
{
    StringTable::setLanguage(Language::English);
    m_ui = std::make_shared<testui::RecordingUiService>();
    UiService::setInstance(m_ui);
}

void tst_Dialogs::cleanup()
{
    UiService::setInstance(nullptr);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void tst_Dialogs::lineBreaksAreRemovedWithoutASpace()
{
    // Asked directly: the dialog's text edit never hands a lone CR on. Spaces and tabs stay.
    const ExistingExpressions checker({});
    const ExprDialogDecision decision = decideExpression(" \na\rb\r\n\nc\r + d\t", "", false, checker);
    QVERIFY(decision.accepted);
    QCOMPARE(decision.expression, " abc + d\t");
    QCOMPARE(checker.asked, QStringList{ " abc + d\t" });
}

void tst_Dialogs::expressionDialogDecidesOnTheTextWithoutLineBreaks_data()
{
    QTest::addColumn<bool>("editMode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("asked"); // whether it exists, of the wizard
    QTest::addColumn<bool>("confirmed");
    const auto row = [](const char *name, bool editMode, const QString &typed, const QString &button,
                        const QStringList &asked, bool confirmed) {
        QTest::newRow(name) << editMode << typed << button << asked << confirmed;
    };
    // The query holds SUM(a)+1, MAX(b) and sum(a)+1; the dialog opens on SUM(a)+1.
    const QString ok = "OKButton";
    row("add: CR and LF removed wherever they stand, without a space", false, "\nMIN(\rc)\r\n\n+1\r", ok,
        { "MIN(c)+1" }, true);
    row("add: empty expression is not refused", false, "", ok, { "" }, true);
    row("add: the one it opened on refused", false, "SUM(a)+1", ok, { "SUM(a)+1" }, false);
    row("add: existence asked without the line breaks", false, "MAX\n(b)", ok, { "MAX(b)" }, false);
    row("edit: unchanged accepted", true, "SUM(a)+1", ok, { "SUM(a)+1" }, true);
    row("edit: unchanged once the line break is gone", true, "SUM(a)\r\n+1", ok, { "SUM(a)+1" }, true);
    row("edit: into another existing one refused", true, "MAX(b)", ok, { "MAX(b)" }, false);
    row("edit: into a new one accepted", true, "MIN(c)", ok, { "MIN(c)" }, true);
    row("edit: comparison is exact", true, "sum(a)+1", ok, { "sum(a)+1" }, false);
    row("Cancel changes nothing", true, "MIN(c)", "CancelButton", {}, false);
}

void tst_Dialogs::expressionDialogDecidesOnTheTextWithoutLineBreaks()
{
    QFETCH(bool, editMode);
    QFETCH(QString, typed);
    QFETCH(QString, button);
    QFETCH(QStringList, asked);
    QFETCH(bool, confirmed);
    // An earlier OK sets the expression; it must not answer for the Popup under test.
    WizExprDialog dialog;
    const ExistingExpressions none({});
    m_ui->script = [](QDialog &shown) { press(shown, "OKButton", "SUM(a)+1"); };
    QVERIFY(dialog.Popup(&none, false));
    m_ui->dialogs.clear();

    const ExistingExpressions checker({ "SUM(a)+1", "MAX(b)", "sum(a)+1" });
    QString shownText;
    QString textAfterwards;
    m_ui->script = [&](QDialog &shown) {
        shownText = shown.findChild<QPlainTextEdit *>("AddExprText")->toPlainText();
        press(shown, button, typed);
        textAfterwards = shown.findChild<QPlainTextEdit *>("AddExprText")->toPlainText();
    };
    QCOMPARE(dialog.Popup(&checker, editMode), confirmed);
    QCOMPARE(dialog.confirmed(), confirmed);
    QCOMPARE(checker.asked, asked);
    QCOMPARE(dialog.Expression(), confirmed ? asked.first() : QString("SUM(a)+1"));
    QCOMPARE(m_ui->dialogs.size(), 1);
    QCOMPARE(m_ui->dialogs.first().title, editMode ? "Edit expression" : "Add expression");
    QCOMPARE(shownText, "SUM(a)+1");
    // A refusal keeps the dialog open with the text as typed, and says why.
    const bool refused = !asked.isEmpty() && !confirmed;
    QCOMPARE(m_ui->closedByScript, !refused);
    QCOMPARE(m_ui->messages.size(), refused ? 1 : 0);
    if (refused) {
        QCOMPARE(textAfterwards, typed);
        QCOMPARE(m_ui->messages.first().text, "The same expression is already existing.");
        QCOMPARE(m_ui->messages.first().title, "Duplicate expression");
        QCOMPARE(m_ui->messages.first().buttons, UiService::Buttons::Ok);
    }
}

void tst_Dialogs::databaseErrorShowsTheHexCodeAndWhereTheRequestWent_data()
{
    QTest::addColumn<bool>("windows");
    QTest::addColumn<Language>("language");
    QTest::addColumn<QStringList>("lines"); // title, statement, then a dialog's labels and texts
    const QStringList english{ "Database error", "Failed to get informations from database.", "Error Code: 80004005",
                               "Provider: SQLite", "Data Source: Sample", "Catalog: main", "Table: orders" };
    QTest::newRow("dialog") << true << Language::English << english;
    QTest::newRow("report without windows") << false << Language::English << english;
    QTest::newRow("report in Japanese, full-width colon without a space")
            << false << Language::Japanese
            << QStringList{ StringTable::text(StringId::DatabaseErrorTitle, Language::Japanese),
                            StringTable::text(StringId::DatabaseErrorMessage, Language::Japanese),
                            QString::fromUtf8("エラーコード：80004005"), QString::fromUtf8("プロバイダー：SQLite"),
                            QString::fromUtf8("データソース：Sample"), QString::fromUtf8("カタログ：main"),
                            QString::fromUtf8("テーブル：orders") };
}

void tst_Dialogs::databaseErrorShowsTheHexCodeAndWhereTheRequestWent()
{
    QFETCH(bool, windows);
    QFETCH(Language, language);
    QFETCH(QStringList, lines);
    StringTable::setLanguage(language);
    m_ui->windows = windows;
    showDatabaseError({ -2147467259, "SQLite", "Sample", "main", "orders", "file does not exist: /x.db" });
    QCOMPARE(m_ui->dialogs.size(), windows ? 1 : 0);
    QList<QStringList> shown = m_ui->reports;
    for (const testui::DialogSeen &seen : m_ui->dialogs) {
        QCOMPARE(seen.objectName, "WizDBErrorDialog");
        // Beside the system's fields, the service's reason.
        QCOMPARE(seen.texts.value("ReasonText"), "file does not exist: /x.db");
        QStringList texts{ seen.title, seen.texts.value("Label") };
        for (const QString field : { "ErrorCode", "Provider", "DSN", "Catalog", "Table" })
            texts.append(seen.texts.value(field + "Label") + ' ' + seen.texts.value(field + "Text"));
        shown.append(texts);
    }
    QCOMPARE(shown, QList<QStringList>{ lines });
}

void tst_Dialogs::databaseErrorDialogClosesOnOkOnlyAndDetailDoesNothing()
{
    WizDBErrorDialog dialog;
    m_ui->script = [](QDialog &shown) { press(shown, "DetailButton"); };
    m_ui->execDialog(dialog);
    QVERIFY(!m_ui->closedByScript);
    m_ui->script = [](QDialog &shown) { press(shown, "OKButton"); };
    QCOMPARE(m_ui->execDialog(dialog), int(QDialog::Accepted));
}

void tst_Dialogs::anErrorInAHandlerIsShownToThePerson()
{
    WizExprDialog dialog;
    dialog.setWindowTitle("Edit expression");
    QVERIFY(form::guarded(&dialog, [] {}));
    QVERIFY(!form::guarded(&dialog, [] { throw tessaly::Error(tessaly::ErrorNumber::Fail, "the file is gone"); }));
    QCOMPARE(m_ui->reports, QList<QStringList>{ QStringList({ "Edit expression", "the file is gone" }) });
}

void tst_Dialogs::consoleWritesOneLineAndAnswersQuestionsNegatively_data()
{
    QTest::addColumn<UiService::Buttons>("buttons");
    QTest::addColumn<UiService::Answer>("answer");
    QTest::addColumn<QString>("line");
    QTest::newRow("message") << UiService::Buttons::Ok << UiService::Answer::Ok << "Title: first second";
    QTest::newRow("OK/Cancel") << UiService::Buttons::OkCancel << UiService::Answer::Cancel
                               << "Title: first second [no one to ask: Cancel]";
    QTest::newRow("Yes/No") << UiService::Buttons::YesNo << UiService::Answer::No
                            << "Title: first second [no one to ask: No]";
}

void tst_Dialogs::consoleWritesOneLineAndAnswersQuestionsNegatively()
{
    QFETCH(UiService::Buttons, buttons);
    QFETCH(UiService::Answer, answer);
    QFETCH(QString, line);
    QStringList lines;
    tessaly::ConsoleUiService console([&lines](const QString &text) { lines.append(text); });
    QVERIFY(!console.showsWindows());
    QCOMPARE(console.message("first\r\nsecond", "Title", buttons), answer);
    QCOMPARE(lines, QStringList{ line });

    lines.clear();
    console.report("Database error", { "Failed.", "Error Code: 80004005", "Table: orders" });
    QCOMPARE(lines, QStringList{ "Database error: Failed. (Error Code: 80004005, Table: orders)" });
}

QTEST_MAIN(tst_Dialogs)
#include "tst_dialogs.moc"
