#include "tessaly/widgets/listpad.h"

#include "tessaly/variant.h"

#include <QListWidget>
#include <QSet>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tessaly {

namespace {
const QString currentItemProperty = QStringLiteral("CurrentItem");

QStringList splitItems(const QString &text)
{
    return text.isEmpty() ? QStringList() : text.split(u',');
}
} // namespace

ListPad::ListPad(QWidget *parent) : ChildPadWidget(parent), m_list(new QListWidget(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    setFocusProxy(m_list);
    connect(m_list, &QListWidget::itemChanged, this, [this] { changed(currentItemProperty); });
}

void ListPad::setSize(int width, int height)
{
    ChildPadWidget::setSize(width, height);
    setFixedHeight(height);
}

QString ListPad::currentItems() const
{
    QStringList ticked;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked)
            ticked.append(m_list->item(row)->text());
    }
    return ticked.join(u',');
}

void ListPad::setCurrentItems(const QString &items)
{
    if (items == currentItems())
        return;
    const QStringList wanted = splitItems(items);
    const QSet<QString> ticked(wanted.cbegin(), wanted.cend());
    {
        const QSignalBlocker blocker(m_list);
        for (int row = 0; row < m_list->count(); ++row) {
            QListWidgetItem *item = m_list->item(row);
            item->setCheckState(ticked.contains(item->text()) ? Qt::Checked : Qt::Unchecked);
        }
    }
    changed(currentItemProperty);
}

bool ListPad::applyProperty(const QString &name, const QVariant &value)
{
    if (name == u"AddItems") {
        const QSignalBlocker blocker(m_list);
        for (const QString &text : splitItems(variant::toText(value))) {
            auto *item = new QListWidgetItem(text, m_list);
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
            item->setCheckState(Qt::Unchecked);
        }
    } else if (name == currentItemProperty) {
        setCurrentItems(variant::toText(value));
    } else {
        return false;
    }
    return true;
}

QVariant ListPad::readProperty(const QString &name) const
{
    if (name == currentItemProperty)
        return currentItems();
    if (name == u"Count")
        return m_list->count();
    return {};
}

} // namespace tessaly
