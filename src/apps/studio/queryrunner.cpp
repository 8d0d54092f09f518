#include "queryrunner.h"

#include "dataservice/localserviceproxy.h"
#include "dataservice/rowsink.h"
#include "tessaly/error.h"

#include <QElapsedTimer>

#include <functional>

namespace {

// The part of the rows gathered since the last hand-over goes to the window this often, so
// the window takes small bites and a long answer shows as it grows.
constexpr qint64 handOverMs = 30;

// Thrown through the data service to stop a statement the window no longer wants.
struct Stop
{
};

// Gathers the rows on the runner's thread and hands them over in parts.
class RowCollector final : public dataservice::RowSink
{
public:
    using HandOver = std::function<void(RowChunk)>;
    using Wanted = std::function<bool()>;

    RowCollector(HandOver handOver, Wanted wanted) : m_handOver(std::move(handOver)), m_wanted(std::move(wanted)) { }

    void startTable(const QList<QByteArray> &columnNames) override
    {
        m_names = columnNames;
        m_part = std::make_shared<RowStore>(m_names);
    }
    void startRecord() override
    {
        if (!m_wanted())
            throw Stop();
        m_part->startRow();
    }
    void value(const char *utf8, qsizetype size) override { m_part->addText(utf8, size); }
    void numberValue(const char *text, qsizetype size) override { m_part->addNumber(text, size); }
    void booleanValue(bool value) override { m_part->addBoolean(value); }
    void blobValue(const char *data, qsizetype size) override { m_part->addBlob(data, size); }
    void nullValue() override { m_part->addNull(); }
    void endRecord() override
    {
        if (!m_sinceHandOver.isValid() || m_sinceHandOver.elapsed() >= handOverMs)
            handOver();
    }
    void endTable(qint64 rows, bool truncated, qint64 rowCap) override
    {
        handOver();
        end.rows = rows;
        end.truncated = truncated;
        end.rowCap = rowCap;
    }

    AnswerEnd end;

private:
    void handOver()
    {
        m_handOver(std::exchange(m_part, std::make_shared<RowStore>(m_names)));
        m_sinceHandOver.start();
    }

    HandOver m_handOver;
    Wanted m_wanted;
    QList<QByteArray> m_names;
    RowChunk m_part;
    QElapsedTimer m_sinceHandOver;
};

// Runs the request through sink; a failure of the service or of the rows ends up in the sink's end.
void runInto(const dataservice::LocalServiceProxy &proxy, const QByteArray &request, RowCollector &sink)
{
    QElapsedTimer clock;
    clock.start();
    try {
        proxy.select(request, sink);
    } catch (const tessaly::Error &error) {
        sink.end.errorNumber = error.number();
        sink.end.error = error.message();
    } catch (const std::exception &error) {
        // Nothing may escape into the thread's event loop.
        sink.end.errorNumber = tessaly::ErrorNumber::Fail;
        sink.end.error = QString::fromLocal8Bit(error.what());
    }
    sink.end.elapsedMs = clock.elapsed();
}

} // namespace

QueryRunner::QueryRunner(std::shared_ptr<const dataservice::LocalServiceProxy> proxy) : m_proxy(std::move(proxy))
{
    qRegisterMetaType<RowChunk>();
    qRegisterMetaType<AnswerEnd>();
}

QueryRunner::~QueryRunner() = default;

void QueryRunner::run(quint64 number, const QByteArray &request)
{
    if (number != m_latest.load())
        return; // replaced before it started
    RowCollector sink([this, number](RowChunk rows) { Q_EMIT rowsArrived(number, rows); },
                      [this, number] { return number == m_latest.load(); });
    try {
        runInto(*m_proxy, request, sink);
    } catch (const Stop &) {
        return; // nobody waits for this answer any more
    }
    Q_EMIT answered(number, sink.end);
}

void QueryRunner::check(const QByteArray &request)
{
    bool seenOne = false;
    RowCollector sink([](const RowChunk &) {}, [&seenOne] { return !std::exchange(seenOne, true); });
    try {
        runInto(*m_proxy, request, sink);
    } catch (const Stop &) {
        sink.end.rows = 1; // the first row came: the statement runs
    }
    Q_EMIT checked(sink.end);
}
