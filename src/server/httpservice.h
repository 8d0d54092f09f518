#pragma once

#include "server/accesstoken.h"
#include "server/serveoptions.h"

#include <QString>

#include <chrono>
#include <memory>

namespace server {

class ComponentDirectory;
class WorkerPool;

// The HTTP side of `veldra serve`: the API under /api (a Bearer token required), the web page
// at / and its assets, an access log line per request. Connections are served by a bounded
// number of threads; the work of each request goes to the worker pool. See docs/http.md.
class HttpService
{
public:
    HttpService(const ServeOptions &options, AccessToken token, ComponentDirectory &directory, WorkerPool &workers);
    ~HttpService();
    HttpService(const HttpService &) = delete;
    HttpService &operator=(const HttpService &) = delete;

    // Takes the address and port; false, with why, when they cannot be had.
    bool bind(QString *why);
    int port() const;
    // Serves until stop() or drain() ends it.
    void run();
    // Refuses new requests (503), lets answers in flight finish within grace, cuts those that
    // do not, and stops serving.
    void drain(std::chrono::seconds grace);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace server
