// What the parameter dialogs decide, without windows; the values read from two columns come
// from the sample database through the real data service.

#include "../common/definitions.h"
#include "../common/sampleservice.h"

#include "tessaly/namemap.h"
#include "veldra/dialogs/dbgetdecision.h"
#include "veldra/dialogs/listselection.h"
#include "veldra/dialogs/parameditdecision.h"
#include "veldra/dialogs/paramlistdecision.h"
#include "veldra/dialogs/sqlliteral.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;
using tessaly::NameMap;

namespace {

// "value=name" in order, the chosen row marked with "*".
QString shown(const QList<SelectionValueRow> &rows)
{
    QStringList values;
    for (const SelectionValueRow &row : rows)
        values.append(row.value + '=' + row.name + (row.selected ? "*" : ""));
    return values.join(' ');
}

QString sortedPairs(const NameMap &map)
{
    QStringList pairs;
    for (int i = 0; i < map.count(); ++i)
        pairs.append(map.key(i) + '=' + map.item(i).toString());
    pairs.sort();
    return pairs.join(", ");
}

} // namespace

class tst_ParamDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StringTable::setLanguage(Language::English); }
    void deletingARowSelectsTheOneBelowElseAbove_data();
    void deletingARowSelectsTheOneBelowElseAbove();
    void listShowsEveryParameterWithItsKindAndTheChosenOne();
    void aConfirmedParameterIsStoredUnderItsNameAndChosen_data();
    void aConfirmedParameterIsStoredUnderItsNameAndChosen();

    void everyParameterNameCarriesThePrefix_data();
    void everyParameterNameCarriesThePrefix();
    void okNeedsANameATitleAndForAListAValue_data();
    void okNeedsANameATitleAndForAListAValue();
    void switchingTheKindKeepsTheSelectionValues();
    void selectionValueEditsKeepTheOrderAndChooseARow_data();
    void selectionValueEditsKeepTheOrderAndChooseARow();
    void literalsAreWhatTheEnginesTakeAsWritten_data();
    void literalsAreWhatTheEnginesTakeAsWritten();
    void quoteMakesLiteralsInPlaceAndKeepsTheNames();

    void tablesAndColumnsComeFromTheCacheOnceAsked();
    void pairsComeFromTheTwoChosenColumns_data();
    void pairsComeFromTheTwoChosenColumns();
    void withoutAccessorOrDatabaseNothingIsFound();
};

void tst_ParamDecisions::deletingARowSelectsTheOneBelowElseAbove_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("next");
    const QStringList three{ "a", "b", "c" };
    QTest::newRow("first: the one below") << three << 0 << "b";
    QTest::newRow("middle: the one below") << three << 1 << "c";
    QTest::newRow("last: the one above") << three << 2 << "b";
    QTest::newRow("the only one: none") << QStringList{ "a" } << 0 << "";
    QTest::newRow("no row: none") << three << -1 << "";
    QTest::newRow("past the end: none") << three << 3 << "";
}

void tst_ParamDecisions::deletingARowSelectsTheOneBelowElseAbove()
{
    QFETCH(QStringList, entries);
    QFETCH(int, row);
    QFETCH(QString, next);
    QCOMPARE(selectionAfterDelete(entries, row), next);
}

void tst_ParamDecisions::listShowsEveryParameterWithItsKindAndTheChosenOne()
{
    ParamListDecision list;
    QVERIFY(list.rows().isEmpty() && !list.okEnabled());
    auto definition = std::make_shared<SQLInfo>();
    definition->parameters()->setObject("@@@from", parameter("@@@from", ParamInfo::TypedIn, "From"));
    definition->parameters()->setObject("@@@region", parameter("@@@region", ParamInfo::ChosenFromList, "Region"));
    definition->parameters()->setText("not a parameter", "text");
    definition->parameters()->setObject("@@@odd", parameter("@@@odd", 7, "Odd"));
    list.setDefinition(definition);
    list.select("@@@region");

    QStringList shownRows;
    for (const ParamListRow &row : list.rows())
        shownRows.append(QStringList{ row.name, row.type, row.title }.join('|') + (row.selected ? "*" : ""));
    QCOMPARE(shownRows, (QStringList{ "@@@from|String Field|From", "@@@region|Selected Value List|Region*",
                                      "@@@odd||Odd" }));
    QCOMPARE(ParamListDecision::selectedRow(list.rows()), 1);
    QVERIFY(list.okEnabled());
    list.select("@@@Region"); // names compare exactly
    QCOMPARE(ParamListDecision::selectedRow(list.rows()), -1);
}

