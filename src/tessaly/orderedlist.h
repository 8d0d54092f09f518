#pragma once

#include "tessaly/error.h"

#include <QList>

namespace tessaly {

// The framework's ordered collection: append, count and item at a 1-based position.
template<typename T>
class OrderedList
{
public:
    void append(const T &item) { m_items.append(item); }
    int count() const { return int(m_items.size()); }
    bool isEmpty() const { return m_items.isEmpty(); }

    // Raises SubscriptOutOfRange outside 1..count().
    const T &item(int position) const
    {
        if (position < 1 || position > count())
            throw Error(ErrorNumber::SubscriptOutOfRange,
                        QStringLiteral("position %1 is outside the list (%2 items)").arg(position).arg(count()));
        return m_items.at(position - 1);
    }

    const QList<T> &items() const { return m_items; }
    auto begin() const { return m_items.cbegin(); }
    auto end() const { return m_items.cend(); }

private:
    QList<T> m_items;
};

} // namespace tessaly
