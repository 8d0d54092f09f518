#include "host/csvprinter.h"

namespace host {

namespace {

bool needsQuotes(const char *data, qsizetype size)
{
    for (qsizetype i = 0; i < size; ++i) {
        const char c = data[i];
        if (c == ',' || c == '"' || c == '\n' || c == '\r')
            return true;
    }
    return size == 0;
}

} // namespace

void CsvPrinter::startTable(const QList<QByteArray> &columnNames)
{
    for (const QByteArray &name : columnNames)
        value(name.constData(), name.size());
    m_out.write("\r\n", 2);
    m_out.flush();
}

void CsvPrinter::value(const char *utf8, qsizetype size)
{
    separate();
    if (!needsQuotes(utf8, size)) {
        m_out.write(utf8, size);
        return;
    }
    m_out.put('"');
    const char *run = utf8;
    for (const char *p = utf8; p < utf8 + size; ++p) {
        if (*p == '"') {
            m_out.write(run, p - run + 1);
            m_out.put('"');
            run = p + 1;
        }
    }
    m_out.write(run, utf8 + size - run);
    m_out.put('"');
}

void CsvPrinter::numberValue(const char *text, qsizetype size)
{
    separate();
    m_out.write(text, size);
}

void CsvPrinter::blobValue(const char *data, qsizetype size)
{
    separate();
    m_out.write("\\x", 2);
    m_out.write(QByteArray::fromRawData(data, size).toHex());
}

void CsvPrinter::endRecord()
{
    m_out.write("\r\n", 2);
    m_out.recordDone();
}

void CsvPrinter::finish()
{
    m_out.flush();
}

} // namespace host
