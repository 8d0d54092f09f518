// Requests written as a hostile user would write them, on SQLite and on a throw-away
// PostgreSQL server: each must be refused with a clear error, return nothing from outside
// its catalog, leave the database and the server as they were, and stay within the time,
// memory and disk limits of its data source. The command-line tool is attacked the same way
// through what it reads and prints.

#include <dataservice/dataservice.h>
#include <dataservice/errornumber.h>

#include <tessaly/error.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <libpq-fe.h>

#include "testserver.h"

#include <limits>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace dataservice;

namespace {

constexpr int TimeoutMs = 1500;
constexpr int PatientTimeoutMs = 30000;
constexpr int BudgetTimeoutMs = 5000;
// Beyond its data source's timeout an answer may take this long to arrive.
constexpr int AnswerGraceMs = 2000;
constexpr qint64 RowCap = 500;
// Time a refused or stopped request may take beyond its data source's limit.
constexpr int TimeMarginMs = 3000;
// Growth of the process's peak memory one request may cause: SQLite's heap limit, and what
// the service holds beside it.
constexpr qint64 MemoryMarginKb = 320 * 1024;

QByteArray recordRequest(const QString &provider, const QString &dsn, const QString &catalog, const QString &table,
    const QString &fields, const QString &condition = {})
{
    return testserver::record(provider, dsn, catalog, table, fields, { condition });
}

QByteArray listRequest(const QString &provider, const QString &dsn, const QString &catalog = {})
{
    return testserver::navigation(provider, dsn, catalog);
}

qint64 procValue(const char *file, const QByteArray &key)
{
    QFile status { QString::fromLatin1(file) };
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}

// The resident memory now, with the peak set back to it, so a row's growth is its own.
qint64 residentKbWithPeakReset()
{
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (reset.open(QIODevice::WriteOnly))
        reset.write("5");
    reset.close();
    return procValue("/proc/self/status", "VmRSS:");
}

qint64 peakMemoryKb()
{
    return procValue("/proc/self/status", "VmHWM:");
}

// Bytes this process handed to write() so far: files (SQLite's temporary ones included) and sockets.
qint64 bytesWritten()
{
    return procValue("/proc/self/io", "wchar:");
}

// Every database file the SQLite data source reads, the attached one included.
QByteArray filesChecksum(const QStringList &paths)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &path : paths) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            hash.addData(file.readAll());
    }
    return hash.result().toHex();
}

// Bytes one request may write: nothing of its own (SQLite keeps temporary storage in
// memory), only the statement it sends.
constexpr qint64 WrittenMarginKb = 64 * 1024;
// AddressSanitizer's shadow memory and quarantine make a process's peak say nothing of its own.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool PeaksMeasured = false;
#else
constexpr bool PeaksMeasured = true;
#endif

// What a row expects: the error number and a text its message holds.
struct Expected
{
    qint32 number;
    QString reason;
    int timeoutMs = TimeoutMs; // of the data source asked
    qint64 memoryKb = MemoryMarginKb;
};

// A command-line run that must end as the docs say, within time and memory bounds.
struct CommandLine
{
    QStringList arguments; // "%DOC" stands for the document written for the row
    QByteArray document;
    int exitCode;
    QString output; // a text standard output holds
    QString error; // a text standard error holds; empty: standard error stays empty
    qint64 memoryKb;
    int timeoutMs;
};

// A definition of expressions over orders, as a person could save one; target holds the
// provider, dsn and catalog elements.
QByteArray definition(const QString &target, const QStringList &expressions, const QString &condition)
{
    QString items;
    QString objects;
    for (const QString &expression : expressions) {
        items += "<Item>" + expression.toHtmlEscaped() + "</Item>";
        objects += "<Object key=\"" + expression.toHtmlEscaped() + "\"><ColumnInfo><alias>V</alias><columnType>2"
            + "</columnType><express>" + expression.toHtmlEscaped() + "</express></ColumnInfo></Object>";
    }
    return ("<SQLInfo><dbInfo><DBInfo>" + target + "</DBInfo></dbInfo><tables><NameMap><Object key=\"orders\">"
        + "<TableInfo><tableName>orders</tableName></TableInfo></Object></NameMap></tables><selections>" + items
        + "</selections><expressions><NameMap>" + objects + "</NameMap></expressions><condition>"
        + condition.toHtmlEscaped() + "</condition></SQLInfo>")
        .toUtf8();
}

// An element with count attributes, which no reader takes.
QByteArray attributes(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i)
        text += " a" + QByteArray::number(i) + "=\"1\"";
    return text;
}

} // namespace

