#include "command.h"
#include "componentsession.h"

#include <QCommandLineParser>

int runRequest(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
            "Loads the component document DOC, writes each --set into the model's slot of that name\n"
            "as the framework would, and prints the request the model publishes in its \"request\" slot.\n"
            "Exit status: 0 a request was printed; 1 the definition yields no request (the missing\n"
            "piece is named on standard error); 2 bad input (a file, a slot name or a value)."));
    parser.addPositionalArgument(QStringLiteral("DOC"), QStringLiteral("a saved component document"));
    const QCommandLineOption set(QStringLiteral("set"),
                                 QStringLiteral("write VALUE into the slot NAME (a parameter slot such as @@@Region, "
                                                "selection, TopN, OrderBy, OrderByAscendant, UpdateRequest); repeatable"),
                                 QStringLiteral("NAME=VALUE"));
    const QCommandLineOption save(QStringLiteral("save"), QStringLiteral("write the component, with the values set, to OUT"),
                                  QStringLiteral("OUT"));
    parser.addOption(set);
    parser.addOption(save);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("request")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra request: give exactly one DOC (see veldra request --help)" << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    ComponentSession session;
    std::optional<QString> request;
    QString missing;
    if (!session.loadAndBuild(document, parser.values(set), &request, &missing))
        return exitcode::badInput;
    if (parser.isSet(save))
        session.save(parser.value(save));
    if (!request)
        return reportNoRequest(QStringLiteral("request"), document, missing);
    out() << *request << '\n';
    return exitcode::ok;
}
