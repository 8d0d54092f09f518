#include "veldra/wizard/tablepage.h"

#include "veldra/resources/stringtable.h"
#include "veldra/wizard/tablelistmodel.h"
#include "veldra/wizard/tablestep.h"
#include "veldra/wizard/wizardstate.h"

#include <QGroupBox>
#include <QListView>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace veldra {

namespace {
// A click anywhere on a row flips its check, on the name as on the box. The view would report
// a click on the box as a click on the row as well, so both are handled here, once.
class RowCheckDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override
    {
        if (event->type() == QEvent::MouseButtonRelease) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            if (mouse->button() != Qt::LeftButton || !option.rect.contains(mouse->position().toPoint()))
                return false;
            const bool checked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            return model->setData(index, checked ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        }
        // Space still flips the current row, as the base does.
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
};
} // namespace

TablePage::TablePage(WizardState &state, QWidget *parent)
    : WizardPage(state.tables(), parent), m_step(state.tables()), m_model(new TableListModel(m_step, this))
{
    auto *frame = new QGroupBox(text(StringId::TableStepCaption), this);
    frame->setObjectName(QStringLiteral("TableFrame"));

    m_list = new QListView(frame);
    m_list->setObjectName(QStringLiteral("TableSelectList"));
    m_list->setAccessibleName(text(StringId::TableStepCaption));
    // Every row is one line of text: the view then lays out tens of thousands of rows without
    // measuring each.
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setModel(m_model);
    m_list->setItemDelegate(new RowCheckDelegate(m_list));

    auto *frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(m_list);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);

    connect(m_model, &TableListModel::chosenChanged, this, &WizardPage::completeChanged);
}

void TablePage::showEntered()
{
    m_model->reload();
}

} // namespace veldra
