#pragma once

#include "tessaly/namemap.h"
#include "tessaly/serviceproxy.h"
#include "veldra/service/databaseerrorreport.h"
#include "veldra/veldra_export.h"

#include <QDomElement>
#include <QHash>

#include <functional>
#include <memory>

namespace veldra {

class TableInfo;
class dbInfo;

// Asks the data service about the structure behind it (providers, data sources, catalogs,
// tables, columns) and for key/value pairs of two columns, and keeps the structure in a cache
// so that moving between wizard pages asks once per level.
//
// The cache is a tree of NameMaps: provider -> its data sources -> their catalogs -> their
// tables -> TableInfo. A value that was never asked is empty (an invalid QVariant).
//
// Results that can be "nothing" are null pointers: every query yields nothing while tsProxy is
// unset, and a failed request yields nothing after recording its error number in LastError()
// and handing it to the error reporter (navigation requests only).
class VELDRA_EXPORT TSAccessor
{
public:
    using NameMapRef = std::shared_ptr<tessaly::NameMap>;

    TSAccessor() = default;
    TSAccessor(const TSAccessor &) = delete;
    TSAccessor &operator=(const TSAccessor &) = delete;

    std::shared_ptr<tessaly::ServiceProxy> tsProxy() const { return m_proxy; }
    void setTsProxy(std::shared_ptr<tessaly::ServiceProxy> proxy) { m_proxy = std::move(proxy); }
    // When false every cached operation asks the service again and overwrites what it stored
    // (with non-empty results only).
    bool UseCache() const { return m_useCache; }
    void setUseCache(bool useCache) { m_useCache = useCache; }
    // The error number of the last failed request; 0 after one that reached the service.
    qint32 LastError() const { return m_lastError; }
    // The service's reason for that error ("The database file ... does not exist."), kept as
    // long as the number is.
    const QString &lastErrorMessage() const { return m_lastErrorMessage; }
    // The reason the last navigation request for this level failed, or "" when it did not
    // fail: what a list can tell about an entry it marks without asking again.
    QString failureReason(const QString &provider, const QString &dsn, const QString &catalog = {},
                          const QString &table = {}) const;
    // Where failed navigation requests are reported; reportDatabaseErrorAsText unless a host
    // installs its own (the wizard installs the database error dialog).
    void setErrorReporter(DatabaseErrorReporter reporter) { m_reporter = std::move(reporter); }

    // Cached operations. GetDatabaseStructure fetches providers, data sources and catalogs
    // (one request for the providers, one per provider, one per data source); tables and
    // columns are fetched on first use. The others expect GetDatabaseStructure to have made
    // the cache and raise ObjectNotSet otherwise.
    NameMapRef GetDatabaseStructure();
    NameMapRef GetDSNsAt(const QString &provName);
    NameMapRef GetCatalogsAt(const QString &provName, const QString &dsnName);
    NameMapRef GetTablesAt(const QString &provName, const QString &dsnName, const QString &cataName);
    std::shared_ptr<TableInfo> GetTableInfoAt(const QString &provName, const QString &dsnName,
                                              const QString &cataName, const QString &tableName);

    // One round trip each: the names of one level, keys in the order of the response, values
    // empty. A failure is reported; QueryColumns reports it a second time.
    NameMapRef QueryProviders();
    NameMapRef QueryDSNs(const QString &provider);
    NameMapRef QueryCatalogs(const QString &provider, const QString &dsn);
    NameMapRef QueryTables(const QString &provider, const QString &dsn, const QString &catalog);
    NameMapRef QueryColumns(const QString &provider, const QString &dsn, const QString &catalog,
                            const QString &table);
    NameMapRef QueryNavigation(const QString &provider, const QString &dsn, const QString &catalog,
                               const QString &table);

    // The distinct pairs of two columns of a table, key text -> display text (the key when the
    // display column is missing). Reports nothing; a failure gives an empty map, an unset
    // proxy nothing. Raises ObjectNotSet for a null dbinf.
    NameMapRef QueryKeyValueColumns(const std::shared_ptr<dbInfo> &dbinf, const QString &tableName,
                                    const QString &keyCol, const QString &valCol);

private:
    NameMapRef SendNavigationRequest(const QString &requestText);
    NameMapRef SendRecordRequest(const QString &requestText, const QString &keyCol, const QString &valCol);
    // What both senders share: parse the request, ask the proxy, read the response with
    // read, record the error number.
    NameMapRef sendRequest(const QString &requestText,
                           const std::function<NameMapRef(const QDomDocument &)> &read);
    static NameMapRef ReadNameList(const QDomNode &start, const QString &elementName,
                                   const QString &attributeName);
    static NameMapRef ReadKeyValueList(const QDomNode &start, const QString &keyCol, const QString &valCol);
    // The next element after start, in document order, named name; start itself is never
    // compared.
    static QDomElement FindElement(const QDomNode &start, const QString &name);
    // Reports LastError when it is set; true when there was nothing to report.
    bool ReportDatabaseError(const QString &provider, const QString &dsn, const QString &catalog,
                             const QString &table);
    NameMapRef cacheRoot() const;

    NameMapRef m_cache;
    std::shared_ptr<tessaly::ServiceProxy> m_proxy;
    bool m_useCache = true;
    qint32 m_lastError = 0;
    QString m_lastErrorMessage;
    // provider/dsn/catalog/table -> the reason its navigation request failed.
    QHash<QString, QString> m_failures;
    DatabaseErrorReporter m_reporter = reportDatabaseErrorAsText;
};

} // namespace veldra
