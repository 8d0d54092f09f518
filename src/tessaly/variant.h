#pragma once

#include "tessaly/tessaly_export.h"
#include "tessaly/zetvariable.h"

#include <QVariant>

namespace tessaly::variant {

// Conversions of slot values as the framework makes them. A value that cannot be converted
// raises TypeMismatch (or Overflow past the 32-bit range), so the slot keeps its old value.
TESSALY_EXPORT qint32 toLong(const QVariant &value);
TESSALY_EXPORT bool toBoolean(const QVariant &value);
TESSALY_EXPORT QString toText(const QVariant &value);

// The framework's variable holder: how an object travels inside a slot value.
TESSALY_EXPORT QVariant holding(const ObjectRef &object);
TESSALY_EXPORT ObjectRef heldObject(const QVariant &value);

} // namespace tessaly::variant
