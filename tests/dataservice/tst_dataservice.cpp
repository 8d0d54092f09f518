#include <dataservice/dataservice.h>
#include <dataservice/errornumber.h>
#include <dataservice/localserviceproxy.h>

#include <tessaly/error.h>

#include <QCryptographicHash>
#include <QDomDocument>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <libpq-fe.h>

using namespace dataservice;

namespace {

constexpr qint64 TestRowCap = 500;
constexpr int TestTimeoutMs = 1500;

QByteArray navigation(const QString &provider, const QString &dsn = {}, const QString &catalog = {},
                      const QString &table = {})
{
    return QStringLiteral("<query><get><content>column</content><target><provider>%1</provider><dsn>%2</dsn>"
                          "<catalog>%3</catalog><table>%4</table></target></get></query>")
        .arg(provider, dsn, catalog, table).toUtf8();
}

QString escaped(const QString &text)
{
    return text.toHtmlEscaped().replace(QStringLiteral("&quot;"), QStringLiteral("\""));
}

struct RecordQuery
{
    RecordQuery() = default;
    RecordQuery(QString f, QString t, QString c = {}, QString g = {}, QString o = {}, QString n = {})
        : fields(std::move(f)), tables(std::move(t)), condition(std::move(c)), group(std::move(g)),
          order(std::move(o)), rowCount(std::move(n))
    {
    }

    QString fields;
    QString tables;
    QString condition;
    QString group;
    QString order;
    QString rowCount;
};

} // namespace

Q_DECLARE_METATYPE(RecordQuery)

namespace {

QByteArray record(const QString &provider, const QString &dsn, const QString &catalog, const RecordQuery &q)
{
    QString xml = QStringLiteral("<query><get><content>record<field>%1</field></content><target><provider>%2"
                                 "</provider><dsn>%3</dsn><catalog>%4</catalog><table>%5</table></target>")
                      .arg(escaped(q.fields), provider, dsn, catalog, q.tables);
    const QPair<const char *, QString> parts[] = {
        {"condition", q.condition}, {"group", q.group}, {"order", q.order}, {"rowcount", q.rowCount}};
    for (const auto &[name, text] : parts) {
        if (!text.isEmpty())
            xml += QStringLiteral("<%1>%2</%1>").arg(QLatin1String(name), escaped(text));
    }
    return (xml + QStringLiteral("</get></query>")).toUtf8();
}

QStringList names(const QDomDocument &document)
{
    QStringList result;
    const QDomElement response = document.documentElement();
    for (QDomElement e = response.firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
        result.append(e.attribute(QStringLiteral("name")));
    return result;
}

// Records as "name=value|name=value", NULL shown as name=<null>.
QStringList records(const QDomDocument &document)
{
    QStringList rows;
    const QDomElement table = document.documentElement().firstChildElement(QStringLiteral("table"));
    for (QDomElement r = table.firstChildElement(); !r.isNull(); r = r.nextSiblingElement()) {
        QStringList fields;
        for (QDomElement f = r.firstChildElement(); !f.isNull(); f = f.nextSiblingElement()) {
            const bool isNull = f.attribute(QStringLiteral("null")) == u"true";
            fields.append(f.attribute(QStringLiteral("name")) + u'=' + (isNull ? QStringLiteral("<null>") : f.text()));
        }
        rows.append(fields.join(u'|'));
    }
    return rows;
}

QByteArray fileChecksum(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
}

QMap<QString, QString> readState(const QString &path)
{
    QMap<QString, QString> state;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return state;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const qsizetype eq = line.indexOf('=');
        if (eq > 0)
            state.insert(QString::fromUtf8(line.left(eq)), QString::fromUtf8(line.mid(eq + 1)));
    }
    return state;
}

} // namespace

