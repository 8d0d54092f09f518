#include "../common/structureservice.h"

#include "veldra/records/dbinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"

#include <QTest>

using namespace veldra;
using tessaly::NameMap;
using tessaly::ObjectRef;
using testservice::names;
using testservice::sampleDatabase;

namespace {

// Requests compare as documents: what the proxy receives is a parsed request, not text.
QString canonical(const QString &xml)
{
    QDomDocument document;
    if (!document.setContent(xml))
        return QStringLiteral("unparsable: ") + xml;
    return document.toString(-1);
}

// The request for the names one level below path ("provider/dsn/catalog/table", "" for the
// providers).
QString navigation(const QString &path)
{
    const QStringList p = path.split('/');
    return "<query><get><content>column</content><target><provider>" + p.value(0) + "</provider><dsn>" + p.value(1)
            + "</dsn><catalog>" + p.value(2) + "</catalog><table>" + p.value(3) + "</table></target></get></query>";
}

QString keyValueRequest(const QString &fields, const QString &group)
{
    return "<query><get><content>record<field>" + fields + "</field></content><target><provider>SQLite</provider>"
           "<dsn>Sample</dsn><catalog>main</catalog><table>regions</table></target><group>"
            + group + "</group></get></query>";
}

// The keys of a map in order, or "key=value" with values.
QStringList entries(const std::shared_ptr<NameMap> &map, bool values = false)
{
    QStringList list;
    for (int i = 0; map && i < map->count(); ++i)
        list.append(values ? map->key(i) + '=' + map->item(i).toString() : map->key(i));
    return list;
}

// The uncached query for the level below path: providers for "", columns for a table.
TSAccessor::NameMapRef query(TSAccessor &accessor, const QString &path)
{
    const QStringList p = path.split('/', Qt::SkipEmptyParts);
    switch (p.size()) {
    case 0: return accessor.QueryProviders();
    case 1: return accessor.QueryDSNs(p[0]);
    case 2: return accessor.QueryCatalogs(p[0], p[1]);
    case 3: return accessor.QueryTables(p[0], p[1], p[2]);
    default: return accessor.QueryColumns(p[0], p[1], p[2], p[3]);
    }
}

// The cached lookup of what path names.
ObjectRef lookup(TSAccessor &accessor, const QString &path)
{
    const QStringList p = path.split('/');
    switch (p.size()) {
    case 1: return accessor.GetDSNsAt(p[0]);
    case 2: return accessor.GetCatalogsAt(p[0], p[1]);
    case 3: return accessor.GetTablesAt(p[0], p[1], p[2]);
    default: return accessor.GetTableInfoAt(p[0], p[1], p[2], p[3]);
    }
}

// What the cache below node holds at path.
ObjectRef storedAt(std::shared_ptr<NameMap> node, const QString &path)
{
    const QStringList p = path.split('/');
    for (int i = 0; node && i + 1 < p.size(); ++i)
        node = node->object<NameMap>(p[i]);
    return node ? NameMap::toObject(node->item(p.last())) : nullptr;
}

} // namespace

class tst_TSAccessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StringTable::setLanguage(Language::English); }
    void init();
    void cleanup();

    void navigationAsksOneLevelAndReadsTheFirstResponse_data();
    void navigationAsksOneLevelAndReadsTheFirstResponse();
    void keyValuesAreAskedGroupedAndReadByFieldName_data();
    void keyValuesAreAskedGroupedAndReadByFieldName();

    void walkAsksOncePerProviderAndDataSource();
    void lookupsAskOnlyForWhatTheCacheLacks_data();
    void lookupsAskOnlyForWhatTheCacheLacks();

    void failuresSetLastErrorAndAreReported_data();
    void failuresSetLastErrorAndAreReported();
    void unsetProxyYieldsNothingAndShowsNothing();

private:
    QList<DatabaseErrorReport> m_reports;
    std::shared_ptr<testservice::ScriptedService> m_proxy;
    std::unique_ptr<TSAccessor> m_accessor;
};

void tst_TSAccessor::init()
{
    m_reports.clear();
    // The sample structure, with D2 empty, C1's unlisted table V9 and the unlisted providers P3
    // (no data sources) and P4 (D4) answering.
    m_proxy = testservice::sampleStructure();
    m_proxy->levels.insert({ { "P1/D2", {} }, { "P3", {} }, { "P4", { "D4" } }, { "P1/D1/C1/T1", { "id", "name" } },
                             { "P1/D1/C1/V9", { "when", "what", "who" } } });
    m_accessor = std::make_unique<TSAccessor>();
    m_accessor->setTsProxy(m_proxy);
    m_accessor->setErrorReporter([this](const DatabaseErrorReport &report) { m_reports.append(report); });
}

