#include "../common/definitions.h"

#include "veldra/component/requestbuilder.h"

Q_DECLARE_METATYPE(std::function<void(veldra::SQLInfo &, veldra::RequestInputs &)>)

#include <QTest>

#include <functional>

using namespace veldra;
using namespace testdefs;

class tst_RequestBuilder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void conditionSubstitution_data();
    void conditionSubstitution();
    void everyDelimiterEndsAReference();
    void contentBlock_data();
    void contentBlock();
    void missingPiecesYieldNoRequest_data();
    void missingPiecesYieldNoRequest();
    void groupOrderAndRowCount();
    void completeRequestHasEveryBlockInOrder();
    void escapingMatchesCharacterByCharacter();
};

static RequestInputs inputs(const SQLInfo *query, const QString &selection = {},
                            const tessaly::NameMap *parameters = nullptr)
{
    RequestInputs in;
    in.query = query;
    in.selection = selection;
    in.parameters = parameters;
    return in;
}

static SQLInfo completeQuery()
{
    SQLInfo query;
    setDatabase(query, "P", "D", "C");
    addTable(query, "t", { "a=A", "b", "c=t.c" });
    addExpression(query, "SUM(t.b)", "Total");
    return query;
}

void tst_RequestBuilder::conditionSubstitution_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<QStringList>("values"); // key, value, key, value ...
    QTest::addColumn<QString>("block");
    QTest::newRow("value inserted as stored") << "a = @@@P" << QStringList { "@@@P", "'x'" } << "<condition>a = 'x'</condition>";
    QTest::newRow("unknown reference vanishes") << "a = @@@P" << QStringList {} << "<condition>a = </condition>";
    QTest::newRow("escaped after substitution") << "x<@@@Max" << QStringList { "@@@Max", "5 & 6" }
                                                << "<condition>x&lt;5 &amp; 6</condition>";
    QTest::newRow("underscore, period, quote, brackets belong to the name")
            << "@@@P_1.a\"[x] = 1" << QStringList { "@@@P_1.a\"[x]", "v" } << "<condition>v = 1</condition>";
    QTest::newRow("adjacent references") << "@@@A@@@B" << QStringList { "@@@A", "x", "@@@B", "y" } << "<condition>xy</condition>";
    QTest::newRow("empty name is the key @@@") << "a=@@@ and @@@" << QStringList { "@@@", "Z" } << "<condition>a=Z and Z</condition>";
    QTest::newRow("two at-signs are not a reference") << "a@@b" << QStringList {} << "<condition>a@@b</condition>";
    QTest::newRow("four at-signs: the fourth ends an empty name") << "@@@@x" << QStringList { "@@@", "E" }
                                                                  << "<condition>E@x</condition>";
    QTest::newRow("tab belongs to the name") << "@@@A\tB" << QStringList { "@@@A\tB", "t" } << "<condition>t</condition>";
    QTest::newRow("only a vanished reference") << "@@@Gone" << QStringList {} << "";
    QTest::newRow("empty value vanishes") << "@@@P" << QStringList { "@@@P", "" } << "";
    QTest::newRow("non-ASCII names") << "地域 = @@@地域" << QStringList { "@@@地域", "'関東'" } << "<condition>地域 = '関東'</condition>";
}

void tst_RequestBuilder::conditionSubstitution()
{
    QFETCH(QString, condition);
    QFETCH(QStringList, values);
    QFETCH(QString, block);
    SQLInfo query = completeQuery();
    query.setCondition(condition);
    tessaly::NameMap parameters;
    for (qsizetype i = 0; i + 1 < values.size(); i += 2)
        parameters.setText(values.at(i), values.at(i + 1));
    QCOMPARE(RequestBuilder(inputs(&query, QString(), &parameters)).conditionBlock(), block);
}

void tst_RequestBuilder::everyDelimiterEndsAReference()
{
    const QString delimiters = QStringLiteral("-=<>+/* ',{}()&^%$#@!;:?~\\|");
    QCOMPARE(delimiters.size(), 27);
    SQLInfo query = completeQuery();
    tessaly::NameMap parameters;
    parameters.setText("@@@P", "v");
    for (const QChar delimiter : delimiters) {
        query.setCondition(QStringLiteral("@@@P") + delimiter + QStringLiteral("z"));
        const QString expected = RequestBuilder::escape(QStringLiteral("v") + delimiter + QStringLiteral("z"));
        QCOMPARE(RequestBuilder(inputs(&query, QString(), &parameters)).conditionBlock(),
                 QStringLiteral("<condition>") + expected + QStringLiteral("</condition>"));
    }
}

void tst_RequestBuilder::contentBlock_data()
{
    QTest::addColumn<QString>("selection");
    QTest::addColumn<QString>("block");
    QTest::newRow("blanks around names are ignored") << "A , t.b" << "<content>record<field>t.a A,t.b </field></content>";
    QTest::newRow("alias equal to the selection name is left out") << "t.c" << "<content>record<field>t.c</field></content>";
    QTest::newRow("unknown names are skipped") << "nope,Total" << "<content>record<field>SUM(t.b) Total</field></content>";
    QTest::newRow("empty slot") << "" << "";
    QTest::newRow("nothing found") << "x,y" << "";
    // An empty name is the alias of every column without one: the first such column answers.
    QTest::newRow("empty piece finds the first column without alias")
            << "A,,Total" << "<content>record<field>t.a A,t.b ,SUM(t.b) Total</field></content>";
}

