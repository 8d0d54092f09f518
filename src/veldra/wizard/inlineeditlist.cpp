#include "veldra/wizard/inlineeditlist.h"

#include <QApplication>
#include <QMouseEvent>

namespace veldra {

InlineEditList::InlineEditList(int editColumn, QWidget *parent) : QTreeWidget(parent), m_editColumn(editColumn)
{
    // The view's own click-to-edit would open on whatever cell was clicked, and its timer edits
    // the current index even after the list was refilled; the click is handled here instead.
    setEditTriggers(QAbstractItemView::EditKeyPressed);
}

bool InlineEditList::edit(const QModelIndex &index, EditTrigger trigger, QEvent *event)
{
    return QTreeWidget::edit(index.isValid() ? index.siblingAtColumn(m_editColumn) : index, trigger, event);
}

void InlineEditList::mousePressEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool onSelectedCell = event->button() == Qt::LeftButton && index.isValid()
            && index.column() == m_editColumn && selectionModel()->isRowSelected(index.row(), index.parent());
    m_pressedSelected = onSelectedCell ? QPersistentModelIndex(index) : QPersistentModelIndex();
    QTreeWidget::mousePressEvent(event);
}

void InlineEditList::mouseReleaseEvent(QMouseEvent *event)
{
    QTreeWidget::mouseReleaseEvent(event);
    if (m_pressedSelected.isValid() && indexAt(event->position().toPoint()) == m_pressedSelected) {
        m_pendingEdit = m_pressedSelected;
        m_editTimer.start(QApplication::doubleClickInterval(), this);
    }
    m_pressedSelected = QPersistentModelIndex();
}

void InlineEditList::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_editTimer.stop();
    m_pendingEdit = QPersistentModelIndex();
    m_pressedSelected = QPersistentModelIndex();
    QTreeWidget::mouseDoubleClickEvent(event);
}

void InlineEditList::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_editTimer.timerId())
        return QTreeWidget::timerEvent(event);
    m_editTimer.stop();
    const QModelIndex index = m_pendingEdit;
    m_pendingEdit = QPersistentModelIndex();
    if (index.isValid() && index == currentIndex().siblingAtColumn(m_editColumn))
        edit(index, AllEditTriggers, nullptr);
}

} // namespace veldra
