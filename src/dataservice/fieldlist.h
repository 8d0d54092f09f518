#pragma once

#include "sqllexer.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

namespace dataservice {

// The select list of a record request read as items, "expression [[AS] alias]", separated by
// commas outside parentheses and quotes, with the engine's tokenizing rules.
//
// An alias is a plain name that is no reserved word of either engine, or a double-quoted name.
// Items with an alias that one engine takes only after AS get it in the statement; an item
// the service cannot place (two names after its expression, a reserved word where an alias
// goes) is refused naming the item, before any engine sees it.
class FieldList
{
public:
    struct Item
    {
        qsizetype start = 0;        // of the item in the field text
        QString expression;         // without the alias
        QString alias;              // as written (quotes included); empty when there is none
        qsizetype aliasStart = -1;  // in the field text
        bool aliasAfterAs = false;
    };

    // Throws tessaly::Error(StatementRefused) for an item it cannot take.
    FieldList(const QString &fields, SqlDialect dialect);

    const QList<Item> &items() const { return m_items; }

    // The select list as the engine receives it: the request's text, with AS put before each
    // alias that needs it.
    QString statementText() const;

    // Result column names with each one the engine folded to lower case replaced by the
    // spelling of the request; names are kept as they are when the items cannot be matched
    // to the columns one to one (a "*" in the list).
    QList<QByteArray> namesAsWritten(const QList<QByteArray> &engineNames) const;

    // The condition with each plain name that is a select-list alias, and that the engine
    // could not resolve itself, replaced by the aliased item's expression in parentheses.
    // Never replaced: names in string literals, quoted or qualified names, function names,
    // type names, and names isColumn says are columns of the request's tables (asked only
    // when a name matches an alias).
    QString resolveAliases(const QString &condition, const std::function<bool(const QString &)> &isColumn) const;

    // A reserved word of SQLite or PostgreSQL, which an alias must not be unless quoted.
    static bool isReservedWord(QStringView word);

private:
    void readItem(qsizetype start, qsizetype end);
    [[noreturn]] void refuse(const Item &item, const QString &reason) const;

    QString m_text;
    SqlDialect m_dialect;
    QList<SqlToken> m_tokens;
    QList<Item> m_items;
};

} // namespace dataservice
