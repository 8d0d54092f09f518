#pragma once

#include <QString>

namespace server {

// How `veldra serve` runs: from serve.ini (see packaging/serve.ini and docs/http.md), then the
// command line.
struct ServeOptions
{
    static constexpr int DefaultPort = 8790;

    QString directory;                            // the component documents served
    QString address = QStringLiteral("127.0.0.1");
    int port = DefaultPort;                       // 0: any free port (tests)
    QString tokenFile;                            // empty: the default file, created when missing
    int workers = 8;                              // requests answered at once
    int queue = 64;                               // requests waiting for a worker; more get 503
    int connections = 128;                        // connections served at once
    int readTimeoutSeconds = 10;                  // each read of a request's head
    int keepAliveSeconds = 5;                     // an idle connection waits this long for its next request
    int queueWaitMs = 10000;                      // a request waits this long for a worker or a connection
    int graceSeconds = 10;                        // answers in flight may finish this long after SIGTERM
    QString accessLog;                            // empty: standard error
    QString source;                               // the data source the components run on; empty: their own

    // Reads the keys of serve.ini into the options; raises tessaly::Error naming the file, key
    // and value that are wrong.
    void readFile(const QString &iniPath);

    // Whether address is a loopback address (127.0.0.0/8, ::1, localhost).
    static bool isLoopback(const QString &address);
    // The token file used when none is given: $XDG_CONFIG_HOME/veldra/serve.token.
    static QString defaultTokenFile();
};

} // namespace server
