#include "xmlprinter.h"

#include "outputfile.h"

XmlPrinter::XmlPrinter(OutputFile &out) : ResultPrinter(out), m_device(out), m_writer(&m_device)
{
}

void XmlPrinter::startTable(const QList<QByteArray> &columnNames)
{
    m_writer.startResponse();
    m_writer.startTable(columnNames);
}

void XmlPrinter::endRecord()
{
    m_writer.endRecord();
    if (!m_anyRow) {
        m_writer.flush(); // the first row shows at once
        m_anyRow = true;
    }
    m_out.recordDone();
}

void XmlPrinter::endTable(qint64 rows, bool truncated, qint64 rowCap)
{
    m_writer.endTable(rows, truncated, rowCap);
    ResultPrinter::endTable(rows, truncated, rowCap);
}

void XmlPrinter::finish()
{
    m_writer.endResponse();
    m_out.flush();
}
