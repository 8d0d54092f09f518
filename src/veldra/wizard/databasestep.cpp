#include "veldra/wizard/databasestep.h"

#include "tessaly/namemap.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/extratext.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/wizardstate.h"

namespace veldra {

namespace {
QStringList keys(const std::shared_ptr<tessaly::NameMap> &map)
{
    return map ? map->keys() : QStringList();
}
} // namespace

void DatabaseStep::initialize()
{
    fillProviderList();
    fillDataSourceList();
    fillCatalogList();
}

bool DatabaseStep::isComplete() const
{
    return !m_provider.isEmpty() && !m_dsn.isEmpty() && !m_catalog.isEmpty();
}

StepChoices DatabaseStep::providers() const
{
    return choices(m_providers, m_provider);
}

StepChoices DatabaseStep::dataSources() const
{
    return choices(m_dataSources, m_dsn);
}

StepChoices DatabaseStep::catalogs() const
{
    return choices(m_catalogs, m_catalog);
}

QString DatabaseStep::unavailableReason(const QString &entry) const
{
    const qsizetype index = m_dataSources.indexOf(entry);
    if (index < 0 || m_dataSourceNames.at(index) == entry)
        return {};
    const QString &name = m_dataSourceNames.at(index);
    QString reason = m_state.accessor()->failureReason(m_provider, name);
    if (reason.isEmpty())
        reason = extraText(ExtraText::NoCatalogsListed);
    return extraText(ExtraText::UnavailableReason).arg(name, reason);
}

bool DatabaseStep::chooseProvider(const QString &entry)
{
    if (entry == m_provider)
        return false;
    m_provider = entry;
    fillDataSourceList();
    fillCatalogList();
    return true;
}

bool DatabaseStep::chooseDataSource(const QString &entry)
{
    if (entry == m_dsn)
        return false;
    m_dsn = entry;
    fillCatalogList();
    return true;
}

void DatabaseStep::chooseCatalog(const QString &entry)
{
    m_catalog = entry;
}

StepChoices DatabaseStep::choices(const QStringList &entries, const QString &chosen)
{
    // An empty choice selects nothing, even if the service lists an empty name.
    return { entries, chosen.isEmpty() ? -1 : int(entries.indexOf(chosen)) };
}

void DatabaseStep::fillProviderList()
{
    TSAccessor *accessor = m_state.accessor();
    m_providers = accessor ? keys(accessor->GetDatabaseStructure()) : QStringList();
    const QString &wanted = m_state.definition()->dbInfo()->provider();
    m_provider = m_providers.contains(wanted) ? wanted : QString();
}

void DatabaseStep::fillDataSourceList()
{
    m_dataSources.clear();
    m_dataSourceNames.clear();
    // Only what the structure listed is asked for: anything else would be a request bound to
    // fail, and a failure the person has to click away.
    if (m_providers.contains(m_provider)) {
        TSAccessor &accessor = *m_state.accessor();
        m_dataSourceNames = keys(accessor.GetDSNsAt(m_provider));
        const QString marker = text(StringId::UnavailableMarker);
        for (const QString &name : std::as_const(m_dataSourceNames))
            m_dataSources.append(accessor.GetCatalogsAt(m_provider, name) ? name : name + marker);
    }
    const qsizetype wanted = m_dataSourceNames.indexOf(m_state.definition()->dbInfo()->dsn());
    m_dsn = wanted >= 0 ? m_dataSources.at(wanted) : QString();
}

void DatabaseStep::fillCatalogList()
{
    // A marked data source is not among the names, so it has no catalogs without asking.
    m_catalogs = m_dataSourceNames.contains(m_dsn)
            ? keys(m_state.accessor()->GetCatalogsAt(m_provider, m_dsn))
            : QStringList();
    const QString &wanted = m_state.definition()->dbInfo()->catalog();
    m_catalog = m_catalogs.contains(wanted) ? wanted : QString();
}

} // namespace veldra
