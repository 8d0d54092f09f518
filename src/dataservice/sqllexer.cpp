#include "sqllexer.h"

namespace dataservice {

namespace {

using Kind = SqlToken::Kind;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Index past the quote that closes the one at start, or -1 when none does. A doubled quote
// stands for itself; with backslash escapes (PostgreSQL's E'...') a backslash takes the next
// character whatever it is.
qsizetype pastClosingQuote(QStringView text, qsizetype start, QChar close, bool backslashEscapes)
{
    for (qsizetype i = start + 1; i < text.size(); ++i) {
        const QChar c = text[i];
        if (backslashEscapes && c == u'\\') {
            ++i;
        } else if (c == close) {
            if (i + 1 < text.size() && text[i + 1] == close) {
                ++i;
                continue;
            }
            return i + 1;
        }
    }
    return -1;
}

bool isLetter(QStringView word, char16_t lower)
{
    return word.size() == 1 && (word[0] == QChar(lower) || word[0] == QChar(lower - 32));
}

} // namespace

bool SqlLexer::isWordStart(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || c.unicode() >= 0x80;
}

bool SqlLexer::isWordPart(QChar c)
{
    return isWordStart(c) || isDigit(c) || c == u'$';
}

QList<SqlToken> SqlLexer::tokens(QStringView text, SqlDialect dialect)
{
    const bool postgres = dialect == SqlDialect::PostgreSQL;
    const qsizetype n = text.size();
    const auto at = [&](qsizetype k) { return k < n ? text[k] : QChar(); };
    QList<SqlToken> result;
    qsizetype i = 0;
    while (i < n) {
        const qsizetype start = i;
        const QChar c = text[i];
        Kind kind = Kind::Symbol;
        // A closing quote or bracket from here on makes a quoted token; none makes it unclosed.
        const auto quoted = [&](qsizetype quote, QChar close, bool escapes, Kind closedKind) {
            const qsizetype end = close == u']' ? text.indexOf(u']', quote + 1) + 1
                                                : pastClosingQuote(text, quote, close, escapes);
            i = end > 0 ? end : n;
            kind = end > 0 ? closedKind : Kind::Unclosed;
        };
        if (isBlank(c)) {
            while (i < n && isBlank(text[i]))
                ++i;
            kind = Kind::Blank;
        } else if ((c == u'-' && at(i + 1) == u'-') || (c == u'/' && at(i + 1) == u'*')) {
            i = n;
            kind = Kind::Comment;
        } else if (c == u'\'') {
            quoted(i, c, false, Kind::String);
        } else if (c == u'"') {
            quoted(i, c, false, Kind::QuotedName);
        } else if (!postgres && c == u'`') {
            quoted(i, c, false, Kind::QuotedName);
        } else if (!postgres && c == u'[') {
            quoted(i, u']', false, Kind::QuotedName);
        } else if (isDigit(c) || (c == u'.' && isDigit(at(i + 1)))) {
            while (i < n && (isDigit(text[i]) || text[i] == u'.'))
                ++i;
            if ((at(i) == u'e' || at(i) == u'E')
                && (isDigit(at(i + 1)) || ((at(i + 1) == u'+' || at(i + 1) == u'-') && isDigit(at(i + 2)))))
                i += 2;
            // Both engines read letters run into a number as part of it (and refuse it); older
            // PostgreSQL servers read 1E'...' as a number and an escape string instead.
            while (i < n && isWordPart(text[i]))
                ++i;
            const QChar last = text[i - 1];
            kind = postgres && (last == u'e' || last == u'E') && at(i) == u'\'' ? Kind::Ambiguous : Kind::Number;
        } else if (isWordStart(c)) {
            while (i < n && isWordPart(text[i]))
                ++i;
            kind = Kind::Word;
            const QStringView word = text.mid(start, i - start);
            if (at(i) == u'\'') {
                // A one-letter prefix run into a quote makes one literal where the engine reads one.
                if (postgres && isLetter(word, u'e'))
                    quoted(i, u'\'', true, Kind::String);
                else if (postgres ? isLetter(word, u'b') || isLetter(word, u'x') || isLetter(word, u'n')
                                  : isLetter(word, u'x'))
                    quoted(i, u'\'', false, Kind::String);
            } else if (postgres && isLetter(word, u'u') && at(i) == u'&' && (at(i + 1) == u'\'' || at(i + 1) == u'"')) {
                quoted(i + 1, at(i + 1), false, at(i + 1) == u'"' ? Kind::QuotedName : Kind::String);
            }
        } else {
            ++i;
        }
        result.append({kind, start, i});
    }
    return result;
}

} // namespace dataservice
