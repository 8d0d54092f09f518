#pragma once

#include "tessaly/registrystore.h"
#include "veldra/veldra_export.h"

#include <QString>

namespace veldra {

// Class identifiers are not constants of the library: each is looked up in the registry by its
// ProgID (the library's module name, ".", the class name) and the answers are cached for the
// whole process.
class VELDRA_EXPORT ClsidLookup
{
public:
    // The CLSID registered for a ProgID, or an empty text. A miss is not cached, so a class
    // registered later is found on the next call.
    static QString lookup(const QString &progId);

    // The default value of a registry key as text. Number values keep the registry's historic
    // formatting (bytes from last to first, hex digits without leading zeros).
    static bool readRegistryValue(tessaly::RegistryRoot root, const QString &keyPath,
                                  const QString &valueName, QString *value);

    // "Veldra" for libVeldra.so: read from the running library's own file name.
    static QString moduleName();
    // moduleName() followed by a suffix such as ".SQLInfo".
    static QString progId(const QString &classSuffix);

    // The cache never shrinks in a running host; tests start from a clean one.
    static void clearCacheForTesting();
};

} // namespace veldra
