#include "tessaly/widgets/switchpad.h"

#include "tessaly/variant.h"

#include <QToolButton>
#include <QVBoxLayout>

namespace tessaly {

namespace {
const QString switchOnProperty = QStringLiteral("SwitchOn");

bool isImageProperty(const QString &name)
{
    return name == u"OnOutFileName" || name == u"OnInFileName" || name == u"OffOutFileName" || name == u"OffInFileName";
}
} // namespace

SwitchPad::SwitchPad(QWidget *parent) : ChildPadWidget(parent), m_button(new QToolButton(this))
{
    m_button->setCheckable(true);
    m_button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_button);
    setFocusProxy(m_button);
    showState();
    connect(m_button, &QToolButton::toggled, this, [this] {
        showState();
        changed(switchOnProperty);
    });
}

void SwitchPad::showState()
{
    // The switch says what the state means in the query, which reads the same in any language.
    m_button->setText(m_button->isChecked() ? QStringLiteral("\u25B2 ASC") : QStringLiteral("\u25BC DESC"));
}

bool SwitchPad::applyProperty(const QString &name, const QVariant &value)
{
    if (name == switchOnProperty) {
        m_button->setChecked(variant::toBoolean(value));
    } else if (isImageProperty(name)) {
        m_images.insert(name, variant::toText(value));
    } else {
        return false;
    }
    return true;
}

QVariant SwitchPad::readProperty(const QString &name) const
{
    if (name == switchOnProperty)
        return m_button->isChecked();
    if (isImageProperty(name))
        return m_images.value(name);
    return {};
}

} // namespace tessaly
