#include "../dialogs/recordinguiservice.h"

#include "tessaly/error.h"
#include "tessaly/serviceproxy.h"
#include "veldra/records/columninfo.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/tableinfo.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"

#include <QApplication>
#include <QTest>

using namespace veldra;
using tessaly::NameMap;

namespace {

// Requests compare as documents: what the proxy receives is a parsed request, not text.
QString canonical(const QString &xml)
{
    QDomDocument document;
    if (!document.setContent(xml))
        return QStringLiteral("unparsable: ") + xml;
    return document.toString(-1);
}

QString navigation(const QString &provider, const QString &dsn = {}, const QString &catalog = {},
                   const QString &table = {})
{
    return "<query><get><content>column</content><target><provider>" + provider + "</provider><dsn>" + dsn
            + "</dsn><catalog>" + catalog + "</catalog><table>" + table + "</table></target></get></query>";
}

QString names(const QStringList &list)
{
    QString items;
    for (const QString &name : list)
        items += "<item name=\"" + name + "\"/>";
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<response>" + items + "</response>";
}

// A data service with a script: request -> response text, raised error number, or no answer.
// Counts what it was asked.
class ScriptedProxy final : public tessaly::ServiceProxy
{
public:
    void answer(const QString &request, const QString &response) { m_replies[canonical(request)] = { response, 0, false }; }
    void fail(const QString &request, qint32 number) { m_replies[canonical(request)] = { {}, number, false }; }
    void silence(const QString &request) { m_replies[canonical(request)] = { {}, 0, true }; }

    QDomDocument request(const QDomDocument &document) override
    {
        const QString text = document.toString(-1);
        requests.append(text);
        const auto reply = m_replies.constFind(text);
        if (reply == m_replies.cend())
            throw tessaly::Error(qint32(0x80045001), "unscripted request: " + text);
        if (reply->error != 0)
            throw tessaly::Error(reply->error, QStringLiteral("scripted failure"));
        if (reply->silent)
            return {};
        QDomDocument response;
        if (!response.setContent(reply->response))
            throw std::logic_error("the script's response is not XML");
        return response;
    }

    // Requests since the last call.
    int takeCount()
    {
        const int count = int(requests.size()) - m_counted;
        m_counted = int(requests.size());
        return count;
    }

    QStringList requests;

private:
    struct Reply
    {
        QString response;
        qint32 error;
        bool silent;
    };
    QHash<QString, Reply> m_replies;
    int m_counted = 0;
};

// Two providers; P1 has D1 (catalogs C1, C2) and D2 (no catalogs); P2 has no data sources.
// C1 holds T1 and T2; T1 has the columns id and name.
std::shared_ptr<ScriptedProxy> sampleService()
{
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->answer(navigation({}), names({ "P1", "P2" }));
    proxy->answer(navigation("P1"), names({ "D1", "D2" }));
    proxy->answer(navigation("P2"), names({}));
    proxy->answer(navigation("P1", "D1"), names({ "C1", "C2" }));
    proxy->answer(navigation("P1", "D2"), names({}));
    proxy->answer(navigation("P1", "D1", "C1"), names({ "T1", "T2" }));
    proxy->answer(navigation("P1", "D1", "C1", "T1"), names({ "id", "name" }));
    return proxy;
}

QStringList keysOf(const std::shared_ptr<NameMap> &map)
{
    QStringList keys;
    for (int i = 0; map && i < map->count(); ++i)
        keys.append(map->key(i));
    return keys;
}

QStringList pairsOf(const std::shared_ptr<NameMap> &map)
{
    QStringList pairs;
    for (int i = 0; map && i < map->count(); ++i)
        pairs.append(map->key(i) + '=' + map->item(i).toString());
    return pairs;
}

std::shared_ptr<dbInfo> sampleDatabase()
{
    auto database = std::make_shared<dbInfo>();
    database->setProvider("SQLite");
    database->setDsn("Sample");
    database->setCatalog("main");
    return database;
}

QString keyValueRequest(const QString &fields, const QString &group)
{
    return "<query><get><content>record<field>" + fields
            + "</field></content><target><provider>SQLite</provider><dsn>Sample</dsn><catalog>main</catalog>"
              "<table>regions</table></target><group>"
            + group + "</group></get></query>";
}

} // namespace

