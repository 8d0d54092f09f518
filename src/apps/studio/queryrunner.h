#pragma once

#include "queryresult.h"

#include <QObject>

#include <memory>

namespace dataservice {
class DataService;
}

// Sends requests to the in-process data service on a thread of its own, so a slow query never
// stops the window. Each answer carries the number of the request it answers; the window shows
// only the answer to its latest request.
class QueryRunner final : public QObject
{
    Q_OBJECT

public:
    QueryRunner();
    ~QueryRunner() override;

public Q_SLOTS:
    void run(quint64 number, const QString &request);

Q_SIGNALS:
    void answered(quint64 number, const QueryResult &result);

private:
    std::unique_ptr<dataservice::DataService> m_service; // made on the runner's thread
};
