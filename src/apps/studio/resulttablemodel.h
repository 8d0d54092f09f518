#pragma once

#include "rowstore.h"

#include <QAbstractTableModel>

#include <vector>

// The rows of the latest answer, for the result grid, as they arrive. Numbers (by the engine's
// type) line up on the right; NULL shows as "NULL" in italics, apart from empty text; a BLOB
// as its size and its first bytes in hex; control characters as visible symbols. A header
// click sorts the rows held, without asking again, and rows that arrive later join in order;
// the sort stays for the next answer while it has a column of the same name.
class ResultTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    // The next rows to arrive start a new answer; until then the old rows stay.
    void startAnswer() { m_replaceOnNextRows = true; }
    void addRows(const RowChunk &rows);
    void clear();

    const RowStore &rows() const { return m_rows; }
    // The rows in the order shown (empty: as they came).
    const std::vector<quint32> &order() const { return m_order; }
    qsizetype storeRow(int row) const { return m_order.empty() ? row : qsizetype(m_order[size_t(row)]); }
    int sortColumn() const { return m_sortColumn; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }

    // The cells as lines of tab-separated fields, for pasting into a spreadsheet: the rows and
    // columns the cells span, in the order shown, with the column names first when asked.
    // NULL is an empty field; a field with a tab, line break or quote is quoted.
    QString tabSeparated(const QModelIndexList &cells, bool withNames) const;
    // A value as text, for copying: empty for NULL, a BLOB as \x and its bytes in hex.
    QString plainText(qsizetype storeRow, int column) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    // The column a new answer is sorted by (-1: none), for the header's indicator.
    void sortShown(int column, Qt::SortOrder order);

private:
    QString displayText(qsizetype row, int column) const;
    void applySort();

    RowStore m_rows;
    std::vector<quint32> m_order;
    bool m_replaceOnNextRows = false;
    QByteArray m_sortName; // kept from answer to answer
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
