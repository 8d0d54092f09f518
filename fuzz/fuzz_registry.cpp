// The registry store reading its file ($XDG_CONFIG_HOME/veldra/registry.json), whatever the file
// holds, and the library reading a class identifier from it. A file is either refused with a
// message or taken in; what was taken in saves, loads again and saves to the same bytes, and
// the library reads the same identifier from both.

#include "fuzzcheck.h"
#include "scratchfile.h"

#include <tessaly/error.h>
#include <tessaly/registrystore.h>
#include <veldra/registration/clsidlookup.h>

#include <QFile>

#include <cstdint>

namespace {

QByteArray savedBytes(const tessaly::RegistryStore &store, const QString &name)
{
    const QString path = scratchPath(name);
    store.save(path);
    QFile file(path);
    FUZZ_CHECK(file.open(QIODevice::ReadOnly), "the saved registry cannot be read back");
    return file.readAll();
}

// What the library reads where it looks for the model's class identifier.
QString classIdentifier(const std::shared_ptr<tessaly::RegistryStore> &store)
{
    tessaly::RegistryStore::setInstance(store);
    QString value;
    veldra::ClsidLookup::readRegistryValue(tessaly::RegistryRoot::LocalMachine,
                                           QStringLiteral("SOFTWARE\\Classes\\Veldra.SQLInfo\\CLSID"), QString(), &value);
    tessaly::RegistryStore::setInstance(nullptr);
    return value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto store = std::make_shared<tessaly::RegistryStore>();
    try {
        store->load(writeScratch(QStringLiteral("registry.json"), data, size));
    } catch (const tessaly::Error &) {
        return 0; // refused, with the file named
    }
    const QByteArray saved = savedBytes(*store, QStringLiteral("saved.json"));
    const auto reloaded = std::make_shared<tessaly::RegistryStore>();
    try {
        reloaded->load(scratchPath(QStringLiteral("saved.json")));
    } catch (const tessaly::Error &) {
        FUZZ_CHECK(false, "a registry the store saved is refused");
    }
    FUZZ_CHECK(savedBytes(*reloaded, QStringLiteral("again.json")) == saved, "the registry changes when saved again");
    FUZZ_CHECK(classIdentifier(store) == classIdentifier(reloaded), "the library reads another identifier after a save");
    return 0;
}
