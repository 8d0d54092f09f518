#include "tessaly/namemap.h"

#include "tessaly/error.h"
#include "tessaly/tagstream.h"
#include "tessaly/variablefactory.h"

namespace tessaly {

namespace {
const QString mapElement = QStringLiteral("NameMap");
const QString textElement = QStringLiteral("Text");
const QString objectElement = QStringLiteral("Object");
const QString keyAttribute = QStringLiteral("key");

const bool registered = VariableFactory::add(mapElement, [] { return std::make_shared<NameMap>(); });
} // namespace

void NameMap::checkIndex(int index) const
{
    if (index < 0 || index >= count())
        throw Error(ErrorNumber::SubscriptOutOfRange,
                    QStringLiteral("position %1 is outside the map (%2 entries)").arg(index).arg(count()));
}

QString NameMap::key(int index) const
{
    checkIndex(index);
    return m_entries.at(index).key;
}

QStringList NameMap::keys() const
{
    QStringList keys;
    keys.reserve(m_entries.size());
    for (const Entry &entry : m_entries)
        keys.append(entry.key);
    return keys;
}

QVariant NameMap::item(int index) const
{
    checkIndex(index);
    return m_entries.at(index).value;
}

QVariant NameMap::item(const QString &key) const
{
    const auto it = m_index.constFind(key);
    return it == m_index.cend() ? QVariant() : m_entries.at(*it).value;
}

bool NameMap::lookup(const QString &key, QVariant *value) const
{
    const auto it = m_index.constFind(key);
    if (it == m_index.cend())
        return false;
    if (value)
        *value = m_entries.at(*it).value;
    return true;
}

void NameMap::set(const QString &key, const QVariant &value)
{
    const auto it = m_index.constFind(key);
    if (it != m_index.cend()) {
        m_entries[*it].setValue(value);
        return;
    }
    m_index.insert(key, int(m_entries.size()));
    m_entries.append(Entry(key, value));
}

void NameMap::setObject(const QString &key, const ObjectRef &object)
{
    set(key, fromObject(object));
}

bool NameMap::remove(const QString &key)
{
    const auto it = m_index.constFind(key);
    if (it == m_index.cend())
        return false;
    const int removed = *it;
    m_entries.removeAt(removed);
    m_index.erase(it);
    for (auto &position : m_index) {
        if (position > removed)
            --position;
    }
    return true;
}

void NameMap::clear()
{
    m_entries.clear();
    m_index.clear();
}

QVariant NameMap::fromObject(const ObjectRef &object)
{
    return object ? QVariant::fromValue(object) : QVariant();
}

ObjectRef NameMap::toObject(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<ObjectRef>() ? value.value<ObjectRef>() : nullptr;
}

zetVariable *NameMap::peek(const QVariant &value)
{
    if (value.metaType() != QMetaType::fromType<ObjectRef>())
        return nullptr;
    return static_cast<const ObjectRef *>(value.constData())->get();
}

std::shared_ptr<NameMap> NameMap::copy() const
{
    auto result = std::make_shared<NameMap>();
    result->m_entries.reserve(m_entries.size());
    for (const Entry &entry : m_entries) {
        const ObjectRef object = toObject(entry.value);
        result->m_entries.append(Entry(entry.key, object ? fromObject(object->zetVariable_Copy()) : entry.value));
    }
    result->m_index = m_index;
    return result;
}

bool NameMap::zetVariable_Write(TagStream &stream)
{
    stream.WriteTag(mapElement);
    for (const Entry &entry : m_entries) {
        const bool isText = entry.value.metaType() == QMetaType::fromType<QString>();
        stream.WriteTag(isText ? textElement : objectElement);
        stream.WriteAttribute(keyAttribute, entry.key);
        if (isText)
            stream.WriteValue(entry.value.toString());
        else
            stream.WriteValue(toObject(entry.value));
        stream.WriteEndTag();
    }
    stream.WriteEndTag();
    return true;
}

bool NameMap::zetVariable_Read(TagStream &stream)
{
    if (stream.ReadTag() != mapElement)
        return true;
    for (;;) {
        const QString tag = stream.ReadTag();
        if (tag == textElement) {
            const QString key = stream.ReadAttribute(keyAttribute);
            QString text;
            stream.ReadValue(text);
            set(key, text);
        } else if (tag == objectElement) {
            const QString key = stream.ReadAttribute(keyAttribute);
            ObjectRef object;
            stream.ReadValue(object);
            set(key, fromObject(object));
        } else {
            break;
        }
        stream.ReadEndTag();
    }
    stream.ReadEndTag();
    return true;
}

QString NameMap::zetVariable_Print() const
{
    return QStringLiteral("[%1 entries]").arg(count());
}

} // namespace tessaly
