#include <dataservice/dataservice.h>
#include <dataservice/errornumber.h>
#include <dataservice/fieldlist.h>
#include <dataservice/rowsink.h>

#include <tessaly/error.h>

#include <QCryptographicHash>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "testserver.h"

#include <libpq-fe.h>
#include <sqlite3.h>

using namespace dataservice;

namespace {

constexpr qint64 TestRowCap = 500;
constexpr int TestTimeoutMs = 1500;

// Where requests go: a provider, one of its data sources and a catalog in it.
struct Target
{
    QString backend;
    QString provider;
    QString dsn;
    QString catalog;
};
const Target SQLite{ "sqlite", "SQLite", "Local", "main" };
const Target Postgres{ "postgresql", "PostgreSQL", "Server", "sales" };

} // namespace

Q_DECLARE_METATYPE(Target)

namespace {

using testserver::navigation;

// A record request made of {fields, tables, condition, group, order, rowcount}.
QByteArray record(const Target &target, const QStringList &query)
{
    return testserver::record(target.provider, target.dsn, target.catalog, query.value(1), query.value(0), query.mid(2));
}

QStringList names(const QDomDocument &document)
{
    QStringList result;
    for (QDomElement e = document.documentElement().firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
        result.append(e.attribute("name"));
    return result;
}

// Records as "name=value|name=value", NULL shown as name=<null>.
QStringList records(const QDomDocument &document)
{
    QStringList rows;
    const QDomElement table = document.documentElement().firstChildElement("table");
    for (QDomElement r = table.firstChildElement(); !r.isNull(); r = r.nextSiblingElement()) {
        QStringList fields;
        for (QDomElement f = r.firstChildElement(); !f.isNull(); f = f.nextSiblingElement())
            fields.append(f.attribute("name") + '=' + (f.attribute("null") == "true" ? "<null>" : f.text()));
        rows.append(fields.join('|'));
    }
    return rows;
}

QDomElement resultOf(const QDomDocument &response)
{
    return response.documentElement().firstChildElement("result");
}

QByteArray fileChecksum(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
}

// A data source on the test server, connecting as the SELECT-only role unless told otherwise.
DataSource server(const QString &name, const QMap<QString, QString> &state, const QString &userKey = "reader")
{
    DataSource source;
    source.name = name;
    source.provider = "PostgreSQL";
    for (const char *key : { "host", "port", "dbname" })
        source.connection.append({ key, state.value(key) });
    source.connection.append({ "user", state.value(userKey) });
    source.catalogs = QStringList{ "sales", "hr", "public" };
    return source;
}

// The error number a request raises, 0 when it is answered.
qint32 errorOf(const DataService &service, const QByteArray &request, QString *message = nullptr)
{
    try {
        service.answer(request);
    } catch (const tessaly::Error &error) {
        if (message)
            *message = error.message();
        return error.number();
    }
    return 0;
}

// What a sink was handed, one line per call kind: "columns a,b", "row 1#|'x'|null|blob:0001".
class RecordingSink : public RowSink
{
public:
    void startTable(const QList<QByteArray> &columnNames) override { lines.append("columns " + columnNames.join(',')); }
    void startRecord() override { row.clear(); }
    void value(const char *utf8, qsizetype size) override { row.append('\'' + QByteArray(utf8, size) + '\''); }
    void numberValue(const char *text, qsizetype size) override { row.append(QByteArray(text, size) + '#'); }
    void blobValue(const char *data, qsizetype size) override { row.append("blob:" + QByteArray(data, size).toHex()); }
    void booleanValue(bool truth) override { row.append(truth ? "true" : "false"); }
    void nullValue() override { row.append("null"); }
    void endRecord() override { lines.append("row " + row.join('|')); }
    void endTable(qint64 rows, bool truncated, qint64) override
    {
        lines.append("end " + QByteArray::number(rows) + (truncated ? " cut" : ""));
    }
    QByteArrayList lines;
    QByteArrayList row;
};

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
    void recordRequestsBecomeOneSelect_data();
    void recordRequestsBecomeOneSelect();
    void rowCapCutsTheResultAndSaysSo_data();
    void rowCapCutsTheResultAndSaysSo();
    void refusedRequestsSayWhyAndChangeNothing_data();
    void refusedRequestsSayWhyAndChangeNothing();
    void sqliteFileThatGoesAwayGivesAnError();
    void postgresServerThatStopsGivesAnError();
    void configurationFileDefinesDataSources();
    void sinkGetsRowsWithNumbersMarked_data();
    void sinkGetsRowsWithNumbersMarked();
    void everyAliasTheWizardTakesComesBackAsWritten_data();
    void everyAliasTheWizardTakesComesBackAsWritten();
    void statementIsBuiltWithoutRunning_data();
    void statementIsBuiltWithoutRunning();

private:
    void backendRows(const char *name);
    QTestData &addRow(const char *name, const Target &target);
    void skipUnlessAvailable(const Target &target);
    PGconn *ownerConnection() const;
    QByteArray postgresChecksum();
    QDomDocument ask(const QByteArray &request);

    QTemporaryDir m_dir;
    QString m_dbPath;
    QString m_pgSkipReason;
    QMap<QString, QString> m_pg;
    std::unique_ptr<DataService> m_service;
    QByteArray m_checksumBefore;
    QByteArray m_pgChecksumBefore;
};

void TestDataService::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_dbPath = m_dir.filePath("sales.db");
    QVERIFY(QFile::copy(DataSourceCatalog::sampleDatabasePath(), m_dbPath));
    const QString otherPath = m_dir.filePath("other.db");
    QCOMPARE(QProcess::execute("sqlite3", { otherPath, "CREATE TABLE secrets (word TEXT); "
                                                       "INSERT INTO secrets VALUES ('swordfish');" }),
             0);
    QList<DataSource> sources{
        { SQLite.dsn, SQLite.provider, m_dbPath, { { "other", otherPath } }, {}, TestRowCap, TestTimeoutMs }
    };

