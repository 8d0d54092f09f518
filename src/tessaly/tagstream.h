#pragma once

#include "tessaly/zetvariable.h"

#include <QString>

namespace tessaly {

// The framework's tagged stream: a tree of named elements with typed values.
// Operations keep the framework's names; failures are raised as tessaly::Error.
class TagStream
{
public:
    virtual ~TagStream();

    virtual void WriteTag(const QString &name) = 0;
    virtual void WriteValue(const QString &value) = 0;
    virtual void WriteValue(qint32 value) = 0;
    virtual void WriteValue(bool value) = 0;
    void WriteValue(const char *) = delete; // would silently become a Boolean
    // Writes Nothing for a null reference; otherwise the object writes itself.
    virtual void WriteValue(const ObjectRef &value) = 0;
    virtual void WriteEndTag() = 0;

    // The name of the next element inside the current one, or an empty text at its end.
    virtual QString ReadTag() = 0;
    virtual void ReadValue(QString &value) = 0;
    virtual void ReadValue(qint32 &value) = 0;
    virtual void ReadValue(bool &value) = 0;
    // On entry the reference holds the object to fill (or nullptr: the stream creates one).
    virtual void ReadValue(ObjectRef &value) = 0;
    // Leaves the current element, skipping whatever of it was not read.
    virtual void ReadEndTag() = 0;
    virtual QString ReadTagName() = 0;

    // Attributes of the element just opened (WriteTag) or just named (ReadTag);
    // the component document uses them for the names of its slots.
    virtual void WriteAttribute(const QString &name, const QString &value) = 0;
    virtual QString ReadAttribute(const QString &name) = 0;
    // The element last named by ReadTag and not yet closed, or an empty text.
    virtual QString CurrentTag() const = 0;

    // Where the stream stands, for error messages: "file:line:column".
    virtual QString position() const = 0;
};

} // namespace tessaly
