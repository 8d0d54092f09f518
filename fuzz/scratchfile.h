#pragma once

// The readers of configuration files take a path: each input is written to a file of this
// process's own scratch folder first (fork mode runs many processes side by side).

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

inline QString scratchPath(const QString &name)
{
    static QTemporaryDir folder(QFile::exists(QStringLiteral("/dev/shm")) ? QStringLiteral("/dev/shm/veldra-fuzz-XXXXXX")
                                                                          : QString());
    return folder.filePath(name);
}

inline QString writeScratch(const QString &name, const uint8_t *data, size_t size)
{
    const QString path = scratchPath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
        std::abort(); // the machine, not the reader: nothing to learn from it
    return path;
}
