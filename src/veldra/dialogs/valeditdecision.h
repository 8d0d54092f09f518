#pragma once

#include <QString>

namespace veldra {

// One selection value of a parameter: the value put into the query and the name shown for it.
struct SelectionValue
{
    QString value;
    QString name;
};

// One selection value as the value edit dialog holds it while the user types: OK may hand it
// on only with both the value and the name given.
class ValEditDecision
{
public:
    const QString &value() const { return m_value; }
    void setValue(const QString &value) { m_value = value; }
    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }

    bool okEnabled() const { return !m_value.isEmpty() && !m_name.isEmpty(); }
    SelectionValue result() const { return { m_value, m_name }; }

private:
    QString m_value;
    QString m_name;
};

} // namespace veldra