class TestDataService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void navigationListsEveryLevel_data();
    void navigationListsEveryLevel();
    void unknownNamesAreRefused_data();
    void unknownNamesAreRefused();
    void recordRequestsBecomeOneSelect_data();
    void recordRequestsBecomeOneSelect();
    void keyValueRequestGivesPairs_data();
    void keyValueRequestGivesPairs();
    void rowCapCutsTheResultAndSaysSo_data();
    void rowCapCutsTheResultAndSaysSo();
    void hostileRequestsAreRefusedAndChangeNothing_data();
    void hostileRequestsAreRefusedAndChangeNothing();
    void endlessQueryHitsTheTimeout_data();
    void endlessQueryHitsTheTimeout();
    void sqliteFileThatGoesAwayGivesAnError();
    void postgresServerThatStopsGivesAnError();
    void builtInSampleNeedsNoConfiguration();
    void configurationFileDefinesDataSources();
    void proxyCarriesDocumentsAndErrors();

private:
    void addBackendColumns();
    QTestData &addRow(const char *name, const QString &backend);
    void skipUnlessAvailable(const QString &backend);
    QByteArray postgresChecksum();
    QDomDocument ask(const QByteArray &request);
    qint32 errorOf(const QByteArray &request, QString *message = nullptr);

    QTemporaryDir m_dir;
    QString m_dbPath;
    QString m_otherPath;
    QString m_pgSkipReason;
    QMap<QString, QString> m_pg;
    std::unique_ptr<DataService> m_service;
    QByteArray m_checksumBefore;
    QByteArray m_pgChecksumBefore;
};

void TestDataService::initTestCase()
{
    QVERIFY(m_dir.isValid());
    const QString sample = DataSourceCatalog::sampleDatabasePath();
    QVERIFY2(QFile::exists(sample), qPrintable(sample));
    m_dbPath = m_dir.filePath(QStringLiteral("sales.db"));
    QVERIFY(QFile::copy(sample, m_dbPath));
    m_otherPath = m_dir.filePath(QStringLiteral("other.db"));
    QCOMPARE(QProcess::execute(QStringLiteral("sqlite3"),
                               {m_otherPath, QStringLiteral("CREATE TABLE secrets (word TEXT); "
                                                            "INSERT INTO secrets VALUES ('swordfish');")}), 0);

    DataSource local;
    local.name = QStringLiteral("Local");
    local.provider = QStringLiteral("SQLite");
    local.path = m_dbPath;
    local.attachments = {{QStringLiteral("other"), m_otherPath}};
    local.rowCap = TestRowCap;
    local.timeoutMs = TestTimeoutMs;
    QList<DataSource> sources{local};

    const QString stateFile = qEnvironmentVariable("VELDRA_TEST_PG");
    m_pg = readState(stateFile);
    if (stateFile.isEmpty()) {
        m_pgSkipReason = QStringLiteral("VELDRA_TEST_PG is not set; run the test through CTest to get a server");
    } else if (!m_pg.contains(QStringLiteral("host"))) {
        QFile file(stateFile);
        file.open(QIODevice::ReadOnly);
        m_pgSkipReason = QStringLiteral("no PostgreSQL server: ") + QString::fromUtf8(file.readAll()).trimmed();
    } else {
        DataSource server;
        server.name = QStringLiteral("Server");
        server.provider = QStringLiteral("PostgreSQL");
        for (const char *key : {"host", "port", "user", "dbname"})
            server.connection.append({QLatin1String(key), m_pg.value(QLatin1String(key))});
        server.rowCap = TestRowCap;
        server.timeoutMs = TestTimeoutMs;
        sources.append(server);
    }
    m_service = std::make_unique<DataService>(DataSourceCatalog(sources));
}

void TestDataService::init()
{
    m_checksumBefore = fileChecksum(m_dbPath);
    m_pgChecksumBefore = postgresChecksum();
}

void TestDataService::cleanup()
{
    QCOMPARE(fileChecksum(m_dbPath), m_checksumBefore);
    QCOMPARE(postgresChecksum(), m_pgChecksumBefore);
}

