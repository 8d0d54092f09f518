#pragma once

#include "tessaly/tessaly_export.h"

#include <QString>

#include <exception>

namespace tessaly {

// Error numbers the platform raises itself. Data-service errors carry their own numbers.
namespace ErrorNumber {
constexpr qint32 Fail = qint32(0x80004005);                 // unspecified failure
constexpr qint32 InvalidArgument = qint32(0x80070057);
constexpr qint32 SubscriptOutOfRange = qint32(0x800A0009);
constexpr qint32 TypeMismatch = qint32(0x800A000D);
constexpr qint32 Overflow = qint32(0x800A0006);
constexpr qint32 ObjectNotSet = qint32(0x800A005B);
constexpr qint32 BadFileFormat = qint32(0x800A0020);
constexpr qint32 FileAccess = qint32(0x800A004B);
} // namespace ErrorNumber

// An error raised to the caller: a 32-bit error number and a message for people.
class TESSALY_EXPORT Error : public std::exception
{
public:
    Error(qint32 number, QString message);

    qint32 number() const noexcept { return m_number; }
    const QString &message() const noexcept { return m_message; }
    const char *what() const noexcept override { return m_what.constData(); }

    // The number as shown to users: upper-case hexadecimal, no prefix, no leading zeros.
    static QString hexNumber(qint32 number);

private:
    qint32 m_number;
    QString m_message;
    QByteArray m_what;
};

} // namespace tessaly
