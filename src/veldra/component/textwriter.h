#pragma once

#include <QString>
#include <QStringView>

namespace veldra {

// The request as it is written: markup as it stands, text escaped as it is written, while the
// characters are still in the cache.
class TextWriter
{
public:
    qsizetype size() const { return m_text.size(); }
    void truncate(qsizetype size) { m_text.truncate(size); }
    void reserve(qsizetype capacity) { m_text.reserve(capacity); }
    QString toString() const { return m_text; }

    // Markup, as it stands.
    TextWriter &operator<<(QStringView markup)
    {
        m_text += markup;
        return *this;
    }
    TextWriter &operator<<(char16_t c)
    {
        m_text += QChar(c);
        return *this;
    }

    // Text, with "<", ">" and "&" as entities.
    TextWriter &text(QStringView text)
    {
        const char16_t *data = text.utf16();
        const qsizetype size = text.size();
        qsizetype runStart = 0;
        for (qsizetype at = findSpecial(data, 0, size); at < size; at = findSpecial(data, at + 1, size)) {
            m_text += QStringView(data + runStart, at - runStart);
            m_text += entity(data[at]);
            runStart = at + 1;
        }
        m_text += QStringView(data + runStart, size - runStart);
        return *this;
    }

    // Position of the first "<", ">" or "&" at or after from, or size.
    static qsizetype findSpecial(const char16_t *data, qsizetype from, qsizetype size)
    {
        // Blocks are tested whole and without branching, which the compiler turns into a few
        // vector compares: most text holds none of the three.
        constexpr qsizetype block = 16;
        for (; from + block <= size; from += block) {
            if (anySpecial(data + from, block))
                return firstSpecial(data, from);
        }
        return anySpecial(data + from, size - from) ? firstSpecial(data, from) : size;
    }

private:
    static bool anySpecial(const char16_t *data, qsizetype count)
    {
        unsigned any = 0;
        for (qsizetype i = 0; i < count; ++i)
            any |= unsigned(data[i] == u'<') | unsigned(data[i] == u'>')
                | unsigned(data[i] == u'&');
        return any != 0;
    }
    // The first special at or after from; there must be one.
    static qsizetype firstSpecial(const char16_t *data, qsizetype from)
    {
        while (data[from] != u'<' && data[from] != u'>' && data[from] != u'&')
            ++from;
        return from;
    }
    static QStringView entity(char16_t special)
    {
        return special == u'<' ? QStringView(u"&lt;")
            : special == u'>'  ? QStringView(u"&gt;")
                               : QStringView(u"&amp;");
    }

    QString m_text;
};

} // namespace veldra