class tst_TSAccessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StringTable::setLanguage(Language::English); }
    void init();
    void cleanup();

    void navigationRequestsNameAllFourLevels_data();
    void navigationRequestsNameAllFourLevels();
    void keyValueRequestGroupsByBothColumnsAlways_data();
    void keyValueRequestGroupsByBothColumnsAlways();
    void nameListReadsNamedChildrenOfTheFirstResponse_data();
    void nameListReadsNamedChildrenOfTheFirstResponse();
    void keyValueListReadsRecordsByFieldName_data();
    void keyValueListReadsRecordsByFieldName();

    void structureWalkAsksOncePerProviderAndDataSource();
    void emptyProviderListGivesEmptyRootAndNoFurtherRequests();
    void dataSourceLookupTrustsAKnownProviderEvenWhenEmpty();
    void tablesAreAskedOnFirstUseAfterTheWalk();
    void tableNotInTheMapIsAddedWithItsColumns();
    void withoutCacheEveryLevelIsAskedAgainAndEmptyAnswersOverwriteNothing();
    void lookupsBeforeTheWalkAreRefused();

    void lastErrorFollowsTheLastRequestThatReachedTheService_data();
    void lastErrorFollowsTheLastRequestThatReachedTheService();
    void failureIsReportedOnceForNavigationTwiceForColumnsNeverForKeyValues_data();
    void failureIsReportedOnceForNavigationTwiceForColumnsNeverForKeyValues();
    void reportShowsTheErrorNumberInHexAndWhereTheRequestWent();
    void unsetProxyYieldsNothingAndShowsNothing();

private:
    std::unique_ptr<testui::RecordingScope> m_ui;
};

void tst_TSAccessor::init()
{
    m_ui = std::make_unique<testui::RecordingScope>();
}

void tst_TSAccessor::cleanup()
{
    m_ui.reset();
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void tst_TSAccessor::navigationRequestsNameAllFourLevels_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("request");
    QTest::newRow("providers") << 0
                               << "<query><get><content>column</content><target><provider></provider><dsn></dsn>"
                                  "<catalog></catalog><table></table></target></get></query>";
    QTest::newRow("data sources") << 1
                                  << "<query><get><content>column</content><target><provider>P</provider><dsn></dsn>"
                                     "<catalog></catalog><table></table></target></get></query>";
    QTest::newRow("catalogs") << 2
                              << "<query><get><content>column</content><target><provider>P</provider><dsn>D</dsn>"
                                 "<catalog></catalog><table></table></target></get></query>";
    QTest::newRow("tables") << 3
                            << "<query><get><content>column</content><target><provider>P</provider><dsn>D</dsn>"
                               "<catalog>C</catalog><table></table></target></get></query>";
    QTest::newRow("columns") << 4
                             << "<query><get><content>column</content><target><provider>P</provider><dsn>D</dsn>"
                                "<catalog>C</catalog><table>T</table></target></get></query>";
}

void tst_TSAccessor::navigationRequestsNameAllFourLevels()
{
    QFETCH(int, level);
    QFETCH(QString, request);
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->answer(request, names({ "x" }));
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    TSAccessor::NameMapRef result;
    switch (level) {
    case 0: result = accessor.QueryProviders(); break;
    case 1: result = accessor.QueryDSNs("P"); break;
    case 2: result = accessor.QueryCatalogs("P", "D"); break;
    case 3: result = accessor.QueryTables("P", "D", "C"); break;
    default: result = accessor.QueryColumns("P", "D", "C", "T"); break;
    }
    QCOMPARE(proxy->requests, QStringList{ canonical(request) });
    QCOMPARE(keysOf(result), QStringList{ "x" });
    QVERIFY(!result->item(0).isValid());
}

