#include "tessaly/widgets/childpadwidget.h"

#include "tessaly/error.h"
#include "tessaly/widgets/childsignals.h"

#include <QScopedValueRollback>

namespace tessaly {

ChildPadWidget::ChildPadWidget(QWidget *parent) : QWidget(parent) { }

ChildPadWidget::~ChildPadWidget()
{
    // What the inner control says while it goes (a finished entry as it loses the focus, an
    // index as its list empties) is no change the person made.
    detachChildSignals(this);
    m_writer = {};
}

void ChildPadWidget::setProperty(const QString &name, const QVariant &value)
{
    if (!applyProperty(name, value))
        throw Error(ErrorNumber::InvalidArgument,
                    QStringLiteral("%1 has no property \"%2\"").arg(QString::fromLatin1(metaObject()->className()), name));
}

void ChildPadWidget::setAccessibleCaption(const QString &caption)
{
    setAccessibleName(caption);
    if (QWidget *control = focusProxy())
        control->setAccessibleName(caption);
}

QVariant ChildPadWidget::property(const QString &name) const
{
    return readProperty(name);
}

void ChildPadWidget::setSize(int width, int height)
{
    // The width is the pad's grid; the height is a least one, so larger fonts are not cut off.
    setFixedWidth(width);
    setMinimumHeight(height);
    resize(width, height);
}

void ChildPadWidget::connectProperty(const QString &property, SlotOwner owner, const QString &slot)
{
    m_property = property;
    m_owner = owner;
    m_slot = slot;
}

void ChildPadWidget::followSlot(const QVariant &value)
{
    if (m_property.isEmpty())
        return;
    const QScopedValueRollback<bool> following(m_following, true);
    try {
        applyProperty(m_property, value);
    } catch (const Error &) {
        // A slot value the child cannot show leaves it as it is.
    }
}

void ChildPadWidget::changed(const QString &property)
{
    if (m_following || m_slot.isEmpty() || property != m_property || !m_writer)
        return;
    // This runs inside a Qt event handler: nothing may escape into the event loop. A value the
    // slot refuses leaves the slot as it was; the child says why on its tooltip.
    try {
        m_writer(m_owner, m_slot, readProperty(m_property));
        if (!m_refusal.isEmpty()) {
            m_refusal.clear();
            setToolTip(QString());
        }
    } catch (const Error &error) {
        m_refusal = error.message();
        setToolTip(m_refusal);
    }
}

} // namespace tessaly
