#include "sqlitebackend.h"

#include "errornumber.h"
#include "fieldlist.h"
#include "messagetext.h"
#include "request.h"
#include "rowsink.h"
#include "sqlitefunctions.h"

#include <tessaly/error.h>

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <sqlite3.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <mutex>

#include <sys/stat.h>

namespace dataservice {

using Clock = std::chrono::steady_clock;

struct SqliteBackend::Guard
{
    QByteArray catalog;
    // Lower-case names that an unqualified reference resolves to in the catalog.
    QSet<QByteArray> catalogNames;
    QString refusal;
    Clock::time_point deadline;
    bool timedOut = false;
};

namespace {

struct StatementDeleter
{
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};
using Prepared = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

// One value, one statement's text, one LIKE or GLOB pattern: bounded, so no single call of a
// function can build a value without end or run far past the deadline between two looks
// at the clock.
constexpr int LengthLimit = 8 * 1024 * 1024;
constexpr int LikePatternLimit = 256;
// The clock is read every ProgressSteps virtual machine steps: often enough that the
// costliest single step under the limits above ends well within the time limit.
constexpr int ProgressSteps = 100;
// Bytes of one record's values, so a select list cannot repeat a large value without end.
constexpr qint64 RecordLimit = 32 * 1024 * 1024;
// SQLite's memory in the process: values, sorting and temporary tables together, since
// temporary storage is kept in memory rather than in files without a bound.
constexpr sqlite3_int64 HeapLimit = 256 * 1024 * 1024;

// Functions a query may call: pure computations on the values it reads. Anything that
// reaches outside the statement (load_extension, the fts3 tokenizer hook, ...) is missing.
const QSet<QByteArray> &allowedFunctions()
{
    static const QSet<QByteArray> names = {
        "abs", "avg", "char", "coalesce", "count", "date", "datetime", "julianday", "strftime",
        "time", "unixepoch", "glob", "group_concat", "string_agg", "hex", "ifnull", "iif", "instr",
        "length", "like", "likelihood", "likely", "unlikely", "lower", "ltrim", "max", "min",
        "nullif", "printf", "format", "quote", "random", "replace", "round", "rtrim", "sign",
        "substr", "substring", "sum", "total", "trim", "typeof", "unicode", "upper", "concat",
        "concat_ws", "octet_length",
        "acos", "acosh", "asin", "asinh", "atan", "atan2", "atanh", "ceil", "ceiling", "cos",
        "cosh", "degrees", "exp", "floor", "ln", "log", "log10", "log2", "mod", "pi", "pow",
        "power", "radians", "sin", "sinh", "sqrt", "tan", "tanh", "trunc",
        "json", "json_array", "json_array_length", "json_extract", "json_object", "json_type",
        "json_valid", "json_quote", "json_group_array", "json_group_object", "json_insert",
        "json_patch", "json_remove", "json_replace", "json_set",
        "row_number", "rank", "dense_rank", "percent_rank", "cume_dist", "ntile", "lag", "lead",
        "first_value", "last_value", "nth_value",
    };
    return names;
}

QString actionName(int action)
{
    switch (action) {
    case SQLITE_INSERT: return QStringLiteral("writing (INSERT)");
    case SQLITE_UPDATE: return QStringLiteral("writing (UPDATE)");
    case SQLITE_DELETE: return QStringLiteral("writing (DELETE)");
    case SQLITE_ATTACH: return QStringLiteral("ATTACH");
    case SQLITE_DETACH: return QStringLiteral("DETACH");
    case SQLITE_PRAGMA: return QStringLiteral("PRAGMA");
    case SQLITE_TRANSACTION: return QStringLiteral("transaction control");
    case SQLITE_SAVEPOINT: return QStringLiteral("SAVEPOINT");
    case SQLITE_ANALYZE: return QStringLiteral("ANALYZE");
    case SQLITE_REINDEX: return QStringLiteral("REINDEX");
    case SQLITE_ALTER_TABLE: return QStringLiteral("ALTER TABLE");
    default: return QStringLiteral("schema changes or other actions (code %1)").arg(action);
    }
}

int authorize(void *context, int action, const char *third, const char *fourth, const char *database,
              const char * /*trigger*/)
{
    auto *guard = static_cast<SqliteBackend::Guard *>(context);
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_RECURSIVE:
        return SQLITE_OK;
    case SQLITE_READ:
        if (database && guard->catalog == database)
            return SQLITE_OK;
        // A table read for no column (EXISTS (SELECT 1 FROM t)) comes with the schema as
        // written, so none for an unqualified name: resolve it as the engine does.
        if (!database && third && guard->catalogNames.contains(QByteArray(third).toLower()))
            return SQLITE_OK;
        guard->refusal = QStringLiteral("it reads %1.%2, outside catalog %3")
                             .arg(MessageText::excerpt(QString::fromUtf8(database)),
                                  MessageText::excerpt(QString::fromUtf8(third)), QString::fromUtf8(guard->catalog));
        return SQLITE_DENY;
    case SQLITE_FUNCTION:
        if (fourth && allowedFunctions().contains(QByteArray(fourth).toLower()))
            return SQLITE_OK;
        guard->refusal = QStringLiteral("the function %1() is not allowed")
                             .arg(MessageText::excerpt(QString::fromUtf8(fourth)));
        return SQLITE_DENY;
    default:
        // A table-valued function declares its table in the schema as the statement is read.
        if ((action == SQLITE_INSERT || action == SQLITE_UPDATE) && third
            && QByteArray(third).startsWith("sqlite_") && (QByteArray(third).endsWith("_master")
                                                           || QByteArray(third).endsWith("_schema")))
            guard->refusal = QStringLiteral("table-valued functions (json_each, json_tree) are not allowed; "
                                            "only reading tables and views of the catalog");
        else
            guard->refusal = QStringLiteral("%1 is not allowed; only reading").arg(actionName(action));
        return SQLITE_DENY;
    }
}

int checkDeadline(void *context)
{
    auto *guard = static_cast<SqliteBackend::Guard *>(context);
    if (Clock::now() < guard->deadline)
        return 0;
    guard->timedOut = true;
    return 1;
}

// What follows the first statement must be blank or comments only.
bool isBlankTail(const char *tail)
{
    const char *p = tail;
    while (*p) {
        if (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r' || *p == '\f') {
            ++p;
        } else if (p[0] == '-' && p[1] == '-') {
            while (*p && *p != '\n')
                ++p;
        } else if (p[0] == '/' && p[1] == '*') {
            const char *end = std::strstr(p + 2, "*/");
            if (!end)
                return true; // an unclosed comment runs to the end
            p = end + 2;
        } else {
            return false;
        }
    }
    return true;
}

// The response holds one record at a time; this keeps that record within bounds.
void checkRecordSize(sqlite3_stmt *statement, int count, const QString &dataSource)
{
    qint64 bytes = 0;
    for (int i = 0; i < count; ++i) {
        // Only text and blobs are measured: asking a number's size would convert it.
        const int type = sqlite3_column_type(statement, i);
        bytes += type == SQLITE_TEXT || type == SQLITE_BLOB ? sqlite3_column_bytes(statement, i) : 32;
    }
    if (bytes > RecordLimit)
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: one of its records holds %1 bytes, more than "
                                            "the %2 bytes a record of data source %3 may hold.")
                                 .arg(bytes).arg(RecordLimit).arg(dataSource));
}