void tst_TSAccessor::keyValueRequestGroupsByBothColumnsAlways_data()
{
    QTest::addColumn<QString>("keyCol");
    QTest::addColumn<QString>("valCol");
    QTest::addColumn<QString>("request");
    QTest::newRow("different columns") << "code" << "name" << keyValueRequest("code,name", "code,name");
    QTest::newRow("one column: listed once, grouped twice") << "code" << "code" << keyValueRequest("code", "code,code");
}

void tst_TSAccessor::keyValueRequestGroupsByBothColumnsAlways()
{
    QFETCH(QString, keyCol);
    QFETCH(QString, valCol);
    QFETCH(QString, request);
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->answer(request, "<response><table/></response>");
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    accessor.QueryKeyValueColumns(sampleDatabase(), "regions", keyCol, valCol);
    QCOMPARE(proxy->requests, QStringList{ canonical(request) });
}

void tst_TSAccessor::nameListReadsNamedChildrenOfTheFirstResponse_data()
{
    QTest::addColumn<QString>("response");
    QTest::addColumn<bool>("nothing");
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("in the order of the response")
            << names({ "orders", "customers", "regions" }) << false << QStringList{ "orders", "customers", "regions" };
    QTest::newRow("empty and missing names skipped")
            << R"(<response><item name=""/><item name="a"/><item type="table"/><item name="b" type="view"/></response>)"
            << false << QStringList{ "a", "b" };
    QTest::newRow("comments and text between items ignored")
            << "<response>\n  <!-- first --> <item name=\"a\"/>text<item name=\"b\"/>\n</response>" << false
            << QStringList{ "a", "b" };
    QTest::newRow("repeated name kept once where it first stood")
            << names({ "a", "b", "a" }) << false << QStringList{ "a", "b" };
    QTest::newRow("response found below other elements")
            << R"(<envelope><item name="not this"/><body><response><item name="a"/></response></body></envelope>)"
            << false << QStringList{ "a" };
    QTest::newRow("first response in document order wins")
            << R"(<r><response><item name="a"/></response><response><item name="b"/></response></r>)" << false
            << QStringList{ "a" };
    QTest::newRow("grandchildren are not items")
            << R"(<response><group name="g"><item name="inner"/></group></response>)" << false
            << QStringList{ "g" };
    QTest::newRow("childless response gives an empty map") << "<response/>" << false << QStringList{};
    QTest::newRow("no response element gives nothing") << "<answer><item name=\"a\"/></answer>" << true
                                                        << QStringList{};
    QTest::newRow("name compared case-sensitively") << "<Response><item name=\"a\"/></Response>" << true
                                                    << QStringList{};
}

void tst_TSAccessor::nameListReadsNamedChildrenOfTheFirstResponse()
{
    QFETCH(QString, response);
    QFETCH(bool, nothing);
    QFETCH(QStringList, keys);
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->answer(navigation({}), response);
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    const auto result = accessor.QueryProviders();
    QCOMPARE(result == nullptr, nothing);
    QCOMPARE(keysOf(result), keys);
    QCOMPARE(accessor.LastError(), 0);
    QVERIFY((*m_ui)->dialogs.isEmpty());
}

void tst_TSAccessor::keyValueListReadsRecordsByFieldName_data()
{
    QTest::addColumn<QString>("valCol");
    QTest::addColumn<QString>("records");
    QTest::addColumn<QStringList>("pairs");
    const auto record = [](const QString &fields) { return "<record>" + fields + "</record>"; };
    const auto field = [](const QString &name, const QString &value) {
        return "<field name=\"" + name + "\">" + value + "</field>";
    };
    QTest::newRow("key and display text")
            << "name" << record(field("code", "N") + field("name", "North")) + record(field("name", "South") + field("code", "S"))
            << QStringList{ "N=North", "S=South" };
    QTest::newRow("record with an empty key left out")
            << "name" << record(field("code", "") + field("name", "Nowhere")) + record(field("code", "E") + field("name", "East"))
            << QStringList{ "E=East" };
    QTest::newRow("record without the key field left out")
            << "name" << record(field("name", "Nowhere")) << QStringList{};
    QTest::newRow("missing or empty display column shows the key")
            << "name" << record(field("code", "W")) + record(field("code", "X") + field("name", ""))
            << QStringList{ "W=W", "X=X" };
    QTest::newRow("same column fills only the key")
            << "code" << record(field("code", "N")) << QStringList{ "N=N" };
    QTest::newRow("repeated key takes the last display text in its first place")
            << "name" << record(field("code", "N") + field("name", "North")) + record(field("code", "S") + field("name", "South"))
                    + record(field("code", "N") + field("name", "Nord"))
            << QStringList{ "N=Nord", "S=South" };
    QTest::newRow("later field of the same name overwrites")
            << "name" << record(field("code", "N") + field("name", "North") + field("name", "Norte"))
            << QStringList{ "N=Norte" };
    QTest::newRow("unnamed and other fields ignored")
            << "name" << record("<field>junk</field>" + field("other", "x") + field("code", "N") + field("name", "North"))
            << QStringList{ "N=North" };
    QTest::newRow("null display value shows the key")
            << "name" << record(field("code", "N") + "<field name=\"name\" null=\"true\"/>") << QStringList{ "N=N" };
}

