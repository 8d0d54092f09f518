#include "veldra/registration/registration.h"

#include "tessaly/registrystore.h"
#include "veldra/registration/clsidlookup.h"

#include <QUuid>

namespace veldra {

namespace {

QString classKey(const QString &progId)
{
    return QStringLiteral("SOFTWARE\\Classes\\") + progId + QStringLiteral("\\CLSID");
}

} // namespace

QStringList Registration::progIds()
{
    QStringList ids;
    for (const char *suffix : { ".TsyParamConditionModel", ".TsyParamConditionPad", ".SQLInfo", ".DBInfo",
                                ".TableInfo", ".ColumnInfo", ".OrderInfo", ".ParamInfo" })
        ids.append(ClsidLookup::progId(QLatin1String(suffix)));
    return ids;
}

QString Registration::classIdFor(const QString &progId)
{
    static const QUuid space = QUuid::createUuidV5(QUuid(), QStringLiteral("veldra class identifiers"));
    return QUuid::createUuidV5(space, progId).toString(QUuid::WithBraces).toUpper();
}

void Registration::registerClasses(tessaly::RegistryStore &store)
{
    for (const QString &progId : progIds())
        store.setValue(tessaly::RegistryRoot::LocalMachine, classKey(progId), QString(),
                       tessaly::RegistryValue::fromText(classIdFor(progId)));
}

void Registration::unregisterClasses(tessaly::RegistryStore &store)
{
    for (const QString &progId : progIds())
        store.removeKey(tessaly::RegistryRoot::LocalMachine, classKey(progId));
}

} // namespace veldra
