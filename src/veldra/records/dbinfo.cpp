#include "veldra/records/dbinfo.h"

#include "tessaly/variablefactory.h"
#include "veldra/records/recordio.h"

namespace veldra {

namespace {
const QString element = QStringLiteral("DBInfo");
[[maybe_unused]] const bool registered =
        tessaly::VariableFactory::add(element, [] { return std::make_shared<dbInfo>(); });
} // namespace

bool dbInfo::zetVariable_Read(tessaly::TagStream &stream)
{
    return recordio::readRecord(stream, element, [&](const QString &child) {
        if (child == u"provider")
            stream.ReadValue(m_provider);
        else if (child == u"dsn")
            stream.ReadValue(m_dsn);
        else if (child == u"catalog")
            stream.ReadValue(m_catalog);
        else
            return false;
        return true;
    });
}

bool dbInfo::zetVariable_Write(tessaly::TagStream &stream)
{
    stream.WriteTag(element);
    recordio::writeChild(stream, QStringLiteral("provider"), m_provider);
    recordio::writeChild(stream, QStringLiteral("dsn"), m_dsn);
    recordio::writeChild(stream, QStringLiteral("catalog"), m_catalog);
    stream.WriteEndTag();
    return true;
}

QString dbInfo::zetVariable_Print() const
{
    return u'[' + m_provider + u':' + m_dsn + u':' + m_catalog + u']';
}

} // namespace veldra
