#pragma once

#include "datasourcecatalog.h"

#include <QByteArray>

#include <memory>

class QIODevice;

namespace dataservice {

class Backend;
class BackendPool;
struct Request;
class ResponseWriter;
class RowSink;

// Answers request documents: navigation requests list providers, data sources, catalogs,
// tables and columns; record requests run as one read-only SELECT whose rows are written
// to the output as they arrive. See docs/protocol.md for the formats.
class DataService
{
public:
    // The built-in sample plus the user's configuration file.
    DataService();
    explicit DataService(DataSourceCatalog dataSources);

    // Writes the response document to out. Throws tessaly::Error with one of the numbers in
    // errornumber.h; what was written to out before an error is incomplete and to be dropped.
    void answer(const QByteArray &requestXml, QIODevice *out) const;
    QByteArray answer(const QByteArray &requestXml) const;

    // Runs a record request and hands its rows to sink as they arrive, without the response
    // text: for callers that print or process rows themselves. A navigation request is
    // malformed here. Throws as answer() does; whatever the sink threw passes through.
    void select(const QByteArray &requestXml, RowSink &sink) const;

    // The SELECT the engine of the request's data source receives for a record request, built
    // and checked as select() builds it (values in place, the row limit as the engine writes
    // it, select-list aliases resolved), without running it; the engine is asked for the
    // tables and columns the statement needs. Throws as select() does.
    QString statement(const QByteArray &requestXml) const;

    const DataSourceCatalog &dataSources() const { return m_dataSources; }

    // From now on connections come from pool and go back to it (a long-running host).
    void usePool(std::shared_ptr<BackendPool> pool) { m_pool = std::move(pool); }
    // A new connection to the data source, for a pool to keep.
    static std::unique_ptr<Backend> open(const DataSource &source);

private:
    std::unique_ptr<Backend> connect(const Request &request) const;
    void navigate(const Request &request, ResponseWriter &writer) const;

    DataSourceCatalog m_dataSources;
    std::shared_ptr<BackendPool> m_pool;
};

} // namespace dataservice
