#pragma once

#include "veldra/veldra_export.h"

#include <QStringList>

namespace tessaly {
class RegistryStore;
}

namespace veldra {

// The library's entries in the registry: one ProgID -> CLSID key per class the framework
// creates or stores. Identifiers are derived from the ProgIDs (name-based UUIDs), so
// registering twice, or on another machine, gives the same answers.
class VELDRA_EXPORT Registration
{
public:
    static QStringList progIds();
    static QString classIdFor(const QString &progId);
    static void registerClasses(tessaly::RegistryStore &store);
    static void unregisterClasses(tessaly::RegistryStore &store);
};

} // namespace veldra
