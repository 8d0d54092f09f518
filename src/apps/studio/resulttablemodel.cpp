#include "resulttablemodel.h"

#include "roworder.h"
#include "studiotext.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <numeric>

namespace {

using Kind = RowStore::Kind;

constexpr int blobPreviewBytes = 8;

QString visibleControls(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() < 0x20)
            c = QChar(0x2400 + c.unicode()); // the Control Pictures block
        else if (c.unicode() == 0x7F)
            c = QChar(0x2421);
    }
    return text;
}

bool hasControls(QByteArrayView bytes)
{
    return std::any_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

QString tsvField(const QString &text)
{
    if (!text.contains(u'\t') && !text.contains(u'\n') && !text.contains(u'\r') && !text.startsWith(u'"'))
        return text;
    QString quoted = text;
    quoted.replace(u'"', QLatin1String("\"\""));
    return u'"' + quoted + u'"';
}

} // namespace

void ResultTableModel::addRows(const RowChunk &rows)
{
    if (!rows)
        return;
    if (m_replaceOnNextRows || m_rows.columnCount() != rows->columnCount()) {
        m_replaceOnNextRows = false;
        beginResetModel();
        m_rows = std::move(*rows);
        m_order.clear();
        m_sortColumn = m_sortName.isEmpty() ? -1 : int(m_rows.columnNames().indexOf(m_sortName));
        applySort();
        endResetModel();
        Q_EMIT sortShown(m_sortColumn, m_sortOrder);
        return;
    }
    if (rows->rowCount() == 0)
        return;
    const auto first = quint32(m_rows.rowCount());
    beginInsertRows({}, int(first), int(first + rows->rowCount() - 1));
    m_rows.append(std::move(*rows));
    if (m_sortColumn >= 0) // shown at the end for a moment, then put in their places
        for (quint32 row = first; row < quint32(m_rows.rowCount()); ++row)
            m_order.push_back(row);
    endInsertRows();
    if (m_sortColumn < 0)
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QList<qsizetype> storeRows;
    for (const QModelIndex &index : before)
        storeRows.append(storeRow(index.row()));
    m_order.resize(first);
    roworder::merge(m_order, roworder::sorted(m_rows, m_sortColumn, m_sortOrder, first), m_rows, m_sortColumn, m_sortOrder);
    std::vector<quint32> shownAt(m_order.size());
    for (size_t i = 0; i < m_order.size(); ++i)
        shownAt[m_order[i]] = quint32(i);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(int(shownAt[size_t(storeRows.at(i))]), before.at(i).column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ResultTableModel::clear()
{
    m_replaceOnNextRows = false;
    beginResetModel();
    m_rows = RowStore();
    m_order.clear();
    m_sortColumn = -1;
    endResetModel();
}

void ResultTableModel::sort(int column, Qt::SortOrder order)
{
    if (column >= m_rows.columnCount())
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    QList<qsizetype> storeRows;
    for (const QModelIndex &index : before)
        storeRows.append(storeRow(index.row()));
    m_sortColumn = column;
    m_sortOrder = order;
    m_sortName = column < 0 ? QByteArray() : m_rows.columnNames().at(column);
    applySort();
    std::vector<quint32> shownAt(m_order.size());
    for (size_t i = 0; i < m_order.size(); ++i)
        shownAt[m_order[i]] = quint32(i);
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(int(m_order.empty() ? storeRows.at(i) : shownAt[size_t(storeRows.at(i))]), before.at(i).column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void ResultTableModel::applySort()
{
    if (m_sortColumn < 0)
        m_order.clear();
    else
        m_order = roworder::sorted(m_rows, m_sortColumn, m_sortOrder);
}

int ResultTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.rowCount());
}

int ResultTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.columnCount();
}

QString ResultTableModel::displayText(qsizetype row, int column) const
{
    const QByteArrayView bytes = m_rows.bytes(row, column);
    switch (m_rows.kind(row, column)) {
    case Kind::Null:
        return QStringLiteral("NULL");
    case Kind::Boolean:
        return bytes == "t" ? QStringLiteral("true") : QStringLiteral("false");
    case Kind::Blob: {
        QString hex = QString::fromLatin1(bytes.first(std::min<qsizetype>(bytes.size(), blobPreviewBytes)).toByteArray().toHex(' ').toUpper());
        if (bytes.size() > blobPreviewBytes)
            hex += QChar(0x2026);
        return studioText(StudioText::BlobValue).arg(QLocale().toString(bytes.size()), hex);
    }
    case Kind::Number:
    case Kind::Text:
        break;
    }
    const QString text = QString::fromUtf8(bytes);
    return hasControls(bytes) ? visibleControls(text) : text;
}

QString ResultTableModel::plainText(qsizetype row, int column) const
{
    const QByteArrayView bytes = m_rows.bytes(row, column);
    switch (m_rows.kind(row, column)) {
    case Kind::Null: return QString();
    case Kind::Boolean: return displayText(row, column);
    case Kind::Blob: return QLatin1String("\\x") + QString::fromLatin1(bytes.toByteArray().toHex());
    case Kind::Number:
    case Kind::Text: break;
    }
    return QString::fromUtf8(bytes);
}

QVariant ResultTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const qsizetype row = storeRow(index.row());
    const Kind kind = m_rows.kind(row, index.column());
    switch (role) {
    case Qt::DisplayRole:
        return displayText(row, index.column());
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignVCenter | (kind == Kind::Number ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::ForegroundRole:
        return kind == Kind::Null || kind == Kind::Blob ? QVariant(QGuiApplication::palette().brush(QPalette::PlaceholderText))
                                                        : QVariant();
    case Qt::FontRole:
        if (kind == Kind::Null) {
            QFont font;
            font.setItalic(true);
            return font;
        }
        return {};
    default:
        return {};
    }
}

QVariant ResultTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return m_rows.columnName(section);
    return section + 1;
}

QString ResultTableModel::tabSeparated(const QModelIndexList &cells, bool withNames) const
{
    std::vector<int> rows;
    std::vector<int> columns;
    QSet<QPair<int, int>> chosen;
    for (const QModelIndex &cell : cells) {
        rows.push_back(cell.row());
        columns.push_back(cell.column());
        chosen.insert({ cell.row(), cell.column() });
    }
    for (auto *list : { &rows, &columns }) {
        std::sort(list->begin(), list->end());
        list->erase(std::unique(list->begin(), list->end()), list->end());
    }
    QStringList lines;
    QStringList fields;
    if (withNames) {
        for (const int column : columns)
            fields.append(tsvField(m_rows.columnName(column)));
        lines.append(fields.join(u'\t'));
    }
    for (const int row : rows) {
        fields.clear();
        for (const int column : columns)
            fields.append(chosen.contains({ row, column }) ? tsvField(plainText(storeRow(row), column)) : QString());
        lines.append(fields.join(u'\t'));
    }
    return lines.isEmpty() ? QString() : lines.join(u'\n') + u'\n';
}
