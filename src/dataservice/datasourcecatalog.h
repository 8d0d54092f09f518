#pragma once

#include "datasource.h"

#include <QStringList>

namespace dataservice {

// The data sources the service offers: the built-in "Sample" (the bundled SQLite database)
// plus the groups of $XDG_CONFIG_HOME/veldra/datasources.ini. A configured group named
// "Sample" replaces the built-in one.
class DataSourceCatalog
{
public:
    DataSourceCatalog() = default;
    explicit DataSourceCatalog(QList<DataSource> dataSources);

    // The built-in data source plus the configuration file (missing file: built-in only).
    // Throws tessaly::Error(BadConfiguration) naming the group and key that are wrong.
    static DataSourceCatalog fromConfiguration();
    static DataSourceCatalog fromFile(const QString &iniPath);

    static QString configurationPath();
    // VELDRA_SAMPLE_DB, else <bindir>/../share/veldra/sample.db, else the build tree's copy.
    static QString sampleDatabasePath();
    static DataSource sampleDataSource();

    static QStringList providers();

    QStringList names(const QString &provider) const;
    // Throws UnknownDataSource when the provider has no data source of that name.
    const DataSource &find(const QString &provider, const QString &name) const;

    void add(const DataSource &dataSource);

private:
    QList<DataSource> m_dataSources;
};

} // namespace dataservice
