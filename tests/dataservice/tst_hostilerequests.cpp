// Requests written as a hostile user would write them, on SQLite and on a throw-away
// PostgreSQL server: each must be refused with a clear error, return nothing from outside
// its catalog, leave the database and the server as they were, and stay within the time
// and memory limits of its data source.

#include <dataservice/dataservice.h>
#include <dataservice/errornumber.h>

#include <tessaly/error.h>

#include <QCryptographicHash>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <libpq-fe.h>

#include <limits>

using namespace dataservice;

namespace {

constexpr int TimeoutMs = 1500;
constexpr int PatientTimeoutMs = 30000;
constexpr qint64 RowCap = 500;
// Time a refused or stopped request may take beyond its data source's limit.
constexpr int TimeMarginMs = 3000;
// Growth of the process's peak memory one request may cause.
constexpr qint64 MemoryMarginKb = 256 * 1024;

QByteArray escaped(const QString &text)
{
    QString xml = text.toHtmlEscaped();
    return xml.replace(QStringLiteral("&quot;"), QStringLiteral("\"")).toUtf8();
}

QByteArray recordRequest(const QString &provider, const QString &dsn, const QString &catalog,
    const QString &table, const QString &fields, const QString &condition = {})
{
    QByteArray xml = "<query><get><content>record<field>" + escaped(fields)
        + "</field></content><target><provider>" + provider.toUtf8() + "</provider><dsn>"
        + dsn.toUtf8() + "</dsn><catalog>" + escaped(catalog) + "</catalog><table>" + escaped(table)
        + "</table></target>";
    if (!condition.isEmpty())
        xml += "<condition>" + escaped(condition) + "</condition>";
    return xml + "</get></query>";
}

QByteArray listRequest(const QString &provider, const QString &dsn, const QString &catalog = {})
{
    return "<query><get><content>column</content><target><provider>" + provider.toUtf8()
        + "</provider><dsn>" + dsn.toUtf8() + "</dsn><catalog>" + escaped(catalog)
        + "</catalog><table></table></target></get></query>";
}

QMap<QString, QString> readState(const QString &path, QString *text)
{
    QMap<QString, QString> state;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return state;
    const QByteArray content = file.readAll();
    *text = QString::fromUtf8(content).trimmed();
    for (const QByteArray &line : content.split('\n')) {
        const qsizetype eq = line.indexOf('=');
        if (eq > 0)
            state.insert(QString::fromUtf8(line.left(eq)), QString::fromUtf8(line.mid(eq + 1)));
    }
    return state;
}

qint64 peakMemoryKb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}

QByteArray fileChecksum(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
}

// What a row expects: the error number (or any) and a text its message holds.
constexpr qint32 AnyError = 1;
struct Expected
{
    qint32 number;
    QString reason;
    int timeoutMs = TimeoutMs; // of the data source asked
};

} // namespace

Q_DECLARE_METATYPE(Expected)

class TestHostileRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void attacksAreRefusedWithinLimits_data();
    void attacksAreRefusedWithinLimits();
    void ordinaryQueriesStillRun_data();
    void ordinaryQueriesStillRun();
    void tableNameWithControlCharacterKeepsTheListingWellFormed();
    void rowCapAtTheLargestNumberDoesNotOverflow();

private:
    void addSqliteRows();
    void addPostgresRows();
    QByteArray sqlite(const QString &fields, const QString &condition = {},
        const QString &table = "orders") const;
    QByteArray postgres(
        const QString &fields, const QString &condition = {}, const QString &dsn = "Reader") const;
    QByteArray postgresDump() const;
    QByteArray serverState() const;

    QTemporaryDir m_dir;
    QString m_dbPath;
    QMap<QString, QString> m_pg;
    QString m_pgSkipReason;
    bool m_haveDblink = false;
    PGconn *m_bystander = nullptr; // a session the attacks must leave alone
    std::unique_ptr<DataService> m_service;
    QByteArray m_sqliteBefore;
    QByteArray m_dumpBefore;
    QByteArray m_stateBefore;
};