Q_DECLARE_METATYPE(Expected)
Q_DECLARE_METATYPE(CommandLine)

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
    void checkAndRunShareOneTimeBudget();
    void commandLineKeepsItsPromises_data();
    void commandLineKeepsItsPromises();
    void ordinaryQueriesStillRun_data();
    void ordinaryQueriesStillRun();
    void tableNameWithControlCharacterKeepsTheListingWellFormed();
    void rowCapAtTheLargestNumberDoesNotOverflow();

private:
    void addSqliteRows();
    void addPostgresRows();
    QByteArray sqlite(const QString &fields, const QString &condition = {}, const QString &table = "orders") const;
    QByteArray postgres(const QString &fields, const QString &condition = {}, const QString &dsn = "Reader") const;
    QByteArray postgresDump() const;
    QByteArray serverState() const;
    void writeConfiguration() const;

    QTemporaryDir m_dir;
    QString m_dbPath;
    QString m_otherPath;
    QMap<QString, QString> m_pg;
    QString m_pgSkipReason;
    bool m_haveDblink = false;
    PGconn *m_bystander = nullptr; // a session the attacks must leave alone
    std::unique_ptr<DataService> m_service;
    QByteArray m_sqliteBefore;
    QByteArray m_dumpBefore;
    QByteArray m_stateBefore;
    QByteArray m_conninfo; // the server's owner
    QByteArray m_sqliteAtStart;
    QByteArray m_dumpAtStart;
};

void TestHostileRequests::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_dbPath = m_dir.filePath("sales.db");
    QVERIFY(QFile::copy(DataSourceCatalog::sampleDatabasePath(), m_dbPath));
    QVERIFY(QFile::setPermissions(m_dbPath, QFile::ReadOwner | QFile::WriteOwner));
    m_otherPath = m_dir.filePath("other.db");
    QCOMPARE(QProcess::execute("sqlite3",
                 { m_otherPath,
                     "CREATE TABLE secrets (word TEXT); "
                     "INSERT INTO secrets VALUES ('swordfish');" }),
        0);
    QList<DataSource> sources { { "Local", "SQLite", m_dbPath, { { "other", m_otherPath } }, {}, RowCap, TimeoutMs },
        { "Roomy", "SQLite", m_dbPath, {}, {}, RowCap, PatientTimeoutMs } };

    m_pg = testserver::readState(&m_pgSkipReason);
    if (m_pgSkipReason.isEmpty()) {
        // One data source per role: the SELECT-only one, and one for each reason to refuse.
        const QList<QPair<QString, QString>> roles { { "Reader", m_pg.value("reader") },
            { "Patient", m_pg.value("reader") }, { "Budget", m_pg.value("reader") },
            { "Privileged", m_pg.value("user") }, { "Signaller", "veldra_signaller" }, { "Writer", "veldra_writer" },
            { "Creator", "veldra_creator" } };
        for (const auto &[name, role] : roles) {
            DataSource source { name, "PostgreSQL", {}, {}, {}, RowCap,
                name == "Patient"      ? PatientTimeoutMs
                    : name == "Budget" ? BudgetTimeoutMs
                                       : TimeoutMs };
            for (const char *key : { "host", "port", "dbname" })
                source.connection.append({ key, m_pg.value(key) });
            source.connection.append({ "user", role });
            source.catalogs = QStringList { "sales" };
            source.workMem = "1MB";
            source.tempFileLimit = "10MB";
            sources.append(source);
        }
        m_conninfo = QString("host=%1 port=%2 user=%3 dbname=%4")
                         .arg(m_pg.value("host"), m_pg.value("port"), m_pg.value("user"), m_pg.value("dbname"))
                         .toUtf8();
        m_bystander = PQconnectdb(m_conninfo.constData());
        QCOMPARE(PQstatus(m_bystander), CONNECTION_OK);
        PGresult *result = PQexec(m_bystander, "SELECT count(*) FROM pg_extension WHERE extname = 'dblink'");
        m_haveDblink = PQresultStatus(result) == PGRES_TUPLES_OK && QByteArray(PQgetvalue(result, 0, 0)) == "1";
        PQclear(result);
    }
    m_service = std::make_unique<DataService>(DataSourceCatalog(sources));
    writeConfiguration();
    m_sqliteAtStart = filesChecksum({ m_dbPath, m_otherPath });
    m_dumpAtStart = postgresDump();
}

// The whole suite, every row and every command, left both databases as they were.
void TestHostileRequests::cleanupTestCase()
{
    PQfinish(m_bystander);
    QCOMPARE(filesChecksum({ m_dbPath, m_otherPath }), m_sqliteAtStart);
    QCOMPARE(postgresDump(), m_dumpAtStart);
}

