#pragma once

#include "tessaly/querycontainer.h"
#include "tessaly/tessaly_export.h"
#include "tessaly/zetpadsite.h"

namespace tessaly {

// The site of a pad that holds other pads but no component of its own: a host's document or
// a group. With a proxy it is a query container for everything inside it.
class TESSALY_EXPORT ContainerSite final : public zetPadSite, public QueryContainer
{
public:
    explicit ContainerSite(zetPadSite *parent = nullptr) : m_parent(parent) { }

    void setDataServiceProxy(std::shared_ptr<ServiceProxy> proxy) { m_proxy = std::move(proxy); }
    // A container that holds queries, with or without a service to give them.
    void setHoldsQueries(bool holds) { m_holdsQueries = holds; }

    zetPadSite *parentPad() override { return m_parent; }
    QueryContainer *queryContainer() override { return m_holdsQueries || m_proxy ? this : nullptr; }
    std::shared_ptr<ServiceProxy> dataServiceProxy() override { return m_proxy; }

private:
    zetPadSite *m_parent;
    std::shared_ptr<ServiceProxy> m_proxy;
    bool m_holdsQueries = false;
};

} // namespace tessaly
