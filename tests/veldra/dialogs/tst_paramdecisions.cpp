// What the parameter dialogs decide, without windows: the parameter list, one parameter's
// edit and its selection values, and the values read from two columns of the sample database.

#include "sampleservice.h"

#include "tessaly/namemap.h"
#include "veldra/dialogs/dbgetdecision.h"
#include "veldra/dialogs/listselection.h"
#include "veldra/dialogs/parameditdecision.h"
#include "veldra/dialogs/paramlistdecision.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"

#include <QTest>

using namespace veldra;
using tessaly::NameMap;

namespace {

std::shared_ptr<ParamInfo> parameter(const QString &name, qint32 type = ParamInfo::TypedIn, const QString &title = {})
{
    auto result = std::make_shared<ParamInfo>();
    result->setParamName(name);
    result->setParamType(type);
    result->setTitle(title);
    return result;
}

// A definition holding one parameter per name, each under its own name.
std::shared_ptr<SQLInfo> definitionWith(const QStringList &names)
{
    auto definition = std::make_shared<SQLInfo>();
    for (const QString &name : names)
        definition->parameters()->setObject(name, parameter(name));
    return definition;
}

// The list as a person sees it: names in order, the chosen one marked with "*".
QString shown(const QList<ParamListRow> &rows)
{
    QStringList names;
    for (const ParamListRow &row : rows)
        names.append(row.name + (row.selected ? "*" : ""));
    return names.join(' ');
}

QString shown(const QList<SelectionValueRow> &rows)
{
    QStringList values;
    for (const SelectionValueRow &row : rows)
        values.append(row.value + '=' + row.name + (row.selected ? "*" : ""));
    return values.join(' ');
}

std::shared_ptr<NameMap> values(const QString &pairs)
{
    auto map = std::make_shared<NameMap>();
    for (const QString &pair : pairs.split(' ', Qt::SkipEmptyParts))
        map->setText(pair.section('=', 0, 0), pair.section('=', 1));
    return map;
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
    void initTestCase();

    void deletingARowSelectsTheOneBelowElseAbove_data();
    void deletingARowSelectsTheOneBelowElseAbove();
    void listShowsEveryParameterWithItsKindAndTheChosenOne();
    void deletingAParameterChoosesTheNextRowAndAsksNothing_data();
    void deletingAParameterChoosesTheNextRowAndAsksNothing();
    void aConfirmedParameterIsStoredUnderItsNameAndChosen_data();
    void aConfirmedParameterIsStoredUnderItsNameAndChosen();
    void modifyEditsTheRecordHeldUnderTheChosenName();

    void everyParameterNameCarriesThePrefix_data();
    void everyParameterNameCarriesThePrefix();
    void okNeedsANameATitleAndForAListAValue_data();
    void okNeedsANameATitleAndForAListAValue();
    void switchingTheKindKeepsTheSelectionValues();
    void selectionValueEditsKeepTheOrderAndChooseARow_data();
    void selectionValueEditsKeepTheOrderAndChooseARow();

    void tablesAndColumnsComeFromTheDatabaseOnce();
    void pairsComeFromTheTwoChosenColumns_data();
    void pairsComeFromTheTwoChosenColumns();
    void anotherTableUnsetsBothColumns();
    void aFailedRequestLeavesNoPairsAndIsNotReported();
    void withoutAccessorOrDatabaseNothingIsFound();
};

void tst_ParamDecisions::initTestCase()
{
    StringTable::setLanguage(Language::English);
}

void tst_ParamDecisions::deletingARowSelectsTheOneBelowElseAbove_data()
{
    QTest::addColumn<QStringList>("entries");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("next");
    const QStringList three{ "a", "b", "c" };
    QTest::newRow("first: the one below") << three << 0 << "b";
    QTest::newRow("middle: the one below") << three << 1 << "c";
    QTest::newRow("last: the one above") << three << 2 << "b";
    QTest::newRow("last of two: the one above") << QStringList{ "a", "b" } << 1 << "a";
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
    QVERIFY(list.rows().isEmpty());
    QVERIFY(!list.okEnabled());

    auto definition = std::make_shared<SQLInfo>();
    definition->parameters()->setObject("@@@from", parameter("@@@from", ParamInfo::TypedIn, "From"));
    definition->parameters()->setObject("@@@region", parameter("@@@region", ParamInfo::ChosenFromList, "Region"));
    definition->parameters()->setText("not a parameter", "text");
    definition->parameters()->setObject("@@@odd", parameter("@@@odd", 7, "Odd"));
    list.setDefinition(definition);
    list.select("@@@region");

    const QList<ParamListRow> rows = list.rows();
    QCOMPARE(rows.size(), 3);
    QCOMPARE(shown(rows), "@@@from @@@region* @@@odd");
    QCOMPARE(rows.at(0).type, "String Field");
    QCOMPARE(rows.at(1).type, "Selected Value List");
    QCOMPARE(rows.at(2).type, ""); // a kind the dialogs never set shows blank
    QCOMPARE(rows.at(1).title, "Region");
    QCOMPARE(ParamListDecision::selectedRow(rows), 1);
    QVERIFY(list.okEnabled());

    // Names compare exactly.
    list.select("@@@Region");
    QCOMPARE(ParamListDecision::selectedRow(list.rows()), -1);
}

void tst_ParamDecisions::deletingAParameterChoosesTheNextRowAndAsksNothing_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("after");
    QTest::newRow("first") << QStringList{ "@@@a", "@@@b", "@@@c" } << 0 << "@@@b* @@@c";
    QTest::newRow("middle") << QStringList{ "@@@a", "@@@b", "@@@c" } << 1 << "@@@a @@@c*";
    QTest::newRow("last") << QStringList{ "@@@a", "@@@b", "@@@c" } << 2 << "@@@a @@@b*";
    QTest::newRow("the only one") << QStringList{ "@@@a" } << 0 << "";
    QTest::newRow("no row") << QStringList{ "@@@a", "@@@b" } << -1 << "@@@a @@@b*";
}

