#include "tessaly/modelhost.h"

#include "tessaly/error.h"
#include "tessaly/zetprimitivemodel.h"

#include <QScopeGuard>

namespace tessaly {

namespace {
// A model whose reports keep triggering each other would otherwise never return.
constexpr int maximumEchoDepth = 32;
} // namespace

bool ModelHost::hasSlot(const QString &name) const
{
    return m_positions.contains(name);
}

QList<ModelHost::Slot> ModelHost::declaredSlots() const
{
    QList<Slot> declared;
    declared.reserve(m_slots.size() - m_removed);
    for (const Entry &entry : m_slots) {
        if (!entry.removed)
            declared.append(entry.slot);
    }
    return declared;
}

QStringList ModelHost::slotNames() const
{
    QStringList names;
    for (const Slot &slot : declaredSlots())
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
    const auto known = m_positions.constFind(name);
    if (known != m_positions.cend()) {
        m_slots[*known].slot.description = description;
        return;
    }
    m_positions.insert(name, m_slots.size());
    m_slots.append({ { name, description, false }, false });
}

bool ModelHost::declareParameterSlot(const QString &name, const QString &description)
{
    if (hasSlot(name))
        return false;
    m_positions.insert(name, m_slots.size());
    m_slots.append({ { name, description, true }, false });
    return true;
}

void ModelHost::removeSlot(const QString &name)
{
    const auto known = m_positions.constFind(name);
    if (known == m_positions.cend())
        return;
    m_slots[*known].removed = true;
    m_positions.erase(known);
    if (++m_removed > m_slots.size() / 2)
        dropRemoved();
}

void ModelHost::dropRemoved()
{
    m_slots.removeIf([](const Entry &entry) { return entry.removed; });
    m_removed = 0;
    m_positions.clear();
    for (qsizetype i = 0; i < m_slots.size(); ++i)
        m_positions.insert(m_slots.at(i).slot.name, i);
}

void ModelHost::reportSlotChanged(const QString &name)
{
    m_reports.append(name);
    if (m_echoDepth >= maximumEchoDepth)
        throw Error(ErrorNumber::Fail, QStringLiteral("slot %1: change reports do not settle").arg(name));
    ++m_echoDepth;
    const auto leave = qScopeGuard([this] { --m_echoDepth; });
    if (m_listener)
        m_listener(name);
    m_model->zetPrimitiveModel_onSetSlotValue(name, m_model->zetPrimitiveModel_onGetSlotValue(name));
}

void ModelHost::reportChangeCode(int code)
{
    // Codes are reported on every write; the usual ones are spelled once.
    static const QStringList spelled = [] {
        QStringList codes;
        for (int code = 0; code < 32; ++code)
            codes.append(u'#' + QString::number(code));
        return codes;
    }();
    m_reports.append(code >= 0 && code < spelled.size() ? spelled.at(code) : u'#' + QString::number(code));
}

} // namespace tessaly