void tst_TSAccessor::cleanup()
{
    m_accessor.reset();
}

void tst_TSAccessor::navigationAsksOneLevelAndReadsTheFirstResponse_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("response");
    QTest::addColumn<QStringList>("keys");
    const auto row = [](const char *name, const QString &path, const QString &response, const QStringList &keys) {
        QTest::newRow(name) << path << response << keys;
    };
    const QStringList cab{ "c", "a", "b" };
    const QStringList nothing{ "(nothing)" };
    row("providers, in the order of the response", "", names(cab), cab);
    row("data sources", "P", names(cab), cab);
    row("catalogs", "P/D", names(cab), cab);
    row("tables", "P/D/C", names(cab), cab);
    row("columns", "P/D/C/T", names(cab), cab);
    row("empty and missing names skipped",
        "", R"(<response><item name=""/><item name="a"/><item type="t"/><item name="b"/></response>)", { "a", "b" });
    row("comments and text between items ignored",
        "", "<response>\n <!-- first --> <item name=\"a\"/>text<item name=\"b\"/>\n</response>", { "a", "b" });
    row("response found below other elements",
        "", R"(<e><item name="no"/><body><response><item name="a"/></response></body></e>)", { "a" });
    row("first response in document order wins",
        "", R"(<r><response><item name="a"/></response><response><item name="b"/></response></r>)", { "a" });
    row("grandchildren are not items", "", R"(<response><g name="g"><item name="i"/></g></response>)", { "g" });
    row("childless response gives an empty map", "", "<response/>", {});
    row("no response element gives nothing", "", "<answer><item name=\"a\"/></answer>", nothing);
    row("element name compared case-sensitively", "", "<Response><item name=\"a\"/></Response>", nothing);
}

void tst_TSAccessor::navigationAsksOneLevelAndReadsTheFirstResponse()
{
    QFETCH(QString, path);
    QFETCH(QString, response);
    QFETCH(QStringList, keys);
    m_proxy->script(navigation(path), response);
    const auto result = query(*m_accessor, path);
    QCOMPARE(m_proxy->requests, QStringList{ canonical(navigation(path)) });
    QCOMPARE(result ? entries(result) : QStringList{ "(nothing)" }, keys);
    for (int i = 0; result && i < result->count(); ++i)
        QVERIFY(!result->item(i).isValid());
    QCOMPARE(m_accessor->LastError(), 0);
    QVERIFY(m_reports.isEmpty());
}

void tst_TSAccessor::keyValuesAreAskedGroupedAndReadByFieldName_data()
{
    QTest::addColumn<QString>("valCol");
    QTest::addColumn<QString>("records");
    QTest::addColumn<QStringList>("pairs");
    // Records written "name=value,name=value;..."; a value "b64:..." is sent base64-encoded.
    const auto row = [](const char *name, const QString &valCol, const QString &records, const QStringList &pairs) {
        QString xml;
        for (const QString &record : records.split(';')) {
            xml += "<record>";
            for (const QString &field : record.split(',')) {
                const QString value = field.section('=', 1);
                xml += "<field name=\"" + field.section('=', 0, 0) + "\""
                        + (value.startsWith("b64:") ? " encoding=\"base64\">" + value.mid(4) : '>' + value) + "</field>";
            }
            xml += "</record>";
        }
        QTest::newRow(name) << valCol << xml << pairs;
    };
    row("key and display text, in any field order", "name", "code=N,name=North;name=South,code=S",
        { "N=North", "S=South" });
    row("records without a key or with an empty one left out", "name", "name=Nowhere;code=,name=Void;code=E,name=East",
        { "E=East" });
    row("missing or empty display column shows the key", "name", "code=W;code=X,name=", { "W=W", "X=X" });
    row("same column: listed once, grouped twice, fills only the key", "code", "code=N", { "N=N" });
    row("repeated key takes the last display text in its first place", "name",
        "code=N,name=North;code=S,name=South;code=N,name=Nord", { "N=Nord", "S=South" });
    row("other fields ignored, a later one of the same name overwrites", "name",
        "other=x,code=N,name=North,name=Norte", { "N=Norte" });
    // What XML cannot carry comes in base64: the values are the text it spells.
    row("base64 values decoded", "name", "code=b64:TgE=,name=b64:5p2x", { QString("N\u0001=\u6771") });
}