void TestHostileRequests::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_dbPath = m_dir.filePath("sales.db");
    QVERIFY(QFile::copy(DataSourceCatalog::sampleDatabasePath(), m_dbPath));
    QVERIFY(QFile::setPermissions(m_dbPath, QFile::ReadOwner | QFile::WriteOwner));
    const QString otherPath = m_dir.filePath("other.db");
    QCOMPARE(QProcess::execute("sqlite3",
                 { otherPath,
                     "CREATE TABLE secrets (word TEXT); "
                     "INSERT INTO secrets VALUES ('swordfish');" }),
        0);
    QList<DataSource> sources { { "Local", "SQLite", m_dbPath, { { "other", otherPath } }, {},
        RowCap, TimeoutMs } };

    QString stateText;
    const QString stateFile = qEnvironmentVariable("VELDRA_TEST_PG");
    m_pg = readState(stateFile, &stateText);
    if (!m_pg.contains("host")) {
        m_pgSkipReason = stateFile.isEmpty()
            ? "VELDRA_TEST_PG is not set; run the test through CTest"
            : "no PostgreSQL server: " + stateText;
    } else {
        // One data source per role: the SELECT-only one, and one for each reason to refuse.
        const QList<QPair<QString, QString>> roles { { "Reader", m_pg.value("reader") },
            { "Patient", m_pg.value("reader") }, { "Privileged", m_pg.value("user") },
            { "Signaller", "veldra_signaller" }, { "Writer", "veldra_writer" },
            { "Creator", "veldra_creator" } };
        for (const auto &[name, role] : roles) {
            DataSource source { name, "PostgreSQL", {}, {}, {}, RowCap,
                name == "Patient" ? PatientTimeoutMs : TimeoutMs };
            for (const char *key : { "host", "port", "dbname" })
                source.connection.append({ key, m_pg.value(key) });
            source.connection.append({ "user", role });
            source.catalogs = QStringList { "sales" };
            source.workMem = "1MB";
            source.tempFileLimit = "10MB";
            sources.append(source);
        }
        const QByteArray conninfo = QString("host=%1 port=%2 user=%3 dbname=%4")
                                        .arg(m_pg.value("host"), m_pg.value("port"),
                                            m_pg.value("user"), m_pg.value("dbname"))
                                        .toUtf8();
        m_bystander = PQconnectdb(conninfo.constData());
        QCOMPARE(PQstatus(m_bystander), CONNECTION_OK);
        PGresult *result
            = PQexec(m_bystander, "SELECT count(*) FROM pg_extension WHERE extname = 'dblink'");
        m_haveDblink = PQresultStatus(result) == PGRES_TUPLES_OK
            && QByteArray(PQgetvalue(result, 0, 0)) == "1";
        PQclear(result);
    }
    m_service = std::make_unique<DataService>(DataSourceCatalog(sources));
}

void TestHostileRequests::cleanupTestCase()
{
    PQfinish(m_bystander);
}

void TestHostileRequests::init()
{
    m_sqliteBefore = fileChecksum(m_dbPath);
    m_dumpBefore = postgresDump();
    m_stateBefore = serverState();
}

void TestHostileRequests::cleanup()
{
    QCOMPARE(fileChecksum(m_dbPath), m_sqliteBefore);
    QCOMPARE(postgresDump(), m_dumpBefore);
    QCOMPARE(serverState(), m_stateBefore);
}

// The whole database as pg_dump writes it.
QByteArray TestHostileRequests::postgresDump() const
{
    if (!m_pgSkipReason.isEmpty())
        return {};
    QProcess dump;
    dump.start(m_pg.value("bindir") + "/pg_dump",
        { "-h", m_pg.value("host"), "-p", m_pg.value("port"), "-U", m_pg.value("user"),
            m_pg.value("dbname") });
    if (!dump.waitForFinished(60000) || dump.exitCode() != 0)
        return "pg_dump failed: " + dump.readAllStandardError();
    // Newer pg_dump versions add a random \restrict key to each dump; it is not content.
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray &line : dump.readAllStandardOutput().split('\n')) {
        if (!line.startsWith("\\restrict") && !line.startsWith("\\unrestrict"))
            hash.addData(line);
    }
    return hash.result().toHex();
}

