#include "commandinput.h"

#include "clitext.h"
#include "command.h"

#include "dataservice/dataservice.h"
#include "host/componentsession.h"
#include "host/livelists.h"
#include "host/parameterchoices.h"
#include "tessaly/namemap.h"
#include "veldra/records/sqlinfo.h"
#include "tessaly/documentfile.h"
#include "tessaly/error.h"

#include <QCommandLineParser>
#include <QFile>

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

void loadDocument(host::ComponentSession &session, const QString &fileName)
{
    session.load(readInput(fileName), inputName(fileName));
}

int reportUnsent(const QString &command, const QString &document, const host::CurrentRequest &request)
{
    const QString prefix = QStringLiteral("veldra ") + command + QStringLiteral(": ");
    if (!request.missingPiece.isEmpty()) {
        err() << prefix << cliText(CliText::YieldsNoRequest).arg(document, request.missingPiece) << Qt::endl;
        return exitcode::noResult;
    }
    for (const host::MissingValue &missing : request.missingValues) {
        if (!missing.defined)
            err() << prefix << cliText(CliText::UndefinedParameter).arg(missing.reference) << Qt::endl;
        else if (missing.title.isEmpty())
            err() << prefix << cliText(CliText::MissingValue).arg(missing.reference) << Qt::endl;
        else
            err() << prefix << cliText(CliText::MissingTitledValue).arg(missing.reference, missing.title) << Qt::endl;
    }
    return exitcode::badInput;
}

ParameterOptions::ParameterOptions()
    : set(QStringLiteral("set"), cliText(CliText::SetFirstOption), QStringLiteral("NAME=VALUE")),
      pick(QStringLiteral("pick"), cliText(CliText::PickOption), QStringLiteral("NAME=VALUE")),
      source(QStringLiteral("source"), cliText(CliText::SourceOption), QStringLiteral("NAME")),
      setting(QStringLiteral("setting"), cliText(CliText::SettingOption), QStringLiteral("NAME:KEY=VALUE"))
{
}

void ParameterOptions::addTo(QCommandLineParser &parser) const
{
    parser.addOptions({ set, pick, source, setting });
}

namespace {

std::pair<QString, QString> splitAssignment(const QString &assignment)
{
    const qsizetype equals = assignment.indexOf(u'=');
    if (equals <= 0)
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, cliText(CliText::SetWantsAssignment).arg(assignment));
    return { assignment.left(equals), assignment.mid(equals + 1) };
}

// "@@@Region:multiple=true": one change of the host-level settings.
void changeSetting(host::HostSettings &settings, const QString &change)
{
    const auto [target, value] = splitAssignment(change);
    const qsizetype colon = target.lastIndexOf(u':');
    const QString reference = target.left(colon);
    const QString key = target.mid(colon + 1);
    if (colon <= 0)
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, cliText(CliText::SettingWantsKey).arg(change));
    host::ParameterSetting &setting = settings.edit(reference);
    host::LiveList &list = setting.list;
    const bool on = value == u"true" || value == u"1" || value == u"yes";
    if (key == u"multiple") {
        setting.multiple = on;
    } else if (key == u"default") {
        setting.relativeDefault = value;
    } else if (key == u"table") {
        list.table = value;
    } else if (key == u"value") {
        list.valueColumn = value;
    } else if (key == u"display") {
        list.displayColumn = value;
    } else if (key == u"filter") {
        list.filter = value;
    } else if (key == u"order") {
        list.order = value;
    } else if (key == u"descending") {
        list.descending = on;
    } else if (key == u"cache") {
        bool ok = false;
        list.cacheSeconds = value.toInt(&ok);
        if (!ok || list.cacheSeconds < 0)
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, cliText(CliText::SettingWantsKey).arg(change));
    } else {
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, cliText(CliText::SettingWantsKey).arg(change));
    }
    if (!list.isSet())
        list = {};
    if (setting == host::ParameterSetting{ reference, false, {}, {} })
        settings.parameters.removeIf([&](const host::ParameterSetting &s) { return s.reference == reference; });
}

} // namespace

void applyParameterOptions(host::ComponentSession &session, const QCommandLineParser &parser,
                           const ParameterOptions &options, const QString &command, host::LiveLists &lists,
                           const dataservice::DataService &service)
{
    if (parser.isSet(options.source))
        session.setSource(host::SourceChoice::named(parser.value(options.source), service.dataSources()));
    if (parser.isSet(options.setting)) {
        host::HostSettings settings = session.settings();
        for (const QString &change : parser.values(options.setting))
            changeSetting(settings, change);
        session.setSettings(settings);
        host::ParameterChoices(session.host(), session.settings(), nullptr, session.source()).applyDefaults();
    }
    QSet<QString> given;
    for (const QString &assignment : parser.values(options.set)) {
        const auto [name, value] = splitAssignment(assignment);
        session.setInput(name, value);
        given.insert(name);
    }
    host::ParameterChoices choices(session.host(), session.settings(), &lists, session.source());
    // Picks of one parameter gather, in the order given, into one slot value.
    QStringList names;
    QHash<QString, QStringList> picked;
    for (const QString &assignment : parser.values(options.pick)) {
        const auto [name, value] = splitAssignment(assignment);
        if (!names.contains(name))
            names.append(name);
        picked[name].append(value);
    }
    const auto parameters = session.definition()->parameters();
    for (const QString &name : names) {
        if (!parameters || !parameters->contains(name)) {
            QStringList known;
            for (int i = 0; parameters && i < parameters->count(); ++i)
                known.append(parameters->key(i));
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                                 cliText(CliText::PickWantsParameter).arg(name, known.join(QStringLiteral(", "))));
        }
        choices.choose(name, picked.value(name));
        given.insert(name);
    }
    for (const QString &note : choices.settle({}, given))
        err() << "veldra " << command << ": " << note << Qt::endl;
}
