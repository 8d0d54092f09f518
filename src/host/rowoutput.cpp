#include "host/rowoutput.h"

namespace host {

namespace {

constexpr std::chrono::milliseconds WriteInterval(100);

} // namespace

RowOutput::RowOutput(bool interactive) : m_interactive(interactive)
{
}

RowOutput::~RowOutput() = default;

void RowOutput::flushIfDue()
{
    if (std::chrono::steady_clock::now() - m_lastWrite >= WriteInterval)
        flush();
}

void RowOutput::flush()
{
    m_wroteAnything = m_wroteAnything || !m_buffer.isEmpty();
    if (!m_buffer.isEmpty()) {
        try {
            deliver(m_buffer.constData(), m_buffer.size());
        } catch (...) {
            m_buffer.clear(); // nothing is left behind to send twice
            throw;
        }
        m_buffer.resize(0);
    }
    m_lastWrite = std::chrono::steady_clock::now();
}

} // namespace host