void TestHostileRequests::init()
{
    m_sqliteBefore = filesChecksum({ m_dbPath, m_otherPath });
    m_dumpBefore = postgresDump();
    m_stateBefore = serverState();
}

void TestHostileRequests::cleanup()
{
    QCOMPARE(filesChecksum({ m_dbPath, m_otherPath }), m_sqliteBefore);
    QCOMPARE(postgresDump(), m_dumpBefore);
    QCOMPARE(serverState(), m_stateBefore);
}

// The data sources the command-line tool reads: the same SQLite file, and on the test server
// a reader, a superuser, a role that reads quotes the old way, and a server that is not there.
void TestHostileRequests::writeConfiguration() const
{
    QVERIFY(QDir(m_dir.path()).mkpath("config/veldra"));
    QFile ini(m_dir.filePath("config/veldra/datasources.ini"));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[Local]\nprovider=SQLite\npath=" + m_dbPath.toUtf8()
        + "\ntimeout=30\n"
          "[Missing]\nprovider=SQLite\npath="
        + m_dir.filePath("missing.db").toUtf8()
        + "\n"
          "[Unreachable]\nprovider=PostgreSQL\nhost=/nonexistent\nport=1\ndbname=x\nconnect_timeout=1\n");
    if (!m_pg.contains("host"))
        return;
    for (const auto &[name, role] : QList<QPair<QByteArray, QString>> { { "Reader", m_pg.value("reader") },
             { "Privileged", m_pg.value("user") }, { "OldStrings", "veldra_oldstrings" } }) {
        ini.write("[" + name + "]\nprovider=PostgreSQL\ncatalogs=sales\ntimeout=30\ntemp_file_limit=10MB\n");
        for (const char *key : { "host", "port", "dbname" })
            ini.write(QByteArray(key) + '=' + m_pg.value(key).toUtf8() + '\n');
        ini.write("user=" + role.toUtf8() + '\n');
    }
}

// The whole database as pg_dump writes it.
QByteArray TestHostileRequests::postgresDump() const
{
    if (!m_pgSkipReason.isEmpty())
        return {};
    QProcess dump;
    dump.start(m_pg.value("bindir") + "/pg_dump",
        { "-h", m_pg.value("host"), "-p", m_pg.value("port"), "-U", m_pg.value("user"), m_pg.value("dbname") });
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
    const QByteArray state = PQresultStatus(result) == PGRES_TUPLES_OK ? QByteArray(PQgetvalue(result, 0, 0))
                                                                       : "the bystander session is gone";
    PQclear(result);
    return state;
}

QByteArray TestHostileRequests::sqlite(const QString &fields, const QString &condition, const QString &table) const
{
    return recordRequest("SQLite", "Local", "main", table, fields, condition);
}

