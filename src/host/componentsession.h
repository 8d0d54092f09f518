#pragma once

#include "host/currentrequest.h"

#include "tessaly/modelhost.h"
#include "veldra/component/tsyparamconditionmodel.h"

#include <memory>

namespace tessaly {
class NameMap;
}

namespace veldra {
class SQLInfo;
}

namespace host {

// A component hosted without a window, as the framework would host it: its model behind a
// model host. The command line and the HTTP service hold one per document.
class ComponentSession
{
public:
    ComponentSession();

    // Raise tessaly::Error naming the file, line and column of what is wrong. The data holds a
    // component document, whose empty inputs are then filled in as a host opening it does, or a
    // bare query definition (see seedRunInputs).
    void load(const QString &fileName);
    void load(const QByteArray &data, const QString &sourceName);
    // Hosts a bare definition, its run-time inputs seeded as after the wizard (seedRunInputs).
    void useDefinition(const std::shared_ptr<veldra::SQLInfo> &definition);
    void save(const QString &fileName);

    // Writes the input name as the framework writes a slot, once acceptInput() lets it through.
    // Raises tessaly::Error naming what the component cannot use or the slot cannot take; the
    // slot then keeps its value.
    void setInput(const QString &name, const QString &value);

    // Asks the model for a fresh request ("UpdateRequest") and says whether it may be sent.
    CurrentRequest request();

    std::shared_ptr<veldra::SQLInfo> definition() const;
    // The current value of each parameter reference.
    std::shared_ptr<tessaly::NameMap> parameterValues() const;
    // The model, for callers that hold models by reference (the wizard); it lives as long as
    // the session.
    std::shared_ptr<tessaly::zetPrimitiveModel> model() { return { m_host, &m_model }; }
    tessaly::ModelHost &host() { return *m_host; }

private:
    veldra::TsyParamConditionModel m_model;
    std::shared_ptr<tessaly::ModelHost> m_host;
};

} // namespace host
