// The data service against the engines' own command-line clients on the same query:
// 100,000 rows of 5 columns, from request text to complete response text.
//   service / sqlite3 -json   target <= 1.0
//   service / psql --csv      target <= 1.5 (when a PostgreSQL server can be started)
// and the peak memory while answering, against the size of the response (target < 3x).
// The readers of requests and of documents on 10 MB of hostile XML (attributes by the
// hundred thousand, as many as allowed on every element, references and comments by the
// million), against the XML parser reading 10 MB of plain elements: each under 1 s of CPU
// (target <= 2x the plain parse).

#include <dataservice/dataservice.h>
#include <dataservice/request.h>

#include <tessaly/error.h>
#include <tessaly/xmltagreader.h>

#include "benchprocess.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <malloc.h>

#include <cstdio>
#include <functional>

using namespace dataservice;

namespace {

constexpr int Rows = 100000;
const QString Fields = QStringLiteral("orders.id,orders.customer_id,orders.order_date,orders.status,orders.amount");
const QString Select = QStringLiteral("SELECT orders.id, orders.customer_id, orders.order_date, orders.status, "
                                      "orders.amount FROM orders");

// Grows the sample's orders to Rows rows; valid for both engines.
const QString Fill = QStringLiteral(
    "INSERT INTO orders (id, customer_id, staff_id, order_date, status, amount) "
    "WITH RECURSIVE n (i) AS (SELECT 2401 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
    "SELECT i, 1 + (i * 37) % 600, 7 + (i * 13) % 34, "
    "CAST(2022 + i % 3 AS VARCHAR(4)) || '-0' || CAST(1 + i % 9 AS VARCHAR(1)) || '-1' || CAST(i % 9 AS VARCHAR(1)), "
    "CASE WHEN i % 7 = 0 THEN 'open' ELSE 'shipped' END, (i * 7919 % 1000000) / 100.0 FROM n").arg(Rows);

QByteArray request(const QString &provider, const QString &dsn, const QString &catalog)
{
    return QStringLiteral("<query><get><content>record<field>%1</field></content><target><provider>%2</provider>"
                          "<dsn>%3</dsn><catalog>%4</catalog><table>orders</table></target></get></query>")
        .arg(Fields, provider, dsn, catalog).toUtf8();
}


struct Target
{
    QString name;
    DataService *service = nullptr;
    QByteArray request;
    QString client;
    QStringList clientArguments;
};

QByteArray answer(const Target &backend)
{
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    backend.service->answer(backend.request, &out);
    return out.data();
}

void serviceBench(benchmark::State &state, const Target *backend)
{
    qint64 bytes = 0;
    for (auto _ : state) {
        const QByteArray response = answer(*backend);
        bytes = response.size();
        benchmark::DoNotOptimize(response.constData());
    }
    state.counters["response_MB"] = double(bytes) / 1e6;
}

void clientBench(benchmark::State &state, const Target *backend)
{
    for (auto _ : state) {
        if (!runProgram(backend->client, backend->clientArguments)) {
            state.SkipWithError("the client failed");
            return;
        }
    }
}

long statusKilobytes(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(int(qstrlen(field))).trimmed().split(' ').first().toLong();
    }
    return -1;
}

// Peak resident memory while answering once, less what was resident before.
void reportMemory(const Target &backend)
{
    malloc_trim(0);
    QFile reset(QStringLiteral("/proc/self/clear_refs"));
    if (!reset.open(QIODevice::WriteOnly) || reset.write("5") != 1) {
        std::printf("%s: peak memory not measured (cannot reset the peak in /proc/self/clear_refs)\n",
                    qPrintable(backend.name));
        return;
    }
    reset.close();
    const long before = statusKilobytes("VmRSS:");
    const qsizetype size = answer(backend).size();
    const long peak = statusKilobytes("VmHWM:");
    const double ratio = double(peak - before) * 1024.0 / double(size);
    std::printf("%s: response %.1f MB, peak memory while answering +%.1f MB = %.2f x the response (target < 3)\n",
                qPrintable(backend.name), double(size) / 1e6, double(peak - before) / 1024.0, ratio);
}

constexpr qsizetype HostileBytes = 10 * 1000 * 1000;

// Elements of the form head + body repeated to 10 MB inside a root element.
QByteArray tenMegabytes(const QByteArray &head, const QByteArray &element)
{
    QByteArray xml = head;
    while (xml.size() < HostileBytes)
        xml += element;
    return xml;
}

