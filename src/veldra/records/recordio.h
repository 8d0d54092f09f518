#pragma once

#include "tessaly/tagstream.h"

#include <functional>

namespace veldra::recordio {

// The reading loop every record shares: nothing is read unless the next element is the
// record's own; children come in any order; the first name readChild does not know ends the
// record, and one end tag closes it.
bool readRecord(tessaly::TagStream &stream, const QString &element,
                const std::function<bool(const QString &child)> &readChild);

// A child element holding one value.
template<typename T>
void writeChild(tessaly::TagStream &stream, const QString &name, const T &value)
{
    stream.WriteTag(name);
    stream.WriteValue(value);
    stream.WriteEndTag();
}

// Reads an object member: the stream fills the member's object or puts another in its place.
template<typename T>
void readObject(tessaly::TagStream &stream, std::shared_ptr<T> &member)
{
    tessaly::ObjectRef object = member;
    stream.ReadValue(object);
    member = tessaly::objectCast<T>(object);
}

} // namespace veldra::recordio
