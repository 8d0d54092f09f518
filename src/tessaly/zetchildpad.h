#pragma once

#include "tessaly/tessaly_export.h"

#include <QString>
#include <QVariant>

namespace tessaly {

// Whose slot a child's property follows.
enum class SlotOwner { Model, Pad };

// A pad of a sibling library placed inside another pad: a bag of named properties, a size, and
// at most one property kept in step with a slot.
class TESSALY_EXPORT zetChildPad
{
public:
    virtual ~zetChildPad();

    virtual void setName(const QString &name) = 0;
    // What assistive technology says for the child: what its row is for. The host's, beside the
    // framework's operations: a caption placed above an input is not tied to it otherwise.
    virtual void setAccessibleCaption(const QString &caption) = 0;
    // Raises tessaly::Error for a property the child does not have or a value it cannot take.
    virtual void setProperty(const QString &name, const QVariant &value) = 0;
    virtual QVariant property(const QString &name) const = 0;
    virtual void setSize(int width, int height) = 0;
    // From now on a change of the property writes the slot, and a reported change of the slot
    // updates the property.
    virtual void connectProperty(const QString &property, SlotOwner owner, const QString &slot) = 0;
};

} // namespace tessaly
