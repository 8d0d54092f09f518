#include "veldra/registration/classfactory.h"

#include "tessaly/zetprimitivemodel.h"
#include "tessaly/zetprimitivepad.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/registration/registration.h"

namespace veldra {

namespace {
std::function<tessaly::zetPrimitivePad *()> &padMaker()
{
    static std::function<tessaly::zetPrimitivePad *()> maker;
    return maker;
}

bool isClass(const QString &clsid, const char *suffix)
{
    return clsid.compare(Registration::classIdFor(ClsidLookup::progId(QLatin1String(suffix))), Qt::CaseInsensitive) == 0;
}
} // namespace

void *ClassFactory::create(const QString &clsid, const QString &interfaceName)
{
    if (interfaceName == u"zetPrimitiveModel" && isClass(clsid, ".TsyParamConditionModel"))
        return static_cast<tessaly::zetPrimitiveModel *>(new TsyParamConditionModel);
    if (interfaceName == u"zetPrimitivePad" && isClass(clsid, ".TsyParamConditionPad") && padMaker())
        return padMaker()();
    return nullptr;
}

void ClassFactory::setPadMaker(std::function<tessaly::zetPrimitivePad *()> maker)
{
    padMaker() = std::move(maker);
}

} // namespace veldra

extern "C" Q_DECL_EXPORT void *tessalyCreateObject(const char *clsid, const char *interfaceName)
{
    return veldra::ClassFactory::create(QString::fromUtf8(clsid), QString::fromLatin1(interfaceName));
}
