#pragma once

#include <QIODevice>

class OutputFile;

// A write-only device over an OutputFile, for writers that want a QIODevice. Writing only
// fills the file's buffer; the file's own writes report failures.
class OutputDevice : public QIODevice
{
public:
    explicit OutputDevice(OutputFile &out);

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    OutputFile &m_out;
};
