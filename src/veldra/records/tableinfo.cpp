#include "veldra/records/tableinfo.h"

#include "tessaly/variablefactory.h"
#include "veldra/records/recordio.h"

namespace veldra {

namespace {
const QString element = QStringLiteral("TableInfo");
[[maybe_unused]] const bool registered =
        tessaly::VariableFactory::add(element, [] { return std::make_shared<TableInfo>(); });
} // namespace

std::shared_ptr<TableInfo> TableInfo::copy() const
{
    auto result = std::make_shared<TableInfo>();
    result->m_dbInfo = m_dbInfo;
    result->m_tableName = m_tableName;
    result->m_columns = m_columns ? m_columns->copy() : nullptr;
    return result;
}

bool TableInfo::zetVariable_Read(tessaly::TagStream &stream)
{
    return recordio::readRecord(stream, element, [&](const QString &child) {
        if (child == u"tableName")
            stream.ReadValue(m_tableName);
        else if (child == u"columns")
            recordio::readObject(stream, m_columns);
        else
            return false;
        return true;
    });
}

bool TableInfo::zetVariable_Write(tessaly::TagStream &stream)
{
    stream.WriteTag(element);
    recordio::writeChild(stream, QStringLiteral("tableName"), m_tableName);
    recordio::writeChild(stream, QStringLiteral("columns"), tessaly::ObjectRef(m_columns));
    stream.WriteEndTag();
    return true;
}

QString TableInfo::zetVariable_Print() const
{
    return u'[' + m_tableName + u']';
}

} // namespace veldra
