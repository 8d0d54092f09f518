#pragma once

#include "host/resultprinter.h"

namespace host {

// RFC 4180 with CR LF line ends. The header line is always printed, even for no rows. NULL is
// an empty field and empty text a quoted empty field (""), so the two stay apart; a BLOB is
// \x followed by its bytes in hex.
class CsvPrinter : public ResultPrinter
{
public:
    using ResultPrinter::ResultPrinter;

    void startTable(const QList<QByteArray> &columnNames) override;
    void startRecord() override { m_column = 0; }
    void value(const char *utf8, qsizetype size) override;
    void numberValue(const char *text, qsizetype size) override;
    void blobValue(const char *data, qsizetype size) override;
    void booleanValue(bool truth) override { numberValue(truth ? "t" : "f", 1); }
    void nullValue() override { separate(); }
    void endRecord() override;

protected:
    void finish() override;

private:
    void separate()
    {
        if (m_column++ > 0)
            m_out.put(',');
    }

    int m_column = 0;
};

} // namespace host
