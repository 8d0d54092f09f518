#include "veldra/registration/clsidlookup.h"

#include "tessaly/modulename.h"

#include <QList>
#include <QPair>

namespace veldra {

namespace {

constexpr qsizetype registryBufferSize = 1024;

QList<QPair<QString, QString>> &cache()
{
    static QList<QPair<QString, QString>> pairs;
    return pairs;
}

QString numberText(const QByteArray &bytes)
{
    QString digits;
    for (qsizetype i = bytes.size() - 1; i >= 0; --i)
        digits += QString::number(quint8(bytes.at(i)), 16);
    bool ok = false;
    const quint64 value = digits.toULongLong(&ok, 16);
    return ok ? QString::number(qint32(quint32(value))) : QString();
}

const char moduleAnchor = 0;

} // namespace

bool ClsidLookup::readRegistryValue(tessaly::RegistryRoot root, const QString &keyPath,
                                    const QString &valueName, QString *value)
{
    value->clear();
    const auto store = tessaly::RegistryStore::instance();
    if (!store->hasKey(root, keyPath))
        return false;
    const std::optional<tessaly::RegistryValue> raw = store->queryValue(root, keyPath, valueName);
    if (!raw || raw->data.size() > registryBufferSize)
        return false;
    QByteArray bytes = raw->data;
    if (bytes.endsWith('\0'))
        bytes.chop(1);
    if (raw->type == tessaly::RegistryValue::TextType)
        *value = QString::fromUtf8(bytes);
    else if (raw->type == tessaly::RegistryValue::NumberType)
        *value = numberText(bytes);
    return true;
}

QString ClsidLookup::lookup(const QString &progId)
{
    for (const auto &pair : std::as_const(cache())) {
        if (pair.first == progId)
            return pair.second;
    }
    QString clsid;
    const QString keyPath = QStringLiteral("SOFTWARE\\Classes\\") + progId + QStringLiteral("\\CLSID");
    if (!readRegistryValue(tessaly::RegistryRoot::LocalMachine, keyPath, QString(), &clsid))
        return {};
    cache().append({ progId, clsid });
    return clsid;
}

QString ClsidLookup::moduleName()
{
    return tessaly::moduleNameOf(&moduleAnchor);
}

QString ClsidLookup::progId(const QString &classSuffix)
{
    return moduleName() + classSuffix;
}

void ClsidLookup::clearCacheForTesting()
{
    cache().clear();
}

} // namespace veldra
