#pragma once

#include <QStringList>
#include <QTextStream>

#include <optional>

// One subcommand of the veldra tool.
struct Command
{
    QString name;
    QString summary;
    // Exit status: 0 done, 1 no result (said on standard error), 2 bad input or usage.
    int (*run)(const QStringList &arguments);
};

namespace exitcode {
constexpr int ok = 0;
constexpr int noResult = 1;
constexpr int badInput = 2;
} // namespace exitcode

class QCommandLineParser;

QTextStream &out();
QTextStream &err();
// The parser's help with "veldra NAME" in its usage line.
QString usageText(const QCommandLineParser &parser, const QString &name);
// Parses the arguments of command NAME. Gives the exit status when the command ends there:
// its help was printed, or a usage error was said on standard error.
std::optional<int> parseCommandLine(QCommandLineParser &parser, const QStringList &arguments, const QString &name);

// Says on standard error that DOC yields no request, and why; the exit status for it.
int reportNoRequest(const QString &command, const QString &document, const QString &missing);

// The commands, each in its own source file.
int runSql(const QStringList &arguments);
int runRequest(const QStringList &arguments);
int runRun(const QStringList &arguments);
int runBrowse(const QStringList &arguments);
int runRegister(const QStringList &arguments);
int runEdit(const QStringList &arguments);

// Whether `veldra edit` can have widgets here: a display to show them on, or a platform named
// in QT_QPA_PLATFORM. The other commands never need one.
bool editNeedsWidgets();
