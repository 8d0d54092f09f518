#include "host/jsonprinter.h"

#include "dataservice/utf8.h"

namespace host {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

bool JsonPrinter::isJsonNumber(const char *text, qsizetype size)
{
    const char *p = text;
    const char *end = text + size;
    if (p < end && *p == '-')
        ++p;
    if (p == end || !isDigit(*p))
        return false;
    if (*p == '0')
        ++p;
    else
        while (p < end && isDigit(*p))
            ++p;
    if (p < end && *p == '.') {
        if (++p == end || !isDigit(*p))
            return false;
        while (p < end && isDigit(*p))
            ++p;
    }
    if (p < end && (*p == 'e' || *p == 'E')) {
        ++p;
        if (p < end && (*p == '+' || *p == '-'))
            ++p;
        if (p == end || !isDigit(*p))
            return false;
        while (p < end && isDigit(*p))
            ++p;
    }
    return p == end;
}

bool JsonPrinter::writeString(const char *utf8, qsizetype size)
{
    const auto *begin = reinterpret_cast<const unsigned char *>(utf8);
    const auto *end = begin + size;
    for (const unsigned char *p = begin; p < end;) {
        if (*p < 0x80) {
            ++p;
            continue;
        }
        char32_t code = 0;
        const int length = dataservice::utf8SequenceLength(p, end, &code);
        if (length == 0)
            return false;
        p += length;
    }
    static const char hex[] = "0123456789abcdef";
    m_out.put('"');
    const char *run = utf8;
    for (const char *p = utf8; p < utf8 + size; ++p) {
        const auto c = static_cast<unsigned char>(*p);
        if (c >= 0x20 && c != '"' && c != '\\')
            continue;
        m_out.write(run, p - run);
        run = p + 1;
        switch (c) {
        case '"': m_out.write("\\\"", 2); break;
        case '\\': m_out.write("\\\\", 2); break;
        case '\n': m_out.write("\\n", 2); break;
        case '\r': m_out.write("\\r", 2); break;
        case '\t': m_out.write("\\t", 2); break;
        default: {
            const char escape[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 0xF]};
            m_out.write(escape, sizeof escape);
        }
        }
    }
    m_out.write(run, utf8 + size - run);
    m_out.put('"');
    return true;
}

void JsonPrinter::startTable(const QList<QByteArray> &columnNames)
{
    m_out.write("{\"columns\": [");
    for (const QByteArray &name : columnNames) {
        separate();
        if (!writeString(name.constData(), name.size()))
            writeString(name.toBase64().constData(), name.toBase64().size());
    }
    m_out.write("],\n \"rows\": [");
    m_out.flush();
}

void JsonPrinter::startRecord()
{
    m_out.write(m_anyRow ? ",\n  [" : "\n  [");
    m_anyRow = true;
    m_column = 0;
}

void JsonPrinter::value(const char *utf8, qsizetype size)
{
    separate();
    if (!writeString(utf8, size)) {
        --m_column;
        blobValue(utf8, size);
    }
}

void JsonPrinter::numberValue(const char *text, qsizetype size)
{
    if (!isJsonNumber(text, size)) {
        value(text, size);
        return;
    }
    separate();
    m_out.write(text, size);
}

void JsonPrinter::blobValue(const char *data, qsizetype size)
{
    separate();
    m_out.write("{\"base64\": \"");
    m_out.write(QByteArray::fromRawData(data, size).toBase64());
    m_out.write("\"}");
}

void JsonPrinter::booleanValue(bool truth)
{
    separate();
    m_out.write(truth ? "true" : "false");
}

void JsonPrinter::nullValue()
{
    separate();
    m_out.write("null", 4);
}

void JsonPrinter::endRecord()
{
    m_out.put(']');
    m_out.recordDone();
}

void JsonPrinter::finish()
{
    m_out.write(m_anyRow ? "\n ],\n \"truncated\": " : "],\n \"truncated\": ");
    m_out.write(truncated() ? "true}\n" : "false}\n");
    m_out.flush();
}

} // namespace host
