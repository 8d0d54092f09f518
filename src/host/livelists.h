#pragma once

#include "host/parametersettings.h"
#include "host/sourcechoice.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QString>

#include <memory>
#include <optional>

namespace dataservice {
class DataService;
}

namespace tessaly {
class NameMap;
}

namespace veldra {
class SQLInfo;
}

namespace host {

// One value a person may choose: the literal the parameter slot gets, and the text shown.
struct ListEntry
{
    QString literal;
    QString text;
    bool operator==(const ListEntry &other) const { return literal == other.literal && text == other.text; }
};

// A page of a parameter's list, as a host shows it.
struct ListPage
{
    QList<ListEntry> entries;
    bool live = false;   // read from the data source (now, or from the cache)
    bool cached = false; // answered from the cache
    bool more = false;   // the list goes on past this page
    QString note;        // for the person: why the stored values show instead, or what the list waits for
};

// Reads the live lists of parameters through the data service, as one more record request:
// every guard of a run applies (one read-only SELECT, the catalog, the row cap, the timeout),
// and the search text reaches the engine as a quoted LIKE pattern, never as SQL. Pages are kept
// for the list's cache time; when the source cannot be read the query's stored values stand in,
// with a note that says so. Safe to use from several threads.
class LiveLists
{
public:
    static constexpr int PageSize = 100;

    explicit LiveLists(std::shared_ptr<const dataservice::DataService> service);

    // What the person may choose for reference: its live list narrowed to entries whose shown
    // text holds search (any case), in the list's order; the stored values when it has no live
    // list or the list cannot be read. values gives the parameters the filter refers to.
    ListPage page(const veldra::SQLInfo &definition, const HostSettings &settings, const QString &reference,
                  const tessaly::NameMap *values, const SourceChoice &source, const QString &search = {},
                  int limit = PageSize);

    // The literals among those given that the live list holds now (all of them when the list
    // cannot be read: the stored values are no judge of a live list).
    QStringList present(const veldra::SQLInfo &definition, const HostSettings &settings, const QString &reference,
                        const tessaly::NameMap *values, const SourceChoice &source, const QStringList &literals);

    // The entry whose value or shown text is exactly text, if the live list holds one.
    std::optional<ListEntry> match(const veldra::SQLInfo &definition, const HostSettings &settings,
                                   const QString &reference, const tessaly::NameMap *values,
                                   const SourceChoice &source, const QString &text);

    // How long a complete answer to a search serves longer searches of the same list, however
    // short its cache time: the time a person takes to type a word.
    static constexpr int TypingSeconds = 10;

    // Reads every list afresh from now on.
    void clear();
    // How many pages came from the cache, for a host to show and a benchmark to measure.
    int cacheHits() const;

private:
    struct Fetched
    {
        ListPage page;
        QString failure; // the service's reason when the source could not be read
    };
    Fetched fetch(const QByteArray &request, const QString &provider, int limit, int cacheSeconds);

    std::shared_ptr<const dataservice::DataService> m_service;
    mutable QMutex m_mutex;
    struct Kept
    {
        QDateTime at;
        ListPage page;
    };
    QHash<QByteArray, Kept> m_cache;
    // The last complete answer (no more than a page) to a search of each list, by the list's
    // request without the search: a longer search narrows it without asking the engine again.
    struct Narrowed
    {
        QDateTime at;
        QString search;
        ListPage page;
    };
    QHash<QByteArray, Narrowed> m_complete;
    int m_cacheHits = 0;
};

} // namespace host
