#include "tessaly/componentloader.h"

#include "tessaly/error.h"
#include "tessaly/registrystore.h"
#include "tessaly/zetprimitivemodel.h"
#include "tessaly/zetprimitivepad.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>

namespace tessaly {

namespace {

using CreateObject = void *(*)(const char *clsid, const char *interfaceName);

// The library of a module: already loaded by the host, beside it in ../lib, or on the search path.
CreateObject entryOf(const QString &module, QString *tried)
{
    QStringList candidates;
    if (QCoreApplication::instance())
        candidates.append(QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../lib/lib") + module));
    candidates.append(module);
    for (const QString &candidate : std::as_const(candidates)) {
        QLibrary library(candidate);
        if (!library.load()) {
            tried->append(QStringLiteral("\n  ") + library.errorString());
            continue;
        }
        // Loaded libraries stay: the objects they make live on after this call.
        if (auto entry = reinterpret_cast<CreateObject>(library.resolve(ComponentLoader::entryPoint)))
            return entry;
        tried->append(QStringLiteral("\n  %1 has no %2").arg(library.fileName(), QLatin1String(ComponentLoader::entryPoint)));
    }
    return nullptr;
}

} // namespace

QString ComponentLoader::classIdOf(const QString &progId)
{
    const auto value = RegistryStore::instance()->queryValue(
            RegistryRoot::LocalMachine, QStringLiteral("SOFTWARE\\Classes\\") + progId + QStringLiteral("\\CLSID"), QString());
    if (!value || value->type != RegistryValue::TextType)
        return {};
    QByteArray text = value->data;
    if (text.endsWith('\0'))
        text.chop(1);
    return QString::fromUtf8(text);
}

void *ComponentLoader::create(const QString &progId, const char *interfaceName)
{
    const QString clsid = classIdOf(progId);
    if (clsid.isEmpty())
        throw Error(ErrorNumber::Fail, QStringLiteral("%1 is not registered (run \"veldra register\")").arg(progId));
    const qsizetype dot = progId.indexOf(u'.');
    if (dot <= 0)
        throw Error(ErrorNumber::InvalidArgument, QStringLiteral("%1 names no module").arg(progId));
    QString tried;
    const CreateObject entry = entryOf(progId.left(dot), &tried);
    if (!entry)
        throw Error(ErrorNumber::Fail, QStringLiteral("no library of module %1 makes objects:%2").arg(progId.left(dot), tried));
    void *object = entry(clsid.toUtf8().constData(), interfaceName);
    if (!object)
        throw Error(ErrorNumber::Fail, QStringLiteral("%1 (%2) makes no %3").arg(progId, clsid, QLatin1String(interfaceName)));
    return object;
}

std::shared_ptr<zetPrimitiveModel> ComponentLoader::createModel(const QString &progId)
{
    return std::shared_ptr<zetPrimitiveModel>(static_cast<zetPrimitiveModel *>(create(progId, "zetPrimitiveModel")));
}

std::shared_ptr<zetPrimitivePad> ComponentLoader::createPad(const QString &progId)
{
    return std::shared_ptr<zetPrimitivePad>(static_cast<zetPrimitivePad *>(create(progId, "zetPrimitivePad")));
}

} // namespace tessaly
