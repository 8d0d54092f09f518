#pragma once

#include "tessaly/modelhost.h"
#include "veldra/component/tsyparamconditionmodel.h"

#include <memory>

namespace tessaly {
class NameMap;
}

namespace veldra {
class SQLInfo;
}

// A component loaded from its document and hosted as the framework would host it.
class ComponentSession
{
public:
    ComponentSession();

    // Raise tessaly::Error naming the file, line and column of what is wrong. The file holds a
    // component document or a bare query definition ("-": standard input).
    void load(const QString &fileName);
    void load(const QByteArray &data, const QString &sourceName);
    // Hosts a bare definition: every selection of it selected, and each parameter chosen from a
    // list set to the list's first value.
    void useDefinition(const std::shared_ptr<veldra::SQLInfo> &definition);
    void save(const QString &fileName);

    // Writes a slot as the framework does. Raises tessaly::Error for an unknown slot or a value
    // the slot cannot take; the slot then keeps its value.
    void setSlot(const QString &name, const QString &value);
    // Applies "NAME=VALUE" assignments in order; false (said on standard error) for a malformed one.
    bool applyAssignments(const QStringList &assignments);

    // Asks the model for a fresh request; its text, or nothing with the reason in *missing.
    std::optional<QString> currentRequest(QString *missing);

    // What request and run share: loads DOC, writes the assignments and asks for a fresh
    // request. False (said on standard error) for a malformed assignment.
    bool loadAndBuild(const QString &document, const QStringList &assignments,
                      std::optional<QString> *request, QString *missing);

    std::shared_ptr<veldra::SQLInfo> definition();
    // The model, for callers that hold models by reference (the wizard); it lives as long as
    // the session.
    std::shared_ptr<tessaly::zetPrimitiveModel> model() { return { m_host, &m_model }; }
    // The current value of each parameter reference.
    std::shared_ptr<tessaly::NameMap> parameterValues();
    tessaly::ModelHost &host() { return *m_host; }

private:
    veldra::TsyParamConditionModel m_model;
    std::shared_ptr<tessaly::ModelHost> m_host;
};

// A query definition from FILE, which holds either a definition or a whole component.
std::shared_ptr<veldra::SQLInfo> readDefinitionOrComponent(const QString &fileName);

// The bytes of FILE, or of standard input for "-"; raises tessaly::Error when it cannot be read.
QByteArray readInput(const QString &fileName);
// How messages name FILE.
QString inputName(const QString &fileName);
