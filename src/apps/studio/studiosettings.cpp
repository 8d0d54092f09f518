#include "studiosettings.h"

#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

namespace {

const QString recentKey = QStringLiteral("recent");
const QString lastKey = QStringLiteral("last");

QSettings open()
{
    return QSettings(StudioSettings::fileName(), QSettings::IniFormat);
}

QString absolute(const QString &document)
{
    return QFileInfo(document).absoluteFilePath();
}

// A path holds slashes, which the settings file reads as groups.
QString chartGroup(const QString &document)
{
    return QStringLiteral("chart-") + QString::fromLatin1(QUrl::toPercentEncoding(absolute(document)));
}

} // namespace

QString StudioSettings::fileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/veldra/studio.ini");
}

QStringList StudioSettings::recentDocuments() const
{
    return open().value(recentKey).toStringList();
}

void StudioSettings::noteOpened(const QString &document)
{
    QSettings settings = open();
    QStringList recent = settings.value(recentKey).toStringList();
    recent.removeAll(absolute(document));
    recent.prepend(absolute(document));
    settings.setValue(recentKey, recent.mid(0, RecentCount));
    settings.setValue(lastKey, absolute(document));
}

void StudioSettings::forget(const QString &document)
{
    QSettings settings = open();
    QStringList recent = settings.value(recentKey).toStringList();
    recent.removeAll(absolute(document));
    settings.setValue(recentKey, recent);
    if (settings.value(lastKey).toString() == absolute(document))
        settings.remove(lastKey);
}

QString StudioSettings::lastDocument() const
{
    return open().value(lastKey).toString();
}

ChartSettings StudioSettings::chart(const QString &document) const
{
    QSettings settings = open();
    settings.beginGroup(chartGroup(document));
    ChartSettings chart;
    chart.shown = settings.value(QStringLiteral("shown"), false).toBool();
    chart.line = settings.value(QStringLiteral("kind")).toString() == u"line";
    chart.labels = settings.value(QStringLiteral("labels")).toString();
    chart.values = settings.value(QStringLiteral("values")).toStringList();
    return chart;
}

void StudioSettings::setChart(const QString &document, const ChartSettings &chart)
{
    QSettings settings = open();
    settings.beginGroup(chartGroup(document));
    settings.setValue(QStringLiteral("shown"), chart.shown);
    settings.setValue(QStringLiteral("kind"), chart.line ? QStringLiteral("line") : QStringLiteral("bar"));
    settings.setValue(QStringLiteral("labels"), chart.labels);
    settings.setValue(QStringLiteral("values"), chart.values);
}
