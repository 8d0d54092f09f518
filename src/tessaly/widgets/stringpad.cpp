#include "tessaly/widgets/stringpad.h"

#include "tessaly/variant.h"

#include <QIntValidator>
#include <QLineEdit>
#include <QVBoxLayout>

namespace tessaly {

namespace {
const QString stringProperty = QStringLiteral("String");

QColor fromBgr(qint32 bgr)
{
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}
} // namespace

StringPad::StringPad(QWidget *parent) : ChildPadWidget(parent), m_edit(new QLineEdit(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit);
    setFocusProxy(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, [this] {
        if (m_keyEntry)
            changed(stringProperty);
    });
    connect(m_edit, &QLineEdit::editingFinished, this, [this] {
        if (!m_keyEntry)
            changed(stringProperty);
    });
}

bool StringPad::applyProperty(const QString &name, const QVariant &value)
{
    if (name == stringProperty) {
        const QString text = variant::toText(value);
        if (m_edit->text() == text)
            return true;
        m_edit->setText(text);
        if (!m_keyEntry) // setText reports no finished entry of its own
            changed(stringProperty);
    } else if (name == u"Format") {
        m_format = variant::toText(value);
        m_edit->setValidator(m_format == u"L" ? new QIntValidator(m_edit) : nullptr);
    } else if (name == u"KeyEntry") {
        m_keyEntry = variant::toBoolean(value);
    } else if (name == u"BorderStyle") {
        m_borderStyle = variant::toLong(value);
        m_edit->setFrame(m_borderStyle != 0);
    } else if (name == u"ForeColor") {
        m_foreColor = variant::toLong(value);
        applyColours();
    } else if (name == u"BackColor") {
        m_backColor = variant::toLong(value);
        applyColours();
    } else {
        return false;
    }
    return true;
}

QVariant StringPad::readProperty(const QString &name) const
{
    if (name == stringProperty)
        return m_edit->text();
    if (name == u"Format")
        return m_format;
    if (name == u"KeyEntry")
        return m_keyEntry;
    if (name == u"BorderStyle")
        return m_borderStyle;
    if (name == u"ForeColor")
        return m_foreColor;
    if (name == u"BackColor")
        return m_backColor;
    return {};
}

void StringPad::applyColours()
{
    QPalette palette = m_edit->palette();
    palette.setColor(QPalette::Text, fromBgr(m_foreColor));
    palette.setColor(QPalette::Base, fromBgr(m_backColor));
    m_edit->setPalette(palette);
}

} // namespace tessaly
