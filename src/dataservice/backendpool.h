#pragma once

#include "backend.h"

#include <QString>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace dataservice {

// Connections kept open between requests, per data source, for a host that answers many
// requests (veldra serve): at most the data source's pool_size are open or in use at once, so
// that many clients never hold more server connections than that, and an SQLite file is not
// opened anew for each request. A leased connection goes back to the pool when the request is
// done with it, unless the request failed or left it busy; then it is closed.
class BackendPool
{
public:
    using Opener = std::function<std::unique_ptr<Backend>(const DataSource &)>;

    // wait: how long a request waits for a connection when all are in use.
    BackendPool(Opener opener, std::chrono::milliseconds wait);
    ~BackendPool();
    BackendPool(const BackendPool &) = delete;
    BackendPool &operator=(const BackendPool &) = delete;

    // An idle connection of the data source, or a new one while fewer than its pool_size are
    // open. Throws tessaly::Error(Busy) when none frees within the wait, and what opening throws.
    std::unique_ptr<Backend> lease(const DataSource &source);

    // Connections of the data source open now, in use or idle.
    int openCount(const QString &provider, const QString &name) const;

private:
    class Leased;
    struct Source
    {
        std::vector<std::unique_ptr<Backend>> idle;
        int open = 0;
    };

    void giveBack(const QString &key, std::unique_ptr<Backend> backend);

    Opener m_opener;
    std::chrono::milliseconds m_wait;
    mutable std::mutex m_mutex;
    std::condition_variable m_freed;
    std::map<QString, Source> m_sources;
};

} // namespace dataservice
