#include "../veldra/common/definitions.h"

#include "host/componentsession.h"
#include "host/currentrequest.h"
#include "host/inputcheck.h"
#include "host/runinputs.h"

#include "tessaly/componentdocument.h"
#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "veldra/resources/stringtable.h"

#include <QTest>

using namespace testdefs;

namespace {

// Two tables, an aliased column, an aliased expression, a parameter of each kind, the row count
// and the ordering taken at run time: what the wizard makes of a typical report.
std::shared_ptr<SQLInfo> report()
{
    auto query = std::make_shared<SQLInfo>();
    setDatabase(*query, "SQLite", "Sample", "main");
    addTable(*query, "regions", { "code", "name=Region" });
    addTable(*query, "orders", { "id", "amount" });
    addExpression(*query, "SUM(orders.amount)", "Revenue");
    select(*query, { "regions.name", "orders.id", "SUM(orders.amount)" });
    query->setCondition("regions.code = @@@Region AND orders.amount >= @@@Least");
    query->parameters()->setObject("@@@Region", parameter("@@@Region", ParamInfo::ChosenFromList, "Region",
                                                          "'NE'=North East,'SW'=South West"));
    addParameter(*query, "@@@Least", "Smallest amount");
    query->setTopN(3);
    query->setTopNAsParam(true);
    query->setUseOrderBy(true);
    query->setOrderByAsParam(true);
    return query;
}

QString text(host::ComponentSession &session, const QString &slot)
{
    return tessaly::variant::toText(session.host().slotValue(slot));
}

// What the wizard's Finish does to the component, and what a host does after it.
void finish(host::ComponentSession &session, const std::shared_ptr<SQLInfo> &edited)
{
    const host::RunInputs before = host::RunInputs::capture(session.host());
    session.host().setSlotValue("SQLInfo", tessaly::variant::holding(edited));
    host::seedRunInputs(session.host(), before);
}

// "@@@A,@@@B?": the references named, "?" for one the query does not define.
QString names(const QList<host::MissingValue> &missing)
{
    QStringList names;
    for (const host::MissingValue &value : missing)
        names.append(value.reference + (value.defined ? "" : "?"));
    return names.join(',');
}

} // namespace