// What an attack on the server itself would change: its configuration load, statistics
// reset, start time, and whether another session is still there.
QByteArray TestHostileRequests::serverState() const
{
    if (!m_bystander)
        return {};
    PGresult *result = PQexec(m_bystander,
        "SELECT pg_conf_load_time() || '/' || pg_postmaster_start_time() || '/' || "
        "coalesce(pg_stat_get_db_stat_reset_time(d.oid)::text, '-') || '/' || "
        "(SELECT count(*) FROM pg_roles) FROM pg_database d WHERE d.datname = current_database()");
    const QByteArray state = PQresultStatus(result) == PGRES_TUPLES_OK
        ? QByteArray(PQgetvalue(result, 0, 0))
        : "the bystander session is gone";
    PQclear(result);
    return state;
}

QByteArray TestHostileRequests::sqlite(
    const QString &fields, const QString &condition, const QString &table) const
{
    return recordRequest("SQLite", "Local", "main", table, fields, condition);
}

QByteArray TestHostileRequests::postgres(
    const QString &fields, const QString &condition, const QString &dsn) const
{
    return recordRequest("PostgreSQL", dsn, "sales", "orders", fields, condition);
}

void TestHostileRequests::attacksAreRefusedWithinLimits_data()
{
    QTest::addColumn<bool>("onPostgres");
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<Expected>("expected");
    addSqliteRows();
    addPostgresRows();
}

void TestHostileRequests::addSqliteRows()
{
    const auto row
        = [](const char *name, const QByteArray &request, qint32 number, const QString &reason) {
              QTest::addRow("sqlite: %s", name) << false << request << Expected { number, reason };
          };
    const qint32 refused = ErrorNumber::StatementRefused;
    const QString costly
        = "(WITH RECURSIVE r(n, s) AS (SELECT 1, '' UNION ALL SELECT n + 1, %1 FROM r) "
          "SELECT max(length(s)) FROM r) x";
    row("printf padding in a recursive query",
        sqlite(costly.arg("printf('%.*c', 999999999, 'x')"), {}, "regions"),
        ErrorNumber::DatabaseError, "too big");
    row("printf padding through an argument", sqlite("printf('%*.*c', 5, 999999999, 'x') x"),
        ErrorNumber::DatabaseError, "too big");
    row("a value that doubles in a recursive query is cut by the length limit",
        sqlite(costly.arg("s || s || 'x'"), {}, "regions"), ErrorNumber::DatabaseError, "too big");
    row("a 500 MB blob", sqlite("length(zeroblob(500000000)) n"), refused, "zeroblob");
    row("a 500 MB random value", sqlite("hex(randomblob(500000000)) n"), refused, "randomblob");
    row("a 500 MB text", sqlite("printf('%.*c', 500000000, 'x') n"), ErrorNumber::DatabaseError,
        "too big");
    row("width from an argument", sqlite("printf('%*d', 2000000000, 1) n"),
        ErrorNumber::DatabaseError, "too big");
    const QString longText = "printf('%.*c', 8000000, 'a')";
    row("a search that compares at every position stops at the time limit",
        sqlite(
            QString("instr(%1, substr(%1, 1, 4000000) || 'b') n").arg(longText), "orders.id < 50"),
        ErrorNumber::Timeout, "stopped");
    row("a replacement that compares at every position stops at the time limit",
        sqlite(QString("length(replace(%1, substr(%1, 1, 4000000) || 'b', 'c')) n").arg(longText),
            "orders.id < 50"),
        ErrorNumber::Timeout, "stopped");
    row("a large value repeated across the select list",
        sqlite(QStringList(5, "printf('%8000000d', 1)").join(','), "orders.id = 1"), refused,
        "bytes");
    row("a large value repeated many times across the select list",
        sqlite(QStringList(40, "printf('%8000000d', 1)").join(','), "orders.id = 1"),
        ErrorNumber::DatabaseError, "out of memory");
    row("a long LIKE pattern",
        sqlite("orders.id", "orders.status LIKE printf('%.*c', 100000, '%')"),
        ErrorNumber::DatabaseError, "pattern");
    row("E string hides a comment", sqlite("orders.id", "E'\\' = '' --'"), refused, "comment");
    row("E string hides a parenthesis", sqlite("orders.id", "E'\\' ) OR (1=1 '"), refused,
        "parenthesis");
    row("backtick hides a semicolon", sqlite("orders.id", "`'`; DELETE FROM orders; SELECT '`"),
        refused, "semicolon");
    row("bracket name hides a quote", sqlite("[']", "1=1) --"), refused, "never opened");
    row("attached catalog through a subquery", sqlite("(SELECT word FROM other.secrets) w"),
        refused, "other.secrets");
    row("temp catalog", sqlite("(SELECT count(*) FROM temp.sqlite_master) n"), refused, "temp");
    row("schema of the attached catalog", sqlite("(SELECT sql FROM other.sqlite_master LIMIT 1) s"),
        refused, "other.sqlite_master");
    row("pragma as a table", sqlite("(SELECT count(*) FROM pragma_database_list) n"), refused,
        "not allowed");
    row("load_extension", sqlite("load_extension('/tmp/evil.so') x"), refused, "load_extension");
    row("readfile", sqlite("readfile('/etc/passwd') x"), ErrorNumber::DatabaseError,
        "no such function");
    row("writing through a common table expression",
        sqlite("orders.id",
            "orders.id IN (WITH d AS (DELETE FROM orders RETURNING id) SELECT id FROM d)"),
        ErrorNumber::DatabaseError, "syntax");
    row("a catalog the data source does not offer",
        recordRequest("SQLite", "Local", "temp", "orders", "1"), ErrorNumber::UnknownCatalog,
        "offers");
    row("a 100 kB name in another catalog",
        sqlite(QString("(SELECT 1 FROM other.\"%1\") x").arg(QString(100000, 'n'))),
        ErrorNumber::DatabaseError, "no such table");
    row("a 100 kB catalog name",
        recordRequest("SQLite", "Local", QString(100000, 'c'), "orders", "1"),
        ErrorNumber::UnknownCatalog, "more characters");
    row("deeply nested expression", sqlite(QString(5000, '(') + "1" + QString(5000, ')') + " x"),
        ErrorNumber::DatabaseError, "stack overflow");
}

