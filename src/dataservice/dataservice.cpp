#include "dataservice.h"

#include "backendpool.h"
#include "errornumber.h"
#include "messagetext.h"
#include "postgresbackend.h"
#include "request.h"
#include "responsewriter.h"
#include "sqlitebackend.h"

#include <tessaly/error.h>

#include <QBuffer>

namespace dataservice {

DataService::DataService()
    : m_dataSources(DataSourceCatalog::fromConfiguration())
{
}

DataService::DataService(DataSourceCatalog dataSources)
    : m_dataSources(std::move(dataSources))
{
}

std::unique_ptr<Backend> DataService::connect(const Request &request) const
{
    if (!DataSourceCatalog::providers().contains(request.provider))
        throw tessaly::Error(ErrorNumber::UnknownProvider,
                             QStringLiteral("There is no provider named \"%1\"; there are: %2.")
                                 .arg(MessageText::excerpt(request.provider),
                                      DataSourceCatalog::providers().join(QStringLiteral(", "))));
    const DataSource &source = m_dataSources.find(request.provider, request.dsn);
    // The catalog binds the whole request, so it is settled before any engine sees it.
    const QStringList allowed = source.allowedCatalogs();
    if (!request.catalog.isEmpty() && !allowed.contains(request.catalog))
        throw tessaly::Error(ErrorNumber::UnknownCatalog,
                             QStringLiteral("Data source %1 offers no catalog named \"%2\"; it offers: %3.")
                                 .arg(source.name, MessageText::excerpt(request.catalog),
                                      allowed.join(QStringLiteral(", "))));
    return m_pool ? m_pool->lease(source) : open(source);
}

std::unique_ptr<Backend> DataService::open(const DataSource &source)
{
    if (source.provider == u"SQLite")
        return std::make_unique<SqliteBackend>(source);
    return std::make_unique<PostgresBackend>(source);
}

void DataService::navigate(const Request &request, ResponseWriter &writer) const
{
    const auto writeNames = [&](const QStringList &names) {
        for (const QString &name : names)
            writer.item(name.toUtf8(), QByteArray());
    };
    const auto writeItems = [&](const QList<StructureItem> &items) {
        for (const StructureItem &item : items)
            writer.item(item.name.toUtf8(), item.type.toUtf8());
    };
    switch (request.level()) {
    case Request::Level::Providers:
        writeNames(DataSourceCatalog::providers());
        return;
    case Request::Level::DataSources:
        if (!DataSourceCatalog::providers().contains(request.provider))
            connect(request); // raises the unknown provider
        writeNames(m_dataSources.names(request.provider));
        return;
    case Request::Level::Catalogs:
        writeNames(connect(request)->catalogs());
        return;
    case Request::Level::Tables:
        writeItems(connect(request)->tables(request.catalog));
        return;
    case Request::Level::Columns:
        writeItems(connect(request)->columns(request.catalog, request.table));
        return;
    }
}

void DataService::answer(const QByteArray &requestXml, QIODevice *out) const
{
    if (!out || !out->isWritable())
        throw tessaly::Error(ErrorNumber::Unspecified, QStringLiteral("The response device is not open for writing."));
    const Request request = Request::parse(requestXml);
    ResponseWriter writer(out);
    if (request.kind == Request::Kind::Navigation) {
        // Listing happens before anything is written, so a failure leaves out untouched.
        QBuffer listing;
        listing.open(QIODevice::WriteOnly);
        ResponseWriter listWriter(&listing);
        listWriter.startResponse();
        navigate(request, listWriter);
        listWriter.endResponse();
        if (out->write(listing.data()) != listing.data().size())
            throw tessaly::Error(ErrorNumber::Unspecified,
                                 QStringLiteral("The response could not be written: %1.").arg(out->errorString()));
        return;
    }
    const std::unique_ptr<Backend> backend = connect(request);
    writer.startResponse();
    backend->select(request, writer);
    writer.endResponse();
}

static Request recordRequest(const QByteArray &requestXml)
{
    Request request = Request::parse(requestXml);
    if (request.kind != Request::Kind::Record)
        throw tessaly::Error(ErrorNumber::MalformedRequest,
                             QStringLiteral("Rows are asked for, but the request lists the structure."));
    return request;
}

void DataService::select(const QByteArray &requestXml, RowSink &sink) const
{
    const Request request = recordRequest(requestXml);
    connect(request)->select(request, sink);
}

QString DataService::statement(const QByteArray &requestXml) const
{
    const Request request = recordRequest(requestXml);
    return connect(request)->statement(request);
}

QByteArray DataService::answer(const QByteArray &requestXml) const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    answer(requestXml, &buffer);
    return buffer.data();
}

} // namespace dataservice