QString columnText(sqlite3_stmt *statement, int column)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    return QString::fromUtf8(text, sqlite3_column_bytes(statement, column));
}

} // namespace

SqliteBackend::SqliteBackend(DataSource dataSource)
    : Backend(std::move(dataSource))
{
    // The values of one result row live in SQLite's memory together; the length limit
    // bounds each, this bounds them all (and every other use of SQLite in the process).
    static std::once_flag heapLimit;
    std::call_once(heapLimit, [] {
        const sqlite3_int64 current = sqlite3_hard_heap_limit64(-1);
        if (current == 0 || current > HeapLimit)
            sqlite3_hard_heap_limit64(HeapLimit);
    });
    open();
}

SqliteBackend::~SqliteBackend()
{
    for (sqlite3_stmt *version : m_versionQueries)
        sqlite3_finalize(version);
    sqlite3_close_v2(m_db);
}

void SqliteBackend::fail(qint32 number, const QString &what) const
{
    throw tessaly::Error(number, QStringLiteral("%1 (data source %2, file %3): %4")
                                     .arg(what, m_dataSource.name, m_dataSource.path,
                                          MessageText::fromEngine(sqlite3_errmsg(m_db))));
}

void SqliteBackend::open()
{
    if (!QFileInfo(m_dataSource.path).isFile())
        throw tessaly::Error(ErrorNumber::ConnectionFailed,
                             QStringLiteral("The database file %1 of data source %2 does not exist.")
                                 .arg(m_dataSource.path, m_dataSource.name));
    const int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE;
    if (sqlite3_open_v2(m_dataSource.path.toUtf8().constData(), &m_db, flags, nullptr) != SQLITE_OK)
        fail(ErrorNumber::ConnectionFailed, QStringLiteral("The database cannot be opened"));
    sqlite3_extended_result_codes(m_db, 1);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0, nullptr);
    sqlite3_limit(m_db, SQLITE_LIMIT_LENGTH, LengthLimit);
    sqlite3_limit(m_db, SQLITE_LIMIT_SQL_LENGTH, int(StatementLimit));
    sqlite3_limit(m_db, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, LikePatternLimit);
    sqlite3_busy_timeout(m_db, m_dataSource.timeoutMs);
    m_functions = std::make_unique<SqliteFunctions>(m_db, LengthLimit);
    // Sorts and temporary tables then count against the heap limit instead of filling the disk.
    Prepared tempStore(prepareOwn(QStringLiteral("PRAGMA temp_store = MEMORY")));
    if (sqlite3_step(tempStore.get()) != SQLITE_DONE)
        fail(ErrorNumber::ConnectionFailed, QStringLiteral("The database cannot be set up"));
    // Reading the schema tells a database from any other file.
    Prepared check(prepareOwn(QStringLiteral("SELECT count(*) FROM sqlite_master")));
    if (sqlite3_step(check.get()) != SQLITE_ROW)
        fail(ErrorNumber::ConnectionFailed, QStringLiteral("The file is not a readable database"));
    for (const auto &[name, path] : m_dataSource.attachments)
        attach(name, path);
    m_files = fileIdentities();
}

