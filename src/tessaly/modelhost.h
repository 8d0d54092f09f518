#pragma once

#include "tessaly/tessaly_export.h"
#include "tessaly/zetmodelsite.h"

#include <QList>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace tessaly {

class zetPrimitiveModel;

// The host side of a model site. It records the slots a model declares and, as the framework
// does, answers a slot-changed report by writing the slot's value back into the model, so the
// model's re-entrancy guards are exercised for real.
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

    const QList<Slot> &declaredSlots() const { return m_slots; }
    bool hasSlot(const QString &name) const;
    QStringList slotNames() const;

    // Told of every slot the model reports changed, before the framework's echo write: how a
    // host keeps what shows a slot (a pad's children) current.
    void setSlotListener(std::function<void(const QString &)> listener) { m_listener = std::move(listener); }

    void declareSlot(const QString &name, const QString &description) override;
    bool declareParameterSlot(const QString &name, const QString &description) override;
    void removeSlot(const QString &name) override;
    void reportSlotChanged(const QString &name) override;
    void reportChangeCode(int code) override;

private:
    qsizetype indexOf(const QString &name) const;

    zetPrimitiveModel *m_model;
    QList<Slot> m_slots;
    std::function<void(const QString &)> m_listener;
    int m_echoDepth = 0;
};

} // namespace tessaly
