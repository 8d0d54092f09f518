#include "datasourcecatalog.h"

#include "errornumber.h"
#include "messagetext.h"

#include <tessaly/error.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>

namespace dataservice {

namespace {

const QString SQLiteProvider = QStringLiteral("SQLite");
const QString PostgreSQLProvider = QStringLiteral("PostgreSQL");
const QString AttachPrefix = QStringLiteral("attach.");
const QString CatalogMapPrefix = QStringLiteral("catalog.");

// Keys of a PostgreSQL group that go to libpq as they are.
const QStringList PostgreSQLKeys = {
    QStringLiteral("host"), QStringLiteral("hostaddr"), QStringLiteral("port"),
    QStringLiteral("dbname"), QStringLiteral("user"), QStringLiteral("password"),
    QStringLiteral("passfile"), QStringLiteral("sslmode"), QStringLiteral("sslrootcert"),
    QStringLiteral("sslcert"), QStringLiteral("sslkey"), QStringLiteral("connect_timeout"),
};

[[noreturn]] void badConfiguration(const QString &file, const QString &group, const QString &what)
{
    throw tessaly::Error(ErrorNumber::BadConfiguration,
                         QStringLiteral("Data source [%1] in %2: %3.").arg(group, file, what));
}

QString executableDir()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath().section(u'/', 0, -2);
}

qint64 positiveNumber(const QSettings &settings, const QString &key, qint64 fallback,
                      const QString &file, const QString &group)
{
    const QVariant value = settings.value(key);
    if (!value.isValid())
        return fallback;
    bool ok = false;
    const qint64 number = value.toString().trimmed().toLongLong(&ok);
    if (!ok || number <= 0)
        badConfiguration(file, group, QStringLiteral("%1 must be a positive whole number, not \"%2\"")
                                          .arg(key, value.toString()));
    return number;
}

// A PostgreSQL memory or disk size: a whole number with an optional unit, nothing else,
// so the value can never carry more than a size.
QString sizeSetting(const QSettings &settings, const QString &key, const QString &fallback,
                    const QString &file, const QString &group)
{
    const QVariant value = settings.value(key);
    if (!value.isValid())
        return fallback;
    static const QRegularExpression size(QStringLiteral("^[0-9]{1,12} ?(kB|MB|GB|TB)?$"));
    const QString text = value.toString().trimmed();
    if (!size.match(text).hasMatch())
        badConfiguration(file, group, QStringLiteral("%1 must be a size such as 64MB or 2GB (units kB, MB, GB, TB), "
                                                     "not \"%2\"").arg(key, text));
    return text;
}

DataSource readGroup(QSettings &settings, const QString &group, const QString &file)
{
    settings.beginGroup(group);
    DataSource source;
    source.name = group;
    source.provider = settings.value(QStringLiteral("provider")).toString().trimmed();
    source.rowCap = positiveNumber(settings, QStringLiteral("rowcap"), DataSource::DefaultRowCap, file, group);
    const qint64 seconds = positiveNumber(settings, QStringLiteral("timeout"),
                                          DataSource::DefaultTimeoutMs / 1000, file, group);
    if (seconds > 24 * 3600)
        badConfiguration(file, group, QStringLiteral("timeout is in seconds and at most one day"));
    source.timeoutMs = int(seconds * 1000);
    source.poolSize = int(qMin<qint64>(positiveNumber(settings, QStringLiteral("pool_size"), DataSource::DefaultPoolSize,
                                                      file, group), DataSource::MaxPoolSize + 1));
    if (source.poolSize > DataSource::MaxPoolSize)
        badConfiguration(file, group, QStringLiteral("pool_size is at most %1").arg(DataSource::MaxPoolSize));
    const QDir base = QFileInfo(file).absoluteDir();
    if (source.provider == SQLiteProvider) {
        source.path = settings.value(QStringLiteral("path")).toString();
        if (source.path.isEmpty())
            badConfiguration(file, group, QStringLiteral("an SQLite data source needs path="));
        source.path = base.absoluteFilePath(source.path);
        for (const QString &key : settings.childKeys()) {
            if (key.startsWith(AttachPrefix))
                source.attachments.append({key.mid(AttachPrefix.size()),
                                           base.absoluteFilePath(settings.value(key).toString())});
        }
    } else if (source.provider == PostgreSQLProvider) {
        for (const QString &key : PostgreSQLKeys) {
            const QVariant value = settings.value(key);
            if (value.isValid())
                source.connection.append({key, value.toString()});
        }
        // QSettings reads "a, b" as a list and "a" as a text; both end up as names here.
        for (const QString &name : settings.value(QStringLiteral("catalogs")).toStringList()) {
            const QString trimmed = name.trimmed();
            if (trimmed.isEmpty())
                badConfiguration(file, group, QStringLiteral("catalogs holds an empty name"));
            source.catalogs.append(trimmed);
        }
        source.workMem = sizeSetting(settings, QStringLiteral("work_mem"), source.workMem, file, group);
        source.tempFileLimit = sizeSetting(settings, QStringLiteral("temp_file_limit"), source.tempFileLimit,
                                           file, group);
    } else {
        badConfiguration(file, group, QStringLiteral("provider must be SQLite or PostgreSQL, not \"%1\"")
                                          .arg(source.provider));
    }
    for (const QString &key : settings.childKeys()) {
        if (!key.startsWith(CatalogMapPrefix))
            continue;
        const QString catalog = settings.value(key).toString().trimmed();
        if (key.size() == CatalogMapPrefix.size() || catalog.isEmpty())
            badConfiguration(file, group, QStringLiteral("%1 must map a catalog name to one of this data source's").arg(key));
        source.catalogMap.append({key.mid(CatalogMapPrefix.size()), catalog});
    }
    settings.endGroup();
    return source;
}

} // namespace

