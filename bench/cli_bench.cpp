// veldra run against the engines' own command-line clients, each as a separate process writing
// the same 1,000,000 rows x 3 columns as CSV to /dev/null:
//   veldra run --format csv / sqlite3 -csv    time, target <= 1.5
//   veldra run --format csv / psql --csv      time, target <= 1.5 (when a PostgreSQL server can be started)
// and for veldra its peak memory (target < 64 MB) and the time to its first row on a pipe
// (target <= 100 ms). Then a catalog of 15,000 tables listed:
//   veldra browse / sqlite3 .tables           time, target <= 1.2
//   veldra browse / psql -c '\dt SCHEMA.*'    time, target <= 1.2 (when a PostgreSQL server can be started)

#include "benchprocess.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Rows = 1000000;
constexpr int Tables = 15000;

struct Tool
{
    std::string name;
    std::vector<std::string> argv;
};

struct ChildRun
{
    bool ok = false;
    double seconds = 0;
    double peakMegabytes = 0;
    double firstRowMs = -1; // the second line (the first after the header) arrived
};

// Runs argv with standard output to /dev/null, or to a pipe read here when watchFirstRow.
ChildRun runChild(const std::vector<std::string> &argv, bool watchFirstRow)
{
    int pipeFds[2] = {-1, -1};
    if (watchFirstRow && pipe(pipeFds) != 0)
        return {};
    const Clock::time_point start = Clock::now();
    const pid_t pid = fork();
    if (pid == 0) {
        const int out = watchFirstRow ? pipeFds[1] : open("/dev/null", O_WRONLY);
        dup2(out, STDOUT_FILENO);
        if (watchFirstRow)
            close(pipeFds[0]);
        std::vector<char *> args;
        for (const std::string &arg : argv)
            args.push_back(const_cast<char *>(arg.c_str()));
        args.push_back(nullptr);
        execvp(args[0], args.data());
        _exit(127);
    }
    ChildRun result;
    if (watchFirstRow) {
        close(pipeFds[1]);
        char buffer[65536];
        int lines = 0;
        ssize_t got;
        while ((got = read(pipeFds[0], buffer, sizeof buffer)) > 0) {
            for (ssize_t i = 0; i < got && lines < 2; ++i) {
                if (buffer[i] == '\n' && ++lines == 2)
                    result.firstRowMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
            }
        }
        close(pipeFds[0]);
    }
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    result.peakMegabytes = double(usage.ru_maxrss) / 1024.0;
    result.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return result;
}

void toolBench(benchmark::State &state, const Tool *tool)
{
    double peak = 0;
    for (auto _ : state) {
        const ChildRun run = runChild(tool->argv, false);
        if (!run.ok) {
            state.SkipWithError("the program failed");
            return;
        }
        state.SetIterationTime(run.seconds);
        peak = std::max(peak, run.peakMegabytes);
    }
    state.counters["peak_MB"] = peak;
}

class CollectingReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (!run.error_occurred)
                times[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
    std::map<std::string, double> times;
};



// A component that selects big.id, big.name and big.amount from DSN.
QByteArray component(const QString &provider, const QString &dsn, const QString &catalog)
{
    QString columns;
    for (const char *column : {"id", "name", "amount"})
        columns += QStringLiteral("<Object key=\"%1\"><ColumnInfo><alias></alias><columnType>1</columnType>"
                                  "<express>%1</express><table>big</table></ColumnInfo></Object>")
                       .arg(QLatin1String(column));
    return QStringLiteral(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Component><Model><ClassPart>"
               "<Variable name=\"selection\">big.id,big.name,big.amount</Variable>"
               "<Variable name=\"SQLInfo\"><SQLInfo><dbInfo><DBInfo><provider>%1</provider><dsn>%2</dsn>"
               "<catalog>%3</catalog></DBInfo></dbInfo><tables><NameMap><Object key=\"big\"><TableInfo>"
               "<tableName>big</tableName><columns><NameMap>%4</NameMap></columns></TableInfo></Object></NameMap>"
               "</tables><selections><Item>big.id</Item><Item>big.name</Item><Item>big.amount</Item></selections>"
               "<useGroupBy>false</useGroupBy><useOrderBy>false</useOrderBy><topN>0</topN></SQLInfo></Variable>"
               "</ClassPart></Model></Component>\n")
        .arg(provider, dsn, catalog, columns)
        .toUtf8();
}