QByteArray TestDataService::postgresChecksum()
{
    if (!m_pg.contains(QStringLiteral("host")))
        return {};
    const QByteArray conninfo = QStringLiteral("host=%1 port=%2 user=%3 dbname=%4")
                                    .arg(m_pg.value(QStringLiteral("host")), m_pg.value(QStringLiteral("port")),
                                         m_pg.value(QStringLiteral("user")), m_pg.value(QStringLiteral("dbname")))
                                    .toUtf8();
    PGconn *conn = PQconnectdb(conninfo.constData());
    QByteArray sum;
    if (PQstatus(conn) == CONNECTION_OK) {
        PGresult *result = PQexec(conn,
            "SELECT (SELECT count(*) || ':' || sum(amount) || ':' || md5(string_agg(id || status, ',' ORDER BY id))"
            " FROM sales.orders) || '/' || (SELECT count(*) FROM sales.order_lines)"
            " || '/' || (SELECT count(*) FROM pg_largeobject_metadata)"
            " || '/' || (SELECT count(*) FROM pg_class WHERE relnamespace = 'sales'::regnamespace)");
        if (PQresultStatus(result) == PGRES_TUPLES_OK)
            sum = PQgetvalue(result, 0, 0);
        PQclear(result);
    }
    PQfinish(conn);
    return sum;
}

void TestDataService::addBackendColumns()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("provider");
    QTest::addColumn<QString>("dsn");
    QTest::addColumn<QString>("catalog");
}

QTestData &TestDataService::addRow(const char *name, const QString &backend)
{
    const bool sqlite = backend == u"sqlite";
    return QTest::addRow("%s: %s", qPrintable(backend), name)
        << backend << (sqlite ? QStringLiteral("SQLite") : QStringLiteral("PostgreSQL"))
        << (sqlite ? QStringLiteral("Local") : QStringLiteral("Server"))
        << (sqlite ? QStringLiteral("main") : QStringLiteral("sales"));
}

void TestDataService::skipUnlessAvailable(const QString &backend)
{
    if (backend == u"postgresql" && !m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
}

QDomDocument TestDataService::ask(const QByteArray &request)
{
    QDomDocument document;
    try {
        const QByteArray response = m_service->answer(request);
        QString message;
        if (!document.setContent(response, &message))
            qWarning("response is not XML: %s", qPrintable(message));
    } catch (const tessaly::Error &error) {
        qWarning("%s failed: %s %s", request.constData(), qPrintable(tessaly::Error::hexNumber(error.number())),
                 qPrintable(error.message()));
    }
    return document;
}

qint32 TestDataService::errorOf(const QByteArray &request, QString *message)
{
    try {
        m_service->answer(request);
    } catch (const tessaly::Error &error) {
        if (message)
            *message = error.message();
        return error.number();
    }
    return 0;
}

void TestDataService::navigationListsEveryLevel_data()
{
    addBackendColumns();
    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")})
        addRow("structure", backend);
}

void TestDataService::navigationListsEveryLevel()
{
    QFETCH(QString, backend);
    QFETCH(QString, provider);
    QFETCH(QString, dsn);
    QFETCH(QString, catalog);
    skipUnlessAvailable(backend);

    QCOMPARE(names(ask(navigation({}))), (QStringList{QStringLiteral("SQLite"), QStringLiteral("PostgreSQL")}));
    QVERIFY(names(ask(navigation(provider))).contains(dsn));
    const QStringList catalogs = names(ask(navigation(provider, dsn)));
    QVERIFY2(catalogs.contains(catalog), qPrintable(catalogs.join(u',')));
    QVERIFY(!catalogs.contains(QStringLiteral("pg_catalog")) && !catalogs.contains(QStringLiteral("temp")));

    const QDomDocument tables = ask(navigation(provider, dsn, catalog));
    QCOMPARE(names(tables), (QStringList{QStringLiteral("customers"), QStringLiteral("order_lines"),
                                         QStringLiteral("orders"), QStringLiteral("products"),
                                         QStringLiteral("regions"), QStringLiteral("sales_by_region"),
                                         QStringLiteral("staff")}));
    const QDomElement view = tables.documentElement().lastChildElement().previousSiblingElement();
    QCOMPARE(view.attribute(QStringLiteral("type")), QStringLiteral("view"));

    const QDomDocument columns = ask(navigation(provider, dsn, catalog, QStringLiteral("orders")));
    QCOMPARE(names(columns), (QStringList{QStringLiteral("id"), QStringLiteral("customer_id"),
                                          QStringLiteral("staff_id"), QStringLiteral("order_date"),
                                          QStringLiteral("status"), QStringLiteral("amount")}));
    QVERIFY(columns.documentElement().firstChildElement().attribute(QStringLiteral("type")).contains(
        QStringLiteral("int"), Qt::CaseInsensitive));
}

void TestDataService::unknownNamesAreRefused_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<qint32>("number");

    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")}) {
        const bool sqlite = backend == u"sqlite";
        const QString provider = sqlite ? QStringLiteral("SQLite") : QStringLiteral("PostgreSQL");
        const QString dsn = sqlite ? QStringLiteral("Local") : QStringLiteral("Server");
        const QString catalog = sqlite ? QStringLiteral("main") : QStringLiteral("sales");
        const auto row = [&](const char *name) -> QTestData & { return QTest::addRow("%s: %s", qPrintable(backend), name) << backend; };
        row("provider") << navigation(QStringLiteral("Oracle"), dsn) << ErrorNumber::UnknownProvider;
        row("data source") << navigation(provider, QStringLiteral("Nowhere")) << ErrorNumber::UnknownDataSource;
        row("catalog") << navigation(provider, dsn, QStringLiteral("archive")) << ErrorNumber::UnknownCatalog;
        row("table") << navigation(provider, dsn, catalog, QStringLiteral("invoices")) << ErrorNumber::UnknownTable;
        row("table of record request")
            << record(provider, dsn, catalog, {QStringLiteral("id"), QStringLiteral("orders,invoices")})
            << ErrorNumber::UnknownTable;
        row("table of another catalog")
            << record(provider, dsn, catalog, {QStringLiteral("*"), sqlite ? QStringLiteral("secrets") : QStringLiteral("salaries")})
            << ErrorNumber::UnknownTable;
        row("bad column") << record(provider, dsn, catalog, {QStringLiteral("orders.nonesuch"), QStringLiteral("orders")})
                          << ErrorNumber::DatabaseError;
    }
}