DataSourceCatalog::DataSourceCatalog(QList<DataSource> dataSources)
    : m_dataSources(std::move(dataSources))
{
}

QString DataSourceCatalog::configurationPath()
{
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.config");
    return base + QStringLiteral("/veldra/datasources.ini");
}

QString DataSourceCatalog::sampleDatabasePath()
{
    const QString fromEnvironment = qEnvironmentVariable("VELDRA_SAMPLE_DB");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QString installed = QDir::cleanPath(executableDir() + QStringLiteral("/../share/veldra/sample.db"));
    if (QFileInfo::exists(installed))
        return installed;
    return QStringLiteral(VELDRA_BUILD_SAMPLE_DB);
}

DataSource DataSourceCatalog::sampleDataSource()
{
    DataSource sample;
    sample.name = QStringLiteral("Sample");
    sample.provider = SQLiteProvider;
    sample.path = sampleDatabasePath();
    return sample;
}

DataSourceCatalog DataSourceCatalog::fromConfiguration()
{
    return fromFile(configurationPath());
}

DataSourceCatalog DataSourceCatalog::fromFile(const QString &iniPath)
{
    DataSourceCatalog catalog({sampleDataSource()});
    if (!QFileInfo::exists(iniPath))
        return catalog;
    QSettings settings(iniPath, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        throw tessaly::Error(ErrorNumber::BadConfiguration,
                             QStringLiteral("The data source file %1 cannot be read.").arg(iniPath));
    for (const QString &group : settings.childGroups())
        catalog.add(readGroup(settings, group, iniPath));
    return catalog;
}

QStringList DataSourceCatalog::providers()
{
    return {SQLiteProvider, PostgreSQLProvider};
}

QStringList DataSourceCatalog::names(const QString &provider) const
{
    QStringList result;
    for (const DataSource &source : m_dataSources) {
        if (source.provider == provider)
            result.append(source.name);
    }
    return result;
}

const DataSource &DataSourceCatalog::find(const QString &provider, const QString &name) const
{
    for (const DataSource &source : m_dataSources) {
        if (source.provider == provider && source.name == name)
            return source;
    }
    throw tessaly::Error(ErrorNumber::UnknownDataSource,
                         QStringLiteral("Provider %1 has no data source named \"%2\"; it has: %3.")
                             .arg(MessageText::excerpt(provider), MessageText::excerpt(name),
                                  names(provider).join(QStringLiteral(", "))));
}

void DataSourceCatalog::add(const DataSource &dataSource)
{
    for (DataSource &source : m_dataSources) {
        if (source.name == dataSource.name) {
            source = dataSource;
            return;
        }
    }
    m_dataSources.append(dataSource);
}

} // namespace dataservice
