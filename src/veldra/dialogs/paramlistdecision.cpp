#include "veldra/dialogs/paramlistdecision.h"

#include "veldra/dialogs/listselection.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/stringtable.h"

namespace veldra {

QList<ParamListRow> ParamListDecision::rows() const
{
    QList<ParamListRow> rows;
    if (!m_definition || !m_definition->parameters())
        return rows;
    const tessaly::NameMap &parameters = *m_definition->parameters();
    for (int i = 0; i < parameters.count(); ++i) {
        const ParamInfo *parameter = parameters.peekAt<ParamInfo>(i);
        if (!parameter)
            continue;
        rows.append({ parameter->paramName(), typeCaption(parameter->paramType()), parameter->title(),
                      parameter->paramName() == m_selectedName });
    }
    return rows;
}

int ParamListDecision::selectedRow(const QList<ParamListRow> &rows)
{
    for (int row = int(rows.size()) - 1; row >= 0; --row) {
        if (rows.at(row).selected)
            return row;
    }
    return -1;
}

QString ParamListDecision::typeCaption(qint32 paramType)
{
    switch (paramType) {
    case ParamInfo::TypedIn:
        return text(StringId::ParamListStringFieldType);
    case ParamInfo::ChosenFromList:
        return text(StringId::ParamListSelectedValueListType);
    default:
        return {};
    }
}

std::shared_ptr<ParamInfo> ParamListDecision::parameterToModify() const
{
    if (m_selectedName.isEmpty() || !m_definition || !m_definition->parameters())
        return nullptr;
    return m_definition->parameters()->object<ParamInfo>(m_selectedName);
}

void ParamListDecision::chooseParameter(const std::shared_ptr<ParamInfo> &parameter)
{
    if (!parameter || !m_definition || !m_definition->parameters())
        return;
    m_definition->parameters()->setObject(parameter->paramName(), parameter);
    m_selectedName = parameter->paramName();
}

void ParamListDecision::removeParameter(const QString &name)
{
    if (m_definition && m_definition->parameters())
        m_definition->parameters()->remove(name);
}

void ParamListDecision::deleteRow(int row)
{
    const QList<ParamListRow> all = rows();
    if (row < 0 || row >= all.size())
        return;
    QStringList names;
    for (const ParamListRow &each : all)
        names.append(each.name);
    m_selectedName = selectionAfterDelete(names, row);
    removeParameter(names.at(row));
}

} // namespace veldra
