#pragma once

#include "rowstore.h"

#include <QObject>

#include <atomic>
#include <memory>

namespace dataservice {
class LocalServiceProxy;
}

// How one run of a request ended: the rows it gave and whether the data source's cap cut them,
// how long it took, or why it failed.
struct AnswerEnd
{
    qint64 rows = 0;
    bool truncated = false;
    qint64 rowCap = 0;
    qint64 elapsedMs = 0; // from asking to the last row
    qint32 errorNumber = 0;
    QString error; // the service's reason; empty when the rows came

    bool failed() const { return !error.isEmpty(); }
};
Q_DECLARE_METATYPE(AnswerEnd)

// Runs requests on a thread of its own through the proxy the component uses, so a slow query
// never stops the window. The rows come in parts as they arrive, the first as soon as it is
// there and then a part every few dozen milliseconds; each part carries the number of the
// request it answers. A run whose request a newer one replaced stops at its next row.
class QueryRunner final : public QObject
{
    Q_OBJECT

public:
    explicit QueryRunner(std::shared_ptr<const dataservice::LocalServiceProxy> proxy);
    ~QueryRunner() override;

    // The newest request the window asked for; may be called from any thread.
    void supersede(quint64 latest) { m_latest.store(latest); }

public Q_SLOTS:
    void run(quint64 number, const QByteArray &request);
    // Runs the request as far as its first row: enough to know whether it runs.
    void check(const QByteArray &request);

Q_SIGNALS:
    void rowsArrived(quint64 number, const RowChunk &rows);
    void answered(quint64 number, const AnswerEnd &end);
    void checked(const AnswerEnd &end);

private:
    std::shared_ptr<const dataservice::LocalServiceProxy> m_proxy;
    std::atomic<quint64> m_latest{ 0 };
};