void tst_ParamDecisions::deletingAParameterChoosesTheNextRowAndAsksNothing()
{
    QFETCH(QStringList, names);
    QFETCH(int, row);
    QFETCH(QString, after);
    ParamListDecision list;
    list.setDefinition(definitionWith(names));
    list.select(names.last());
    list.deleteRow(row);
    QCOMPARE(shown(list.rows()), after);
    QCOMPARE(list.definition()->parameters()->count(), after.isEmpty() ? 0 : int(after.count(' ')) + 1);
    QCOMPARE(list.okEnabled(), after.contains('*'));
}

void tst_ParamDecisions::aConfirmedParameterIsStoredUnderItsNameAndChosen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("after");
    QTest::newRow("a new name is added at the end") << "@@@new" << "@@@a @@@b @@@new*";
    QTest::newRow("a held name is replaced in place") << "@@@a" << "@@@a* @@@b";
}

void tst_ParamDecisions::aConfirmedParameterIsStoredUnderItsNameAndChosen()
{
    QFETCH(QString, name);
    QFETCH(QString, after);
    ParamListDecision list;
    list.setDefinition(definitionWith({ "@@@a", "@@@b" }));
    list.select("@@@b");
    const auto confirmed = parameter(name, ParamInfo::TypedIn, "Confirmed");
    list.chooseParameter(confirmed);
    QCOMPARE(shown(list.rows()), after);
    QCOMPARE(list.selectedName(), name);
    QCOMPARE(list.definition()->parameters()->object<ParamInfo>(name), confirmed);
}

void tst_ParamDecisions::modifyEditsTheRecordHeldUnderTheChosenName()
{
    ParamListDecision list;
    QVERIFY(!list.parameterToModify());
    const auto definition = definitionWith({ "@@@a", "@@@b" });
    list.setDefinition(definition);
    QVERIFY(!list.parameterToModify()); // nothing chosen
    list.select("@@@b");
    QCOMPARE(list.parameterToModify(), definition->parameters()->object<ParamInfo>("@@@b"));
    list.removeParameter("@@@b");
    QVERIFY(!list.parameterToModify()); // chosen, but gone from the map
}