bool writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    QTemporaryDir dir;
    const QString select = QStringLiteral("SELECT big.id, big.name, big.amount FROM %1big");

    // SQLite: a table of Rows rows in a file of our own.
    const QString db = dir.filePath(QStringLiteral("big.db"));
    const QString fill = QStringLiteral(
        "CREATE TABLE big (id INTEGER PRIMARY KEY, name TEXT, amount REAL);"
        "WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
        "INSERT INTO big SELECT i, 'name ' || i, (i * 7919 % 1000000) / 100.0 FROM n;").arg(Rows);
    if (!runProgram(QStringLiteral("sqlite3"), {db, fill})) {
        std::fprintf(stderr, "cannot build the benchmark database with sqlite3\n");
        return 1;
    }
    QString ini = QStringLiteral("[Big]\nprovider=SQLite\npath=%1\nrowcap=%2\ntimeout=600\n").arg(db).arg(2 * Rows);
    // A catalog of many tables, for the listings.
    const QString tablesDb = dir.filePath(QStringLiteral("tables.db"));
    QString createTables = QStringLiteral("BEGIN;");
    for (int i = 0; i < Tables; ++i)
        createTables += QStringLiteral("CREATE TABLE t%1 (id INTEGER);").arg(i, 5, 10, QLatin1Char('0'));
    createTables += QStringLiteral("COMMIT;");
    const QString createScript = dir.filePath(QStringLiteral("tables.sql")); // too long for one argument
    if (!writeFile(createScript, createTables.toUtf8())
        || !runProgram(QStringLiteral("sqlite3"), {tablesDb, QStringLiteral(".read ") + createScript})) {
        std::fprintf(stderr, "cannot build the many-tables database with sqlite3\n");
        return 1;
    }
    ini += QStringLiteral("[Tables]\nprovider=SQLite\npath=%1\n").arg(tablesDb);
    QDir().mkpath(dir.filePath(QStringLiteral("veldra")));
    writeFile(dir.filePath(QStringLiteral("sqlite.component.xml")),
              component(QStringLiteral("SQLite"), QStringLiteral("Big"), QStringLiteral("main")));

    // PostgreSQL: a throw-away server with the same rows, when one can be started.
    const QString state = dir.filePath(QStringLiteral("postgres.state"));
    runProgram(QStringLiteral(VELDRA_PGSERVER_SCRIPT), {QStringLiteral("start"), state, QStringLiteral(VELDRA_SAMPLE_SQL)});
    const QMap<QString, QString> pg = readServerState(state);
    std::vector<std::string> psql;
    if (pg.contains(QStringLiteral("host"))) {
        for (const QString &arg : {QStringLiteral("psql"), QStringLiteral("-X"), QStringLiteral("-q"),
                                   QStringLiteral("-h"), pg.value(QStringLiteral("host")), QStringLiteral("-p"),
                                   pg.value(QStringLiteral("port")), QStringLiteral("-U"), pg.value(QStringLiteral("user")),
                                   QStringLiteral("-d"), pg.value(QStringLiteral("dbname"))})
            psql.push_back(arg.toStdString());
        QStringList create;
        for (size_t i = 1; i < psql.size(); ++i)
            create.append(QString::fromStdString(psql[i]));
        runProgram(QStringLiteral("psql"), create + QStringList{QStringLiteral("-c"),
            QStringLiteral("CREATE TABLE sales.big AS SELECT i AS id, 'name ' || i AS name, "
                           "(i::bigint * 7919 % 1000000) / 100.0 AS amount FROM generate_series(1, %1) i; ANALYZE sales.big; "
                           "GRANT SELECT ON sales.big TO %2")
                .arg(Rows)
                .arg(pg.value(QStringLiteral("reader")))});
        // The service runs user queries only as a role that can read and nothing more.
        ini += QStringLiteral("[BigServer]\nprovider=PostgreSQL\nhost=%1\nport=%2\nuser=%3\ndbname=%4\ncatalogs=sales\n"
                              "rowcap=%5\ntimeout=600\n")
                   .arg(pg.value(QStringLiteral("host")), pg.value(QStringLiteral("port")), pg.value(QStringLiteral("reader")),
                        pg.value(QStringLiteral("dbname")))
                   .arg(2 * Rows);
        // In batches: one transaction holding 15,000 new tables runs out of lock slots.
        runProgram(QStringLiteral("psql"), create + QStringList{QStringLiteral("-c"), QStringLiteral("CREATE SCHEMA many")});
        for (int first = 0; first < Tables; first += 1000)
            runProgram(QStringLiteral("psql"), create + QStringList{QStringLiteral("-c"),
                QStringLiteral("DO $$ BEGIN FOR i IN %1..%2 LOOP "
                               "EXECUTE format('CREATE TABLE many.t%s (id integer)', lpad(i::text, 5, '0')); END LOOP; END $$")
                    .arg(first)
                    .arg(std::min(first + 1000, Tables) - 1)});
        runProgram(QStringLiteral("psql"), create + QStringList{QStringLiteral("-c"),
            QStringLiteral("GRANT USAGE ON SCHEMA many TO %1; GRANT SELECT ON ALL TABLES IN SCHEMA many TO %1")
                .arg(pg.value(QStringLiteral("reader")))});
        ini += QStringLiteral("[TablesServer]\nprovider=PostgreSQL\nhost=%1\nport=%2\nuser=%3\ndbname=%4\ncatalogs=many\n")
                   .arg(pg.value(QStringLiteral("host")), pg.value(QStringLiteral("port")), pg.value(QStringLiteral("reader")),
                        pg.value(QStringLiteral("dbname")));
        writeFile(dir.filePath(QStringLiteral("postgresql.component.xml")),
                  component(QStringLiteral("PostgreSQL"), QStringLiteral("BigServer"), QStringLiteral("sales")));
    } else {
        std::printf("PostgreSQL skipped: no server could be started (see tests/dataservice/pgserver.sh)\n");
    }
    writeFile(dir.filePath(QStringLiteral("veldra/datasources.ini")), ini.toUtf8());
    setenv("XDG_CONFIG_HOME", qPrintable(dir.path()), 1);
    setenv("VELDRA_LANG", "en", 1);

    struct Pair
    {
        std::string backend;
        Tool veldra;
        Tool client;
    };
    std::vector<Pair> pairs;
    pairs.push_back({"sqlite",
                     {"sqlite/veldra", {VELDRA_BINARY, "run", dir.filePath(QStringLiteral("sqlite.component.xml")).toStdString(),
                                        "--format", "csv"}},
                     {"sqlite/sqlite3 -csv", {"sqlite3", "-csv", db.toStdString(), select.arg(QString()).toStdString()}}});
    if (!psql.empty()) {
        std::vector<std::string> client = psql;
        client.insert(client.end(), {"--csv", "-c", select.arg(QStringLiteral("sales.")).toStdString()});
        pairs.push_back({"postgresql",
                         {"postgresql/veldra", {VELDRA_BINARY, "run",
                                                dir.filePath(QStringLiteral("postgresql.component.xml")).toStdString(),
                                                "--format", "csv"}},
                         {"postgresql/psql --csv", client}});
    }
    std::vector<Pair> listings;
    listings.push_back({"sqlite",
                        {"sqlite/veldra browse", {VELDRA_BINARY, "browse", "SQLite", "Tables", "main"}},
                        {"sqlite/sqlite3 .tables", {"sqlite3", tablesDb.toStdString(), ".tables"}}});
    if (!psql.empty()) {
        std::vector<std::string> client = psql;
        client.insert(client.end(), {"-c", "\\dt many.*"});
        listings.push_back({"postgresql",
                            {"postgresql/veldra browse", {VELDRA_BINARY, "browse", "PostgreSQL", "TablesServer", "many"}},
                            {"postgresql/psql \\dt", client}});
    }
    const bool listingsOnly = std::getenv("VELDRA_BENCH_LISTINGS_ONLY") != nullptr;
    if (listingsOnly)
        pairs.clear();
    pairs.insert(pairs.end(), listings.begin(), listings.end());

    for (const Pair &pair : pairs) {
        for (const Tool *tool : {&pair.veldra, &pair.client}) {
            const ChildRun check = runChild(tool->argv, false);
            if (!check.ok) {
                std::fprintf(stderr, "%s failed\n", tool->name.c_str());
                return 1;
            }
            benchmark::RegisterBenchmark(tool->name.c_str(), toolBench, tool)
                ->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
        }
    }
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    std::printf("\n%d tables listed:\n", Tables);
    for (const Pair &pair : listings) {
        const double veldra = reporter.times[pair.veldra.name + "/iterations:5/manual_time"];
        const double client = reporter.times[pair.client.name + "/iterations:5/manual_time"];
        const double ratio = veldra / client;
        std::printf("  %-10s veldra browse %.0f ms, %s %.0f ms: ratio %.2f (target <= 1.2) %s\n", pair.backend.c_str(),
                    veldra, pair.client.name.substr(pair.client.name.find('/') + 1).c_str(), client, ratio,
                    ratio <= 1.2 ? "ok" : "MISSED");
    }
    pairs.resize(pairs.size() - listings.size());

    std::printf("\n1,000,000 rows x 3 columns as CSV:\n");
    for (const Pair &pair : pairs) {
        const double veldra = reporter.times[pair.veldra.name + "/iterations:5/manual_time"];
        const double client = reporter.times[pair.client.name + "/iterations:5/manual_time"];
        const ChildRun first = runChild(pair.veldra.argv, true);
        const ChildRun clientFirst = runChild(pair.client.argv, true);
        const double ratio = veldra / client;
        std::printf("  %-10s veldra %.0f ms, %s %.0f ms: ratio %.2f (target <= 1.5) %s\n", pair.backend.c_str(),
                    veldra, pair.client.name.substr(pair.client.name.find('/') + 1).c_str(), client, ratio,
                    ratio <= 1.5 ? "ok" : "MISSED");
        std::printf("  %-10s veldra peak memory %.1f MB (target < 64) %s; the client's %.1f MB\n", pair.backend.c_str(),
                    first.peakMegabytes, first.peakMegabytes < 64 ? "ok" : "MISSED", clientFirst.peakMegabytes);
        std::printf("  %-10s veldra first row after %.0f ms (target <= 100) %s; the client's after %.0f ms\n",
                    pair.backend.c_str(), first.firstRowMs, first.firstRowMs >= 0 && first.firstRowMs <= 100 ? "ok" : "MISSED",
                    clientFirst.firstRowMs);
    }

    runProgram(QStringLiteral(VELDRA_PGSERVER_SCRIPT), {QStringLiteral("stop"), state});
    return 0;
}
