#pragma once

#include "tessaly/tessaly_export.h"
#include "tessaly/zetmodelsite.h"

#include <QHash>
#include <QList>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace tessaly {

class zetPrimitiveModel;

// The host side of a model site. It records the slots a model declares and the changes it
// reports, and, as the framework does, answers a slot-changed report by writing the slot's
// value back into the model, so the model's re-entrancy guards are exercised for real.
class TESSALY_EXPORT ModelHost final : public zetModelSite
{
public:
    struct Slot
    {
        QString name;
        QString description;
        bool parameter = false;
    };

    explicit ModelHost(zetPrimitiveModel *model) : m_model(model) { }

    // The framework writing and reading a slot of the model.
    void setSlotValue(const QString &name, const QVariant &value);
    QVariant slotValue(const QString &name) const;

    // In the order they were declared.
    QList<Slot> declaredSlots() const;
    bool hasSlot(const QString &name) const;
    QStringList slotNames() const;

    // Every report in order: a slot name, or the change code as "#code".
    const QStringList &reports() const { return m_reports; }
    void clearReports() { m_reports.clear(); }

    // Told of every slot the model reports changed, before the framework's echo write: how a
    // host keeps what shows a slot (a pad's children) current.
    void setSlotListener(std::function<void(const QString &)> listener) { m_listener = std::move(listener); }
    // Tells the listener that a slot changed without writing it again: for a host that set many
    // slots at once through a collection slot (every parameter value in one "parameters").
    void notifySlotChanged(const QString &name) const
    {
        if (m_listener)
            m_listener(name);
    }

    void declareSlot(const QString &name, const QString &description) override;
    bool declareParameterSlot(const QString &name, const QString &description) override;
    void removeSlot(const QString &name) override;
    void reportSlotChanged(const QString &name) override;
    void reportChangeCode(int code) override;

private:
    struct Entry
    {
        Slot slot;
        bool removed = false;
    };
    void dropRemoved();

    zetPrimitiveModel *m_model;
    // A model declares and removes thousands of parameter slots at a time: a removed entry stays
    // in place until they make up half the list, so neither costs a pass over all the others.
    QList<Entry> m_slots;
    QHash<QString, qsizetype> m_positions; // name -> its entry
    qsizetype m_removed = 0;
    QStringList m_reports;
    std::function<void(const QString &)> m_listener;
    int m_echoDepth = 0;
};

} // namespace tessaly
