#include "host/componentsession.h"

#include "host/hosttext.h"
#include "host/inputcheck.h"
#include "host/runinputs.h"
#include "host/slotvalues.h"

#include "tessaly/componentdocument.h"
#include "tessaly/documentfile.h"
#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "veldra/records/definitionfile.h"

namespace host {

ComponentSession::ComponentSession() : m_host(std::make_shared<tessaly::ModelHost>(&m_model))
{
    m_model.zetPrimitiveModel_SetModel(m_host);
    m_model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
}

void ComponentSession::load(const QString &fileName)
{
    load(tessaly::DocumentFile::read(fileName), fileName);
}

void ComponentSession::load(const QByteArray &data, const QString &sourceName)
{
    if (!tessaly::ComponentDocument::looksLikeComponentDocument(data, sourceName)) {
        useDefinition(veldra::readDefinition(data, sourceName));
        return;
    }
    tessaly::ComponentDocument::load(data, sourceName, m_model);
    // What the document left empty starts as the studio shows it (a document saved before
    // hosts seeded the inputs, or by hand).
    seedRunInputs(*m_host, RunInputs::capture(*m_host));
}

void ComponentSession::useDefinition(const std::shared_ptr<veldra::SQLInfo> &definition)
{
    m_host->setSlotValue(QStringLiteral("SQLInfo"), tessaly::variant::holding(definition));
    seedRunInputs(*m_host);
}

void ComponentSession::save(const QString &fileName)
{
    tessaly::ComponentDocument::save(fileName, m_model);
}

void ComponentSession::setInput(const QString &name, const QString &value)
{
    const QVariant accepted = acceptInput(*m_host, name, value);
    try {
        m_host->setSlotValue(name, accepted);
    } catch (const tessaly::Error &error) {
        throw tessaly::Error(error.number(), hostText(HostText::CannotSetInput).arg(name, value, error.message()));
    }
}

CurrentRequest ComponentSession::request()
{
    m_host->setSlotValue(QStringLiteral("UpdateRequest"), true);
    return currentRequest(*m_host);
}

std::shared_ptr<veldra::SQLInfo> ComponentSession::definition() const
{
    return definitionOf(*m_host);
}

std::shared_ptr<tessaly::NameMap> ComponentSession::parameterValues() const
{
    return parameterValuesOf(*m_host);
}

} // namespace host
