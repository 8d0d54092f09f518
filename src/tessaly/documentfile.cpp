#include "tessaly/documentfile.h"

#include "tessaly/error.h"

#include <QFile>
#include <QFileInfo>

namespace tessaly::DocumentFile {

QByteArray read(const QString &fileName, qint64 limit)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(
            ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    return read(file, fileName, limit);
}

QByteArray read(QIODevice &file, const QString &fileName, qint64 limit)
{
    constexpr qint64 chunk = 1024 * 1024;
    QByteArray data;
    for (;;) {
        const qsizetype before = data.size();
        data.resize(before + qsizetype(std::min(chunk, limit + 1 - before)));
        const qint64 got = file.read(data.data() + before, data.size() - before);
        if (got < 0)
            throw Error(ErrorNumber::FileAccess,
                QStringLiteral("%1: %2").arg(fileName, file.errorString()));
        data.resize(before + got);
        if (data.size() > limit)
            throw Error(ErrorNumber::FileAccess,
                QStringLiteral(
                    "%1: more than %2 bytes, which no document holds (a device or a pipe that "
                    "does not end?); reading stopped")
                    .arg(fileName)
                    .arg(limit));
        if (got == 0)
            return data;
    }
}

void checkReplaceable(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile())
        throw Error(ErrorNumber::FileAccess,
            QStringLiteral(
                "%1: not a regular file (a directory, device, FIFO or socket); a document is "
                "not saved in its place")
                .arg(fileName));
}

} // namespace tessaly::DocumentFile