void tst_TSAccessor::keyValuesAreAskedGroupedAndReadByFieldName()
{
    QFETCH(QString, valCol);
    QFETCH(QString, records);
    QFETCH(QStringList, pairs);
    // The group names both columns even when they are one.
    const QString request = valCol == "code" ? keyValueRequest("code", "code,code")
                                             : keyValueRequest("code,name", "code,name");
    m_proxy->script(request, "<response><table>" + records + "</table><result rows=\"1\"/></response>");
    const auto result = m_accessor->QueryKeyValueColumns(sampleDatabase(), "regions", "code", valCol);
    QCOMPARE(m_proxy->requests, QStringList{ canonical(request) });
    QCOMPARE(entries(result, true), pairs);
}

void tst_TSAccessor::walkAsksOncePerProviderAndDataSource()
{
    try {
        m_accessor->GetTablesAt("P1", "D1", "C1");
        QFAIL("a lookup before the walk went through");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), tessaly::ErrorNumber::ObjectNotSet);
    }

    const auto root = m_accessor->GetDatabaseStructure();
    // The providers, then P1, D1, D2, then P2.
    QCOMPARE(m_proxy->takeCount(), 5);
    QCOMPARE(entries(root), (QStringList{ "P1", "P2" }));
    const auto p1 = root->object<NameMap>("P1");
    QCOMPARE(entries(p1), (QStringList{ "D1", "D2" }));
    QCOMPARE(entries(p1->object<NameMap>("D1")), (QStringList{ "C1", "C2" }));
    // An empty list is kept: the level is known to be empty.
    QVERIFY(p1->object<NameMap>("D2") && p1->object<NameMap>("D2")->isEmpty());

    QCOMPARE(m_accessor->GetDatabaseStructure(), root);
    QCOMPARE(m_proxy->takeCount(), 0);
    m_accessor->setUseCache(false);
    QVERIFY(m_accessor->GetDatabaseStructure() != root);
    QCOMPARE(m_proxy->takeCount(), 5);

    m_proxy->script(navigation(""), "<response/>");
    QVERIFY(m_accessor->GetDatabaseStructure()->isEmpty());
    QCOMPARE(m_proxy->takeCount(), 1);
}

void tst_TSAccessor::lookupsAskOnlyForWhatTheCacheLacks_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("useCache");
    QTest::addColumn<QList<int>>("asked"); // requests made by the first and by the second lookup
    QTest::addColumn<bool>("stored");
    const auto row = [](const char *name, const QString &path, bool useCache, QList<int> asked, bool stored) {
        QTest::newRow(name) << path << useCache << asked << stored;
    };
    row("known provider without sources: not asked", "P2", true, { 0, 0 }, true);
    row("unknown provider without sources: asked each time", "P3", true, { 1, 1 }, false);
    row("unknown provider with a source: asked once", "P4", true, { 1, 0 }, true);
    row("catalog listed by the walk: tables asked on first use", "P1/D1/C1", true, { 1, 0 }, true);
    row("empty catalog: asked each time", "P1/D1/C2", true, { 1, 1 }, false);
    row("table not listed: tables, then its columns, once", "P1/D1/C1/V9", true, { 2, 0 }, true);
    row("no cache: sources, catalogs and tables asked again", "P1/D1/C1", false, { 3, 3 }, true);
    row("no cache: and the columns", "P1/D1/C1/T1", false, { 4, 4 }, true);
    row("no cache: an empty answer replaces nothing", "P2", false, { 1, 1 }, false);
}

void tst_TSAccessor::lookupsAskOnlyForWhatTheCacheLacks()
{
    QFETCH(QString, path);
    QFETCH(bool, useCache);
    QFETCH(QList<int>, asked);
    QFETCH(bool, stored);
    const auto root = m_accessor->GetDatabaseStructure();
    m_proxy->takeCount();
    m_accessor->setUseCache(useCache);

    QVERIFY(lookup(*m_accessor, path));
    QCOMPARE(m_proxy->takeCount(), asked[0]);
    const ObjectRef result = lookup(*m_accessor, path);
    QCOMPARE(m_proxy->takeCount(), asked[1]);
    QVERIFY(result);
    QCOMPARE(storedAt(root, path) == result, stored);
}