void TestDataService::unknownNamesAreRefused()
{
    QFETCH(QString, backend);
    QFETCH(QByteArray, request);
    QFETCH(qint32, number);
    skipUnlessAvailable(backend);
    QString message;
    QCOMPARE(tessaly::Error::hexNumber(errorOf(request, &message)), tessaly::Error::hexNumber(number));
    QVERIFY(!message.isEmpty());
}

void TestDataService::recordRequestsBecomeOneSelect_data()
{
    addBackendColumns();
    QTest::addColumn<RecordQuery>("query");
    QTest::addColumn<QStringList>("expected");

    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")}) {
        addRow("columns, condition, order", backend)
            << RecordQuery{QStringLiteral("orders.id,orders.status"), QStringLiteral("orders"),
                           QStringLiteral("orders.id <= 3 OR orders.id = 7"), {}, QStringLiteral("orders.id DESC"), {}}
            << QStringList{QStringLiteral("id=7|status=open"), QStringLiteral("id=3|status=shipped"),
                           QStringLiteral("id=2|status=shipped"), QStringLiteral("id=1|status=shipped")};
        addRow("alias, expression with commas, trailing blank", backend)
            << RecordQuery{QStringLiteral("SUBSTR(customers.name,1,5) short,customers.city town,customers.segment "),
                           QStringLiteral("customers"), QStringLiteral("customers.id = 2"), {}, {}, {}}
            << QStringList{QStringLiteral("short=Coldh|town=Saltmarsh|segment=Public sector")};
        addRow("two tables", backend)
            << RecordQuery{QStringLiteral("orders.id,customers.region_code"), QStringLiteral("orders,customers"),
                           QStringLiteral("orders.customer_id = customers.id AND orders.id = 1"), {}, {}, {}}
            << QStringList{QStringLiteral("id=1|region_code=SE")};
        addRow("group and order", backend)
            << RecordQuery{QStringLiteral("customers.region_code,COUNT(*) n"), QStringLiteral("customers"), {},
                           QStringLiteral("customers.region_code"), QStringLiteral("customers.region_code ASC"), {}}
            << QStringList{QStringLiteral("region_code=CE|n=100"), QStringLiteral("region_code=NE|n=100"),
                           QStringLiteral("region_code=NW|n=100"), QStringLiteral("region_code=OS|n=100"),
                           QStringLiteral("region_code=SE|n=100"), QStringLiteral("region_code=SW|n=100")};
        addRow("row count", backend)
            << RecordQuery{QStringLiteral("products.id"), QStringLiteral("products"), {}, {},
                           QStringLiteral("products.id"), QStringLiteral("3")}
            << QStringList{QStringLiteral("id=1"), QStringLiteral("id=2"), QStringLiteral("id=3")};
        addRow("markup in the condition", backend)
            << RecordQuery{QStringLiteral("regions.code"), QStringLiteral("regions"),
                           QStringLiteral("regions.code < 'NF' AND regions.name <> 'A&B'"), {}, QStringLiteral("regions.code"), {}}
            << QStringList{QStringLiteral("code=CE"), QStringLiteral("code=NE")};
        addRow("NULL and markup in values", backend)
            << RecordQuery{QStringLiteral("customers.email,'<a&b>' tag"), QStringLiteral("customers"),
                           QStringLiteral("customers.id = 9"), {}, {}, {}}
            << QStringList{QStringLiteral("email=<null>|tag=<a&b>")};
        addRow("view", backend)
            << RecordQuery{QStringLiteral("region_code,order_count"), QStringLiteral("sales_by_region"),
                           QStringLiteral("region_code = 'NE'"), {}, {}, {}}
            << QStringList{QStringLiteral("region_code=NE|order_count=382")};
        addRow("no rows", backend)
            << RecordQuery{QStringLiteral("orders.id"), QStringLiteral("orders"), QStringLiteral("1 = 0"), {}, {}, {}}
            << QStringList{};
    }
}

