#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace server {

class ComponentRunner;

// A fixed number of worker threads, each with its own component sessions, taking jobs from
// a bounded queue: more jobs than the queue holds are refused, never piled up.
class WorkerPool
{
public:
    using Job = std::function<void(ComponentRunner &runner, std::chrono::steady_clock::duration queued)>;
    using RunnerFactory = std::function<std::unique_ptr<ComponentRunner>()>;

    WorkerPool(int workers, int queue, RunnerFactory factory);
    ~WorkerPool();
    WorkerPool(const WorkerPool &) = delete;
    WorkerPool &operator=(const WorkerPool &) = delete;

    // False when the queue is full or the pool stops: the job will not run.
    bool submit(Job job);
    // Jobs running or waiting.
    int busy() const;
    // Waits until no job runs or waits, or until the deadline; true when none does.
    bool waitIdle(std::chrono::steady_clock::time_point deadline);
    void stop();

private:
    struct Queued
    {
        Job job;
        std::chrono::steady_clock::time_point since;
    };
    void work(RunnerFactory factory);

    size_t m_capacity;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::condition_variable m_room;
    std::deque<Queued> m_jobs;
    int m_running = 0;
    bool m_stopping = false;
    std::vector<std::thread> m_threads;
};

} // namespace server
