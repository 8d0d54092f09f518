#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <chrono>

namespace host {

// Bytes of a result on their way to a reader (standard output, an HTTP answer), gathered in a
// small buffer and handed on as records complete: when the buffer is full, for the first
// record, after each record for an interactive reader, and otherwise once a tenth of a second
// has passed since the last hand-over, so rows show as they arrive without a write per row.
// deliver() may throw to stop the result (a closed pipe, a client that went away).
class RowOutput
{
public:
    explicit RowOutput(bool interactive = false);
    virtual ~RowOutput();
    RowOutput(const RowOutput &) = delete;
    RowOutput &operator=(const RowOutput &) = delete;

    void write(const char *data, qsizetype size) { m_buffer.append(data, size); }
    void write(QByteArrayView bytes) { m_buffer.append(bytes.data(), bytes.size()); }
    void put(char c) { m_buffer.append(c); }

    // A record is complete.
    void recordDone()
    {
        if (m_interactive || m_buffer.size() >= BufferSize || m_records++ == 0)
            flush();
        else
            flushIfDue();
    }
    void flush();

    // True once any byte went out (or waits in the buffer).
    bool wroteAnything() const { return m_wroteAnything || !m_buffer.isEmpty(); }

protected:
    static constexpr qsizetype BufferSize = 64 * 1024;

    // Hands the bytes on; called by flush() with what the buffer holds (never empty).
    virtual void deliver(const char *data, qsizetype size) = 0;

private:
    void flushIfDue();

    bool m_interactive;
    bool m_wroteAnything = false;
    QByteArray m_buffer;
    quint64 m_records = 0;
    std::chrono::steady_clock::time_point m_lastWrite;
};

} // namespace host
