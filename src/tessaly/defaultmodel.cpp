#include "tessaly/defaultmodel.h"

#include "tessaly/zetmodelsite.h"

namespace tessaly {

zetPrimitiveModel::~zetPrimitiveModel() = default;
zetModelSite::~zetModelSite() = default;

bool DefaultModel::zetPrimitiveModel_SetModel(const std::shared_ptr<zetModelSite> &site)
{
    m_site = site;
    return true;
}

bool DefaultModel::zetPrimitiveModel_onInitialize(int)
{
    return true;
}

bool DefaultModel::zetPrimitiveModel_onCleanup()
{
    return true;
}

bool DefaultModel::zetPrimitiveModel_onCopy(zetPrimitiveModel &)
{
    return true;
}

QVariant DefaultModel::zetPrimitiveModel_onGetSlotValue(const QString &)
{
    return {};
}

bool DefaultModel::zetPrimitiveModel_onSetSlotValue(const QString &, const QVariant &)
{
    return false;
}

bool DefaultModel::zetPrimitiveModel_onSave(TagStream &)
{
    return true;
}

bool DefaultModel::zetPrimitiveModel_onLoad(TagStream &)
{
    return true;
}

} // namespace tessaly
