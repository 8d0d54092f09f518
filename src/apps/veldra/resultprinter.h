#pragma once

#include "dataservice/rowsink.h"

#include <QString>

#include <memory>

#include "outputfile.h"

// Prints a record result in one of the output formats while the rows arrive.
class ResultPrinter : public dataservice::RowSink
{
public:
    explicit ResultPrinter(OutputFile &out) : m_out(out) {}

    // table, csv, json or xml; nullptr for another name.
    static std::unique_ptr<ResultPrinter> create(const QString &format, OutputFile &out);

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

    OutputFile &m_out;

private:
    bool m_complete = false;
    bool m_truncated = false;
    qint64 m_rows = 0;
    qint64 m_rowCap = 0;
};
