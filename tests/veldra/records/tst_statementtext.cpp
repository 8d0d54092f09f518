#include "../common/definitions.h"

#include "tessaly/error.h"
#include "veldra/records/statementtext.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;

class tst_StatementText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statementText_data();
    void statementText();
    void orderingWithoutItemsRaises();
};

// Lines are joined with CR LF, and the last one gets one too.
static QString lines(const QStringList &lines)
{
    return lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

using Setup = std::function<void(SQLInfo &)>;
Q_DECLARE_METATYPE(Setup)

void tst_StatementText::statementText_data()
{
    QTest::addColumn<Setup>("setup");
    QTest::addColumn<QString>("text");

    QTest::newRow("complete example") << Setup([](SQLInfo &q) {
        addTable(q, QStringLiteral("orders"), { QStringLiteral("id"), QStringLiteral("amount=Amount") });
        select(q, { QStringLiteral("orders.id"), QStringLiteral("orders.amount") });
        q.setTopN(10);
        q.setCondition(QStringLiteral("orders.amount > 100"));
        q.setUseOrderBy(true);
        auto order = std::make_shared<OrderInfo>();
        order->setColumn(QStringLiteral("orders.amount"));
        order->setAscendant(false);
        q.orderBy()->append(order);
    }) << lines({ "SELECT", "TOP 10", "    orders.id,", "    orders.amount AS Amount", "", "FROM", "    orders", "",
                  "WHERE", "orders.amount > 100", "", "ORDER BY", "    orders.amount DESC" });

    QTest::newRow("nothing selected, no tables") << Setup([](SQLInfo &) {}) << lines({ "SELECT", "", "FROM" });

    QTest::newRow("row limit as a parameter") << Setup([](SQLInfo &q) {
        q.setTopN(5);
        q.setTopNAsParam(true);
    }) << lines({ "SELECT", "TOP <parameter(5)>", "", "FROM" });

    QTest::newRow("row limit 0 as a parameter shows nothing") << Setup([](SQLInfo &q) {
        q.setTopNAsParam(true);
    }) << lines({ "SELECT", "", "FROM" });

    QTest::newRow("unresolved last item leaves a trailing comma") << Setup([](SQLInfo &q) {
        addTable(q, QStringLiteral("t"), { QStringLiteral("a"), QStringLiteral("b") });
        select(q, { QStringLiteral("t.a"), QStringLiteral("gone"), QStringLiteral("t.b"), QStringLiteral("gone too") });
    }) << lines({ "SELECT", "    t.a,", "    t.b,", "", "FROM", "    t" });

    QTest::newRow("grouping derived from columns only") << Setup([](SQLInfo &q) {
        addTable(q, QStringLiteral("t"), { QStringLiteral("a=A") });
        addExpression(q, QStringLiteral("SUM(t.x)"), QStringLiteral("Total"));
        select(q, { QStringLiteral("A"), QStringLiteral("SUM(t.x)") });
        q.setUseGroupBy(true);
    }) << lines({ "SELECT", "    A AS A,", "    SUM(t.x) AS Total", "", "FROM", "    t", "", "GROUP BY", "    t.a," });

    QTest::newRow("explicit grouping and ascending order") << Setup([](SQLInfo &q) {
        addTable(q, QStringLiteral("a"), {});
        addTable(q, QStringLiteral("b"), {});
        q.setUseGroupBy(true);
        q.groupBy()->append(QStringLiteral("a.x"));
        q.groupBy()->append(QStringLiteral("b.y"));
        q.setUseOrderBy(true);
        auto first = std::make_shared<OrderInfo>();
        first->setColumn(QStringLiteral("a.x"));
        q.orderBy()->append(first);
        q.orderBy()->append(std::make_shared<OrderInfo>()); // only the first item is shown
    }) << lines({ "SELECT", "", "FROM", "    a,", "    b", "", "GROUP BY", "    a.x,", "    b.y", "", "ORDER BY",
                  "    a.x ASC" });

    QTest::newRow("order as a parameter, condition with references") << Setup([](SQLInfo &q) {
        q.setCondition(QStringLiteral("r = @@@Region\r\nAND x"));
        q.setUseOrderBy(true);
        q.setOrderByAsParam(true);
        q.orderBy()->append(std::make_shared<OrderInfo>());
    }) << lines({ "SELECT", "", "FROM", "", "WHERE", "r = @@@Region", "AND x", "", "ORDER BY", "    <parameter>" });
}

void tst_StatementText::statementText()
{
    QFETCH(Setup, setup);
    QFETCH(QString, text);
    SQLInfo query;
    setup(query);
    QCOMPARE(veldra::statementText(query), text);
}

void tst_StatementText::orderingWithoutItemsRaises()
{
    SQLInfo query;
    query.setUseOrderBy(true);
    QVERIFY_THROWS_EXCEPTION(tessaly::Error, veldra::statementText(query));
}

QTEST_APPLESS_MAIN(tst_StatementText)
#include "tst_statementtext.moc"
