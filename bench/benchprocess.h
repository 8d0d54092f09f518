#pragma once

// What the benchmarks that run other programs share: running one to its end, and reading the
// state file tests/dataservice/pgserver.sh writes for the throw-away PostgreSQL server.

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>

// Runs program with its output discarded (errors go to ours); true when it ran and exited 0.
inline bool runProgram(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

// The "key=value" lines of the server's state file; empty when no server could be started.
inline QMap<QString, QString> readServerState(const QString &path)
{
    QMap<QString, QString> state;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : file.readAll().split('\n')) {
            const qsizetype eq = line.indexOf('=');
            if (eq > 0)
                state.insert(QString::fromUtf8(line.left(eq)), QString::fromUtf8(line.mid(eq + 1)));
        }
    }
    return state;
}
