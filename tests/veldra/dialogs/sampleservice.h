#pragma once

// The real data service on the bundled sample database, in process, with nothing of the user's
// configuration. It keeps the requests it was given and can refuse the record requests, as a
// service whose database went away would.

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "tessaly/error.h"
#include "veldra/records/dbinfo.h"

#include <QStringList>

#include <memory>

namespace testservice {

class SampleProxy final : public tessaly::ServiceProxy
{
public:
    SampleProxy()
        : m_service(std::make_shared<const dataservice::DataService>(
                  dataservice::DataSourceCatalog({ dataservice::DataSourceCatalog::sampleDataSource() })))
    {
    }

    QDomDocument request(const QDomDocument &document) override
    {
        const QString text = document.toString(-1);
        requests.append(text);
        if (failRecords && text.contains(QLatin1String("<content>record")))
            throw tessaly::Error(qint32(0x80004005), QStringLiteral("record requests refused by the test"));
        return m_service.request(document);
    }

    QStringList requests;
    bool failRecords = false;

private:
    dataservice::LocalServiceProxy m_service;
};

inline std::shared_ptr<veldra::dbInfo> sampleDatabase()
{
    auto database = std::make_shared<veldra::dbInfo>();
    database->setProvider(QStringLiteral("SQLite"));
    database->setDsn(QStringLiteral("Sample"));
    database->setCatalog(QStringLiteral("main"));
    return database;
}

} // namespace testservice
