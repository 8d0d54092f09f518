#pragma once

#include <QBasicTimer>
#include <QPersistentModelIndex>
#include <QTreeWidget>

namespace veldra {

// A report list whose rows are renamed in place in one column, whatever column the person
// clicked or the keyboard stands on: F2 edits the current row, and so does a click on that
// column of the row already selected, once the double-click interval has passed without a
// second click (a double click does what the page gives it instead). A row refilled away in
// the meantime is not edited.
class InlineEditList : public QTreeWidget
{
    Q_OBJECT

public:
    explicit InlineEditList(int editColumn, QWidget *parent = nullptr);

    int editColumn() const { return m_editColumn; }

protected:
    bool edit(const QModelIndex &index, EditTrigger trigger, QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    int m_editColumn;
    QPersistentModelIndex m_pressedSelected;
    QPersistentModelIndex m_pendingEdit;
    QBasicTimer m_editTimer;
};

} // namespace veldra
