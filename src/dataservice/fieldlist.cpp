#include "fieldlist.h"

namespace dataservice {

namespace {

bool isIdentifierStart(QChar c)
{
    return c.isLetter() || c == u'_';
}

bool isBareIdentifier(QStringView text)
{
    if (text.isEmpty() || !isIdentifierStart(text.front()))
        return false;
    for (const QChar c : text) {
        if (!c.isLetterOrNumber() && c != u'_' && c != u'$')
            return false;
    }
    return true;
}

// Calls visit(position, character) for each character of text outside quotes and parentheses:
// commas and blanks there separate items and aliases, elsewhere they belong to an expression.
template<typename Visit>
void forEachTopLevel(const QString &text, Visit visit)
{
    int depth = 0;
    QChar quote;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
        } else if (c == u'\'' || c == u'"') {
            quote = c;
        } else if (c == u'(') {
            ++depth;
        } else if (c == u')') {
            --depth;
        } else if (depth == 0) {
            visit(i, c);
        }
    }
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

} // namespace

QStringList FieldList::items(const QString &fields)
{
    QStringList result;
    qsizetype start = 0;
    forEachTopLevel(fields, [&](qsizetype i, QChar c) {
        if (c == u',') {
            result.append(fields.mid(start, i - start).trimmed());
            start = i + 1;
        }
    });
    result.append(fields.mid(start).trimmed());
    return result;
}

QString FieldList::writtenName(const QString &item)
{
    // The last blank outside parentheses and quotes starts the alias, if there is one.
    qsizetype lastBlank = -1;
    forEachTopLevel(item, [&lastBlank](qsizetype i, QChar c) {
        if (c.isSpace())
            lastBlank = i;
    });
    const QStringView name = lastBlank >= 0 ? QStringView(item).mid(lastBlank + 1)
                                            : QStringView(item).mid(item.lastIndexOf(u'.') + 1);
    return isBareIdentifier(name) ? name.toString() : QString();
}

QList<QByteArray> FieldList::namesAsWritten(const QString &fields, const QList<QByteArray> &engineNames)
{
    const QStringList written = items(fields);
    if (written.size() != engineNames.size())
        return engineNames;
    QList<QByteArray> names = engineNames;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QByteArray name = writtenName(written.at(i)).toUtf8();
        if (!name.isEmpty() && name != names.at(i) && asciiLower(name) == names.at(i))
            names[i] = name;
    }
    return names;
}

} // namespace dataservice
