#include "clitext.h"
#include "command.h"
#include "errorrecordingproxy.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "tessaly/namemap.h"
#include "veldra/records/tableinfo.h"
#include "veldra/service/tsaccessor.h"

#include <QCommandLineParser>

namespace {

void printKeys(const tessaly::NameMap &map)
{
    for (int i = 0; i < map.count(); ++i)
        out() << map.key(i) << '\n';
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
    // The accessor's cache hangs off the structure, so the walk always starts there.
    std::shared_ptr<tessaly::NameMap> level = accessor.GetDatabaseStructure();
    if (level && path.size() == 1)
        level = accessor.GetDSNsAt(path.at(0));
    else if (level && path.size() == 2)
        level = accessor.GetCatalogsAt(path.at(0), path.at(1));
    else if (level && path.size() == 3)
        level = accessor.GetTablesAt(path.at(0), path.at(1), path.at(2));
    if (level && path.size() == 4) {
        const auto table = accessor.GetTableInfoAt(path.at(0), path.at(1), path.at(2), path.at(3));
        level = table ? table->columns() : nullptr;
    }
    if (!level) {
        // The accessor has shown the database error report; the service's reason goes with it.
        if (proxy->lastErrorNumber() != 0)
            err() << "veldra browse: " << serviceReason(proxy->lastErrorNumber(), proxy->lastErrorMessage()) << Qt::endl;
        else
            err() << "veldra browse: " << cliText(CliText::NothingFound).arg(path.isEmpty() ? QStringLiteral("/") : path.join(u'/'))
                  << Qt::endl;
        return exitcode::noResult;
    }
    printKeys(*level);
    return exitcode::ok;
}
