#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

namespace dataservice {
class DataSourceCatalog;
}

namespace veldra {
class SQLInfo;
}

namespace host {

// Where a request goes: the target a definition names, or the one a host chose instead.
struct RunTarget
{
    QString provider;
    QString dsn;
    QString catalog;
};

RunTarget targetOf(const veldra::SQLInfo &definition);

// The data source a host runs a component on instead of the one the component names (the
// command line's --source, the studio's choice, a served folder's setting), so one component
// file runs on the desk's SQLite and the team's PostgreSQL without being edited. The chosen
// source's "catalog.NAME=OTHER" keys in datasources.ini map the component's catalog NAME to
// the source's OTHER; other catalogs keep their name.
class SourceChoice
{
public:
    SourceChoice() = default; // the component's own data source

    // Raises tessaly::Error (UnknownDataSource) naming the data sources there are.
    static SourceChoice named(const QString &name, const dataservice::DataSourceCatalog &dataSources);

    bool isSet() const { return !m_name.isEmpty(); }
    const QString &name() const { return m_name; }

    RunTarget target(const RunTarget &named) const;
    // The request document with its target's provider, data source and catalog replaced; as it
    // is when nothing is chosen or the text is no request document.
    QByteArray retarget(const QByteArray &request) const;

private:
    QString m_name;
    QString m_provider;
    QList<QPair<QString, QString>> m_catalogMap;
};

} // namespace host
