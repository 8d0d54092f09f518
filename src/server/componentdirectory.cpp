#include "server/componentdirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace server {

namespace {

constexpr std::chrono::seconds LookInterval(1);
// A document larger than this is no component anyone wrote; it is left out.
constexpr qint64 MaxDocumentBytes = 64 * 1024 * 1024;

} // namespace

ComponentDirectory::ComponentDirectory(QString path) : m_path(std::move(path))
{
}

void ComponentDirectory::refresh()
{
    const auto now = std::chrono::steady_clock::now();
    if (m_looked && now - m_lastLook < LookInterval)
        return;
    m_looked = true;
    m_lastLook = now;
    const QString suffix = QLatin1String(Suffix);
    const QFileInfoList files = QDir(m_path).entryInfoList({ QStringLiteral("*") + suffix }, QDir::Files | QDir::Readable,
                                                          QDir::Name);
    QMap<QString, Entry> entries;
    for (const QFileInfo &info : files) {
        const QString name = info.fileName().chopped(suffix.size());
        if (name.isEmpty() || info.size() > MaxDocumentBytes)
            continue;
        Entry entry = m_entries.value(name);
        if (!entry.file || entry.modified != info.lastModified() || entry.size != info.size()) {
            QFile file(info.filePath());
            if (!file.open(QIODevice::ReadOnly))
                continue;
            auto loaded = std::make_shared<ComponentFile>();
            loaded->name = name;
            loaded->path = info.filePath();
            loaded->bytes = file.readAll();
            loaded->version = ++m_versions;
            entry = { info.lastModified(), info.size(), std::move(loaded) };
        }
        entries.insert(name, entry);
    }
    m_entries = std::move(entries);
}

QList<std::shared_ptr<const ComponentFile>> ComponentDirectory::list()
{
    std::lock_guard lock(m_mutex);
    refresh();
    QList<std::shared_ptr<const ComponentFile>> files;
    for (const Entry &entry : std::as_const(m_entries))
        files.append(entry.file);
    return files;
}

std::shared_ptr<const ComponentFile> ComponentDirectory::find(const QString &name)
{
    std::lock_guard lock(m_mutex);
    refresh();
    const auto found = m_entries.constFind(name);
    return found == m_entries.cend() ? nullptr : found->file;
}

} // namespace server
