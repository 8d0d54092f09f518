// The data service reading datasources.ini, whatever it holds: a file is either refused with a
// message naming what is wrong, or every data source it defines can be found by its provider and
// name, as a request names them.

#include "fuzzcheck.h"
#include "scratchfile.h"

#include <dataservice/datasourcecatalog.h>
#include <tessaly/error.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    dataservice::DataSourceCatalog catalog;
    try {
        catalog = dataservice::DataSourceCatalog::fromFile(writeScratch(QStringLiteral("datasources.ini"), data, size));
    } catch (const tessaly::Error &) {
        return 0;
    }
    for (const QString &provider : dataservice::DataSourceCatalog::providers()) {
        for (const QString &name : catalog.names(provider)) {
            try {
                const dataservice::DataSource &found = catalog.find(provider, name);
                FUZZ_CHECK(found.provider == provider && found.name == name, "a data source is found under another name");
            } catch (const tessaly::Error &) {
                FUZZ_CHECK(false, "a data source the catalog lists cannot be found");
            }
        }
    }
    return 0;
}
