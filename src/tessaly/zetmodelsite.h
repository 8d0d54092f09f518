#pragma once

#include "tessaly/tessaly_export.h"

#include <QString>

namespace tessaly {

// What the framework offers a model: its slots are declared, removed and reported through it.
class TESSALY_EXPORT zetModelSite
{
public:
    virtual ~zetModelSite();

    virtual void declareSlot(const QString &name, const QString &description) = 0;
    // False when the framework refuses the slot (a slot of that name exists already).
    virtual bool declareParameterSlot(const QString &name, const QString &description) = 0;
    virtual void removeSlot(const QString &name) = 0;
    virtual void reportSlotChanged(const QString &name) = 0;
    virtual void reportChangeCode(int code) = 0;
};

} // namespace tessaly
