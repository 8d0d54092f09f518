#include "sqlitefunctions.h"

#include <QtGlobal>

#include <sqlite3.h>

#include <cstring>
#include <string>

namespace dataservice {

namespace {

constexpr qint64 ClockEvery = 16 * 1024 * 1024; // bytes compared between two looks at the clock

SqliteFunctions *functionsOf(sqlite3_context *context)
{
    return static_cast<SqliteFunctions *>(sqlite3_user_data(context));
}

void stopAtDeadline(sqlite3_context *context)
{
    sqlite3_result_error(context, "interrupted at the time limit", -1);
    sqlite3_result_error_code(context, SQLITE_INTERRUPT);
}

// Every width and precision a format asks for, literal or taken from an argument ("*"),
// in the order SQLite takes its arguments; false when one exceeds the limit. Where this
// reading and SQLite's could differ (a conversion SQLite does not know ends its output),
// this one reads on, so it never checks less.
bool formatFitsLimit(const char *format, int argc, sqlite3_value **argv, sqlite3_int64 limit)
{
    int next = 1;
    for (const char *p = format; *p; ++p) {
        if (*p != '%')
            continue;
        for (++p; *p; ++p) {
            if (*p >= '0' && *p <= '9') {
                sqlite3_int64 number = 0;
                for (; *p >= '0' && *p <= '9'; ++p) {
                    number = number * 10 + (*p - '0');
                    if (number > limit)
                        return false;
                }
                --p;
            } else if (*p == '*') {
                const sqlite3_int64 number = next < argc ? sqlite3_value_int64(argv[next]) : 0;
                ++next;
                if (number > limit || number < -limit)
                    return false;
            } else if (!std::strchr("-+ #!,.l", *p)) {
                break;
            }
        }
        if (!*p)
            break;
        if (*p != '%' && *p != 'n')
            ++next;
    }
    return true;
}

void boundedPrintf(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    SqliteFunctions *functions = functionsOf(context);
    const auto *format
        = argc > 0 ? reinterpret_cast<const char *>(sqlite3_value_text(argv[0])) : nullptr;
    if (!format)
        return; // NULL, as SQLite's own printf answers
    if (!formatFitsLimit(format, argc, argv, functions->lengthLimit())) {
        sqlite3_result_error_toobig(context);
        return;
    }
    sqlite3_stmt *statement = functions->printer(argc);
    if (!statement) {
        sqlite3_result_error_nomem(context);
        return;
    }
    for (int i = 0; i < argc; ++i)
        sqlite3_bind_value(statement, i + 1, argv[i]);
    if (sqlite3_step(statement) == SQLITE_ROW)
        sqlite3_result_value(context, sqlite3_column_value(statement, 0));
    else
        sqlite3_result_error_code(context, sqlite3_errcode(sqlite3_db_handle(statement)));
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
}

// Byte offset of the first needle in haystack at or after from, -1 when there is none,
// -2 when the deadline passed first.
qint64 find(SqliteFunctions *functions, const char *haystack, qint64 size, const char *needle,
    qint64 needleSize, qint64 from)
{
    qint64 untilClock = ClockEvery;
    for (qint64 i = from; i + needleSize <= size; ++i) {
        if (haystack[i] != needle[0])
            continue;
        // A comparison may run the whole needle's length: count it so.
        untilClock -= needleSize;
        if (untilClock <= 0) {
            untilClock = ClockEvery;
            if (functions->pastDeadline())
                return -2;
        }
        if (std::memcmp(haystack + i, needle, size_t(needleSize)) == 0)
            return i;
    }
    return -1;
}

void boundedInstr(sqlite3_context *context, int, sqlite3_value **argv)
{
    const int haystackType = sqlite3_value_type(argv[0]);
    const int needleType = sqlite3_value_type(argv[1]);
    if (haystackType == SQLITE_NULL || needleType == SQLITE_NULL)
        return;
    const bool bytes = haystackType == SQLITE_BLOB && needleType == SQLITE_BLOB;
    const char *haystack;
    const char *needle;
    if (bytes) {
        haystack = static_cast<const char *>(sqlite3_value_blob(argv[0]));
        needle = static_cast<const char *>(sqlite3_value_blob(argv[1]));
    } else {
        haystack = reinterpret_cast<const char *>(sqlite3_value_text(argv[0]));
        needle = reinterpret_cast<const char *>(sqlite3_value_text(argv[1]));
    }
    const qint64 haystackSize = sqlite3_value_bytes(argv[0]);
    const qint64 needleSize = sqlite3_value_bytes(argv[1]);
    if (needleSize == 0) {
        sqlite3_result_int(context, 1);
        return;
    }
    if (!haystack || !needle) {
        sqlite3_result_int(context, 0);
        return;
    }
    const qint64 at = find(functionsOf(context), haystack, haystackSize, needle, needleSize, 0);
    if (at == -2) {
        stopAtDeadline(context);
        return;
    }
    if (at < 0) {
        sqlite3_result_int(context, 0);
        return;
    }
    qint64 position = at;
    if (!bytes) {
        position = 0; // characters, not bytes: count the lead bytes before the match
        for (qint64 i = 0; i < at; ++i)
            position += (static_cast<unsigned char>(haystack[i]) & 0xC0) != 0x80;
    }
    sqlite3_result_int64(context, position + 1);
}

void boundedReplace(sqlite3_context *context, int, sqlite3_value **argv)
{
    const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(argv[0]));
    if (!text)
        return;
    const qint64 textSize = sqlite3_value_bytes(argv[0]);
    const auto *pattern = reinterpret_cast<const char *>(sqlite3_value_text(argv[1]));
    if (!pattern)
        return;
    const qint64 patternSize = sqlite3_value_bytes(argv[1]);
    if (patternSize == 0) {
        sqlite3_result_value(context, argv[0]);
        return;
    }
    const auto *replacement = reinterpret_cast<const char *>(sqlite3_value_text(argv[2]));
    if (!replacement)
        return;
    const qint64 replacementSize = sqlite3_value_bytes(argv[2]);
    SqliteFunctions *functions = functionsOf(context);
    std::string result;
    qint64 from = 0;
    for (;;) {
        const qint64 at = find(functions, text, textSize, pattern, patternSize, from);
        if (at == -2) {
            stopAtDeadline(context);
            return;
        }
        result.append(text + from, size_t((at < 0 ? textSize : at) - from));
        if (at < 0)
            break;
        result.append(replacement, size_t(replacementSize));
        if (qint64(result.size()) > functions->lengthLimit()) {
            sqlite3_result_error_toobig(context);
            return;
        }
        from = at + patternSize;
    }
    sqlite3_result_text64(context, result.data(), result.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

} // namespace

SqliteFunctions::SqliteFunctions(sqlite3 *db, int lengthLimit) : m_lengthLimit(lengthLimit)
{
    // Innocuous, as SQLite's own are: views of the database may call them.
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    sqlite3_create_function_v2(
        db, "printf", -1, flags, this, boundedPrintf, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(
        db, "format", -1, flags, this, boundedPrintf, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(
        db, "instr", 2, flags, this, boundedInstr, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(
        db, "replace", 3, flags, this, boundedReplace, nullptr, nullptr, nullptr);
}

SqliteFunctions::~SqliteFunctions()
{
    for (const auto &[count, statement] : m_statements)
        sqlite3_finalize(statement);
    sqlite3_close_v2(m_printer);
}

void SqliteFunctions::setDeadline(Clock::time_point deadline, bool *timedOut)
{
    m_deadline = deadline;
    m_timedOut = timedOut;
}

void SqliteFunctions::clearDeadline()
{
    m_deadline = Clock::time_point::max();
    m_timedOut = nullptr;
}

bool SqliteFunctions::pastDeadline()
{
    if (Clock::now() < m_deadline)
        return false;
    if (m_timedOut)
        *m_timedOut = true;
    return true;
}

sqlite3_stmt *SqliteFunctions::printer(int argumentCount)
{
    const auto found = m_statements.find(argumentCount);
    if (found != m_statements.end())
        return found->second;
    if (!m_printer) {
        if (sqlite3_open_v2(
                ":memory:", &m_printer, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr)
            != SQLITE_OK)
            return nullptr;
        sqlite3_limit(m_printer, SQLITE_LIMIT_LENGTH, m_lengthLimit);
    }
    std::string sql = "SELECT printf(";
    for (int i = 1; i <= argumentCount; ++i)
        sql += (i > 1 ? ",?" : "?") + std::to_string(i);
    sql += ')';
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(m_printer, sql.c_str(), int(sql.size()), &statement, nullptr)
        != SQLITE_OK) {
        sqlite3_finalize(statement);
        return nullptr;
    }
    m_statements.emplace(argumentCount, statement);
    return statement;
}

} // namespace dataservice
