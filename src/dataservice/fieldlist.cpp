#include "fieldlist.h"

#include "errornumber.h"
#include "messagetext.h"

#include <tessaly/error.h>

#include <QHash>
#include <QSet>

namespace dataservice {

namespace {

using Kind = SqlToken::Kind;

QSet<QString> wordSet(std::initializer_list<const char *> words)
{
    QSet<QString> set;
    for (const char *word : words)
        set.insert(QLatin1String(word));
    return set;
}

// Words SQLite refuses as an alias even after AS (each of SQLite's key words tried).
const QSet<QString> &sqliteReserved()
{
    static const QSet<QString> words = wordSet({
        "add", "all", "alter", "and", "as", "autoincrement", "between", "case", "check", "collate",
        "commit", "constraint", "create", "default", "deferrable", "delete", "distinct", "drop", "else",
        "escape", "except", "exists", "foreign", "from", "group", "having", "in", "index", "insert",
        "intersect", "into", "is", "isnull", "join", "limit", "not", "nothing", "notnull", "null", "on",
        "or", "order", "primary", "references", "returning", "select", "set", "table", "then", "to",
        "transaction", "union", "unique", "update", "using", "values", "when", "where",
    });
    return words;
}

// PostgreSQL's reserved key words, those that may name a function or type included.
const QSet<QString> &postgresReserved()
{
    static const QSet<QString> words = wordSet({
        "all", "analyse", "analyze", "and", "any", "array", "as", "asc", "asymmetric", "authorization",
        "binary", "both", "case", "cast", "check", "collate", "collation", "column", "concurrently",
        "constraint", "create", "cross", "current_catalog", "current_date", "current_role",
        "current_schema", "current_time", "current_timestamp", "current_user", "default", "deferrable",
        "desc", "distinct", "do", "else", "end", "except", "false", "fetch", "for", "foreign", "freeze",
        "from", "full", "grant", "group", "having", "ilike", "in", "initially", "inner", "intersect",
        "into", "is", "isnull", "join", "lateral", "leading", "left", "like", "limit", "localtime",
        "localtimestamp", "natural", "not", "notnull", "null", "offset", "on", "only", "or", "order",
        "outer", "overlaps", "placing", "primary", "references", "returning", "right", "select",
        "session_user", "similar", "some", "symmetric", "table", "tablesample", "then", "to", "trailing",
        "true", "union", "unique", "user", "using", "variadic", "verbose", "when", "where", "window", "with",
    });
    return words;
}

// Words both engines take as an alias after AS, one of them not without it.
const QSet<QString> &needAs()
{
    static const QSet<QString> words = wordSet({
        "char", "character", "day", "filter", "glob", "hour", "indexed", "match", "minute", "month", "over",
        "precision", "regexp", "second", "varying", "within", "without", "year",
    });
    return words;
}

// Reserved words an expression can end with.
const QSet<QString> &expressionEnds()
{
    static const QSet<QString> words = wordSet({
        "current_catalog", "current_date", "current_role", "current_schema", "current_time",
        "current_timestamp", "current_user", "end", "false", "isnull", "localtime", "localtimestamp",
        "notnull", "null", "session_user", "true", "user",
    });
    return words;
}

const QSet<QString> &intervalFields()
{
    static const QSet<QString> words = wordSet({"year", "month", "day", "hour", "minute", "second"});
    return words;
}

// Names fold to lower case in ASCII only, on both engines.
QString asciiLower(QStringView text)
{
    QString lower = text.toString();
    for (QChar &c : lower) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + 32);
    }
    return lower;
}

QByteArray asciiLower(const QByteArray &text)
{
    QByteArray lower = text;
    for (char &c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    }
    return lower;
}

// The tokens of one text that are not blank, with the text they come from.
class Significant
{
public:
    Significant(const QString &text, const QList<SqlToken> &tokens, qsizetype first, qsizetype last)
        : m_text(text)
    {
        for (qsizetype k = first; k < last; ++k) {
            if (tokens.at(k).kind != Kind::Blank)
                m_tokens.append(tokens.at(k));
        }
    }

    qsizetype size() const { return m_tokens.size(); }
    const SqlToken &at(qsizetype k) const { return m_tokens.at(k); }
    QStringView text(qsizetype k) const { return QStringView(m_text).mid(at(k).start, at(k).size()); }
    QString word(qsizetype k) const { return k >= 0 && at(k).kind == Kind::Word ? asciiLower(text(k)) : QString(); }
    bool isSymbol(qsizetype k, char16_t c) const { return at(k).kind == Kind::Symbol && m_text.at(at(k).start) == c; }

