#include "veldra/service/tsaccessor.h"

#include "tessaly/error.h"
#include "veldra/records/columninfo.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/tableinfo.h"

#include <exception>

namespace veldra {

using tessaly::NameMap;

namespace {
bool hasEntries(const TSAccessor::NameMapRef &map)
{
    return map && !map->isEmpty();
}

TSAccessor::NameMapRef storedMap(const NameMap &map, const QString &key)
{
    return map.object<NameMap>(key);
}

// The service sends in base64 what XML cannot carry (a BLOB, text with control characters);
// the value is the text those bytes spell.
QString fieldText(const QDomElement &field)
{
    if (field.attribute(QStringLiteral("encoding")) == u"base64")
        return QString::fromUtf8(QByteArray::fromBase64(field.text().toLatin1()));
    return field.text();
}
} // namespace

// --- Cached structure walk ----------------------------------------------------------------

TSAccessor::NameMapRef TSAccessor::cacheRoot() const
{
    if (!m_cache)
        throw tessaly::Error(tessaly::ErrorNumber::ObjectNotSet,
                             QStringLiteral("TSAccessor: GetDatabaseStructure must run before the structure is looked up"));
    return m_cache;
}

TSAccessor::NameMapRef TSAccessor::GetDatabaseStructure()
{
    if (m_cache && m_useCache)
        return m_cache;
    m_cache = QueryProviders();
    if (!m_cache)
        return nullptr;
    for (int p = 0; p < m_cache->count(); ++p) {
        const QString provider = m_cache->key(p);
        const NameMapRef dsns = QueryDSNs(provider);
        // Stored even when nothing came back: the provider is known, its sources are not.
        m_cache->setObject(provider, dsns);
        if (!hasEntries(dsns))
            continue;
        for (int d = 0; d < dsns->count(); ++d) {
            const QString dsn = dsns->key(d);
            const NameMapRef catalogs = QueryCatalogs(provider, dsn);
            dsns->setObject(dsn, catalogs);
            // The catalogs' values stay empty: tables are fetched when first asked.
        }
    }
    return m_cache;
}

TSAccessor::NameMapRef TSAccessor::GetDSNsAt(const QString &provName)
{
    const NameMapRef root = cacheRoot();
    QVariant stored;
    if (root->lookup(provName, &stored) && m_useCache)
        return tessaly::objectCast<NameMap>(NameMap::toObject(stored));
    NameMapRef dsns = QueryDSNs(provName);
    if (hasEntries(dsns))
        root->setObject(provName, dsns);
    return dsns;
}

TSAccessor::NameMapRef TSAccessor::GetCatalogsAt(const QString &provName, const QString &dsnName)
{
    const NameMapRef dsns = GetDSNsAt(provName);
    if (!dsns)
        return nullptr;
    QVariant stored;
    if (dsns->lookup(dsnName, &stored) && m_useCache)
        return tessaly::objectCast<NameMap>(NameMap::toObject(stored));
    NameMapRef catalogs = QueryCatalogs(provName, dsnName);
    if (hasEntries(catalogs))
        dsns->setObject(dsnName, catalogs);
    return catalogs;
}

TSAccessor::NameMapRef TSAccessor::GetTablesAt(const QString &provName, const QString &dsnName,
                                               const QString &cataName)
{
    const NameMapRef catalogs = GetCatalogsAt(provName, dsnName);
    if (!catalogs)
        return nullptr;
    // Tested on the stored value, not on the key: GetDatabaseStructure leaves every catalog
    // key with an empty value, and that must still ask.
    const NameMapRef stored = storedMap(*catalogs, cataName);
    if (stored && m_useCache)
        return stored;
    NameMapRef tables = QueryTables(provName, dsnName, cataName);
    if (hasEntries(tables))
        catalogs->setObject(cataName, tables);
    return tables;
}

std::shared_ptr<TableInfo> TSAccessor::GetTableInfoAt(const QString &provName, const QString &dsnName,
                                                      const QString &cataName, const QString &tableName)
{
    const NameMapRef tables = GetTablesAt(provName, dsnName, cataName);
    if (!hasEntries(tables))
        return nullptr;
    const std::shared_ptr<TableInfo> stored = tables->object<TableInfo>(tableName);
    if (stored && m_useCache)
        return stored;
    const NameMapRef columns = QueryColumns(provName, dsnName, cataName, tableName);
    if (!hasEntries(columns))
        return stored;
    auto table = std::make_shared<TableInfo>();
    table->setTableName(tableName);
    for (int i = 0; i < columns->count(); ++i) {
        auto column = std::make_shared<ColumnInfo>();
        column->setTable(tableName);
        column->setColumnType(ColumnInfo::TableColumn);
        column->setExpress(columns->key(i));
        column->setAlias(QString());
        table->columns()->setObject(columns->key(i), column);
    }
    tables->setObject(tableName, table);
    return table;
}

// --- Uncached queries -----------------------------------------------------------------------

TSAccessor::NameMapRef TSAccessor::QueryProviders()
{
    return QueryNavigation(QString(), QString(), QString(), QString());
}

TSAccessor::NameMapRef TSAccessor::QueryDSNs(const QString &provider)
{
    return QueryNavigation(provider, QString(), QString(), QString());
}

TSAccessor::NameMapRef TSAccessor::QueryCatalogs(const QString &provider, const QString &dsn)
{
    return QueryNavigation(provider, dsn, QString(), QString());
}

TSAccessor::NameMapRef TSAccessor::QueryTables(const QString &provider, const QString &dsn, const QString &catalog)
{
    return QueryNavigation(provider, dsn, catalog, QString());
}

TSAccessor::NameMapRef TSAccessor::QueryColumns(const QString &provider, const QString &dsn,
                                                const QString &catalog, const QString &table)
{
    if (!m_proxy)
        return nullptr;
    NameMapRef columns = QueryNavigation(provider, dsn, catalog, table);
    // A failure is reported here a second time, after QueryNavigation's own report. Users of
    // the column page have always seen the dialog twice; keep it so.
    ReportDatabaseError(provider, dsn, catalog, table);
    return columns;
}

TSAccessor::NameMapRef TSAccessor::QueryNavigation(const QString &provider, const QString &dsn,
                                                   const QString &catalog, const QString &table)
{
    if (!m_proxy)
        return nullptr;
    // The names go in as they are: the service has always received them unescaped. A name
    // that breaks the XML makes the request unparsable, and the query yields nothing.
    const QString request = QLatin1String("<query><get><content>column</content><target><provider>") + provider
            + QLatin1String("</provider><dsn>") + dsn + QLatin1String("</dsn><catalog>") + catalog
            + QLatin1String("</catalog><table>") + table + QLatin1String("</table></target></get></query>");
    NameMapRef names = SendNavigationRequest(request);
    const QString where = QStringList{ provider, dsn, catalog, table }.join(u'/');
    if (names)
        m_failures.remove(where);
    else if (m_lastError != 0)
        m_failures.insert(where, m_lastErrorMessage);
    ReportDatabaseError(provider, dsn, catalog, table);
    return names;
}

TSAccessor::NameMapRef TSAccessor::QueryKeyValueColumns(const std::shared_ptr<dbInfo> &dbinf,
                                                        const QString &tableName, const QString &keyCol,
                                                        const QString &valCol)
{
    const QString fields = keyCol == valCol ? keyCol : keyCol + u',' + valCol;
    if (!dbinf)
        throw tessaly::Error(tessaly::ErrorNumber::ObjectNotSet,
                             QStringLiteral("TSAccessor::QueryKeyValueColumns: no database given"));
    if (!m_proxy)
        return nullptr;
    // The group names both columns even when they are one: the service's answer is the same,
    // and the request has always been sent this way.
    const QString request = QLatin1String("<query><get><content>record<field>") + fields
            + QLatin1String("</field></content><target><provider>") + dbinf->provider()
            + QLatin1String("</provider><dsn>") + dbinf->dsn() + QLatin1String("</dsn><catalog>")
            + dbinf->catalog() + QLatin1String("</catalog><table>") + tableName
            + QLatin1String("</table></target><group>") + keyCol + u',' + valCol
            + QLatin1String("</group></get></query>");
    NameMapRef pairs = SendRecordRequest(request, keyCol, valCol);
    return pairs ? pairs : std::make_shared<NameMap>();
}

// --- Sending and reading --------------------------------------------------------------------

TSAccessor::NameMapRef TSAccessor::SendNavigationRequest(const QString &requestText)
{
    return sendRequest(requestText, [](const QDomDocument &response) {
        return ReadNameList(response, QStringLiteral("response"), QStringLiteral("name"));
    });
}

TSAccessor::NameMapRef TSAccessor::SendRecordRequest(const QString &requestText, const QString &keyCol,
                                                     const QString &valCol)
{
    return sendRequest(requestText, [&](const QDomDocument &response) {
        return ReadKeyValueList(response, keyCol, valCol);
    });
}

TSAccessor::NameMapRef TSAccessor::sendRequest(const QString &requestText,
                                               const std::function<NameMapRef(const QDomDocument &)> &read)
{
    if (!m_proxy)
        return nullptr;
    QDomDocument request;
    if (!request.setContent(requestText))
        return nullptr;
    try {
        const QDomDocument response = m_proxy->request(request);
        if (response.isNull())
            return nullptr;
        NameMapRef result = read(response);
        m_lastError = 0;
        m_lastErrorMessage.clear();
        return result;
    } catch (const tessaly::Error &error) {
        m_lastError = error.number();
        m_lastErrorMessage = error.message();
    } catch (const std::exception &error) {
        m_lastError = tessaly::ErrorNumber::Fail;
        m_lastErrorMessage = QString::fromLocal8Bit(error.what());
    }
    return nullptr;
}

TSAccessor::NameMapRef TSAccessor::ReadNameList(const QDomNode &start, const QString &elementName,
                                                const QString &attributeName)
{
    const QDomElement list = FindElement(start, elementName);
    if (list.isNull())
        return nullptr;
    auto names = std::make_shared<NameMap>();
    for (QDomElement item = list.firstChildElement(); !item.isNull(); item = item.nextSiblingElement()) {
        const QString name = item.attribute(attributeName);
        if (!name.isEmpty())
            names->set(name, QVariant());
    }
    return names;
}

TSAccessor::NameMapRef TSAccessor::ReadKeyValueList(const QDomNode &start, const QString &keyCol,
                                                    const QString &valCol)
{
    const QDomElement table = FindElement(start, QStringLiteral("table"));
    if (table.isNull())
        return nullptr;
    auto pairs = std::make_shared<NameMap>();
    for (QDomElement record = table.firstChildElement(); !record.isNull(); record = record.nextSiblingElement()) {
        QString key;
        QString display;
        for (QDomElement field = record.firstChildElement(); !field.isNull(); field = field.nextSiblingElement()) {
            const QString name = field.attribute(QStringLiteral("name"));
            if (name.isEmpty())
                continue;
            // Key first: when both columns are one, the field fills only the key.
            if (name == keyCol)
                key = fieldText(field);
            else if (name == valCol)
                display = fieldText(field);
        }
        if (key.isEmpty())
            continue;
        pairs->setText(key, display.isEmpty() ? key : display);
    }
    return pairs;
}

QDomElement TSAccessor::FindElement(const QDomNode &start, const QString &name)
{
    QDomNode node = start;
    for (;;) {
        // Next element in document order: the first child, else the next sibling of the node
        // or of the nearest ancestor that has one.
        QDomElement next = node.firstChildElement();
        for (QDomNode up = node; next.isNull() && !up.isNull(); up = up.parentNode())
            next = up.nextSiblingElement();
        if (next.isNull() || next.tagName() == name)
            return next;
        node = next;
    }
}

bool TSAccessor::ReportDatabaseError(const QString &provider, const QString &dsn, const QString &catalog,
                                     const QString &table)
{
    if (m_lastError == 0)
        return true;
    // LastError stays as it is: a later request that fails before reaching the service shows
    // this error again.
    m_reporter({ m_lastError, provider, dsn, catalog, table, m_lastErrorMessage });
    return false;
}

QString TSAccessor::failureReason(const QString &provider, const QString &dsn, const QString &catalog,
                                  const QString &table) const
{
    return m_failures.value(QStringList{ provider, dsn, catalog, table }.join(u'/'));
}

} // namespace veldra
