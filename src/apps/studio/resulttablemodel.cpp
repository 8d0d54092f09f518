#include "resulttablemodel.h"

#include <QBrush>
#include <QPalette>

void ResultTableModel::setResult(QueryResult result)
{
    beginResetModel();
    m_result = std::move(result);
    m_numeric = QList<bool>(m_result.columns.size(), !m_result.rows.isEmpty());
    for (qsizetype r = 0; r < m_result.rows.size(); ++r) {
        for (qsizetype c = 0; c < m_numeric.size(); ++c) {
            bool number = false;
            if (m_numeric.at(c) && !m_result.nulls.at(r).value(c))
                m_result.rows.at(r).value(c).toDouble(&number);
            if (!number && !m_result.nulls.at(r).value(c))
                m_numeric[c] = false;
        }
    }
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
    case Qt::TextAlignmentRole:
        return m_numeric.value(index.column()) ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant();
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
