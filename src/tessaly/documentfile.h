#pragma once

#include "tessaly/tessaly_export.h"

#include <QByteArray>
#include <QString>

class QIODevice;

namespace tessaly {

// Reading and replacing document files with care for what a path can name besides a
// regular file: a device, a FIFO, a pipe.
namespace DocumentFile {

// Far beyond any definition or component document.
constexpr qint64 SizeLimit = 64 * 1024 * 1024;

// The file's bytes, read to its end. A device or FIFO is read like a file, but stops at the
// limit: throws Error(FileAccess) naming the file when it cannot be read or holds more.
TESSALY_EXPORT QByteArray read(const QString &fileName, qint64 limit = SizeLimit);
// The same for a device already open (standard input), named fileName in messages.
TESSALY_EXPORT QByteArray read(QIODevice &device, const QString &fileName, qint64 limit = SizeLimit);

// Saving writes aside and renames, which would put a regular file where a device, FIFO or
// socket was. Throws Error(FileAccess) naming the file when it exists and is not a regular
// file (a link is followed).
TESSALY_EXPORT void checkReplaceable(const QString &fileName);

} // namespace DocumentFile

} // namespace tessaly