void tst_ParamDecisions::aConfirmedParameterIsStoredUnderItsNameAndChosen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("a new name is added at the end") << "@@@new" << QStringList{ "@@@a", "@@@b", "@@@new" };
    QTest::newRow("a held name is replaced in place") << "@@@a" << QStringList{ "@@@a", "@@@b" };
}

void tst_ParamDecisions::aConfirmedParameterIsStoredUnderItsNameAndChosen()
{
    QFETCH(QString, name);
    QFETCH(QStringList, keys);
    auto definition = std::make_shared<SQLInfo>();
    for (const QString held : { "@@@a", "@@@b" })
        definition->parameters()->setObject(held, parameter(held, 1, "T"));
    ParamListDecision list;
    list.setDefinition(definition);
    list.select("@@@b");
    const auto confirmed = parameter(name, ParamInfo::TypedIn, "Confirmed");
    list.chooseParameter(confirmed);
    QCOMPARE(definition->parameters()->keys(), keys);
    QCOMPARE(definition->parameters()->object<ParamInfo>(name), confirmed);
    QCOMPARE(list.selectedName(), name);
}

void tst_ParamDecisions::everyParameterNameCarriesThePrefix_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("x into an empty field") << "x" << "@@@x";
    QTest::newRow("prefixed already") << "@@@x" << "@@@x";
    QTest::newRow("field emptied") << "" << "@@@";
    QTest::newRow("one @ removed: a whole prefix again") << "@@x" << "@@@@@x";
    QTest::newRow("text typed before the prefix") << "y@@@x" << "@@@y@@@x";
}

void tst_ParamDecisions::everyParameterNameCarriesThePrefix()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    ParamEditDecision edit;
    const auto edited = parameter({}, 1, {});
    edit.setParameter(edited);
    QCOMPARE(edit.editName(typed), name);
    QCOMPARE(edited->paramName(), name);
}

void tst_ParamDecisions::okNeedsANameATitleAndForAListAValue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("pairs");
    QTest::addColumn<bool>("valid");
    QTest::newRow("string field with name and title") << "@@@a" << "A" << 1 << "" << true;
    QTest::newRow("no title") << "@@@a" << "" << 1 << "" << false;
    QTest::newRow("no name") << "" << "A" << 1 << "" << false;
    QTest::newRow("list without values") << "@@@a" << "A" << 2 << "" << false;
    QTest::newRow("list with a value") << "@@@a" << "A" << 2 << "v=V" << true;
    QTest::newRow("another kind needs no values") << "@@@a" << "A" << 5 << "" << true;
}

void tst_ParamDecisions::okNeedsANameATitleAndForAListAValue()
{
    QFETCH(QString, name);
    QFETCH(QString, title);
    QFETCH(int, type);
    QFETCH(QString, pairs);
    QFETCH(bool, valid);
    ParamEditDecision edit;
    QVERIFY(!edit.isValid());
    edit.setParameter(parameter(name, type, title, pairs));
    QCOMPARE(edit.isValid(), valid);
}

void tst_ParamDecisions::switchingTheKindKeepsTheSelectionValues()
{
    ParamEditDecision edit;
    const auto edited = parameter("@@@a", ParamInfo::ChosenFromList, "A", "v=V,w=W");
    edit.setParameter(edited);
    edit.chooseTypeOption(ParamEditDecision::StringFieldOption);
    QCOMPARE(edited->paramType(), ParamInfo::TypedIn);
    QVERIFY(!edit.valueAreaEnabled());
    QCOMPARE(shown(edit.valueRows()), "v=V w=W");
    // A string field's copy leaves the values behind, as a save would; a list's copy owns them.
    QCOMPARE(edit.committedCopy()->selections()->count(), 0);
    edit.chooseTypeOption(ParamEditDecision::ValueListOption);
    const auto copy = edit.committedCopy();
    QVERIFY(copy != edited && copy->selections() != edited->selections());
    QCOMPARE(sortedPairs(*copy->selections()), "v=V, w=W");
}

