#include "postgresbackend.h"

#include "errornumber.h"
#include "fieldlist.h"
#include "messagetext.h"
#include "request.h"
#include "rowsink.h"

#include <tessaly/error.h>

#include <libpq-fe.h>

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
// beyond the statement timeout an answer may take to arrive. libpq takes in a whole message,
// then copies an error message about five times over (into its parts, the result, the
// connection's message) before it hands it on: a message may grow the process by a sixth of
// the limit while it arrives.
constexpr qint64 GrowthLimit = 128 * 1024 * 1024;
constexpr qint64 MessageCopies = 6;
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

// The functions of "calls" (domain, oid) that a statement may not call, each with its reason:
// not built in, a built-in that is neither immutable nor on the short list CALLABLE (a text
// array), or one that takes object numbers or gives a type that names objects. Built-in
// operators and casts to types other than reg* are allowed. Shared by both checks below.
const char *const FunctionRefusals = R"(
name_types AS (SELECT t.oid FROM pg_catalog.pg_type t
               WHERE t.typnamespace = 'pg_catalog'::pg_catalog.regnamespace
               AND (t.typname LIKE 'reg%' OR t.typname = 'aclitem')),
number_types AS (SELECT oid FROM name_types UNION ALL SELECT t.oid FROM pg_catalog.pg_type t
                 WHERE t.typnamespace = 'pg_catalog'::pg_catalog.regnamespace
                 AND t.typname IN ('oid', 'oidvector', '_oid')),
operator_functions AS (SELECT o.oprcode AS oid FROM pg_catalog.pg_operator o
                       WHERE o.oprnamespace = 'pg_catalog'::pg_catalog.regnamespace),
called AS MATERIALIZED (SELECT calls.domain, p.* FROM calls, LATERAL (
                            SELECT p.oid, p.proname, p.provolatile, p.proargtypes, p.prorettype, n.nspname
                            FROM pg_catalog.pg_proc p JOIN pg_catalog.pg_namespace n ON n.oid = p.pronamespace
                            WHERE p.oid = calls.oid OFFSET 0) AS p),
function_refusals AS (SELECT CASE WHEN rule.names
       THEN pg_catalog.format('it calls %s(%s), which turns object numbers into the names of objects outside the '
                              'catalog', p.proname, pg_catalog.pg_get_function_identity_arguments(p.oid))
       ELSE pg_catalog.format('%s %s.%s(%s), and a query may call only built-in functions that are immutable '
                              'or on a short list (clocks, formatting, JSON)',
                              CASE WHEN p.domain = 0 THEN 'it calls'
                              ELSE pg_catalog.format('it converts to domain %s, whose check calls',
                                                     pg_catalog.format_type(p.domain, NULL)) END,
                              p.nspname, p.proname, pg_catalog.pg_get_function_identity_arguments(p.oid)) END
       AS reason
  FROM called p, LATERAL (SELECT
    p.oid NOT IN (SELECT oid FROM operator_functions)
    AND (p.proargtypes::pg_catalog.oid[] OPERATOR(pg_catalog.&&) ARRAY(SELECT oid FROM number_types)
         OR p.prorettype IN (SELECT oid FROM name_types)) AS names,
    NOT (p.nspname = 'pg_catalog' AND (p.provolatile = 'i' OR p.proname = ANY (CALLABLE)
         OR p.oid IN (SELECT k.castfunc FROM pg_catalog.pg_cast k JOIN pg_catalog.pg_type t
                      ON t.oid = k.casttarget WHERE t.typname NOT LIKE 'reg%')
         OR p.oid IN (SELECT oid FROM operator_functions))) AS uncallable) AS rule
  WHERE rule.names OR rule.uncallable))";

const char *const FunctionKeys = "' :(?:funcid|opfuncid|aggfnoid|winfnoid|hashfuncid|negfuncid|inRangeFunc|tsmhandler) "
                                 "([0-9]+)'";

// What the statement uses, read from the engine's own parse tree of it (stored for a
// temporary view): the functions it calls, the relations it reads and the types of its
// values, by OID, after every escape and quote is resolved. Built-in objects are not recorded
// in pg_depend, so the tree is read; pg_depend adds objects created in the database
// (functions, operators, types). The tree's text is the engine's serialisation, in which
// user text cannot forge a field. $1 is the catalog, $2 the callable built-ins.
// One row: the first reason to refuse, or NULL; then the types created in the database
// (OIDs from 16384 up) that the statement's values have, and those it converts to, for the
// type check below: a built-in type is never a domain with checks of the database's making.
const char *const StatementCheck = R"(
WITH view AS (SELECT 'pg_temp.veldra_statement_check'::pg_catalog.regclass AS oid),
tree AS (SELECT r.oid, r.ev_action::pg_catalog.text AS t FROM pg_catalog.pg_rewrite r, view
         WHERE r.ev_class = view.oid),
