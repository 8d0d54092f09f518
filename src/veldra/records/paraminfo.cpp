#include "veldra/records/paraminfo.h"

#include "tessaly/variablefactory.h"
#include "veldra/records/recordio.h"

namespace veldra {

namespace {
const QString element = QStringLiteral("ParamInfo");
[[maybe_unused]] const bool registered =
        tessaly::VariableFactory::add(element, [] { return std::make_shared<ParamInfo>(); });
} // namespace

std::shared_ptr<ParamInfo> ParamInfo::copy() const
{
    auto result = std::make_shared<ParamInfo>();
    result->m_paramType = m_paramType;
    result->m_paramName = m_paramName;
    result->m_title = m_title;
    if (m_paramType == ChosenFromList && m_selections)
        result->m_selections = m_selections->copy();
    return result;
}

bool ParamInfo::zetVariable_Read(tessaly::TagStream &stream)
{
    return recordio::readRecord(stream, element, [&](const QString &child) {
        if (child == u"paramType")
            stream.ReadValue(m_paramType);
        else if (child == u"paramName")
            stream.ReadValue(m_paramName);
        else if (child == u"title")
            stream.ReadValue(m_title);
        else if (child == u"selections")
            recordio::readObject(stream, m_selections);
        else
            return false;
        return true;
    });
}

bool ParamInfo::zetVariable_Write(tessaly::TagStream &stream)
{
    stream.WriteTag(element);
    recordio::writeChild(stream, QStringLiteral("paramType"), m_paramType);
    recordio::writeChild(stream, QStringLiteral("paramName"), m_paramName);
    recordio::writeChild(stream, QStringLiteral("title"), m_title);
    if (m_paramType == ChosenFromList)
        recordio::writeChild(stream, QStringLiteral("selections"), tessaly::ObjectRef(m_selections));
    stream.WriteEndTag();
    return true;
}

QString ParamInfo::zetVariable_Print() const
{
    return u'[' + m_paramName + u':' + m_title + u']';
}

} // namespace veldra
