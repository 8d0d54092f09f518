#include "command.h"
#include "componentsession.h"
#include "resultset.h"

#include "dataservice/dataservice.h"
#include "tessaly/error.h"
#include "veldra/service/databaseerrorreport.h"

#include <QCommandLineParser>
#include <QDomDocument>

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
    err() << "veldra run: " << error.message() << Qt::endl;
}

} // namespace

int runRun(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
            "Builds the request of the component in DOC as 'veldra request' does, sends it to the data\n"
            "service and prints the rows. Exit status: 0 rows printed; 1 no request, or the service\n"
            "refused or failed it (the database error report goes to standard error); 2 bad input."));
    parser.addPositionalArgument(QStringLiteral("DOC"), QStringLiteral("a saved component document"));
    const QCommandLineOption set(QStringLiteral("set"), QStringLiteral("write VALUE into the slot NAME first; repeatable"),
                                 QStringLiteral("NAME=VALUE"));
    const QCommandLineOption format(QStringLiteral("format"), QStringLiteral("table (default), csv, json or xml"),
                                    QStringLiteral("FORMAT"), QStringLiteral("table"));
    parser.addOption(set);
    parser.addOption(format);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("run")))
        return *status;
    const QString outputFormat = parser.value(format);
    if (parser.positionalArguments().size() != 1 || !QStringList { QStringLiteral("table"), QStringLiteral("csv"), QStringLiteral("json"), QStringLiteral("xml") }.contains(outputFormat)) {
        err() << "veldra run: give one DOC and a --format of table, csv, json or xml (see veldra run --help)" << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    ComponentSession session;
    std::optional<QString> request;
    QString missing;
    if (!session.loadAndBuild(document, parser.values(set), &request, &missing))
        return exitcode::badInput;
    if (!request)
        return reportNoRequest(QStringLiteral("run"), document, missing);

    QByteArray response;
    try {
        response = dataservice::DataService().answer(request->toUtf8());
    } catch (const tessaly::Error &error) {
        reportFailure(error, *request);
        return exitcode::noResult;
    }
    if (outputFormat == u"xml") {
        out() << QString::fromUtf8(response) << '\n';
        return exitcode::ok;
    }
    const ResultSet rows = ResultSet::fromResponse(response);
    out() << (outputFormat == u"csv" ? rows.toCsv() : outputFormat == u"json" ? rows.toJson() : rows.toTable());
    return exitcode::ok;
}