QList<QPair<quint64, quint64>> SqliteBackend::fileIdentities() const
{
    QList<QPair<quint64, quint64>> identities;
    const auto identify = [&](const QString &path) {
        struct stat info {};
        if (::stat(QFile::encodeName(path).constData(), &info) == 0)
            identities.append({quint64(info.st_dev), quint64(info.st_ino)});
        else
            identities.append({0, 0});
    };
    identify(m_dataSource.path);
    for (const auto &attachment : m_dataSource.attachments)
        identify(attachment.second);
    return identities;
}

bool SqliteBackend::reusable() const
{
    return m_db && fileIdentities() == m_files;
}

void SqliteBackend::forgetChangedStructure()
{
    if (m_versionQueries.empty()) {
        QStringList schemas{QStringLiteral("main")};
        for (const auto &attachment : m_dataSource.attachments)
            schemas.append(attachment.first);
        for (const QString &schema : schemas)
            m_versionQueries.push_back(prepareOwn(QStringLiteral("PRAGMA %1.data_version").arg(quoteIdentifier(schema))));
    }
    QByteArray versions;
    for (sqlite3_stmt *version : m_versionQueries) {
        const bool read = sqlite3_step(version) == SQLITE_ROW;
        const sqlite3_int64 number = read ? sqlite3_column_int64(version, 0) : 0;
        sqlite3_reset(version);
        if (!read)
            fail(ErrorNumber::DatabaseError, QStringLiteral("Reading the structure failed"));
        versions += QByteArray::number(number) + ',';
    }
    if (versions == m_dataVersions)
        return;
    m_dataVersions = versions;
    m_tables.clear();
    m_unqualifiedNames.clear();
}

void SqliteBackend::attach(const QString &name, const QString &path)
{
    if (!QFileInfo(path).isFile())
        throw tessaly::Error(ErrorNumber::ConnectionFailed,
                             QStringLiteral("The file %1 of catalog %2 in data source %3 does not exist.")
                                 .arg(path, name, m_dataSource.name));
    // Attached files inherit the read-only flag of the connection.
    Prepared statement(prepareOwn(QStringLiteral("ATTACH DATABASE ?1 AS ") + quoteIdentifier(name)));
    const QByteArray file = path.toUtf8();
    sqlite3_bind_text(statement.get(), 1, file.constData(), int(file.size()), SQLITE_TRANSIENT);
    if (sqlite3_step(statement.get()) != SQLITE_DONE)
        fail(ErrorNumber::ConnectionFailed, QStringLiteral("Catalog %1 cannot be attached").arg(name));
}

sqlite3_stmt *SqliteBackend::prepareOwn(const QString &sql)
{
    sqlite3_stmt *statement = nullptr;
    const QByteArray text = sql.toUtf8();
    if (sqlite3_prepare_v2(m_db, text.constData(), int(text.size()), &statement, nullptr) != SQLITE_OK)
        fail(ErrorNumber::DatabaseError, QStringLiteral("Reading the structure failed"));
    return statement;
}

