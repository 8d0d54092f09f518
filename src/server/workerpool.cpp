#include "server/workerpool.h"

#include "server/componentrunner.h"

namespace server {

WorkerPool::WorkerPool(int workers, int queue, RunnerFactory factory) : m_capacity(size_t(queue))
{
    for (int i = 0; i < workers; ++i)
        m_threads.emplace_back([this, factory] { work(factory); });
}

WorkerPool::~WorkerPool()
{
    stop();
}

bool WorkerPool::submit(Job job)
{
    {
        std::unique_lock lock(m_mutex);
        // A job waits only while every worker is busy, so the queue counts those beyond them.
        // A worker that has just answered may not have counted itself free yet: a full pool
        // is given a moment before the job is refused.
        const auto room = [&] { return m_stopping || m_jobs.size() + size_t(m_running) < m_capacity + m_threads.size(); };
        if (!m_room.wait_for(lock, std::chrono::milliseconds(50), room) || m_stopping)
            return false;
        m_jobs.push_back({ std::move(job), std::chrono::steady_clock::now() });
    }
    m_wake.notify_one();
    return true;
}

int WorkerPool::busy() const
{
    std::lock_guard lock(m_mutex);
    return int(m_jobs.size()) + m_running;
}

bool WorkerPool::waitIdle(std::chrono::steady_clock::time_point deadline)
{
    std::unique_lock lock(m_mutex);
    return m_idle.wait_until(lock, deadline, [&] { return m_jobs.empty() && m_running == 0; });
}

void WorkerPool::stop()
{
    {
        std::lock_guard lock(m_mutex);
        if (m_stopping && m_threads.empty())
            return;
        m_stopping = true;
    }
    m_wake.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
    m_threads.clear();
}

void WorkerPool::work(RunnerFactory factory)
{
    const std::unique_ptr<ComponentRunner> runner = factory();
    for (;;) {
        Queued next;
        {
            std::unique_lock lock(m_mutex);
            m_wake.wait(lock, [&] { return m_stopping || !m_jobs.empty(); });
            if (m_jobs.empty())
                return;
            next = std::move(m_jobs.front());
            m_jobs.pop_front();
            ++m_running;
        }
        next.job(*runner, std::chrono::steady_clock::now() - next.since);
        {
            std::lock_guard lock(m_mutex);
            --m_running;
            if (m_jobs.empty() && m_running == 0)
                m_idle.notify_all();
        }
        m_room.notify_one();
    }
}

} // namespace server