void TestDataService::recordRequestsBecomeOneSelect()
{
    QFETCH(QString, backend);
    QFETCH(QString, provider);
    QFETCH(QString, dsn);
    QFETCH(QString, catalog);
    QFETCH(RecordQuery, query);
    QFETCH(QStringList, expected);
    skipUnlessAvailable(backend);

    const QDomDocument response = ask(record(provider, dsn, catalog, query));
    QVERIFY(!response.isNull());
    QCOMPARE(records(response), expected);
    const QDomElement result = response.documentElement().firstChildElement(QStringLiteral("result"));
    QCOMPARE(result.attribute(QStringLiteral("truncated")), QStringLiteral("false"));
    QCOMPARE(result.attribute(QStringLiteral("rows")).toInt(), expected.size());
}

void TestDataService::keyValueRequestGivesPairs_data()
{
    addBackendColumns();
    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")})
        addRow("regions", backend);
}

void TestDataService::keyValueRequestGivesPairs()
{
    QFETCH(QString, backend);
    QFETCH(QString, provider);
    QFETCH(QString, dsn);
    QFETCH(QString, catalog);
    skipUnlessAvailable(backend);
    // As the accessor sends it: the field list once, the group with both columns.
    const QByteArray request = QStringLiteral(
        "<query><get><content>record<field>code,name</field></content><target><provider>%1</provider>"
        "<dsn>%2</dsn><catalog>%3</catalog><table>regions</table></target><group>code,name</group></get></query>")
        .arg(provider, dsn, catalog).toUtf8();
    QStringList rows = records(ask(request));
    rows.sort();
    QCOMPARE(rows.size(), 6);
    QCOMPARE(rows.first(), QStringLiteral("code=CE|name=Central"));
}

void TestDataService::rowCapCutsTheResultAndSaysSo_data()
{
    addBackendColumns();
    QTest::addColumn<QString>("rowCount");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("truncated");
    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")}) {
        addRow("no row count, over the cap", backend) << QString() << int(TestRowCap) << true;
        addRow("row count over the cap", backend) << QStringLiteral("2000") << int(TestRowCap) << true;
        addRow("row count at the cap", backend) << QString::number(TestRowCap) << int(TestRowCap) << false;
        addRow("row count under the cap", backend) << QStringLiteral("10") << 10 << false;
        addRow("row count zero", backend) << QStringLiteral("0") << 0 << false;
    }
}

