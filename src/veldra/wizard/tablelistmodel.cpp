#include "veldra/wizard/tablelistmodel.h"

#include "veldra/wizard/tablestep.h"

namespace veldra {

TableListModel::TableListModel(TableStep &step, QObject *parent) : QAbstractListModel(parent), m_step(step) {}

void TableListModel::reload()
{
    beginResetModel();
    m_rows = int(m_step.tableNames().size());
    endResetModel();
}

int TableListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

QVariant TableListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const QString &name = m_step.tableNames().at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return name;
    case Qt::CheckStateRole:
        return m_step.isChosen(name) ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

bool TableListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole
        || !checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return false;
    const QString &name = m_step.tableNames().at(index.row());
    const bool chosen = value.toInt() == Qt::Checked;
    if (chosen == m_step.isChosen(name))
        return true;
    m_step.setChosen(name, chosen);
    Q_EMIT dataChanged(index, index, { Qt::CheckStateRole });
    Q_EMIT chosenChanged();
    return true;
}

Qt::ItemFlags TableListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemNeverHasChildren;
}

} // namespace veldra
