#pragma once

#include <QStyledItemDelegate>

#include <functional>

namespace veldra {

// In-place editing of one column of a list whose page decides what an edit may do. The page
// is asked before the editor opens and told the text when it closes; the model is never
// written by the editor itself, because the page refills the list from the definition.
// The page's answers run after the view has finished with the editor (queued), so they may
// show messages and refill the list.
class InlineEditDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum class Start { Refuse, FromText, FromEmpty };

    explicit InlineEditDelegate(int column, QObject *parent = nullptr);

    // Asked when an editor is about to open on index; Refuse opens none.
    void setStartHandler(std::function<Start(const QModelIndex &index)> handler) { m_start = std::move(handler); }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

Q_SIGNALS:
    // The editor on row closed with newText; oldText is what it opened with.
    void edited(int row, const QString &oldText, const QString &newText);

private:
    int m_column;
    std::function<Start(const QModelIndex &index)> m_start;
    mutable bool m_fromEmpty = false;
};

} // namespace veldra