void TestDataService::rowCapCutsTheResultAndSaysSo()
{
    QFETCH(QString, backend);
    QFETCH(QString, provider);
    QFETCH(QString, dsn);
    QFETCH(QString, catalog);
    QFETCH(QString, rowCount);
    QFETCH(int, rows);
    QFETCH(bool, truncated);
    skipUnlessAvailable(backend);
    const QDomDocument response = ask(record(provider, dsn, catalog,
        {QStringLiteral("orders.id,orders.amount"), QStringLiteral("orders"), {}, {}, {}, rowCount}));
    QCOMPARE(records(response).size(), rows);
    const QDomElement result = response.documentElement().firstChildElement(QStringLiteral("result"));
    QCOMPARE(result.attribute(QStringLiteral("truncated")) == u"true", truncated);
    QCOMPARE(result.attribute(QStringLiteral("rowcap")).toLongLong(), TestRowCap);
}

void TestDataService::hostileRequestsAreRefusedAndChangeNothing_data()
{
    addBackendColumns();
    QTest::addColumn<RecordQuery>("query");
    QTest::addColumn<QString>("reason");

    const QString orders = QStringLiteral("orders");
    const QString id = QStringLiteral("orders.id");
    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")}) {
        const bool sqlite = backend == u"sqlite";
        addRow("stacked statement", backend)
            << RecordQuery{id, orders, QStringLiteral("1=1; DELETE FROM orders")} << "semicolon";
        addRow("comment hides a second statement", backend)
            << RecordQuery{id, orders, QStringLiteral("1=1 --\n; DELETE FROM orders")} << "comment";
        addRow("block comment swallows the rest", backend)
            << RecordQuery{id, orders, {}, {}, QStringLiteral("orders.id /*")} << "comment";
        addRow("condition escapes its parentheses", backend)
            << RecordQuery{id, orders, QStringLiteral("1=1) OR (1=1")} << "never opened";
        addRow("statement in the order list", backend)
            << RecordQuery{id, orders, {}, {}, QStringLiteral("orders.id; DROP TABLE orders")} << "semicolon";
        addRow("E string hides a quote", backend)
            << RecordQuery{id, orders, QStringLiteral("E'\\'' = '' ; DELETE FROM orders; SELECT ''")} << "semicolon";
        if (sqlite) {
            addRow("load_extension", backend)
                << RecordQuery{QStringLiteral("load_extension('/tmp/evil.so')"), orders} << "load_extension";
            addRow("attached catalog in a subquery", backend)
                << RecordQuery{QStringLiteral("(SELECT word FROM other.secrets) w"), orders} << "other.secrets";
            addRow("pragma function", backend)
                << RecordQuery{QStringLiteral("name"), QStringLiteral("orders"),
                               QStringLiteral("orders.id IN (SELECT cid FROM pragma_table_info('orders'))")}
                << "not allowed";
            addRow("backtick hides a semicolon", backend)
                << RecordQuery{id, orders, QStringLiteral("`'`; DELETE FROM orders; SELECT '`")} << "semicolon";
            addRow("fts3 tokenizer hook", backend)
                << RecordQuery{QStringLiteral("fts3_tokenizer('simple')"), orders} << "fts3_tokenizer";
        } else {
            addRow("another schema in a subquery", backend)
                << RecordQuery{QStringLiteral("(SELECT max(salary) FROM hr.salaries) s"), orders} << "hr.salaries";
            addRow("system catalog", backend)
                << RecordQuery{QStringLiteral("(SELECT count(*) FROM pg_catalog.pg_authid) n"), orders} << "pg_authid";
            addRow("SQL run from text", backend)
                << RecordQuery{QStringLiteral("query_to_xml('DELETE FROM sales.orders', true, false, '')"), orders}
                << "query_to_xml";
            addRow("settings change", backend)
                << RecordQuery{QStringLiteral("set_config('statement_timeout', '0', false)"), orders} << "set_config";
            addRow("large object write", backend)
                << RecordQuery{QStringLiteral("lo_create(0)"), orders, QStringLiteral("orders.id = 1")} << "lo_create";
            addRow("write through a function of the catalog", backend)
                << RecordQuery{QStringLiteral("mark_cancelled(orders.id)"), orders, QStringLiteral("orders.id = 1")}
                << "read-only";
            addRow("file read", backend)
                << RecordQuery{QStringLiteral("pg_read_file('/etc/passwd')"), orders} << "pg_read_file";
        }
    }
}

