#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "host/componentsession.h"

#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QCommandLineParser>

int runParams(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::ParamsDescription));
    parser.addPositionalArgument(QStringLiteral("DOC"), cliText(CliText::DocArgument));
    const QCommandLineOption set(QStringLiteral("set"), cliText(CliText::SetFirstOption), QStringLiteral("NAME=VALUE"));
    parser.addOption(set);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("params")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra params: " << cliText(CliText::GiveOneDoc).arg(QStringLiteral("params")) << Qt::endl;
        return exitcode::badInput;
    }
    host::ComponentSession session;
    loadDocument(session, parser.positionalArguments().constFirst());
    applyAssignments(session, parser.values(set));
    const auto parameters = session.definition()->parameters();
    const auto values = session.parameterValues();
    if (!parameters || parameters->isEmpty()) {
        out() << cliText(CliText::NoParameters) << '\n';
        return exitcode::ok;
    }
    // One block per parameter:
    //   @@@Region  chosen from a list  "Region"
    //     value: 'NE'
    //     'NE' = North East
    for (int i = 0; i < parameters->count(); ++i) {
        const QString reference = parameters->key(i);
        const auto parameter = parameters->objectAt<veldra::ParamInfo>(i);
        if (!parameter)
            continue;
        const bool fromList = parameter->paramType() == veldra::ParamInfo::ChosenFromList;
        out() << reference << "  " << cliText(fromList ? CliText::ParamChosenFromList : CliText::ParamTypedIn);
        if (!parameter->title().isEmpty())
            out() << "  \"" << parameter->title() << '"';
        out() << '\n';
        QVariant value;
        const QString current = values && values->lookup(reference, &value) ? tessaly::variant::toText(value) : QString();
        out() << "  " << (current.isEmpty() ? cliText(CliText::ParamNoValue).arg(reference) : cliText(CliText::ParamValue).arg(current))
              << '\n';
        if (!fromList)
            continue;
        const auto &selections = parameter->selections();
        for (int j = 0; j < selections->count(); ++j)
            out() << "  " << selections->key(j) << " = " << tessaly::variant::toText(selections->item(j)) << '\n';
    }
    return exitcode::ok;
}
