#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <chrono>

// Bytes for a file descriptor (standard output), gathered in a small buffer and written out
// as records complete: when the buffer is full, for the first record, after each record on a
// terminal, and otherwise once a tenth of a second has passed since the last write, so rows
// show as they arrive without a write per row. Throws OutputError when a write fails.
class OutputFile
{
public:
    explicit OutputFile(int fd);

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

private:
    static constexpr qsizetype BufferSize = 64 * 1024;
    void flushIfDue();

    int m_fd;
    bool m_interactive;
    bool m_wroteAnything = false;
    QByteArray m_buffer;
    quint64 m_records = 0;
    std::chrono::steady_clock::time_point m_lastWrite;
};
