#include "host/sourcechoice.h"

#include "host/hosttext.h"

#include "dataservice/datasourcecatalog.h"
#include "dataservice/errornumber.h"
#include "tessaly/error.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/sqlinfo.h"

#include <QDomDocument>

namespace host {

RunTarget targetOf(const veldra::SQLInfo &definition)
{
    const auto &info = definition.dbInfo();
    if (!info)
        return {};
    return { info->provider(), info->dsn(), info->catalog() };
}

SourceChoice SourceChoice::named(const QString &name, const dataservice::DataSourceCatalog &dataSources)
{
    QStringList names;
    for (const QString &provider : dataservice::DataSourceCatalog::providers()) {
        for (const QString &candidate : dataSources.names(provider)) {
            names.append(candidate);
            if (candidate != name)
                continue;
            SourceChoice choice;
            const dataservice::DataSource &source = dataSources.find(provider, name);
            choice.m_name = name;
            choice.m_provider = provider;
            choice.m_catalogMap = source.catalogMap;
            return choice;
        }
    }
    throw tessaly::Error(dataservice::ErrorNumber::UnknownDataSource,
                         hostText(HostText::NoSuchSource).arg(name, names.join(hostText(HostText::ListSeparator))));
}

RunTarget SourceChoice::target(const RunTarget &named) const
{
    if (!isSet())
        return named;
    RunTarget target{ m_provider, m_name, named.catalog };
    for (const auto &[from, to] : m_catalogMap) {
        if (from == named.catalog)
            target.catalog = to;
    }
    return target;
}

QByteArray SourceChoice::retarget(const QByteArray &request) const
{
    if (!isSet())
        return request;
    QDomDocument document;
    if (!document.setContent(request))
        return request;
    QDomElement target = document.documentElement().firstChildElement(QStringLiteral("get"))
                                 .firstChildElement(QStringLiteral("target"));
    if (target.isNull())
        return request;
    const auto text = [&](const QString &name) { return target.firstChildElement(name).text(); };
    const RunTarget mapped = this->target({ text(QStringLiteral("provider")), text(QStringLiteral("dsn")),
                                            text(QStringLiteral("catalog")) });
    const auto replace = [&](const QString &name, const QString &value) {
        QDomElement element = target.firstChildElement(name);
        if (element.isNull())
            element = target.appendChild(document.createElement(name)).toElement();
        while (element.hasChildNodes())
            element.removeChild(element.firstChild());
        element.appendChild(document.createTextNode(value));
    };
    replace(QStringLiteral("provider"), mapped.provider);
    replace(QStringLiteral("dsn"), mapped.dsn);
    replace(QStringLiteral("catalog"), mapped.catalog);
    return document.toByteArray(-1);
}

} // namespace host
