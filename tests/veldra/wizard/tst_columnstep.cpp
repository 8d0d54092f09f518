#include "../common/definitions.h"
#include "wizardfixture.h"

#include "veldra/records/tableinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/columnstep.h"
#include "veldra/wizard/tablestep.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;

namespace {

QStringList selections(const WizardState &state)
{
    return state.definition()->selections()->items();
}

} // namespace

class tst_ColumnStep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StringTable::setLanguage(Language::English); }

    void prepareFetchesUnknownTablesWithoutSharingTheCache();
    void prepareFailsWhenATableHasNoColumns();
    void aliasEditFollowsTheAliasRules_data();
    void aliasEditFollowsTheAliasRules();
    void insertKeepsEachItemOnceAndRemoveSelectsTheNextRow();
    void expressionEditStartsInlineUpTo250Characters_data();
    void expressionEditStartsInlineUpTo250Characters();
    void expressionEditEnds_data();
    void expressionEditEnds();
    void deletingAnExpressionRemovesItsSelection();
};

void tst_ColumnStep::prepareFetchesUnknownTablesWithoutSharingTheCache()
{
    WizardState state;
    auto service = testservice::sqliteStructure({ { "staff", { "id", "boss" } } });
    auto query = testwizard::sampleQuery();
    select(*query, { "regions.name" }); // a table that is no longer chosen
    service->levels["SQLite/Sample/main"].append("staff");
    testwizard::start(state, query, service);
    state.tables().setChosen("staff", true);

    ColumnStep &step = state.columns();
    QVERIFY(step.prepare());
    const SQLInfo &definition = *state.definition();
    QCOMPARE(definition.getTableNames(), "orders,customers,staff");
    QCOMPARE(step.tableNames(), QStringList({ "orders", "customers", "staff" }));
    QCOMPARE(step.columnNames("staff"), QStringList({ "id", "boss" }));
    QCOMPARE(selections(state), QStringList({ "orders.id", "orders.amount", "SUM(amount)" }));
    for (const QString &name : step.tableNames())
        QCOMPARE(definition.tables()->object<TableInfo>(name)->dbInfo(), definition.dbInfo());

    // An alias given in the wizard stays out of the accessor's cache.
    QVERIFY(step.insertColumnSelection("staff", "boss"));
    step.setSelectionAlias("staff.boss", "Manager");
    const auto cached = state.accessor()->GetTableInfoAt("SQLite", "Sample", "main", "staff");
    QCOMPARE(cached->columns()->object<ColumnInfo>("boss")->alias(), QString());
    QCOMPARE(definition.getColumnInfoFromDispName(u"Manager")->GetSelectionName(), "staff.boss");

    // Coming back to the step asks nothing again.
    const int asked = int(service->requests.size());
    QVERIFY(step.prepare());
    QCOMPARE(service->requests.size(), asked);
}

void tst_ColumnStep::prepareFailsWhenATableHasNoColumns()
{
    WizardState state;
    auto service = testservice::sqliteStructure({ { "empty", {} } });
    testwizard::start(state, std::make_shared<SQLInfo>(), service);
    state.accessor()->setErrorReporter([](const DatabaseErrorReport &) {});
    state.tables().setChosen("empty", true);
    QVERIFY(!state.columns().prepare());
}

