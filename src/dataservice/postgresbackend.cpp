#include "postgresbackend.h"

#include "errornumber.h"
#include "fieldlist.h"
#include "messagetext.h"
#include "request.h"
#include "rowsink.h"

#include <tessaly/error.h>

#include <libpq-fe.h>

#include <array>
#include <chrono>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace dataservice {

namespace {

using Clock = std::chrono::steady_clock;

// How long a kept connection trusts what it learnt of the database (its tables, the statements
// it checked): long enough for a dashboard's repeated requests, short enough that a change of
// the database's objects is seen soon.
constexpr auto RememberFor = std::chrono::seconds(60);

// How much the process may grow while one message (a row, an error) arrives, and the time
// beyond the statement timeout an answer may take to arrive.
constexpr qint64 GrowthLimit = 128 * 1024 * 1024;
constexpr int AnswerGraceMs = 2000;

// Built-in functions that are not immutable but that a query may call: clocks, formatting
// and JSON building. Immutable built-ins, and the built-in functions behind casts and
// operators, are allowed without a list; everything else (reading files or settings,
// running SQL from text, signalling sessions) is refused.
const char *const CallableBuiltIns =
    "{now,statement_timestamp,transaction_timestamp,clock_timestamp,timeofday,random,"
    "to_char,to_date,to_timestamp,to_number,age,date_trunc,date_part,extract,date_bin,timezone,isfinite,"
    "make_timestamptz,concat,concat_ws,format,generate_series,to_json,to_jsonb,row_to_json,array_to_json,"
    "json_agg,jsonb_agg,json_object_agg,jsonb_object_agg,json_build_object,jsonb_build_object,"
    "json_build_array,jsonb_build_array}";

// What the statement uses, read from the engine's own parse tree of it (stored for a
// temporary view): the functions it calls and the relations it reads, by OID, after every
// escape and quote is resolved. Built-in objects are not recorded in pg_depend, so the tree
// is read; pg_depend adds objects created in the database (functions, operators, types). The
// tree's text is the engine's serialisation, in which user text cannot forge a field.
// Each row is one reason to refuse; $1 is the catalog, $2 the callable built-ins.
const char *const DependencyCheck = R"(
WITH view AS (SELECT 'pg_temp.veldra_statement_check'::pg_catalog.regclass AS oid),
tree AS (SELECT r.oid, r.ev_action::pg_catalog.text AS t FROM pg_catalog.pg_rewrite r, view
         WHERE r.ev_class = view.oid),
functions AS (SELECT m[1]::pg_catalog.oid AS oid FROM tree, pg_catalog.regexp_matches(tree.t,
              ' :(?:funcid|opfuncid|aggfnoid|winfnoid|hashfuncid|negfuncid|inRangeFunc|tsmhandler) ([0-9]+)', 'g') AS m
              UNION
              SELECT d.refobjid FROM tree JOIN pg_catalog.pg_depend d
              ON d.classid = 'pg_catalog.pg_rewrite'::pg_catalog.regclass AND d.objid = tree.oid
              WHERE d.refclassid = 'pg_catalog.pg_proc'::pg_catalog.regclass),
relations AS (SELECT DISTINCT m[1]::pg_catalog.oid AS oid FROM tree,
              pg_catalog.regexp_matches(tree.t, ' :relid ([0-9]+)', 'g') AS m)
SELECT pg_catalog.format('it reads %s.%s, outside catalog %s', n.nspname, c.relname, $1::pg_catalog.text)
  FROM relations JOIN pg_catalog.pg_class c ON c.oid = relations.oid
  JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace, view
  WHERE c.oid <> view.oid AND n.nspname <> $1::pg_catalog.text
UNION ALL
SELECT pg_catalog.format('it calls %s.%s(%s), and a query may call only built-in functions that are immutable '
                         'or on a short list (clocks, formatting, JSON)', n.nspname, p.proname,
                         pg_catalog.pg_get_function_identity_arguments(p.oid))
  FROM functions JOIN pg_catalog.pg_proc p ON p.oid = functions.oid
  JOIN pg_catalog.pg_namespace n ON n.oid = p.pronamespace
  WHERE NOT (n.nspname = 'pg_catalog' AND (p.provolatile = 'i' OR p.proname = ANY ($2::pg_catalog.text[])
             OR p.oid IN (SELECT k.castfunc FROM pg_catalog.pg_cast k JOIN pg_catalog.pg_type t
                          ON t.oid = k.casttarget WHERE t.typname NOT LIKE 'reg%')
             OR p.oid IN (SELECT o.oprcode FROM pg_catalog.pg_operator o
                          WHERE o.oprnamespace = 'pg_catalog'::pg_catalog.regnamespace)))
UNION ALL
SELECT pg_catalog.format('it uses %s %s, outside catalog %s', o.type, o.identity, $1::pg_catalog.text)
  FROM tree JOIN pg_catalog.pg_depend d ON d.classid = 'pg_catalog.pg_rewrite'::pg_catalog.regclass
  AND d.objid = tree.oid, view, LATERAL pg_catalog.pg_identify_object(d.refclassid, d.refobjid, 0) AS o
  WHERE d.refobjid <> view.oid AND o.type NOT IN ('function', 'aggregate', 'procedure')
  AND (o.type = 'operator' AND o.schema <> 'pg_catalog' OR o.schema IS DISTINCT FROM $1::pg_catalog.text
       AND o.schema IS DISTINCT FROM 'pg_catalog')
LIMIT 1)";

