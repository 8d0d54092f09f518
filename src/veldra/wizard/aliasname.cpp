#include "veldra/wizard/aliasname.h"

#include <QList>

#include <algorithm>
#include <iterator>

namespace veldra {

namespace {

// Sorted, upper case. Found by asking both engines: every key word of SQLite 3.40 and
// PostgreSQL 15 was tried as an alias written without AS, in WHERE, GROUP BY and ORDER BY;
// these are the ones that failed on either, or that both read as something else
// (CURRENT_DATE is the function, not the column).
const char *const reservedWords[] = {
    "ADD", "ALL", "ALTER", "ANALYSE", "ANALYZE", "AND", "ANY", "ARRAY", "AS", "ASC",
    "ASYMMETRIC", "AUTHORIZATION", "AUTOINCREMENT", "BETWEEN", "BINARY", "BOTH", "CASE", "CAST", "CHAR", "CHARACTER",
    "CHECK", "COLLATE", "COLLATION", "COLUMN", "COMMIT", "CONCURRENTLY", "CONSTRAINT", "CREATE", "CROSS",
    "CURRENT_CATALOG", "CURRENT_DATE", "CURRENT_ROLE", "CURRENT_SCHEMA", "CURRENT_TIME", "CURRENT_TIMESTAMP",
    "CURRENT_USER", "DAY", "DEFAULT", "DEFERRABLE", "DELETE", "DESC", "DISTINCT", "DO", "DROP", "ELSE", "END",
    "ESCAPE", "EXCEPT", "EXISTS", "FALSE", "FETCH", "FILTER", "FOR", "FOREIGN", "FREEZE", "FROM", "FULL", "GLOB",
    "GRANT", "GROUP", "HAVING", "HOUR", "ILIKE", "IN", "INDEX", "INDEXED", "INITIALLY", "INNER", "INSERT",
    "INTERSECT", "INTO", "IS", "ISNULL", "JOIN", "LATERAL", "LEADING", "LEFT", "LIKE", "LIMIT", "LOCALTIME",
    "LOCALTIMESTAMP", "MATCH", "MINUTE", "MONTH", "NATURAL", "NOT", "NOTHING", "NOTNULL", "NULL", "OFFSET", "ON",
    "ONLY", "OR", "ORDER", "OUTER", "OVER", "OVERLAPS", "PLACING", "PRECISION", "PRIMARY", "RAISE", "REFERENCES",
    "REGEXP", "RETURNING", "RIGHT", "SECOND", "SELECT", "SESSION_USER", "SET", "SIMILAR", "SOME", "SYMMETRIC",
    "TABLE", "TABLESAMPLE", "THEN", "TO", "TRAILING", "TRANSACTION", "TRUE", "UNION", "UNIQUE", "UPDATE", "USER",
    "USING", "VALUES", "VARIADIC", "VARYING", "VERBOSE", "WHEN", "WHERE", "WINDOW", "WITH", "WITHIN", "WITHOUT",
    "YEAR",
};

bool isAsciiLetter(char32_t c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Both engines take any character outside ASCII into a name; we take letters, digits and marks
// of any script, so that names stay names.
bool isOtherScript(char32_t c, bool first)
{
    if (c < 0x80)
        return false;
    if (QChar::isLetter(c))
        return true;
    if (first)
        return false;
    const QChar::Category category = QChar::category(c);
    return QChar::isNumber(c) || category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining
            || category == QChar::Mark_Enclosing;
}

bool isPlainName(const QString &name)
{
    const QList<uint> codes = name.toUcs4();
    for (qsizetype i = 0; i < codes.size(); ++i) {
        const char32_t c = codes.at(i);
        const bool first = i == 0;
        const bool ascii = isAsciiLetter(c) || c == '_' || (!first && c >= '0' && c <= '9');
        if (!ascii && !isOtherScript(c, first))
            return false;
    }
    return !codes.isEmpty() && !isReservedWord(name);
}

bool isQuotedName(const QString &name)
{
    if (name.size() < 3 || !name.startsWith(u'"') || !name.endsWith(u'"'))
        return false;
    // Unpaired surrogates come out as the replacement character, which is refused with them.
    const QList<uint> inside = name.mid(1, name.size() - 2).toUcs4();
    for (qsizetype i = 0; i < inside.size(); ++i) {
        const char32_t c = inside.at(i);
        if (c == '"') {
            // A quote inside is doubled; a lone one would end the name early.
            if (i + 1 >= inside.size() || inside.at(i + 1) != '"')
                return false;
            ++i;
        } else if (c == ',' || c == QChar::ReplacementCharacter || QChar::category(c) == QChar::Other_Control) {
            return false;
        }
    }
    return true;
}

} // namespace

bool isReservedWord(const QString &word)
{
    const QByteArray upper = word.toUpper().toLatin1();
    return std::binary_search(std::begin(reservedWords), std::end(reservedWords), upper,
                              [](const auto &a, const auto &b) { return QByteArrayView(a) < QByteArrayView(b); });
}

bool isUsableAlias(const QString &alias)
{
    return alias.isEmpty() || isPlainName(alias) || isQuotedName(alias);
}

} // namespace veldra
