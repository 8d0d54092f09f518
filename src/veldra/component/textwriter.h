#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <memory>
#include <string>

namespace veldra {

// The request as it is written. A rebuild runs on every keystroke in a parameter input; as calls
// to QString::append, its hundred-odd small pieces cost more than everything else together, so
// they are copied inline into a buffer that holds a typical request without allocating.
// (QVarLengthArray would do, but its append is a call per piece.)
class TextWriter
{
public:
    TextWriter() = default;
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    qsizetype size() const { return m_size; }
    void truncate(qsizetype size) { m_size = qMin(size, m_size); }
    void reserve(qsizetype capacity)
    {
        if (capacity > m_capacity)
            grow(capacity - m_size);
    }
    QString toString() const { return QString::fromUtf16(m_data, m_size); }

    // Markup, as it stands.
    TextWriter &operator<<(QStringView markup)
    {
        put(markup.utf16(), markup.size());
        return *this;
    }
    TextWriter &operator<<(char16_t c)
    {
        put(&c, 1);
        return *this;
    }

    // Text, with "<", ">" and "&" as entities.
    TextWriter &text(QStringView text)
    {
        const qsizetype from = m_size;
        *this << text;
        escapeFrom(from);
        return *this;
    }

    // Puts "<", ">" and "&" as entities into what was written from position from on. Escaping
    // a whole element at once costs a single pass, where escaping each piece cost a pass apiece.
    void escapeFrom(qsizetype from)
    {
        const qsizetype first = findSpecial(m_data, from, m_size);
        if (first == m_size)
            return;
        const std::u16string rest(m_data + first, std::size_t(m_size - first));
        m_size = first;
        const char16_t *data = rest.data();
        const qsizetype size = qsizetype(rest.size());
        qsizetype runStart = 0;
        for (qsizetype at = 0; at < size; at = findSpecial(data, at + 1, size)) {
            put(data + runStart, at - runStart);
            *this << entity(data[at]);
            runStart = at + 1;
        }
        put(data + runStart, size - runStart);
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

    void put(const char16_t *chars, qsizetype count)
    {
        if (count > m_capacity - m_size)
            grow(count);
        std::copy_n(chars, count, m_data + m_size);
        m_size += count;
    }
    // Makes room for count more characters, at least doubling the capacity.
    void grow(qsizetype count)
    {
        const qsizetype capacity = qMax(2 * m_capacity, m_size + count);
        std::unique_ptr<char16_t[]> heap(new char16_t[std::size_t(capacity)]);
        std::copy_n(m_data, m_size, heap.get());
        m_heap = std::move(heap);
        m_data = m_heap.get();
        m_capacity = capacity;
    }

    static constexpr qsizetype localCapacity = 1024;
    char16_t m_local[localCapacity];
    std::unique_ptr<char16_t[]> m_heap;
    char16_t *m_data = m_local;
    qsizetype m_size = 0;
    qsizetype m_capacity = localCapacity;
};

} // namespace veldra
