#include "componentsession.h"

#include "clitext.h"
#include "command.h"

#include "tessaly/componentdocument.h"
#include "tessaly/documentfile.h"
#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/records/columninfo.h"
#include "veldra/records/definitionfile.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QFile>

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
    load(readInput(fileName), inputName(fileName));
}

void ComponentSession::load(const QByteArray &data, const QString &sourceName)
{
    if (tessaly::ComponentDocument::looksLikeComponentDocument(data))
        tessaly::ComponentDocument::load(data, sourceName, m_model);
    else
        useDefinition(veldra::readDefinition(data, sourceName));
}

void ComponentSession::useDefinition(const std::shared_ptr<veldra::SQLInfo> &definition)
{
    m_host->setSlotValue(QStringLiteral("SQLInfo"), tessaly::variant::holding(definition));
    // A selection is named by its alias when it has one: an expression's text may hold commas.
    QStringList names;
    for (const QString &selection : definition->selections()->items()) {
        const veldra::ColumnInfo *column = definition->peekColumnInfoFromDispName(selection);
        names.append(column && !column->alias().isEmpty() ? column->alias() : selection);
    }
    m_host->setSlotValue(QStringLiteral("selection"), names.join(u','));
    const auto parameters = definition->parameters();
    for (int i = 0; parameters && i < parameters->count(); ++i) {
        const auto parameter = parameters->objectAt<veldra::ParamInfo>(i);
        if (parameter && parameter->paramType() == veldra::ParamInfo::ChosenFromList
            && !parameter->selections()->isEmpty() && m_host->hasSlot(parameters->key(i)))
            m_host->setSlotValue(parameters->key(i), parameter->selections()->key(0));
    }
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
            err() << "veldra: " << cliText(CliText::SetWantsAssignment).arg(assignment) << Qt::endl;
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

std::shared_ptr<tessaly::NameMap> ComponentSession::parameterValues()
{
    return tessaly::objectCast<tessaly::NameMap>(
            tessaly::variant::heldObject(m_host->slotValue(QStringLiteral("parameters"))));
}

std::shared_ptr<veldra::SQLInfo> readDefinitionOrComponent(const QString &fileName)
{
    const QByteArray data = readInput(fileName);
    if (!tessaly::ComponentDocument::looksLikeComponentDocument(data))
        return veldra::readDefinition(data, inputName(fileName));
    ComponentSession session;
    session.load(data, inputName(fileName));
    return session.definition();
}

QString inputName(const QString &fileName)
{
    return fileName == u"-" ? cliText(CliText::StandardInput) : fileName;
}

QByteArray readInput(const QString &fileName)
{
    if (fileName != u"-")
        return tessaly::DocumentFile::read(fileName);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess,
                             QStringLiteral("%1: %2").arg(inputName(fileName), input.errorString()));
    return tessaly::DocumentFile::read(input, inputName(fileName));
}
