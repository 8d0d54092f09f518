#include "componentsession.h"

#include "command.h"

#include "tessaly/componentdocument.h"
#include "tessaly/documentfile.h"
#include "tessaly/error.h"
#include "tessaly/variant.h"
#include "veldra/records/definitionfile.h"


namespace {

// The model escapes only "<", ">" and "&"; a control character in a value would make the
// request text XML no parser accepts. Say so, and where, before anything is sent.
void checkRequestCharacters(const QString &request)
{
    for (qsizetype i = 0; i < request.size(); ++i) {
        const char16_t c = request.at(i).unicode();
        const bool control = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
        const bool surrogate = QChar::isSurrogate(c)
                && !(QChar::isHighSurrogate(c) && i + 1 < request.size() && request.at(i + 1).isLowSurrogate());
        if (control || surrogate || c == 0xFFFE || c == 0xFFFF) {
            const qsizetype open = request.lastIndexOf(u'<', i);
            const QString element = request.mid(open, request.indexOf(u'>', open) - open + 1);
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                                 QStringLiteral("the request cannot be built: character U+%1 at position %2 (in %3) "
                                                "cannot be carried by XML; a parameter value or a name holds it")
                                         .arg(int(c), 4, 16, QLatin1Char('0')).arg(i + 1).arg(element));
        }
        if (QChar::isHighSurrogate(c) && i + 1 < request.size() && request.at(i + 1).isLowSurrogate())
            ++i;
    }
}

} // namespace

ComponentSession::ComponentSession() : m_host(std::make_shared<tessaly::ModelHost>(&m_model))
{
    m_model.zetPrimitiveModel_SetModel(m_host);
    m_model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
}

void ComponentSession::load(const QString &fileName)
{
    tessaly::ComponentDocument::load(fileName, m_model);
}

void ComponentSession::load(const QByteArray &data, const QString &sourceName)
{
    tessaly::ComponentDocument::load(data, sourceName, m_model);
}

void ComponentSession::save(const QString &fileName)
{
    tessaly::ComponentDocument::save(fileName, m_model);
}

void ComponentSession::setSlot(const QString &name, const QString &value)
{
    if (!m_host->hasSlot(name))
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                             QStringLiteral("the component has no slot \"%1\"; its slots are: %2")
                                     .arg(name, m_host->slotNames().join(QStringLiteral(", "))));
    try {
        m_host->setSlotValue(name, value);
    } catch (const tessaly::Error &error) {
        throw tessaly::Error(error.number(), QStringLiteral("cannot set slot \"%1\" to \"%2\": %3")
                                                     .arg(name, value, error.message()));
    }
}

bool ComponentSession::applyAssignments(const QStringList &assignments)
{
    for (const QString &assignment : assignments) {
        const qsizetype equals = assignment.indexOf(u'=');
        if (equals <= 0) {
            err() << "veldra: --set wants NAME=VALUE, not \"" << assignment << '"' << Qt::endl;
            return false;
        }
        setSlot(assignment.left(equals), assignment.mid(equals + 1));
    }
    return true;
}

bool ComponentSession::loadAndBuild(const QString &document, const QStringList &assignments,
                                    std::optional<QString> *request, QString *missing)
{
    load(document);
    if (!applyAssignments(assignments))
        return false;
    *request = currentRequest(missing);
    return true;
}

std::optional<QString> ComponentSession::currentRequest(QString *missing)
{
    m_host->setSlotValue(QStringLiteral("UpdateRequest"), true);
    *missing = m_model.missingRequestPiece();
    if (!missing->isEmpty())
        return std::nullopt;
    const auto request = m_host->slotValue(QStringLiteral("request")).value<tessaly::RequestRef>();
    if (!request)
        return std::nullopt;
    checkRequestCharacters(request->text());
    return request->text();
}

std::shared_ptr<veldra::SQLInfo> ComponentSession::definition()
{
    return tessaly::objectCast<veldra::SQLInfo>(
            tessaly::variant::heldObject(m_host->slotValue(QStringLiteral("SQLInfo"))));
}

std::shared_ptr<veldra::SQLInfo> readDefinitionOrComponent(const QString &fileName)
{
    const QByteArray data = tessaly::DocumentFile::read(fileName);
    if (!tessaly::ComponentDocument::looksLikeComponentDocument(data))
        return veldra::readDefinition(data, fileName);
    ComponentSession session;
    session.load(data, fileName);
    return session.definition();
}