    // Whether token k can be the last token of an operand, so that a name after it is an alias.
    bool endsOperand(qsizetype k) const
    {
        switch (at(k).kind) {
        case Kind::Number:
        case Kind::String:
        case Kind::QuotedName:
            return true;
        case Kind::Word:
            return !FieldList::isReservedWord(text(k)) || expressionEnds().contains(word(k));
        case Kind::Symbol:
            return isSymbol(k, u')') || isSymbol(k, u']');
        default:
            return false;
        }
    }

    // Whether the word at k goes with what precedes it as one type name or interval field
    // (double precision, character varying, time zone, interval '1' day), not as an alias.
    bool continuesType(qsizetype k) const
    {
        const QString name = word(k);
        const QString before = word(k - 1);
        if (name == u"precision")
            return before == u"double";
        if (name == u"varying")
            return before == u"character" || before == u"char" || before == u"bit";
        if (name == u"zone")
            return before == u"time";
        if (intervalFields().contains(name))
            return before == u"interval" || (k >= 2 && at(k - 1).kind == Kind::String && word(k - 2) == u"interval");
        return false;
    }

private:
    const QString &m_text;
    QList<SqlToken> m_tokens;
};

} // namespace

bool FieldList::isReservedWord(QStringView word)
{
    const QString lower = asciiLower(word);
    return sqliteReserved().contains(lower) || postgresReserved().contains(lower);
}

FieldList::FieldList(const QString &fields, SqlDialect dialect)
    : m_text(fields), m_dialect(dialect), m_tokens(SqlLexer::tokens(fields, dialect))
{
    int depth = 0;
    qsizetype first = 0;
    for (qsizetype k = 0; k < m_tokens.size(); ++k) {
        const SqlToken &token = m_tokens.at(k);
        if (token.kind != Kind::Symbol)
            continue;
        const QChar c = m_text.at(token.start);
        if (c == u'(')
            ++depth;
        else if (c == u')')
            --depth;
        else if (c == u',' && depth == 0) {
            readItem(first, k);
            first = k + 1;
        }
    }
    readItem(first, m_tokens.size());
}

void FieldList::refuse(const Item &item, const QString &reason) const
{
    throw tessaly::Error(ErrorNumber::StatementRefused,
                         QStringLiteral("The field list is refused at item %1 (\"%2\"): %3.")
                             .arg(m_items.size() + 1)
                             .arg(MessageText::excerpt(item.expression), reason));
}

void FieldList::readItem(qsizetype first, qsizetype last)
{
    const Significant tokens(m_text, m_tokens, first, last);
    const qsizetype n = tokens.size();
    Item item;
    item.start = n > 0 ? tokens.at(0).start : (first < m_tokens.size() ? m_tokens.at(first).start : m_text.size());
    const qsizetype end = n > 0 ? tokens.at(n - 1).end : item.start;
    item.expression = m_text.mid(item.start, end - item.start);
    qsizetype expressionEnd = n; // tokens of the expression, without the alias
    if (n >= 2) {
        const Kind lastKind = tokens.at(n - 1).kind;
        const bool name = lastKind == Kind::Word || lastKind == Kind::QuotedName;
        const QString lastWord = tokens.word(n - 1);
        if (name && tokens.word(n - 2) == u"as") {
            if (sqliteReserved().contains(lastWord))
                refuse(item, QStringLiteral("its alias %1 is a reserved word of SQLite; write it in double quotes")
                                 .arg(tokens.text(n - 1)));
            expressionEnd = n - 2;
            item.aliasAfterAs = true;
        } else if (lastKind == Kind::Word && isReservedWord(lastWord)) {
            if (!expressionEnds().contains(lastWord))
                refuse(item, QStringLiteral("it ends with the reserved word %1; an alias that is a reserved word "
                                            "must be written in double quotes").arg(tokens.text(n - 1)));
        } else if (name && tokens.endsOperand(n - 2) && !tokens.continuesType(n - 1)) {
            expressionEnd = n - 1;
        }
    }
    if (expressionEnd < n) {
        item.alias = tokens.text(n - 1).toString();
        item.aliasStart = tokens.at(n - 1).start;
        item.expression = m_text.mid(item.start, tokens.at(expressionEnd - 1).end - item.start);
        // "SUM(x) Total Revenue": two names after the expression, one meant as part of the alias.
        const qsizetype e = expressionEnd - 1;
        if (e >= 1 && tokens.at(e).kind == Kind::Word && !isReservedWord(tokens.text(e))
            && (tokens.word(e - 1) == u"as" || tokens.endsOperand(e - 1)) && !tokens.continuesType(e))
            refuse(item, QStringLiteral("it has two names after its expression, %1 and %2; an alias of several "
                                        "words must be written in double quotes (\"%1 %2\")")
                             .arg(tokens.text(e), tokens.text(n - 1)));
    }
    m_items.append(item);
}

