#include "command.h"

#include <QCommandLineParser>
#include <QCoreApplication>

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
    // Qt names the program by the path it was started as; the usage line names the command.
    QString help = parser.helpText();
    const QString program = QCoreApplication::arguments().constFirst();
    const qsizetype at = help.indexOf(program);
    if (at >= 0 && at < help.indexOf(u'\n'))
        help.replace(at, program.size(), QStringLiteral("veldra ") + name);
    return help;
}

std::optional<int> parseCommandLine(QCommandLineParser &parser, const QStringList &arguments, const QString &name)
{
    parser.addHelpOption();
    if (!parser.parse(arguments)) {
        err() << "veldra " << name << ": " << parser.errorText() << Qt::endl;
        return exitcode::badInput;
    }
    // Help of any kind is all a command does when asked for it.
    if (parser.isSet(QStringLiteral("help")) || parser.isSet(QStringLiteral("help-all"))) {
        out() << usageText(parser, name);
        return exitcode::ok;
    }
    return std::nullopt;
}