void tst_ParamDecisions::selectionValueEditsKeepTheOrderAndChooseARow_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("after");
    // The parameter holds a=A b=B c=C and nothing is chosen yet.
    QTest::newRow("store a new value") << "store" << "d=D" << "a=A b=B c=C d=D*";
    QTest::newRow("store a held value renames it in place") << "store" << "b=Bee" << "a=A b=Bee* c=C";
    QTest::newRow("take replaces the values whole") << "take" << "x=X,y=Y" << "x=X y=Y";
    QTest::newRow("delete the first") << "delete" << "0" << "b=B* c=C";
    QTest::newRow("delete the last") << "delete" << "2" << "a=A b=B*";
    QTest::newRow("modify the name only: in place") << "modify" << "b>b=Bee" << "a=A b=Bee* c=C";
    QTest::newRow("modify the value: in the row's place") << "modify" << "b>x=X" << "a=A x=X* c=C";
    QTest::newRow("modify into a later value: one row") << "modify" << "a>c=See" << "c=See* b=B";
    QTest::newRow("modify into an earlier value: one row") << "modify" << "c>a=Aye" << "b=B a=Aye*";
}

void tst_ParamDecisions::selectionValueEditsKeepTheOrderAndChooseARow()
{
    QFETCH(QString, operation);
    QFETCH(QString, argument);
    QFETCH(QString, after);
    ParamEditDecision edit;
    const auto edited = parameter("@@@a", ParamInfo::ChosenFromList, "A", "a=A,b=B,c=C");
    edit.setParameter(edited);
    if (operation == "store") {
        edit.storeValue(argument.section('=', 0, 0), argument.section('=', 1));
    } else if (operation == "modify") {
        edit.modifyValue(argument.section('>', 0, 0), argument.section('>', 1).section('=', 0, 0),
                         argument.section('=', 1));
    } else if (operation == "take") {
        const auto taken = parameter({}, 2, {}, argument)->selections();
        edit.takeValues(taken);
        QCOMPARE(edited->selections(), taken);
    } else {
        edit.deleteRow(argument.toInt());
    }
    QCOMPARE(shown(edit.valueRows()), after);
}

void tst_ParamDecisions::literalsAreWhatTheEnginesTakeAsWritten_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("literal");
    QTest::addColumn<QString>("quoted");  // by Quote
    QTest::addColumn<QString>("content"); // read from a column, stored as a literal
    QTest::newRow("a number") << "-3.5e2" << true << "-3.5e2" << "-3.5e2";
    QTest::newRow("leading zeros: a number, but kept as text from a column") << "007" << true << "007" << "'007'";
    QTest::newRow("words") << "Small business" << false << "'Small business'" << "'Small business'";
    QTest::newRow("a quote inside is doubled") << "O'Brien" << false << "'O''Brien'" << "'O''Brien'";
    QTest::newRow("a text literal") << "'O''Brien'" << true << "'O''Brien'" << "'''O''''Brien'''";
    QTest::newRow("an unclosed one") << "'NE" << false << "'''NE'" << "'''NE'";
    QTest::newRow("key words in any case") << "null" << true << "null" << "'null'";
    QTest::newRow("a list for IN") << " 'a', 'b,c' ,3,TRUE " << true << " 'a', 'b,c' ,3,TRUE "
                                   << "' ''a'', ''b,c'' ,3,TRUE '";
    QTest::newRow("an empty item") << "1,,2" << false << "'1,,2'" << "'1,,2'";
    QTest::newRow("two without a comma") << "'a' 'b'" << false << "'''a'' ''b'''" << "'''a'' ''b'''";
}

void tst_ParamDecisions::literalsAreWhatTheEnginesTakeAsWritten()
{
    QFETCH(QString, value);
    QFETCH(bool, literal);
    QFETCH(QString, quoted);
    QFETCH(QString, content);
    QCOMPARE(isSqlLiteral(value), literal);
    QCOMPARE(quotedValue(value), quoted);
    QCOMPARE(literalOfContent(value), content);
}

void tst_ParamDecisions::quoteMakesLiteralsInPlaceAndKeepsTheNames()
{
    ParamEditDecision edit;
    const auto edited = parameter("@@@a", ParamInfo::ChosenFromList, "A", "NE=North,'SE'=South,3=Three,'NE'=Later");
    const auto values = edited->selections();
    edit.setParameter(edited);
    edit.storeValue("x y", "Chosen");
    QCOMPARE(edit.nonLiteralValues(), QStringList({ "NE", "x y" }));
    QVERIFY(edit.quoteValues());
    // The first of a value held twice keeps its row; the chosen row follows its value.
    QCOMPARE(shown(edit.valueRows()), "'NE'=North 'SE'=South 3=Three 'x y'=Chosen*");
    QCOMPARE(edited->selections(), values);
    QVERIFY(edit.nonLiteralValues().isEmpty());
    QVERIFY(!edit.quoteValues());
}