void TestHostileRequests::addPostgresRows()
{
    const auto row = [](const char *name, const QByteArray &request, qint32 number,
                         const QString &reason) {
        QTest::addRow("postgresql: %s", name) << true << request << Expected { number, reason };
    };
    const qint32 refused = ErrorNumber::StatementRefused;
    const qint32 badConfiguration = ErrorNumber::BadConfiguration;

    // Functions written with Unicode escapes are resolved by the engine before the check.
    row("file read through a Unicode-escaped name",
        postgres("U&\"\\0070g_read_file\"('/etc/passwd') x"), refused, "pg_read_file");
    row("SQL from text through a Unicode-escaped name",
        postgres("U&\"query\\005fto\\005fxml\"('SELECT * FROM hr.salaries', true, false, '') x"),
        refused, "query_to_xml");
    row("Unicode escape with its own escape character",
        postgres("U&\"!0070g_read_file\" UESCAPE '!' ('/etc/passwd') x"), refused, "pg_read_file");
    row("quoted and qualified", postgres("\"pg_catalog\".\"pg_read_binary_file\"('/etc/passwd') x"),
        refused, "pg_read_binary_file");
    row("SQL from text reads password hashes",
        postgres("query_to_xml('SELECT rolpassword FROM pg_authid', true, false, '') x"), refused,
        "query_to_xml");
    row("text search statistics run SQL", postgres("(SELECT count(*) FROM ts_stat('SELECT 1')) n"),
        refused, "ts_stat");
    row("another table as XML", postgres("table_to_xml('hr.salaries', true, false, '') x"), refused,
        "table_to_xml");
    row("dblink to the same server",
        postgres("(SELECT count(*) FROM public.dblink('dbname=veldra_sample', "
                 "'DELETE FROM sales.orders RETURNING 1') AS t(n int)) n"),
        m_haveDblink ? refused : ErrorNumber::DatabaseError, "dblink");
    row("dblink_connect_u", postgres("public.dblink_connect_u('c', 'dbname=veldra_sample') x"),
        m_haveDblink ? refused : ErrorNumber::DatabaseError, "dblink_connect_u");
    row("other sessions' statements",
        postgres("(SELECT count(*) FROM pg_stat_get_activity(NULL)) n"), refused,
        "pg_stat_get_activity");
    row("activity view", postgres("(SELECT count(*) FROM pg_stat_activity) n"), refused,
        "pg_stat_activity");
    row("server settings", postgres("(SELECT count(*) FROM pg_show_all_settings()) n"), refused,
        "pg_show_all_settings");
    row("one setting", postgres("current_setting('data_directory') x"), refused, "current_setting");
    row("settings change", postgres("set_config('statement_timeout', '0', false) x"), refused,
        "set_config");
    row("statistics reset", postgres("pg_stat_reset() x"), refused, "pg_stat_reset");
    row("terminate other sessions",
        postgres("(SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity) n"), refused,
        "pg_");
    row("terminate by number", postgres("pg_terminate_backend(orders.id) x", "orders.id = 1"),
        refused, "pg_terminate_backend");
    row("cancel other sessions", postgres("pg_cancel_backend(orders.id) x", "orders.id = 1"),
        refused, "pg_cancel_backend");
    row("configuration reload", postgres("pg_reload_conf() x"), refused, "pg_reload_conf");
    row("WAL switch", postgres("pg_switch_wal() x"), refused, "pg_switch_wal");
    row("large object import", postgres("lo_import('/etc/passwd') x"), refused, "lo_import");
    row("sequence step", postgres("nextval(orders.id::regclass) x"), refused, "nextval");
    row("sleep", postgres("pg_sleep(30) x"), refused, "pg_sleep");
    row("advisory lock", postgres("pg_advisory_lock(1) x"), refused, "pg_advisory_lock");
    row("write through a function of the catalog",
        postgres("sales.mark_cancelled(orders.id) x", "orders.id = 1"), refused, "mark_cancelled");
    row("password hashes", postgres("(SELECT max(rolpassword) FROM pg_authid) x"), refused,
        "pg_authid");
    row("password view", postgres("(SELECT max(passwd) FROM pg_shadow) x"), refused, "pg_shadow");
    row("another schema", postgres("(SELECT max(salary) FROM hr.salaries) x"), refused, "hr");
    row("another schema by a Unicode-escaped name",
        postgres("(SELECT max(salary) FROM U&\"\\0068r\".salaries) x"), refused, "hr");
    row("function of another schema", postgres("public.dblink_get_connections() x"),
        m_haveDblink ? refused : ErrorNumber::DatabaseError, "dblink_get_connections");
    row("writing common table expression",
        postgres("orders.id",
            "orders.id IN (WITH d AS (DELETE FROM sales.orders RETURNING id) SELECT id FROM d)"),
        ErrorNumber::DatabaseError, "WITH");
    row("dollar quoting", postgres("$q$x$q$ x"), refused, "$");
    row("comment", postgres("orders.id", "1=1 --"), refused, "comment");
    row("a long join stops at the time limit",
        postgres("(SELECT count(*) FROM sales.orders a, sales.orders b, sales.orders c) n"),
        ErrorNumber::Timeout, "statement timeout");
    row("endless recursion stops at the temporary file limit",
        postgres("(WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT max(x) "
                 "FROM c) n"),
        ErrorNumber::DatabaseError, "temp_file_limit");
    row("a series larger than the temporary file limit",
        postgres("(SELECT count(*) FROM generate_series(1, 1000000000000)) n"),
        ErrorNumber::DatabaseError, "temp_file_limit");
    row("a sort larger than the temporary file limit",
        postgres("(SELECT count(*) FROM (SELECT md5(g::text) m FROM generate_series(1, 3000000) g "
                 "ORDER BY 1) s) n"),
        ErrorNumber::DatabaseError, "temp_file_limit");
    // The server needs seconds to build that message, so this asks a patient data source.
    // Whichever comes first (the growth limit, the answer's time limit, or on a slow machine
    // the statement timeout) ends the request: what counts is memory, time and the message.
    QTest::addRow("postgresql: a 500 MB value in an error message")
        << true << postgres("CAST(repeat('x', 500000000) AS int) x", {}, "Patient")
        << Expected { AnyError, "", PatientTimeoutMs };

    // The catalog binds the request, whatever the component sent.
    row("another schema as the request's catalog",
        recordRequest("PostgreSQL", "Reader", "hr", "salaries", "*"), ErrorNumber::UnknownCatalog,
        "offers");
    row("the system catalog as the request's catalog",
        recordRequest("PostgreSQL", "Reader", "pg_catalog", "pg_authid", "*"),
        ErrorNumber::UnknownCatalog, "offers");
    row("listing another schema", listRequest("PostgreSQL", "Reader", "hr"),
        ErrorNumber::UnknownCatalog, "offers");

    // Roles that could do more than read are refused before any query of theirs runs.
    row("superuser", postgres("orders.id", {}, "Privileged"), badConfiguration, "superuser");
    row("superuser, listing", listRequest("PostgreSQL", "Privileged"), badConfiguration,
        "superuser");
    row("member of pg_signal_backend", postgres("orders.id", {}, "Signaller"), badConfiguration,
        "pg_signal_backend");
    row("may insert", postgres("orders.id", {}, "Writer"), badConfiguration, "sales.orders");
    row("may create in a schema", postgres("orders.id", {}, "Creator"), badConfiguration,
        "schema sales");
}

