#include "host/savetarget.h"

#include "host/componentsession.h"

#include "host/hosttext.h"
#include "host/parametersettings.h"

#include "tessaly/componentdocument.h"
#include "tessaly/error.h"

#include <QDir>
#include <QFileInfo>

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace host {

namespace {

// access() rather than the permission bits: it answers for the user we run as, root and
// read-only file systems included.
QString whyNotWritable(const QString &path)
{
    if (::access(QFile::encodeName(path).constData(), W_OK) == 0)
        return {};
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

QString whyUnsavable(const QString &fileName)
{
    const QFileInfo file(fileName);
    if (file.isDir())
        return hostText(HostText::IsAFolder).arg(fileName);
    if (file.exists() && !file.isFile())
        return hostText(HostText::NotARegularFile).arg(fileName);
    const QFileInfo folder(file.absolutePath());
    if (!folder.exists())
        return hostText(HostText::FolderMissing).arg(fileName, QDir::toNativeSeparators(folder.filePath()));
    if (!folder.isDir())
        return hostText(HostText::NotAFolder).arg(fileName, QDir::toNativeSeparators(folder.filePath()));
    if (const QString why = whyNotWritable(folder.filePath()); !why.isEmpty())
        return hostText(HostText::FolderNotWritable).arg(fileName, QDir::toNativeSeparators(folder.filePath()), why);
    if (file.exists()) {
        if (const QString why = whyNotWritable(fileName); !why.isEmpty())
            return hostText(HostText::FileNotWritable).arg(fileName, why);
    }
    return {};
}

QString recoveryFileName(const QString &fileName, const QString &folder)
{
    QString name = QFileInfo(fileName).fileName();
    for (const QLatin1String suffix : { QLatin1String(".component.xml"), QLatin1String(".xml") }) {
        if (name.endsWith(suffix, Qt::CaseInsensitive) && name.size() > suffix.size()) {
            name.chop(suffix.size());
            break;
        }
    }
    if (name.isEmpty())
        name = QStringLiteral("query");
    const QDir dir(folder);
    QString candidate = dir.filePath(name + QStringLiteral(".recovered.component.xml"));
    for (int n = 2; QFileInfo::exists(candidate); ++n)
        candidate = dir.filePath(name + QStringLiteral(".recovered-%1.component.xml").arg(n));
    return candidate;
}

SaveOutcome saveKeepingWork(const QString &fileName, tessaly::zetPrimitiveModel &model, tessaly::zetPrimitivePad *pad,
                            const HostSettings *settings)
{
    const QByteArray document = tessaly::ComponentDocument::save(model, pad);
    const QByteArray data = settings ? settings->writeInto(document) : document;
    try {
        writeDocumentFile(fileName, data);
        return { fileName, {} };
    } catch (const tessaly::Error &error) {
        SaveOutcome outcome{ {}, error.message() };
        const QStringList folders{ QFileInfo(fileName).absolutePath(), QDir::currentPath(), QDir::homePath(),
                                   QDir::tempPath() };
        for (const QString &folder : folders) {
            if (!QFileInfo(folder).isDir() || !whyNotWritable(folder).isEmpty())
                continue;
            outcome.savedTo = recoveryFileName(fileName, folder);
            try {
                writeDocumentFile(outcome.savedTo, data);
                return outcome;
            } catch (const tessaly::Error &) {
                // the next folder, then
            }
        }
        throw tessaly::Error(error.number(), hostText(HostText::NowhereToKeep).arg(error.message()));
    }
}

} // namespace host