QByteArray TestHostileRequests::postgres(const QString &fields, const QString &condition, const QString &dsn) const
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
    const auto row = [](const char *name, const QByteArray &request, qint32 number, const QString &reason) {
        QTest::addRow("sqlite: %s", name) << false << request << Expected { number, reason };
    };
    const qint32 refused = ErrorNumber::StatementRefused;
    const QString costly = "(WITH RECURSIVE r(n, s) AS (SELECT 1, '' UNION ALL SELECT n + 1, %1 FROM r) "
                           "SELECT max(length(s)) FROM r) x";
    row("printf padding in a recursive query", sqlite(costly.arg("printf('%.*c', 999999999, 'x')"), {}, "regions"),
        ErrorNumber::DatabaseError, "too big");
    row("printf padding through an argument", sqlite("printf('%*.*c', 5, 999999999, 'x') x"),
        ErrorNumber::DatabaseError, "too big");
    row("a value that doubles in a recursive query is cut by the length limit",
        sqlite(costly.arg("s || s || 'x'"), {}, "regions"), ErrorNumber::DatabaseError, "too big");
    row("a 500 MB blob", sqlite("length(zeroblob(500000000)) n"), refused, "zeroblob");
    const QString longText = "printf('%.*c', 8000000, 'a')";
    row("a search that compares at every position stops at the time limit",
        sqlite(QString("instr(%1, substr(%1, 1, 4000000) || 'b') n").arg(longText), "orders.id < 50"),
        ErrorNumber::Timeout, "stopped");
    row("a replacement that compares at every position stops at the time limit",
        sqlite(QString("length(replace(%1, substr(%1, 1, 4000000) || 'b', 'c')) n").arg(longText), "orders.id < 50"),
        ErrorNumber::Timeout, "stopped");
    row("a large value repeated across the select list",
        sqlite(QStringList(5, "printf('%8000000d', 1)").join(','), "orders.id = 1"), refused, "bytes");
    row("a large value repeated many times across the select list",
        sqlite(QStringList(40, "printf('%8000000d', 1)").join(','), "orders.id = 1"), refused, "256 MB of memory");
    // Time enough to reach the memory bound whatever the machine: files would grow all along.
    QTest::addRow("sqlite: a sort larger than memory would spill to temporary files")
        << false
        << recordRequest("SQLite", "Roomy", "main", "orders",
               "(SELECT count(DISTINCT a.id || b.code || printf('%.*c', 65536, 'x')) FROM orders a, regions b) n")
        << Expected { refused, "256 MB of memory", PatientTimeoutMs };
    row("a table-valued function", sqlite("(SELECT count(*) FROM json_each('[1, 2]')) n"), refused, "json_each");
    row("a long LIKE pattern", sqlite("orders.id", "orders.status LIKE printf('%.*c', 100000, '%')"),
        ErrorNumber::DatabaseError, "pattern");
    row("backtick hides a semicolon", sqlite("orders.id", "`'`; DELETE FROM orders; SELECT '`"), refused, "semicolon");
    row("bracket name hides a quote", sqlite("[']", "1=1) --"), refused, "never opened");
    row("attached catalog through a subquery", sqlite("(SELECT word FROM other.secrets) w"), refused, "other.secrets");
    row("temp catalog", sqlite("(SELECT count(*) FROM temp.sqlite_master) n"), refused, "temp");
    row("schema of the attached catalog", sqlite("(SELECT sql FROM other.sqlite_master LIMIT 1) s"), refused,
        "other.sqlite_master");
    row("pragma as a table", sqlite("(SELECT count(*) FROM pragma_database_list) n"), refused, "not allowed");
    row("load_extension", sqlite("load_extension('/tmp/evil.so') x"), refused, "load_extension");
    row("readfile", sqlite("readfile('/etc/passwd') x"), ErrorNumber::DatabaseError, "no such function");
    row("writing through a common table expression",
        sqlite("orders.id", "orders.id IN (WITH d AS (DELETE FROM orders RETURNING id) SELECT id FROM d)"),
        ErrorNumber::DatabaseError, "syntax");
    row("a catalog the data source does not offer", recordRequest("SQLite", "Local", "temp", "orders", "1"),
        ErrorNumber::UnknownCatalog, "offers");
    row("a 100 kB name in another catalog", sqlite(QString("(SELECT 1 FROM other.\"%1\") x").arg(QString(100000, 'n'))),
        ErrorNumber::DatabaseError, "no such table");
    row("a 100 kB catalog name", recordRequest("SQLite", "Local", QString(100000, 'c'), "orders", "1"),
        ErrorNumber::UnknownCatalog, "more characters");
    row("deeply nested expression", sqlite(QString(5000, '(') + "1" + QString(5000, ')') + " x"),
        ErrorNumber::DatabaseError, "stack overflow");
    row("a statement longer than 1 MB",
        sqlite("orders.id", "orders.id = 1" + QString(" OR orders.id = 1").repeated(70000)), refused, "1048576 bytes");
    // The request reader compared every attribute with every other: minutes for this one.
    row("200,000 attributes", "<query><get" + attributes(200000) + "><content>column</content><target/></get></query>",
        ErrorNumber::MalformedRequest, "attributes");
    row("attributes declared by a document type",
        "<!DOCTYPE query [<!ATTLIST get" + QByteArray(" a CDATA \"1\"").repeated(1000)
            + ">]><query><get><content>column</content><target/></get></query>",
        ErrorNumber::MalformedRequest, "document type");
}

