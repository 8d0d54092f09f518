#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace dataservice {

enum class SqlDialect { SQLite, PostgreSQL };

// One token of a clause, as positions into the text it was cut from.
struct SqlToken
{
    enum class Kind {
        Blank,
        Word,       // a name or keyword as written, unquoted
        QuotedName, // "name", and on SQLite also `name` and [name]
        String,     // '...', with its prefix (E, B, X, N, U&) where the engine reads one
        Number,
        Comment,    // -- or /* to the end of the text
        Symbol,     // any other single character
        Unclosed,   // a quote or bracket that is never closed, to the end of the text
        Ambiguous,  // a number run into E'...': server versions read it differently
    };

    Kind kind;
    qsizetype start;
    qsizetype end;

    qsizetype size() const { return end - start; }
};

// Cuts clause text into tokens the way the engine's own tokenizer reads it, so that what the
// service decides about a quote, a name or a semicolon is what the engine will see. Every
// character from U+0080 up continues a name on both engines, as their tokenizers read bytes.
class SqlLexer
{
public:
    static QList<SqlToken> tokens(QStringView text, SqlDialect dialect);

    static bool isWordStart(QChar c);
    static bool isWordPart(QChar c);
};

} // namespace dataservice
