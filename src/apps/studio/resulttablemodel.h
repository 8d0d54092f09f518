#pragma once

#include "queryresult.h"

#include <QAbstractTableModel>

// The rows of the latest answer, for the result grid. NULL shows as an empty, greyed cell; a
// column whose every value is a number is aligned to the right, as figures are read.
class ResultTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setResult(QueryResult result);
    const QueryResult &result() const { return m_result; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QueryResult m_result;
    QList<bool> m_numeric; // per column

};
