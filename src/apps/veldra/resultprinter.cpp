#include "resultprinter.h"

#include "csvprinter.h"
#include "outputfile.h"
#include "jsonprinter.h"
#include "tableprinter.h"
#include "xmlprinter.h"

std::unique_ptr<ResultPrinter> ResultPrinter::create(const QString &format, OutputFile &out)
{
    if (format == u"table")
        return std::make_unique<TablePrinter>(out);
    if (format == u"csv")
        return std::make_unique<CsvPrinter>(out);
    if (format == u"json")
        return std::make_unique<JsonPrinter>(out);
    if (format == u"xml")
        return std::make_unique<XmlPrinter>(out);
    return nullptr;
}

void ResultPrinter::endTable(qint64 rows, bool truncated, qint64 rowCap)
{
    m_rows = rows;
    m_truncated = truncated;
    m_rowCap = rowCap;
    finish();
    m_complete = true;
}

void ResultPrinter::abandon()
{
    m_out.flush();
}
