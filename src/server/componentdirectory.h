#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>

#include <chrono>
#include <memory>
#include <mutex>

namespace server {

// One component document as it was read: what a worker loads, and the version that tells
// its cached copy from a newer one.
struct ComponentFile
{
    QString name; // the file name without ".component.xml"
    QString path;
    QByteArray bytes;
    quint64 version = 0;
};

// The component documents (*.component.xml) of one folder. Files added, changed or removed
// while the service runs are seen at the next look, at most a second later: the folder is
// looked at again when a second has passed since the last look.
class ComponentDirectory
{
public:
    explicit ComponentDirectory(QString path);

    QList<std::shared_ptr<const ComponentFile>> list();
    std::shared_ptr<const ComponentFile> find(const QString &name);
    const QString &path() const { return m_path; }

    static constexpr const char *Suffix = ".component.xml";

private:
    struct Entry
    {
        QDateTime modified;
        qint64 size = -1;
        std::shared_ptr<const ComponentFile> file;
    };

    void refresh();

    QString m_path;
    std::mutex m_mutex;
    std::chrono::steady_clock::time_point m_lastLook;
    bool m_looked = false;
    quint64 m_versions = 0;
    QMap<QString, Entry> m_entries;
};

} // namespace server
