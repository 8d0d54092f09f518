#include "tessaly/widgets/statictextpad.h"

#include "tessaly/variant.h"

#include <QLabel>
#include <QVBoxLayout>

namespace tessaly {

StaticTextPad::StaticTextPad(QWidget *parent) : ChildPadWidget(parent), m_label(new QLabel(this))
{
    m_label->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);
}

bool StaticTextPad::applyProperty(const QString &name, const QVariant &value)
{
    if (name != u"String")
        return false;
    m_label->setText(variant::toText(value));
    return true;
}

QVariant StaticTextPad::readProperty(const QString &name) const
{
    return name == u"String" ? QVariant(m_label->text()) : QVariant();
}

} // namespace tessaly