typed AS (SELECT m[1] AS key, m[2]::pg_catalog.oid AS oid FROM tree,
          pg_catalog.regexp_matches(tree.t, ' :([A-Za-z_]*[Tt]yp[A-Za-z_]*) ([0-9]+)', 'g') AS m
          WHERE m[1] !~* 'mod|coll'
          UNION
          SELECT m[1], n[1]::pg_catalog.oid FROM tree,
          pg_catalog.regexp_matches(tree.t, ' :([A-Za-z_]*[Tt]yp[A-Za-z_]*) \(o([ 0-9]*)\)', 'g') AS m,
          pg_catalog.regexp_matches(m[2], '[0-9]+', 'g') AS n WHERE m[1] !~* 'mod|coll'),
calls AS (SELECT 0::pg_catalog.oid AS domain, m[1]::pg_catalog.oid AS oid FROM tree,
          pg_catalog.regexp_matches(tree.t, FUNCTIONS, 'g') AS m
          UNION
          SELECT 0, d.refobjid FROM tree JOIN pg_catalog.pg_depend d
          ON d.classid = 'pg_catalog.pg_rewrite'::pg_catalog.regclass AND d.objid = tree.oid
          WHERE d.refclassid = 'pg_catalog.pg_proc'::pg_catalog.regclass),
FUNCTION_REFUSALS,
relations AS (SELECT DISTINCT m[1]::pg_catalog.oid AS oid FROM tree,
              pg_catalog.regexp_matches(tree.t, ' :relid ([0-9]+)', 'g') AS m)
SELECT (SELECT reason FROM (
SELECT pg_catalog.format('it reads %s.%s, outside catalog %s', n.nspname, c.relname, $1::pg_catalog.text) AS reason
  FROM relations JOIN pg_catalog.pg_class c ON c.oid = relations.oid
  JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace, view
  WHERE c.oid <> view.oid AND n.nspname <> $1::pg_catalog.text
UNION ALL
SELECT pg_catalog.format('it uses type %s, which turns object numbers into the names of objects outside the '
                         'catalog', pg_catalog.format_type(t.oid, NULL))
  FROM (SELECT DISTINCT oid FROM typed) AS typed, LATERAL (SELECT t.oid, t.typelem FROM pg_catalog.pg_type t
                                                         WHERE t.oid = typed.oid OFFSET 0) AS t
  WHERE t.oid IN (SELECT oid FROM name_types) OR t.typelem IN (SELECT oid FROM name_types)
UNION ALL
SELECT reason FROM function_refusals
UNION ALL
SELECT pg_catalog.format('it uses %s %s, outside catalog %s', o.type, o.identity, $1::pg_catalog.text)
  FROM tree JOIN pg_catalog.pg_depend d ON d.classid = 'pg_catalog.pg_rewrite'::pg_catalog.regclass
  AND d.objid = tree.oid, view, LATERAL pg_catalog.pg_identify_object(d.refclassid, d.refobjid, 0) AS o
  WHERE d.refobjid <> view.oid AND o.type NOT IN ('function', 'aggregate', 'procedure')
  AND (o.type = 'operator' AND o.schema <> 'pg_catalog' OR o.schema IS DISTINCT FROM $1::pg_catalog.text
       AND o.schema IS DISTINCT FROM 'pg_catalog')) AS reasons LIMIT 1),
ARRAY(SELECT DISTINCT oid FROM typed WHERE oid >= 16384),
ARRAY(SELECT DISTINCT oid FROM typed WHERE key IN ('resulttype', 'consttype', 'funcresulttype')
                 AND oid >= 16384))";

// The types of the database's making that a statement uses ($1) and converts to ($2): a type
// built on a reg* type is refused as that type is; a conversion to a domain runs the domain's
// checks, so what they call counts as called by the statement (domains over domains, arrays,
// ranges and composite types whose fields are such domains followed). $3 is the callable
// built-ins. One row per reason to refuse.
const char *const TypeCheck = R"(
WITH RECURSIVE valued (oid) AS (SELECT pg_catalog.unnest($1::pg_catalog.oid[])
          UNION
          SELECT x.oid FROM valued, LATERAL (SELECT t.typbasetype, t.typelem FROM pg_catalog.pg_type t
                                             WHERE t.oid = valued.oid OFFSET 0) AS t,
          LATERAL (VALUES (t.typbasetype), (t.typelem)) AS x (oid) WHERE x.oid <> 0),
