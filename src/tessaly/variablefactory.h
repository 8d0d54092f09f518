#pragma once

#include "tessaly/zetvariable.h"

#include <functional>

namespace tessaly {

// Creates blank objects by the name of the element they write, so that a stream can read an
// object into a reference that holds none yet (the items of a NameMap).
class VariableFactory
{
public:
    using Creator = std::function<ObjectRef()>;

    static bool add(const QString &elementName, Creator creator);
    // nullptr when no class writes that element.
    static ObjectRef create(const QString &elementName);
};

} // namespace tessaly