// One row: why the connecting role is too strong to run user queries, or nothing.
const char *const RoleCheck = R"(
SELECT r.rolname, r.rolsuper, r.rolcreaterole,
  (SELECT pg_catalog.string_agg(b.rolname, ', ' ORDER BY b.rolname) FROM pg_catalog.pg_roles b
   WHERE b.rolname IN ('pg_read_server_files', 'pg_write_server_files', 'pg_execute_server_program',
                       'pg_signal_backend', 'pg_write_all_data')
   AND pg_catalog.pg_has_role(b.oid, 'MEMBER')),
  (SELECT w FROM (
     SELECT pg_catalog.format('database %s (CREATE)', pg_catalog.current_database()) AS w
       WHERE pg_catalog.has_database_privilege(pg_catalog.current_database(), 'CREATE')
     UNION ALL
     SELECT pg_catalog.format('schema %s (CREATE)', n.nspname) FROM pg_catalog.pg_namespace n
       WHERE pg_catalog.has_schema_privilege(n.oid, 'CREATE') AND n.nspname NOT LIKE 'pg\_temp\_%'
       AND n.nspname NOT LIKE 'pg\_toast\_temp\_%'
     UNION ALL
     SELECT pg_catalog.format('%s %s.%s (INSERT, UPDATE, DELETE or TRUNCATE)',
                              CASE WHEN c.relkind = 'S' THEN 'sequence' ELSE 'table' END, n.nspname, c.relname)
       FROM pg_catalog.pg_class c JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace
       WHERE n.nspname NOT IN ('pg_catalog', 'information_schema') -- pg_settings takes UPDATE from all
       AND n.nspname NOT LIKE 'pg\_temp\_%' AND n.nspname NOT LIKE 'pg\_toast%'
       AND (c.relkind IN ('r', 'p', 'v', 'm', 'f')
            AND (pg_catalog.has_table_privilege(c.oid, 'DELETE, TRUNCATE')
                 OR pg_catalog.has_any_column_privilege(c.oid, 'INSERT, UPDATE'))
            OR c.relkind = 'S' AND pg_catalog.has_sequence_privilege(c.oid, 'USAGE, UPDATE'))
     ) AS writes LIMIT 1)
FROM pg_catalog.pg_roles r WHERE r.rolname = CURRENT_USER)";

