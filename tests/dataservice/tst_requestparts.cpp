#include <dataservice/errornumber.h>
#include <dataservice/fieldlist.h>
#include <dataservice/request.h>
#include <dataservice/responsewriter.h>
#include <dataservice/sqlclause.h>

#include <tessaly/error.h>

#include <QBuffer>
#include <QDomDocument>
#include <QTest>

using namespace dataservice;

class TestRequestParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clauseCheckKeepsUserTextInsideItsClause_data();
    void clauseCheckKeepsUserTextInsideItsClause();
    void malformedRequestsNameWhatIsWrong_data();
    void malformedRequestsNameWhatIsWrong();
    void recordRequestIsReadWithUnescapedText();
    void valuesSurviveTheResponseText_data();
    void valuesSurviveTheResponseText();
    void columnNamesComeBackAsTheRequestWroteThem_data();
    void columnNamesComeBackAsTheRequestWroteThem();
    void fieldItemsAreTakenOrRefusedByName_data();
    void fieldItemsAreTakenOrRefusedByName();
};

void TestRequestParts::clauseCheckKeepsUserTextInsideItsClause_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("sqlite");
    QTest::addColumn<QString>("refusal"); // empty: accepted

    QTest::newRow("plain condition") << "a = 1 AND b < 'x;y'" << true << QString();
    QTest::newRow("nested parentheses") << "SUBSTR(a,1,(2))" << true << QString();
    QTest::newRow("doubled quote") << "name = 'O''Hara'" << true << QString();
    QTest::newRow("semicolon") << "1=1; DELETE FROM orders" << true << "semicolon";
    QTest::newRow("line comment") << "1=1 -- rest" << true << "comments";
    QTest::newRow("block comment") << "1=1 /* x */" << false << "comments";
    QTest::newRow("closes our parenthesis") << "1=1) OR (1=1" << true << "never opened";
    QTest::newRow("unclosed parenthesis") << "(1=1" << true << "never closed";
    QTest::newRow("unclosed string") << "a = 'x" << true << "never closed";
    QTest::newRow("dollar quoting") << "$$x$$ = a" << false << "$";
    QTest::newRow("E string hides quote") << "E'\\'' = '' ; DELETE FROM orders; SELECT ''" << false << "semicolon";
    QTest::newRow("E is a name on SQLite, so a comment follows the string")
            << "E'\\' = 1 --'" << true << "comments";
    QTest::newRow("E string on SQLite ends at the first quote")
            << "E'\\' = '' ; x" << true << "semicolon";
    QTest::newRow("E string on PostgreSQL takes backslash escapes") << "E'\\' ) --'" << false << QString();
    QTest::newRow("Unicode identifier on PostgreSQL") << "U&\"\\0070g\" = 1" << false << QString();
    QTest::newRow("backtick identifier") << "`'`; DELETE FROM orders; SELECT '`" << true << "semicolon";
    QTest::newRow("bracket identifier hides semicolon") << "[a;b] = 1" << true << QString();
    QTest::newRow("NUL byte") << QStringLiteral("1=1") + QChar(0) + QStringLiteral("x") << true << "control character";
    QTest::newRow("blank") << "   " << true << "empty";
}

void TestRequestParts::clauseCheckKeepsUserTextInsideItsClause()
{
    QFETCH(QString, text);
    QFETCH(bool, sqlite);
    QFETCH(QString, refusal);
    const SqlClause clause(QStringLiteral("condition"), text,
                           sqlite ? SqlClause::Dialect::SQLite : SqlClause::Dialect::PostgreSQL);
    try {
        clause.check();
        QVERIFY2(refusal.isEmpty(), "accepted a clause that must be refused");
    } catch (const tessaly::Error &error) {
        QVERIFY2(!refusal.isEmpty(), qPrintable(error.message()));
        QCOMPARE(error.number(), ErrorNumber::StatementRefused);
        QVERIFY2(error.message().contains(refusal), qPrintable(error.message()));
        QVERIFY(error.message().contains(QStringLiteral("condition")));
    }
}

