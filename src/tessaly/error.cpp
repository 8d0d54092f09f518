#include "tessaly/error.h"

namespace tessaly {

Error::Error(qint32 number, QString message)
    : m_number(number), m_message(std::move(message)), m_what(m_message.toUtf8())
{
}

QString Error::hexNumber(qint32 number)
{
    return QString::number(quint32(number), 16).toUpper();
}

} // namespace tessaly
