#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "host/componentsession.h"
#include "host/livelists.h"

#include "dataservice/dataservice.h"
#include "dataservice/errornumber.h"
#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/parameterreference.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/statementtext.h"

#include <QCommandLineParser>
#include <QDomDocument>

namespace {

// The statement text with each parameter reference replaced by its current value, and a row
// count taken as a parameter by the TopN slot's value.
QString filledIn(const QString &statement, host::ComponentSession &session)
{
    const auto values = session.parameterValues();
    QStringList lines = statement.split(QStringLiteral("\r\n"));
    // Line by line: a line break does not end a reference, so one at the end of a line would run on.
    for (QString &line : lines) {
        QString text;
        const QStringView rest = veldra::parameterreference::scan(line, [&](QStringView before, QStringView reference) {
            text += before;
            QVariant value;
            if (values && values->lookup(reference.toString(), &value))
                text += tessaly::variant::toText(value);
            else
                text += reference;
        });
        text += rest;
        line = text;
    }
    QString text = lines.join(QStringLiteral("\r\n"));
    const auto query = session.definition();
    if (query && query->topNAsParam()) {
        const QString marker = QStringLiteral("TOP <parameter(%1)>").arg(query->topN());
        text.replace(marker, QStringLiteral("TOP ") + tessaly::variant::toText(session.host().slotValue(QStringLiteral("TopN"))));
    }
    return text;
}

// The request sent to another data source or catalog than the document names: its provider is
// the one the data source is configured under.
QByteArray retargeted(const QString &request, const QString &dsn, const QString &catalog,
                      const dataservice::DataSourceCatalog &dataSources)
{
    QDomDocument document;
    document.setContent(request);
    const QDomElement target = document.documentElement().firstChildElement(QStringLiteral("get"))
                                       .firstChildElement(QStringLiteral("target"));
    const auto replace = [&](const QString &name, const QString &text) {
        QDomElement element = target.firstChildElement(name);
        while (element.hasChildNodes())
            element.removeChild(element.firstChild());
        element.appendChild(document.createTextNode(text));
    };
    if (!dsn.isEmpty()) {
        QStringList names;
        for (const QString &provider : dataservice::DataSourceCatalog::providers()) {
            if (dataSources.names(provider).contains(dsn))
                replace(QStringLiteral("provider"), provider);
            names += dataSources.names(provider);
        }
        if (!names.contains(dsn))
            throw tessaly::Error(dataservice::ErrorNumber::UnknownDataSource,
                                 cliText(CliText::NoSuchDataSource).arg(dsn, names.join(QStringLiteral(", "))));
        replace(QStringLiteral("dsn"), dsn);
    }
    if (!catalog.isEmpty())
        replace(QStringLiteral("catalog"), catalog);
    return document.toByteArray(-1);
}

// The SELECT the engine receives for the component's request, as the data service builds it.
int printEngineStatement(host::ComponentSession &session, const QString &fileName, const QString &dsn,
                         const QString &catalog, const dataservice::DataService &service)
{
    const host::CurrentRequest request = session.request(); // on the --source chosen, if any
    if (!request.ready())
        return reportUnsent(QStringLiteral("sql"), inputName(fileName), request);
    const QByteArray retargetedRequest = retargeted(request.text, dsn, catalog, service.dataSources());
    try {
        out() << service.statement(retargetedRequest) << '\n';
    } catch (const tessaly::Error &error) {
        err() << "veldra sql: " << serviceReason(error.number(), error.message()) << Qt::endl;
        return exitcode::noResult;
    }
    return exitcode::ok;
}

} // namespace

int runSql(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::SqlDescription));
    parser.addPositionalArgument(QStringLiteral("FILE"), cliText(CliText::FileArgument));
    const ParameterOptions options;
    const QCommandLineOption filled(QStringLiteral("filled"), cliText(CliText::FilledOption));
    const QCommandLineOption engine(QStringLiteral("engine"), cliText(CliText::EngineOption));
    const QCommandLineOption dsn(QStringLiteral("dsn"), cliText(CliText::EngineDsnOption), QStringLiteral("NAME"));
    const QCommandLineOption catalog(QStringLiteral("catalog"), cliText(CliText::EngineCatalogOption),
                                     QStringLiteral("NAME"));
    options.addTo(parser);
    parser.addOptions({filled, engine, dsn, catalog});
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("sql")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra sql: " << cliText(CliText::GiveOneFile).arg(QStringLiteral("sql")) << Qt::endl;
        return exitcode::badInput;
    }
    const QString fileName = parser.positionalArguments().constFirst();
    const auto service = std::make_shared<const dataservice::DataService>();
    host::LiveLists lists(service);
    host::ComponentSession session;
    loadDocument(session, fileName);
    applyParameterOptions(session, parser, options, QStringLiteral("sql"), lists, *service);
    if (parser.isSet(engine))
        return printEngineStatement(session, fileName, parser.value(dsn), parser.value(catalog), *service);
    const auto query = session.definition();
    if (parser.isSet(filled)) {
        // A statement with a hole where a value goes is no statement that runs.
        const auto missing = host::missingValues(*query, session.parameterValues().get());
        if (!missing.isEmpty())
            return reportUnsent(QStringLiteral("sql"), inputName(fileName), { {}, {}, missing });
    }
    try {
        // Built whole before anything is printed, so a failure never leaves half a statement.
        const QString statement = veldra::statementText(*query);
        out() << (parser.isSet(filled) ? filledIn(statement, session) : statement);
    } catch (const tessaly::Error &error) {
        err() << "veldra sql: " << inputName(fileName) << ": " << error.message() << '\n';
        return exitcode::badInput;
    }
    return exitcode::ok;
}
