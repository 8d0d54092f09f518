#include "responsewriter.h"

#include "errornumber.h"
#include "utf8.h"

#include <tessaly/error.h>

#include <QIODevice>

#include <array>
#include <cstring>

namespace dataservice {

namespace {

constexpr qsizetype FlushSize = 64 * 1024;

// Length of the valid UTF-8 sequence at p that XML 1.0 may carry, or 0.
int xmlCharLength(const unsigned char *p, const unsigned char *end)
{
    char32_t code = 0;
    const int length = utf8SequenceLength(p, end, &code);
    return code == 0xFFFE || code == 0xFFFF ? 0 : length;
}

// ASCII bytes the text escaper must look at: markup characters and controls.
constexpr auto NeedsAttention = [] {
    std::array<bool, 128> table{};
    for (int c = 0; c < 0x20; ++c)
        table[c] = true;
    table['<'] = table['>'] = table['&'] = true;
    return table;
}();

// True when the bytes are UTF-8 text that XML 1.0 can carry.
bool isXmlText(const char *data, qsizetype size)
{
    const auto *p = reinterpret_cast<const unsigned char *>(data);
    const auto *end = p + size;
    while (p < end) {
        if (*p < 0x80) {
            if (*p < 0x20 && *p != '\t' && *p != '\n' && *p != '\r')
                return false;
            ++p;
            continue;
        }
        const int length = xmlCharLength(p, end);
        if (length == 0)
            return false;
        p += length;
    }
    return true;
}

// True for a value of white space alone: a DOM reader drops such text (the accessor would read
// an empty value), so it goes in base64 like text XML cannot carry.
bool isWhiteSpaceOnly(const char *data, qsizetype size)
{
    if (size == 0)
        return false;
    for (qsizetype i = 0; i < size; ++i) {
        const char c = data[i];
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r')
            return false;
    }
    return true;
}

} // namespace

ResponseWriter::ResponseWriter(QIODevice *out)
    : m_out(out)
{
    m_buffer.reserve(FlushSize + 4096);
}

void ResponseWriter::flush()
{
    if (m_buffer.isEmpty())
        return;
    if (m_out->write(m_buffer) != m_buffer.size())
        throw tessaly::Error(ErrorNumber::Unspecified,
                             QStringLiteral("The response could not be written: %1.").arg(m_out->errorString()));
    m_buffer.resize(0);
}

void ResponseWriter::maybeFlush()
{
    if (m_buffer.size() >= FlushSize)
        flush();
}

void ResponseWriter::appendEscaped(const char *data, qsizetype size, bool attribute)
{
    const char *run = data;
    const char *end = data + size;
    for (const char *p = data; p < end; ++p) {
        const char *replacement;
        switch (*p) {
        case '<': replacement = "&lt;"; break;
        case '>': replacement = "&gt;"; break;
        case '&': replacement = "&amp;"; break;
        case '\r': replacement = "&#13;"; break; // a parser would turn a bare CR into LF
        case '"': if (!attribute) continue; replacement = "&quot;"; break;
        case '\n': if (!attribute) continue; replacement = "&#10;"; break;
        case '\t': if (!attribute) continue; replacement = "&#9;"; break;
        default: continue;
        }
        m_buffer.append(run, p - run);
        m_buffer.append(replacement);
        run = p + 1;
    }
    m_buffer.append(run, end - run);
}

void ResponseWriter::startResponse()
{
    m_buffer.append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<response>");
}

void ResponseWriter::endResponse()
{
    m_buffer.append("</response>\n");
    flush();
}

void ResponseWriter::item(const QByteArray &name, const QByteArray &type)
{
    // A name XML 1.0 cannot carry (a control character) could not be asked for by name
    // either: leave it out rather than break the whole listing.
    if (!isXmlText(name.constData(), name.size()) || !isXmlText(type.constData(), type.size()))
        return;
    m_buffer.append("<item name=\"");
    appendEscaped(name.constData(), name.size(), true);
    if (!type.isEmpty()) {
        m_buffer.append("\" type=\"");
        appendEscaped(type.constData(), type.size(), true);
    }
    m_buffer.append("\"/>");
    maybeFlush();
}

void ResponseWriter::startTable(const QList<QByteArray> &columnNames)
{
    m_fieldStarts.clear();
    for (const QByteArray &name : columnNames) {
        QByteArray saved;
        saved.swap(m_buffer);
        m_buffer.append("<field name=\"");
        if (isXmlText(name.constData(), name.size()))
            appendEscaped(name.constData(), name.size(), true);
        else
            m_buffer.append(name.toBase64()); // a name XML cannot carry; rare enough to keep simple
        m_buffer.append('"');
        m_fieldStarts.append(m_buffer);
        m_buffer.swap(saved);
    }
    m_buffer.append("<table>");
}

void ResponseWriter::startRecord()
{
    m_buffer.append("<record>");
    m_column = 0;
}

void ResponseWriter::value(const char *utf8, qsizetype size)
{
    if (isWhiteSpaceOnly(utf8, size)) {
        blobValue(utf8, size);
        return;
    }
    const qsizetype mark = m_buffer.size();
    m_buffer.append(m_fieldStarts.at(m_column));
    m_buffer.append('>');
    if (!appendText(utf8, size)) {
        m_buffer.resize(mark);
        blobValue(utf8, size);
        return;
    }
    m_buffer.append("</field>");
    ++m_column;
}

// Escapes and checks in one pass; false when the bytes are not text XML can carry.
bool ResponseWriter::appendText(const char *data, qsizetype size)
{
    const auto *p = reinterpret_cast<const unsigned char *>(data);
    const auto *end = p + size;
    const auto *run = p;
    while (p < end) {
        const unsigned char c = *p;
        if (c >= 0x80) {
            const int length = xmlCharLength(p, end);
            if (length == 0)
                return false;
            p += length;
            continue;
        }
        if (!NeedsAttention[c]) {
            ++p;
            continue;
        }
        const char *replacement;
        switch (c) {
        case '<': replacement = "&lt;"; break;
        case '>': replacement = "&gt;"; break;
        case '&': replacement = "&amp;"; break;
        case '\r': replacement = "&#13;"; break;
        case '\t':
        case '\n': ++p; continue;
        default: return false; // other control characters
        }
        m_buffer.append(reinterpret_cast<const char *>(run), p - run);
        m_buffer.append(replacement);
        run = ++p;
    }
    m_buffer.append(reinterpret_cast<const char *>(run), end - run);
    return true;
}

void ResponseWriter::blobValue(const char *data, qsizetype size)
{
    m_buffer.append(m_fieldStarts.at(m_column++));
    m_buffer.append(" encoding=\"base64\">");
    m_buffer.append(QByteArray::fromRawData(data, size).toBase64());
    m_buffer.append("</field>");
}

void ResponseWriter::nullValue()
{
    m_buffer.append(m_fieldStarts.at(m_column++));
    m_buffer.append(" null=\"true\"/>");
}

void ResponseWriter::endRecord()
{
    m_buffer.append("</record>");
    maybeFlush();
}

void ResponseWriter::endTable(qint64 rows, bool truncated, qint64 rowCap)
{
    m_buffer.append("</table><result rows=\"");
    m_buffer.append(QByteArray::number(rows));
    m_buffer.append(truncated ? "\" truncated=\"true\" rowcap=\"" : "\" truncated=\"false\" rowcap=\"");
    m_buffer.append(QByteArray::number(rowCap));
    m_buffer.append("\"/>");
}

} // namespace dataservice