void tst_ColumnStep::aliasEditFollowsTheAliasRules_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("alias"); // of the row afterwards
    const int unchanged = int(ColumnStep::AliasEdit::Unchanged);
    const int refused = int(ColumnStep::AliasEdit::Refused);
    const int accepted = int(ColumnStep::AliasEdit::Accepted);
    QTest::newRow("the blank label as it was") << "orders.id" << "<Blank>" << unchanged << "";
    QTest::newRow("the alias as it was") << "orders.amount" << "Total" << unchanged << "Total";
    QTest::newRow("a new alias") << "orders.id" << "Number" << accepted << "Number";
    QTest::newRow("another row's alias") << "orders.id" << "Total" << refused << "";
    QTest::newRow("another row's display name") << "orders.id" << "SUM(amount)" << refused << "";
    QTest::newRow("its own display name") << "orders.id" << "orders.id" << refused << "";
    QTest::newRow("comparison is exact") << "orders.id" << "total" << accepted << "total";
    QTest::newRow("empty while another row has no alias") << "orders.amount" << "" << refused << "Total";
    QTest::newRow("an unselected item's name: no duplicate, but no name either")
            << "orders.id" << "customers.name" << refused << "";
    // What the engines cannot take as written is refused too.
    QTest::newRow("a blank") << "orders.id" << "Total Revenue" << refused << "";
    QTest::newRow("the blank label for an aliased row") << "orders.amount" << "<Blank>" << refused << "Total";
    QTest::newRow("a hyphen") << "orders.id" << "Net-Sales" << refused << "";
    QTest::newRow("a digit first") << "orders.id" << "2023" << refused << "";
    QTest::newRow("digits and _ after a letter") << "orders.id" << "_id2" << accepted << "_id2";
    QTest::newRow("letters of another script") << "orders.id" << "売上" << accepted << "売上";
    QTest::newRow("reserved, any case") << "orders.id" << "oRdEr" << refused << "";
    QTest::newRow("reserved first word") << "orders.id" << "Add" << refused << "";
    QTest::newRow("reserved last word") << "orders.id" << "year" << refused << "";
    QTest::newRow("reserved by SQLite only") << "orders.id" << "glob" << refused << "";
    QTest::newRow("a key word either engine takes as a name") << "orders.id" << "Key" << accepted << "Key";
    QTest::newRow("double quotes around a blank") << "orders.id" << "\"Total Revenue\"" << accepted
                                                  << "\"Total Revenue\"";
    QTest::newRow("a reserved word in double quotes") << "orders.id" << "\"Order\"" << accepted << "\"Order\"";
    QTest::newRow("quotes doubled inside") << "orders.id" << "\"a\"\"b\"" << accepted << "\"a\"\"b\"";
    QTest::newRow("a lone quote inside") << "orders.id" << "\"a\"b\"" << refused << "";
    QTest::newRow("a comma inside quotes") << "orders.id" << "\"a,b\"" << refused << "";
    QTest::newRow("empty quotes") << "orders.id" << "\"\"" << refused << "";
}

void tst_ColumnStep::aliasEditFollowsTheAliasRules()
{
    QFETCH(QString, row);
    QFETCH(QString, typed);
    QFETCH(int, result);
    QFETCH(QString, alias);
    WizardState state;
    testwizard::start(state, testwizard::sampleQuery());
    ColumnStep &step = state.columns();
    QVERIFY(step.prepare());
    QCOMPARE(int(step.editAlias(row, typed)), result);
    QCOMPARE(state.definition()->getColumnInfo(row)->alias(), alias);
}

void tst_ColumnStep::insertKeepsEachItemOnceAndRemoveSelectsTheNextRow()
{
    WizardState state;
    testwizard::start(state, testwizard::sampleQuery());
    ColumnStep &step = state.columns();
    QVERIFY(step.prepare());
    QVERIFY(step.insertColumnSelection("customers", "name"));
    QVERIFY(!step.insertColumnSelection("orders", "id"));
    QCOMPARE(step.selectedName(), "orders.id");
    QVERIFY(!step.insertColumnSelection("orders", "nothing"));
    QVERIFY(!step.insertColumnSelection("regions", "id"));
    QVERIFY(step.insertExpressionSelection("COUNT(*)"));
    QVERIFY(!step.insertExpressionSelection("MAX(id)"));
    QCOMPARE(selections(state),
             QStringList({ "orders.id", "orders.amount", "SUM(amount)", "customers.name", "COUNT(*)" }));

    step.moveSelectionUp("orders.id"); // the first row stays first
    step.moveSelectionDown("orders.id");
    QCOMPARE(selections(state).mid(0, 2), QStringList({ "orders.amount", "orders.id" }));
    step.removeSelection("COUNT(*)"); // the last row: the one before it is next
    QCOMPARE(step.selectedName(), "customers.name");
    for (const QString &name : selections(state))
        step.removeSelection(name);
    QVERIFY(step.selectedName().isEmpty());
    QVERIFY(!step.isComplete());
}

