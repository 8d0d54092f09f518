#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QMetaType>
#include <QStringList>

#include <memory>
#include <vector>

namespace dataservice {
class RowSink;
}

// The rows of one answer as the engine gave them, column by column: each value's bytes and its
// kind, and for numbers their value, so that the grid sorts and charts without parsing text and
// an export hands the rows on exactly as they came. A value costs its bytes plus five (plus
// eight in a column that holds numbers), so 100,000 short rows stay small.
class RowStore
{
public:
    enum class Kind : quint8 { Null, Text, Number, Boolean, Blob };

    RowStore() = default;
    explicit RowStore(QList<QByteArray> columnNames);

    const QList<QByteArray> &columnNames() const { return m_names; }
    QString columnName(int column) const { return QString::fromUtf8(m_names.value(column)); }
    int columnCount() const { return int(m_columns.size()); }
    qsizetype rowCount() const { return m_rows; }

    Kind kind(qsizetype row, int column) const { return m_columns[size_t(column)].kinds[size_t(row)]; }
    // Text and numbers as the engine wrote them, a BLOB's bytes; "t" or "f" for a Boolean.
    QByteArrayView bytes(qsizetype row, int column) const;
    // A number's value (a Boolean is 1 or 0); NaN for any other kind.
    double number(qsizetype row, int column) const;
    // Every value is a number or NULL, and one at least is a number: a column to chart.
    bool holdsNumbers(int column) const;

    // Filling, a row at a time: startRow, then one value per column.
    void startRow() { ++m_rows; m_next = 0; }
    void addText(const char *utf8, qsizetype size) { add(Kind::Text, utf8, size); }
    void addNumber(const char *text, qsizetype size);
    void addBoolean(bool value);
    void addBlob(const char *data, qsizetype size) { add(Kind::Blob, data, size); }
    void addNull() { add(Kind::Null, nullptr, 0); }

    // The rows of a later part of the same answer join these; later is left empty.
    void append(RowStore &&later);

    // Hands the rows to a sink in the given order (all of them, as stored, when order is
    // empty): startTable and the records, not endTable, which is the caller's to say.
    void replay(dataservice::RowSink &sink, const std::vector<quint32> &order = {}) const;

    // Bytes of every value, as the engine gave them.
    qint64 valueBytes() const;

private:
    struct Column
    {
        QByteArray bytes;
        std::vector<quint32> ends; // where each value's bytes end
        std::vector<Kind> kinds;
        std::vector<double> numbers; // per row once the column holds a number, else empty
        qsizetype numberCount = 0;
        qsizetype otherCount = 0; // text, Boolean and BLOB values
    };
    Column &nextColumn();
    void add(Kind kind, const char *data, qsizetype size);

    QList<QByteArray> m_names;
    std::vector<Column> m_columns;
    qsizetype m_rows = 0;
    int m_next = 0;
};

using RowChunk = std::shared_ptr<RowStore>;
Q_DECLARE_METATYPE(RowChunk)
