#include "clitext.h"
#include "cliuiservice.h"
#include "command.h"
#include "outputerror.h"

#include "host/translations.h"
#include "tessaly/error.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCoreApplication>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// Writes out what the text stream holds; false when standard output refused it.
bool flushStandardOutput()
{
    out().flush();
    return out().status() == QTextStream::Ok && std::fflush(stdout) == 0 && !std::ferror(stdout);
}

struct Command
{
    const char16_t *name;
    CliText summary;
    int (*run)(const QStringList &arguments);
};

const Command commands[] = {
    { u"sql", CliText::SqlSummary, runSql },
    { u"request", CliText::RequestSummary, runRequest },
    { u"run", CliText::RunSummary, runRun },
    { u"params", CliText::ParamsSummary, runParams },
    { u"browse", CliText::BrowseSummary, runBrowse },
    { u"register", CliText::RegisterSummary, runRegister },
    { u"edit", CliText::EditSummary, runEdit },
    { u"serve", CliText::ServeSummary, runServe },
};

void printUsage(QTextStream &stream)
{
    stream << cliText(CliText::Usage) << "\n\n" << cliText(CliText::CommandsHeading) << '\n';
    for (const Command &command : commands)
        stream << "  " << QString::fromUtf16(command.name).leftJustified(10) << cliText(command.summary) << '\n';
    stream << "  " << QStringLiteral("help").leftJustified(10) << cliText(CliText::HelpSummary) << "\n\n"
           << cliText(CliText::OptionsHeading) << '\n'
           << "  " << QStringLiteral("--version").leftJustified(12) << cliText(CliText::VersionOption) << '\n'
           << "  " << QStringLiteral("--help").leftJustified(12) << cliText(CliText::HelpOption) << '\n';
    stream << '\n' << cliText(CliText::MoreHelp) << '\n';
}

// "veldra help COMMAND" is "veldra COMMAND --help", as people try both.
QStringList helpAsOption(const QStringList &arguments)
{
    if (arguments.size() == 3 && arguments.at(1) == u"help")
        return { arguments.at(0), arguments.at(2), QStringLiteral("--help") };
    return arguments;
}

} // namespace

int main(int argc, char **argv)
{
    // Only the wizard needs widgets; everything else runs where there is no display at all.
    const bool widgets = argc >= 2 && std::strcmp(argv[1], "edit") == 0 && editNeedsWidgets();
    const std::unique_ptr<QCoreApplication> app = widgets ? std::make_unique<QApplication>(argc, argv)
                                                          : std::make_unique<QCoreApplication>(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("veldra"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELDRA_VERSION));
    tessaly::UiService::setInstance(std::make_shared<CliUiService>());
    host::installTranslations(*app);
    const QStringList arguments = helpAsOption(QCoreApplication::arguments());
    if (arguments.size() < 2 || arguments.at(1) == u"--help" || arguments.at(1) == u"-h"
        || arguments.at(1) == u"--help-all" || (arguments.size() == 2 && arguments.at(1) == u"help")) {
        printUsage(arguments.size() < 2 ? err() : out());
        return arguments.size() < 2 ? exitcode::badInput : exitcode::ok;
    }
    if (arguments.at(1) == u"--version") {
        out() << "veldra " << QCoreApplication::applicationVersion() << '\n';
        return flushStandardOutput() ? exitcode::ok : exitcode::writeFailed;
    }
    for (const Command &command : commands) {
        const QString name = QString::fromUtf16(command.name);
        if (name != arguments.at(1))
            continue;
        try {
            const int status = command.run(arguments.mid(1));
            if (!flushStandardOutput())
                throw OutputError(std::strerror(errno));
            err().flush();
            return status;
        } catch (const tessaly::Error &error) {
            flushStandardOutput();
            err() << "veldra " << name << ": " << serviceReason(error.number(), error.message()) << Qt::endl;
            return exitcode::badInput;
        } catch (const OutputError &error) {
            err() << "veldra " << name << ": "
                  << cliText(CliText::WriteFailed).arg(QString::fromLocal8Bit(error.what())) << Qt::endl;
            return exitcode::writeFailed;
        }
    }
    err() << "veldra: " << cliText(CliText::UnknownCommand).arg(arguments.at(1)) << "\n\n";
    printUsage(err());
    return exitcode::badInput;
}
