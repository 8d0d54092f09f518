#include "../common/definitions.h"
#include "wizardfixture.h"

#include "veldra/wizard/grouporderstep.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;

namespace {

std::shared_ptr<SQLInfo> sampleQuery()
{
    auto query = std::make_shared<SQLInfo>();
    addTable(*query, "orders", { "id", "region", "amount" });
    addExpression(*query, "SUM(amount)");
    select(*query, { "orders.id", "orders.region", "SUM(amount)" });
    return query;
}

QStringList orderColumns(const SQLInfo &query)
{
    QStringList columns;
    for (const auto &order : *query.orderBy())
        columns.append(order->column() + (order->ascendant() ? " asc" : " desc"));
    return columns;
}

} // namespace

class tst_GroupOrderStep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowCountText_data();
    void rowCountText();
    void orderingControlsFollowTheSwitches_data();
    void orderingControlsFollowTheSwitches();
    void storeWritesGroupingAndOrdering_data();
    void storeWritesGroupingAndOrdering();
    void openingTakesTheFixedOrderAndForgetsAStaleColumn();
};

void tst_GroupOrderStep::rowCountText_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("converts");
    QTest::addColumn<int>("topN"); // afterwards, from 7
    QTest::addColumn<bool>("canLeave");
    QTest::newRow("a count") << "12" << true << 12 << true;
    QTest::newRow("blanks around") << " 12 " << true << 12 << true;
    QTest::newRow("one") << "1" << true << 1 << true;
    QTest::newRow("zero converts but cannot stay") << "0" << true << 0 << false;
    QTest::newRow("negative") << "-3" << true << -3 << false;
    QTest::newRow("empty") << "" << false << 7 << false;
    QTest::newRow("letters") << "ten" << false << 7 << false;
    QTest::newRow("past 32 bits") << "2147483648" << false << 7 << false;
}

void tst_GroupOrderStep::rowCountText()
{
    QFETCH(QString, typed);
    QFETCH(bool, converts);
    QFETCH(int, topN);
    QFETCH(bool, canLeave);
    auto query = sampleQuery();
    query->setTopN(7);
    WizardState state;
    testwizard::start(state, query);
    GroupOrderStep &step = state.groupOrder();
    step.initialize();
    QCOMPARE(step.setRowCountText(typed), converts);
    QCOMPARE(state.definition()->topN(), topN);
    // The count typed last comes back when the row count is switched on again.
    step.setRowCountOn(false);
    step.setRowCountOn(true);
    QCOMPARE(state.definition()->topN(), topN);
    QCOMPARE(GroupOrderStep::canLeaveRowCount(typed), canLeave);
}

void tst_GroupOrderStep::orderingControlsFollowTheSwitches_data()
{
    QTest::addColumn<bool>("useOrderBy");
    QTest::addColumn<bool>("asParam");
    QTest::addColumn<QString>("column");
    QTest::addColumn<bool>("columnEnabled"); // label, combo and direction options
    QTest::addColumn<bool>("paramEnabled");
    QTest::addColumn<bool>("complete");
    QTest::newRow("off") << false << false << "" << false << false << true;
    QTest::newRow("fixed without a column blocks Next") << true << false << "" << true << true << false;
    QTest::newRow("fixed with a column") << true << false << "orders.id" << true << true << true;
    QTest::newRow("as a parameter needs no column") << true << true << "" << false << true << true;
    QTest::newRow("off, as a parameter") << false << true << "" << false << false << true;
}

void tst_GroupOrderStep::orderingControlsFollowTheSwitches()
{
    QFETCH(bool, useOrderBy);
    QFETCH(bool, asParam);
    QFETCH(QString, column);
    QFETCH(bool, columnEnabled);
    QFETCH(bool, paramEnabled);
    QFETCH(bool, complete);
    WizardState state;
    testwizard::start(state, sampleQuery());
    GroupOrderStep &step = state.groupOrder();
    step.initialize();
    step.prepare();
    step.setOrderByOn(useOrderBy);
    step.setOrderByAsParam(asParam);
    step.setOrderColumn(column);
    QCOMPARE(step.orderColumnEnabled(), columnEnabled);
    QCOMPARE(step.orderParamEnabled(), paramEnabled);
    QCOMPARE(step.isComplete(), complete);
    QCOMPARE(step.orderColumnIndex(), int(step.orderCandidates().indexOf(column)));
}

void tst_GroupOrderStep::storeWritesGroupingAndOrdering_data()
{
    QTest::addColumn<QStringList>("checked"); // in the order the person checks them
    QTest::addColumn<bool>("useOrderBy");
    QTest::addColumn<bool>("asParam");
    QTest::addColumn<QStringList>("groupBy");
    QTest::addColumn<QStringList>("orderBy");
    QTest::newRow("group by in list order, fixed descending")
            << QStringList{ "SUM(amount)", "orders.region" } << true << false
            << QStringList{ "orders.region", "SUM(amount)" } << QStringList{ "orders.region desc" };
    QTest::newRow("as a parameter: every selection a candidate")
            << QStringList{} << true << true << QStringList{}
            << QStringList{ "orders.id asc", "orders.region asc", "SUM(amount) asc" };
    QTest::newRow("ordering off keeps the stored order")
            << QStringList{ "orders.id" } << false << false << QStringList{ "orders.id" }
            << QStringList{ "orders.amount asc" };
}

void tst_GroupOrderStep::storeWritesGroupingAndOrdering()
{
    QFETCH(QStringList, checked);
    QFETCH(bool, useOrderBy);
    QFETCH(bool, asParam);
    QFETCH(QStringList, groupBy);
    QFETCH(QStringList, orderBy);
    auto query = sampleQuery();
    query->groupBy()->append("orders.id"); // stored earlier, unchecked now
    auto earlier = std::make_shared<OrderInfo>();
    earlier->setColumn("orders.amount");
    query->orderBy()->append(earlier);
    WizardState state;
    testwizard::start(state, query);
    GroupOrderStep &step = state.groupOrder();
    step.initialize();
    step.prepare();
    step.setGroupItemChecked("orders.id", false);
    for (const QString &name : checked)
        step.setGroupItemChecked(name, true);
    step.setOrderByOn(useOrderBy);
    step.setOrderByAsParam(asParam);
    step.setOrderColumn("orders.region");
    step.setAscending(false);

    step.store();
    QCOMPARE(state.definition()->groupBy()->items(), groupBy);
    QCOMPARE(orderColumns(*state.definition()), orderBy);
}

void tst_GroupOrderStep::openingTakesTheFixedOrderAndForgetsAStaleColumn()
{
    auto query = sampleQuery();
    query->setUseOrderBy(true);
    auto order = std::make_shared<OrderInfo>();
    order->setColumn("orders.region");
    order->setAscendant(false);
    query->orderBy()->append(order);
    query->groupBy()->append("SUM(amount)");
    WizardState state;
    testwizard::start(state, query);
    GroupOrderStep &step = state.groupOrder();
    step.initialize();
    step.prepare();
    QCOMPARE(step.orderColumnIndex(), 1);
    QVERIFY(!step.ascending());
    QCOMPARE(step.groupItems().at(2).checked, true);
    QVERIFY(step.isComplete());

    // The column was removed from the select list on the way back.
    auto selections = std::make_shared<StringList>();
    selections->append("orders.id");
    state.definition()->setSelections(selections);
    step.prepare();
    QCOMPARE(step.orderColumnIndex(), -1);
    QVERIFY(!step.isComplete());
}

QTEST_GUILESS_MAIN(tst_GroupOrderStep)
#include "tst_grouporderstep.moc"