constexpr Oid BooleanType = 16;

// Types whose text is a number: int2, int4, int8, oid, float4, float8, numeric.
bool isNumberType(Oid type)
{
    switch (type) {
    case 20: case 21: case 23: case 26: case 700: case 701: case 1700:
        return true;
    default:
        return false;
    }
}

void clearResult(pg_result *result)
{
    PQclear(result);
}

// The engine's message, cut: an error may quote a value of hundreds of megabytes.
QString errorText(const pg_result *result, const pg_conn *conn)
{
    return MessageText::fromEngine(result ? PQresultErrorMessage(result) : PQerrorMessage(conn));
}

// The process's resident memory in bytes, or -1 where it cannot be read.
qint64 residentBytes()
{
    const int fd = ::open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return -1;
    char buffer[128];
    const ssize_t size = ::read(fd, buffer, sizeof buffer - 1);
    ::close(fd);
    if (size <= 0)
        return -1;
    buffer[size] = '\0';
    char *end = nullptr;
    std::strtoll(buffer, &end, 10); // total size; resident follows
    return std::strtoll(end, nullptr, 10) * qint64(sysconf(_SC_PAGESIZE));
}

bool isTrue(const pg_result *result, int column)
{
    return PQgetvalue(result, 0, column)[0] == 't';
}

} // namespace

PostgresBackend::PostgresBackend(DataSource dataSource)
    : Backend(std::move(dataSource))
{
    QByteArrayList keys;
    QByteArrayList values;
    bool haveTimeout = false;
    for (const auto &[key, value] : m_dataSource.connection) {
        keys.append(key.toUtf8());
        values.append(value.toUtf8());
        haveTimeout = haveTimeout || key == u"connect_timeout";
    }
    if (!haveTimeout) {
        keys.append("connect_timeout");
        values.append("10");
    }
    keys.append("application_name");
    values.append("veldra-dataservice");
    keys.append("client_encoding");
    values.append("UTF8");
    std::vector<const char *> keyPointers;
    std::vector<const char *> valuePointers;
    for (int i = 0; i < keys.size(); ++i) {
        keyPointers.push_back(keys.at(i).constData());
        valuePointers.push_back(values.at(i).constData());
    }
    keyPointers.push_back(nullptr);
    valuePointers.push_back(nullptr);
    m_conn = PQconnectdbParams(keyPointers.data(), valuePointers.data(), 0);
    if (PQstatus(m_conn) != CONNECTION_OK) {
        const QString message = errorText(nullptr, m_conn);
        PQfinish(m_conn);
        m_conn = nullptr;
        throw tessaly::Error(ErrorNumber::ConnectionFailed,
                             QStringLiteral("Cannot connect to data source %1: %2").arg(m_dataSource.name, message));
    }
    try {
        checkRole();
    } catch (...) {
        // A constructor that throws runs no destructor.
        PQfinish(m_conn);
        m_conn = nullptr;
        throw;
    }
}

void PostgresBackend::refuseRole(const QString &role, const QString &reason) const
{
    throw tessaly::Error(ErrorNumber::BadConfiguration,
                         QStringLiteral("Data source %1 connects as role %2, which %3; the data service runs "
                                        "queries only as a role that can read and nothing more (see "
                                        "docs/datasources.md, \"A SELECT-only PostgreSQL role\").")
                             .arg(m_dataSource.name, role, reason));
}

void PostgresBackend::checkRole()
{
    const Result result = exec(QString::fromLatin1(RoleCheck));
    if (PQntuples(result.get()) != 1)
        refuseRole(QStringLiteral("(unknown)"), QStringLiteral("cannot be found in pg_roles"));
    const QString role = QString::fromUtf8(PQgetvalue(result.get(), 0, 0));
    if (isTrue(result.get(), 1))
        refuseRole(role, QStringLiteral("is a superuser"));
    if (isTrue(result.get(), 2))
        refuseRole(role, QStringLiteral("may create roles (CREATEROLE)"));
    if (!PQgetisnull(result.get(), 0, 3))
        refuseRole(role, QStringLiteral("is a member of %1").arg(QString::fromUtf8(PQgetvalue(result.get(), 0, 3))));
    if (!PQgetisnull(result.get(), 0, 4))
        refuseRole(role, QStringLiteral("may write: %1").arg(QString::fromUtf8(PQgetvalue(result.get(), 0, 4))));
}

