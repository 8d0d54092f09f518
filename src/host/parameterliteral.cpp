#include "host/parameterliteral.h"

#include "tessaly/error.h"

#include <QRegularExpression>

namespace host {

std::optional<QDate> relativeDate(QStringView words, const QDate &today)
{
    static const QRegularExpression pattern(
            QStringLiteral(R"(^\s*(today|start-of-week|start-of-month|start-of-year)\s*(?:([+-])\s*(\d{1,5})\s*([dwmy]))?\s*$)"),
            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(words.toString());
    if (!match.hasMatch() || !today.isValid())
        return std::nullopt;
    const QString base = match.captured(1).toLower();
    QDate date = today;
    if (base == u"start-of-week")
        date = today.addDays(1 - today.dayOfWeek()); // weeks start on Monday (ISO 8601)
    else if (base == u"start-of-month")
        date = QDate(today.year(), today.month(), 1);
    else if (base == u"start-of-year")
        date = QDate(today.year(), 1, 1);
    if (match.capturedLength(2) == 0)
        return date;
    const int amount = match.captured(3).toInt() * (match.captured(2) == u"-" ? -1 : 1);
    switch (match.captured(4).toLower().at(0).unicode()) {
    case 'd': return date.addDays(amount);
    case 'w': return date.addDays(7 * qint64(amount));
    case 'm': return date.addMonths(amount);
    default: return date.addYears(amount);
    }
}

bool isRelativeDate(QStringView words)
{
    return relativeDate(words, QDate(2000, 1, 1)).has_value();
}

QString dateLiteral(const QDate &date, const QString &provider)
{
    Q_UNUSED(provider) // the same on both engines today; the parameter keeps callers honest
    return u'\'' + date.toString(Qt::ISODate) + u'\'';
}

QString textLiteral(const QString &text, const QString &provider)
{
    Q_UNUSED(provider)
    if (text.contains(QChar(0)))
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                             QStringLiteral("\"%1\" holds a NUL character, which no database text can hold")
                                     .arg(QString(text).replace(QChar(0), QStringLiteral("\\0"))));
    QString quoted = text;
    quoted.replace(u'\'', QStringLiteral("''"));
    return u'\'' + quoted + u'\'';
}

QString joinLiterals(const QStringList &literals)
{
    return literals.join(u',');
}

QStringList splitLiterals(const QString &slotValue)
{
    QStringList literals;
    QString current;
    bool inQuotes = false;
    for (const QChar c : slotValue) {
        if (c == u'\'')
            inQuotes = !inQuotes; // a doubled quote toggles twice
        if (c == u',' && !inQuotes) {
            literals.append(current.trimmed());
            current.clear();
            continue;
        }
        current += c;
    }
    if (!current.trimmed().isEmpty() || !literals.isEmpty())
        literals.append(current.trimmed());
    literals.removeAll(QString());
    return literals;
}

QString unquoted(const QString &literal)
{
    if (literal.size() < 2 || !literal.startsWith(u'\'') || !literal.endsWith(u'\''))
        return literal;
    return literal.mid(1, literal.size() - 2).replace(QStringLiteral("''"), QStringLiteral("'"));
}

bool isPlainNumber(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral(R"(^-?(0|[1-9]\d*)(\.\d+)?([eE][+-]?\d+)?$)"));
    return pattern.match(text).hasMatch();
}

} // namespace host