void tst_ParamDecisions::everyParameterNameCarriesThePrefix_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("name");
    QTest::newRow("x into an empty field") << "x" << "@@@x";
    QTest::newRow("prefixed already") << "@@@x" << "@@@x";
    QTest::newRow("field emptied") << "" << "@@@";
    QTest::newRow("one @ removed") << "@@x" << "@@@@@x";
    QTest::newRow("text typed before the prefix") << "y@@@x" << "@@@y@@@x";
    QTest::newRow("prefix case matters not: no letters") << "@@@" << "@@@";
}

void tst_ParamDecisions::everyParameterNameCarriesThePrefix()
{
    QFETCH(QString, typed);
    QFETCH(QString, name);
    ParamEditDecision edit;
    const auto edited = parameter({});
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
    QTest::newRow("list with a value, no title") << "@@@a" << "" << 2 << "v=V" << false;
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
    const auto edited = parameter(name, type, title);
    edited->setSelections(values(pairs));
    edit.setParameter(edited);
    QCOMPARE(edit.isValid(), valid);
}

void tst_ParamDecisions::switchingTheKindKeepsTheSelectionValues()
{
    ParamEditDecision edit;
    const auto edited = parameter("@@@a", ParamInfo::ChosenFromList, "A");
    edited->setSelections(values("v=V w=W"));
    edit.setParameter(edited);
    QCOMPARE(edit.typeOption(), ParamEditDecision::ValueListOption);
    QVERIFY(edit.valueAreaEnabled());

    edit.chooseTypeOption(ParamEditDecision::StringFieldOption);
    QCOMPARE(edited->paramType(), ParamInfo::TypedIn);
    QVERIFY(!edit.valueAreaEnabled());
    QCOMPARE(shown(edit.valueRows()), "v=V w=W");
    // OK hands on a copy; a string field's copy leaves the values behind, as a save would.
    QCOMPARE(edit.committedCopy()->selections()->count(), 0);

    edit.chooseTypeOption(ParamEditDecision::ValueListOption);
    QCOMPARE(edited->paramType(), ParamInfo::ChosenFromList);
    const auto copy = edit.committedCopy();
    QVERIFY(copy != edited && copy->selections() != edited->selections());
    QCOMPARE(sortedPairs(*copy->selections()), "v=V, w=W");

    edited->setParamType(3);
    edit.setParameter(edited);
    QCOMPARE(edit.typeOption(), -1);
}

void tst_ParamDecisions::selectionValueEditsKeepTheOrderAndChooseARow_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("after");
    // The parameter holds a=A b=B c=C and nothing is chosen yet.
    QTest::newRow("store a new value") << "store" << "d=D" << "a=A b=B c=C d=D*";
    QTest::newRow("store a held value renames it in place") << "store" << "b=Bee" << "a=A b=Bee* c=C";
    QTest::newRow("take replaces the values whole") << "take" << "x=X y=Y" << "x=X y=Y";
    QTest::newRow("remove") << "remove" << "b" << "a=A c=C";
    QTest::newRow("delete the first") << "delete" << "0" << "b=B* c=C";
    QTest::newRow("delete the middle") << "delete" << "1" << "a=A c=C*";
    QTest::newRow("delete the last") << "delete" << "2" << "a=A b=B*";
}

void tst_ParamDecisions::selectionValueEditsKeepTheOrderAndChooseARow()
{
    QFETCH(QString, operation);
    QFETCH(QString, argument);
    QFETCH(QString, after);
    ParamEditDecision edit;
    const auto edited = parameter("@@@a", ParamInfo::ChosenFromList, "A");
    edited->setSelections(values("a=A b=B c=C"));
    edit.setParameter(edited);
    QCOMPARE(shown(edit.valueRows()), "a=A b=B c=C");
    if (operation == "store") {
        edit.storeValue(argument.section('=', 0, 0), argument.section('=', 1));
    } else if (operation == "take") {
        const auto taken = values(argument);
        edit.takeValues(taken);
        QCOMPARE(edited->selections(), taken);
    } else if (operation == "remove") {
        edit.removeValue(argument);
    } else {
        edit.deleteRow(argument.toInt());
    }
    QCOMPARE(shown(edit.valueRows()), after);
}

