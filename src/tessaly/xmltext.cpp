#include "tessaly/xmltext.h"

namespace tessaly::xmltext {

namespace {

bool isCarriedUnit(char16_t unit, bool inAttribute)
{
    if (unit == u'\n' || unit == u'\t')
        return !inAttribute;
    if (unit < 0x20)
        return false; // includes the carriage return
    return unit != 0xFFFE && unit != 0xFFFF;
}

// Calls emit(index, carried) for every unit; surrogates count as carried only in pairs.
template<typename Emit>
void classify(const QString &text, bool inAttribute, Emit emit)
{
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char16_t unit = text.at(i).unicode();
        if (QChar::isHighSurrogate(unit) && i + 1 < n && QChar::isLowSurrogate(text.at(i + 1).unicode())) {
            emit(i, true);
            emit(i + 1, true);
            ++i;
        } else if (QChar::isSurrogate(unit)) {
            emit(i, false);
        } else {
            emit(i, isCarriedUnit(unit, inAttribute));
        }
    }
}

int hexValue(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return -1;
}

} // namespace

bool carriesUnchanged(const QString &text, bool inAttribute)
{
    bool all = true;
    classify(text, inAttribute, [&all](qsizetype, bool carried) { all = all && carried; });
    return all;
}

QString escape(const QString &text, bool inAttribute)
{
    QString out;
    out.reserve(text.size() + 16);
    classify(text, inAttribute, [&](qsizetype i, bool carried) {
        const QChar c = text.at(i);
        if (c == u'\\')
            out += QStringView(u"\\\\");
        else if (carried)
            out += c;
        else
        {
            out += QStringView(u"\\u");
            out += QString::number(c.unicode(), 16).rightJustified(4, u'0').toUpper();
        }
    });
    return out;
}

std::optional<QString> unescape(const QString &text)
{
    QString out;
    out.reserve(text.size());
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = text.at(i);
        if (c != u'\\') {
            out += c;
            continue;
        }
        if (i + 1 < n && text.at(i + 1) == u'\\') {
            out += u'\\';
            ++i;
            continue;
        }
        if (i + 6 > n || text.at(i + 1) != u'u')
            return std::nullopt;
        int value = 0;
        for (qsizetype k = i + 2; k < i + 6; ++k) {
            const int digit = hexValue(text.at(k).unicode());
            if (digit < 0)
                return std::nullopt;
            value = value * 16 + digit;
        }
        out += QChar(char16_t(value));
        i += 5;
    }
    return out;
}

} // namespace tessaly::xmltext
