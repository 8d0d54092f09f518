#include "textwidth.h"

#include <QList>
#include <QTextBoundaryFinder>

namespace textwidth {

namespace {

bool isWide(char32_t code)
{
    return (code >= 0x1100 && code <= 0x115F) || (code >= 0x231A && code <= 0x231B)
            || (code >= 0x2329 && code <= 0x232A) || (code >= 0x2E80 && code <= 0x303E)
            || (code >= 0x3041 && code <= 0x33FF) || (code >= 0x3400 && code <= 0x4DBF)
            || (code >= 0x4E00 && code <= 0x9FFF) || (code >= 0xA000 && code <= 0xA4CF)
            || (code >= 0xA960 && code <= 0xA97F) || (code >= 0xAC00 && code <= 0xD7A3)
            || (code >= 0xF900 && code <= 0xFAFF) || (code >= 0xFE10 && code <= 0xFE19)
            || (code >= 0xFE30 && code <= 0xFE6F) || (code >= 0xFF00 && code <= 0xFF60)
            || (code >= 0xFFE0 && code <= 0xFFE6) || (code >= 0x1F300 && code <= 0x1F64F)
            || (code >= 0x1F900 && code <= 0x1F9FF) || (code >= 0x20000 && code <= 0x3FFFD);
}

bool isZeroWidth(char32_t code)
{
    switch (QChar::category(code)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

bool isPrintableAscii(const QString &text)
{
    for (const QChar c : text) {
        if (c.unicode() < 0x20 || c.unicode() >= 0x7F)
            return false;
    }
    return true;
}

} // namespace

int displayWidth(const QString &text)
{
    if (isPrintableAscii(text))
        return int(text.size());
    int width = 0;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = graphemes.toNextBoundary(); end > 0; start = end, end = graphemes.toNextBoundary()) {
        // The cluster's width is its widest character's: a base and its marks take the base's.
        int cluster = 0;
        for (const uint code : QStringView(text).mid(start, end - start).toUcs4())
            cluster = std::max(cluster, isWide(code) ? 2 : isZeroWidth(code) ? 0 : 1);
        width += cluster;
    }
    return width;
}

QString visible(const QString &text)
{
    bool plain = true;
    for (const QChar c : text)
        plain = plain && c.unicode() >= 0x20 && c.unicode() != 0x7F && !(c.unicode() >= 0x80 && c.unicode() < 0xA0);
    if (plain)
        return text;
    QString shown;
    shown.reserve(text.size() + 8);
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u == u'\n')
            shown += QStringLiteral("\\n");
        else if (u == u'\t')
            shown += QStringLiteral("\\t");
        else if (u == u'\r')
            shown += QStringLiteral("\\r");
        else if (u < 0x20 || u == 0x7F)
            shown += QStringLiteral("\\x%1").arg(int(u), 2, 16, QLatin1Char('0'));
        else if (u >= 0x80 && u < 0xA0)
            shown += QStringLiteral("\\u%1").arg(int(u), 4, 16, QLatin1Char('0'));
        else
            shown += c;
    }
    return shown;
}

} // namespace textwidth