void TestHostileRequests::attacksAreRefusedWithinLimits()
{
    QFETCH(bool, onPostgres);
    QFETCH(QByteArray, request);
    QFETCH(Expected, expected);
    if (onPostgres && !m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    const qint64 memoryBefore = peakMemoryKb();
    QElapsedTimer timer;
    timer.start();
    QByteArray answer;
    qint32 number = 0;
    QString message;
    try {
        answer = m_service->answer(request);
    } catch (const tessaly::Error &error) {
        number = error.number();
        message = error.message();
    }
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(answer.isEmpty(), answer.left(2000).constData());
    QVERIFY2(expected.number == AnyError ? number != 0 : number == expected.number,
        qPrintable(tessaly::Error::hexNumber(number) + u' ' + message.left(3000)));
    QVERIFY2(
        message.contains(expected.reason, Qt::CaseInsensitive), qPrintable(message.left(3000)));
    QVERIFY2(message.size() < 3000, qPrintable(QString::number(message.size())));
    QVERIFY2(elapsed < expected.timeoutMs + TimeMarginMs, qPrintable(QString::number(elapsed)));
    const qint64 growth = peakMemoryKb() - memoryBefore;
    QVERIFY2(growth < MemoryMarginKb,
        qPrintable(QStringLiteral("peak memory grew by %1 kB").arg(growth)));
}

// The checks keep out what escapes the catalog, not what a person querying it writes.
void TestHostileRequests::ordinaryQueriesStillRun_data()
{
    QTest::addColumn<bool>("onPostgres");
    QTest::addColumn<QByteArray>("request");
    const auto both = [this](const char *name, const QString &fields, const QString &condition) {
        QTest::addRow("sqlite: %s", name) << false << sqlite(fields, condition);
        QTest::addRow("postgresql: %s", name) << true << postgres(fields, condition);
    };
    both("text functions",
        "lower(orders.status) s, upper(substr(orders.status, 1, 2)) t, length(orders.status) n",
        "orders.status LIKE 'sh%' AND trim(orders.status) <> ''");
    both("numbers and conditionals",
        "round(orders.amount) r, abs(orders.amount - 100) d, CASE WHEN orders.amount > 1000 THEN "
        "'big' ELSE 'small' "
        "END size, coalesce(NULL, orders.id) c",
        "orders.amount BETWEEN 10 AND 5000 AND orders.id IN (1, 2, 3)");
    both("aggregates, windows and subqueries of the catalog",
        "count(*) OVER () n, row_number() OVER (ORDER BY orders.id) r, "
        "(SELECT max(customers.name) FROM customers WHERE customers.id = orders.customer_id) who",
        "EXISTS (SELECT 1 FROM order_lines WHERE order_lines.order_id = orders.id)");
    both("replacing", "replace(orders.status, 'ship', 'SHIP') s", "orders.id < 5");
    QTest::addRow("sqlite: printf and instr")
        << false
        << sqlite("printf('%05d %.2f %s', orders.id, orders.amount, 'x') p, instr(orders.status, "
                  "'p') i",
               "orders.id < 5");
    QTest::addRow("postgresql: dates, casts and clocks")
        << true
        << postgres("to_char(orders.order_date::date, 'YYYY-MM') m, extract(year FROM "
                    "orders.order_date::date) y, "
                    "date_trunc('month', orders.order_date::timestamp) t, now() > "
                    "orders.order_date::date f",
               "orders.order_date::date + interval '1 day' > DATE '2000-01-01'");
    QTest::addRow("postgresql: formatting, JSON and patterns")
        << true
        << postgres("format('%s-%s', orders.id, orders.status) f, concat_ws('/', orders.id, "
                    "orders.status) c, "
                    "json_build_object('id', orders.id) j, orders.amount::text a",
               "orders.status ~ '^sh' AND orders.status ILIKE 'SH%' AND random() < 2");
}

void TestHostileRequests::ordinaryQueriesStillRun()
{
    QFETCH(bool, onPostgres);
    QFETCH(QByteArray, request);
    if (onPostgres && !m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    try {
        QDomDocument response;
        QVERIFY(response.setContent(m_service->answer(request)));
        QVERIFY(
            response.documentElement().firstChildElement("result").attribute("rows").toInt() > 0);
    } catch (const tessaly::Error &error) {
        QFAIL(qPrintable(tessaly::Error::hexNumber(error.number()) + u' ' + error.message()));
    }
}

void TestHostileRequests::tableNameWithControlCharacterKeepsTheListingWellFormed()
{
    const QString path = m_dir.filePath("odd.db");
    QCOMPARE(QProcess::execute("sqlite3",
                 { path,
                     "CREATE TABLE plain (a); CREATE TABLE \"bell\x07name\" (a);"
                     "CREATE TABLE \"col\" (\"x\x01y\" INTEGER);" }),
        0);
    const DataService service(
        DataSourceCatalog({ { "Odd", "SQLite", path, {}, {}, RowCap, TimeoutMs } }));
    QDomDocument listing;
    QVERIFY(listing.setContent(service.answer(listRequest("SQLite", "Odd", "main"))));
    QStringList names;
    for (QDomElement e = listing.documentElement().firstChildElement(); !e.isNull();
         e = e.nextSiblingElement())
        names.append(e.attribute("name"));
    QCOMPARE(names, (QStringList { "col", "plain" }));
    QDomDocument columns;
    QVERIFY(columns.setContent(service.answer(
        "<query><get><content>column</content><target><provider>SQLite</provider><dsn>Odd</dsn>"
        "<catalog>main</catalog><table>col</table></target></get></query>")));
    QCOMPARE(columns.documentElement().childNodes().size(), 0);
}

void TestHostileRequests::rowCapAtTheLargestNumberDoesNotOverflow()
{
    const qint64 largest = std::numeric_limits<qint64>::max();
    const DataService service(
        DataSourceCatalog({ { "Big", "SQLite", m_dbPath, {}, {}, largest, TimeoutMs } }));
    QDomDocument response;
    QVERIFY(response.setContent(
        service.answer(recordRequest("SQLite", "Big", "main", "orders", "orders.id"))));
    const QDomElement result = response.documentElement().firstChildElement("result");
    QCOMPARE(result.attribute("rows"), "2400");
    QCOMPARE(result.attribute("truncated"), "false");
    QCOMPARE(result.attribute("rowcap"), QString::number(largest));
}

QTEST_GUILESS_MAIN(TestHostileRequests)
#include "tst_hostilerequests.moc"