QStringList SqliteBackend::catalogs()
{
    Prepared statement(prepareOwn(QStringLiteral("PRAGMA database_list")));
    QStringList names;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) {
        const QString name = columnText(statement.get(), 1);
        if (name != u"temp")
            names.append(name);
    }
    return names;
}

QList<StructureItem> SqliteBackend::tables(const QString &catalog)
{
    forgetChangedStructure();
    if (const auto known = m_tables.constFind(catalog); known != m_tables.cend())
        return *known;
    checkCatalog(catalog);
    Prepared statement(prepareOwn(QStringLiteral("SELECT name, type FROM %1.sqlite_master "
                                                 "WHERE type IN ('table', 'view') "
                                                 "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name")
                                      .arg(quoteIdentifier(catalog))));
    QList<StructureItem> items;
    int rc;
    while ((rc = sqlite3_step(statement.get())) == SQLITE_ROW)
        items.append({columnText(statement.get(), 0), columnText(statement.get(), 1)});
    if (rc != SQLITE_DONE)
        fail(ErrorNumber::DatabaseError, QStringLiteral("Listing the tables of %1 failed").arg(catalog));
    m_tables.insert(catalog, items);
    return items;
}

QList<StructureItem> SqliteBackend::columns(const QString &catalog, const QString &table)
{
    const QList<StructureItem> known = tables(catalog);
    const auto found = std::find_if(known.begin(), known.end(),
                                    [&](const StructureItem &item) { return item.name == table; });
    if (found == known.end())
        unknownTable(catalog, table);
    Prepared statement(prepareOwn(QStringLiteral("SELECT name, type FROM pragma_table_info(?1, ?2) ORDER BY cid")));
    const QByteArray tableName = table.toUtf8();
    const QByteArray schema = catalog.toUtf8();
    sqlite3_bind_text(statement.get(), 1, tableName.constData(), int(tableName.size()), SQLITE_TRANSIENT);
    sqlite3_bind_text(statement.get(), 2, schema.constData(), int(schema.size()), SQLITE_TRANSIENT);
    QList<StructureItem> items;
    int rc;
    while ((rc = sqlite3_step(statement.get())) == SQLITE_ROW)
        items.append({columnText(statement.get(), 0), columnText(statement.get(), 1)});
    if (rc != SQLITE_DONE)
        fail(ErrorNumber::DatabaseError, QStringLiteral("Listing the columns of %1.%2 failed").arg(catalog, table));
    return items;
}

sqlite3_stmt *SqliteBackend::prepareGuarded(const QString &sql, Guard &guard)
{
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt *statement = nullptr;
    const char *tail = nullptr;
    const int rc = sqlite3_prepare_v2(m_db, text.constData(), int(text.size()) + 1, &statement, &tail);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(statement);
        failStatement(guard, rc, QStringLiteral("Preparing the statement took longer than %1 ms, the limit of "
                                                "data source %2").arg(m_dataSource.timeoutMs).arg(m_dataSource.name));
    }
    Prepared owned(statement);
    if (!statement)
        throw tessaly::Error(ErrorNumber::StatementRefused, QStringLiteral("The statement is refused: it is empty."));
    if (tail && !isBlankTail(tail))
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: it holds more than one statement."));
    if (!sqlite3_stmt_readonly(statement) || sqlite3_stmt_isexplain(statement))
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: only a plain read-only SELECT may run."));
    return owned.release();
}

// Read after tables() in the same request, which forgot what changed.
QSet<QByteArray> SqliteBackend::unqualifiedNamesIn(const QString &catalog)
{
    if (const auto known = m_unqualifiedNames.constFind(catalog); known != m_unqualifiedNames.cend())
        return *known;
    m_unqualifiedNames.insert(catalog, findUnqualifiedNamesIn(catalog));
    return m_unqualifiedNames.value(catalog);
}

