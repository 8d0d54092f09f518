#include "tessaly/modelhost.h"

#include "tessaly/error.h"
#include "tessaly/zetprimitivemodel.h"

#include <QScopeGuard>

namespace tessaly {

namespace {
// A model whose reports keep triggering each other would otherwise never return.
constexpr int maximumEchoDepth = 32;
} // namespace

qsizetype ModelHost::indexOf(const QString &name) const
{
    for (qsizetype i = 0; i < m_slots.size(); ++i) {
        if (m_slots.at(i).name == name)
            return i;
    }
    return -1;
}

bool ModelHost::hasSlot(const QString &name) const
{
    return indexOf(name) >= 0;
}

QStringList ModelHost::slotNames() const
{
    QStringList names;
    for (const Slot &slot : m_slots)
        names.append(slot.name);
    return names;
}

void ModelHost::setSlotValue(const QString &name, const QVariant &value)
{
    m_model->zetPrimitiveModel_onSetSlotValue(name, value);
}

QVariant ModelHost::slotValue(const QString &name) const
{
    return m_model->zetPrimitiveModel_onGetSlotValue(name);
}

void ModelHost::declareSlot(const QString &name, const QString &description)
{
    const qsizetype index = indexOf(name);
    if (index >= 0)
        m_slots[index].description = description;
    else
        m_slots.append({ name, description, false });
}

bool ModelHost::declareParameterSlot(const QString &name, const QString &description)
{
    if (hasSlot(name))
        return false;
    m_slots.append({ name, description, true });
    return true;
}

void ModelHost::removeSlot(const QString &name)
{
    const qsizetype index = indexOf(name);
    if (index >= 0)
        m_slots.removeAt(index);
}

void ModelHost::reportSlotChanged(const QString &name)
{
    if (m_echoDepth >= maximumEchoDepth)
        throw Error(ErrorNumber::Fail, QStringLiteral("slot %1: change reports do not settle").arg(name));
    ++m_echoDepth;
    const auto leave = qScopeGuard([this] { --m_echoDepth; });
    if (m_listener)
        m_listener(name);
    m_model->zetPrimitiveModel_onSetSlotValue(name, m_model->zetPrimitiveModel_onGetSlotValue(name));
}

void ModelHost::reportChangeCode(int)
{
    // The framework only passes change codes on to whoever watches the component.
}

} // namespace tessaly