void tst_TSAccessor::keyValueListReadsRecordsByFieldName()
{
    QFETCH(QString, valCol);
    QFETCH(QString, records);
    QFETCH(QStringList, pairs);
    const QString request = valCol == "code" ? keyValueRequest("code", "code,code") : keyValueRequest("code,name", "code,name");
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->answer(request, "<response><table>" + records + "</table><result rows=\"1\"/></response>");
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    const auto result = accessor.QueryKeyValueColumns(sampleDatabase(), "regions", "code", valCol);
    QVERIFY(result);
    QCOMPARE(pairsOf(result), pairs);
}

void tst_TSAccessor::structureWalkAsksOncePerProviderAndDataSource()
{
    auto proxy = sampleService();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);

    const auto root = accessor.GetDatabaseStructure();
    // Providers, then P1, D1, D2, then P2: one for the list, one per provider, one per source.
    QCOMPARE(proxy->takeCount(), 5);
    QCOMPARE(keysOf(root), (QStringList{ "P1", "P2" }));
    const auto p1 = root->object<NameMap>("P1");
    QCOMPARE(keysOf(p1), (QStringList{ "D1", "D2" }));
    const auto d1 = p1->object<NameMap>("D1");
    QCOMPARE(keysOf(d1), (QStringList{ "C1", "C2" }));
    QVERIFY(!d1->item("C1").isValid());
    QVERIFY(!d1->item("C2").isValid());
    // Empty lists are kept: the level is known to be empty.
    QVERIFY(p1->object<NameMap>("D2") && p1->object<NameMap>("D2")->isEmpty());
    QVERIFY(root->object<NameMap>("P2") && root->object<NameMap>("P2")->isEmpty());

    QCOMPARE(accessor.GetDatabaseStructure(), root);
    QCOMPARE(proxy->takeCount(), 0);

    accessor.setUseCache(false);
    QVERIFY(accessor.GetDatabaseStructure() != root);
    QCOMPARE(proxy->takeCount(), 5);
}

void tst_TSAccessor::emptyProviderListGivesEmptyRootAndNoFurtherRequests()
{
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->answer(navigation({}), "<response/>");
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    const auto root = accessor.GetDatabaseStructure();
    QVERIFY(root);
    QVERIFY(root->isEmpty());
    QCOMPARE(proxy->takeCount(), 1);
}

void tst_TSAccessor::dataSourceLookupTrustsAKnownProviderEvenWhenEmpty()
{
    auto proxy = sampleService();
    proxy->answer(navigation("P3"), names({}));
    proxy->answer(navigation("P4"), names({ "D4" }));
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    const auto root = accessor.GetDatabaseStructure();
    proxy->takeCount();

    // P2 is in the cache with its (empty) list: found, so not asked.
    QVERIFY(accessor.GetDSNsAt("P2")->isEmpty());
    QCOMPARE(proxy->takeCount(), 0);

    // P3 is unknown and its list is empty: nothing to store, so every call asks.
    for (int i = 0; i < 2; ++i) {
        const auto dsns = accessor.GetDSNsAt("P3");
        QVERIFY(dsns && dsns->isEmpty());
        QCOMPARE(proxy->takeCount(), 1);
    }
    QVERIFY(!root->contains("P3"));

    // P4 is unknown with a source: stored on first use, not asked again.
    QCOMPARE(keysOf(accessor.GetDSNsAt("P4")), QStringList{ "D4" });
    QCOMPARE(keysOf(accessor.GetDSNsAt("P4")), QStringList{ "D4" });
    QCOMPARE(proxy->takeCount(), 1);
    QCOMPARE(keysOf(root), (QStringList{ "P1", "P2", "P4" }));
}

