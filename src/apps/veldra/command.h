#pragma once

#include <QStringList>
#include <QTextStream>

#include <optional>

namespace exitcode {
constexpr int ok = 0;
constexpr int noResult = 1;    // no request, or the service refused or failed it (said on standard error)
constexpr int badInput = 2;    // a file, a slot, a value, the data source configuration, or usage
constexpr int cutAtRowCap = 3; // rows printed, but the data source's row cap cut the result
constexpr int writeFailed = 4; // standard output could not be written
} // namespace exitcode

class QCommandLineParser;

QTextStream &out();
QTextStream &err();
// The parser's help with "veldra NAME" in its usage line.
QString usageText(const QCommandLineParser &parser, const QString &name);
// Parses the arguments of command NAME. Gives the exit status when the command ends there:
// its help was printed, or a usage error was said on standard error.
std::optional<int> parseCommandLine(QCommandLineParser &parser, const QStringList &arguments, const QString &name);

// The commands, each in its own source file.
int runSql(const QStringList &arguments);
int runRequest(const QStringList &arguments);
int runRun(const QStringList &arguments);
int runParams(const QStringList &arguments);
int runBrowse(const QStringList &arguments);
int runRegister(const QStringList &arguments);
int runEdit(const QStringList &arguments);
int runServe(const QStringList &arguments);

// Whether `veldra edit` can have widgets here: a display to show them on, or a platform named
// in QT_QPA_PLATFORM. The other commands never need one.
bool editNeedsWidgets();
