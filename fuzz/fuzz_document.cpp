// Feeds arbitrary bytes to the readers of saved documents: a bare query definition and a whole
// component document, as the tools and the studio load them. The first byte picks the reader.
// Whatever a reader accepts must save, and the saved form must read back and save to the same
// bytes: nothing a document holds may be lost or changed by a round trip.

#include <tessaly/componentdocument.h>
#include <tessaly/error.h>
#include <tessaly/modelhost.h>
#include <veldra/component/tsyparamconditionmodel.h>
#include <veldra/records/definitionfile.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

// A model hosted as a fresh component, as a host makes one before it loads a document.
struct Component
{
    Component() : host(std::make_shared<tessaly::ModelHost>(&model))
    {
        model.zetPrimitiveModel_SetModel(host);
        model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
    }
    veldra::TsyParamConditionModel model;
    std::shared_ptr<tessaly::ModelHost> host;
};

void readDefinition(const QByteArray &bytes)
{
    std::shared_ptr<veldra::SQLInfo> query;
    try {
        query = veldra::readDefinition(bytes, QStringLiteral("fuzz"));
    } catch (const tessaly::Error &) {
        return; // refused: nothing more to see
    }
    const QByteArray saved = veldra::writeDefinition(*query);
    if (veldra::writeDefinition(*veldra::readDefinition(saved, QStringLiteral("saved"))) != saved)
        std::abort();
}

void readComponent(const QByteArray &bytes)
{
    Component first;
    try {
        tessaly::ComponentDocument::load(bytes, QStringLiteral("fuzz"), first.model);
    } catch (const tessaly::Error &) {
        return;
    }
    const QByteArray saved = tessaly::ComponentDocument::save(first.model);
    Component second;
    tessaly::ComponentDocument::load(saved, QStringLiteral("saved"), second.model);
    if (tessaly::ComponentDocument::save(second.model) != saved)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    if (data[0] % 2 == 0)
        readDefinition(bytes);
    else
        readComponent(bytes);
    return 0;
}
