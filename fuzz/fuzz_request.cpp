// Feeds arbitrary bytes to what reads hostile text first: the request parser and the
// clause check. The first byte picks the target. A clause the check accepts for SQLite must
// also stay one statement when SQLite reads it in its place: nothing may follow it.

#include <dataservice/request.h>
#include <dataservice/sqlclause.h>

#include <tessaly/error.h>

#include <sqlite3.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

using namespace dataservice;

namespace {

sqlite3 *database()
{
    static sqlite3 *db = [] {
        sqlite3 *opened = nullptr;
        sqlite3_open_v2(":memory:", &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr);
        sqlite3_exec(opened, "CREATE TABLE t (a, b)", nullptr, nullptr, nullptr);
        return opened;
    }();
    return db;
}

bool blank(const char *tail)
{
    for (; *tail; ++tail) {
        if (!std::strchr(" \t\r\n\f", *tail))
            return false;
    }
    return true;
}

void checkClause(const QString &text, SqlClause::Dialect dialect)
{
    try {
        SqlClause(QStringLiteral("condition"), text, dialect).check();
    } catch (const tessaly::Error &) {
        return; // refused: nothing more to see
    }
    if (dialect != SqlClause::Dialect::SQLite)
        return;
    const QByteArray sql = "SELECT a FROM t WHERE (" + text.toUtf8() + ")\nLIMIT 5";
    sqlite3_stmt *statement = nullptr;
    const char *tail = nullptr;
    if (sqlite3_prepare_v2(database(), sql.constData(), int(sql.size()), &statement, &tail)
            == SQLITE_OK
        && tail && !blank(tail))
        std::abort(); // the accepted clause let a second statement follow
    sqlite3_finalize(statement);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    switch (data[0] % 3) {
    case 0:
        try {
            Request::parse(bytes);
        } catch (const tessaly::Error &) {
        }
        break;
    case 1:
        checkClause(QString::fromUtf8(bytes), SqlClause::Dialect::SQLite);
        break;
    default:
        checkClause(QString::fromUtf8(bytes), SqlClause::Dialect::PostgreSQL);
        break;
    }
    return 0;
}