void tst_ColumnStep::expressionEditStartsInlineUpTo250Characters_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<bool>("held");
    QTest::addColumn<int>("start");
    const QString long250 = "SUM(" + QString(245, 'a') + ")";
    QTest::newRow("250 characters inline") << long250 << true << int(ColumnStep::ExpressionEditStart::Inline);
    QTest::newRow("251 characters in the dialog")
            << long250 + "+" << true << int(ColumnStep::ExpressionEditStart::AskForDialog);
    QTest::newRow("the new row from empty") << "" << false << int(ColumnStep::ExpressionEditStart::InlineFromEmpty);
    QTest::newRow("text that is no expression from empty")
            << "MAX(b)" << false << int(ColumnStep::ExpressionEditStart::InlineFromEmpty);
}

void tst_ColumnStep::expressionEditStartsInlineUpTo250Characters()
{
    QFETCH(QString, expression);
    QFETCH(bool, held);
    QFETCH(int, start);
    auto query = testwizard::sampleQuery();
    if (held)
        addExpression(*query, expression);
    WizardState state;
    testwizard::start(state, query);
    QCOMPARE(int(state.columns().startExpressionEdit(expression)), start);
}

void tst_ColumnStep::expressionEditEnds_data()
{
    QTest::addColumn<QString>("oldText");
    QTest::addColumn<QString>("newText");
    QTest::addColumn<int>("end");
    QTest::addColumn<QStringList>("expressions");
    QTest::addColumn<QStringList>("selected");
    const QStringList before{ "SUM(amount)", "COUNT(*)" };
    const QStringList selectedBefore{ "orders.id", "orders.amount", "SUM(amount)" };
    const int cancelled = int(ColumnStep::ExpressionEditEnd::Cancelled);
    QTest::newRow("typed into the new row") << "" << "MAX(id)" << int(ColumnStep::ExpressionEditEnd::Added)
                                            << QStringList{ "SUM(amount)", "COUNT(*)", "MAX(id)" } << selectedBefore;
    QTest::newRow("an existing one into the new row")
            << "" << "COUNT(*)" << int(ColumnStep::ExpressionEditEnd::Duplicate) << before << selectedBefore;
    QTest::newRow("renamed into another existing one")
            << "SUM(amount)" << "COUNT(*)" << int(ColumnStep::ExpressionEditEnd::Duplicate) << before << selectedBefore;
    QTest::newRow("emptied") << "SUM(amount)" << "" << cancelled << before << selectedBefore;
    QTest::newRow("unchanged") << "SUM(amount)" << "SUM(amount)" << cancelled << before << selectedBefore;
    QTest::newRow("renamed: its selection follows")
            << "SUM(amount)" << "AVG(amount)" << int(ColumnStep::ExpressionEditEnd::Replaced)
            << QStringList{ "COUNT(*)", "AVG(amount)" } << QStringList{ "orders.id", "orders.amount", "AVG(amount)" };
}

void tst_ColumnStep::expressionEditEnds()
{
    QFETCH(QString, oldText);
    QFETCH(QString, newText);
    QFETCH(int, end);
    QFETCH(QStringList, expressions);
    QFETCH(QStringList, selected);
    WizardState state;
    testwizard::start(state, testwizard::sampleQuery());
    ColumnStep &step = state.columns();
    QVERIFY(step.prepare());
    QCOMPARE(int(step.finishExpressionEdit(oldText, newText)), end);
    QCOMPARE(step.expressionTexts(), expressions);
    QCOMPARE(selections(state), selected);
    for (const QString &expression : expressions) {
        const auto item = state.definition()->expressions()->object<ColumnInfo>(expression);
        QCOMPARE(item->express(), expression);
        QCOMPARE(item->columnType(), ColumnInfo::Expression);
    }
}

void tst_ColumnStep::deletingAnExpressionRemovesItsSelection()
{
    WizardState state;
    testwizard::start(state, testwizard::sampleQuery());
    ColumnStep &step = state.columns();
    QVERIFY(step.prepare());
    step.setSelectedExpression("SUM(amount)");
    QVERIFY(step.canChangeExpression());
    step.deleteExpression("SUM(amount)");
    QCOMPARE(step.expressionTexts(), QStringList{ "COUNT(*)" });
    QCOMPARE(selections(state), QStringList({ "orders.id", "orders.amount" }));
    QVERIFY(!step.canChangeExpression());
}

QTEST_GUILESS_MAIN(tst_ColumnStep)
#include "tst_columnstep.moc"
