#include "commandinput.h"

#include "clitext.h"
#include "command.h"

#include "host/componentsession.h"
#include "tessaly/documentfile.h"
#include "tessaly/error.h"

#include <QFile>

QString inputName(const QString &fileName)
{
    return fileName == u"-" ? cliText(CliText::StandardInput) : fileName;
}

QByteArray readInput(const QString &fileName)
{
    if (fileName != u"-")
        return tessaly::DocumentFile::read(fileName);
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess,
                             QStringLiteral("%1: %2").arg(inputName(fileName), input.errorString()));
    return tessaly::DocumentFile::read(input, inputName(fileName));
}

void loadDocument(host::ComponentSession &session, const QString &fileName)
{
    session.load(readInput(fileName), inputName(fileName));
}

void applyAssignments(host::ComponentSession &session, const QStringList &assignments)
{
    for (const QString &assignment : assignments) {
        const qsizetype equals = assignment.indexOf(u'=');
        if (equals <= 0)
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                                 cliText(CliText::SetWantsAssignment).arg(assignment));
        session.setInput(assignment.left(equals), assignment.mid(equals + 1));
    }
}

int reportUnsent(const QString &command, const QString &document, const host::CurrentRequest &request)
{
    const QString prefix = QStringLiteral("veldra ") + command + QStringLiteral(": ");
    if (!request.missingPiece.isEmpty()) {
        err() << prefix << cliText(CliText::YieldsNoRequest).arg(document, request.missingPiece) << Qt::endl;
        return exitcode::noResult;
    }
    for (const host::MissingValue &missing : request.missingValues) {
        if (!missing.defined)
            err() << prefix << cliText(CliText::UndefinedParameter).arg(missing.reference) << Qt::endl;
        else if (missing.title.isEmpty())
            err() << prefix << cliText(CliText::MissingValue).arg(missing.reference) << Qt::endl;
        else
            err() << prefix << cliText(CliText::MissingTitledValue).arg(missing.reference, missing.title) << Qt::endl;
    }
    return exitcode::badInput;
}
