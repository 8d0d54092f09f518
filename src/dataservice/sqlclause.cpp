#include "sqlclause.h"

#include "errornumber.h"

#include <tessaly/error.h>

namespace dataservice {

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

void SqlClause::checkToken(const SqlToken &token, int *depth) const
{
    const QChar c = m_text.at(token.start);
    switch (token.kind) {
    case SqlToken::Kind::Unclosed: {
        qsizetype quote = token.start; // past a prefix such as E or U&
        while (m_text.at(quote) != u'\'' && m_text.at(quote) != u'"' && m_text.at(quote) != u'`'
               && m_text.at(quote) != u'[')
            ++quote;
        refuse(m_text.at(quote) == u'[' ? QStringLiteral("the [ is never closed")
                                        : QStringLiteral("the quote %1 is never closed").arg(m_text.at(quote)),
               quote);
    }
    case SqlToken::Kind::Comment:
        refuse(QStringLiteral("comments are not accepted"), token.start);
    case SqlToken::Kind::Ambiguous:
        refuse(QStringLiteral("a number runs into E'...', which PostgreSQL versions read differently"), token.start);
    case SqlToken::Kind::Word: {
        const qsizetype dollar = m_text.indexOf(u'$', token.start);
        if (dollar >= 0 && dollar < token.end)
            refuse(QStringLiteral("a $ outside quotes is not accepted"), dollar);
        return;
    }
    case SqlToken::Kind::Symbol:
        if (c == u';')
            refuse(QStringLiteral("a semicolon would start a second statement"), token.start);
        if (c == u'$')
            refuse(QStringLiteral("a $ outside quotes is not accepted"), token.start);
        if (c.unicode() < 0x20)
            refuse(QStringLiteral("control character U+%1 is not accepted")
                       .arg(c.unicode(), 4, 16, QLatin1Char('0')), token.start);
        if (c == u'(')
            ++*depth;
        else if (c == u')' && --*depth < 0)
            refuse(QStringLiteral("a ) closes a parenthesis that was never opened"), token.start);
        return;
    default:
        return;
    }
}

void SqlClause::check() const
{
    if (m_text.trimmed().isEmpty())
        refuse(QStringLiteral("it is empty"), 0);
    int depth = 0;
    for (const SqlToken &token : SqlLexer::tokens(m_text, m_dialect))
        checkToken(token, &depth);
    if (depth != 0)
        refuse(QStringLiteral("%1 parenthesis is never closed").arg(depth), m_text.size() - 1);
}

} // namespace dataservice
