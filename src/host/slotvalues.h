#pragma once

#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/records/sqlinfo.h"

namespace host {

// The objects a component's slots hold, read as a host reads them.
inline std::shared_ptr<veldra::SQLInfo> definitionOf(const tessaly::ModelHost &host)
{
    return tessaly::objectCast<veldra::SQLInfo>(tessaly::variant::heldObject(host.slotValue(QStringLiteral("SQLInfo"))));
}

inline std::shared_ptr<tessaly::NameMap> parameterValuesOf(const tessaly::ModelHost &host)
{
    return tessaly::objectCast<tessaly::NameMap>(
            tessaly::variant::heldObject(host.slotValue(QStringLiteral("parameters"))));
}

} // namespace host