void tst_RequestBuilder::contentBlock()
{
    QFETCH(QString, selection);
    QFETCH(QString, block);
    const SQLInfo query = completeQuery();
    QCOMPARE(RequestBuilder(inputs(&query, selection)).contentBlock(), block);
}

void tst_RequestBuilder::missingPiecesYieldNoRequest_data()
{
    QTest::addColumn<QStringList>("database");
    QTest::addColumn<bool>("withTable");
    QTest::addColumn<QString>("selection");
    QTest::addColumn<QString>("missing");
    QTest::newRow("no fields") << QStringList { "P", "D", "C" } << true << "" << "no fields";
    QTest::newRow("no provider") << QStringList { "", "D", "C" } << true << "A" << "no provider";
    QTest::newRow("no data source") << QStringList { "P", "", "C" } << true << "A" << "no data source";
    QTest::newRow("no catalog, even with a condition") << QStringList { "P", "D", "" } << true << "A" << "no catalog";
    QTest::newRow("no table") << QStringList { "P", "D", "C" } << false << "Total" << "no table";
}

void tst_RequestBuilder::missingPiecesYieldNoRequest()
{
    QFETCH(QStringList, database);
    QFETCH(bool, withTable);
    QFETCH(QString, selection);
    QFETCH(QString, missing);
    SQLInfo query = completeQuery();
    setDatabase(query, database.at(0), database.at(1), database.at(2));
    query.setCondition("a = 1");
    if (!withTable)
        query.tables()->clear();
    const RequestBuilder builder(inputs(&query, selection));
    QVERIFY(!builder.build());
    QVERIFY2(builder.missingPiece().startsWith(missing), qPrintable(builder.missingPiece()));
    QCOMPARE(RequestBuilder(inputs(nullptr, selection)).build(), std::nullopt);
}

void tst_RequestBuilder::groupOrderAndRowCount()
{
    SQLInfo query = completeQuery();
    RequestInputs in = inputs(&query, "A,Total,t.b");
    in.orderBy = "Total";
    in.orderByAscendant = false;
    QCOMPARE(RequestBuilder(in).groupBlock(), QString());
    query.setUseGroupBy(true);
    QCOMPARE(RequestBuilder(in).groupBlock(), "<group>t.a,t.b</group>");
    query.groupBy()->append("x<y");
    QCOMPARE(RequestBuilder(in).groupBlock(), "<group>x&lt;y</group>");

    query.setUseOrderBy(true);
    QCOMPARE(RequestBuilder(in).orderBlock(), QString());
    for (const bool ascending : { true, false }) {
        auto order = std::make_shared<OrderInfo>();
        order->setColumn(ascending ? "t.a" : "t.b");
        order->setAscendant(ascending);
        query.orderBy()->append(order);
    }
    QCOMPARE(RequestBuilder(in).orderBlock(), "<order>t.a ASC,t.b DESC</order>");
    query.setOrderByAsParam(true);
    QCOMPARE(RequestBuilder(in).orderBlock(), "<order>Total DESC</order>");
    in.orderBy.clear();
    QCOMPARE(RequestBuilder(in).orderBlock(), QString());

    in.topN = 25;
    QCOMPARE(RequestBuilder(in).rowCountBlock(), QString());
    query.setTopN(10);
    QCOMPARE(RequestBuilder(in).rowCountBlock(), "<rowcount>10</rowcount>");
    query.setTopNAsParam(true);
    in.topN = 0;
    QCOMPARE(RequestBuilder(in).rowCountBlock(), "<rowcount>0</rowcount>");
}

void tst_RequestBuilder::completeRequestHasEveryBlockInOrder()
{
    SQLInfo query = completeQuery();
    setDatabase(query, "P&1", "D", "C");
    query.setCondition("t.a > @@@Min");
    query.setUseGroupBy(true);
    query.setTopN(5);
    tessaly::NameMap parameters;
    parameters.setText("@@@Min", "3");
    const auto request = RequestBuilder(inputs(&query, "A", &parameters)).build();
    QVERIFY(request);
    QCOMPARE(*request, "<query><get><content>record<field>t.a A</field></content>"
                       "<target><provider>P&amp;1</provider><dsn>D</dsn><catalog>C</catalog><table>t</table></target>"
                       "<condition>t.a &gt; 3</condition><group>t.a</group><rowcount>5</rowcount></get></query>");
}

// The escaper tests blocks of characters at once; a plain loop is the reference.
void tst_RequestBuilder::escapingMatchesCharacterByCharacter()
{
    const auto plain = [](const QString &text) {
        QString out;
        for (const QChar c : text)
            out += c == u'<' ? QStringLiteral("&lt;") : c == u'>' ? QStringLiteral("&gt;") : c == u'&' ? QStringLiteral("&amp;") : QString(c);
        return out;
    };
    // Around the block size, a special at every position, alone and with a second one; and
    // characters whose low byte is a special's (U+013C, U+023D, U+033E).
    for (int length = 0; length <= 40; ++length) {
        for (int at = 0; at < length; ++at) {
            for (const QChar special : { u'<', u'>', u'&' }) {
                QString text(length, u'x');
                text[at] = special;
                QCOMPARE(RequestBuilder::escape(text), plain(text));
                text[length - 1 - at] = u'&';
                QCOMPARE(RequestBuilder::escape(text), plain(text));
            }
        }
        const QString lookalikes(length, QChar(0x013C + (length % 3) * 0x0101));
        QCOMPARE(RequestBuilder::escape(lookalikes), lookalikes);
    }
}

QTEST_APPLESS_MAIN(tst_RequestBuilder)
#include "tst_requestbuilder.moc"