bool PostgresBackend::reusable() const
{
    return m_conn && PQstatus(m_conn) == CONNECTION_OK && PQtransactionStatus(m_conn) == PQTRANS_IDLE;
}

PostgresBackend::~PostgresBackend()
{
    PQfinish(m_conn);
}

void PostgresBackend::failWith(pg_result *result, const QString &what) const
{
    const QString message = errorText(result, m_conn);
    const QByteArray state = result ? QByteArray(PQresultErrorField(result, PG_DIAG_SQLSTATE)) : QByteArray();
    qint32 number = ErrorNumber::DatabaseError;
    if (PQstatus(m_conn) != CONNECTION_OK)
        number = ErrorNumber::ConnectionFailed;
    else if (state == "57014")
        number = ErrorNumber::Timeout;
    else if (state == "25006" || state == "42501")
        number = ErrorNumber::StatementRefused;
    throw tessaly::Error(number, QStringLiteral("%1 (data source %2): %3").arg(what, m_dataSource.name, message));
}

PostgresBackend::Result PostgresBackend::exec(const QString &sql, const QByteArrayList &parameters)
{
    std::vector<const char *> values;
    for (const QByteArray &parameter : parameters)
        values.push_back(parameter.constData());
    // PQexecParams speaks the extended protocol, which refuses more than one command.
    Result result(PQexecParams(m_conn, sql.toUtf8().constData(), int(values.size()), nullptr,
                               values.data(), nullptr, nullptr, 0), clearResult);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        failWith(result.get(), QStringLiteral("The statement failed"));
    return result;
}

void PostgresBackend::command(const QString &sql)
{
    exec(sql);
}

QStringList PostgresBackend::catalogs()
{
    const Result result = exec(QStringLiteral(
        "SELECT nspname FROM pg_catalog.pg_namespace "
        "WHERE nspname NOT IN ('pg_catalog', 'information_schema', 'pg_toast') "
        "AND nspname NOT LIKE 'pg\\_temp\\_%' AND nspname NOT LIKE 'pg\\_toast\\_temp\\_%' "
        "AND has_schema_privilege(oid, 'USAGE') ORDER BY nspname"));
    const QStringList allowed = m_dataSource.allowedCatalogs();
    QStringList names;
    for (int row = 0; row < PQntuples(result.get()); ++row) {
        const QString name = QString::fromUtf8(PQgetvalue(result.get(), row, 0));
        if (allowed.contains(name))
            names.append(name);
    }
    return names;
}

QList<StructureItem> PostgresBackend::tables(const QString &catalog)
{
    // A kept connection asks again after RememberFor, as it checks statements again.
    const auto known = m_tables.constFind(catalog);
    if (known != m_tables.cend() && Clock::now() - known->first <= RememberFor)
        return known->second;
    checkCatalog(catalog);
    const Result result = exec(QStringLiteral(
        "SELECT c.relname, CASE WHEN c.relkind IN ('v', 'm') THEN 'view' ELSE 'table' END "
        "FROM pg_catalog.pg_class c JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace "
        "WHERE n.nspname = $1 AND c.relkind IN ('r', 'p', 'v', 'm', 'f') ORDER BY c.relname"),
        {catalog.toUtf8()});
    QList<StructureItem> items;
    for (int row = 0; row < PQntuples(result.get()); ++row)
        items.append({QString::fromUtf8(PQgetvalue(result.get(), row, 0)),
                      QString::fromUtf8(PQgetvalue(result.get(), row, 1))});
    m_tables.insert(catalog, {Clock::now(), items});
    return items;
}

