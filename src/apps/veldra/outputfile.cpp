#include "outputfile.h"

#include "outputerror.h"

#include <cerrno>
#include <cstring>

#include <unistd.h>

OutputFile::OutputFile(int fd) : RowOutput(::isatty(fd) == 1), m_fd(fd)
{
}

void OutputFile::deliver(const char *data, qsizetype size)
{
    while (size > 0) {
        const ssize_t written = ::write(m_fd, data, size_t(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            throw OutputError(std::strerror(written < 0 ? errno : EIO));
        data += written;
        size -= written;
    }
}
