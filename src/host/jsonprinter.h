#pragma once

#include "host/resultprinter.h"

namespace host {

// One JSON object: "columns", the column names in order (duplicates kept), then "rows", one
// array of values per row in column order, then "truncated". Numbers are JSON numbers (a
// value JSON cannot write as a number, such as NaN, is a string), NULL is null, text is a
// string, a Boolean true or false, and a BLOB or bytes that are not UTF-8 an object
// {"base64": "..."}.
class JsonPrinter : public ResultPrinter
{
public:
    using ResultPrinter::ResultPrinter;

    void startTable(const QList<QByteArray> &columnNames) override;
    void startRecord() override;
    void value(const char *utf8, qsizetype size) override;
    void numberValue(const char *text, qsizetype size) override;
    void blobValue(const char *data, qsizetype size) override;
    void booleanValue(bool truth) override;
    void nullValue() override;
    void endRecord() override;

    // True when text is a number as JSON writes one.
    static bool isJsonNumber(const char *text, qsizetype size);

protected:
    void finish() override;

private:
    void separate()
    {
        if (m_column++ > 0)
            m_out.write(", ", 2);
    }
    // False, with nothing written, when the bytes are not UTF-8.
    bool writeString(const char *utf8, qsizetype size);

    int m_column = 0;
    bool m_anyRow = false;
};

} // namespace host