coerced (oid) AS (SELECT pg_catalog.unnest($2::pg_catalog.oid[])
          UNION
          SELECT x.oid FROM coerced, LATERAL (SELECT t.oid, t.typbasetype, t.typelem, t.typrelid
                                              FROM pg_catalog.pg_type t WHERE t.oid = coerced.oid OFFSET 0) AS t,
          LATERAL (SELECT t.typbasetype UNION ALL SELECT t.typelem
                   UNION ALL SELECT g.rngsubtype FROM pg_catalog.pg_range g
                             WHERE g.rngtypid = t.oid OR g.rngmultitypid = t.oid
                   UNION ALL SELECT a.atttypid FROM pg_catalog.pg_attribute a
                             WHERE a.attrelid = t.typrelid AND a.attnum > 0) AS x (oid) WHERE x.oid <> 0),
checks AS (SELECT c.oid, c.contypid, c.conbin::pg_catalog.text AS t FROM coerced
           JOIN pg_catalog.pg_constraint c ON c.contypid = coerced.oid WHERE c.conbin IS NOT NULL),
calls AS (SELECT checks.contypid AS domain, m[1]::pg_catalog.oid AS oid FROM checks,
          pg_catalog.regexp_matches(checks.t, FUNCTIONS, 'g') AS m
          UNION
          SELECT checks.contypid, d.refobjid FROM checks JOIN pg_catalog.pg_depend d
          ON d.classid = 'pg_catalog.pg_constraint'::pg_catalog.regclass AND d.objid = checks.oid
          WHERE d.refclassid = 'pg_catalog.pg_proc'::pg_catalog.regclass),
FUNCTION_REFUSALS
SELECT pg_catalog.format('it uses type %s, which turns object numbers into the names of objects outside the '
                         'catalog', pg_catalog.format_type(valued.oid, NULL))
  FROM valued WHERE valued.oid IN (SELECT oid FROM name_types)
UNION ALL
SELECT reason FROM function_refusals
LIMIT 1)";

// A check's text with the shared parts in place; callable names the parameter of the list.
QString checkQuery(const char *query, const char *callable)
{
    return QString::fromLatin1(query)
        .replace(QLatin1String("FUNCTION_REFUSALS"),
                 QString::fromLatin1(FunctionRefusals).replace(QLatin1String("CALLABLE"), QLatin1String(callable)))
        .replace(QLatin1String("FUNCTIONS"), QLatin1String(FunctionKeys));
}

// One row: why the connecting role is too strong to run user queries, or nothing. It also sets
// what the whole session runs with, over what the role's own settings say: every query of the
// service reads quotes one way (its text has no backslash, so it reads the same either way
// itself), and a hash table stays within work_mem like a sort (where the server has the
// setting). Set by a query, not in the connection's startup options, which poolers may refuse.
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
       WHERE pg_catalog.has_schema_privilege(n.oid, 'CREATE') AND n.nspname NOT LIKE 'pg!_temp!_%' ESCAPE '!'
       AND n.nspname NOT LIKE 'pg!_toast!_temp!_%' ESCAPE '!'
     UNION ALL
     SELECT pg_catalog.format('%s %s.%s (INSERT, UPDATE, DELETE or TRUNCATE)',
                              CASE WHEN c.relkind = 'S' THEN 'sequence' ELSE 'table' END, n.nspname, c.relname)
       FROM pg_catalog.pg_class c JOIN pg_catalog.pg_namespace n ON n.oid = c.relnamespace
       WHERE n.nspname NOT IN ('pg_catalog', 'information_schema') -- pg_settings takes UPDATE from all
       AND n.nspname NOT LIKE 'pg!_temp!_%' ESCAPE '!' AND n.nspname NOT LIKE 'pg!_toast%' ESCAPE '!'
       AND (c.relkind IN ('r', 'p', 'v', 'm', 'f')
            AND (pg_catalog.has_table_privilege(c.oid, 'DELETE, TRUNCATE')
                 OR pg_catalog.has_any_column_privilege(c.oid, 'INSERT, UPDATE'))
            OR c.relkind = 'S' AND pg_catalog.has_sequence_privilege(c.oid, 'USAGE, UPDATE'))
     ) AS writes LIMIT 1),
  pg_catalog.set_config('standard_conforming_strings', 'on', false),
  CASE WHEN pg_catalog.current_setting('server_version_num')::pg_catalog.int4 >= 130000
       THEN pg_catalog.set_config('hash_mem_multiplier', '1', false) END
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

