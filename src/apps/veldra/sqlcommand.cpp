#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "dataservice/dataservice.h"
#include "host/componentsession.h"
#include "host/livelists.h"

#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/parameterreference.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/statementtext.h"

#include <QCommandLineParser>

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

} // namespace

int runSql(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::SqlDescription));
    parser.addPositionalArgument(QStringLiteral("FILE"), cliText(CliText::FileArgument));
    const ParameterOptions options;
    const QCommandLineOption filled(QStringLiteral("filled"), cliText(CliText::FilledOption));
    options.addTo(parser);
    parser.addOption(filled);
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
