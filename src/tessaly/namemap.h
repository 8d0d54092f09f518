#pragma once

#include "tessaly/tessaly_export.h"
#include "tessaly/zetvariable.h"

#include <QHash>
#include <QList>
#include <QStringList>
#include <QVariant>

#include <type_traits>
#include <typeinfo>

namespace tessaly {

// The framework's keyed map: text keys in insertion order, each holding a text, an object
// reference or nothing (an invalid QVariant). Positions are 0-based. Keys are case-sensitive;
// setting a key already held replaces its value in place.
class TESSALY_EXPORT NameMap final : public zetVariable
{
public:
    NameMap() = default;

    int count() const { return int(m_entries.size()); }
    bool isEmpty() const { return m_entries.isEmpty(); }
    // Raise SubscriptOutOfRange outside 0..count()-1.
    QString key(int index) const;
    // Every key, in order.
    QStringList keys() const;
    QVariant item(int index) const;
    // The value of a key, or an invalid QVariant when the key is not held.
    QVariant item(const QString &key) const;
    bool lookup(const QString &key, QVariant *value = nullptr) const;
    bool contains(const QString &key) const { return m_index.contains(key); }

    void set(const QString &key, const QVariant &value);
    void setText(const QString &key, const QString &text) { set(key, QVariant(text)); }
    void setObject(const QString &key, const ObjectRef &object);
    bool remove(const QString &key);
    void clear();

    // The object held at a position or under a key, as the class asked for (nullptr otherwise).
    template<typename T>
    std::shared_ptr<T> objectAt(int index) const { return objectCast<T>(toObject(item(index))); }
    template<typename T>
    std::shared_ptr<T> object(const QString &key) const { return objectCast<T>(toObject(item(key))); }

    // The object at a position without taking a reference: for scans that keep only a few.
    template<typename T>
    T *peekAt(int index) const
    {
        static_assert(std::is_final_v<T>, "an exact type check stands in for a cast only for final classes");
        zetVariable *object = m_entries.at(index).object;
        return object && typeid(*object) == typeid(T) ? static_cast<T *>(object) : nullptr;
    }

    static QVariant fromObject(const ObjectRef &object);
    static ObjectRef toObject(const QVariant &value);

    std::shared_ptr<NameMap> copy() const;

    bool zetVariable_Read(TagStream &stream) override;
    bool zetVariable_Write(TagStream &stream) override;
    ObjectRef zetVariable_Copy() const override { return copy(); }
    QString zetVariable_Print() const override;
    QString zetVariable_GetCLSID() const override { return {}; }
    QString zetVariable_GetTypeName() const override { return QStringLiteral("NameMap"); }

private:
    struct Entry
    {
        Entry(const QString &key, const QVariant &value) : key(key), value(value), object(peek(value)) { }
        void setValue(const QVariant &newValue)
        {
            value = newValue;
            object = peek(value);
        }

        QString key;
        QVariant value;
        zetVariable *object; // the object value holds, if any: scans need no QVariant calls
    };
    void checkIndex(int index) const;
    static zetVariable *peek(const QVariant &value);

    QList<Entry> m_entries;
    QHash<QString, int> m_index;
};

} // namespace tessaly
