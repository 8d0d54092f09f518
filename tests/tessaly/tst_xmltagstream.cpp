#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/xmltagreader.h"
#include "tessaly/xmltagwriter.h"

#include <QTest>

using namespace tessaly;

class tst_XmlTagStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyStringSurvivesAsValueAndKey_data();
    void everyStringSurvivesAsValueAndKey();
    void typedValuesRoundTrip();
    void unknownElementIsSkippedAndStreamStaysInStep();
    void malformedInputNamesLineAndColumn_data();
    void malformedInputNamesLineAndColumn();
    void mapKeepsInsertionOrderAndReplacesInPlace();
    void mapCopyIsDeepForObjectsAndRemoveKeepsIndexConsistent();
};

static QString fromUnits(std::initializer_list<char16_t> units)
{
    QString text;
    for (char16_t unit : units)
        text += QChar(unit);
    return text;
}

void tst_XmlTagStream::everyStringSurvivesAsValueAndKey_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks only") << QStringLiteral("   ");
    QTest::newRow("leading and trailing blanks") << QStringLiteral("  a b  ");
    QTest::newRow("markup characters") << QStringLiteral("<a href=\"x\">&amp;</a> ]]> '");
    QTest::newRow("CR LF and lone CR") << QStringLiteral("line1\r\nline2\rline3\n");
    QTest::newRow("tab and newline") << QStringLiteral("\tx\ny\t");
    QTest::newRow("NUL and controls") << fromUnits({ u'a', 0x0000, 0x0001, 0x001F, 0x007F, u'b' });
    QTest::newRow("non-characters") << fromUnits({ 0xFFFE, 0xFFFF, 0xFFFD });
    QTest::newRow("lone high surrogate") << fromUnits({ u'x', 0xD800, u'y' });
    QTest::newRow("lone low surrogate at end") << fromUnits({ u'x', 0xDC00 });
    QTest::newRow("reversed pair") << fromUnits({ 0xDC00, 0xD800 });
    QTest::newRow("valid pair") << QStringLiteral("😀 ok");
    QTest::newRow("text that looks escaped") << QStringLiteral("\\u0041 \\\\ \\");
    QTest::newRow("japanese") << QStringLiteral("地域コード = '関東'");
}

// A string is written as a NameMap key and as its text value, then read back.
void tst_XmlTagStream::everyStringSurvivesAsValueAndKey()
{
    QFETCH(QString, text);
    NameMap map;
    map.setText(text, text);
    map.setText(QStringLiteral("after"), QStringLiteral("still here"));

    QByteArray xml;
    XmlTagWriter writer(&xml);
    map.zetVariable_Write(writer);
    writer.finish();

    NameMap read;
    XmlTagReader reader(xml, QStringLiteral("memory"));
    read.zetVariable_Read(reader);
    reader.finish();

    QCOMPARE(read.count(), 2);
    QCOMPARE(read.key(0), text);
    QCOMPARE(read.item(0).toString(), text);
    QCOMPARE(read.item(1).toString(), QStringLiteral("still here"));
}

void tst_XmlTagStream::typedValuesRoundTrip()
{
    QByteArray xml;
    XmlTagWriter writer(&xml);
    writer.WriteTag(QStringLiteral("root"));
    for (qint32 value : { qint32(0), qint32(-1), std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max() }) {
        writer.WriteTag(QStringLiteral("n"));
        writer.WriteValue(value);
        writer.WriteEndTag();
    }
    writer.WriteTag(QStringLiteral("b"));
    writer.WriteValue(false);
    writer.WriteEndTag();
    writer.WriteEndTag();
    writer.finish();

    XmlTagReader reader(xml, QStringLiteral("memory"));
    QCOMPARE(reader.ReadTag(), QStringLiteral("root"));
    QList<qint32> numbers;
    while (reader.ReadTag() == u"n") {
        qint32 value = 7;
        reader.ReadValue(value);
        numbers.append(value);
        reader.ReadEndTag();
    }
    QCOMPARE(reader.CurrentTag(), QStringLiteral("b"));
    bool flag = true;
    reader.ReadValue(flag);
    QCOMPARE(flag, false);
    QCOMPARE(numbers, (QList<qint32> { 0, -1, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max() }));
}

// A reader that stops at an unknown name closes its element with one end tag; the stream must
// then continue with the element's next sibling, not somewhere inside the skipped part.
void tst_XmlTagStream::unknownElementIsSkippedAndStreamStaysInStep()
{
    const QByteArray xml = "<root><rec><a>1</a><zzz><deep><a>2</a></deep></zzz><a>3</a></rec>"
                           "<next>ok</next></root>";
    XmlTagReader reader(xml, QStringLiteral("memory"));
    QCOMPARE(reader.ReadTag(), QStringLiteral("root"));
    QCOMPARE(reader.ReadTag(), QStringLiteral("rec"));
    QCOMPARE(reader.ReadTag(), QStringLiteral("a"));
    QString a;
    reader.ReadValue(a);
    reader.ReadEndTag();
    QCOMPARE(reader.ReadTag(), QStringLiteral("zzz"));
    reader.ReadEndTag(); // closes <rec>, skipping <zzz> and the third <a>
    QCOMPARE(reader.ReadTag(), QStringLiteral("next"));
    QString next;
    reader.ReadValue(next);
    QCOMPARE(next, QStringLiteral("ok"));
    reader.ReadEndTag();
    QCOMPARE(reader.ReadTag(), QString());
    reader.ReadEndTag();
    reader.finish();
}