void TestHostileRequests::addPostgresRows()
{
    const auto row = [](const char *name, const QByteArray &request, qint32 number, const QString &reason) {
        QTest::addRow("postgresql: %s", name) << true << request << Expected { number, reason };
    };
    const qint32 refused = ErrorNumber::StatementRefused;
    const qint32 badConfiguration = ErrorNumber::BadConfiguration;

    // Functions written with Unicode escapes are resolved by the engine before the check.
    row("file read through a Unicode-escaped name", postgres("U&\"\\0070g_read_file\"('/etc/passwd') x"), refused,
        "pg_read_file");
    row("Unicode escape with its own escape character",
        postgres("U&\"!0070g_read_file\" UESCAPE '!' ('/etc/passwd') x"), refused, "pg_read_file");
    row("quoted and qualified", postgres("\"pg_catalog\".\"pg_read_binary_file\"('/etc/passwd') x"), refused,
        "pg_read_binary_file");
    row("SQL from text reads password hashes",
        postgres("query_to_xml('SELECT rolpassword FROM pg_authid', true, false, '') x"), refused, "query_to_xml");
    row("text search statistics run SQL", postgres("(SELECT count(*) FROM ts_stat('SELECT 1')) n"), refused, "ts_stat");
    row("dblink to the same server",
        postgres("(SELECT count(*) FROM public.dblink('dbname=veldra_sample', "
                 "'DELETE FROM sales.orders RETURNING 1') AS t(n int)) n"),
        m_haveDblink ? refused : ErrorNumber::DatabaseError, "dblink");
    row("other sessions' statements", postgres("(SELECT count(*) FROM pg_stat_get_activity(NULL)) n"), refused,
        "pg_stat_get_activity");
    row("one setting", postgres("current_setting('data_directory') x"), refused, "current_setting");
    row("settings change", postgres("set_config('statement_timeout', '0', false) x"), refused, "set_config");
    row("statistics reset", postgres("pg_stat_reset() x"), refused, "pg_stat_reset");
    row("terminate other sessions", postgres("(SELECT count(pg_terminate_backend(pid)) FROM pg_stat_activity) n"),
        refused, "pg_");
    row("terminate by number", postgres("pg_terminate_backend(orders.id) x", "orders.id = 1"), refused,
        "pg_terminate_backend");
    row("configuration reload", postgres("pg_reload_conf() x"), refused, "pg_reload_conf");
    row("large object import", postgres("lo_import('/etc/passwd') x"), refused, "lo_import");
    row("sequence step", postgres("nextval(orders.id::regclass) x"), refused, "regclass");
    // Object numbers turned into names list what lies outside the catalog.
    row("table names of other schemas by number",
        postgres("(SELECT string_agg(g::oid::regclass::text, ',') FROM generate_series(16384, 16500) g) x"), refused,
        "regclass");
    row("schema names by number",
        postgres("(SELECT string_agg(g::oid::regnamespace::text, ',') "
                 "FROM generate_series(2200, 16500) g) x"),
        refused, "regnamespace");
    row("the superuser's name by number", postgres("10::oid::regrole::text x"), refused, "regrole");
    row("a table named in an error", postgres("satisfies_hash_partition(16400, 2, 0, 1) x"), refused,
        "satisfies_hash_partition");
    row("role names in an access list", postgres("makeaclitem(10, 10, 'SELECT', false)::text x"), refused, "aclitem");
    row("a name of another schema converted without a call", postgres("('hr.salaries'::name)::regclass::oid x"),
        refused, "regclass");
    // A conversion to a domain runs what its check calls.
    row("a domain's check asks another schema", postgres("(90000::numeric)::sales.known_salary x"), refused,
        "salary_above");
    row("a domain's check sleeps", postgres("(orders.id::integer)::sales.slow_number x", "orders.id < 3"), refused,
        "pg_sleep");
    // PostgreSQL reads a name on through any character from U+0080 up; E' then starts a plain string.
    for (const char *lead : { "\u20ac", "e\u0301", "\U0001F600" }) {
        QTest::addRow("postgresql: an escape string after %s hides a second statement", lead)
            << true
            << postgres("orders.id",
                   QString("orders.id=1 OR %1E'\\'; DELETE FROM sales.orders; SELECT \\''")
                       .arg(QString::fromUtf8(lead)))
            << Expected { refused, "semicolon" };
    }
    row("sleep", postgres("pg_sleep(30) x"), refused, "pg_sleep");
    row("write through a function of the catalog", postgres("sales.mark_cancelled(orders.id) x", "orders.id = 1"),
        refused, "mark_cancelled");
    row("password hashes", postgres("(SELECT max(rolpassword) FROM pg_authid) x"), refused, "pg_authid");
    row("another schema", postgres("(SELECT max(salary) FROM hr.salaries) x"), refused, "hr");
    row("another schema by a Unicode-escaped name", postgres("(SELECT max(salary) FROM U&\"\\0068r\".salaries) x"),
        refused, "hr");
    row("function of another schema", postgres("public.dblink_get_connections() x"),
        m_haveDblink ? refused : ErrorNumber::DatabaseError, "dblink_get_connections");
    row("writing common table expression",
        postgres("orders.id", "orders.id IN (WITH d AS (DELETE FROM sales.orders RETURNING id) SELECT id FROM d)"),
        ErrorNumber::DatabaseError, "WITH");
    row("dollar quoting", postgres("$q$x$q$ x"), refused, "$");
    row("comment", postgres("orders.id", "1=1 --"), refused, "comment");
    row("a long join stops at the time limit",
        postgres("(SELECT count(*) FROM sales.orders a, sales.orders b, sales.orders c) n"), ErrorNumber::Timeout,
        "statement timeout");
    row("endless recursion stops at the temporary file limit",
        postgres("(WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT max(x) "
                 "FROM c) n"),
        ErrorNumber::DatabaseError, "temp_file_limit");
    row("a series larger than the temporary file limit",
        postgres("(SELECT count(*) FROM generate_series(1, 1000000000000)) n"), ErrorNumber::DatabaseError,
        "temp_file_limit");
    row("a sort larger than the temporary file limit",
        postgres("(SELECT count(*) FROM (SELECT md5(g::text) m FROM generate_series(1, 3000000) g "
                 "ORDER BY 1) s) n"),
        ErrorNumber::DatabaseError, "temp_file_limit");
    // Read whole, it would be copied five times over: the message is cut off as it arrives.
    // The server needs seconds to build it, so this asks a patient data source.
    QTest::addRow("postgresql: a 126 MB value in an error message")
        << true << postgres("CAST(repeat('x', 126000000) AS int) x", {}, "Patient")
        << Expected { ErrorNumber::DatabaseError, "connection was closed", PatientTimeoutMs, 128 * 1024 };
    // The server's administrator bounds a backend's memory (docs/datasources.md); the test
    // server is set up so.
    QTest::addRow("postgresql: an aggregate larger than a backend may grow")
        << true
        << postgres("(SELECT length(array_agg(repeat(a.status || b.status, 4))::text) "
                    "FROM sales.orders a, sales.orders b) n",
               {}, "Patient")
        << Expected { ErrorNumber::DatabaseError, "out of memory", PatientTimeoutMs };
    row("a statement longer than 1 MB",
        postgres("orders.id", "orders.id = 1" + QString(" OR orders.id = 1").repeated(70000)), refused,
        "1048576 bytes");
    row("6 million conditions", postgres("orders.id", "orders.id = 1" + QString(" OR 1 = 1").repeated(6000000)),
        ErrorNumber::MalformedRequest, "16 MB");

    // The catalog binds the request, whatever the component sent.
    row("another schema as the request's catalog", recordRequest("PostgreSQL", "Reader", "hr", "salaries", "*"),
        ErrorNumber::UnknownCatalog, "offers");
    row("the system catalog as the request's catalog",
        recordRequest("PostgreSQL", "Reader", "pg_catalog", "pg_authid", "*"), ErrorNumber::UnknownCatalog, "offers");
    row("listing another schema", listRequest("PostgreSQL", "Reader", "hr"), ErrorNumber::UnknownCatalog, "offers");

    // Roles that could do more than read are refused before any query of theirs runs.
    row("superuser", postgres("orders.id", {}, "Privileged"), badConfiguration, "superuser");
    row("superuser, listing", listRequest("PostgreSQL", "Privileged"), badConfiguration, "superuser");
    row("member of pg_signal_backend", postgres("orders.id", {}, "Signaller"), badConfiguration, "pg_signal_backend");
    row("may insert", postgres("orders.id", {}, "Writer"), badConfiguration, "sales.orders");
    row("may create in a schema", postgres("orders.id", {}, "Creator"), badConfiguration, "schema sales");
}

