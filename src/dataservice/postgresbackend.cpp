#include "postgresbackend.h"

#include "errornumber.h"
#include "request.h"
#include "fieldlist.h"
#include "rowsink.h"

#include <tessaly/error.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <libpq-fe.h>

namespace dataservice {

namespace {

// Functions that run SQL given as text, read files, or act on the server or other sessions:
// they would step around the checks on the statement's plan.
const QSet<QString> &refusedFunctions()
{
    static const QSet<QString> names = {
        QStringLiteral("query_to_xml"), QStringLiteral("query_to_xmlschema"),
        QStringLiteral("query_to_xml_and_xmlschema"), QStringLiteral("cursor_to_xml"),
        QStringLiteral("cursor_to_xmlschema"), QStringLiteral("table_to_xml"),
        QStringLiteral("table_to_xmlschema"), QStringLiteral("table_to_xml_and_xmlschema"),
        QStringLiteral("schema_to_xml"), QStringLiteral("schema_to_xmlschema"),
        QStringLiteral("schema_to_xml_and_xmlschema"), QStringLiteral("database_to_xml"),
        QStringLiteral("database_to_xmlschema"), QStringLiteral("database_to_xml_and_xmlschema"),
        QStringLiteral("pg_read_file"), QStringLiteral("pg_read_binary_file"), QStringLiteral("pg_stat_file"),
        QStringLiteral("pg_ls_dir"), QStringLiteral("pg_ls_logdir"), QStringLiteral("pg_ls_waldir"),
        QStringLiteral("pg_ls_tmpdir"), QStringLiteral("pg_ls_archive_statusdir"),
        QStringLiteral("lo_import"), QStringLiteral("lo_export"), QStringLiteral("lo_get"),
        QStringLiteral("lo_open"), QStringLiteral("loread"), QStringLiteral("lo_from_bytea"),
        QStringLiteral("lo_create"), QStringLiteral("lo_creat"), QStringLiteral("lo_unlink"),
        QStringLiteral("lo_put"), QStringLiteral("lo_truncate"), QStringLiteral("lo_truncate64"),
        QStringLiteral("lowrite"),
        QStringLiteral("dblink"), QStringLiteral("dblink_exec"), QStringLiteral("dblink_connect"),
        QStringLiteral("set_config"), QStringLiteral("current_setting"),
        QStringLiteral("pg_sleep"), QStringLiteral("pg_sleep_for"), QStringLiteral("pg_sleep_until"),
        QStringLiteral("pg_advisory_lock"), QStringLiteral("pg_advisory_lock_shared"),
        QStringLiteral("pg_try_advisory_lock"), QStringLiteral("pg_try_advisory_lock_shared"),
        QStringLiteral("pg_advisory_xact_lock"), QStringLiteral("pg_notify"),
        QStringLiteral("pg_terminate_backend"), QStringLiteral("pg_cancel_backend"),
        QStringLiteral("pg_reload_conf"), QStringLiteral("pg_rotate_logfile"),
        QStringLiteral("pg_switch_wal"), QStringLiteral("pg_promote"),
        QStringLiteral("pg_create_restore_point"), QStringLiteral("pg_logical_emit_message"),
        QStringLiteral("nextval"), QStringLiteral("setval"), QStringLiteral("txid_current"),
        QStringLiteral("pg_current_xact_id"),
    };
    return names;
}

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

QString errorText(const pg_result *result, const pg_conn *conn)
{
    const char *message = result ? PQresultErrorMessage(result) : PQerrorMessage(conn);
    return QString::fromUtf8(message).trimmed();
}

// Every relation a plan scans, as "schema.name", for the nodes that name one.
void collectRelations(const QJsonValue &node, QStringList &relations, QStringList &schemas)
{
    if (node.isArray()) {
        for (const QJsonValue &child : node.toArray())
            collectRelations(child, relations, schemas);
        return;
    }
    if (!node.isObject())
        return;
    const QJsonObject object = node.toObject();
    for (const char *key : {"Relation Name", "Function Name"}) {
        if (object.contains(QLatin1String(key))) {
            const QString schema = object.value(QStringLiteral("Schema")).toString();
            relations.append(schema + u'.' + object.value(QLatin1String(key)).toString());
            schemas.append(QLatin1String(key) == QLatin1String("Function Name") && schema == u"pg_catalog"
                               ? QString() : schema);
        }
    }
    for (auto it = object.begin(); it != object.end(); ++it)
        collectRelations(it.value(), relations, schemas);
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
    QStringList names;
    for (int row = 0; row < PQntuples(result.get()); ++row)
        names.append(QString::fromUtf8(PQgetvalue(result.get(), row, 0)));
    return names;
}

QList<StructureItem> PostgresBackend::tables(const QString &catalog)
{
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

void PostgresBackend::startReadOnly(const QString &catalog)
{
    command(QStringLiteral("BEGIN TRANSACTION READ ONLY"));
    command(QStringLiteral("SET LOCAL statement_timeout = %1").arg(m_dataSource.timeoutMs));
    command(QStringLiteral("SET LOCAL search_path = %1").arg(quoteIdentifier(catalog)));
}

void PostgresBackend::checkPlan(const QString &sql, const QString &catalog)
{
    const Result plan = exec(QStringLiteral("EXPLAIN (VERBOSE, FORMAT JSON) ") + sql);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray(PQgetvalue(plan.get(), 0, 0)), &error);
    if (document.isNull())
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: its plan cannot be checked (%1).")
                                 .arg(error.errorString()));
    QStringList relations;
    QStringList schemas;
    collectRelations(document.array(), relations, schemas);
    for (int i = 0; i < relations.size(); ++i) {
        if (!schemas.at(i).isEmpty() && schemas.at(i) != catalog)
            throw tessaly::Error(ErrorNumber::StatementRefused,
                                 QStringLiteral("The statement is refused: it reads %1, outside catalog %2.")
                                     .arg(relations.at(i), catalog));
    }
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
        Result result(PQgetResult(m_conn), clearResult);
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
    QStringList functions;
    const QString sql = buildStatement(request, SqlClause::Dialect::PostgreSQL, &functions);
    for (const QString &function : functions) {
        if (refusedFunctions().contains(function))
            throw tessaly::Error(ErrorNumber::StatementRefused,
                                 QStringLiteral("The statement is refused: the function %1() is not allowed.")
                                     .arg(function));
    }
    startReadOnly(request.catalog);
    checkPlan(sql, request.catalog);
    stream(sql, request.fields, fetchLimit(request), sink);
    command(QStringLiteral("ROLLBACK"));
}

} // namespace dataservice
