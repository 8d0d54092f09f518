#include "veldra/wizard/inlineeditdelegate.h"

#include <QLineEdit>

namespace veldra {

namespace {
const char *const openedWith = "veldraOpenedWith";
} // namespace

InlineEditDelegate::InlineEditDelegate(int column, QObject *parent) : QStyledItemDelegate(parent), m_column(column)
{
}

QWidget *InlineEditDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                          const QModelIndex &index) const
{
    if (index.column() != m_column)
        return nullptr;
    const Start start = m_start ? m_start(index) : Start::FromText;
    if (start == Start::Refuse)
        return nullptr;
    m_fromEmpty = start == Start::FromEmpty;
    return QStyledItemDelegate::createEditor(parent, option, index);
}

void InlineEditDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *line = qobject_cast<QLineEdit *>(editor);
    if (!line)
        return QStyledItemDelegate::setEditorData(editor, index);
    const QString text = m_fromEmpty ? QString() : index.data(Qt::EditRole).toString();
    line->setText(text);
    line->selectAll();
    line->setProperty(openedWith, text);
}

void InlineEditDelegate::setModelData(QWidget *editor, QAbstractItemModel *, const QModelIndex &index) const
{
    auto *line = qobject_cast<QLineEdit *>(editor);
    if (!line)
        return;
    const QString oldText = line->property(openedWith).toString();
    const QString newText = line->text();
    const int row = index.row();
    // The page refills the list; it must not do so while the view still holds the editor.
    auto *self = const_cast<InlineEditDelegate *>(this);
    QMetaObject::invokeMethod(
            self, [self, row, oldText, newText] { Q_EMIT self->edited(row, oldText, newText); }, Qt::QueuedConnection);
}

} // namespace veldra
