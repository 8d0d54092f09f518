#include "tessaly/widgets/comboboxpad.h"

#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tessaly {

ComboBoxPad::ComboBoxPad(QWidget *parent) : ChildPadWidget(parent), m_combo(new QComboBox(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_combo);
    setFocusProxy(m_combo);
    connect(m_combo, &QComboBox::currentIndexChanged, this, [this] {
        changed(QStringLiteral("SelectIndex"));
        changed(QStringLiteral("SelectKey"));
        changed(QStringLiteral("SelectValue"));
    });
}

void ComboBoxPad::setList(const QVariant &value)
{
    const auto map = objectCast<NameMap>(variant::heldObject(value));
    if (!map && value.isValid())
        throw Error(ErrorNumber::TypeMismatch, QStringLiteral("\"List\" takes a NameMap"));
    m_keys = map ? map->keys() : QStringList();
    m_values.clear();
    if (map) {
        const int count = map->count();
        m_values.reserve(count);
        for (int i = 0; i < count; ++i) {
            const QVariant item = map->item(i);
            m_values.append(item.metaType() == QMetaType::fromType<QString>() ? item.toString() : variant::toText(item));
        }
    }
    showEntries();
}

void ComboBoxPad::showEntries()
{
    // A new list starts without a choice; the caller picks one with "SelectIndex".
    const QSignalBlocker blocker(m_combo);
    m_combo->clear();
    m_combo->addItems(m_mode ? m_values : m_keys);
    m_combo->setCurrentIndex(-1);
}

void ComboBoxPad::select(int index)
{
    if (index < -1 || index >= m_combo->count())
        throw Error(ErrorNumber::SubscriptOutOfRange,
                    QStringLiteral("\"SelectIndex\" %1 is outside the list (%2 entries)").arg(index).arg(m_combo->count()));
    m_combo->setCurrentIndex(index);
}

bool ComboBoxPad::applyProperty(const QString &name, const QVariant &value)
{
    if (name == u"List") {
        setList(value);
    } else if (name == u"Mode") {
        const bool mode = variant::toBoolean(value);
        if (mode != m_mode) {
            m_mode = mode;
            const int index = m_combo->currentIndex();
            showEntries();
            const QSignalBlocker blocker(m_combo);
            m_combo->setCurrentIndex(index);
        }
    } else if (name == u"SelectIndex") {
        select(variant::toLong(value));
    } else if (name == u"SelectKey" || name == u"SelectValue") {
        const QString text = variant::toText(value);
        const int index = int((name == u"SelectKey" ? m_keys : m_values).indexOf(text));
        if (index != m_combo->currentIndex())
            m_combo->setCurrentIndex(index);
    } else if (name == u"LeftMargin" || name == u"RightMargin") {
        (name == u"LeftMargin" ? m_leftMargin : m_rightMargin) = variant::toLong(value);
        layout()->setContentsMargins(m_leftMargin, 0, m_rightMargin, 0);
    } else {
        return false;
    }
    return true;
}

QVariant ComboBoxPad::readProperty(const QString &name) const
{
    const int index = m_combo->currentIndex();
    if (name == u"SelectIndex")
        return index;
    if (name == u"SelectKey")
        return m_keys.value(index);
    if (name == u"SelectValue")
        return m_values.value(index);
    if (name == u"Mode")
        return m_mode;
    if (name == u"LeftMargin")
        return m_leftMargin;
    if (name == u"RightMargin")
        return m_rightMargin;
    return {};
}

} // namespace tessaly
