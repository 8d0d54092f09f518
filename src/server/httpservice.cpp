#include "server/httpservice.h"

#include "server/answer.h"
#include "server/componentdirectory.h"
#include "server/componentrunner.h"
#include "server/workerpool.h"

#include "dataservice/errornumber.h"
#include "tessaly/error.h"

#include <httplib.h>

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <atomic>
#include <cstdio>
#include <set>

namespace server {

namespace {

using Clock = std::chrono::steady_clock;

// A connection taken when every connection thread is busy and the queue is full is still
// read, but only to be told to come back later.
thread_local bool t_overloaded = false;

// What the access log line of the request on this thread says besides the request itself.
struct RequestLog
{
    Clock::time_point start;
    std::shared_ptr<Answer> answer;
    qint64 bytes = 0;
};
thread_local RequestLog t_log;

// Connection threads: a fixed number, and a bounded queue of connections waiting for one.
// Beyond the queue, one more thread answers each connection with 503.
class ConnectionQueue : public httplib::TaskQueue
{
public:
    ConnectionQueue(int threads, int capacity) : m_capacity(size_t(capacity))
    {
        for (int i = 0; i < threads; ++i)
            m_threads.emplace_back([this] { work(m_queue, false); });
        m_threads.emplace_back([this] { work(m_overflow, true); });
    }

    void enqueue(std::function<void()> fn) override
    {
        {
            std::lock_guard lock(m_mutex);
            (m_queue.size() < m_capacity ? m_queue : m_overflow).push_back(std::move(fn));
        }
        m_wake.notify_all();
    }

    void shutdown() override
    {
        {
            std::lock_guard lock(m_mutex);
            m_stopping = true;
        }
        m_wake.notify_all();
        for (std::thread &thread : m_threads)
            thread.join();
        m_threads.clear();
    }

private:
    void work(std::deque<std::function<void()>> &queue, bool overloaded)
    {
        t_overloaded = overloaded;
        for (;;) {
            std::function<void()> fn;
            {
                std::unique_lock lock(m_mutex);
                m_wake.wait(lock, [&] { return m_stopping || !queue.empty(); });
                if (queue.empty())
                    return;
                fn = std::move(queue.front());
                queue.pop_front();
            }
            fn();
        }
    }

