#include "../common/definitions.h"

#include "tessaly/error.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;

class tst_Lookups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void targetStopsAtTheFirstMissingPiece_data();
    void targetStopsAtTheFirstMissingPiece();
    void tableNamesKeepMapOrder();
    void columnLookupPrecedence_data();
    void columnLookupPrecedence();
    void displayNameLookupTakesFirstMatchAliasFirst();
    void aliasAndSelectionNameOfUnknownNames();
};

void tst_Lookups::targetStopsAtTheFirstMissingPiece_data()
{
    QTest::addColumn<QStringList>("database");
    QTest::addColumn<QStringList>("tables");
    QTest::addColumn<QString>("target");
    QTest::newRow("complete, two tables")
            << QStringList { "P", "D", "C" } << QStringList { "orders", "customers" }
            << "<target><provider>P</provider><dsn>D</dsn><catalog>C</catalog><table>orders,customers</table></target>";
    QTest::newRow("no tables") << QStringList { "P", "D", "C" } << QStringList {}
                               << "<provider>P</provider><dsn>D</dsn><catalog>C</catalog>";
    QTest::newRow("empty catalog") << QStringList { "P", "D", "" } << QStringList { "a", "b" }
                                   << "<provider>P</provider><dsn>D</dsn>";
    QTest::newRow("empty dsn") << QStringList { "P", "", "C" } << QStringList { "a" } << "<provider>P</provider>";
    QTest::newRow("no provider") << QStringList { "", "D", "C" } << QStringList { "a" } << "";
    QTest::newRow("values are not escaped") << QStringList { "P&Q", "D", "C" } << QStringList { "a<b" }
                                            << "<target><provider>P&Q</provider><dsn>D</dsn><catalog>C</catalog>"
                                               "<table>a<b</table></target>";
}

void tst_Lookups::targetStopsAtTheFirstMissingPiece()
{
    QFETCH(QStringList, database);
    QFETCH(QStringList, tables);
    QFETCH(QString, target);
    SQLInfo query;
    setDatabase(query, database.at(0), database.at(1), database.at(2));
    for (const QString &table : tables)
        addTable(query, table, {});
    QCOMPARE(query.createTarget(), target);

    query.setDbInfo(nullptr);
    QCOMPARE(query.createTarget(), QString());
}

void tst_Lookups::tableNamesKeepMapOrder()
{
    SQLInfo query;
    QCOMPARE(query.getTableNames(), QString());
    for (const char *name : { "a", "b", "c" })
        addTable(query, QString::fromLatin1(name), {});
    QCOMPARE(query.getTableNames(), QStringLiteral("a,b,c"));
    query.setTables(nullptr);
    QCOMPARE(query.getTableNames(), QString());
}

void tst_Lookups::columnLookupPrecedence_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("foundTable");   // table of the column found, "expr" for an expression
    QTest::addColumn<QString>("foundExpress");
    QTest::newRow("qualified column") << "t2.c" << "t2" << "c";
    QTest::newRow("bare name: lower table position wins") << "c" << "t1" << "c";
    QTest::newRow("expression keyed by the whole name beats its table") << "t1.x" << "expr" << "t1.x";
    QTest::newRow("unknown table") << "zz.c" << "" << "";
    QTest::newRow("extra pieces are ignored") << "t2.c.more" << "t2" << "c";
    QTest::newRow("leading dot searches every table") << ".d" << "t2" << "d";
    QTest::newRow("expression by its text") << "SUM(t1.c)" << "expr" << "SUM(t1.c)";
}

void tst_Lookups::columnLookupPrecedence()
{
    QFETCH(QString, name);
    QFETCH(QString, foundTable);
    QFETCH(QString, foundExpress);
    SQLInfo query;
    addTable(query, QStringLiteral("t1"), { QStringLiteral("c"), QStringLiteral("x") });
    addTable(query, QStringLiteral("t2"), { QStringLiteral("c"), QStringLiteral("d") });
    addExpression(query, QStringLiteral("t1.x"));
    addExpression(query, QStringLiteral("SUM(t1.c)"));

    const auto found = query.getColumnInfo(name);
    if (foundTable.isEmpty()) {
        QVERIFY(!found);
        return;
    }
    QVERIFY(found);
    QCOMPARE(found->columnType() == ColumnInfo::Expression ? QStringLiteral("expr") : found->table(), foundTable);
    QCOMPARE(found->express(), foundExpress);
}

void tst_Lookups::displayNameLookupTakesFirstMatchAliasFirst()
{
    SQLInfo query;
    // t1.a carries the alias "t2.b", which is also t2.b's selection name: t1 comes first.
    addTable(query, QStringLiteral("t1"), { QStringLiteral("a=t2.b") });
    addTable(query, QStringLiteral("t2"), { QStringLiteral("b"), QStringLiteral("c=Total") });
    addExpression(query, QStringLiteral("COUNT(*)"), QStringLiteral("Total"));

    QCOMPARE(query.getColumnInfoFromDispName(QStringLiteral("t2.b"))->table(), QStringLiteral("t1"));
    QCOMPARE(query.getColumnInfoFromDispName(QStringLiteral("Total"))->express(), QStringLiteral("c"));
    QCOMPARE(query.getColumnInfoFromDispName(QStringLiteral("COUNT(*)"))->alias(), QStringLiteral("Total"));
    QVERIFY(!query.getColumnInfoFromDispName(QStringLiteral("t2.B")));
}

void tst_Lookups::aliasAndSelectionNameOfUnknownNames()
{
    SQLInfo query;
    addTable(query, QStringLiteral("t"), { QStringLiteral("a=Alpha"), QStringLiteral("b") });
    addExpression(query, QStringLiteral("1+1"));
    QCOMPARE(query.getFieldAlias(QStringLiteral("t.a")), QStringLiteral("Alpha"));
    QCOMPARE(query.getFieldAlias(QStringLiteral("t.zz")), QString());
    QCOMPARE(query.getFieldSelectionName(QStringLiteral("t.a")), QStringLiteral("Alpha"));
    QCOMPARE(query.getFieldSelectionName(QStringLiteral("b")), QStringLiteral("t.b"));
    QCOMPARE(query.getFieldSelectionName(QStringLiteral("1+1")), QStringLiteral(".1+1"));

    try {
        query.getFieldSelectionName(QStringLiteral("t.zz"));
        QFAIL("an unknown name must raise");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), tessaly::ErrorNumber::ObjectNotSet);
    }
    try {
        query.getFieldAlias(QString());
        QFAIL("an empty name must raise");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), tessaly::ErrorNumber::SubscriptOutOfRange);
    }
}

QTEST_APPLESS_MAIN(tst_Lookups)
#include "tst_lookups.moc"
