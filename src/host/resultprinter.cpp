#include "host/resultprinter.h"

namespace host {

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

} // namespace host
