#include "server/answer.h"

#include "dataservice/errornumber.h"
#include "tessaly/error.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace server {

int statusFor(qint32 number)
{
    namespace ds = dataservice::ErrorNumber;
    switch (number) {
    case tessaly::ErrorNumber::InvalidArgument:
    case tessaly::ErrorNumber::TypeMismatch:
    case tessaly::ErrorNumber::Overflow:
    case tessaly::ErrorNumber::SubscriptOutOfRange:
        return 400; // a value or input the component cannot take
    case ds::StatementRefused:
    case ds::DatabaseError:
    case ds::UnknownProvider:
    case ds::UnknownDataSource:
    case ds::UnknownCatalog:
    case ds::UnknownTable:
        return 422; // the statement or what it names is refused
    case ds::Timeout:
        return 504;
    case ds::Busy:
        return 503;
    case ds::ConnectionFailed:
        return 502;
    default:
        return 500;
    }
}

std::string errorBody(const ApiError &error)
{
    const QJsonObject body{ { QStringLiteral("number"), tessaly::Error::hexNumber(error.number) },
                            { QStringLiteral("reason"), error.reason } };
    return QJsonDocument(body).toJson(QJsonDocument::Compact).toStdString() + '\n';
}

void Answer::setHeader(std::string name, std::string value)
{
    std::lock_guard lock(m_mutex);
    m_headers.emplace_back(std::move(name), std::move(value));
}

void Answer::write(const char *data, size_t size)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_cancelled || m_buffer.size() < Capacity; });
    if (m_cancelled)
        throw AnswerCancelled();
    m_buffer.append(data, size);
    if (m_state == State::Pending && m_buffer.size() >= HeadLimit)
        m_state = State::Streaming;
    else if (m_state != State::Streaming)
        return; // nobody waits for bytes before the head
    lock.unlock();
    m_changed.notify_all();
}

void Answer::fail(const ApiError &error)
{
    {
        std::lock_guard lock(m_mutex);
        m_ended = true;
        if (m_state == State::Pending) {
            m_state = State::Failed;
            m_error = error;
            m_buffer.clear();
        } else {
            m_cut = true;
        }
    }
    m_changed.notify_all();
}

void Answer::finish()
{
    {
        std::lock_guard lock(m_mutex);
        m_ended = true;
        if (m_state == State::Pending)
            m_state = State::Complete;
    }
    m_changed.notify_all();
}

Answer::State Answer::waitForHead()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_state != State::Pending; });
    return m_state;
}

bool Answer::take(std::string &out)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return !m_buffer.empty() || m_ended || m_cancelled; });
    if (m_buffer.empty())
        return false;
    out.swap(m_buffer);
    m_buffer.clear();
    lock.unlock();
    m_changed.notify_all(); // room for the worker
    return true;
}

bool Answer::ok() const
{
    std::lock_guard lock(m_mutex);
    return m_ended && !m_cut && !m_cancelled;
}

void Answer::cancel()
{
    {
        std::lock_guard lock(m_mutex);
        m_cancelled = true;
    }
    m_changed.notify_all();
}

} // namespace server
