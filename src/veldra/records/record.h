#pragma once

#include "tessaly/zetvariable.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/resources/stringtable.h"

namespace veldra {

// What every record answers the same way: a copy through its own copy(), the class identifier
// registered for "<module><classSuffix>", and its type name from the string table.
// Derived declares `static constexpr const char *classSuffix` and `static constexpr StringId typeName`.
template<typename Derived>
class Record : public tessaly::zetVariable
{
public:
    tessaly::ObjectRef zetVariable_Copy() const override { return static_cast<const Derived *>(this)->copy(); }
    QString zetVariable_GetCLSID() const override
    {
        return ClsidLookup::lookup(ClsidLookup::progId(QLatin1String(Derived::classSuffix)));
    }
    QString zetVariable_GetTypeName() const override { return text(Derived::typeName); }
};

} // namespace veldra