void TestDataService::hostileRequestsAreRefusedAndChangeNothing()
{
    QFETCH(QString, backend);
    QFETCH(QString, provider);
    QFETCH(QString, dsn);
    QFETCH(QString, catalog);
    QFETCH(RecordQuery, query);
    QFETCH(QString, reason);
    skipUnlessAvailable(backend);
    QString message;
    QCOMPARE(tessaly::Error::hexNumber(errorOf(record(provider, dsn, catalog, query), &message)),
             tessaly::Error::hexNumber(ErrorNumber::StatementRefused));
    QVERIFY2(message.contains(reason, Qt::CaseInsensitive), qPrintable(message));
}

void TestDataService::endlessQueryHitsTheTimeout_data()
{
    addBackendColumns();
    for (const QString &backend : {QStringLiteral("sqlite"), QStringLiteral("postgresql")})
        addRow("recursive query without end", backend);
}

void TestDataService::endlessQueryHitsTheTimeout()
{
    QFETCH(QString, backend);
    QFETCH(QString, provider);
    QFETCH(QString, dsn);
    QFETCH(QString, catalog);
    skipUnlessAvailable(backend);
    QElapsedTimer timer;
    timer.start();
    const RecordQuery endless{
        QStringLiteral("(WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT max(x) FROM c) m"),
        QStringLiteral("regions")};
    QCOMPARE(tessaly::Error::hexNumber(errorOf(record(provider, dsn, catalog, endless))),
             tessaly::Error::hexNumber(ErrorNumber::Timeout));
    QVERIFY2(timer.elapsed() < TestTimeoutMs + 3000, qPrintable(QString::number(timer.elapsed())));
    // The connection is usable again afterwards.
    QCOMPARE(records(ask(record(provider, dsn, catalog, {QStringLiteral("COUNT(*) n"), QStringLiteral("regions")}))),
             QStringList{QStringLiteral("n=6")});
}

void TestDataService::sqliteFileThatGoesAwayGivesAnError()
{
    const QString path = m_dir.filePath(QStringLiteral("doomed.db"));
    QVERIFY(QFile::copy(m_dbPath, path));
    DataSource doomed{QStringLiteral("Doomed"), QStringLiteral("SQLite"), path, {}, {}, 10, 1000};
    const DataService service(DataSourceCatalog({doomed}));
    const QByteArray request = record(QStringLiteral("SQLite"), doomed.name, QStringLiteral("main"),
                                      {QStringLiteral("COUNT(*)"), QStringLiteral("orders")});
    QVERIFY(service.answer(request).contains("2400"));
    QVERIFY(QFile::remove(path));
    for (const QByteArray &next : {request, navigation(QStringLiteral("SQLite"), doomed.name)}) {
        try {
            service.answer(next);
            QFAIL("a deleted database file still answered");
        } catch (const tessaly::Error &error) {
            QCOMPARE(error.number(), ErrorNumber::ConnectionFailed);
            QVERIFY2(error.message().contains(path), qPrintable(error.message()));
        }
    }
}

void TestDataService::postgresServerThatStopsGivesAnError()
{
    if (!m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    // A server of its own, so stopping it leaves the shared one alone.
    const QString state = m_dir.filePath(QStringLiteral("own-server.state"));
    QCOMPARE(QProcess::execute(QStringLiteral(PGSERVER_SCRIPT), {QStringLiteral("start"), state,
                                                                 QStringLiteral(SAMPLE_SQL)}), 0);
    const QMap<QString, QString> own = readState(state);
    DataSource server;
    server.name = QStringLiteral("Own");
    server.provider = QStringLiteral("PostgreSQL");
    for (const char *key : {"host", "port", "user", "dbname"})
        server.connection.append({QLatin1String(key), own.value(QLatin1String(key))});
    const DataService service(DataSourceCatalog({server}));
    const QByteArray request = record(server.provider, server.name, QStringLiteral("sales"),
                                      {QStringLiteral("COUNT(*) n"), QStringLiteral("orders")});
    const bool answered = service.answer(request).contains("2400");
    QCOMPARE(QProcess::execute(QStringLiteral(PGSERVER_SCRIPT), {QStringLiteral("stop"), state}), 0);
    QVERIFY(answered);
    try {
        service.answer(request);
        QFAIL("a stopped server still answered");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), ErrorNumber::ConnectionFailed);
    }
}