    size_t m_capacity;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_queue;
    std::deque<std::function<void()>> m_overflow;
    bool m_stopping = false;
    std::vector<std::thread> m_threads;
};

QByteArray asset(const QString &name)
{
    QFile file(QStringLiteral(":/veldra/web/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString fromStd(const std::string &text)
{
    return QString::fromUtf8(text.data(), qsizetype(text.size()));
}

void sendError(httplib::Response &res, const ApiError &error)
{
    res.status = error.status;
    for (const auto &[name, value] : error.headers)
        res.set_header(name.c_str(), value);
    if (error.status == 503 && !res.has_header("Retry-After"))
        res.set_header("Retry-After", "1");
    res.set_content(errorBody(error), "application/json");
}

} // namespace

class HttpService::Private
{
public:
    Private(const ServeOptions &options, AccessToken token, ComponentDirectory &directory, WorkerPool &workers)
        : options(options), token(std::move(token)), directory(directory), workers(workers)
    {
        page = asset(QStringLiteral("index.html")).toStdString();
        script = asset(QStringLiteral("app.js")).toStdString();
        style = asset(QStringLiteral("style.css")).toStdString();
    }

    void setUp();
    httplib::Server::HandlerResponse screen(const httplib::Request &req, httplib::Response &res);
    void answer(httplib::Response &res, std::function<void(ComponentRunner &, Answer &)> work);
    void log(const httplib::Request &req, const httplib::Response &res);
    std::shared_ptr<const ComponentFile> component(const httplib::Request &req, httplib::Response &res);

    const ServeOptions options;
    const AccessToken token;
    ComponentDirectory &directory;
    WorkerPool &workers;
    httplib::Server http;
    int port = 0;
    socket_t listening = INVALID_SOCKET;
    std::atomic<bool> draining{ false };
    std::mutex liveMutex;
    std::set<std::shared_ptr<Answer>> live;
    std::mutex logMutex;
    FILE *logFile = stderr;
    std::string page, script, style;
};

httplib::Server::HandlerResponse HttpService::Private::screen(const httplib::Request &req, httplib::Response &res)
{
    using Handled = httplib::Server::HandlerResponse;
    t_log = { Clock::now(), nullptr, 0 };
    const bool api = req.path.rfind("/api/", 0) == 0 || req.path == "/api";
    if (t_overloaded || draining) {
        res.set_header("Connection", "close");
        sendError(res, { 503, dataservice::ErrorNumber::Busy,
                         draining ? QStringLiteral("The service is shutting down.")
                                  : QStringLiteral("The service is answering as many connections as it takes; try again shortly.") });
        return Handled::Handled;
    }
    if (req.method != "GET" && req.method != "HEAD") {
        res.set_header("Allow", "GET, HEAD");
        sendError(res, { 405, tessaly::ErrorNumber::InvalidArgument,
                         QStringLiteral("%1 is not served: every resource here is read with GET.").arg(fromStd(req.method)) });
        return Handled::Handled;
    }
    if (!api)
        return Handled::Unhandled;
    if (req.has_param("token") || req.has_param("access_token")) {
        sendError(res, { 401, tessaly::ErrorNumber::InvalidArgument,
                         QStringLiteral("A token in the URL is refused (URLs end up in logs and histories): send it as "
                                        "the header \"Authorization: Bearer TOKEN\".") });
        return Handled::Handled;
    }
    if (!token.accepts(req.get_header_value("Authorization"))) {
        sendError(res, { 401, tessaly::ErrorNumber::InvalidArgument,
                         req.has_header("Authorization")
                                 ? QStringLiteral("The token is wrong.")
                                 : QStringLiteral("A token is needed: send the header \"Authorization: Bearer TOKEN\" "
                                                  "with the token from the token file that veldra serve named when it "
                                                  "started."),
                         { { "WWW-Authenticate", "Bearer realm=\"veldra\"" } } });
        return Handled::Handled;
    }
    return Handled::Unhandled;
}

void HttpService::Private::answer(httplib::Response &res, std::function<void(ComponentRunner &, Answer &)> work)
{
    auto answer = std::make_shared<Answer>();
    const auto wait = std::chrono::milliseconds(options.queueWaitMs);
    const bool taken = workers.submit([answer, work = std::move(work), wait](ComponentRunner &runner, Clock::duration queued) {
        if (queued > wait) {
            answer->fail({ 503, dataservice::ErrorNumber::Busy,
                           QStringLiteral("Every worker stayed busy for %1 ms; try again shortly.").arg(wait.count()) });
            return;
        }
        try {
            work(runner, *answer);
        } catch (const AnswerCancelled &) {
            // The client went away or the service stops: nobody reads the rest.
        } catch (const tessaly::Error &error) {
            answer->fail({ statusFor(error.number()), error.number(), error.message() });
        } catch (const std::exception &error) {
            answer->fail({ 500, tessaly::ErrorNumber::Fail, QString::fromLocal8Bit(error.what()) });
        }
        answer->finish();
    });
    if (!taken) {
        sendError(res, { 503, dataservice::ErrorNumber::Busy,
                         draining ? QStringLiteral("The service is shutting down.")
                                  : QStringLiteral("Too many requests are waiting; try again shortly.") });
        return;
    }
    t_log.answer = answer;
    const Answer::State state = answer->waitForHead();
    if (state == Answer::State::Failed) {
        sendError(res, answer->error());
        return;
    }
    for (const auto &[name, value] : answer->headers())
        res.set_header(name.c_str(), value);
    if (state == Answer::State::Complete) {
        std::string body;
        answer->take(body);
        t_log.bytes = qint64(body.size());
        res.set_content(std::move(body), answer->contentType().c_str());
        return;
    }
    {
        std::lock_guard lock(liveMutex);
        live.insert(answer);
    }
    res.set_chunked_content_provider(
            answer->contentType(),
            [answer](size_t, httplib::DataSink &sink) {
                std::string chunk;
                while (answer->take(chunk)) {
                    if (!sink.write(chunk.data(), chunk.size())) {
                        answer->cancel();
                        return false;
                    }
                    t_log.bytes += qint64(chunk.size());
                }
                if (!answer->ok())
                    return false; // cut: the client sees the chunked answer end early
                sink.done();
                return true;
            },
            [this, answer](bool) {
                // Whatever the worker still has to write goes nowhere now (a client gone, a
                // HEAD request that reads no body): it stops at its next write.
                answer->cancel();
                std::lock_guard lock(liveMutex);
                live.erase(answer);
            });
}

std::shared_ptr<const ComponentFile> HttpService::Private::component(const httplib::Request &req, httplib::Response &res)
{
    const QString name = fromStd(req.matches[1]);
    auto file = directory.find(name);
    if (!file)
        sendError(res, { 404, tessaly::ErrorNumber::InvalidArgument,
                         QStringLiteral("There is no component named \"%1\" in %2.").arg(name, directory.path()) });
    return file;
}

void HttpService::Private::log(const httplib::Request &req, const httplib::Response &res)
{
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - t_log.start).count();
    const qint64 bytes = t_log.bytes > 0 ? t_log.bytes : qint64(res.body.size());
    const qint64 rows = t_log.answer ? t_log.answer->rows() : -1;
    const QByteArray time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toUtf8();
    std::lock_guard lock(logMutex);
    std::fprintf(logFile, "%s %s %s %s %d %lldms rows=%s bytes=%lld\n", time.constData(), req.remote_addr.c_str(),
                 req.method.c_str(), req.path.c_str(), res.status, static_cast<long long>(ms),
                 rows >= 0 ? std::to_string(rows).c_str() : "-", static_cast<long long>(bytes));
    std::fflush(logFile);
    t_log.answer.reset();
}

void HttpService::Private::setUp()
{
    http.new_task_queue = [this] { return new ConnectionQueue(options.connections, options.connections); };
    http.set_tcp_nodelay(true);
    http.set_keep_alive_max_count(1000);
    http.set_keep_alive_timeout(options.keepAliveSeconds);
    http.set_read_timeout(options.readTimeoutSeconds, 0);
    http.set_write_timeout(options.readTimeoutSeconds, 0);
    http.set_payload_max_length(64 * 1024);
    http.set_pre_routing_handler([this](const httplib::Request &req, httplib::Response &res) { return screen(req, res); });
    http.set_logger([this](const httplib::Request &req, const httplib::Response &res) { log(req, res); });
    http.set_error_handler([](const httplib::Request &req, httplib::Response &res) {
        if (res.status == 404)
            sendError(res, { 404, tessaly::ErrorNumber::InvalidArgument,
                             QStringLiteral("Nothing is served at %1.").arg(fromStd(req.path)) });
    });
    http.set_default_headers({ { "X-Content-Type-Options", "nosniff" } });
    http.set_socket_options([this](socket_t socket) {
        const int on = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        listening = socket;
    });

    const auto servePage = [this](const httplib::Request &, httplib::Response &res) {
        res.set_header("Content-Security-Policy", "default-src 'self'; img-src 'self' data:; style-src 'self'");
        res.set_header("Cache-Control", "no-cache");
        res.set_content(page, "text/html; charset=utf-8");
    };
    http.Get("/", servePage);
    http.Get(R"(/components/([^/]+))", servePage);
    http.Get("/favicon.ico", [](const httplib::Request &, httplib::Response &res) { res.status = 204; });
    http.Get("/assets/app.js", [this](const httplib::Request &, httplib::Response &res) {
        res.set_header("Cache-Control", "no-cache");
        res.set_content(script, "text/javascript; charset=utf-8");
    });
    http.Get("/assets/style.css", [this](const httplib::Request &, httplib::Response &res) {
        res.set_header("Cache-Control", "no-cache");
        res.set_content(style, "text/css; charset=utf-8");
    });

    http.Get("/api/components", [this](const httplib::Request &, httplib::Response &res) {
        answer(res, [this](ComponentRunner &runner, Answer &answer) {
            QJsonArray list;
            for (const auto &file : directory.list()) {
                try {
                    list.append(runner.describe(*file));
                } catch (const tessaly::Error &error) {
                    list.append(QJsonObject{ { QStringLiteral("name"), file->name },
                                             { QStringLiteral("error"), error.message() } });
                }
            }
            const QByteArray body = QJsonDocument(QJsonObject{ { QStringLiteral("components"), list } }).toJson();
            answer.write(body.constData(), size_t(body.size()));
        });
    });
    http.Get(R"(/api/components/([^/]+))", [this](const httplib::Request &req, httplib::Response &res) {
        if (const auto file = component(req, res))
            answer(res, [file](ComponentRunner &runner, Answer &answer) {
                const QByteArray body = QJsonDocument(runner.describe(*file)).toJson();
                answer.write(body.constData(), size_t(body.size()));
            });
    });
    http.Get(R"(/api/components/([^/]+)/rows)", [this](const httplib::Request &req, httplib::Response &res) {
        const auto file = component(req, res);
        if (!file)
            return;
        ComponentRunner::Inputs inputs;
        std::string format = req.get_param_value("format");
        for (const auto &[name, value] : req.params) {
            if (name != "format")
                inputs.append({ fromStd(name), fromStd(value) });
        }
        if (format.empty())
            format = req.get_header_value("Accept").find("text/csv") != std::string::npos ? "csv" : "json";
        if (format != "csv" && format != "json") {
            sendError(res, { 400, tessaly::ErrorNumber::InvalidArgument,
                             QStringLiteral("format=%1: the formats are json and csv.").arg(fromStd(format)) });
            return;
        }
        const auto kind = format == "csv" ? ComponentRunner::Format::Csv : ComponentRunner::Format::Json;
        answer(res, [file, inputs, kind](ComponentRunner &runner, Answer &answer) { runner.rows(*file, inputs, kind, answer); });
    });
    // The inputs of a query string, but the names given, in their order.
    const auto inputsOf = [](const httplib::Request &req, std::initializer_list<const char *> skipped) {
        ComponentRunner::Inputs inputs;
        for (const auto &[name, value] : req.params) {
            if (std::find_if(skipped.begin(), skipped.end(), [&](const char *s) { return name == s; }) == skipped.end())
                inputs.append({ fromStd(name), fromStd(value) });
        }
        return inputs;
    };
    http.Get(R"(/api/components/([^/]+)/sql)", [this, inputsOf](const httplib::Request &req, httplib::Response &res) {
        const bool engine = req.get_param_value("engine") == "true";
        const ComponentRunner::Inputs inputs = inputsOf(req, { "engine" });
        if (const auto file = component(req, res))
            answer(res, [file, inputs, engine](ComponentRunner &runner, Answer &answer) {
                runner.statement(*file, inputs, engine, answer);
            });
    });
    http.Get(R"(/api/components/([^/]+)/lists/([^/]+))", [this, inputsOf](const httplib::Request &req, httplib::Response &res) {
        const QString reference = fromStd(req.matches[2]);
        const QString search = fromStd(req.get_param_value("search"));
        const ComponentRunner::Inputs inputs = inputsOf(req, { "search" });
        if (const auto file = component(req, res))
            answer(res, [file, reference, search, inputs](ComponentRunner &runner, Answer &answer) {
                answer.setContentType("application/json");
                runner.list(*file, reference, search, inputs, answer);
            });
    });
}

HttpService::HttpService(const ServeOptions &options, AccessToken token, ComponentDirectory &directory,
                         WorkerPool &workers)
    : d(std::make_unique<Private>(options, std::move(token), directory, workers))
{
    if (!options.accessLog.isEmpty()) {
        d->logFile = std::fopen(QFile::encodeName(options.accessLog).constData(), "ae");
        if (!d->logFile)
            throw tessaly::Error(tessaly::ErrorNumber::FileAccess,
                                 QStringLiteral("access log %1 cannot be opened for writing").arg(options.accessLog));
    }
    d->setUp();
}

HttpService::~HttpService()
{
    if (d->logFile != stderr)
        std::fclose(d->logFile);
}

bool HttpService::bind(QString *why)
{
    const std::string address = d->options.address.toStdString();
    if (d->options.port == 0)
        d->port = d->http.bind_to_any_port(address);
    else
        d->port = d->http.bind_to_port(address, d->options.port) ? d->options.port : -1;
    if (d->port > 0) {
        // The library listens with a backlog of 5: many clients connecting at once would wait
        // a second for the kernel to retry. Listening again on Linux only sets the backlog.
        if (d->listening != INVALID_SOCKET)
            ::listen(d->listening, SOMAXCONN);
        return true;
    }
    *why = QStringLiteral("cannot listen on %1 port %2 (in use, or not an address of this machine)")
                   .arg(d->options.address).arg(d->options.port);
    return false;
}

int HttpService::port() const
{
    return d->port;
}

void HttpService::run()
{
    d->http.listen_after_bind();
}

void HttpService::drain(std::chrono::seconds grace)
{
    d->draining = true;
    const auto deadline = Clock::now() + grace;
    d->workers.waitIdle(deadline);
    // Streams whose worker is done may still be on their way out: they get the rest of the grace.
    for (;;) {
        {
            std::lock_guard lock(d->liveMutex);
            if (d->live.empty() || Clock::now() >= deadline) {
                for (const auto &answer : d->live)
                    answer->cancel();
                break;
            }
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    d->http.stop();
}

} // namespace server
