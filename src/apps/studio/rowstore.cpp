#include "rowstore.h"

#include "dataservice/rowsink.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

double parseNumber(const char *text, qsizetype size)
{
    double value = notANumber;
    const char *begin = text;
    if (size > 0 && *begin == '+')
        ++begin;
    std::from_chars(begin, text + size, value);
    return value;
}

} // namespace

RowStore::RowStore(QList<QByteArray> columnNames) : m_names(std::move(columnNames)), m_columns(size_t(m_names.size()))
{
}

QByteArrayView RowStore::bytes(qsizetype row, int column) const
{
    const Column &c = m_columns[size_t(column)];
    const quint32 start = row == 0 ? 0 : c.ends[size_t(row) - 1];
    return QByteArrayView(c.bytes.constData() + start, c.ends[size_t(row)] - start);
}

double RowStore::number(qsizetype row, int column) const
{
    const Column &c = m_columns[size_t(column)];
    return c.numbers.empty() ? notANumber : c.numbers[size_t(row)];
}

bool RowStore::holdsNumbers(int column) const
{
    const Column &c = m_columns[size_t(column)];
    return c.numberCount > 0 && c.otherCount == 0;
}

RowStore::Column &RowStore::nextColumn()
{
    if (m_next >= columnCount())
        throw std::logic_error("a record holds more values than the answer has columns");
    return m_columns[size_t(m_next)];
}

void RowStore::add(Kind kind, const char *data, qsizetype size)
{
    Column &c = nextColumn();
    ++m_next;
    if (qint64(c.bytes.size()) + size > std::numeric_limits<quint32>::max())
        throw std::length_error("a column of the answer holds more than 4 GiB, too much to show");
    c.bytes.append(data, size);
    c.ends.push_back(quint32(c.bytes.size()));
    c.kinds.push_back(kind);
    if (kind == Kind::Text || kind == Kind::Blob)
        ++c.otherCount;
    if (!c.numbers.empty())
        c.numbers.push_back(notANumber);
}

void RowStore::addNumber(const char *text, qsizetype size)
{
    Column &c = nextColumn();
    add(Kind::Number, text, size);
    if (c.numbers.empty())
        c.numbers.assign(c.kinds.size(), notANumber);
    c.numbers.back() = parseNumber(text, size);
    ++c.numberCount;
}

void RowStore::addBoolean(bool value)
{
    Column &c = nextColumn();
    add(Kind::Boolean, value ? "t" : "f", 1);
    ++c.otherCount; // a Boolean sorts as 0 or 1 but is no figure to chart
    if (c.numbers.empty())
        c.numbers.assign(c.kinds.size(), notANumber);
    c.numbers.back() = value ? 1 : 0;
}

void RowStore::append(RowStore &&later)
{
    if (m_columns.empty() && m_rows == 0) {
        *this = std::move(later);
        later = RowStore(m_names);
        return;
    }
    for (size_t i = 0; i < m_columns.size() && i < later.m_columns.size(); ++i) {
        Column &c = m_columns[i];
        Column &more = later.m_columns[i];
        const quint32 offset = quint32(c.bytes.size());
        if (qint64(offset) + more.bytes.size() > std::numeric_limits<quint32>::max())
            throw std::length_error("a column of the answer holds more than 4 GiB, too much to show");
        c.bytes.append(more.bytes);
        c.ends.reserve(c.ends.size() + more.ends.size());
        for (const quint32 end : more.ends)
            c.ends.push_back(end + offset);
        const size_t before = c.kinds.size();
        c.kinds.insert(c.kinds.end(), more.kinds.begin(), more.kinds.end());
        if (!more.numbers.empty()) {
            if (c.numbers.empty())
                c.numbers.assign(before, notANumber);
            c.numbers.insert(c.numbers.end(), more.numbers.begin(), more.numbers.end());
        } else if (!c.numbers.empty()) {
            c.numbers.resize(c.kinds.size(), notANumber);
        }
        c.numberCount += more.numberCount;
        c.otherCount += more.otherCount;
        more = Column();
    }
    m_rows += later.m_rows;
    later.m_rows = 0;
}

void RowStore::replay(dataservice::RowSink &sink, const std::vector<quint32> &order) const
{
    sink.startTable(m_names);
    const auto record = [&](qsizetype row) {
        sink.startRecord();
        for (int column = 0; column < columnCount(); ++column) {
            const QByteArrayView value = bytes(row, column);
            switch (kind(row, column)) {
            case Kind::Null: sink.nullValue(); break;
            case Kind::Text: sink.value(value.data(), value.size()); break;
            case Kind::Number: sink.numberValue(value.data(), value.size()); break;
            case Kind::Boolean: sink.booleanValue(value == "t"); break;
            case Kind::Blob: sink.blobValue(value.data(), value.size()); break;
            }
        }
        sink.endRecord();
    };
    if (order.empty()) {
        for (qsizetype row = 0; row < m_rows; ++row)
            record(row);
    } else {
        for (const quint32 row : order)
            record(row);
    }
}

qint64 RowStore::valueBytes() const
{
    qint64 total = 0;
    for (const Column &c : m_columns)
        total += c.bytes.size();
    return total;
}
