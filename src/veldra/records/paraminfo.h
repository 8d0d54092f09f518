#pragma once

#include "tessaly/namemap.h"
#include "veldra/records/record.h"
#include "veldra/veldra_export.h"

namespace veldra {

// One named parameter of the condition. Its selection values (key -> display text) matter,
// and are copied and saved, only for a parameter chosen from a list.
class VELDRA_EXPORT ParamInfo final : public Record<ParamInfo>
{
public:
    static constexpr const char *classSuffix = ".ParamInfo";
    static constexpr StringId typeName = StringId::ParamInfoTypeName;

    static constexpr qint32 TypedIn = 1;
    static constexpr qint32 ChosenFromList = 2;

    qint32 paramType() const { return m_paramType; }
    void setParamType(qint32 paramType) { m_paramType = paramType; }
    const std::shared_ptr<tessaly::NameMap> &selections() const { return m_selections; }
    void setSelections(const std::shared_ptr<tessaly::NameMap> &selections) { m_selections = selections; }
    const QString &paramName() const { return m_paramName; }
    void setParamName(const QString &paramName) { m_paramName = paramName; }
    const QString &title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }

    std::shared_ptr<ParamInfo> copy() const;

    bool zetVariable_Read(tessaly::TagStream &stream) override;
    bool zetVariable_Write(tessaly::TagStream &stream) override;
    QString zetVariable_Print() const override;

private:
    qint32 m_paramType = TypedIn;
    std::shared_ptr<tessaly::NameMap> m_selections = std::make_shared<tessaly::NameMap>();
    QString m_paramName;
    QString m_title;
};

} // namespace veldra