void tst_ParamDecisions::tablesAndColumnsComeFromTheDatabaseOnce()
{
    const auto proxy = std::make_shared<testservice::SampleProxy>();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    DBGetDecision decision;
    decision.start(&accessor, testservice::sampleDatabase());
    const QStringList tables = decision.tables();
    QVERIFY2(tables.contains("regions") && tables.contains("order_lines"), qPrintable(tables.join(',')));
    QVERIFY(decision.chooseTable("regions"));
    QCOMPARE(decision.columns(), (QStringList{ "", "code", "name", "country" }));
    QVERIFY(!decision.okEnabled());

    // Opened again in the same wizard: the accessor's cache answers.
    const qsizetype asked = proxy->requests.size();
    decision.start(&accessor, testservice::sampleDatabase());
    QCOMPARE(decision.table(), "");
    QCOMPARE(decision.tables(), tables);
    QVERIFY(decision.chooseTable("regions"));
    QCOMPARE(decision.columns().size(), 4);
    QCOMPARE(proxy->requests.size(), asked);
}

void tst_ParamDecisions::pairsComeFromTheTwoChosenColumns_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("pairs");
    QTest::newRow("code and name")
            << "code" << "name"
            << "CE=Central, NE=North East, NW=North West, OS=Overseas, SE=South East, SW=South West";
    QTest::newRow("the same column: the name is the value") << "country" << "country"
                                                            << "Avaland=Avaland, Brevonia=Brevonia";
    QTest::newRow("no display column") << "code" << "" << "";
    QTest::newRow("no value column") << "" << "name" << "";
}

void tst_ParamDecisions::pairsComeFromTheTwoChosenColumns()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QString, pairs);
    TSAccessor accessor;
    accessor.setTsProxy(std::make_shared<testservice::SampleProxy>());
    DBGetDecision decision;
    decision.start(&accessor, testservice::sampleDatabase());
    QVERIFY(decision.chooseTable("regions"));
    // Both orders of choosing end the same.
    decision.chooseValueColumn(value);
    decision.chooseKeyColumn(key);
    QCOMPARE(sortedPairs(*decision.result()), pairs);
    QCOMPARE(decision.okEnabled(), !pairs.isEmpty());
    QCOMPARE(accessor.LastError(), 0);

    // The blank entry of either column empties the result again.
    decision.chooseKeyColumn("");
    QVERIFY(decision.result()->isEmpty());
    QVERIFY(!decision.okEnabled());
}

void tst_ParamDecisions::anotherTableUnsetsBothColumns()
{
    const auto proxy = std::make_shared<testservice::SampleProxy>();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    DBGetDecision decision;
    decision.start(&accessor, testservice::sampleDatabase());
    decision.tables();
    QVERIFY(decision.chooseTable("regions"));
    QVERIFY(decision.chooseKeyColumn("code"));
    QVERIFY(decision.chooseValueColumn("name"));
    QCOMPARE(decision.result()->count(), 6);

    const qsizetype asked = proxy->requests.size();
    QVERIFY(!decision.chooseTable("regions"));
    QVERIFY(!decision.chooseKeyColumn("code"));
    QCOMPARE(proxy->requests.size(), asked); // the same choice asks nothing
    QCOMPARE(decision.result()->count(), 6);

    QVERIFY(decision.chooseTable("staff"));
    QCOMPARE(decision.keyColumn(), "");
    QCOMPARE(decision.valueColumn(), "");
    QVERIFY(decision.result()->isEmpty());
    QVERIFY(!decision.okEnabled());
}

void tst_ParamDecisions::aFailedRequestLeavesNoPairsAndIsNotReported()
{
    const auto proxy = std::make_shared<testservice::SampleProxy>();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    int reports = 0;
    accessor.setErrorReporter([&reports](const DatabaseErrorReport &) { ++reports; });
    DBGetDecision decision;
    decision.start(&accessor, testservice::sampleDatabase());
    decision.tables();
    decision.chooseTable("regions");
    decision.chooseKeyColumn("code");
    proxy->failRecords = true;
    decision.chooseValueColumn("name");
    QVERIFY(decision.result()->isEmpty());
    QVERIFY(!decision.okEnabled());
    QCOMPARE(accessor.LastError(), qint32(0x80004005));
    QCOMPARE(reports, 0);
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