void tst_TSAccessor::tablesAreAskedOnFirstUseAfterTheWalk()
{
    auto proxy = sampleService();
    proxy->answer(navigation("P1", "D1", "C2"), names({}));
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    const auto root = accessor.GetDatabaseStructure();
    proxy->takeCount();

    // C1's key is in the cache since the walk, but with no tables yet.
    const auto tables = accessor.GetTablesAt("P1", "D1", "C1");
    QCOMPARE(keysOf(tables), (QStringList{ "T1", "T2" }));
    QCOMPARE(proxy->requests.last(), canonical(navigation("P1", "D1", "C1")));
    QCOMPARE(proxy->takeCount(), 1);
    QCOMPARE(accessor.GetTablesAt("P1", "D1", "C1"), tables);
    QCOMPARE(proxy->takeCount(), 0);
    QCOMPARE(root->object<NameMap>("P1")->object<NameMap>("D1")->object<NameMap>("C1"), tables);

    // An empty catalog stores nothing and is asked each time.
    accessor.GetTablesAt("P1", "D1", "C2");
    accessor.GetTablesAt("P1", "D1", "C2");
    QCOMPARE(proxy->takeCount(), 2);
}

void tst_TSAccessor::tableNotInTheMapIsAddedWithItsColumns()
{
    auto proxy = sampleService();
    proxy->answer(navigation("P1", "D1", "C1", "V9"), names({ "when", "what", "who" }));
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    accessor.GetDatabaseStructure();
    const auto tables = accessor.GetTablesAt("P1", "D1", "C1");
    proxy->takeCount();

    const auto table = accessor.GetTableInfoAt("P1", "D1", "C1", "V9");
    QVERIFY(table);
    QCOMPARE(proxy->takeCount(), 1);
    QCOMPARE(table->tableName(), "V9");
    QCOMPARE(keysOf(tables), (QStringList{ "T1", "T2", "V9" }));
    QCOMPARE(tables->object<TableInfo>("V9"), table);
    QCOMPARE(keysOf(table->columns()), (QStringList{ "when", "what", "who" }));
    for (int i = 0; i < table->columns()->count(); ++i) {
        const auto column = table->columns()->objectAt<ColumnInfo>(i);
        QVERIFY(column);
        QCOMPARE(column->table(), "V9");
        QCOMPARE(column->columnType(), ColumnInfo::TableColumn);
        QCOMPARE(column->express(), table->columns()->key(i));
        QCOMPARE(column->alias(), QString());
    }

    QCOMPARE(accessor.GetTableInfoAt("P1", "D1", "C1", "V9"), table);
    QCOMPARE(proxy->takeCount(), 0);
}