QList<StructureItem> PostgresBackend::columns(const QString &catalog, const QString &table)
{
    const QList<StructureItem> known = tables(catalog);
    if (std::none_of(known.begin(), known.end(), [&](const StructureItem &item) { return item.name == table; }))
        unknownTable(catalog, table);
    const Result result = exec(QStringLiteral(
        "SELECT a.attname, pg_catalog.format_type(a.atttypid, a.atttypmod) "
        "FROM pg_catalog.pg_attribute a "
        "JOIN pg_catalog.pg_class c ON c.oid = a.attrelid "
        "JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace "
        "WHERE n.nspname = $1 AND c.relname = $2 AND a.attnum > 0 AND NOT a.attisdropped "
        "ORDER BY a.attnum"),
        {catalog.toUtf8(), table.toUtf8()});
    QList<StructureItem> items;
    for (int row = 0; row < PQntuples(result.get()); ++row)
        items.append({QString::fromUtf8(PQgetvalue(result.get(), row, 0)),
                      QString::fromUtf8(PQgetvalue(result.get(), row, 1))});
    return items;
}

// search_path, timeouts and memory for the transaction that is open (local) or for the
// session; the values go as parameters, never into the statement text.
void PostgresBackend::setLimits(const QString &catalog, bool local)
{
    const QString scope = local ? QStringLiteral("true") : QStringLiteral("false");
    const QByteArray path = (QStringLiteral("pg_catalog, ") + quoteIdentifier(catalog) + QStringLiteral(", pg_temp"))
                                .toUtf8();
    exec(QStringLiteral("SELECT pg_catalog.set_config('search_path', $1, %1), "
                        "pg_catalog.set_config('statement_timeout', $2, %1), "
                        "pg_catalog.set_config('work_mem', $3, %1), "
                        "pg_catalog.set_config('standard_conforming_strings', 'on', %1)").arg(scope),
         {path, QByteArray::number(m_dataSource.timeoutMs), m_dataSource.workMem.toUtf8()});
    // Only a superuser, or a role granted SET on it, may lower temp_file_limit; a role whose
    // own setting is already as low needs neither.
    const QByteArray tempLimit = m_dataSource.tempFileLimit.toUtf8();
    const Result current = exec(QStringLiteral(
        "SELECT s.setting::pg_catalog.int8 = -1 OR s.setting::pg_catalog.int8 > pg_catalog.pg_size_bytes($1) / 1024, "
        "s.setting FROM pg_catalog.pg_settings s WHERE s.name = 'temp_file_limit'"), {tempLimit});
    if (PQntuples(current.get()) != 1 || !isTrue(current.get(), 0))
        return;
    Result set(PQexecParams(m_conn, local ? "SELECT pg_catalog.set_config('temp_file_limit', $1, true)"
                                          : "SELECT pg_catalog.set_config('temp_file_limit', $1, false)", 1, nullptr,
                            std::array<const char *, 1>{tempLimit.constData()}.data(), nullptr, nullptr, 0),
               clearResult);
    if (PQresultStatus(set.get()) == PGRES_TUPLES_OK)
        return;
    const QString role = QString::fromUtf8(PQuser(m_conn));
    throw tessaly::Error(ErrorNumber::BadConfiguration,
                         QStringLiteral("Data source %1 limits temporary files to %2, but role %3 has a limit of %4 kB "
                                        "and may not lower it: as an administrator run GRANT SET ON PARAMETER "
                                        "temp_file_limit TO %3, or ALTER ROLE %3 SET temp_file_limit = '%2' (%5)")
                             .arg(m_dataSource.name, m_dataSource.tempFileLimit, role,
                                  QString::fromUtf8(PQgetvalue(current.get(), 0, 1)),
                                  errorText(set.get(), m_conn)));
}

