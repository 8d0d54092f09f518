#pragma once

#include <QString>

#include <functional>

namespace tessaly {
class zetPrimitivePad;
}

namespace veldra {

// What the library makes when a host asks by class identifier (tessalyCreateObject): the
// component's model here; its pad when the UI library, which holds it, is loaded.
class ClassFactory
{
public:
    // nullptr for an identifier or interface the library does not make.
    static void *create(const QString &clsid, const QString &interfaceName);

    // The UI library hands over how its pad is made when it is loaded.
    static void setPadMaker(std::function<tessaly::zetPrimitivePad *()> maker);
};

} // namespace veldra
