#pragma once

#include "rowsink.h"

#include <QByteArray>
#include <QList>

class QIODevice;

namespace dataservice {

// Writes the response text to a device as the rows arrive, through a small buffer, so a
// result is never held whole in memory. Values come as UTF-8 bytes straight from the engine.
//   <response><item name="orders" type="table"/>...</response>
//   <response><table><record><field name="id">1</field>...</record>...</table>
//             <result rows="2" truncated="false" rowcap="100000"/></response>
class ResponseWriter : public RowSink
{
public:
    explicit ResponseWriter(QIODevice *out);

    void startResponse();
    void endResponse();

    // One navigation entry; type may be empty.
    void item(const QByteArray &name, const QByteArray &type);

    void startTable(const QList<QByteArray> &columnNames) override;
    void startRecord() override;
    void value(const char *utf8, qsizetype size) override;
    // The protocol carries numbers as text.
    void numberValue(const char *text, qsizetype size) override { value(text, size); }
    // As the engine prints it: t or f.
    void booleanValue(bool truth) override { value(truth ? "t" : "f", 1); }
    void blobValue(const char *data, qsizetype size) override;
    void nullValue() override;
    void endRecord() override;
    void endTable(qint64 rows, bool truncated, qint64 rowCap) override;

    void flush();

private:
    void appendEscaped(const char *data, qsizetype size, bool attribute);
    bool appendText(const char *data, qsizetype size);
    void maybeFlush();

    QIODevice *m_out;
    QByteArray m_buffer;
    QList<QByteArray> m_fieldStarts; // "<field name=\"...\"" per column
    int m_column = 0;
};

} // namespace dataservice
