#include "veldra/dialogs/parameditdecision.h"

#include "tessaly/namemap.h"
#include "veldra/dialogs/listselection.h"
#include "veldra/dialogs/sqlliteral.h"
#include "veldra/records/paraminfo.h"

namespace veldra {

namespace {
const QString prefix = QStringLiteral("@@@");
} // namespace

void ParamEditDecision::setParameter(const std::shared_ptr<ParamInfo> &parameter)
{
    m_parameter = parameter;
    m_selectedValue.clear();
}

QString ParamEditDecision::withParameterPrefix(const QString &text)
{
    return text.startsWith(prefix) ? text : prefix + text;
}

QString ParamEditDecision::editName(const QString &text)
{
    const QString name = withParameterPrefix(text);
    if (m_parameter)
        m_parameter->setParamName(name);
    return name;
}

void ParamEditDecision::editTitle(const QString &text)
{
    if (m_parameter)
        m_parameter->setTitle(text);
}

int ParamEditDecision::typeOption() const
{
    if (!m_parameter)
        return -1;
    switch (m_parameter->paramType()) {
    case ParamInfo::TypedIn:
        return StringFieldOption;
    case ParamInfo::ChosenFromList:
        return ValueListOption;
    default:
        return -1;
    }
}

void ParamEditDecision::chooseTypeOption(int option)
{
    if (!m_parameter)
        return;
    if (option == StringFieldOption)
        m_parameter->setParamType(ParamInfo::TypedIn);
    else if (option == ValueListOption)
        m_parameter->setParamType(ParamInfo::ChosenFromList);
}

bool ParamEditDecision::valueAreaEnabled() const
{
    return m_parameter && m_parameter->paramType() == ParamInfo::ChosenFromList;
}

bool ParamEditDecision::isValid() const
{
    if (!m_parameter || m_parameter->paramName().isEmpty() || m_parameter->title().isEmpty())
        return false;
    if (m_parameter->paramType() != ParamInfo::ChosenFromList)
        return true;
    return m_parameter->selections() && !m_parameter->selections()->isEmpty();
}

QList<SelectionValueRow> ParamEditDecision::valueRows() const
{
    QList<SelectionValueRow> rows;
    if (!m_parameter || !m_parameter->selections())
        return rows;
    const tessaly::NameMap &values = *m_parameter->selections();
    for (int i = 0; i < values.count(); ++i) {
        const QString value = values.key(i);
        rows.append({ value, values.item(i).toString(), value == m_selectedValue });
    }
    return rows;
}

void ParamEditDecision::storeValue(const QString &value, const QString &name)
{
    if (!m_parameter)
        return;
    if (!m_parameter->selections())
        m_parameter->setSelections(std::make_shared<tessaly::NameMap>());
    m_parameter->selections()->setText(value, name);
    m_selectedValue = value;
}

void ParamEditDecision::modifyValue(const QString &oldValue, const QString &value, const QString &name)
{
    if (value == oldValue || !m_parameter || !m_parameter->selections() || !m_parameter->selections()->contains(oldValue))
        return storeValue(value, name);
    const tessaly::NameMap &values = *m_parameter->selections();
    QList<std::pair<QString, QVariant>> pairs;
    // Another row of the new value goes, whether it stood before or after the edited one.
    for (int i = 0; i < values.count(); ++i) {
        if (values.key(i) == oldValue)
            pairs.append({ value, name });
        else if (values.key(i) != value)
            pairs.append({ values.key(i), values.item(i) });
    }
    rebuildValues(pairs);
    m_selectedValue = value;
}

QStringList ParamEditDecision::nonLiteralValues() const
{
    QStringList values;
    if (!m_parameter || !m_parameter->selections())
        return values;
    const tessaly::NameMap &held = *m_parameter->selections();
    for (int i = 0; i < held.count(); ++i) {
        if (!isSqlLiteral(held.key(i)))
            values.append(held.key(i));
    }
    return values;
}

bool ParamEditDecision::quoteValues()
{
    if (nonLiteralValues().isEmpty())
        return false;
    const tessaly::NameMap &values = *m_parameter->selections();
    QList<std::pair<QString, QVariant>> pairs;
    for (int i = 0; i < values.count(); ++i)
        pairs.append({ quotedValue(values.key(i)), values.item(i) });
    rebuildValues(pairs);
    if (!m_selectedValue.isEmpty())
        m_selectedValue = quotedValue(m_selectedValue);
    return true;
}

void ParamEditDecision::rebuildValues(const QList<std::pair<QString, QVariant>> &pairs)
{
    tessaly::NameMap &values = *m_parameter->selections();
    values.clear();
    for (const auto &[value, name] : pairs) {
        if (!values.contains(value))
            values.set(value, name);
    }
}

void ParamEditDecision::takeValues(const std::shared_ptr<tessaly::NameMap> &values)
{
    if (m_parameter && values)
        m_parameter->setSelections(values);
}

void ParamEditDecision::removeValue(const QString &value)
{
    if (m_parameter && m_parameter->selections())
        m_parameter->selections()->remove(value);
}

void ParamEditDecision::deleteRow(int row)
{
    const QList<SelectionValueRow> rows = valueRows();
    if (row < 0 || row >= rows.size())
        return;
    QStringList values;
    for (const SelectionValueRow &each : rows)
        values.append(each.value);
    m_selectedValue = selectionAfterDelete(values, row);
    removeValue(values.at(row));
}

std::shared_ptr<ParamInfo> ParamEditDecision::committedCopy() const
{
    return m_parameter ? m_parameter->copy() : nullptr;
}

} // namespace veldra
