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
    fitHeightToText();
    return true;
}

void StaticTextPad::resizeEvent(QResizeEvent *event)
{
    ChildPadWidget::resizeEvent(event);
    fitHeightToText();
}

// The pad's grid fixes the width; a caption longer than one line of it grows downwards
// instead of being cut (a long caption, a larger font).
void StaticTextPad::fitHeightToText()
{
    const int needed = m_label->heightForWidth(width());
    if (needed > minimumHeight())
        setMinimumHeight(needed);
}

QVariant StaticTextPad::readProperty(const QString &name) const
{
    return name == u"String" ? QVariant(m_label->text()) : QVariant();
}

} // namespace tessaly
