// Feeds arbitrary bytes to what reads hostile text first: the request parser, the clause
// check, and the field list with the aliases it resolves in a condition. The first byte picks
// the target. A clause the check accepts for SQLite must also stay one statement when SQLite
// reads it in its place: nothing may follow it. A condition whose aliases were resolved must
// pass the check when the field list and the condition did.

#include <dataservice/fieldlist.h>
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

bool accepted(const QString &text, SqlClause::Dialect dialect)
{
    try {
        SqlClause(QStringLiteral("condition"), text, dialect).check();
        return true;
    } catch (const tessaly::Error &) {
        return false;
    }
}

void checkClause(const QString &text, SqlClause::Dialect dialect)
{
    if (!accepted(text, dialect))
        return; // refused: nothing more to see
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

// The bytes before the first NUL are the field list, the rest the condition; every name is
// taken for a real column when the last byte is odd.
void resolveAliases(const QByteArray &bytes, SqlClause::Dialect dialect)
{
    const qsizetype split = bytes.indexOf('\0');
    const QString fields = QString::fromUtf8(bytes.left(split < 0 ? bytes.size() : split));
    const QString condition = split < 0 ? QString() : QString::fromUtf8(bytes.mid(split + 1));
    if (!accepted(fields, dialect) || !accepted(condition, dialect))
        return;
    try {
        const FieldList list(fields, dialect);
        list.statementText();
        const bool columns = !bytes.isEmpty() && (bytes.back() & 1);
        if (!accepted(list.resolveAliases(condition, [columns](const QString &) { return columns; }), dialect))
            std::abort(); // the replacement let the condition leave its place
    } catch (const tessaly::Error &) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    switch (data[0] % 5) {
    case 0:
        try {
            Request::parse(bytes);
        } catch (const tessaly::Error &) {
        }
        break;
    case 1:
        checkClause(QString::fromUtf8(bytes), SqlClause::Dialect::SQLite);
        break;
    case 2:
        checkClause(QString::fromUtf8(bytes), SqlClause::Dialect::PostgreSQL);
        break;
    case 3:
        resolveAliases(bytes, SqlClause::Dialect::SQLite);
        break;
    default:
        resolveAliases(bytes, SqlClause::Dialect::PostgreSQL);
        break;
    }
    return 0;
}
