#include "server/serveoptions.h"

#include "tessaly/error.h"

#include <QDir>
#include <QFileInfo>
#include <QHostAddress>
#include <QSettings>

namespace server {

namespace {

[[noreturn]] void badSetting(const QString &file, const QString &what)
{
    throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, QStringLiteral("%1: %2").arg(file, what));
}

void readNumber(const QSettings &settings, const QString &key, int low, int high, int *target, const QString &file)
{
    const QVariant value = settings.value(key);
    if (!value.isValid())
        return;
    bool ok = false;
    const int number = value.toString().trimmed().toInt(&ok);
    if (!ok || number < low || number > high)
        badSetting(file, QStringLiteral("%1 must be a whole number from %2 to %3, not \"%4\"")
                             .arg(key).arg(low).arg(high).arg(value.toString()));
    *target = number;
}

} // namespace

void ServeOptions::readFile(const QString &iniPath)
{
    if (!QFileInfo(iniPath).isFile())
        badSetting(iniPath, QStringLiteral("no such file"));
    QSettings settings(iniPath, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        badSetting(iniPath, QStringLiteral("not a readable INI file"));
    const QDir base = QFileInfo(iniPath).absoluteDir();
    const auto path = [&](const QString &key, QString *target) {
        const QString value = settings.value(key).toString().trimmed();
        if (!value.isEmpty())
            *target = base.absoluteFilePath(value);
    };
    path(QStringLiteral("directory"), &directory);
    path(QStringLiteral("token_file"), &tokenFile);
    path(QStringLiteral("access_log"), &accessLog);
    source = settings.value(QStringLiteral("source"), source).toString().trimmed();
    const QString listen = settings.value(QStringLiteral("listen")).toString().trimmed();
    if (!listen.isEmpty())
        address = listen;
    readNumber(settings, QStringLiteral("port"), 0, 65535, &port, iniPath);
    readNumber(settings, QStringLiteral("workers"), 1, 256, &workers, iniPath);
    readNumber(settings, QStringLiteral("queue"), 0, 10000, &queue, iniPath);
    readNumber(settings, QStringLiteral("connections"), 1, 4096, &connections, iniPath);
    readNumber(settings, QStringLiteral("read_timeout"), 1, 3600, &readTimeoutSeconds, iniPath);
    readNumber(settings, QStringLiteral("keep_alive"), 1, 3600, &keepAliveSeconds, iniPath);
    readNumber(settings, QStringLiteral("queue_wait_ms"), 1, 3600000, &queueWaitMs, iniPath);
    readNumber(settings, QStringLiteral("grace"), 0, 3600, &graceSeconds, iniPath);
    const QStringList known = { QStringLiteral("directory"), QStringLiteral("token_file"), QStringLiteral("access_log"),
                                QStringLiteral("listen"), QStringLiteral("port"), QStringLiteral("workers"),
                                QStringLiteral("queue"), QStringLiteral("connections"), QStringLiteral("read_timeout"),
                                QStringLiteral("keep_alive"), QStringLiteral("queue_wait_ms"), QStringLiteral("grace"),
                                QStringLiteral("source") };
    for (const QString &key : settings.allKeys()) {
        if (!known.contains(key))
            badSetting(iniPath, QStringLiteral("unknown key \"%1\"; the keys are: %2")
                                    .arg(key, known.join(QStringLiteral(", "))));
    }
}

bool ServeOptions::isLoopback(const QString &address)
{
    if (address == u"localhost")
        return true;
    const QHostAddress host(address);
    return !host.isNull() && host.isLoopback();
}

QString ServeOptions::defaultTokenFile()
{
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.config");
    return base + QStringLiteral("/veldra/serve.token");
}

} // namespace server