void ignoreNotice(void *, const char *)
{
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
    // Notices go nowhere: the service answers through its responses, never on standard error.
    PQsetNoticeProcessor(m_conn, ignoreNotice, nullptr);
    // From here on everything this request does, checks and run together, shares one timeout.
    startRequest();
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

// Sends one command (the extended protocol refuses more than one) and reads its answer within
// the request's time; the failing result if it failed, else the last one.
PostgresBackend::Result PostgresBackend::run(const QString &sql, const QByteArrayList &parameters)
{
    std::vector<const char *> values;
    for (const QByteArray &parameter : parameters)
        values.push_back(parameter.constData());
    if (!PQsendQueryParams(m_conn, sql.toUtf8().constData(), int(values.size()), nullptr, values.data(), nullptr,
                           nullptr, 0))
        failWith(nullptr, QStringLiteral("The statement could not be sent"));
    Result answer(nullptr, clearResult);
    while (pg_result *next = receive()) {
        Result result(next, clearResult);
        const ExecStatusType status = PQresultStatus(result.get());
        const bool failed = status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK;
        if (!answer || failed)
            answer = std::move(result);
    }
    return answer;
}

PostgresBackend::Result PostgresBackend::exec(const QString &sql, const QByteArrayList &parameters)
{
    Result result = run(sql, parameters);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK)
        failWith(result.get(), QStringLiteral("The statement failed"));
    return result;
}

void PostgresBackend::command(const QString &sql)
{
    exec(sql);
}

int PostgresBackend::remainingMs() const
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(m_deadline - Clock::now()).count();
    return int(std::max<qint64>(1, left));
}

// The statement timeout of the transaction that is open: what is left of the request's time,
// so checking and running a statement share one budget.
void PostgresBackend::limitTime()
{
    exec(QStringLiteral("SELECT pg_catalog.set_config('statement_timeout', $1, true)"),
         {QByteArray::number(remainingMs())});
}

// The same for the statement that runs alone under the session's settings. On a kept connection
// whose statement was checked lately, what is left is about what the session has, and the round
// trip is saved.
void PostgresBackend::limitSessionTime()
{
    constexpr int SlackMs = 100;
    const int left = remainingMs();
    if (std::abs(left - m_sessionTimeoutMs) <= SlackMs)
        return;
    exec(QStringLiteral("SELECT pg_catalog.set_config('statement_timeout', $1, false)"), {QByteArray::number(left)});
    m_sessionTimeoutMs = left;
}

void PostgresBackend::startRequest()
{
    m_deadline = Clock::now() + std::chrono::milliseconds(m_dataSource.timeoutMs);
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
    const int timeoutMs = remainingMs();
    exec(QStringLiteral("SELECT pg_catalog.set_config('search_path', $1, %1), "
                        "pg_catalog.set_config('statement_timeout', $2, %1), "
                        "pg_catalog.set_config('work_mem', $3, %1), "
                        "pg_catalog.set_config('standard_conforming_strings', 'on', %1)").arg(scope),
         {path, QByteArray::number(timeoutMs), m_dataSource.workMem.toUtf8()});
    if (!local)
        m_sessionTimeoutMs = timeoutMs;
    // Only a superuser, or a role granted SET on it, may lower temp_file_limit; a role whose
    // own setting is already as low needs neither.
    const QByteArray tempLimit = m_dataSource.tempFileLimit.toUtf8();
    const Result current = exec(QStringLiteral(
        "SELECT s.setting::pg_catalog.int8 = -1 OR s.setting::pg_catalog.int8 > pg_catalog.pg_size_bytes($1) / 1024, "
        "s.setting FROM pg_catalog.pg_settings s WHERE s.name = 'temp_file_limit'"), {tempLimit});
    if (PQntuples(current.get()) != 1 || !isTrue(current.get(), 0))
        return;
    const Result set = run(local ? QStringLiteral("SELECT pg_catalog.set_config('temp_file_limit', $1, true)")
                                 : QStringLiteral("SELECT pg_catalog.set_config('temp_file_limit', $1, false)"),
                           {tempLimit});
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
// back, and what the parse tree uses is checked: see StatementCheck and TypeCheck.
void PostgresBackend::checkStatement(const QString &sql, const QString &catalog)
{
    command(QStringLiteral("BEGIN TRANSACTION READ WRITE"));
    setLimits(catalog);
    // Wrapped, so a select list that names a column twice still makes a view.
    const Result view = run(QStringLiteral("CREATE TEMPORARY VIEW veldra_statement_check AS SELECT 1 FROM (\n") + sql
                            + QStringLiteral("\n) AS statement"));
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
    limitTime();
    static const QString statementCheck = checkQuery(StatementCheck, "$2::pg_catalog.text[]");
    const Result uses = exec(statementCheck, {catalog.toUtf8(), QByteArray(CallableBuiltIns)});
    refuseFor(uses.get());
    // Types of the database's own making are rare: only then is the second check asked.
    const QByteArray valued(PQgetvalue(uses.get(), 0, 1));
    const QByteArray coerced(PQgetvalue(uses.get(), 0, 2));
    if (valued != "{}" || coerced != "{}") {
        limitTime();
        static const QString typeCheck = checkQuery(TypeCheck, "$3::pg_catalog.text[]");
        refuseFor(exec(typeCheck, {valued, coerced, QByteArray(CallableBuiltIns)}).get());
    }
    command(QStringLiteral("ROLLBACK"));
}

// Refuses the statement when a check's first row gives a reason.
void PostgresBackend::refuseFor(const pg_result *checked) const
{
    if (PQntuples(checked) > 0 && !PQgetisnull(checked, 0, 0))
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: %1.")
                                 .arg(QString::fromUtf8(PQgetvalue(checked, 0, 0))));
}

