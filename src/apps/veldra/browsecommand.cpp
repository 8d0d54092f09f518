#include "command.h"

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
    parser.setApplicationDescription(QStringLiteral(
            "Lists the level below what is given: providers, a provider's data sources, a data source's\n"
            "catalogs, a catalog's tables, or a table's columns. A failed request prints the database\n"
            "error report on standard error and exits with status 1."));
    parser.addPositionalArgument(QStringLiteral("PROVIDER"), QStringLiteral("e.g. SQLite"), QStringLiteral("[PROVIDER"));
    parser.addPositionalArgument(QStringLiteral("DSN"), QStringLiteral("a data source, e.g. Sample"), QStringLiteral("[DSN"));
    parser.addPositionalArgument(QStringLiteral("CATALOG"), QStringLiteral("e.g. main"), QStringLiteral("[CATALOG"));
    parser.addPositionalArgument(QStringLiteral("TABLE"), QStringLiteral("a table or view"), QStringLiteral("[TABLE]]]]"));
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("browse")))
        return *status;
    const QStringList path = parser.positionalArguments();
    if (path.size() > 4) {
        err() << "veldra browse: at most PROVIDER DSN CATALOG TABLE (see veldra browse --help)" << Qt::endl;
        return exitcode::badInput;
    }

    veldra::TSAccessor accessor;
    accessor.setTsProxy(std::make_shared<dataservice::LocalServiceProxy>(std::make_shared<dataservice::DataService>()));
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
        err() << "veldra browse: nothing found under " << (path.isEmpty() ? QStringLiteral("the service") : path.join(u'/'))
              << Qt::endl;
        return exitcode::noResult;
    }
    printKeys(*level);
    return exitcode::ok;
}
