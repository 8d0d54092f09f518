#include "command.h"

#include "tessaly/error.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>
#include <cstring>
#include <memory>

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream &err()
{
    static QTextStream stream(stderr);
    return stream;
}

QString usageText(const QCommandLineParser &parser, const QString &name)
{
    QString help = parser.helpText();
    const qsizetype options = help.indexOf(QLatin1String(" [options]"));
    if (help.startsWith(QLatin1String("Usage: ")) && options > 0)
        help.replace(7, options - 7, QStringLiteral("veldra ") + name);
    return help;
}

std::optional<int> parseCommandLine(QCommandLineParser &parser, const QStringList &arguments, const QString &name)
{
    parser.addHelpOption();
    if (!parser.parse(arguments)) {
        err() << "veldra " << name << ": " << parser.errorText() << Qt::endl;
        return exitcode::badInput;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        out() << usageText(parser, name);
        return exitcode::ok;
    }
    return std::nullopt;
}

int reportNoRequest(const QString &command, const QString &document, const QString &missing)
{
    err() << "veldra " << command << ": " << document << " yields no request: " << missing << Qt::endl;
    return exitcode::noResult;
}

namespace {

const Command commands[] = {
    { QStringLiteral("sql"), QStringLiteral("print the SELECT statement text of a query definition"), runSql },
    { QStringLiteral("request"), QStringLiteral("print the data-service request of a component, after setting slots"),
      runRequest },
    { QStringLiteral("run"), QStringLiteral("send a component's request to the data service and print the rows"), runRun },
    { QStringLiteral("browse"), QStringLiteral("list providers, data sources, catalogs, tables or columns"), runBrowse },
    { QStringLiteral("register"), QStringLiteral("write the library's class identifiers into the registry store"),
      runRegister },
    { QStringLiteral("edit"), QStringLiteral("open the query creation wizard on a component and save what it makes"),
      runEdit },
};

void printUsage(QTextStream &stream)
{
    stream << "Usage: veldra COMMAND [OPTIONS]\n\nCommands:\n";
    for (const Command &command : commands)
        stream << "  " << command.name.leftJustified(10) << command.summary << '\n';
    stream << "\nRun 'veldra COMMAND --help' for the options of a command.\n";
}

} // namespace

int main(int argc, char **argv)
{
    // Only the wizard needs widgets; everything else runs where there is no display at all.
    const bool widgets = argc >= 2 && std::strcmp(argv[1], "edit") == 0 && editNeedsWidgets();
    const std::unique_ptr<QCoreApplication> app = widgets ? std::make_unique<QApplication>(argc, argv)
                                                          : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("veldra"));
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2 || arguments.at(1) == u"--help" || arguments.at(1) == u"-h") {
        printUsage(arguments.size() < 2 ? err() : out());
        return arguments.size() < 2 ? exitcode::badInput : exitcode::ok;
    }
    for (const Command &command : commands) {
        if (command.name != arguments.at(1))
            continue;
        try {
            const int status = command.run(arguments.mid(1));
            out().flush();
            err().flush();
            return status;
        } catch (const tessaly::Error &error) {
            out().flush();
            err() << "veldra " << command.name << ": " << error.message() << Qt::endl;
            return exitcode::badInput;
        }
    }
    err() << "veldra: unknown command '" << arguments.at(1) << "'\n\n";
    printUsage(err());
    return exitcode::badInput;
}
