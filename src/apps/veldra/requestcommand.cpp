#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "dataservice/dataservice.h"
#include "host/componentsession.h"
#include "host/livelists.h"

#include <QCommandLineParser>

int runRequest(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::RequestDescription));
    parser.addPositionalArgument(QStringLiteral("DOC"), cliText(CliText::DocArgument));
    ParameterOptions options;
    options.set.setDescription(cliText(CliText::SetOption));
    const QCommandLineOption save(QStringLiteral("save"), cliText(CliText::SaveOption), QStringLiteral("OUT"));
    options.addTo(parser);
    parser.addOption(save);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("request")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra request: " << cliText(CliText::GiveOneDoc).arg(QStringLiteral("request")) << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    const auto service = std::make_shared<const dataservice::DataService>();
    host::LiveLists lists(service);
    host::ComponentSession session;
    loadDocument(session, document);
    applyParameterOptions(session, parser, options, QStringLiteral("request"), lists, *service);
    const host::CurrentRequest request = session.request();
    if (parser.isSet(save))
        session.save(parser.value(save));
    if (!request.ready())
        return reportUnsent(QStringLiteral("request"), inputName(document), request);
    out() << request.text << '\n';
    return exitcode::ok;
}
