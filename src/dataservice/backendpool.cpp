#include "backendpool.h"

#include "errornumber.h"

#include <tessaly/error.h>

namespace dataservice {

namespace {

QString keyOf(const QString &provider, const QString &name)
{
    return provider + u'\n' + name;
}

} // namespace

// A pooled connection as the data service uses it; it goes back to the pool when destroyed.
class BackendPool::Leased : public Backend
{
public:
    Leased(BackendPool &pool, QString key, std::unique_ptr<Backend> inner)
        : Backend(DataSource()), m_pool(pool), m_key(std::move(key)), m_inner(std::move(inner))
    {
    }
    ~Leased() override
    {
        if (!m_clean || !m_inner->reusable())
            m_inner.reset();
        m_pool.giveBack(m_key, std::move(m_inner));
    }

    // A connection whose request threw may be mid-statement: it is not kept.
    template<typename F>
    auto watched(F work) -> decltype(work())
    {
        m_clean = false;
        auto result = work();
        m_clean = true;
        return result;
    }

    QStringList catalogs() override { return watched([&] { return m_inner->catalogs(); }); }
    QList<StructureItem> tables(const QString &catalog) override
    {
        return watched([&] { return m_inner->tables(catalog); });
    }
    QList<StructureItem> columns(const QString &catalog, const QString &table) override
    {
        return watched([&] { return m_inner->columns(catalog, table); });
    }
    void select(const Request &request, RowSink &sink) override
    {
        watched([&] {
            m_inner->select(request, sink);
            return 0;
        });
    }
    QString statement(const Request &request) override
    {
        return watched([&] { return m_inner->statement(request); });
    }
    SqlDialect dialect() const override { return m_inner->dialect(); }

private:
    BackendPool &m_pool;
    QString m_key;
    std::unique_ptr<Backend> m_inner;
    bool m_clean = true;
};

BackendPool::BackendPool(Opener opener, std::chrono::milliseconds wait)
    : m_opener(std::move(opener)), m_wait(wait)
{
}

BackendPool::~BackendPool() = default;

std::unique_ptr<Backend> BackendPool::lease(const DataSource &source)
{
    const QString key = keyOf(source.provider, source.name);
    std::unique_lock lock(m_mutex);
    Source &entry = m_sources[key];
    const bool freed = m_freed.wait_for(lock, m_wait, [&] { return !entry.idle.empty() || entry.open < source.poolSize; });
    if (!freed)
        throw tessaly::Error(ErrorNumber::Busy,
                             QStringLiteral("All %1 connections of data source %2 stayed in use for %3 ms; try again "
                                            "shortly.").arg(source.poolSize).arg(source.name).arg(m_wait.count()));
    if (!entry.idle.empty()) {
        std::unique_ptr<Backend> backend = std::move(entry.idle.back());
        entry.idle.pop_back();
        if (backend->reusable()) {
            backend->startRequest();
            return std::make_unique<Leased>(*this, key, std::move(backend));
        }
        --entry.open; // gone stale while idle (a replaced file): a new one takes its place
    }
    ++entry.open; // counted before opening, so that no more than pool_size open at once
    lock.unlock();
    try {
        return std::make_unique<Leased>(*this, key, m_opener(source));
    } catch (...) {
        giveBack(key, nullptr);
        throw;
    }
}

void BackendPool::giveBack(const QString &key, std::unique_ptr<Backend> backend)
{
    {
        std::lock_guard lock(m_mutex);
        Source &entry = m_sources[key];
        if (backend)
            entry.idle.push_back(std::move(backend));
        else
            --entry.open;
    }
    m_freed.notify_all();
}

int BackendPool::openCount(const QString &provider, const QString &name) const
{
    std::lock_guard lock(m_mutex);
    const auto found = m_sources.find(keyOf(provider, name));
    return found == m_sources.end() ? 0 : found->second.open;
}

} // namespace dataservice