    m_pg = testserver::readState(&m_pgSkipReason);
    if (m_pgSkipReason.isEmpty()) {
        sources.append(server(Postgres.dsn, m_pg));
        sources.last().rowCap = TestRowCap;
        sources.last().timeoutMs = TestTimeoutMs;
    }
    m_service = std::make_unique<DataService>(DataSourceCatalog(sources));
}

// Every test leaves both databases as they were.
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

// A connection to the test server as its owner.
PGconn *TestDataService::ownerConnection() const
{
    return PQconnectdb(QString("host=%1 port=%2 user=%3 dbname=%4")
                               .arg(m_pg.value("host"), m_pg.value("port"), m_pg.value("user"), m_pg.value("dbname"))
                               .toUtf8()
                               .constData());
}

QByteArray TestDataService::postgresChecksum()
{
    if (!m_pg.contains("host"))
        return {};
    PGconn *conn = ownerConnection();
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

void TestDataService::backendRows(const char *name)
{
    QTest::addColumn<Target>("target");
    for (const Target &target : { SQLite, Postgres })
        addRow(name, target);
}

QTestData &TestDataService::addRow(const char *name, const Target &target)
{
    return QTest::addRow("%s: %s", qPrintable(target.backend), name) << target;
}

void TestDataService::skipUnlessAvailable(const Target &target)
{
    if (target.backend == Postgres.backend && !m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
}

QDomDocument TestDataService::ask(const QByteArray &request)
{
    QDomDocument document;
    try {
        document.setContent(m_service->answer(request));
    } catch (const tessaly::Error &error) {
        qWarning("%s failed: %s %s", request.constData(), qPrintable(tessaly::Error::hexNumber(error.number())),
                 qPrintable(error.message()));
    }
    return document;
}

void TestDataService::navigationListsEveryLevel_data()
{
    backendRows("structure");
}

void TestDataService::navigationListsEveryLevel()
{
    QFETCH(Target, target);
    skipUnlessAvailable(target);
    QCOMPARE(names(ask(navigation({}))), (QStringList{ "SQLite", "PostgreSQL" }));
    QVERIFY(names(ask(navigation(target.provider))).contains(target.dsn));
    const QStringList catalogs = names(ask(navigation(target.provider, target.dsn)));
    QVERIFY2(catalogs.contains(target.catalog), qPrintable(catalogs.join(',')));
    QVERIFY(!catalogs.contains("pg_catalog") && !catalogs.contains("temp"));

    const QDomDocument tables = ask(navigation(target.provider, target.dsn, target.catalog));
    QCOMPARE(names(tables), (QStringList{ "customers", "order_lines", "orders", "products", "regions",
                                          "sales_by_region", "staff" }));
    QCOMPARE(tables.documentElement().lastChildElement().previousSiblingElement().attribute("type"), "view");

    const QDomDocument columns = ask(navigation(target.provider, target.dsn, target.catalog, "orders"));
    QCOMPARE(names(columns), (QStringList{ "id", "customer_id", "staff_id", "order_date", "status", "amount" }));
    QVERIFY(columns.documentElement().firstChildElement().attribute("type").contains("int", Qt::CaseInsensitive));
}

void TestDataService::recordRequestsBecomeOneSelect_data()
{
    QTest::addColumn<Target>("target");
    QTest::addColumn<QStringList>("query"); // fields, tables, condition, group, order, rowcount
    QTest::addColumn<QStringList>("expected");
    for (const Target &t : { SQLite, Postgres }) {
        const auto row = [&](const char *name, const QStringList &query, const QStringList &expected) {
            addRow(name, t) << query << expected;
        };
        row("columns, condition, order",
            { "orders.id,orders.status", "orders", "orders.id <= 3 OR orders.id = 7", {}, "orders.id DESC" },
            { "id=7|status=open", "id=3|status=shipped", "id=2|status=shipped", "id=1|status=shipped" });
        row("alias, expression with commas, trailing blank",
            { "SUBSTR(customers.name,1,5) short,customers.city town,customers.segment ", "customers",
              "customers.id = 2" },
            { "short=Coldh|town=Saltmarsh|segment=Public sector" });
        row("two tables",
            { "orders.id,customers.region_code", "orders,customers",
              "orders.customer_id = customers.id AND orders.id = 1" },
            { "id=1|region_code=SE" });
        row("group and order",
            { "customers.region_code,COUNT(*) n", "customers", {}, "customers.region_code",
              "customers.region_code ASC" },
            { "region_code=CE|n=100", "region_code=NE|n=100", "region_code=NW|n=100", "region_code=OS|n=100",
              "region_code=SE|n=100", "region_code=SW|n=100" });
        row("key values as the accessor asks for them", { "code,name", "regions", {}, "code,name" },
            { "code=CE|name=Central", "code=NE|name=North East", "code=NW|name=North West", "code=OS|name=Overseas",
              "code=SE|name=South East", "code=SW|name=South West" });
        row("row count", { "products.id", "products", {}, {}, "products.id", "3" }, { "id=1", "id=2", "id=3" });
        row("markup in the condition",
            { "regions.code", "regions", "regions.code < 'NF' AND regions.name <> 'A&B'", {}, "regions.code" },
            { "code=CE", "code=NE" });
        row("NULL and markup in values", { "customers.email,'<a&b>' tag", "customers", "customers.id = 9" },
            { "email=<null>|tag=<a&b>" });
        row("view", { "region_code,order_count", "sales_by_region", "region_code = 'NE'" },
            { "region_code=NE|order_count=382" });
        row("no rows", { "orders.id", "orders", "1 = 0" }, {});
        row("EXISTS on a table of the catalog read for no column",
            { "regions.code", "regions", "regions.code = 'NE' AND EXISTS (SELECT 1 FROM staff)" }, { "code=NE" });
        // A condition may name a select-list alias, as the wizard writes one; the engine's own
        // names (a real column, a string) stay what they are.
        row("a condition names a select-list alias",
            { "customers.id,customers.segment seg", "customers", "seg = 'Enterprise' AND customers.id < 12", {},
              "customers.id" },
            { "id=1|seg=Enterprise", "id=10|seg=Enterprise", "id=11|seg=Enterprise" });
        row("a real column of the alias's name is the column",
            { "regions.code name", "regions", "name = 'North East'" }, { "name=NE" });
        row("an alias in a string literal stays text",
            { "regions.code Label", "regions", "Label = 'NE' AND length('Label') = 5" }, { "Label=NE" });
    }
}

void TestDataService::recordRequestsBecomeOneSelect()
{
    QFETCH(Target, target);
    QFETCH(QStringList, query);
    QFETCH(QStringList, expected);
    skipUnlessAvailable(target);
    const QDomDocument response = ask(record(target, query));
    QVERIFY(!response.isNull());
    QStringList rows = records(response);
    if (query.value(4).isEmpty()) {
        // Without an order the rows may come in any order.
        rows.sort();
        expected.sort();
    }
    QCOMPARE(rows, expected);
    QCOMPARE(resultOf(response).attribute("truncated"), "false");
    QCOMPARE(resultOf(response).attribute("rows").toInt(), expected.size());
}

void TestDataService::rowCapCutsTheResultAndSaysSo_data()
{
    QTest::addColumn<Target>("target");
    QTest::addColumn<QString>("rowCount");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("truncated");
    for (const Target &t : { SQLite, Postgres }) {
        addRow("no row count, over the cap", t) << QString() << int(TestRowCap) << true;
        addRow("row count over the cap", t) << "2000" << int(TestRowCap) << true;
        addRow("row count at the cap", t) << QString::number(TestRowCap) << int(TestRowCap) << false;
        addRow("row count zero", t) << "0" << 0 << false;
    }
}

void TestDataService::rowCapCutsTheResultAndSaysSo()
{
    QFETCH(Target, target);
    QFETCH(QString, rowCount);
    QFETCH(int, rows);
    QFETCH(bool, truncated);
    skipUnlessAvailable(target);
    const QDomDocument response = ask(record(target, { "orders.id,orders.amount", "orders", {}, {}, {}, rowCount }));
    QCOMPARE(records(response).size(), rows);
    QCOMPARE(resultOf(response).attribute("truncated") == "true", truncated);
    QCOMPARE(resultOf(response).attribute("rowcap").toLongLong(), TestRowCap);
}

void TestDataService::refusedRequestsSayWhyAndChangeNothing_data()
{
    QTest::addColumn<Target>("target");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<QString>("reason"); // in the error message
    const QString id = "orders.id";
    const QString orders = "orders";
    for (const Target &t : { SQLite, Postgres }) {
        const auto unknown = [&](const char *name, const QByteArray &request, qint32 number) {
            addRow(name, t) << request << number << QString();
        };
        const auto refused = [&](const char *name, const QStringList &query, const QString &reason) {
            addRow(name, t) << record(t, query) << ErrorNumber::StatementRefused << reason;
        };
        unknown("unknown provider", navigation("Oracle", t.dsn), ErrorNumber::UnknownProvider);
        unknown("unknown data source", navigation(t.provider, "Nowhere"), ErrorNumber::UnknownDataSource);
        unknown("unknown catalog", navigation(t.provider, t.dsn, "archive"), ErrorNumber::UnknownCatalog);
        unknown("unknown table", navigation(t.provider, t.dsn, t.catalog, "invoices"), ErrorNumber::UnknownTable);
        unknown("unknown table of a record request", record(t, { id, "orders,invoices" }), ErrorNumber::UnknownTable);
        unknown("table of another catalog", record(t, { "*", t.backend == "sqlite" ? "secrets" : "salaries" }),
                ErrorNumber::UnknownTable);
        unknown("bad column", record(t, { "orders.nonesuch", orders }), ErrorNumber::DatabaseError);
        unknown("endless query hits the timeout",
                record(t, { "(WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT max(x) FROM c) m",
                            "regions" }),
                ErrorNumber::Timeout);
        addRow("an alias of an aggregate in the condition", t)
                << record(t, { "customers.segment,COUNT(*) n", "customers", "n > 100", "customers.segment" })
                << ErrorNumber::DatabaseError
                << (t.backend == "sqlite" ? "misuse of aggregate" : "aggregate functions are not allowed in WHERE");
        refused("comment hides a second statement", { id, orders, "1=1 --\n; DELETE FROM orders" }, "comment");
        refused("block comment swallows the rest", { id, orders, {}, {}, "orders.id /*" }, "comment");
        refused("statement in the order list", { id, orders, {}, {}, "orders.id; DROP TABLE orders" }, "semicolon");
        // What the hostile suite does not try: a table of another catalog read for no column,
        // and the fts3 tokenizer hook.
        if (t.backend == "sqlite") {
            refused("attached catalog read for no column", { id, orders, "EXISTS (SELECT 1 FROM secrets)" },
                    "secrets");
            refused("fts3 tokenizer hook", { "fts3_tokenizer('simple')", orders }, "fts3_tokenizer");
        }
    }
}

void TestDataService::refusedRequestsSayWhyAndChangeNothing()
{
    QFETCH(Target, target);
    QFETCH(QByteArray, request);
    QFETCH(qint32, number);
    QFETCH(QString, reason);
    skipUnlessAvailable(target);
    QElapsedTimer timer;
    timer.start();
    QString message;
    QCOMPARE(tessaly::Error::hexNumber(errorOf(*m_service, request, &message)), tessaly::Error::hexNumber(number));
    QVERIFY2(!message.isEmpty() && message.contains(reason, Qt::CaseInsensitive), qPrintable(message));
    QVERIFY2(timer.elapsed() < TestTimeoutMs + 3000, qPrintable(QString::number(timer.elapsed())));
    // The data source answers again afterwards.
    QCOMPARE(records(ask(record(target, { "COUNT(*) n", "regions" }))), QStringList{ "n=6" });
}

void TestDataService::sqliteFileThatGoesAwayGivesAnError()
{
    const QString path = m_dir.filePath("doomed.db");
    QVERIFY(QFile::copy(m_dbPath, path));
    const DataService service(DataSourceCatalog({ { "Doomed", "SQLite", path, {}, {}, 10, 1000 } }));
    const QByteArray request = record({ {}, "SQLite", "Doomed", "main" }, { "COUNT(*)", "orders" });
    QVERIFY(service.answer(request).contains("2400"));
    QVERIFY(QFile::remove(path));
    for (const QByteArray &next : { request, navigation("SQLite", "Doomed") }) {
        QString message;
        QCOMPARE(errorOf(service, next, &message), ErrorNumber::ConnectionFailed);
        QVERIFY2(message.contains(path), qPrintable(message));
    }
}

void TestDataService::postgresServerThatStopsGivesAnError()
{
    if (!m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    // A server of its own, so stopping it leaves the shared one alone.
    const QString state = m_dir.filePath("own-server.state");
    QCOMPARE(QProcess::execute(PGSERVER_SCRIPT, { "start", state, SAMPLE_SQL }), 0);
    const DataService service(DataSourceCatalog({ server("Own", testserver::readState(nullptr, state)) }));
    const QByteArray request = record({ {}, "PostgreSQL", "Own", "sales" }, { "COUNT(*) n", "orders" });
    const bool answered = service.answer(request).contains("2400");
    QCOMPARE(QProcess::execute(PGSERVER_SCRIPT, { "stop", state }), 0);
    QVERIFY(answered);
    QCOMPARE(errorOf(service, request), ErrorNumber::ConnectionFailed);
}

void TestDataService::configurationFileDefinesDataSources()
{
    QTemporaryDir config;
    QVERIFY(QDir(config.path()).mkpath("veldra"));
    QVERIFY(QFile::copy(m_dbPath, config.filePath("veldra/mine.db")));
    const QString ini = config.filePath("veldra/datasources.ini");
    const auto write = [&](const QByteArray &text) {
        QFile file(ini);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(text);
    };
    write("[Mine]\nprovider=SQLite\npath=mine.db\nrowcap=5\ntimeout=2\n"
          "[Warehouse]\nprovider=PostgreSQL\nhost=/nonexistent\nport=1\ndbname=x\ncatalogs=sales, archive\n"
          "work_mem=64MB\n");
    const DataSourceCatalog catalog = DataSourceCatalog::fromFile(ini);
    QCOMPARE(catalog.names("SQLite"), (QStringList{ "Sample", "Mine" }));
    const DataSource &mine = catalog.find("SQLite", "Mine");
    QCOMPARE(mine.path, config.filePath("veldra/mine.db"));
    QCOMPARE(mine.rowCap, 5);
    QCOMPARE(mine.timeoutMs, 2000);
    const DataSource &warehouse = catalog.find("PostgreSQL", "Warehouse");
    QCOMPARE(warehouse.allowedCatalogs(), (QStringList{ "sales", "archive" }));
    QCOMPARE(warehouse.workMem, "64MB");
    QCOMPARE(warehouse.tempFileLimit, "1GB");
    const DataService service(catalog);
    QVERIFY(service.answer(record({ {}, "SQLite", "Mine", "main" }, { "orders.id", "orders" }))
                    .contains("truncated=\"true\""));
    QCOMPARE(errorOf(service, navigation("PostgreSQL", "Warehouse")), ErrorNumber::ConnectionFailed);

    for (const QByteArray &bad : { QByteArray("[X]\nprovider=Oracle\n"), QByteArray("[X]\nprovider=SQLite\n"),
                                   QByteArray("[X]\nprovider=SQLite\npath=a.db\nrowcap=lots\n"),
                                   QByteArray("[X]\nprovider=PostgreSQL\nwork_mem=1GB'; RESET ALL\n") }) {
        write(bad);
        try {
            DataSourceCatalog::fromFile(ini);
            QFAIL(bad.constData());
        } catch (const tessaly::Error &error) {
            QCOMPARE(error.number(), ErrorNumber::BadConfiguration);
            QVERIFY2(error.message().contains("[X]"), qPrintable(error.message()));
        }
    }
}

void TestDataService::sinkGetsRowsWithNumbersMarked_data()
{
    QTest::addColumn<Target>("target");
    QTest::addColumn<QStringList>("query");
    QTest::addColumn<QByteArrayList>("expected");
    for (const Target &t : { SQLite, Postgres }) {
        addRow("numbers, text and NULL", t)
                << QStringList{ "orders.id,orders.status,orders.id + 0.5 half,CAST(NULL AS INTEGER) missing", "orders",
                                "orders.id = 7" }
                << QByteArrayList{ "columns id,status,half,missing", "row 7#|'open'|7.5#|null", "end 1" };
        addRow("one row", t) << QStringList{ "regions.code Code,COUNT(*) AS N", "regions", "regions.code = 'NE'",
                                             "regions.code" }
                             << QByteArrayList{ "columns Code,N", "row 'NE'|1#", "end 1" };
        // SQLite has no Boolean type: a comparison is a number there.
        addRow("comparison", t) << QStringList{ "orders.id > 1 later", "orders", "orders.id = 7" }
                                << QByteArrayList{ "columns later", t.backend == "sqlite" ? "row 1#" : "row true", "end 1" };
    }
}

void TestDataService::sinkGetsRowsWithNumbersMarked()
{
    QFETCH(Target, target);
    QFETCH(QStringList, query);
    QFETCH(QByteArrayList, expected);
    skipUnlessAvailable(target);
    RecordingSink sink;
    m_service->select(record(target, query), sink);
    QCOMPARE(sink.lines, expected);
    // Rows are asked for; a structure listing is not a result.
    RecordingSink unused;
    QCOMPARE(tessaly::Error::hexNumber([&] {
                 try {
                     m_service->select(navigation(target.provider), unused);
                 } catch (const tessaly::Error &error) {
                     return error.number();
                 }
                 return 0;
             }()),
             tessaly::Error::hexNumber(ErrorNumber::MalformedRequest));
}

void TestDataService::everyAliasTheWizardTakesComesBackAsWritten_data()
{
    backendRows("aliases");
}

// Every key word of both engines that is not reserved, non-ASCII names and quoted names, as the
// aliases of one select list: each runs as "expression alias" and comes back as written.
void TestDataService::everyAliasTheWizardTakesComesBackAsWritten()
{
    QFETCH(Target, target);
    skipUnlessAvailable(target);
    QSet<QString> words;
    for (int i = 0; i < sqlite3_keyword_count(); ++i) {
        const char *name = nullptr;
        int size = 0;
        sqlite3_keyword_name(i, &name, &size);
        words.insert(QString::fromLatin1(name, size).toLower());
    }
    if (m_pgSkipReason.isEmpty()) {
        PGconn *conn = ownerConnection();
        PGresult *result = PQexec(conn, "SELECT word FROM pg_get_keywords()");
        for (int row = 0; row < PQntuples(result); ++row)
            words.insert(QString::fromLatin1(PQgetvalue(result, row, 0)));
        PQclear(result);
        PQfinish(conn);
    }
    QStringList items;
    QByteArrayList expected;
    for (const QString &word : words) {
        if (FieldList::isReservedWord(word))
            continue;
        const QString alias = word.left(1).toUpper() + word.mid(1);
        items.append("customers.id " + alias);
        expected.append(alias.toUtf8());
    }
    const QList<QPair<QString, QString>> others{ { "Straße", "Straße" }, { "売上", "売上" }, { "_x1", "_x1" },
                                                 { "\"Total Revenue\"", "Total Revenue" },
                                                 { "\"He said \"\"hi\"\"\"", "He said \"hi\"" },
                                                 { "\"order\"", "order" } };
    for (const auto &[alias, name] : others) {
        items.append("customers.id " + alias);
        expected.append(name.toUtf8());
    }
    QVERIFY(items.size() > 300);
    RecordingSink sink;
    try {
        m_service->select(record(target, { items.join(','), "customers", "customers.id = 1" }), sink);
    } catch (const tessaly::Error &error) {
        QFAIL(qPrintable(tessaly::Error::hexNumber(error.number()) + ' ' + error.message()));
    }
    QCOMPARE(sink.lines.value(0), "columns " + expected.join(','));
}

void TestDataService::statementIsBuiltWithoutRunning_data()
{
    QTest::addColumn<Target>("target");
    QTest::addColumn<QStringList>("query");
    QTest::addColumn<QString>("statement");
    for (const Target &t : { SQLite, Postgres }) {
        const QString from = QString("FROM \"%1\".\"customers\"\n").arg(t.catalog);
        addRow("alias in the condition, a key word alias, the row count", t)
                << QStringList{ "customers.segment seg,COUNT(*) Year", "customers", "seg <> 'Retail'",
                                "customers.segment", {}, "3" }
                << "SELECT customers.segment seg,COUNT(*) AS Year\n" + from
                           + "WHERE ((customers.segment) <> 'Retail')\nGROUP BY customers.segment\nLIMIT 3";
        addRow("no row count: one past the cap", t)
                << QStringList{ "customers.id", "customers" }
                << "SELECT customers.id\n" + from + "LIMIT " + QString::number(TestRowCap + 1);
    }
}

void TestDataService::statementIsBuiltWithoutRunning()
{
    QFETCH(Target, target);
    QFETCH(QStringList, query);
    QFETCH(QString, statement);
    skipUnlessAvailable(target);
    QCOMPARE(m_service->statement(record(target, query)), statement);
}

QTEST_GUILESS_MAIN(TestDataService)
#include "tst_dataservice.moc"
