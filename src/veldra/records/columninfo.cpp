#include "veldra/records/columninfo.h"

#include "tessaly/variablefactory.h"
#include "veldra/records/recordio.h"

namespace veldra {

namespace {
const QString element = QStringLiteral("ColumnInfo");
[[maybe_unused]] const bool registered =
        tessaly::VariableFactory::add(element, [] { return std::make_shared<ColumnInfo>(); });
} // namespace

QString ColumnInfo::GetSelectionName() const
{
    if (m_columnType == TableColumn)
        return m_table + u'.' + m_express;
    return m_express;
}

bool ColumnInfo::zetVariable_Read(tessaly::TagStream &stream)
{
    return recordio::readRecord(stream, element, [&](const QString &child) {
        if (child == u"alias")
            stream.ReadValue(m_alias);
        else if (child == u"columnType")
            stream.ReadValue(m_columnType);
        else if (child == u"express")
            stream.ReadValue(m_express);
        else if (child == u"table")
            stream.ReadValue(m_table);
        else
            return false;
        return true;
    });
}

bool ColumnInfo::zetVariable_Write(tessaly::TagStream &stream)
{
    stream.WriteTag(element);
    recordio::writeChild(stream, QStringLiteral("alias"), m_alias);
    recordio::writeChild(stream, QStringLiteral("columnType"), m_columnType);
    recordio::writeChild(stream, QStringLiteral("express"), m_express);
    recordio::writeChild(stream, QStringLiteral("table"), m_table);
    stream.WriteEndTag();
    return true;
}

QString ColumnInfo::zetVariable_Print() const
{
    return u'[' + m_alias + u':' + m_express + u']';
}

} // namespace veldra
