// A live parameter list over 1,000,000 distinct values: the sample with its customers grown to a
// million (an index on the name, as a table listed this way has), read through the data service
// as every host reads it.
//   first page (no search)                      target < 100 ms
//   a keystroke narrowing the list in the engine target < 100 ms each (a match near the start,
//     one deep in the list, and none at all: the whole index is read)
//   a page answered from the cache              target < 1 ms
//   typing a word letter by letter              target < 100 ms per keystroke on average (a
//     longer search narrows a complete shorter one without the engine)
// Each against the same SELECT prepared and stepped through the sqlite3 C API (baseline), so
// the ratio shows what the service and the host add.

#include "host/livelists.h"
#include "host/parametersettings.h"

#include "dataservice/dataservice.h"
#include "tessaly/namemap.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"

#include "summaryreporter.h"

#include <QFile>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <cstdio>
#include <cstring>

namespace {

constexpr int Values = 1000000;

struct Fixture
{
    QTemporaryDir dir;
    QString path;
    std::shared_ptr<const dataservice::DataService> service;
    veldra::SQLInfo definition;
    host::HostSettings settings;

    Fixture()
    {
        path = dir.filePath(QStringLiteral("big.db"));
        QFile::copy(dataservice::DataSourceCatalog::sampleDatabasePath(), path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        sqlite3 *db = nullptr;
        sqlite3_open(path.toUtf8().constData(), &db);
        const QByteArray fill = QStringLiteral(
                "INSERT INTO customers (id, name, region_code, city, segment) "
                "WITH RECURSIVE n (i) AS (SELECT 1001 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
                "SELECT i, 'Customer ' || ((i * 7919) % 1000003) || ' ' || substr('JonaKaraLeifMinaOttoPiaaRuneSivv', 1 + (i % 8) * 4, 4), "
                "'NE', 'Northam', 'Retail' FROM n; CREATE INDEX customers_name ON customers (name);")
                                       .arg(Values + 1000).toUtf8();
        char *error = nullptr;
        if (sqlite3_exec(db, fill.constData(), nullptr, nullptr, &error) != SQLITE_OK)
            std::fprintf(stderr, "fill: %s\n", error);
        sqlite3_close(db);
        dataservice::DataSource big = dataservice::DataSourceCatalog::sampleDataSource();
        big.name = QStringLiteral("Big");
        big.path = path;
        service = std::make_shared<const dataservice::DataService>(dataservice::DataSourceCatalog({ big }));
        definition.dbInfo()->setProvider(QStringLiteral("SQLite"));
        definition.dbInfo()->setDsn(QStringLiteral("Big"));
        definition.dbInfo()->setCatalog(QStringLiteral("main"));
        host::ParameterSetting &customer = settings.edit(QStringLiteral("@@@Customer"));
        customer.list = { QStringLiteral("customers"), QStringLiteral("id"), QStringLiteral("name"), {}, {}, false, 0 };
    }
};

Fixture &fixture()
{
    static Fixture instance;
    return instance;
}

// The statement the service builds for a page, stepped through the C API.
void BM_Baseline(benchmark::State &state, const char *pattern)
{
    sqlite3 *db = nullptr;
    sqlite3_open_v2(fixture().path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    const QByteArray sql = QByteArray("SELECT id, name FROM customers") + (*pattern ? " WHERE name LIKE ?1 ESCAPE '\\'" : "")
            + " GROUP BY name, id ORDER BY name, id LIMIT 101";
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(db, sql.constData(), -1, &statement, nullptr);
    const QByteArray like = QByteArray("%") + pattern + "%";
    for (auto _ : state) {
        sqlite3_reset(statement);
        if (*pattern)
            sqlite3_bind_text(statement, 1, like.constData(), -1, SQLITE_STATIC);
        int rows = 0;
        while (sqlite3_step(statement) == SQLITE_ROW)
            benchmark::DoNotOptimize(sqlite3_column_text(statement, 1)), ++rows;
        benchmark::DoNotOptimize(rows);
    }
    sqlite3_finalize(statement);
    sqlite3_close(db);
}

void BM_Page(benchmark::State &state, const char *search, bool cached)
{
    Fixture &f = fixture();
    host::HostSettings settings = f.settings;
    settings.edit(QStringLiteral("@@@Customer")).list.cacheSeconds = cached ? 300 : 0;
    host::LiveLists kept(f.service);
    tessaly::NameMap values;
    for (auto _ : state) {
        host::LiveLists fresh(f.service); // a keystroke no earlier answer narrows
        host::LiveLists &lists = cached ? kept : fresh;
        const host::ListPage page = lists.page(f.definition, settings, QStringLiteral("@@@Customer"), &values, {}, QString::fromUtf8(search));
        if (!page.live)
            state.SkipWithError(qPrintable(page.note));
        benchmark::DoNotOptimize(page.entries.size());
    }
}

const char *const searches[] = { "", "Kara", "Customer 99999", "zzz" };

// A person typing a word into the list's search, one page per keystroke.
void BM_Typing(benchmark::State &state, const char *word)
{
    Fixture &f = fixture();
    host::HostSettings settings = f.settings;
    tessaly::NameMap values;
    const QString typed = QString::fromUtf8(word);
    for (auto _ : state) {
        host::LiveLists lists(f.service); // nothing kept from the round before
        for (qsizetype length = 1; length <= typed.size(); ++length)
            benchmark::DoNotOptimize(lists.page(f.definition, settings, QStringLiteral("@@@Customer"), &values, {},
                                                typed.left(length)).entries.size());
    }
    state.counters["keystrokes"] = double(typed.size());
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    fixture();
    for (const char *search : searches) {
        const std::string name = *search ? search : "first page";
        benchmark::RegisterBenchmark(("baseline/" + name).c_str(), BM_Baseline, search)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("page/" + name).c_str(), BM_Page, search, false)->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("cache hit", BM_Page, "Kara", true)->Unit(benchmark::kMillisecond);
    const char *const words[] = { "Customer 99999", "Kara", "zzzz" };
    for (const char *word : words)
        benchmark::RegisterBenchmark((std::string("typing/") + word).c_str(), BM_Typing, word)->Unit(benchmark::kMillisecond);
    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\n%-22s %10s %10s %7s  target\n", "1,000,000 values", "ms", "baseline", "ratio");
    for (const char *search : searches) {
        const std::string name = *search ? search : "first page";
        const double page = reporter.best("page/" + name), base = reporter.best("baseline/" + name);
        std::printf("%-22s %10.2f %10.2f %7.2f  < 100 ms\n", (*search ? "keystroke " + name : name).c_str(), page, base,
                    page / base);
    }
    std::printf("%-22s %10.3f %10s %7s  < 1 ms\n", "cache hit", reporter.best("cache hit"), "", "");
    for (const char *word : words) {
        const double perKey = reporter.best(std::string("typing/") + word) / double(std::strlen(word));
        std::printf("%-22s %10.2f %10s %7s  < 100 ms per keystroke\n", (std::string("typing \"") + word + "\"").c_str(), perKey, "", "");
    }
    return 0;
}
