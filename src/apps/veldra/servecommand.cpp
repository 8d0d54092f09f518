#include "clitext.h"
#include "command.h"

#include "dataservice/backendpool.h"
#include "dataservice/dataservice.h"
#include "server/componentdirectory.h"
#include "host/livelists.h"
#include "host/sourcechoice.h"
#include "server/componentrunner.h"
#include "server/httpservice.h"
#include "server/serveoptions.h"
#include "server/workerpool.h"
#include "tessaly/error.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <csignal>
#include <thread>

#include <pthread.h>

namespace {

// Takes the command line over the configuration file; raises tessaly::Error for a bad value.
server::ServeOptions readOptions(const QCommandLineParser &parser, const QList<QCommandLineOption> &options)
{
    const auto &[config, listen, port, tokenFile, workers, accessLog, source] =
            std::tie(options[0], options[1], options[2], options[3], options[4], options[5], options[6]);
    server::ServeOptions serve;
    if (parser.isSet(config))
        serve.readFile(parser.value(config));
    if (!parser.positionalArguments().isEmpty())
        serve.directory = QFileInfo(parser.positionalArguments().constFirst()).absoluteFilePath();
    if (parser.isSet(listen))
        serve.address = parser.value(listen);
    if (parser.isSet(tokenFile))
        serve.tokenFile = QFileInfo(parser.value(tokenFile)).absoluteFilePath();
    if (parser.isSet(accessLog))
        serve.accessLog = parser.value(accessLog);
    if (parser.isSet(source))
        serve.source = parser.value(source);
    const auto number = [&](const QCommandLineOption &option, int low, int high, int *target) {
        if (!parser.isSet(option))
            return;
        bool ok = false;
        const int value = parser.value(option).toInt(&ok);
        if (!ok || value < low || value > high)
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                                 QStringLiteral("--%1 must be a whole number from %2 to %3, not \"%4\"")
                                         .arg(option.names().constFirst()).arg(low).arg(high).arg(parser.value(option)));
        *target = value;
    };
    number(port, 0, 65535, &serve.port);
    number(workers, 1, 256, &serve.workers);
    return serve;
}

} // namespace

int runServe(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::ServeDescription));
    parser.addPositionalArgument(QStringLiteral("DIR"), cliText(CliText::ServeDirArgument));
    const QList<QCommandLineOption> options = {
        { QStringLiteral("config"), cliText(CliText::ServeConfigOption), QStringLiteral("FILE") },
        { QStringLiteral("listen"), cliText(CliText::ServeListenOption), QStringLiteral("ADDRESS") },
        { QStringLiteral("port"), cliText(CliText::ServePortOption), QStringLiteral("PORT") },
        { QStringLiteral("token-file"), cliText(CliText::ServeTokenFileOption), QStringLiteral("FILE") },
        { QStringLiteral("workers"), cliText(CliText::ServeWorkersOption), QStringLiteral("N") },
        { QStringLiteral("access-log"), cliText(CliText::ServeAccessLogOption), QStringLiteral("FILE") },
        { QStringLiteral("source"), cliText(CliText::SourceOption), QStringLiteral("NAME") },
    };
    parser.addOptions(options);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("serve")))
        return *status;
    server::ServeOptions serve = readOptions(parser, options);
    if (parser.positionalArguments().size() > 1 || serve.directory.isEmpty()) {
        err() << "veldra serve: " << cliText(CliText::ServeUsage) << Qt::endl;
        return exitcode::badInput;
    }
    if (!QFileInfo(serve.directory).isDir())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess,
                             QStringLiteral("%1: no such folder").arg(QDir::toNativeSeparators(serve.directory)));
    const bool tokenGiven = !serve.tokenFile.isEmpty();
    if (!tokenGiven && !server::ServeOptions::isLoopback(serve.address)) {
        err() << "veldra serve: " << cliText(CliText::ServeNeedsToken).arg(serve.address) << Qt::endl;
        return exitcode::badInput;
    }
    if (!tokenGiven)
        serve.tokenFile = server::ServeOptions::defaultTokenFile();
    server::AccessToken token = server::AccessToken::fromFile(serve.tokenFile, !tokenGiven);

    // Every thread started from here on leaves SIGTERM and SIGINT to the one that waits for them.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGTERM);
    sigaddset(&stopSignals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    dataservice::DataService service; // a bad configuration is bad input, as for every command
    service.usePool(std::make_shared<dataservice::BackendPool>(&dataservice::DataService::open,
                                                               std::chrono::milliseconds(serve.queueWaitMs)));
    server::ComponentDirectory directory(serve.directory);
    const host::SourceChoice source = serve.source.isEmpty()
            ? host::SourceChoice() : host::SourceChoice::named(serve.source, service.dataSources());
    // One set of live lists for every worker: what one fetched, the others take from the cache.
    const auto lists = std::make_shared<host::LiveLists>(
            std::shared_ptr<const dataservice::DataService>(&service, [](const dataservice::DataService *) {}));
    server::WorkerPool workers(serve.workers, serve.queue, [&service, &source, &lists] {
        return std::make_unique<server::ComponentRunner>(service, source, lists);
    });
    server::HttpService http(serve, std::move(token), directory, workers);
    QString why;
    if (!http.bind(&why)) {
        err() << "veldra serve: " << why << Qt::endl;
        return exitcode::badInput;
    }
    const QString host = serve.address.contains(u':') ? u'[' + serve.address + u']' : serve.address;
    out() << "veldra serve: "
          << cliText(CliText::ServeListening).arg(directory.list().size()).arg(serve.directory,
                                                  QStringLiteral("http://%1:%2/").arg(host).arg(http.port()))
          << '\n' << "veldra serve: " << cliText(CliText::ServeTokenAt).arg(serve.tokenFile) << Qt::endl;

    std::thread stopper([&] {
        int signal = 0;
        sigwait(&stopSignals, &signal);
        err() << "veldra serve: " << cliText(CliText::ServeStopping).arg(serve.graceSeconds) << Qt::endl;
        http.drain(std::chrono::seconds(serve.graceSeconds));
    });
    http.run();
    // A worker still deep in a statement when the grace ran out is not waited for.
    err().flush();
    std::fflush(nullptr);
    std::_Exit(exitcode::ok);
}