// PQgetResult, with bounds: libpq takes in a whole message before it hands it on, and
// copies an error message several times over, so one row or error quoting a value of
// hundreds of megabytes would grow the process by gigabytes. libpq does not say how much
// it holds, so the process's growth while a message arrives is watched: past its share of
// GrowthLimit, or when the answer has not come by the request's deadline and a grace period,
// the connection is closed, which frees what libpq held.
pg_result *PostgresBackend::receive()
{
    const auto deadline = m_deadline + std::chrono::milliseconds(AnswerGraceMs);
    qint64 start = -1;
    for (;;) {
        // Reads only when what libpq holds is not a whole result: each read moves what it
        // holds to the front of its buffer.
        if (!PQisBusy(m_conn))
            return PQgetResult(m_conn);
        const qint64 resident = residentBytes();
        if (start < 0)
            start = resident;
        else if (resident - start > GrowthLimit / MessageCopies)
            abandon(ErrorNumber::DatabaseError,
                    QStringLiteral("The server's answer holds a row or a message larger than data source %1 takes "
                                   "(a value, or an error quoting a value, of more than about %2 MB); the "
                                   "connection was closed.")
                        .arg(m_dataSource.name).arg(GrowthLimit / MessageCopies / 1024 / 1024));
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

void PostgresBackend::cancel()
{
    if (PGcancel *request = PQgetCancel(m_conn)) {
        char buffer[256];
        PQcancel(request, buffer, sizeof buffer);
        PQfreeCancel(request);
    }
}

void PostgresBackend::abandon(qint32 number, const QString &message)
{
    cancel(); // the server stops too, rather than run on until it next writes
    PQfinish(m_conn);
    m_conn = nullptr;
    throw tessaly::Error(number, message);
}

void PostgresBackend::stream(const QString &sql, const FieldList &fields, qint64 limit, RowSink &sink)
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
            sink.startTable(fields.namesAsWritten(names));
            started = true;
        }
        if (status != PGRES_SINGLE_TUPLE || truncated || failed)
            continue;
        if (rows == cap || rows == limit) {
            // Enough: ask the server to stop instead of reading the rest.
            truncated = rows == cap;
            cancel();
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

// Checking and running share the request's time: the statement timeout of each step is what
// is left of it.
void PostgresBackend::select(const Request &request, RowSink &sink)
{
    const Statement statement = buildStatement(request);
    // Never more than a few hundred statements held.
    const QString key = request.catalog + u'\n' + statement.sql;
    const auto checked = m_checked.constFind(key);
    if (checked == m_checked.cend() || Clock::now() - *checked > RememberFor) {
        checkStatement(statement.sql, request.catalog);
        if (m_checked.size() >= 256)
            m_checked.clear();
        m_checked.insert(key, Clock::now());
    }
    startReadOnly(request.catalog);
    limitSessionTime();
    stream(statement.sql, statement.fields, fetchLimit(request), sink);
}

} // namespace dataservice
