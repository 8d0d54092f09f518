#include "command.h"
#include "componentsession.h"

#include "tessaly/error.h"
#include "veldra/records/definitionfile.h"
#include "veldra/records/statementtext.h"

#include <QCommandLineParser>

int runSql(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
            "Prints the SELECT statement text of the query definition stored in FILE\n"
            "(a saved definition, or a component document holding one)."));
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("a saved query definition or component document"));
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("sql")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra sql: give exactly one FILE (see veldra sql --help)\n";
        return exitcode::badInput;
    }
    const QString fileName = parser.positionalArguments().constFirst();
    const auto query = readDefinitionOrComponent(fileName);
    try {
        // Built whole before anything is printed, so a failure never leaves half a statement.
        out() << veldra::statementText(*query);
    } catch (const tessaly::Error &error) {
        err() << "veldra sql: " << fileName << ": " << error.message() << '\n';
        return exitcode::badInput;
    }
    return exitcode::ok;
}
