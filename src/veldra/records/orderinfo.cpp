#include "veldra/records/orderinfo.h"

#include "tessaly/variablefactory.h"
#include "veldra/records/recordio.h"

namespace veldra {

namespace {
const QString element = QStringLiteral("OrderInfo");
[[maybe_unused]] const bool registered =
        tessaly::VariableFactory::add(element, [] { return std::make_shared<OrderInfo>(); });
} // namespace

bool OrderInfo::zetVariable_Read(tessaly::TagStream &stream)
{
    return recordio::readRecord(stream, element, [&](const QString &child) {
        if (child == u"column")
            stream.ReadValue(m_column);
        else if (child == u"ascendant")
            stream.ReadValue(m_ascendant);
        else
            return false;
        return true;
    });
}

bool OrderInfo::zetVariable_Write(tessaly::TagStream &stream)
{
    stream.WriteTag(element);
    recordio::writeChild(stream, QStringLiteral("column"), m_column);
    recordio::writeChild(stream, QStringLiteral("ascendant"), m_ascendant);
    stream.WriteEndTag();
    return true;
}

QString OrderInfo::zetVariable_Print() const
{
    return u'[' + m_column + u']';
}

} // namespace veldra
