#pragma once

// The real data service on the bundled sample database, in process, with nothing of the user's
// configuration, behind the scripted service (which keeps the requests and can refuse some).
// Tests that include it link dataservice.

#include "structureservice.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"

namespace testservice {

inline std::shared_ptr<ScriptedService> sampleService()
{
    auto service = std::make_shared<ScriptedService>();
    service->fallback = std::make_shared<dataservice::LocalServiceProxy>(std::make_shared<const dataservice::DataService>(
            dataservice::DataSourceCatalog({ dataservice::DataSourceCatalog::sampleDataSource() })));
    return service;
}

} // namespace testservice