// What every host of the component does alike, without a window.
class tst_Host : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { veldra::StringTable::setLanguage(veldra::Language::English); }

    void aFinishedQueryRunsAndAnEditKeepsWhatStillApplies()
    {
        host::ComponentSession session;
        finish(session, report());
        QCOMPARE(text(session, "selection"), QString("Region,orders.id,Revenue"));
        QCOMPARE(text(session, "TopN"), QString("3"));
        QCOMPARE(text(session, "OrderBy"), QString("regions.name"));
        QCOMPARE(text(session, "@@@Region"), QString("'NE'"));
        QCOMPARE(text(session, "@@@Least"), QString());

        // The typed-in parameter is named, and nothing is offered to send, until it has a value.
        host::CurrentRequest request = session.request();
        QVERIFY(!request.ready());
        QCOMPARE(names(request.missingValues), QString("@@@Least"));
        session.setInput("@@@Least", "10");
        request = session.request();
        QVERIFY(request.ready());
        QVERIFY(request.text.contains("<order>regions.name ASC</order><rowcount>3</rowcount>"));

        // What the person sets stays over an edit of the query, where it still applies.
        session.setInput("selection", "Revenue,Region");
        session.setInput("TopN", "7");
        session.setInput("OrderBy", "Revenue"); // by its display name, as the studio shows it
        session.setInput("OrderByAscendant", "false");
        session.setInput("@@@Region", "'SW'");
        QCOMPARE(text(session, "OrderBy"), QString("SUM(orders.amount)"));

        // A column added: the person's choice stays, the new column joins it.
        auto edited = session.definition()->copy();
        addTable(*edited, "customers", { "segment=Segment" });
        edited->selections()->append("customers.segment");
        finish(session, edited);
        QCOMPARE(text(session, "selection"), QString("Revenue,Region,Segment"));
        QCOMPARE(text(session, "TopN"), QString("7"));
        QCOMPARE(text(session, "OrderBy"), QString("SUM(orders.amount)"));
        QCOMPARE(text(session, "OrderByAscendant"), QString("False"));
        QCOMPARE(text(session, "@@@Region"), QString("'SW'"));
        QCOMPARE(text(session, "@@@Least"), QString("10"));

        // A new row count typed in the wizard wins; a value the list no longer holds falls back to
        // its first; a column taken out leaves the selection and the ordering.
        edited = session.definition()->copy();
        edited->setTopN(5);
        edited->parameters()->setObject("@@@Region", parameter("@@@Region", ParamInfo::ChosenFromList, "Region",
                                                               "'CE'=Central,'NE'=North East"));
        edited->setSelections(std::make_shared<veldra::StringList>());
        select(*edited, { "regions.name", "customers.segment" });
        finish(session, edited);
        QCOMPARE(text(session, "selection"), QString("Region,Segment"));
        QCOMPARE(text(session, "TopN"), QString("5"));
        QCOMPARE(text(session, "OrderBy"), QString("regions.name"));
        QCOMPARE(text(session, "@@@Region"), QString("'CE'"));
        QVERIFY(session.request().ready());
    }

    // As an older edit left a document: nothing selected, no row count; and a value given by hand
    // that the list does not hold.
    void aDocumentKeepsWhatItHoldsAndGetsWhatItLacks()
    {
        host::ComponentSession saved;
        saved.host().setSlotValue("SQLInfo", tessaly::variant::holding(report()));
        saved.host().setSlotValue("@@@Region", "'XX'");
        host::ComponentSession session;
        session.load(tessaly::ComponentDocument::save(*saved.model()), "doc");
        QCOMPARE(text(session, "selection"), QString("Region,orders.id,Revenue"));
        QCOMPARE(text(session, "TopN"), QString("3"));
        QCOMPARE(text(session, "OrderBy"), QString("regions.name"));
        QCOMPARE(text(session, "@@@Region"), QString("'XX'"));
        QCOMPARE(names(session.request().missingValues), QString("@@@Least"));
    }

    void missingValuesAreNamedOnceEach_data()
    {
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("values"); // key=value pairs
        QTest::addColumn<QString>("missing");
        QTest::newRow("every value given") << "a = @@@Region AND b >= @@@Least" << "@@@Region='NE',@@@Least=1" << "";
        QTest::newRow("blank and absent, in the condition's order")
                << "a >= @@@Least AND b = @@@Region OR c = @@@Least" << "@@@Region= " << "@@@Least,@@@Region";
        QTest::newRow("a reference the query does not define") << "a = @@@Nobody" << "" << "@@@Nobody?";
        QTest::newRow("a bare marker names nothing") << "a = '@@@'" << "" << "";
    }
    void missingValuesAreNamedOnceEach()
    {
        QFETCH(QString, condition);
        QFETCH(QString, values);
        QFETCH(QString, missing);
        auto query = report();
        query->setCondition(condition);
        tessaly::NameMap map;
        for (const QString &pair : values.split(',', Qt::SkipEmptyParts))
            map.setText(pair.section('=', 0, 0), pair.section('=', 1));
        QCOMPARE(names(host::missingValues(*query, &map)), missing);
    }

    void inputsTheComponentCannotUseAreRefusedByName_data()
    {
        QTest::addColumn<bool>("runTime"); // row count and ordering taken at run time
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("refusal"); // empty: accepted
        QTest::newRow("an unknown selection item")
                << false << "selection" << "Region,Bogus,Revenue"
                << "selection: \"Bogus\" is no column or expression of the query; its selections are: Region, orders.id, Revenue";
        QTest::newRow("a fixed row count") << false << "TopN" << "5"
                                           << "TopN: the query takes no row count at run time (its row count is fixed at 3";
        QTest::newRow("a row count that is no number") << true << "TopN" << "abc" << "cannot set \"TopN\" to \"abc\": ";
        QTest::newRow("a fixed ordering") << false << "OrderByAscendant" << "false" << "takes no ordering at run time";
        QTest::newRow("an ordering column that is no choice")
                << true << "OrderBy" << "orders.amount"
                << "\"orders.amount\" is not one of the query's ordering choices: Region, orders.id, Revenue";
    }
    void inputsTheComponentCannotUseAreRefusedByName()
    {
        QFETCH(bool, runTime);
        QFETCH(QString, name);
        QFETCH(QString, value);
        QFETCH(QString, refusal);
        auto query = report();
        query->setTopNAsParam(runTime);
        query->setOrderByAsParam(runTime);
        host::ComponentSession session;
        session.useDefinition(query);
        const QString before = text(session, name);
        try {
            session.setInput(name, value);
            QVERIFY2(refusal.isEmpty(), "accepted");
        } catch (const tessaly::Error &error) {
            QVERIFY2(!refusal.isEmpty() && error.message().contains(refusal), qPrintable(error.message()));
            QCOMPARE(text(session, name), before);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Host)
#include "tst_host.moc"
