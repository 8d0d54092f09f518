#pragma once

#include "dataservice/rowsink.h"
#include "host/rowoutput.h"

namespace host {

// Writes a record result in one output format while the rows arrive. The hosts share the
// writers, so `veldra run` and `veldra serve` give the same bytes for the same rows.
class ResultPrinter : public dataservice::RowSink
{
public:
    explicit ResultPrinter(RowOutput &out) : m_out(out) {}

    void endTable(qint64 rows, bool truncated, qint64 rowCap) override;

    // Ends what was printed of a result that failed part-way, so that it reaches the reader.
    void abandon();

    bool complete() const { return m_complete; }
    qint64 rows() const { return m_rows; }
    bool truncated() const { return m_truncated; }
    qint64 rowCap() const { return m_rowCap; }

protected:
    // Ends the output after the last row.
    virtual void finish() = 0;

    RowOutput &m_out;

private:
    bool m_complete = false;
    bool m_truncated = false;
    qint64 m_rows = 0;
    qint64 m_rowCap = 0;
};

} // namespace host