void tst_TSAccessor::withoutCacheEveryLevelIsAskedAgainAndEmptyAnswersOverwriteNothing()
{
    auto proxy = sampleService();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    const auto root = accessor.GetDatabaseStructure();
    const auto p1 = root->object<NameMap>("P1");
    accessor.GetTablesAt("P1", "D1", "C1");
    const auto t1 = accessor.GetTableInfoAt("P1", "D1", "C1", "T1");
    QVERIFY(t1);
    proxy->takeCount();

    accessor.setUseCache(false);
    proxy->answer(navigation("P1", "D1", "C1"), names({ "T1", "T2", "T3" }));
    const auto fresh = accessor.GetTablesAt("P1", "D1", "C1");
    // Data sources, catalogs and tables are all asked again and replace what was stored.
    QCOMPARE(proxy->takeCount(), 3);
    QCOMPARE(keysOf(fresh), (QStringList{ "T1", "T2", "T3" }));
    QVERIFY(root->object<NameMap>("P1") != p1);
    QCOMPARE(root->object<NameMap>("P1")->object<NameMap>("D1")->object<NameMap>("C1"), fresh);

    const auto t1Again = accessor.GetTableInfoAt("P1", "D1", "C1", "T1");
    QCOMPARE(proxy->takeCount(), 4);
    QVERIFY(t1Again && t1Again != t1);
    QCOMPARE(root->object<NameMap>("P1")->object<NameMap>("D1")->object<NameMap>("C1")->object<TableInfo>("T1"),
             t1Again);

    // An empty answer is returned but stored nowhere.
    const auto stored = root->object<NameMap>("P1");
    proxy->answer(navigation("P1"), names({}));
    const auto empty = accessor.GetDSNsAt("P1");
    QVERIFY(empty && empty->isEmpty());
    QCOMPARE(root->object<NameMap>("P1"), stored);
    QCOMPARE(keysOf(stored), (QStringList{ "D1", "D2" }));
}

void tst_TSAccessor::lookupsBeforeTheWalkAreRefused()
{
    TSAccessor accessor;
    accessor.setTsProxy(sampleService());
    try {
        accessor.GetTablesAt("P1", "D1", "C1");
        QFAIL("a lookup without a cache went through");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), tessaly::ErrorNumber::ObjectNotSet);
    }
}

void tst_TSAccessor::lastErrorFollowsTheLastRequestThatReachedTheService_data()
{
    QTest::addColumn<QString>("provider");
    QTest::addColumn<QString>("response");   // "!" raises 0x80045003, "-" gives no answer
    QTest::addColumn<qint32>("lastError");
    QTest::addColumn<int>("dialogs");
    QTest::addColumn<int>("requests");
    const qint32 earlier = qint32(0x80045002);
    QTest::newRow("raised error") << "P" << "!" << qint32(0x80045003) << 1 << 1;
    QTest::newRow("success clears it") << "P" << names({ "D" }) << 0 << 0 << 1;
    QTest::newRow("no response element still reached the service") << "P" << "<other/>" << 0 << 0 << 1;
    QTest::newRow("no answer leaves it and shows it again") << "P" << "-" << earlier << 1 << 1;
    QTest::newRow("unparsable request leaves it and shows it again") << "P&Q" << names({}) << earlier << 1 << 0;
    QTest::newRow("markup in a name is not escaped") << "P</provider>" << names({}) << earlier << 1 << 0;
}

void tst_TSAccessor::lastErrorFollowsTheLastRequestThatReachedTheService()
{
    QFETCH(QString, provider);
    QFETCH(QString, response);
    QFETCH(qint32, lastError);
    QFETCH(int, dialogs);
    QFETCH(int, requests);
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->fail(navigation({}), qint32(0x80045002));
    if (response == "!")
        proxy->fail(navigation("P"), qint32(0x80045003));
    else if (response == "-")
        proxy->silence(navigation("P"));
    else
        proxy->answer(navigation("P"), response);
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    QCOMPARE(accessor.QueryProviders(), nullptr);
    QCOMPARE(accessor.LastError(), qint32(0x80045002));
    (*m_ui)->dialogs.clear();
    proxy->takeCount();

    accessor.QueryDSNs(provider);
    QCOMPARE(accessor.LastError(), lastError);
    QCOMPARE((*m_ui)->dialogs.size(), dialogs);
    QCOMPARE(proxy->takeCount(), requests);
    if (dialogs > 0)
        QCOMPARE((*m_ui)->dialogs.first().texts.value("ErrorCodeText"), tessaly::Error::hexNumber(lastError));
}

