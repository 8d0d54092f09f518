#include "outputfile.h"

#include "outputerror.h"

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace {

constexpr std::chrono::milliseconds WriteInterval(100);

} // namespace

OutputFile::OutputFile(int fd) : m_fd(fd), m_interactive(::isatty(fd) == 1)
{
    m_buffer.reserve(BufferSize + 4096);
}

void OutputFile::flushIfDue()
{
    if (std::chrono::steady_clock::now() - m_lastWrite >= WriteInterval)
        flush();
}

void OutputFile::flush()
{
    m_wroteAnything = m_wroteAnything || !m_buffer.isEmpty();
    const char *p = m_buffer.constData();
    qsizetype left = m_buffer.size();
    while (left > 0) {
        const ssize_t written = ::write(m_fd, p, size_t(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            const int error = written < 0 ? errno : EIO;
            m_buffer.clear();
            throw OutputError(std::strerror(error));
        }
        p += written;
        left -= written;
    }
    m_buffer.resize(0);
    m_lastWrite = std::chrono::steady_clock::now();
}
