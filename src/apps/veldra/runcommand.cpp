#include "clitext.h"
#include "command.h"
#include "commandinput.h"
#include "outputerror.h"
#include "outputfile.h"
#include "resultprinter.h"

#include "dataservice/dataservice.h"
#include "host/componentsession.h"
#include "host/livelists.h"
#include "tessaly/error.h"
#include "veldra/service/databaseerrorreport.h"

#include <QCommandLineParser>
#include <QDomDocument>

#include <unistd.h>

namespace {

// The database error report for a failed request, with the target it named.
void reportFailure(const tessaly::Error &error, const QString &request)
{
    QDomDocument document;
    document.setContent(request);
    const QDomElement target = document.documentElement().firstChildElement(QStringLiteral("get"))
                                       .firstChildElement(QStringLiteral("target"));
    auto field = [&target](const char *name) { return target.firstChildElement(QLatin1String(name)).text(); };
    veldra::DatabaseErrorReport report;
    report.errorNumber = error.number();
    report.provider = field("provider");
    report.dsn = field("dsn");
    report.catalog = field("catalog");
    report.table = field("table");
    veldra::reportDatabaseErrorAsText(report);
    err() << "veldra run: " << serviceReason(error.number(), error.message()) << Qt::endl;
}

} // namespace

int runRun(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::RunDescription));
    parser.addPositionalArgument(QStringLiteral("DOC"), cliText(CliText::DocArgument));
    const ParameterOptions options;
    const QCommandLineOption format(QStringLiteral("format"), cliText(CliText::FormatOption), QStringLiteral("FORMAT"),
                                    QStringLiteral("table"));
    options.addTo(parser);
    parser.addOption(format);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("run")))
        return *status;
    OutputFile output(STDOUT_FILENO);
    const std::unique_ptr<ResultPrinter> printer = createPrinter(parser.value(format), output);
    if (parser.positionalArguments().size() != 1 || !printer) {
        err() << "veldra run: " << cliText(CliText::RunUsage) << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    // A bad configuration is bad input, as for every command.
    const auto service = std::make_shared<const dataservice::DataService>();
    host::LiveLists lists(service);
    host::ComponentSession session;
    loadDocument(session, document);
    applyParameterOptions(session, parser, options, QStringLiteral("run"), lists, *service);
    const host::CurrentRequest request = session.request();
    if (!request.ready())
        return reportUnsent(QStringLiteral("run"), inputName(document), request);

    try {
        service->select(request.text.toUtf8(), *printer);
    } catch (const tessaly::Error &error) {
        try {
            printer->abandon();
        } catch (const OutputError &) {
            // The service's failure is the one to report.
        }
        reportFailure(error, request.text);
        if (output.wroteAnything())
            err() << "veldra run: " << cliText(CliText::IncompleteResult) << Qt::endl;
        return exitcode::noResult;
    }
    if (printer->truncated()) {
        err() << "veldra run: " << cliText(CliText::CapNotice).arg(printer->rowCap()) << Qt::endl;
        return exitcode::cutAtRowCap;
    }
    return exitcode::ok;
}
