#include "../common/definitions.h"

#include "veldra/records/definitionfile.h"
#include "veldra/resources/stringtable.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;

class tst_Records : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StringTable::setLanguage(Language::English); }
    void tableCopySharesDatabaseButNotColumns();
    void queryCopySharesOrderItemsAndSourceDatabaseOfTables();
    void parameterSelectionsTravelOnlyForListParameters();
    void fullDefinitionRoundTripsByteForByte();
    void childrenInAnyOrderGiveTheSameRecord();
    void unknownElementEndsOnlyItsOwnRecord();
    void wrongRecordTagLeavesRecordUntouched();
    void readingAppendsToCollections();
    void tablesAreReconnectedOnlyToACompleteDatabase_data();
    void tablesAreReconnectedOnlyToACompleteDatabase();
    void printTexts();
};

void tst_Records::tableCopySharesDatabaseButNotColumns()
{
    SQLInfo query;
    const auto table = addTable(query, QStringLiteral("t"), { QStringLiteral("c") });
    const auto copy = table->copy();
    copy->columns()->object<ColumnInfo>(QStringLiteral("c"))->setAlias(QStringLiteral("changed"));
    QCOMPARE(table->columns()->object<ColumnInfo>(QStringLiteral("c"))->alias(), QString());
    copy->dbInfo()->setProvider(QStringLiteral("P"));
    QCOMPARE(table->dbInfo()->provider(), QStringLiteral("P"));
}

void tst_Records::queryCopySharesOrderItemsAndSourceDatabaseOfTables()
{
    SQLInfo query;
    setDatabase(query, QStringLiteral("P"), QStringLiteral("D"), QStringLiteral("C"));
    addTable(query, QStringLiteral("t"), { QStringLiteral("c") });
    query.reconnectTables();
    auto order = std::make_shared<OrderInfo>();
    query.orderBy()->append(order);
    query.groupBy()->append(QStringLiteral("t.c"));

    const auto copy = query.copy();
    QVERIFY(copy->dbInfo() != query.dbInfo());
    QVERIFY(copy->tables()->object<TableInfo>(QStringLiteral("t"))->dbInfo() == query.dbInfo());
    copy->orderBy()->item(1)->setColumn(QStringLiteral("shared"));
    QCOMPARE(order->column(), QStringLiteral("shared"));
    copy->groupBy()->append(QStringLiteral("x"));
    QCOMPARE(query.groupBy()->count(), 1);
    QVERIFY(copy->orderBy() != query.orderBy());
}

void tst_Records::parameterSelectionsTravelOnlyForListParameters()
{
    for (const qint32 type : { ParamInfo::TypedIn, ParamInfo::ChosenFromList }) {
        ParamInfo parameter;
        parameter.setParamType(type);
        parameter.selections()->setText(QStringLiteral("'NE'"), QStringLiteral("North East"));
        const bool kept = type == ParamInfo::ChosenFromList;

        const auto copy = parameter.copy();
        QCOMPARE(copy->selections()->count(), kept ? 1 : 0);
        QVERIFY(copy->selections() != parameter.selections());

        ParamInfo loaded;
        load(loaded, save(parameter));
        QCOMPARE(loaded.selections()->count(), kept ? 1 : 0);
        QCOMPARE(save(parameter).contains("<selections>"), kept);
    }
    // "selections" before "paramType" is read all the same.
    ParamInfo read;
    load(read, "<ParamInfo><selections><NameMap><Text key=\"k\">v</Text></NameMap></selections>"
               "<paramType>2</paramType><paramName>@@@P</paramName></ParamInfo>");
    QCOMPARE(read.paramType(), 2);
    QCOMPARE(read.paramName(), QStringLiteral("@@@P"));
    QCOMPARE(read.selections()->item(QStringLiteral("k")).toString(), QStringLiteral("v"));
}

void tst_Records::fullDefinitionRoundTripsByteForByte()
{
    const QString sample = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.xml");
    const auto query = readDefinitionFile(sample);
    QCOMPARE(query->tables()->count(), 3);
    QCOMPARE(query->parameters()->object<ParamInfo>(QStringLiteral("@@@Region"))->selections()->count(), 6);
    QVERIFY(query->tables()->object<TableInfo>(QStringLiteral("orders"))->dbInfo() == query->dbInfo());

    const QByteArray first = writeDefinition(*query);
    const auto again = readDefinition(first, QStringLiteral("first"));
    QCOMPARE(writeDefinition(*again), first);
    QCOMPARE(writeDefinition(*query->copy()), first);
}

void tst_Records::childrenInAnyOrderGiveTheSameRecord()
{
    SQLInfo forward;
    load(forward, "<SQLInfo><dbInfo><DBInfo><provider>P</provider><dsn>D</dsn><catalog>C</catalog></DBInfo></dbInfo>"
                  "<condition>a = 1</condition><topN>5</topN><selections><Item>t.a</Item></selections></SQLInfo>");
    SQLInfo backward;
    load(backward, "<SQLInfo><selections><Item>t.a</Item></selections><topN>5</topN><condition>a = 1</condition>"
                   "<dbInfo><DBInfo><catalog>C</catalog><dsn>D</dsn><provider>P</provider></DBInfo></dbInfo></SQLInfo>");
    QCOMPARE(save(backward), save(forward));
    QCOMPARE(forward.topN(), 5);
}

