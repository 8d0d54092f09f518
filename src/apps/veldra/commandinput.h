#pragma once

#include <QByteArray>
#include <QStringList>

namespace host {
class ComponentSession;
struct CurrentRequest;
} // namespace host

// The bytes of FILE, or of standard input for "-"; raises tessaly::Error when it cannot be read.
QByteArray readInput(const QString &fileName);
// How messages name FILE.
QString inputName(const QString &fileName);

// Loads FILE ("-": standard input) into the session: a component document or a bare definition.
void loadDocument(host::ComponentSession &session, const QString &fileName);
// Applies the "NAME=VALUE" assignments of --set in order; raises tessaly::Error for a malformed
// one or one the component cannot use.
void applyAssignments(host::ComponentSession &session, const QStringList &assignments);

// Says on standard error why the request of DOC is not sent: the missing piece (status 1:
// no request), or each parameter without a value and how to give it (status 2: an input is
// missing). The exit status.
int reportUnsent(const QString &command, const QString &document, const host::CurrentRequest &request);