void tst_XmlTagStream::malformedInputNamesLineAndColumn_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("what");
    QTest::newRow("truncated") << QByteArray("<NameMap>\n<Text key=\"a\">x</Text>\n<Te") << "src:3:" << "";
    QTest::newRow("mismatched tag") << QByteArray("<NameMap>\n<Text key=\"a\">x</Txt>") << "src:2:" << "";
    QTest::newRow("bad escape") << QByteArray("<NameMap><Text key=\"a\" escaped=\"true\">\\u12</Text></NameMap>")
                                << "src:1:" << "malformed";
    QTest::newRow("unknown object class") << QByteArray("<NameMap><Object key=\"a\"><Bogus/></Object></NameMap>")
                                          << "src:1:" << "Bogus";
    QTest::newRow("elements where a text belongs") << QByteArray("<NameMap><Text key=\"a\"><b/></Text></NameMap>")
                                                   << "src:1:" << "<Text>";
    QTest::newRow("garbage after the root") << QByteArray("<NameMap/><NameMap/>") << "src:1:" << "";
    QTest::newRow("nesting deep enough to exhaust the stack")
            << QByteArray("<NameMap>") + QByteArray("<Object key=\"a\"><NameMap>").repeated(100000)
            << "src:1:" << "nested more than";
}

void tst_XmlTagStream::malformedInputNamesLineAndColumn()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, where);
    QFETCH(QString, what);
    NameMap map;
    XmlTagReader reader(xml, QStringLiteral("src"));
    try {
        map.zetVariable_Read(reader);
        reader.finish();
        QFAIL("no error raised");
    } catch (const Error &error) {
        QVERIFY2(error.message().startsWith(where), qPrintable(error.message()));
        QVERIFY2(error.message().contains(what), qPrintable(error.message()));
        QCOMPARE(error.number(), ErrorNumber::BadFileFormat);
    }
}

void tst_XmlTagStream::mapKeepsInsertionOrderAndReplacesInPlace()
{
    NameMap map;
    map.setText(QStringLiteral("b"), QStringLiteral("1"));
    map.setText(QStringLiteral("a"), QStringLiteral("2"));
    map.setText(QStringLiteral("B"), QStringLiteral("3"));
    map.setText(QStringLiteral("b"), QStringLiteral("4"));
    QCOMPARE(map.count(), 3);
    QCOMPARE(map.key(0), QStringLiteral("b"));
    QCOMPARE(map.item(0).toString(), QStringLiteral("4"));
    QCOMPARE(map.key(2), QStringLiteral("B"));
    QVariant value;
    QVERIFY(!map.lookup(QStringLiteral("A"), &value));
    QVERIFY(!map.item(QStringLiteral("missing")).isValid());
    QVERIFY_THROWS_EXCEPTION(Error, map.key(3));
    QVERIFY_THROWS_EXCEPTION(Error, map.item(-1));
}

void tst_XmlTagStream::mapCopyIsDeepForObjectsAndRemoveKeepsIndexConsistent()
{
    auto inner = std::make_shared<NameMap>();
    inner->setText(QStringLiteral("k"), QStringLiteral("v"));
    NameMap map;
    map.setObject(QStringLiteral("inner"), inner);
    map.setText(QStringLiteral("x"), QStringLiteral("1"));
    map.set(QStringLiteral("nothing"), QVariant());

    const auto copy = map.copy();
    QVERIFY(copy->object<NameMap>(QStringLiteral("inner")) != inner);
    inner->setText(QStringLiteral("k"), QStringLiteral("changed"));
    QCOMPARE(copy->object<NameMap>(QStringLiteral("inner"))->item(0).toString(), QStringLiteral("v"));

    QVERIFY(map.remove(QStringLiteral("inner")));
    QCOMPARE(map.key(0), QStringLiteral("x"));
    QCOMPARE(map.item(QStringLiteral("x")).toString(), QStringLiteral("1"));
    QVERIFY(map.lookup(QStringLiteral("nothing")));
    map.setText(QStringLiteral("y"), QStringLiteral("2"));
    QCOMPARE(map.key(2), QStringLiteral("y"));
    QCOMPARE(map.item(QStringLiteral("y")).toString(), QStringLiteral("2"));
}

QTEST_APPLESS_MAIN(tst_XmlTagStream)
#include "tst_xmltagstream.moc"
