#pragma once

#include <QByteArray>
#include <QCommandLineOption>
#include <QStringList>

class QCommandLineParser;

namespace dataservice {
class DataService;
}

namespace host {
class ComponentSession;
struct CurrentRequest;
class LiveLists;
} // namespace host

// The bytes of FILE, or of standard input for "-"; raises tessaly::Error when it cannot be read.
QByteArray readInput(const QString &fileName);
// How messages name FILE.
QString inputName(const QString &fileName);

// Loads FILE ("-": standard input) into the session: a component document or a bare definition.
void loadDocument(host::ComponentSession &session, const QString &fileName);

// Says on standard error why the request of DOC is not sent: the missing piece (status 1:
// no request), or each parameter without a value and how to give it (status 2: an input is
// missing). The exit status.
int reportUnsent(const QString &command, const QString &document, const host::CurrentRequest &request);

// The options that run a component with its host-level parameter settings, beside --set:
// --source (another data source), --setting (change the settings), --pick (choose values by
// their text, several for a parameter that allows them).
struct ParameterOptions
{
    ParameterOptions();
    void addTo(QCommandLineParser &parser) const;

    QCommandLineOption set;
    QCommandLineOption pick;
    QCommandLineOption source;
    QCommandLineOption setting;
};

// After the document is loaded: chooses the --source, applies the --setting changes (checked,
// so a cycle of lists is refused), the --set assignments in order, the --pick values, and reads
// the live lists, keeping what the person set; the lists' notes go to standard error. Raises
// tessaly::Error for what cannot be applied.
void applyParameterOptions(host::ComponentSession &session, const QCommandLineParser &parser,
                           const ParameterOptions &options, const QString &command, host::LiveLists &lists,
                           const dataservice::DataService &service);