// The session is made read-only under the data source's limits once per catalog, so that each
// statement then runs alone in its own read-only transaction: one round trip for a request on
// a kept connection instead of four or more.
void PostgresBackend::startReadOnly(const QString &catalog)
{
    if (m_sessionCatalog == catalog)
        return;
    m_sessionCatalog.reset();
    command(QStringLiteral("SET SESSION CHARACTERISTICS AS TRANSACTION READ ONLY"));
    setLimits(catalog, false);
    m_sessionCatalog = catalog;
}

// The engine parses the statement into a temporary view, in a transaction that is rolled
// back, and what the parse tree uses is checked: see DependencyCheck.
void PostgresBackend::checkStatement(const QString &sql, const QString &catalog)
{
    command(QStringLiteral("BEGIN TRANSACTION READ WRITE"));
    setLimits(catalog);
    // Wrapped, so a select list that names a column twice still makes a view.
    Result view(PQexecParams(m_conn, (QStringLiteral("CREATE TEMPORARY VIEW veldra_statement_check AS SELECT 1 "
                                                     "FROM (\n") + sql + QStringLiteral("\n) AS statement"))
                                         .toUtf8().constData(),
                             0, nullptr, nullptr, nullptr, nullptr, 0),
              clearResult);
    if (PQresultStatus(view.get()) != PGRES_COMMAND_OK) {
        const QByteArray state(PQresultErrorField(view.get(), PG_DIAG_SQLSTATE));
        if (state == "42501" && QByteArray(PQresultErrorMessage(view.get())).contains("temporary"))
            throw tessaly::Error(ErrorNumber::BadConfiguration,
                                 QStringLiteral("Data source %1: role %2 may not create temporary objects, which the "
                                                "check of each statement needs: as an administrator run GRANT "
                                                "TEMPORARY ON DATABASE %3 TO %2.")
                                     .arg(m_dataSource.name, QString::fromUtf8(PQuser(m_conn)),
                                          QString::fromUtf8(PQdb(m_conn))));
        failWith(view.get(), QStringLiteral("The statement failed"));
    }
    const Result refusals = exec(QString::fromLatin1(DependencyCheck),
                                 {catalog.toUtf8(), QByteArray(CallableBuiltIns)});
    if (PQntuples(refusals.get()) > 0)
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: %1.")
                                 .arg(QString::fromUtf8(PQgetvalue(refusals.get(), 0, 0))));
    command(QStringLiteral("ROLLBACK"));
}

// PQgetResult, with bounds: libpq takes in a whole message before it hands it on, and
// copies an error message several times over, so one row or error quoting a value of
// hundreds of megabytes would grow the process by gigabytes. libpq does not say how much
// it holds, so the process's growth while a message arrives is watched: past GrowthLimit,
// or when the answer does not come within the timeout and a grace period, the connection
// is closed, which frees what libpq held.
pg_result *PostgresBackend::receive()
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(m_dataSource.timeoutMs + AnswerGraceMs);
    qint64 start = -1;
    for (;;) {
        // Reads only when what libpq holds is not a whole result: each read moves what it
        // holds to the front of its buffer.
        if (!PQisBusy(m_conn))
            return PQgetResult(m_conn);
        const qint64 resident = residentBytes();
        if (start < 0)
            start = resident;
        else if (resident - start > GrowthLimit)
            abandon(ErrorNumber::DatabaseError,
                    QStringLiteral("The server's answer holds a row or a message larger than data source %1 takes "
                                   "(a value, or an error quoting a value, of more than about %2 MB); the "
                                   "connection was closed.").arg(m_dataSource.name).arg(GrowthLimit / 4 / 1024 / 1024));
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd socket{PQsocket(m_conn), POLLIN, 0};
        if (left <= 0 || poll(&socket, 1, int(left)) == 0)
            abandon(ErrorNumber::Timeout, QStringLiteral("The server did not answer within %1 ms, the limit of data "
                                                         "source %2, and the connection was closed.")
                                              .arg(m_dataSource.timeoutMs).arg(m_dataSource.name));
        if (!PQconsumeInput(m_conn))
            failWith(nullptr, QStringLiteral("The answer could not be read"));
    }
}

