#include "recordinguiservice.h"

#include "tessaly/consoleuiservice.h"
#include "veldra/dialogs/databaseerrorreport.h"
#include "veldra/dialogs/exprdialogdecision.h"
#include "veldra/dialogs/expressionchecker.h"
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
class ExistingExpressions final : public ExpressionChecker
{
public:
    explicit ExistingExpressions(QStringList expressions) : m_expressions(std::move(expressions)) {}
    bool expressionExists(const QString &expression) const override
    {
        asked.append(expression);
        return m_expressions.contains(expression);
    }
    mutable QStringList asked;

private:
    QStringList m_expressions;
};

void click(QDialog &dialog, const QString &button)
{
    auto *pushButton = dialog.findChild<QPushButton *>(button);
    QVERIFY2(pushButton, qPrintable(button));
    QTest::mouseClick(pushButton, Qt::LeftButton);
}

void type(QDialog &dialog, const QString &text)
{
    auto *edit = dialog.findChild<QPlainTextEdit *>("AddExprText");
    QVERIFY(edit);
    edit->setPlainText(text);
}

const DatabaseErrorReport failedColumns{ -2147467259, "SQLite", "Sample", "main", "orders" };

} // namespace

class tst_Dialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void okDecidesOnTheTextWithoutLineBreaks_data();
    void okDecidesOnTheTextWithoutLineBreaks();
    void expressionDialogAcceptsOrRefusesWithAMessage_data();
    void expressionDialogAcceptsOrRefusesWithAMessage();
    void cancelLeavesExpressionAndConfirmedAsTheyWere();

    void databaseErrorDialogShowsTheHexCodeAndWhereTheRequestWent();
    void databaseErrorDialogClosesOnOkOnlyAndDetailDoesNothing();
    void withoutWindowsTheDatabaseErrorIsReported_data();
    void withoutWindowsTheDatabaseErrorIsReported();
    void consoleWritesOneLineAndAnswersQuestionsNegatively_data();
    void consoleWritesOneLineAndAnswersQuestionsNegatively();

private:
    std::unique_ptr<testui::RecordingScope> m_ui;
};

void tst_Dialogs::init()
{
    StringTable::setLanguage(Language::English);
    m_ui = std::make_unique<testui::RecordingScope>();
}

void tst_Dialogs::cleanup()
{
    m_ui.reset();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void tst_Dialogs::okDecidesOnTheTextWithoutLineBreaks_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("original");
    QTest::addColumn<bool>("editMode");
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("expression");

    QTest::newRow("line break removed without a space")
            << "SUM(a)\r\n+1" << "" << false << QStringList{} << true << "SUM(a)+1";
    QTest::newRow("lone CR and LF removed wherever they stand")
            << "\na\rb\n\nc\r" << "" << false << QStringList{} << true << "abc";
    QTest::newRow("spaces and tabs kept, nothing trimmed")
            << " a\t+ b " << "" << false << QStringList{} << true << " a\t+ b ";
    QTest::newRow("empty expression is not refused") << "" << "" << false << QStringList{} << true << "";
    QTest::newRow("adding an existing expression refused")
            << "SUM(a)" << "" << false << QStringList{ "SUM(a)" } << false << "SUM(a)";
    QTest::newRow("existence asked without the line breaks")
            << "SUM(a)\n+1" << "" << false << QStringList{ "SUM(a)+1" } << false << "SUM(a)+1";
    QTest::newRow("unchanged edit accepted")
            << "SUM(a)" << "SUM(a)" << true << QStringList{ "SUM(a)" } << true << "SUM(a)";
    QTest::newRow("edit unchanged once the line break is gone")
            << "SUM(a)\r\n+1" << "SUM(a)+1" << true << QStringList{ "SUM(a)+1" } << true << "SUM(a)+1";
    QTest::newRow("edit into another existing expression refused")
            << "MAX(b)" << "SUM(a)" << true << QStringList{ "SUM(a)", "MAX(b)" } << false << "MAX(b)";
    QTest::newRow("edit into a new expression accepted")
            << "MIN(c)" << "SUM(a)" << true << QStringList{ "SUM(a)" } << true << "MIN(c)";
    QTest::newRow("comparison is exact") << "sum(a)" << "SUM(a)" << true << QStringList{ "SUM(a)", "sum(a)" }
                                         << false << "sum(a)";
}

void tst_Dialogs::okDecidesOnTheTextWithoutLineBreaks()
{
    QFETCH(QString, typed);
    QFETCH(QString, original);
    QFETCH(bool, editMode);
    QFETCH(QStringList, existing);
    QFETCH(bool, accepted);
    QFETCH(QString, expression);
    const ExistingExpressions checker(existing);
    const ExprDialogDecision decision = decideExpression(typed, original, editMode, checker);
    QCOMPARE(decision.accepted, accepted);
    QCOMPARE(decision.expression, expression);
    QCOMPARE(checker.asked, QStringList{ expression });
}

void tst_Dialogs::expressionDialogAcceptsOrRefusesWithAMessage_data()
{
    QTest::addColumn<bool>("editMode");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("confirmed");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("expression");

    // The query holds SUM(a) and MAX(b); the dialog opens on SUM(a).
    QTest::newRow("new expression over two lines") << false << "SUM(c)\r\n+1" << true << "Add expression" << "SUM(c)+1";
    QTest::newRow("adding an existing one") << false << "MAX(b)" << false << "Add expression" << "SUM(a)";
    QTest::newRow("edit without a change") << true << "SUM(a)" << true << "Edit expression" << "SUM(a)";
    QTest::newRow("edit into another existing one") << true << "MAX(b)" << false << "Edit expression" << "SUM(a)";
}

