#pragma once

#include "tessaly/zetvariable.h"

#include <QVariant>

namespace tessaly::variant {

// Conversions of slot values as the framework makes them. A value that cannot be converted
// raises TypeMismatch (or Overflow past the 32-bit range), so the slot keeps its old value.
qint32 toLong(const QVariant &value);
bool toBoolean(const QVariant &value);
QString toText(const QVariant &value);

// The framework's variable holder: how an object travels inside a slot value.
QVariant holding(const ObjectRef &object);
ObjectRef heldObject(const QVariant &value);

} // namespace tessaly::variant
