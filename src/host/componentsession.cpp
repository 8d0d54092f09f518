#include "host/componentsession.h"

#include "host/hosttext.h"
#include "host/inputcheck.h"
#include "host/parameterchoices.h"
#include "host/parameterliteral.h"
#include "host/runinputs.h"
#include "host/slotvalues.h"

#include "tessaly/componentdocument.h"
#include "tessaly/documentfile.h"
#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "veldra/records/definitionfile.h"

#include <QSaveFile>

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
    HostSettings settings = HostSettings::read(data, sourceName);
    tessaly::ComponentDocument::load(data, sourceName, m_model);
    if (const auto query = definition()) {
        try {
            settings.check(*query);
        } catch (const tessaly::Error &error) {
            throw tessaly::Error(tessaly::ErrorNumber::BadFileFormat, sourceName + QStringLiteral(": ") + error.message());
        }
    }
    m_settings = settings;
    // What the document left empty starts as the studio shows it (a document saved before
    // hosts seeded the inputs, or by hand).
    seedRunInputs(*m_host, RunInputs::capture(*m_host));
    ParameterChoices(*m_host, m_settings, nullptr, m_source).applyDefaults();
}

void ComponentSession::setSource(const SourceChoice &source)
{
    m_source = source;
    ParameterChoices(*m_host, m_settings, nullptr, m_source).applyDefaults();
}

void ComponentSession::setSettings(const HostSettings &settings)
{
    if (const auto query = definition())
        settings.check(*query);
    m_settings = settings;
}

void ComponentSession::useDefinition(const std::shared_ptr<veldra::SQLInfo> &definition)
{
    m_host->setSlotValue(QStringLiteral("SQLInfo"), tessaly::variant::holding(definition));
    seedRunInputs(*m_host);
}

QByteArray ComponentSession::save()
{
    return m_settings.writeInto(tessaly::ComponentDocument::save(m_model));
}

void ComponentSession::save(const QString &fileName)
{
    writeDocumentFile(fileName, save());
}

void writeDocumentFile(const QString &fileName, const QByteArray &data)
{
    tessaly::DocumentFile::checkReplaceable(fileName);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}

void ComponentSession::setInput(const QString &name, const QString &value)
{
    QVariant accepted = acceptInput(*m_host, name, value);
    if (name.startsWith(u"@@@") && isRelativeDate(value))
        accepted = ParameterChoices(*m_host, m_settings, nullptr, m_source).literalFor(name, value);
    try {
        m_host->setSlotValue(name, accepted);
    } catch (const tessaly::Error &error) {
        throw tessaly::Error(error.number(), hostText(HostText::CannotSetInput).arg(name, value, error.message()));
    }
}

CurrentRequest ComponentSession::request()
{
    m_host->setSlotValue(QStringLiteral("UpdateRequest"), true);
    CurrentRequest request = currentRequest(*m_host);
    if (request.ready() && m_source.isSet())
        request.text = QString::fromUtf8(m_source.retarget(request.text.toUtf8()));
    return request;
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
