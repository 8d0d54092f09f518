#include "queryrunner.h"

#include "dataservice/dataservice.h"
#include "tessaly/error.h"

QueryRunner::QueryRunner() = default;
QueryRunner::~QueryRunner() = default;

void QueryRunner::run(quint64 number, const QString &request)
{
    QueryResult result;
    try {
        if (!m_service)
            m_service = std::make_unique<dataservice::DataService>();
        result = QueryResult::fromResponse(m_service->answer(request.toUtf8()));
    } catch (const tessaly::Error &error) {
        result.error = QStringLiteral("%1 (%2)").arg(error.message(), tessaly::Error::hexNumber(error.number()));
    } catch (const std::exception &error) {
        // Nothing may escape into the thread's event loop.
        result.error = QString::fromLocal8Bit(error.what());
    }
    Q_EMIT answered(number, result);
}