void tst_ParamDecisions::tablesAndColumnsComeFromTheCacheOnceAsked()
{
    const auto proxy = testservice::sampleService();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    DBGetDecision decision;
    decision.start(&accessor, testservice::sampleDatabase());
    const QStringList tables = decision.tables();
    QVERIFY2(tables.contains("regions") && tables.contains("order_lines"), qPrintable(tables.join(',')));
    QVERIFY(decision.chooseTable("regions"));
    QCOMPARE(decision.columns(), (QStringList{ "", "code", "name", "country" }));
    QVERIFY(decision.chooseKeyColumn("code") && decision.chooseValueColumn("name"));
    QVERIFY(decision.okEnabled());
    // Stored as they are, or as literals when the person chose so.
    QCOMPARE(decision.valuesToStore(), decision.result());
    decision.setStoreAsLiterals(true);
    QVERIFY(sortedPairs(*decision.valuesToStore()).startsWith("'CE'=Central, 'NE'=North East"));
    QVERIFY(decision.result()->contains("NE"));

    // The same choice again asks nothing; another table unsets both columns.
    const qsizetype asked = proxy->requests.size();
    QVERIFY(!decision.chooseTable("regions") && !decision.chooseKeyColumn("code"));
    QCOMPARE(proxy->requests.size(), asked);
    QVERIFY(decision.chooseTable("staff"));
    QVERIFY(decision.keyColumn().isEmpty() && decision.valueColumn().isEmpty());
    QVERIFY(decision.result()->isEmpty() && !decision.okEnabled());

    // Opened again in the same wizard: the accessor's cache answers.
    decision.start(&accessor, testservice::sampleDatabase());
    QCOMPARE(decision.tables(), tables);
    QVERIFY(decision.chooseTable("regions"));
    QCOMPARE(decision.columns().size(), 4);
    QCOMPARE(proxy->requests.size(), asked);
}

void tst_ParamDecisions::pairsComeFromTheTwoChosenColumns_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("fails");
    QTest::addColumn<QString>("pairs");
    QTest::newRow("code and name")
            << "code" << "name" << false
            << "CE=Central, NE=North East, NW=North West, OS=Overseas, SE=South East, SW=South West";
    QTest::newRow("the same column: the name is the value")
            << "country" << "country" << false << "Avaland=Avaland, Brevonia=Brevonia";
    QTest::newRow("no display column") << "code" << "" << false << "";
    QTest::newRow("no value column") << "" << "name" << false << "";
    QTest::newRow("a failed request: nothing, and no report") << "code" << "name" << true << "";
}

void tst_ParamDecisions::pairsComeFromTheTwoChosenColumns()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(bool, fails);
    QFETCH(QString, pairs);
    const auto proxy = testservice::sampleService();
    proxy->refusing = fails ? "<content>record" : "";
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    int reports = 0;
    accessor.setErrorReporter([&reports](const DatabaseErrorReport &) { ++reports; });
    DBGetDecision decision;
    decision.start(&accessor, testservice::sampleDatabase());
    QVERIFY(decision.chooseTable("regions"));
    decision.chooseValueColumn(value);
    decision.chooseKeyColumn(key);
    QCOMPARE(sortedPairs(*decision.result()), pairs);
    QCOMPARE(decision.okEnabled(), !pairs.isEmpty());
    QCOMPARE(accessor.LastError(), fails ? qint32(0x80004005) : 0);
    QCOMPARE(reports, 0);

    // The blank entry of either column empties the result again.
    decision.chooseKeyColumn("");
    QVERIFY(decision.result()->isEmpty() && !decision.okEnabled());
}

void tst_ParamDecisions::withoutAccessorOrDatabaseNothingIsFound()
{
    TSAccessor unconnected; // no proxy: every query yields nothing
    for (TSAccessor *accessor : { static_cast<TSAccessor *>(nullptr), &unconnected }) {
        for (const auto &database : { std::shared_ptr<dbInfo>(), testservice::sampleDatabase() }) {
            DBGetDecision decision;
            decision.start(accessor, database);
            QVERIFY(decision.tables().isEmpty());
            decision.chooseTable("regions");
            QCOMPARE(decision.columns(), QStringList{ "" });
            decision.chooseKeyColumn("code");
            decision.chooseValueColumn("name");
            QVERIFY(decision.result() && decision.result()->isEmpty());
        }
    }
}

QTEST_GUILESS_MAIN(tst_ParamDecisions)
#include "tst_paramdecisions.moc"
