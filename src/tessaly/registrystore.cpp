#include "tessaly/registrystore.h"

#include "tessaly/error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>
#include <QtEndian>

namespace tessaly {

namespace {

const char *const rootNames[] = { "HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE" };

std::shared_ptr<RegistryStore> &sharedInstance()
{
    static std::shared_ptr<RegistryStore> store;
    return store;
}

QJsonObject toJson(const RegistryValue &value)
{
    QJsonObject object;
    if (value.type == RegistryValue::TextType) {
        QByteArray bytes = value.data;
        if (bytes.endsWith('\0'))
            bytes.chop(1);
        object.insert(QStringLiteral("text"), QString::fromUtf8(bytes));
    } else if (value.type == RegistryValue::NumberType && value.data.size() == 4) {
        object.insert(QStringLiteral("number"), qint64(qFromLittleEndian<quint32>(value.data.constData())));
    } else {
        object.insert(QStringLiteral("type"), qint64(value.type));
        object.insert(QStringLiteral("hex"), QString::fromLatin1(value.data.toHex()));
    }
    return object;
}

std::optional<RegistryValue> fromJson(const QJsonObject &object)
{
    if (object.contains(QStringLiteral("text")))
        return RegistryValue::fromText(object.value(QStringLiteral("text")).toString());
    if (object.contains(QStringLiteral("number")))
        return RegistryValue::fromNumber(quint32(object.value(QStringLiteral("number")).toInteger()));
    if (object.contains(QStringLiteral("hex")))
        return RegistryValue { quint32(object.value(QStringLiteral("type")).toInteger()),
                               QByteArray::fromHex(object.value(QStringLiteral("hex")).toString().toLatin1()) };
    return std::nullopt;
}

} // namespace

RegistryValue RegistryValue::fromText(const QString &text)
{
    return { TextType, text.toUtf8() + '\0' };
}

RegistryValue RegistryValue::fromNumber(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return { NumberType, bytes };
}

RegistryStore::~RegistryStore() = default;

QString RegistryStore::keyName(RegistryRoot root, const QString &path)
{
    return QLatin1String(rootNames[int(root)]) + u'\\' + path;
}

bool RegistryStore::hasKey(RegistryRoot root, const QString &path) const
{
    return m_keys.contains(keyName(root, path));
}

std::optional<RegistryValue> RegistryStore::queryValue(RegistryRoot root, const QString &path,
                                                       const QString &valueName) const
{
    const auto key = m_keys.constFind(keyName(root, path));
    if (key == m_keys.cend())
        return std::nullopt;
    const auto value = key->constFind(valueName);
    if (value == key->cend())
        return std::nullopt;
    return *value;
}

void RegistryStore::setValue(RegistryRoot root, const QString &path, const QString &valueName,
                             const RegistryValue &value)
{
    m_keys[keyName(root, path)].insert(valueName, value);
}

bool RegistryStore::removeKey(RegistryRoot root, const QString &path)
{
    return m_keys.remove(keyName(root, path)) > 0;
}

void RegistryStore::load(const QString &fileName)
{
    QFile file(fileName);
    if (!file.exists())
        return; // an empty registry
    if (!file.open(QIODevice::ReadOnly))
        throw Error(ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!document.isObject())
        throw Error(ErrorNumber::BadFileFormat,
                    QStringLiteral("%1: not a registry file (%2 at offset %3)")
                            .arg(fileName, parseError.errorString())
                            .arg(parseError.offset));
    const QJsonObject keys = document.object();
    for (auto key = keys.begin(); key != keys.end(); ++key) {
        const QJsonObject values = key.value().toObject();
        for (auto value = values.begin(); value != values.end(); ++value) {
            if (const auto parsed = fromJson(value.value().toObject()))
                m_keys[key.key()].insert(value.key(), *parsed);
        }
    }
}

void RegistryStore::save(const QString &fileName) const
{
    QJsonObject keys;
    for (auto key = m_keys.cbegin(); key != m_keys.cend(); ++key) {
        QJsonObject values;
        for (auto value = key->cbegin(); value != key->cend(); ++value)
            values.insert(value.key(), toJson(value.value()));
        keys.insert(key.key(), values);
    }
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw Error(ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    file.write(QJsonDocument(keys).toJson());
    if (!file.commit())
        throw Error(ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}

QString RegistryStore::defaultFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
            + QStringLiteral("/veldra/registry.json");
}

std::shared_ptr<RegistryStore> RegistryStore::instance()
{
    auto &store = sharedInstance();
    if (!store) {
        store = std::make_shared<RegistryStore>();
        try {
            store->load(defaultFileName());
        } catch (const Error &) {
            // An unreadable file is an empty registry: class look-ups then answer empty.
        }
    }
    return store;
}

void RegistryStore::setInstance(std::shared_ptr<RegistryStore> store)
{
    sharedInstance() = std::move(store);
}

} // namespace tessaly