void tst_Dialogs::expressionDialogAcceptsOrRefusesWithAMessage()
{
    QFETCH(bool, editMode);
    QFETCH(QString, typed);
    QFETCH(bool, confirmed);
    QFETCH(QString, title);
    QFETCH(QString, expression);
    const ExistingExpressions checker({ "SUM(a)", "MAX(b)" });
    WizExprDialog dialog;
    dialog.setExpression("SUM(a)");
    QString shownText;
    QString typedAfterMessage;
    (*m_ui)->script = [&](QDialog &shown) {
        shownText = shown.findChild<QPlainTextEdit *>("AddExprText")->toPlainText();
        type(shown, typed);
        click(shown, "OKButton");
        typedAfterMessage = shown.findChild<QPlainTextEdit *>("AddExprText")->toPlainText();
    };

    QCOMPARE(dialog.Popup(&checker, editMode), confirmed);
    QCOMPARE(dialog.confirmed(), confirmed);
    QCOMPARE(dialog.Expression(), expression);
    QCOMPARE((*m_ui)->dialogs.size(), 1);
    QCOMPARE((*m_ui)->dialogs.first().title, title);
    QCOMPARE(shownText, "SUM(a)");
    // A refusal keeps the dialog open with the text as typed.
    QCOMPARE((*m_ui)->closedByScript, confirmed);
    if (confirmed) {
        QVERIFY((*m_ui)->messages.isEmpty());
    } else {
        QCOMPARE(typedAfterMessage, typed);
        QCOMPARE((*m_ui)->messages.size(), 1);
        const testui::Message message = (*m_ui)->messages.first();
        QCOMPARE(message.text, "The same expression is already existing.");
        QCOMPARE(message.title, "Duplicate expression");
        QCOMPARE(message.buttons, UiService::Buttons::Ok);
    }
}

void tst_Dialogs::cancelLeavesExpressionAndConfirmedAsTheyWere()
{
    const ExistingExpressions checker({});
    WizExprDialog dialog;
    (*m_ui)->script = [](QDialog &shown) {
        type(shown, "AVG(x)");
        click(shown, "OKButton");
    };
    QVERIFY(dialog.Popup(&checker, false));
    QCOMPARE(dialog.Expression(), "AVG(x)");

    (*m_ui)->script = [](QDialog &shown) {
        type(shown, "AVG(y)");
        click(shown, "CancelButton");
    };
    QVERIFY(!dialog.Popup(&checker, true));
    QVERIFY((*m_ui)->closedByScript);
    QCOMPARE(dialog.Expression(), "AVG(x)");
    QVERIFY(!dialog.confirmed());
}

void tst_Dialogs::databaseErrorDialogShowsTheHexCodeAndWhereTheRequestWent()
{
    showDatabaseError(failedColumns);
    QCOMPARE((*m_ui)->dialogs.size(), 1);
    const testui::DialogSeen seen = (*m_ui)->dialogs.first();
    QCOMPARE(seen.title, "Database error");
    const QHash<QString, QString> expected{
        { "Label", "Failed to get informations from database." },
        { "ProviderLabel", "Provider:" }, { "ProviderText", "SQLite" },
        { "DSNLabel", "Data Source:" }, { "DSNText", "Sample" },
        { "CatalogLabel", "Catalog:" }, { "CatalogText", "main" },
        { "TableLabel", "Table:" }, { "TableText", "orders" },
        { "ErrorCodeLabel", "Error Code:" }, { "ErrorCodeText", "80004005" },
    };
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(seen.texts.value(it.key()), it.value());
}

void tst_Dialogs::databaseErrorDialogClosesOnOkOnlyAndDetailDoesNothing()
{
    WizDBErrorDialog dialog;
    QCOMPARE(dialog.windowTitle(), "Database Error");
    QCOMPARE(dialog.findChild<QLabel *>("Label")->text(), "Database Error");
    QCOMPARE(dialog.findChild<QPushButton *>("DetailButton")->text(), "Detail");
    (*m_ui)->script = [](QDialog &shown) { click(shown, "DetailButton"); };
    (*m_ui)->execDialog(dialog);
    QVERIFY(!(*m_ui)->closedByScript);

    (*m_ui)->script = [](QDialog &shown) { click(shown, "OKButton"); };
    QCOMPARE((*m_ui)->execDialog(dialog), int(QDialog::Accepted));
}

void tst_Dialogs::withoutWindowsTheDatabaseErrorIsReported_data()
{
    QTest::addColumn<Language>("language");
    QTest::addColumn<QStringList>("report");
    QTest::newRow("English") << Language::English
                             << QStringList{ "Database error", "Failed to get informations from database.",
                                             "Error Code: 80004005", "Provider: SQLite", "Data Source: Sample",
                                             "Catalog: main", "Table: orders" };
    QTest::newRow("Japanese, full-width colon without a space")
            << Language::Japanese
            << QStringList{ StringTable::text(StringId::DatabaseErrorTitle, Language::Japanese),
                            StringTable::text(StringId::DatabaseErrorMessage, Language::Japanese),
                            QString::fromUtf8("エラーコード：80004005"), QString::fromUtf8("プロバイダー：SQLite"),
                            QString::fromUtf8("データソース：Sample"), QString::fromUtf8("カタログ：main"),
                            QString::fromUtf8("テーブル：orders") };
}

void tst_Dialogs::withoutWindowsTheDatabaseErrorIsReported()
{
    QFETCH(Language, language);
    QFETCH(QStringList, report);
    StringTable::setLanguage(language);
    (*m_ui)->windows = false;
    showDatabaseError(failedColumns);
    QVERIFY((*m_ui)->dialogs.isEmpty());
    QCOMPARE((*m_ui)->reports, QList<QStringList>{ report });
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
