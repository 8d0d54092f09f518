#include "resulttablemodel.h"

#include <QBrush>
#include <QPalette>

void ResultTableModel::setResult(QueryResult result)
{
    beginResetModel();
    m_result = std::move(result);
    endResetModel();
}

int ResultTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_result.rows.size());
}

int ResultTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_result.columns.size());
}

QVariant ResultTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QStringList &row = m_result.rows.at(index.row());
    const bool isNull = m_result.nulls.at(index.row()).value(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return isNull ? QVariant() : QVariant(row.value(index.column()));
    case Qt::BackgroundRole:
        return isNull ? QVariant(QPalette().brush(QPalette::AlternateBase)) : QVariant();
    default:
        return {};
    }
}

QVariant ResultTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return m_result.columns.value(section);
    return section + 1;
}
