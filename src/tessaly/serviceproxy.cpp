#include "tessaly/serviceproxy.h"

namespace tessaly {

ServiceProxy::~ServiceProxy() = default;

} // namespace tessaly
