#pragma once

#include <QtGlobal>

namespace dataservice {

// The numbers the data service raises (as tessaly::Error). FACILITY_ITF range, so they
// never collide with the platform's own numbers; 0x80004005 stays "unspecified".
namespace ErrorNumber {
constexpr qint32 Unspecified = qint32(0x80004005);
constexpr qint32 MalformedRequest = qint32(0x80045001);
constexpr qint32 UnknownProvider = qint32(0x80045002);
constexpr qint32 UnknownDataSource = qint32(0x80045003);
constexpr qint32 UnknownCatalog = qint32(0x80045004);
constexpr qint32 UnknownTable = qint32(0x80045005);
constexpr qint32 StatementRefused = qint32(0x80045006);
constexpr qint32 Timeout = qint32(0x80045007);
constexpr qint32 DatabaseError = qint32(0x80045008);
constexpr qint32 ConnectionFailed = qint32(0x80045009);
constexpr qint32 BadConfiguration = qint32(0x8004500A);
constexpr qint32 Busy = qint32(0x8004500B); // every connection of the pool stayed in use
} // namespace ErrorNumber

} // namespace dataservice
