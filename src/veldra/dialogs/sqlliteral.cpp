#include "veldra/dialogs/sqlliteral.h"

#include <QRegularExpression>

namespace veldra {

namespace {

// The number syntax both engines read.
const QRegularExpression &numberPattern()
{
    static const QRegularExpression pattern(
            QStringLiteral(R"(^[+-]?(\d+(\.\d*)?|\.\d+)([eE][+-]?\d+)?$)"));
    return pattern;
}

// A number as a database writes one out.
const QRegularExpression &plainNumberPattern()
{
    static const QRegularExpression pattern(QStringLiteral(R"(^-?(0|[1-9]\d*)(\.\d+)?([eE][+-]?\d+)?$)"));
    return pattern;
}

bool isWord(QStringView item)
{
    for (const char *word : { "NULL", "TRUE", "FALSE" }) {
        if (item.compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

// Reads one literal from position; true when there was one, position then past it.
bool readLiteral(const QString &text, qsizetype &position)
{
    if (position < text.size() && text.at(position) == u'\'') {
        for (qsizetype i = position + 1; i < text.size(); ++i) {
            if (text.at(i) != u'\'')
                continue;
            if (i + 1 < text.size() && text.at(i + 1) == u'\'') {
                ++i;
                continue;
            }
            position = i + 1;
            return true;
        }
        return false;
    }
    qsizetype end = position;
    while (end < text.size() && text.at(end) != u',' && !text.at(end).isSpace())
        ++end;
    const QString item = text.mid(position, end - position);
    position = end;
    return isWord(item) || numberPattern().match(item).hasMatch();
}

void skipBlanks(const QString &text, qsizetype &position)
{
    while (position < text.size() && text.at(position).isSpace())
        ++position;
}

} // namespace

bool isSqlLiteral(const QString &value)
{
    qsizetype position = 0;
    for (;;) {
        skipBlanks(value, position);
        if (!readLiteral(value, position))
            return false;
        skipBlanks(value, position);
        if (position == value.size())
            return true;
        if (value.at(position) != u',')
            return false;
        ++position;
    }
}

QString sqlTextLiteral(const QString &text)
{
    QString doubled = text;
    doubled.replace(u'\'', QLatin1String("''"));
    return u'\'' + doubled + u'\'';
}

QString literalOfContent(const QString &content)
{
    return plainNumberPattern().match(content).hasMatch() ? content : sqlTextLiteral(content);
}

QString quotedValue(const QString &value)
{
    return isSqlLiteral(value) ? value : sqlTextLiteral(value);
}

} // namespace veldra