void tst_TSAccessor::failureIsReportedOnceForNavigationTwiceForColumnsNeverForKeyValues_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("dialogs");
    QTest::newRow("QueryTables") << "QueryTables" << 1;
    QTest::newRow("GetTablesAt") << "GetTablesAt" << 1;
    QTest::newRow("QueryColumns") << "QueryColumns" << 2;
    QTest::newRow("GetTableInfoAt") << "GetTableInfoAt" << 2;
    QTest::newRow("QueryKeyValueColumns") << "QueryKeyValueColumns" << 0;
}

void tst_TSAccessor::failureIsReportedOnceForNavigationTwiceForColumnsNeverForKeyValues()
{
    QFETCH(QString, operation);
    QFETCH(int, dialogs);
    auto proxy = sampleService();
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    accessor.GetDatabaseStructure();
    accessor.GetTablesAt("P1", "D1", "C1");
    proxy->fail(navigation("P1", "D1", "C1"), qint32(0x80045009));
    proxy->fail(navigation("P1", "D1", "C2"), qint32(0x80045009));
    proxy->fail(navigation("P1", "D1", "C1", "T2"), qint32(0x80045009));
    proxy->fail(keyValueRequest("code,name", "code,name"), qint32(0x80045009));
    QVERIFY((*m_ui)->dialogs.isEmpty());

    if (operation == "QueryTables") {
        QCOMPARE(accessor.QueryTables("P1", "D1", "C1"), nullptr);
    } else if (operation == "GetTablesAt") {
        QCOMPARE(accessor.GetTablesAt("P1", "D1", "C2"), nullptr);
    } else if (operation == "QueryColumns") {
        QCOMPARE(accessor.QueryColumns("P1", "D1", "C1", "T2"), nullptr);
    } else if (operation == "GetTableInfoAt") {
        QCOMPARE(accessor.GetTableInfoAt("P1", "D1", "C1", "T2"), nullptr);
    } else {
        const auto pairs = accessor.QueryKeyValueColumns(sampleDatabase(), "regions", "code", "name");
        QVERIFY(pairs && pairs->isEmpty());
    }
    QCOMPARE(accessor.LastError(), qint32(0x80045009));
    QCOMPARE((*m_ui)->dialogs.size(), dialogs);
}

void tst_TSAccessor::reportShowsTheErrorNumberInHexAndWhereTheRequestWent()
{
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->fail(navigation("SQLite", "Sample", "main", "orders"), -2147467259);
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    accessor.QueryColumns("SQLite", "Sample", "main", "orders");
    QCOMPARE((*m_ui)->dialogs.size(), 2);
    const testui::DialogSeen seen = (*m_ui)->dialogs.first();
    QCOMPARE(seen.objectName, "WizDBErrorDialog");
    QCOMPARE(seen.title, "Database error");
    QCOMPARE(seen.texts.value("Label"), "Failed to get informations from database.");
    QCOMPARE(seen.texts.value("ErrorCodeText"), "80004005");
    QCOMPARE(seen.texts.value("ProviderText"), "SQLite");
    QCOMPARE(seen.texts.value("DSNText"), "Sample");
    QCOMPARE(seen.texts.value("CatalogText"), "main");
    QCOMPARE(seen.texts.value("TableText"), "orders");
}

void tst_TSAccessor::unsetProxyYieldsNothingAndShowsNothing()
{
    auto proxy = std::make_shared<ScriptedProxy>();
    proxy->fail(navigation({}), qint32(0x80045009));
    TSAccessor accessor;
    accessor.setTsProxy(proxy);
    accessor.QueryProviders();
    (*m_ui)->dialogs.clear();

    accessor.setTsProxy(nullptr);
    QCOMPARE(accessor.GetDatabaseStructure(), nullptr);
    QCOMPARE(accessor.QueryProviders(), nullptr);
    QCOMPARE(accessor.QueryColumns("P", "D", "C", "T"), nullptr);
    QCOMPARE(accessor.QueryKeyValueColumns(sampleDatabase(), "regions", "code", "name"), nullptr);
    QCOMPARE(accessor.LastError(), qint32(0x80045009));
    QVERIFY((*m_ui)->dialogs.isEmpty());
    QCOMPARE(proxy->requests.size(), 1);
}

QTEST_MAIN(tst_TSAccessor)
#include "tst_tsaccessor.moc"