void tst_Records::unknownElementEndsOnlyItsOwnRecord()
{
    SQLInfo query;
    load(query, "<SQLInfo>"
                "<dbInfo><DBInfo><provider>P</provider><future>x</future><dsn>lost</dsn></DBInfo></dbInfo>"
                "<topN>7</topN>"
                "<newThing><topN>99</topN></newThing>"
                "<condition>lost too</condition>"
                "</SQLInfo>");
    QCOMPARE(query.dbInfo()->provider(), QStringLiteral("P"));
    QCOMPARE(query.dbInfo()->dsn(), QString());
    QCOMPARE(query.topN(), 7);
    QCOMPARE(query.condition(), QString());
}

void tst_Records::wrongRecordTagLeavesRecordUntouched()
{
    dbInfo info;
    info.setProvider(QStringLiteral("kept"));
    tessaly::XmlTagReader reader(QByteArray("<TableInfo><tableName>t</tableName></TableInfo>"), QStringLiteral("test"));
    QVERIFY(info.zetVariable_Read(reader));
    QCOMPARE(info.provider(), QStringLiteral("kept"));
    reader.finish();
}

void tst_Records::readingAppendsToCollections()
{
    SQLInfo query;
    select(query, { QStringLiteral("first") });
    const QByteArray xml = "<SQLInfo><selections><Item>a</Item><Item>b</Item></selections>"
                           "<orderBy><Item><OrderInfo><column>a</column><ascendant>false</ascendant></OrderInfo></Item>"
                           "<Item><OrderInfo><column>b</column></OrderInfo></Item>"
                           "<Item><OrderInfo><column>c</column></OrderInfo></Item></orderBy></SQLInfo>";
    load(query, xml);
    load(query, xml);
    QCOMPARE(query.selections()->items(), (QList<QString> { "first", "a", "b", "a", "b" }));
    QCOMPARE(query.orderBy()->count(), 6);
    QCOMPARE(query.orderBy()->item(1)->column(), QStringLiteral("a"));
    QVERIFY(!query.orderBy()->item(1)->ascendant());
    QCOMPARE(query.orderBy()->item(3)->column(), QStringLiteral("c"));
    QVERIFY(query.orderBy()->item(1) != query.orderBy()->item(4));
}

void tst_Records::tablesAreReconnectedOnlyToACompleteDatabase_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("connected");
    const QByteArray tables = "<tables><NameMap><Object key=\"t\"><TableInfo><tableName>t</tableName></TableInfo>"
                              "</Object></NameMap></tables>";
    QTest::newRow("complete, written order")
            << "<SQLInfo><dbInfo><DBInfo><provider>P</provider><dsn>D</dsn><catalog>C</catalog></DBInfo></dbInfo>"
               + tables + "</SQLInfo>" << true;
    QTest::newRow("empty catalog")
            << "<SQLInfo><dbInfo><DBInfo><provider>P</provider><dsn>D</dsn></DBInfo></dbInfo>" + tables + "</SQLInfo>"
            << false;
    QTest::newRow("tables before the database")
            << "<SQLInfo>" + tables
               + "<dbInfo><DBInfo><provider>P</provider><dsn>D</dsn><catalog>C</catalog></DBInfo></dbInfo></SQLInfo>"
            << false;
}

void tst_Records::tablesAreReconnectedOnlyToACompleteDatabase()
{
    QFETCH(QByteArray, xml);
    QFETCH(bool, connected);
    SQLInfo query;
    load(query, xml);
    const auto table = query.tables()->object<TableInfo>(QStringLiteral("t"));
    QVERIFY(table);
    QCOMPARE(table->dbInfo() == query.dbInfo(), connected);
    QVERIFY(table->dbInfo());
}

void tst_Records::printTexts()
{
    dbInfo info;
    info.setProvider(QStringLiteral("P"));
    info.setDsn(QStringLiteral("D"));
    QCOMPARE(info.zetVariable_Print(), QStringLiteral("[P:D:]"));
    QCOMPARE(column(QStringLiteral("t"), QStringLiteral("c"), QStringLiteral("A"))->zetVariable_Print(), QStringLiteral("[A:c]"));
    QCOMPARE(expression(QStringLiteral("SUM(price)"))->GetSelectionName(), QStringLiteral("SUM(price)"));
    QCOMPARE(column(QStringLiteral("orders"), QStringLiteral("amount"))->GetSelectionName(), QStringLiteral("orders.amount"));
    ParamInfo parameter;
    parameter.setParamName(QStringLiteral("@@@R"));
    parameter.setTitle(QStringLiteral("Region"));
    QCOMPARE(parameter.zetVariable_Print(), QStringLiteral("[@@@R:Region]"));
}

QTEST_APPLESS_MAIN(tst_Records)
#include "tst_records.moc"