void TestDataService::builtInSampleNeedsNoConfiguration()
{
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    const DataService service;
    const QByteArray response = service.answer(navigation(QStringLiteral("SQLite"), QStringLiteral("Sample"),
                                                          QStringLiteral("main")));
    QVERIFY(response.contains("name=\"orders\""));
    qunsetenv("XDG_CONFIG_HOME");
}

void TestDataService::configurationFileDefinesDataSources()
{
    QTemporaryDir config;
    QVERIFY(QDir(config.path()).mkpath(QStringLiteral("veldra")));
    QVERIFY(QFile::copy(m_dbPath, config.filePath(QStringLiteral("veldra/mine.db"))));
    const QString ini = config.filePath(QStringLiteral("veldra/datasources.ini"));
    const auto write = [&](const QByteArray &text) {
        QFile file(ini);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    };
    write("[Mine]\nprovider=SQLite\npath=mine.db\nrowcap=5\ntimeout=2\n"
          "[Warehouse]\nprovider=PostgreSQL\nhost=/nonexistent\nport=1\ndbname=x\n");
    const DataSourceCatalog catalog = DataSourceCatalog::fromFile(ini);
    QCOMPARE(catalog.names(QStringLiteral("SQLite")), (QStringList{QStringLiteral("Sample"), QStringLiteral("Mine")}));
    const DataSource &mine = catalog.find(QStringLiteral("SQLite"), QStringLiteral("Mine"));
    QCOMPARE(mine.path, config.filePath(QStringLiteral("veldra/mine.db")));
    QCOMPARE(mine.rowCap, 5);
    QCOMPARE(mine.timeoutMs, 2000);
    const DataService service(catalog);
    QVERIFY(service.answer(record(QStringLiteral("SQLite"), QStringLiteral("Mine"), QStringLiteral("main"),
                                  {QStringLiteral("orders.id"), QStringLiteral("orders")}))
                .contains("truncated=\"true\""));
    try {
        service.answer(navigation(QStringLiteral("PostgreSQL"), QStringLiteral("Warehouse")));
        QFAIL("an unreachable server answered");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), ErrorNumber::ConnectionFailed);
    }

    for (const QByteArray &bad : {QByteArray("[X]\nprovider=Oracle\n"), QByteArray("[X]\nprovider=SQLite\n"),
                                  QByteArray("[X]\nprovider=SQLite\npath=a.db\nrowcap=lots\n")}) {
        write(bad);
        try {
            DataSourceCatalog::fromFile(ini);
            QFAIL(bad.constData());
        } catch (const tessaly::Error &error) {
            QCOMPARE(error.number(), ErrorNumber::BadConfiguration);
            QVERIFY2(error.message().contains(QStringLiteral("[X]")), qPrintable(error.message()));
        }
    }
}

void TestDataService::proxyCarriesDocumentsAndErrors()
{
    auto service = std::make_shared<const DataService>(m_service->dataSources());
    LocalServiceProxy proxy(service);
    QDomDocument request;
    request.setContent(navigation(QStringLiteral("SQLite"), QStringLiteral("Local"), QStringLiteral("main"),
                                  QStringLiteral("regions")));
    QCOMPARE(names(proxy.request(request)),
             (QStringList{QStringLiteral("code"), QStringLiteral("name"), QStringLiteral("country")}));
    request.setContent(navigation(QStringLiteral("SQLite"), QStringLiteral("Nowhere")));
    try {
        proxy.request(request);
        QFAIL("the proxy swallowed an error");
    } catch (const tessaly::Error &error) {
        QCOMPARE(error.number(), ErrorNumber::UnknownDataSource);
    }
}

QTEST_GUILESS_MAIN(TestDataService)
#include "tst_dataservice.moc"
