#include "clitext.h"
#include "command.h"
#include "errorrecordingproxy.h"

#include "dataservice/dataservice.h"
#include "dataservice/datasourcecatalog.h"
#include "dataservice/localserviceproxy.h"
#include "tessaly/namemap.h"
#include "veldra/service/tsaccessor.h"

#include <QCommandLineParser>

namespace {

void printKeys(const tessaly::NameMap &map)
{
    for (const QString &key : map.keys())
        out() << key << '\n';
}

} // namespace

int runBrowse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::BrowseDescription));
    parser.addPositionalArgument(QStringLiteral("PROVIDER"), cliText(CliText::ProviderArgument), QStringLiteral("[PROVIDER"));
    parser.addPositionalArgument(QStringLiteral("DSN"), cliText(CliText::DsnArgument), QStringLiteral("[DSN"));
    parser.addPositionalArgument(QStringLiteral("CATALOG"), cliText(CliText::CatalogArgument), QStringLiteral("[CATALOG"));
    parser.addPositionalArgument(QStringLiteral("TABLE"), cliText(CliText::TableArgument), QStringLiteral("[TABLE]]]]"));
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("browse")))
        return *status;
    const QStringList path = parser.positionalArguments();
    if (path.size() > 4) {
        err() << "veldra browse: " << cliText(CliText::BrowseUsage) << Qt::endl;
        return exitcode::badInput;
    }

    // The data sources are read first: a bad configuration is bad input, as for every command.
    const auto service = std::make_shared<dataservice::DataService>();
    const auto proxy = std::make_shared<ErrorRecordingProxy>(std::make_shared<dataservice::LocalServiceProxy>(service));
    veldra::TSAccessor accessor;
    accessor.setTsProxy(proxy);
    // One request, for the level asked: only the data source named is connected to, and a
    // failure is its own.
    const std::shared_ptr<tessaly::NameMap> level
            = accessor.QueryNavigation(path.value(0), path.value(1), path.value(2), path.value(3));
    if (!level || (level->isEmpty() && path.size() == 4)) {
        // The accessor has shown the database error report; the service's reason goes with it.
        if (proxy->lastErrorNumber() != 0)
            err() << "veldra browse: " << serviceReason(proxy->lastErrorNumber(), proxy->lastErrorMessage()) << Qt::endl;
        else
            err() << "veldra browse: " << cliText(CliText::NothingFound).arg(path.isEmpty() ? QStringLiteral("/") : path.join(u'/'))
                  << Qt::endl;
        return exitcode::noResult;
    }
    if (level->isEmpty() && path.size() == 1) {
        err() << "veldra browse: "
              << cliText(CliText::NoDataSourceConfigured)
                         .arg(path.constFirst(), dataservice::DataSourceCatalog::configurationPath())
              << Qt::endl;
        return exitcode::noResult;
    }
    printKeys(*level);
    return exitcode::ok;
}
