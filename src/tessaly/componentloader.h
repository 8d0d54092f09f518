#pragma once

#include "tessaly/tessaly_export.h"

#include <QString>

#include <memory>

namespace tessaly {

class zetPrimitiveModel;
class zetPrimitivePad;

// Creates a component's objects as the framework does: the ProgID gives the class identifier
// through the registry, its module part names the library ("Veldra.X" -> libVeldra.so), and
// the library's tessalyCreateObject makes the object of that identifier. Every failure raises
// tessaly::Error saying which step failed for which name.
class TESSALY_EXPORT ComponentLoader
{
public:
    // The name of the function a component library exports:
    //   extern "C" void *tessalyCreateObject(const char *clsid, const char *interfaceName);
    // It answers nullptr for an identifier or interface it does not make.
    static constexpr const char *entryPoint = "tessalyCreateObject";

    static std::shared_ptr<zetPrimitiveModel> createModel(const QString &progId);
    static std::shared_ptr<zetPrimitivePad> createPad(const QString &progId);

    // The identifier registered for a ProgID, or an empty text.
    static QString classIdOf(const QString &progId);

private:
    static void *create(const QString &progId, const char *interfaceName);
};

} // namespace tessaly
