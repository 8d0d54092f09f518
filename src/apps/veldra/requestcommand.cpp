#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "host/componentsession.h"

#include <QCommandLineParser>

int runRequest(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::RequestDescription));
    parser.addPositionalArgument(QStringLiteral("DOC"), cliText(CliText::DocArgument));
    const QCommandLineOption set(QStringLiteral("set"), cliText(CliText::SetOption), QStringLiteral("NAME=VALUE"));
    const QCommandLineOption save(QStringLiteral("save"), cliText(CliText::SaveOption), QStringLiteral("OUT"));
    parser.addOption(set);
    parser.addOption(save);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("request")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra request: " << cliText(CliText::GiveOneDoc).arg(QStringLiteral("request")) << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    host::ComponentSession session;
    loadDocument(session, document);
    applyAssignments(session, parser.values(set));
    const host::CurrentRequest request = session.request();
    if (parser.isSet(save))
        session.save(parser.value(save));
    if (!request.ready())
        return reportUnsent(QStringLiteral("request"), inputName(document), request);
    out() << request.text << '\n';
    return exitcode::ok;
}