QString FieldList::statementText() const
{
    QString text = m_text;
    for (auto item = m_items.crbegin(); item != m_items.crend(); ++item) {
        if (!item->alias.isEmpty() && !item->aliasAfterAs && needAs().contains(asciiLower(item->alias)))
            text.insert(item->aliasStart, QStringLiteral("AS "));
    }
    return text;
}

QList<QByteArray> FieldList::namesAsWritten(const QList<QByteArray> &engineNames) const
{
    if (m_items.size() != engineNames.size())
        return engineNames;
    QList<QByteArray> names = engineNames;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const Item &item = m_items.at(i);
        QString written = item.alias;
        if (written.isEmpty()) {
            // A column reference, qualified or not, is named after its column.
            const QList<SqlToken> tokens = SqlLexer::tokens(item.expression, m_dialect);
            const Significant significant(item.expression, tokens, 0, tokens.size());
            const qsizetype n = significant.size();
            if (n > 0 && significant.at(n - 1).kind == Kind::Word && (n == 1 || significant.isSymbol(n - 2, u'.')))
                written = significant.text(n - 1).toString();
        } else if (!SqlLexer::isWordStart(written.at(0))) {
            continue; // quoted: the engine keeps it as written
        }
        const QByteArray name = written.toUtf8();
        if (!name.isEmpty() && name != names.at(i) && asciiLower(name) == names.at(i))
            names[i] = name;
    }
    return names;
}

QString FieldList::resolveAliases(const QString &condition, const std::function<bool(const QString &)> &isColumn) const
{
    QHash<QString, QString> expressions;
    QSet<QString> ambiguous;
    for (const Item &item : m_items) {
        if (item.alias.isEmpty() || !SqlLexer::isWordStart(item.alias.at(0)))
            continue;
        const QString key = asciiLower(item.alias);
        if (expressions.contains(key))
            ambiguous.insert(key);
        expressions.insert(key, item.expression);
    }
    for (const QString &key : ambiguous)
        expressions.remove(key);
    if (expressions.isEmpty())
        return condition;

    const QList<SqlToken> all = SqlLexer::tokens(condition, m_dialect);
    const Significant tokens(condition, all, 0, all.size());
    QString resolved;
    qsizetype copied = 0;
    // Names inside a subquery belong to its own tables: each open parenthesis says whether it
    // starts one.
    QList<bool> subquery;
    for (qsizetype k = 0; k < tokens.size(); ++k) {
        if (tokens.isSymbol(k, u'(')) {
            const QString next = k + 1 < tokens.size() ? tokens.word(k + 1) : QString();
            subquery.append((!subquery.isEmpty() && subquery.last()) || next == u"select" || next == u"with"
                            || next == u"values");
            continue;
        }
        if (tokens.isSymbol(k, u')') && !subquery.isEmpty())
            subquery.removeLast();
        const QString key = tokens.word(k);
        const auto found = expressions.constFind(key);
        if (found == expressions.constEnd() || (!subquery.isEmpty() && subquery.last()))
            continue;
        const bool hasPrevious = k > 0;
        const bool hasNext = k + 1 < tokens.size();
        // Qualified, called, cast to or written as a type, or a literal's type or field.
        if ((hasNext && (tokens.isSymbol(k + 1, u'.') || tokens.isSymbol(k + 1, u'(')
                         || tokens.at(k + 1).kind == Kind::String))
            || (hasPrevious && (tokens.isSymbol(k - 1, u'.') || tokens.isSymbol(k - 1, u':')
                                || tokens.word(k - 1) == u"as" || tokens.at(k - 1).kind == Kind::String))
            || (k >= 2 && tokens.isSymbol(k - 1, u'(') && tokens.word(k - 2) == u"extract"))
            continue;
        if (isColumn(tokens.text(k).toString()))
            continue;
        resolved += QStringView(condition).mid(copied, tokens.at(k).start - copied);
        resolved += u'(' + *found + u')';
        copied = tokens.at(k).end;
    }
    resolved += QStringView(condition).mid(copied);
    return resolved;
}

} // namespace dataservice
