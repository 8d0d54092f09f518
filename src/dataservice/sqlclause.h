#pragma once

#include "sqllexer.h"

#include <QString>

namespace dataservice {

// Checks one clause of a request (select list, condition, grouping, ordering) before it is
// pasted into a statement. The text is user text and treated as hostile: it must stay inside
// its clause, so quotes and parentheses must balance, and statement separators, comments and
// dollar quoting are refused outright. The text is read with the engine's own tokenizing rules
// (SqlLexer). The engines check again (one statement, read only); this is the first line, and
// it gives the user a message that names the clause.
class SqlClause
{
public:
    using Dialect = SqlDialect;

    SqlClause(QString name, QString text, Dialect dialect);

    // Throws tessaly::Error(StatementRefused) naming the clause and the reason.
    void check() const;

    const QString &text() const { return m_text; }

private:
    [[noreturn]] void refuse(const QString &reason, qsizetype position) const;
    void checkToken(const SqlToken &token, int *depth) const;

    QString m_name;
    QString m_text;
    Dialect m_dialect;
};

} // namespace dataservice
