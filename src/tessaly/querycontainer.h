#pragma once

#include "tessaly/tessaly_export.h"

#include <memory>

namespace tessaly {

class ServiceProxy;

// The role of a pad that holds queries: it hands the pads inside it the proxy to the data
// service they are to use.
class TESSALY_EXPORT QueryContainer
{
public:
    virtual ~QueryContainer();
    // nullptr when the container has no service to offer.
    virtual std::shared_ptr<ServiceProxy> dataServiceProxy() = 0;
};

} // namespace tessaly