QSet<QByteArray> SqliteBackend::findUnqualifiedNamesIn(const QString &catalog)
{
    // The engine looks an unqualified name up in temp, then main, then the attached files.
    QList<QPair<int, QString>> order;
    Prepared list(prepareOwn(QStringLiteral("PRAGMA database_list")));
    while (sqlite3_step(list.get()) == SQLITE_ROW) {
        const int seq = sqlite3_column_int(list.get(), 0);
        order.append({seq == 1 ? -1 : seq, columnText(list.get(), 1)});
    }
    std::sort(order.begin(), order.end());
    QSet<QByteArray> taken;
    for (const auto &[seq, schema] : order) {
        Prepared names(prepareOwn(QStringLiteral("SELECT lower(name) FROM %1.sqlite_master WHERE type IN ('table', 'view')")
                                      .arg(quoteIdentifier(schema))));
        QSet<QByteArray> here;
        while (sqlite3_step(names.get()) == SQLITE_ROW) {
            const QByteArray name(reinterpret_cast<const char *>(sqlite3_column_text(names.get(), 0)));
            if (!taken.contains(name))
                here.insert(name);
        }
        if (schema == catalog)
            return here;
        taken.unite(here);
    }
    return {};
}

void SqliteBackend::stream(sqlite3_stmt *statement, Guard &guard, const FieldList &fields, qint64 limit, RowSink &sink)
{
    const int count = sqlite3_column_count(statement);
    QList<QByteArray> names;
    for (int i = 0; i < count; ++i)
        names.append(QByteArray(sqlite3_column_name(statement, i)));
    sink.startTable(fields.namesAsWritten(names));
    const qint64 cap = m_dataSource.rowCap;
    qint64 rows = 0;
    bool truncated = false;
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        if (rows == cap || rows == limit) {
            truncated = rows == cap;
            break;
        }
        checkRecordSize(statement, count, m_dataSource.name);
        sink.startRecord();
        for (int i = 0; i < count; ++i) {
            switch (sqlite3_column_type(statement, i)) {
            case SQLITE_NULL:
                sink.nullValue();
                break;
            case SQLITE_BLOB: {
                const auto *data = static_cast<const char *>(sqlite3_column_blob(statement, i));
                sink.blobValue(data, sqlite3_column_bytes(statement, i));
                break;
            }
            case SQLITE_INTEGER:
            case SQLITE_FLOAT: {
                const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, i));
                sink.numberValue(text, sqlite3_column_bytes(statement, i));
                break;
            }
            default: {
                const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, i));
                sink.value(text, sqlite3_column_bytes(statement, i));
            }
            }
        }
        sink.endRecord();
        ++rows;
    }
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        failStatement(guard, rc, QStringLiteral("The statement ran longer than %1 ms, the limit of data source %2, "
                                                "and was stopped").arg(m_dataSource.timeoutMs).arg(m_dataSource.name));
    sink.endTable(rows, truncated, cap);
}

// Why the statement stopped: the deadline, the authorizer, the memory bound, or the engine.
void SqliteBackend::failStatement(const Guard &guard, int code, const QString &timeout) const
{
    if (guard.timedOut)
        throw tessaly::Error(ErrorNumber::Timeout, timeout + u'.');
    if (!guard.refusal.isEmpty())
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: %1.").arg(guard.refusal));
    if ((code & 0xff) == SQLITE_NOMEM)
        throw tessaly::Error(ErrorNumber::StatementRefused,
                             QStringLiteral("The statement is refused: it needs more than the %1 MB of memory SQLite "
                                            "may use in the data service (values, sorting and temporary tables "
                                            "together; data source %2).").arg(HeapLimit / 1024 / 1024).arg(m_dataSource.name));
    fail(ErrorNumber::DatabaseError, QStringLiteral("The statement failed"));
}

void SqliteBackend::select(const Request &request, RowSink &sink)
{
    const Backend::Statement built = buildStatement(request);
    const QString &sql = built.sql;
    Guard guard;
    guard.catalog = request.catalog.toUtf8();
    guard.catalogNames = unqualifiedNamesIn(request.catalog);
    guard.deadline = Clock::now() + std::chrono::milliseconds(m_dataSource.timeoutMs);
    sqlite3_set_authorizer(m_db, authorize, &guard);
    sqlite3_progress_handler(m_db, ProgressSteps, checkDeadline, &guard);
    m_functions->setDeadline(guard.deadline, &guard.timedOut);
    struct Reset {
        sqlite3 *db;
        SqliteFunctions *functions;
        ~Reset()
        {
            sqlite3_set_authorizer(db, nullptr, nullptr);
            sqlite3_progress_handler(db, 0, nullptr, nullptr);
            functions->clearDeadline();
        }
    } reset{m_db, m_functions.get()};
    Prepared statement(prepareGuarded(sql, guard));
    stream(statement.get(), guard, built.fields, fetchLimit(request), sink);
}

} // namespace dataservice