// One element carrying as many attributes as fit in 10 MB.
QByteArray manyAttributes(const QByteArray &before, const QByteArray &after)
{
    QByteArray attributes;
    for (int i = 0; before.size() + attributes.size() < HostileBytes; ++i)
        attributes += " a" + QByteArray::number(i) + "=\"1\"";
    return before + attributes + after;
}

// Made when its benchmark runs and freed after it.
struct XmlCase
{
    const char *name;
    std::function<QByteArray()> make;
    void (*read)(const QByteArray &xml);
};

void parsePlain(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    while (!reader.atEnd())
        reader.readNext();
}

void parseRequest(const QByteArray &xml)
{
    try {
        Request::parse(xml);
    } catch (const tessaly::Error &) {
    }
}

void readDocument(const QByteArray &xml)
{
    try {
        tessaly::XmlTagReader reader(xml, QStringLiteral("bench"));
        reader.ReadTag();
        reader.ReadEndTag();
        reader.finish();
    } catch (const tessaly::Error &) {
    }
}

void xmlBench(benchmark::State &state, const XmlCase *xmlCase)
{
    const QByteArray xml = xmlCase->make();
    for (auto _ : state)
        xmlCase->read(xml);
    state.counters["MB"] = double(xml.size()) / 1e6;
}

class CollectingReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            times[QString::fromStdString(run.benchmark_name())] = run.GetAdjustedRealTime();
            cpuTimes[QString::fromStdString(run.benchmark_name())] = run.GetAdjustedCPUTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }
    QMap<QString, double> times;
    QMap<QString, double> cpuTimes; // for work on one thread, steadier than the clock on a busy machine
};


} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    QTemporaryDir dir;
    const QString sample = QStringLiteral(VELDRA_SAMPLE_SQL);

    // SQLite: the sample grown to 100,000 orders in a file of our own.
    const QString db = dir.filePath(QStringLiteral("bench.db"));
    if (!runProgram(QStringLiteral("sqlite3"), {db, QStringLiteral(".read ") + sample})
        || !runProgram(QStringLiteral("sqlite3"), {db, Fill})) {
        std::fprintf(stderr, "cannot build the benchmark database with sqlite3\n");
        return 1;
    }
    DataSource lite{QStringLiteral("Bench"), QStringLiteral("SQLite"), db, {}, {}, 2 * Rows, 600000};
    DataService liteService(DataSourceCatalog({lite}));
    Target sqlite{QStringLiteral("sqlite"), &liteService,
                   request(QStringLiteral("SQLite"), lite.name, QStringLiteral("main")),
                   QStringLiteral("sqlite3"), {QStringLiteral("-json"), db, Select}};

    // PostgreSQL: a throw-away server with the same data, when one can be started.
    const QString state = dir.filePath(QStringLiteral("postgres.state"));
    runProgram(QStringLiteral(VELDRA_PGSERVER_SCRIPT), {QStringLiteral("start"), state, sample});
    const QMap<QString, QString> pg = readServerState(state);
    std::unique_ptr<DataService> pgService;
    Target postgres;
    if (pg.contains(QStringLiteral("host"))) {
        DataSource server{QStringLiteral("Bench"), QStringLiteral("PostgreSQL"), {}, {}, {}, 2 * Rows, 600000};
        // The service connects as the SELECT-only role; psql, the baseline, as the owner.
        for (const char *key : {"host", "port", "dbname"})
            server.connection.append({QLatin1String(key), pg.value(QLatin1String(key))});
        server.connection.append({QStringLiteral("user"), pg.value(QStringLiteral("reader"))});
        server.catalogs = QStringList{QStringLiteral("sales")};
        pgService = std::make_unique<DataService>(DataSourceCatalog({server}));
        const QStringList psql{QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-h"),
                               pg.value(QStringLiteral("host")), QStringLiteral("-p"), pg.value(QStringLiteral("port")),
                               QStringLiteral("-U"), pg.value(QStringLiteral("user")), QStringLiteral("-d"),
                               pg.value(QStringLiteral("dbname"))};
        runProgram(QStringLiteral("psql"), psql + QStringList{QStringLiteral("-c"),
                                                       QStringLiteral("SET search_path = sales; ") + Fill
                                                           + QStringLiteral("; ANALYZE")});
        postgres = {QStringLiteral("postgresql"), pgService.get(),
                    request(QStringLiteral("PostgreSQL"), server.name, QStringLiteral("sales")),
                    QStringLiteral("psql"),
                    psql + QStringList{QStringLiteral("--csv"), QStringLiteral("-c"),
                                       QString(Select).replace(QStringLiteral("FROM orders"),
                                                               QStringLiteral("FROM sales.orders"))}};
    } else {
        std::printf("PostgreSQL skipped: %s\n", qPrintable(QString::fromUtf8(QFile(state).exists() ? "see " : "")
                                                               + state));
    }

    std::vector<Target *> backends{&sqlite};
    if (pgService)
        backends.push_back(&postgres);
    try {
        for (Target *backend : backends) {
            if (!answer(*backend).contains("rows=\"100000\" truncated=\"false\"")) {
                std::fprintf(stderr, "%s: the service did not return %d rows\n", qPrintable(backend->name), Rows);
                return 1;
            }
        }
    } catch (const tessaly::Error &error) {
        std::fprintf(stderr, "the service failed: %s\n", error.what());
        return 1;
    }

    const QByteArray query = "<query><get><content>column</content><target/>";
    const QByteArray attribute = " a=\"1\" b=\"2\" c=\"3\" d=\"4\" e=\"5\" f=\"6\" g=\"7\" h=\"8\" "
                                 "i=\"9\" j=\"10\" k=\"11\" l=\"12\" m=\"13\" n=\"14\" o=\"15\" p=\"16\"";
    const XmlCase xmlCases[] = {
        {"xml/plain_parse", [] { return tenMegabytes("<r>", "<x>1</x>") + "</r>"; }, parsePlain},
        {"xml/request_attributes",
         [] { return manyAttributes("<query><get", "><content>column</content><target/></get></query>"); },
         parseRequest},
        {"xml/request_references",
         [&] { return tenMegabytes(query + "<condition>", "&lt;&#38;<!---->") + "</condition></get></query>"; },
         parseRequest},
        {"xml/document_attributes", [] { return manyAttributes("<SQLInfo", "/>"); }, readDocument},
        {"xml/document_bound",
         [&] { return tenMegabytes("<SQLInfo>", "<x" + attribute + ">1</x>") + "</SQLInfo>"; }, readDocument},
    };
    for (Target *backend : backends) {
        benchmark::RegisterBenchmark(qPrintable(backend->name + QStringLiteral("/service")), serviceBench, backend)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(8);
        benchmark::RegisterBenchmark(qPrintable(backend->name + QStringLiteral("/client")), clientBench, backend)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(8);
    }
    CollectingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    const char *clients[] = {"sqlite3 -json", "psql --csv"};
    const double targets[] = {1.0, 1.5};
    for (size_t i = 0; i < backends.size(); ++i) {
        const QString name = backends[i]->name;
        const double service = reporter.times.value(name + QStringLiteral("/service/iterations:8/real_time"));
        const double client = reporter.times.value(name + QStringLiteral("/client/iterations:8/real_time"));
        if (service > 0 && client > 0)
            std::printf("%s: service %.1f ms, %s %.1f ms, ratio %.2f (target <= %.1f)\n", qPrintable(name), service,
                        clients[i], client, service / client, targets[i]);
    }
    for (Target *backend : backends)
        reportMemory(*backend);

    // After the memory figures: freeing 10 MB buffers moves glibc's threshold for mapping large
    // blocks, which would change how the response buffer grows.
    benchmark::ClearRegisteredBenchmarks();
    for (const XmlCase &xmlCase : xmlCases)
        benchmark::RegisterBenchmark(xmlCase.name, xmlBench, &xmlCase)
            ->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const double plain = reporter.cpuTimes.value(QStringLiteral("xml/plain_parse/iterations:3/real_time"));
    std::printf("\n");
    for (const XmlCase &xmlCase : xmlCases) {
        const double time = reporter.cpuTimes.value(QLatin1String(xmlCase.name) + QStringLiteral("/iterations:3/real_time"));
        if (&xmlCase != &xmlCases[0] && plain > 0)
            std::printf("%s: %.0f ms of CPU for 10 MB (target < 1000 ms), %.2f x the plain parse (target <= 2)\n",
                        xmlCase.name, time, time / plain);
    }

    runProgram(QStringLiteral(VELDRA_PGSERVER_SCRIPT), {QStringLiteral("stop"), state});
    return 0;
}