void PostgresBackend::abandon(qint32 number, const QString &message)
{
    PQfinish(m_conn);
    m_conn = nullptr;
    throw tessaly::Error(number, message);
}

void PostgresBackend::stream(const QString &sql, const QString &fields, qint64 limit, RowSink &sink)
{
    if (!PQsendQueryParams(m_conn, sql.toUtf8().constData(), 0, nullptr, nullptr, nullptr, nullptr, 0)
        || !PQsetSingleRowMode(m_conn))
        failWith(nullptr, QStringLiteral("The statement could not be sent"));
    const qint64 cap = m_dataSource.rowCap;
    qint64 rows = 0;
    bool started = false;
    bool truncated = false;
    QList<bool> numbers;
    Result failed(nullptr, clearResult);
    for (;;) {
        Result result(receive(), clearResult);
        if (!result)
            break;
        const ExecStatusType status = PQresultStatus(result.get());
        if (status != PGRES_SINGLE_TUPLE && status != PGRES_TUPLES_OK) {
            if (!failed)
                failed = std::move(result);
            continue; // read on until the connection is idle
        }
        const int count = PQnfields(result.get());
        if (!started) {
            QList<QByteArray> names;
            for (int i = 0; i < count; ++i) {
                names.append(QByteArray(PQfname(result.get(), i)));
                numbers.append(isNumberType(PQftype(result.get(), i)));
            }
            // The server folds unquoted names to lower case; the names are the request's.
            sink.startTable(FieldList::namesAsWritten(fields, names));
            started = true;
        }
        if (status != PGRES_SINGLE_TUPLE || truncated || failed)
            continue;
        if (rows == cap || rows == limit) {
            // Enough: ask the server to stop instead of reading the rest.
            truncated = rows == cap;
            if (PGcancel *cancel = PQgetCancel(m_conn)) {
                char buffer[256];
                PQcancel(cancel, buffer, sizeof buffer);
                PQfreeCancel(cancel);
            }
            continue;
        }
        sink.startRecord();
        for (int i = 0; i < count; ++i) {
            if (PQgetisnull(result.get(), 0, i))
                sink.nullValue();
            else if (PQftype(result.get(), i) == BooleanType)
                sink.booleanValue(*PQgetvalue(result.get(), 0, i) == 't');
            else if (numbers.at(i))
                sink.numberValue(PQgetvalue(result.get(), 0, i), PQgetlength(result.get(), 0, i));
            else
                sink.value(PQgetvalue(result.get(), 0, i), PQgetlength(result.get(), 0, i));
        }
        sink.endRecord();
        ++rows;
    }
    const bool cancelledByUs = truncated || (rows == limit && limit < cap);
    if (failed && !(cancelledByUs && QByteArray(PQresultErrorField(failed.get(), PG_DIAG_SQLSTATE)) == "57014"))
        failWith(failed.get(), QStringLiteral("The statement failed"));
    if (!started)
        failWith(nullptr, QStringLiteral("The statement gave no result"));
    sink.endTable(rows, truncated, cap);
}

void PostgresBackend::select(const Request &request, RowSink &sink)
{
    const QString sql = buildStatement(request, SqlClause::Dialect::PostgreSQL);
    // Never more than a few hundred statements held.
    const QString key = request.catalog + u'\n' + sql;
    const auto checked = m_checked.constFind(key);
    if (checked == m_checked.cend() || Clock::now() - *checked > RememberFor) {
        checkStatement(sql, request.catalog);
        if (m_checked.size() >= 256)
            m_checked.clear();
        m_checked.insert(key, Clock::now());
    }
    startReadOnly(request.catalog);
    stream(sql, request.fields, fetchLimit(request), sink);
}

} // namespace dataservice
