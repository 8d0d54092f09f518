#pragma once

#include "host/rowoutput.h"

// A result's bytes for a file descriptor (standard output), rows after each record when it is
// a terminal. Throws OutputError when a write fails.
class OutputFile : public host::RowOutput
{
public:
    explicit OutputFile(int fd);

protected:
    void deliver(const char *data, qsizetype size) override;

private:
    int m_fd;
};