void TestHostileRequests::attacksAreRefusedWithinLimits()
{
    QFETCH(bool, onPostgres);
    QFETCH(QByteArray, request);
    QFETCH(Expected, expected);
    if (onPostgres && !m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    const qint64 memoryBefore = residentKbWithPeakReset();
    const qint64 writtenBefore = bytesWritten();
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
    QVERIFY2(number == expected.number, qPrintable(tessaly::Error::hexNumber(number) + u' ' + message.left(3000)));
    QVERIFY2(message.contains(expected.reason, Qt::CaseInsensitive), qPrintable(message.left(3000)));
    QVERIFY2(message.size() < 3000, qPrintable(QString::number(message.size())));
    QVERIFY2(elapsed < expected.timeoutMs + TimeMarginMs, qPrintable(QString::number(elapsed)));
    const qint64 growth = peakMemoryKb() - memoryBefore;
    QVERIFY2(!PeaksMeasured || growth < expected.memoryKb,
        qPrintable(QStringLiteral("peak memory grew by %1 kB").arg(growth)));
    const qint64 written = (bytesWritten() - writtenBefore) / 1024;
    QVERIFY2(written < WrittenMarginKb, qPrintable(QStringLiteral("%1 kB were written").arg(written)));
}

// The check (the view, the dependency query) and the run answer within one timeout: a view
// kept waiting on a lock for most of it leaves the run only the rest.
void TestHostileRequests::checkAndRunShareOneTimeBudget()
{
    if (!m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    PGconn *locker = PQconnectdb(m_conninfo.constData());
    QCOMPARE(PQstatus(locker), CONNECTION_OK);
    PQclear(PQexec(locker, "BEGIN; LOCK TABLE sales.orders IN ACCESS EXCLUSIVE MODE"));
    QVERIFY(PQsendQuery(locker, "SELECT pg_sleep(4); COMMIT"));
    QElapsedTimer timer;
    timer.start();
    qint32 number = 0;
    try {
        m_service->answer(
            postgres("(SELECT count(*) FROM sales.orders a, sales.orders b, sales.orders c) n", {}, "Budget"));
    } catch (const tessaly::Error &error) {
        number = error.number();
    }
    const qint64 elapsed = timer.elapsed();
    while (PGresult *result = PQgetResult(locker))
        PQclear(result);
    PQfinish(locker);
    QCOMPARE(tessaly::Error::hexNumber(number), tessaly::Error::hexNumber(ErrorNumber::Timeout));
    QVERIFY2(elapsed < BudgetTimeoutMs + AnswerGraceMs, qPrintable(QString::number(elapsed)));
}

void TestHostileRequests::commandLineKeepsItsPromises_data()
{
    QTest::addColumn<bool>("onPostgres");
    QTest::addColumn<CommandLine>("command");
    const QStringList run { "run", "%DOC" };
    const QString local = "<provider>SQLite</provider><dsn>Local</dsn><catalog>main</catalog>";
    const QString reader = "<provider>PostgreSQL</provider><dsn>Reader</dsn><catalog>sales</catalog>";
    // The table format sizes its columns from what it holds back; values this wide must not
    // make it hold gigabytes (four columns of 7.9 MB, or 15 MB, per row).
    QTest::addRow("sqlite: a table of wide values")
        << false
        << CommandLine { run,
               definition(local, QStringList(4, "printf('%.*c', 7900000, 'x') || orders.id"), "orders.id <= 40"), 0,
               "(40 rows)", "", 192 * 1024, 60000 };
    QTest::addRow("postgresql: a table of wide values")
        << true
        << CommandLine { run, definition(reader, { "repeat('x', 15000000) || orders.id" }, "orders.id <= 20"), 0,
               "(20 rows)", "", 192 * 1024, 60000 };
    // Each level is asked of the one data source named; the others are never connected to.
    QTest::addRow("sqlite: browse asks only the data source it names")
        << false << CommandLine { { "browse", "SQLite", "Local", "main" }, {}, 0, "orders\n", "", 128 * 1024, 20000 };
    QTest::addRow("sqlite: browse gives the reason of the data source it names")
        << false
        << CommandLine { { "browse", "SQLite", "Missing" }, {}, 1, "", "missing.db of data source Missing", 128 * 1024,
               20000 };
    QTest::addRow("postgresql: listings for a role that reads quotes the old way")
        << true
        << CommandLine { { "browse", "PostgreSQL", "OldStrings", "sales" }, {}, 0, "orders\n", "", 128 * 1024, 20000 };
    // The document readers compared every attribute with every other: minutes for this one. On
    // the root, even telling a definition from a component document took that long.
    QTest::addRow("sqlite: a definition with 200,000 attributes")
        << false
        << CommandLine { run,
               definition(local, { "1" }, "").replace("<SQLInfo>", "<SQLInfo" + attributes(200000) + ">"), 2, "",
               "attributes", 128 * 1024, 3000 };
}

// What the tool took: its exit status, its output, its peak memory.
struct Finished
{
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
    qint64 peakKb = 0;
    qint64 elapsedMs = 0;
};

// Runs the tool with the test's data sources, its output in files; after fork only what is
// safe in a child of a threaded process.
static Finished runTool(const QStringList &arguments, const QString &dir, int timeoutMs)
{
    QList<QByteArray> argv { VELDRA_BINARY };
    for (const QString &argument : arguments)
        argv.append(argument.toUtf8());
    QList<QByteArray> environment { "XDG_CONFIG_HOME=" + (dir + "/config").toUtf8(), "VELDRA_LANG=en" };
    for (char **entry = environ; *entry; ++entry) {
        if (!QByteArray(*entry).startsWith("XDG_CONFIG_HOME=") && !QByteArray(*entry).startsWith("VELDRA_LANG="))
            environment.append(*entry);
    }
    std::vector<char *> args;
    std::vector<char *> envp;
    for (QByteArray &arg : argv)
        args.push_back(arg.data());
    for (QByteArray &entry : environment)
        envp.push_back(entry.data());
    args.push_back(nullptr);
    envp.push_back(nullptr);
    const QByteArray outPath = (dir + "/out.txt").toUtf8();
    const QByteArray errPath = (dir + "/err.txt").toUtf8();
    QElapsedTimer timer;
    timer.start();
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(open(outPath.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open(errPath.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        // Should memory run away after all, the tool fails at 2 GB instead of the machine.
        const rlimit space { 2048L * 1024 * 1024, 2048L * 1024 * 1024 };
        if (PeaksMeasured)
            setrlimit(RLIMIT_AS, &space);
        execve(args[0], args.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    rusage usage {};
    while (wait4(pid, &status, WNOHANG, &usage) == 0) {
        if (timer.elapsed() > timeoutMs + 60000) {
            kill(pid, SIGKILL);
            wait4(pid, &status, 0, &usage);
            break;
        }
        usleep(10000);
    }
    Finished finished { WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), {}, {}, usage.ru_maxrss,
        timer.elapsed() };
    QFile out(QString::fromUtf8(outPath));
    QFile err(QString::fromUtf8(errPath));
    if (out.open(QIODevice::ReadOnly))
        finished.output = out.readAll();
    if (err.open(QIODevice::ReadOnly))
        finished.error = err.readAll();
    return finished;
}

void TestHostileRequests::commandLineKeepsItsPromises()
{
    QFETCH(bool, onPostgres);
    QFETCH(CommandLine, command);
    if (onPostgres && !m_pgSkipReason.isEmpty())
        QSKIP(qPrintable(m_pgSkipReason));
    QStringList arguments = command.arguments;
    if (!command.document.isEmpty()) {
        QFile document(m_dir.filePath("document.xml"));
        QVERIFY(document.open(QIODevice::WriteOnly));
        document.write(command.document);
        arguments.replaceInStrings("%DOC", document.fileName());
    }
    const Finished finished = runTool(arguments, m_dir.path(), command.timeoutMs);
    const QString error = QString::fromUtf8(finished.error.left(3000));
    QVERIFY2(finished.exitCode == command.exitCode, qPrintable(QString::number(finished.exitCode) + ": " + error));
    QVERIFY2(finished.output.contains(command.output.toUtf8()), finished.output.right(500).constData());
    QVERIFY2(command.error.isEmpty() ? error.isEmpty() : error.contains(command.error), qPrintable(error));
    QVERIFY2(!PeaksMeasured || finished.peakKb < command.memoryKb,
        qPrintable(QStringLiteral("peak memory %1 kB").arg(finished.peakKb)));
    QVERIFY2(finished.elapsedMs < command.timeoutMs, qPrintable(QString::number(finished.elapsedMs)));
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
    both("text functions", "lower(orders.status) s, upper(substr(orders.status, 1, 2)) t, length(orders.status) n",
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
        QVERIFY(response.documentElement().firstChildElement("result").attribute("rows").toInt() > 0);
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
    const DataService service(DataSourceCatalog({ { "Odd", "SQLite", path, {}, {}, RowCap, TimeoutMs } }));
    QDomDocument listing;
    QVERIFY(listing.setContent(service.answer(listRequest("SQLite", "Odd", "main"))));
    QStringList names;
    for (QDomElement e = listing.documentElement().firstChildElement(); !e.isNull(); e = e.nextSiblingElement())
        names.append(e.attribute("name"));
    QCOMPARE(names, (QStringList { "col", "plain" }));
    QDomDocument columns;
    QVERIFY(columns.setContent(
        service.answer("<query><get><content>column</content><target><provider>SQLite</provider><dsn>Odd</dsn>"
                       "<catalog>main</catalog><table>col</table></target></get></query>")));
    QCOMPARE(columns.documentElement().childNodes().size(), 0);
}

void TestHostileRequests::rowCapAtTheLargestNumberDoesNotOverflow()
{
    const qint64 largest = std::numeric_limits<qint64>::max();
    const DataService service(DataSourceCatalog({ { "Big", "SQLite", m_dbPath, {}, {}, largest, TimeoutMs } }));
    QDomDocument response;
    QVERIFY(response.setContent(service.answer(recordRequest("SQLite", "Big", "main", "orders", "orders.id"))));
    const QDomElement result = response.documentElement().firstChildElement("result");
    QCOMPARE(result.attribute("rows"), "2400");
    QCOMPARE(result.attribute("truncated"), "false");
    QCOMPARE(result.attribute("rowcap"), QString::number(largest));
}

QTEST_GUILESS_MAIN(TestHostileRequests)
#include "tst_hostilerequests.moc"
