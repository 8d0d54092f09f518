#include "sqlclause.h"

#include "errornumber.h"

#include <tessaly/error.h>

namespace dataservice {

namespace {

bool isIdentifierChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_';
}

} // namespace

SqlClause::SqlClause(QString name, QString text, Dialect dialect)
    : m_name(std::move(name)), m_text(std::move(text)), m_dialect(dialect)
{
}

void SqlClause::refuse(const QString &reason, qsizetype position) const
{
    throw tessaly::Error(ErrorNumber::StatementRefused,
                         QStringLiteral("The %1 is refused at character %2: %3.")
                             .arg(m_name).arg(position + 1).arg(reason));
}

// Index just past the closing quote that pairs with the one at start.
qsizetype SqlClause::skipQuoted(qsizetype start, QChar close, bool backslashEscapes) const
{
    for (qsizetype i = start + 1; i < m_text.size(); ++i) {
        const QChar c = m_text.at(i);
        if (backslashEscapes && c == u'\\') {
            ++i;
        } else if (c == close) {
            if (i + 1 < m_text.size() && m_text.at(i + 1) == close) {
                ++i; // doubled quote stands for itself
                continue;
            }
            return i + 1;
        }
    }
    refuse(QStringLiteral("the quote %1 is never closed").arg(m_text.at(start)), start);
}

qsizetype SqlClause::skipBracketed(qsizetype start) const
{
    const qsizetype end = m_text.indexOf(u']', start + 1);
    if (end < 0)
        refuse(QStringLiteral("the [ is never closed"), start);
    return end + 1;
}

// When a quoted token starts at i, the index past it; otherwise -1.
qsizetype SqlClause::quotedEnd(qsizetype i) const
{
    const QChar c = m_text.at(i);
    if (c == u'\'') {
        // E'...' strings take backslash escapes on PostgreSQL (plain strings do not: the
        // session turns standard_conforming_strings on). SQLite has no such strings: there
        // E is a name and the quote starts a plain string.
        const bool escapes = m_dialect == Dialect::PostgreSQL && i > 0
                             && (m_text.at(i - 1) == u'E' || m_text.at(i - 1) == u'e')
                             && (i < 2 || !isIdentifierChar(m_text.at(i - 2)));
        return skipQuoted(i, c, escapes);
    }
    if (c == u'"')
        return skipQuoted(i, c, false);
    if (m_dialect == Dialect::SQLite && c == u'`')
        return skipQuoted(i, c, false);
    if (m_dialect == Dialect::SQLite && c == u'[')
        return skipBracketed(i);
    return -1;
}

void SqlClause::check() const
{
    if (m_text.trimmed().isEmpty())
        refuse(QStringLiteral("it is empty"), 0);
    int depth = 0;
    for (qsizetype i = 0; i < m_text.size();) {
        const qsizetype pastQuote = quotedEnd(i);
        if (pastQuote >= 0) {
            i = pastQuote;
            continue;
        }
        const QChar c = m_text.at(i);
        const QChar next = i + 1 < m_text.size() ? m_text.at(i + 1) : QChar();
        if (c == u';')
            refuse(QStringLiteral("a semicolon would start a second statement"), i);
        if ((c == u'-' && next == u'-') || (c == u'/' && next == u'*'))
            refuse(QStringLiteral("comments are not accepted"), i);
        if (c == u'$')
            refuse(QStringLiteral("a $ outside quotes is not accepted"), i);
        if (c.unicode() < 0x20 && c != u'\t' && c != u'\n' && c != u'\r')
            refuse(QStringLiteral("control character U+%1 is not accepted")
                       .arg(c.unicode(), 4, 16, QLatin1Char('0')), i);
        if (c == u'(') {
            ++depth;
        } else if (c == u')' && --depth < 0) {
            refuse(QStringLiteral("a ) closes a parenthesis that was never opened"), i);
        }
        ++i;
    }
    if (depth != 0)
        refuse(QStringLiteral("%1 parenthesis is never closed").arg(depth), m_text.size() - 1);
}

} // namespace dataservice