void TestRequestParts::malformedRequestsNameWhatIsWrong_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("mentions");

    QTest::newRow("not XML") << QByteArray("<query><get>") << "line 1";
    QTest::newRow("wrong root") << QByteArray("<ask/>") << "<ask>";
    QTest::newRow("no target") << QByteArray("<query><get><content>column</content></get></query>") << "<target>";
    QTest::newRow("unknown content")
        << QByteArray("<query><get><content>rows</content><target/></get></query>") << "\"rows\"";
    QTest::newRow("gap in target")
        << QByteArray("<query><get><content>column</content><target><provider/><dsn>D</dsn><catalog/><table/>"
                      "</target></get></query>") << "<dsn>";
    QTest::newRow("record without fields")
        << QByteArray("<query><get><content>record<field> </field></content><target><provider>P</provider>"
                      "<dsn>D</dsn><catalog>C</catalog><table>T</table></target></get></query>") << "<field>";
    QTest::newRow("negative row count")
        << QByteArray("<query><get><content>record<field>a</field></content><target><provider>P</provider>"
                      "<dsn>D</dsn><catalog>C</catalog><table>T</table></target><rowcount>-1</rowcount></get></query>")
        << "-1";
    QTest::newRow("unknown element")
        << QByteArray("<query><get><content>column</content><target/><having>x</having></get></query>") << "<having>";
    QTest::newRow("nesting deep enough to exhaust a recursive reader")
        << QByteArray("<query><get><content>column</content><target/><condition>") + QByteArray("<x>").repeated(200000)
        << "<x> in <condition>";
}

void TestRequestParts::malformedRequestsNameWhatIsWrong()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, mentions);
    try {
        Request::parse(xml);
        QFAIL("a malformed request was accepted");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), ErrorNumber::MalformedRequest);
        QVERIFY2(error.message().contains(mentions), qPrintable(error.message()));
    }
}

void TestRequestParts::recordRequestIsReadWithUnescapedText()
{
    const Request request = Request::parse(
        "<query><get><content>record<field>SUBSTR(a,1,2) s,b </field></content><target><provider>SQLite</provider>"
        "<dsn>Sample</dsn><catalog>main</catalog><table>orders,customers</table></target>"
        "<condition>a &lt; 5 AND b &gt; 'x&amp;y'</condition><rowcount>7</rowcount></get></query>");
    QCOMPARE(request.kind, Request::Kind::Record);
    QCOMPARE(request.fields, QStringLiteral("SUBSTR(a,1,2) s,b "));
    QCOMPARE(request.condition, QStringLiteral("a < 5 AND b > 'x&y'"));
    QCOMPARE(request.table, QStringLiteral("orders,customers"));
    QCOMPARE(request.rowCount, std::optional<qint64>(7));
    QCOMPARE(request.level(), Request::Level::Columns);
}

void TestRequestParts::valuesSurviveTheResponseText_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("base64");

    QTest::newRow("markup characters") << QByteArray("a<b>&c \"q\" 'x'") << false;
    QTest::newRow("line breaks and tab") << QByteArray("one\r\ntwo\tthree\r") << false;
    QTest::newRow("non-ASCII") << QByteArray("Gr\xc3\xbc\xc3\x9f\x65 \xe6\x9d\xb1\xe4\xba\xac \xf0\x9f\x98\x80") << false;
    QTest::newRow("white space alone") << QByteArray(" \t\r\n") << true; // a DOM reader would drop it
    QTest::newRow("control character") << QByteArray("bell\x07") << true;
    QTest::newRow("invalid UTF-8") << QByteArray("\xff\xfe") << true;
    QTest::newRow("encoded surrogate") << QByteArray("\xed\xa0\x80") << true;
    QTest::newRow("truncated sequence") << QByteArray("ab\xe6\x9d") << true;
}

