#pragma once

#include <QString>

#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace server {

// What a request's error answer says: an HTTP status, the error number (as the data service
// and the component raise them) and the reason, as the command line would say it.
struct ApiError
{
    int status = 500;
    qint32 number = 0;
    QString reason;
    std::vector<std::pair<std::string, std::string>> headers = {};
};

// The HTTP status that fits an error number raised while answering.
int statusFor(qint32 number);
// {"number": "80070057", "reason": "..."}
std::string errorBody(const ApiError &error);

// Thrown into a worker's writes when the client went away or the service stops.
struct AnswerCancelled
{
};

// One answer, written by a worker and sent by the connection's thread. Whatever the worker
// writes is held until it finishes or has written HeadLimit bytes; only then is the head
// sent, so that a failure before that still gets its own status. A longer answer is then
// streamed with at most Capacity bytes waiting between the two threads.
class Answer
{
public:
    static constexpr size_t HeadLimit = 64 * 1024;
    static constexpr size_t Capacity = 256 * 1024;

    enum class State { Pending, Failed, Complete, Streaming };

    // Worker side.
    void setContentType(std::string type) { m_contentType = std::move(type); }
    void setHeader(std::string name, std::string value);
    // Blocks while Capacity bytes wait; throws AnswerCancelled once cancelled.
    void write(const char *data, size_t size);
    // Ends the answer. Before the head was sent the error is the answer; after it the stream
    // is cut, which the client sees as an incomplete answer.
    void fail(const ApiError &error);
    void finish();
    void countRows(qint64 rows) { m_rows = rows; }

    // Connection side. Waits until the head can be sent.
    State waitForHead();
    // Moves what waits into out; waits for more while the answer runs. False once nothing
    // more comes; then ok() says whether the answer was whole.
    bool take(std::string &out);
    bool ok() const;
    void cancel();

    const ApiError &error() const { return m_error; }
    const std::string &contentType() const { return m_contentType; }
    const std::vector<std::pair<std::string, std::string>> &headers() const { return m_headers; }
    qint64 rows() const { return m_rows; }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    State m_state = State::Pending;
    bool m_ended = false;
    bool m_cancelled = false;
    bool m_cut = false;
    std::string m_buffer;
    std::string m_contentType = "application/json";
    std::vector<std::pair<std::string, std::string>> m_headers;
    ApiError m_error;
    qint64 m_rows = -1;
};

} // namespace server
