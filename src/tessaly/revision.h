#pragma once

#include <QtGlobal>

namespace tessaly {

// A stamp that changes whenever its owner's contents change and never repeats, not even across
// objects: a copy gets a new one. What caches a result derived from a graph of objects keeps the
// newest stamp in the graph; while that is unchanged, nothing the result depends on has changed.
class Revision
{
public:
    Revision() : m_value(next()) { }
    Revision(const Revision &) : m_value(next()) { }
    Revision &operator=(const Revision &)
    {
        touch();
        return *this;
    }

    quint64 value() const { return m_value; }
    void touch() { m_value = next(); }

private:
    static quint64 next();

    quint64 m_value;
};

} // namespace tessaly
