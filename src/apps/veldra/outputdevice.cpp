#include "outputdevice.h"

#include "outputfile.h"

OutputDevice::OutputDevice(OutputFile &out) : m_out(out)
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 OutputDevice::readData(char *, qint64)
{
    return -1;
}

qint64 OutputDevice::writeData(const char *data, qint64 size)
{
    m_out.write(data, size);
    return size;
}
