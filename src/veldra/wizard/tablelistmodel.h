#pragma once

#include <QAbstractListModel>

namespace veldra {

class TableStep;

// The table step's list as an item model: one checkable row per table of the catalog, checked
// when the table is chosen. A catalog can hold tens of thousands of tables, so the rows are
// read from the step on demand instead of being built as items.
class TableListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit TableListModel(TableStep &step, QObject *parent = nullptr);

    // The step's tables changed (it was entered again): show them.
    void reload();

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    // A table was chosen or given up.
    void chosenChanged();

private:
    TableStep &m_step;
    int m_rows = 0;
};

} // namespace veldra
