#pragma once

#include "host/currentrequest.h"
#include "host/parametersettings.h"
#include "host/sourcechoice.h"

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

// Writes a component document's bytes aside and renames them over fileName, so a failed save
// leaves the file before intact. Raises tessaly::Error naming the file and what went wrong.
void writeDocumentFile(const QString &fileName, const QByteArray &data);

// A component hosted without a window, as the framework would host it: its model behind a
// model host. The command line and the HTTP service hold one per document.
class ComponentSession
{
public:
    ComponentSession();

    // Raise tessaly::Error naming the file, line and column of what is wrong. The data holds a
    // component document, whose empty inputs are then filled in as a host opening it does and
    // whose relative defaults (its host settings) are written for today, or a bare query
    // definition (see seedRunInputs).
    void load(const QString &fileName);
    void load(const QByteArray &data, const QString &sourceName);
    // Hosts a bare definition, its run-time inputs seeded as after the wizard (seedRunInputs).
    void useDefinition(const std::shared_ptr<veldra::SQLInfo> &definition);
    // The document with its host settings, written aside and renamed.
    void save(const QString &fileName);
    QByteArray save();

    // Writes the input name as the framework writes a slot, once acceptInput() lets it through;
    // a parameter given a relative date ("today-30d") gets its literal for the engine.
    // Raises tessaly::Error naming what the component cannot use or the slot cannot take; the
    // slot then keeps its value.
    void setInput(const QString &name, const QString &value);

    // Asks the model for a fresh request ("UpdateRequest") and says whether it may be sent;
    // sent to the chosen data source when there is one.
    CurrentRequest request();

    // The host-level settings of the document (component-document.md). Raises tessaly::Error
    // naming the parameter when they do not suit the query (a cycle of lists, ...); the
    // settings before stay then.
    const HostSettings &settings() const { return m_settings; }
    void setSettings(const HostSettings &settings);
    HostSettings &settings() { return m_settings; }

    // The data source the component runs on instead of the one it names; the relative defaults
    // are written again for its engine.
    const SourceChoice &source() const { return m_source; }
    void setSource(const SourceChoice &source);

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
    HostSettings m_settings;
    SourceChoice m_source;
};

} // namespace host
