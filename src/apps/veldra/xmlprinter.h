#pragma once

#include "outputdevice.h"
#include "resultprinter.h"

#include "dataservice/responsewriter.h"

// The data service's own response document, as the component receives it.
class XmlPrinter : public ResultPrinter
{
public:
    explicit XmlPrinter(OutputFile &out);

    void startTable(const QList<QByteArray> &columnNames) override;
    void startRecord() override { m_writer.startRecord(); }
    void value(const char *utf8, qsizetype size) override { m_writer.value(utf8, size); }
    void numberValue(const char *text, qsizetype size) override { m_writer.numberValue(text, size); }
    void blobValue(const char *data, qsizetype size) override { m_writer.blobValue(data, size); }
    void booleanValue(bool truth) override { m_writer.booleanValue(truth); }
    void nullValue() override { m_writer.nullValue(); }
    void endRecord() override;
    void endTable(qint64 rows, bool truncated, qint64 rowCap) override;

protected:
    void finish() override;

private:
    OutputDevice m_device;
    dataservice::ResponseWriter m_writer;
    bool m_anyRow = false;
};