void tst_TSAccessor::failuresSetLastErrorAndAreReported_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QVariant>("reply");
    QTest::addColumn<qint32>("lastError");
    QTest::addColumn<int>("dialogs");
    QTest::addColumn<int>("requests");
    const auto row = [](const char *name, const QString &operation, const QString &path, const QVariant &reply,
                        qint32 lastError, int dialogs, int requests) {
        QTest::newRow(name) << operation << path << reply << lastError << dialogs << requests;
    };
    // LastError follows the last request that reached the service; before each row the
    // providers failed with 0x80045002.
    const qint32 earlier = qint32(0x80045002);
    const qint32 failed = qint32(0x80045009);
    row("success clears it", "query", "P", names({ "D" }), 0, 0, 1);
    row("no response element still reached the service", "query", "P", "<other/>", 0, 0, 1);
    row("no answer leaves it and shows it again", "query", "P", QVariant(), earlier, 1, 1);
    row("name unescaped, request unparsable: shown again", "query", "P&Q", names({}), earlier, 1, 0);
    // Reported once for navigation, twice for columns, never for key values.
    row("QueryTables", "query", "P1/D1/C1", failed, failed, 1, 1);
    row("GetTablesAt", "lookup", "P1/D1/C2", failed, failed, 1, 1);
    row("QueryColumns", "query", "P1/D1/C1/T2", failed, failed, 2, 1);
    row("GetTableInfoAt", "lookup", "P1/D1/C1/T2", failed, failed, 2, 1);
    row("QueryKeyValueColumns", "key values", "", failed, failed, 0, 1);
}

void tst_TSAccessor::failuresSetLastErrorAndAreReported()
{
    QFETCH(QString, operation);
    QFETCH(QString, path);
    QFETCH(QVariant, reply);
    QFETCH(qint32, lastError);
    QFETCH(int, dialogs);
    QFETCH(int, requests);
    m_accessor->GetDatabaseStructure();
    m_accessor->GetTablesAt("P1", "D1", "C1");
    m_proxy->script(navigation(""), qint32(0x80045002));
    QCOMPARE(m_accessor->QueryProviders(), nullptr);
    QCOMPARE(m_accessor->LastError(), qint32(0x80045002));
    m_reports.clear();
    m_proxy->takeCount();
    m_proxy->script(operation == "key values" ? keyValueRequest("code,name", "code,name") : navigation(path), reply);

    if (operation == "key values") {
        const auto pairs = m_accessor->QueryKeyValueColumns(sampleDatabase(), "regions", "code", "name");
        QVERIFY(pairs && pairs->isEmpty());
    } else {
        const ObjectRef result = operation == "query" ? query(*m_accessor, path) : lookup(*m_accessor, path);
        QVERIFY(dialogs == 0 || !result);
    }
    QCOMPARE(m_accessor->LastError(), lastError);
    QCOMPARE(m_proxy->takeCount(), requests);
    QCOMPARE(m_reports.size(), dialogs);
    // Each report names the error in hex, where the request went and the service's reason,
    // which the accessor keeps for the level it asked.
    const QStringList where = path.split('/');
    for (const DatabaseErrorReport &report : std::as_const(m_reports)) {
        QCOMPARE((QStringList{ report.provider, report.dsn, report.catalog, report.table }),
                 (QStringList{ where.value(0), where.value(1), where.value(2), where.value(3) }));
        QCOMPARE(report.errorNumber, lastError);
        QCOMPARE(report.message, "scripted failure");
    }
    QCOMPARE(m_accessor->lastErrorMessage(), lastError ? "scripted failure" : "");
    if (operation != "key values")
        QCOMPARE(m_accessor->failureReason(where.value(0), where.value(1), where.value(2), where.value(3)),
                 dialogs > 0 ? "scripted failure" : "");
}

void tst_TSAccessor::unsetProxyYieldsNothingAndShowsNothing()
{
    m_proxy->script(navigation(""), qint32(0x80045009));
    m_accessor->QueryProviders();
    m_reports.clear();

    m_accessor->setTsProxy(nullptr);
    QCOMPARE(m_accessor->GetDatabaseStructure(), nullptr);
    QCOMPARE(m_accessor->QueryProviders(), nullptr);
    QCOMPARE(m_accessor->QueryColumns("P", "D", "C", "T"), nullptr);
    QCOMPARE(m_accessor->QueryKeyValueColumns(sampleDatabase(), "regions", "code", "name"), nullptr);
    QCOMPARE(m_accessor->LastError(), qint32(0x80045009));
    QVERIFY(m_reports.isEmpty());
    QCOMPARE(m_proxy->requests.size(), 1);
}

QTEST_MAIN(tst_TSAccessor)
#include "tst_tsaccessor.moc"