void TestRequestParts::valuesSurviveTheResponseText()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, base64);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    ResponseWriter writer(&out);
    writer.startResponse();
    writer.startTable({QByteArray("na\"me<")});
    writer.startRecord();
    writer.value(value.constData(), value.size());
    writer.endRecord();
    writer.endTable(1, false, 10);
    writer.endResponse();

    QDomDocument document;
    QString message;
    QVERIFY2(document.setContent(out.data(), &message), qPrintable(message));
    const QDomElement field = document.documentElement().firstChildElement().firstChildElement().firstChildElement();
    QCOMPARE(field.attribute(QStringLiteral("name")), QStringLiteral("na\"me<"));
    QCOMPARE(field.attribute(QStringLiteral("encoding")) == u"base64", base64);
    const QByteArray read = base64 ? QByteArray::fromBase64(field.text().toLatin1()) : field.text().toUtf8();
    QCOMPARE(read, value);
}

void TestRequestParts::columnNamesComeBackAsTheRequestWroteThem_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QByteArrayList>("engine");
    QTest::addColumn<QByteArrayList>("expected");
    QTest::newRow("aliases with and without AS, a quoted one")
            << "regions.name Region,COUNT(x) AS Total,x \"MiXed\"" << QByteArrayList{ "region", "total", "MiXed" }
            << QByteArrayList{ "Region", "Total", "MiXed" };
    QTest::newRow("column reference") << "t.Amount" << QByteArrayList{ "amount" } << QByteArrayList{ "Amount" };
    QTest::newRow("commas and blanks inside parentheses and quotes")
            << "ROUND(SUM(o.a), 2) Revenue,'a, b' Label,c" << QByteArrayList{ "revenue", "label", "c" }
            << QByteArrayList{ "Revenue", "Label", "c" };
    QTest::newRow("engine name that is not the folded alias stays")
            << "COUNT(o.id),o.a + o.b Sum" << QByteArrayList{ "count", "?column?" }
            << QByteArrayList{ "count", "?column?" };
    QTest::newRow("a star breaks the one-to-one match")
            << "t.*,t.Name" << QByteArrayList{ "id", "x", "name" } << QByteArrayList{ "id", "x", "name" };
}

void TestRequestParts::columnNamesComeBackAsTheRequestWroteThem()
{
    QFETCH(QString, fields);
    QFETCH(QByteArrayList, engine);
    QFETCH(QByteArrayList, expected);
    QCOMPARE(FieldList(fields, SqlDialect::PostgreSQL).namesAsWritten(engine), expected);
}

void TestRequestParts::fieldItemsAreTakenOrRefusedByName_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("statement"); // the select list the engines receive, or the refusal
    QTest::newRow("aliases go through as written")
            << "a x,b AS y,c \"Total Revenue\",d Straße" << "a x,b AS y,c \"Total Revenue\",d Straße";
    QTest::newRow("a key word one engine takes only after AS gets it")
            << "strftime('%Y', d) Year,COUNT(*) filter" << "strftime('%Y', d) AS Year,COUNT(*) AS filter";
    QTest::newRow("type names and interval fields are not aliases")
            << "x::double precision,y::character varying,interval '1' day,z::interval year"
            << "x::double precision,y::character varying,interval '1' day,z::interval year";
    QTest::newRow("a reserved word that ends an expression is not an alias")
            << "CASE WHEN a THEN 1 END,x IS NULL" << "CASE WHEN a THEN 1 END,x IS NULL";
    QTest::newRow("two names after the expression") << "SUM(x) Total Revenue" << "\"Total Revenue\"";
    QTest::newRow("two names after AS") << "a AS Total Revenue" << "\"Total Revenue\"";
    QTest::newRow("a reserved word as alias") << "a,b order" << "item 2";
    QTest::newRow("a word SQLite reserves after AS") << "a AS values" << "reserved word of SQLite";
}

void TestRequestParts::fieldItemsAreTakenOrRefusedByName()
{
    QFETCH(QString, fields);
    QFETCH(QString, statement);
    for (const SqlDialect dialect : { SqlDialect::SQLite, SqlDialect::PostgreSQL }) {
        try {
            QCOMPARE(FieldList(fields, dialect).statementText(), statement);
        } catch (const tessaly::Error &error) {
            QCOMPARE(error.number(), ErrorNumber::StatementRefused);
            QVERIFY2(error.message().contains(statement), qPrintable(error.message()));
        }
    }
}

QTEST_GUILESS_MAIN(TestRequestParts)
#include "tst_requestparts.moc"
