#pragma once

#include "tessaly/tessaly_export.h"


#include <QMetaType>
#include <QString>

#include <memory>

namespace tessaly {

class TagStream;
class zetVariable;

// An object reference of the framework; nullptr is Nothing.
using ObjectRef = std::shared_ptr<zetVariable>;

// The contract every value the framework can store in a slot, save, load, copy and show offers.
class TESSALY_EXPORT zetVariable
{
public:
    virtual ~zetVariable();

    virtual bool zetVariable_Read(TagStream &stream) = 0;
    virtual bool zetVariable_Write(TagStream &stream) = 0;
    // A new object of the same class with the same contents.
    virtual ObjectRef zetVariable_Copy() const = 0;
    virtual QString zetVariable_Print() const = 0;
    virtual QString zetVariable_GetCLSID() const = 0;
    virtual QString zetVariable_GetTypeName() const = 0;
    virtual bool zetVariable_HasEditDialog() const { return false; }
    virtual bool zetVariable_ShowEditDialog() { return false; }

protected:
    zetVariable() = default;
    zetVariable(const zetVariable &) = default;
    zetVariable &operator=(const zetVariable &) = default;
};

// The object held by a reference as the class the caller expects, or nullptr.
template<typename T>
std::shared_ptr<T> objectCast(const ObjectRef &ref)
{
    return std::dynamic_pointer_cast<T>(ref);
}

} // namespace tessaly

Q_DECLARE_METATYPE(tessaly::ObjectRef)
