#pragma once

#include "tessaly/zetchildpad.h"

#include <QWidget>

#include <functional>

namespace tessaly {

// The common part of the child pads: the named-property plumbing, the size, and the one
// connection that keeps a property and a slot in step. Subclasses say which properties they
// have and call userChanged() when the person changes one.
class ChildPadWidget : public QWidget, public zetChildPad
{
    Q_OBJECT

public:
    // How a child writes the slot it follows; the site supplies it.
    using SlotWriter = std::function<void(SlotOwner owner, const QString &slot, const QVariant &value)>;

    explicit ChildPadWidget(QWidget *parent = nullptr);
    ~ChildPadWidget() override;

    void setName(const QString &name) override { setObjectName(name); }
    void setAccessibleCaption(const QString &caption) override;
    void setProperty(const QString &name, const QVariant &value) override;
    QVariant property(const QString &name) const override;
    void setSize(int width, int height) override;
    void connectProperty(const QString &property, SlotOwner owner, const QString &slot) override;

    void setSlotWriter(SlotWriter writer) { m_writer = std::move(writer); }
    bool follows(SlotOwner owner, const QString &slot) const
    {
        return !m_slot.isEmpty() && m_owner == owner && m_slot == slot;
    }
    // The slot changed: take its value without writing it back.
    void followSlot(const QVariant &value);

    // The last value the slot refused, or an empty text.
    const QString &lastRefusal() const { return m_refusal; }

protected:
    // False for a property this kind of child does not have. Raise tessaly::Error for a value
    // it cannot take. Setting the value the property already has changes nothing.
    virtual bool applyProperty(const QString &name, const QVariant &value) = 0;
    virtual QVariant readProperty(const QString &name) const = 0;
    // A property changed, by the person or by a setting that moved it.
    void changed(const QString &property);

private:
    SlotWriter m_writer;
    QString m_property;
    SlotOwner m_owner = SlotOwner::Model;
    QString m_slot;
    QString m_refusal;
    bool m_following = false;
};

} // namespace tessaly
