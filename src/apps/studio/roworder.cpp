#include "roworder.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

namespace roworder {

namespace {

using Kind = RowStore::Kind;

int rank(Kind kind)
{
    switch (kind) {
    case Kind::Null: return 0;
    case Kind::Number:
    case Kind::Boolean: return 1;
    case Kind::Text: return 2;
    case Kind::Blob: return 3;
    }
    return 0;
}

char folded(char c)
{
    return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}

// UTF-8 bytes order as the characters they spell; A-Z and a-z meet first, and only then does
// case decide.
int compareText(QByteArrayView a, QByteArrayView b)
{
    const qsizetype common = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(folded(a[i]));
        const auto y = static_cast<unsigned char>(folded(b[i]));
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    const int bytes = std::memcmp(a.data(), b.data(), size_t(common));
    return bytes < 0 ? -1 : (bytes > 0 ? 1 : 0);
}

// NaN, which some engines keep in a numeric column, above every other number.
int compareNumbers(double a, double b)
{
    const bool aNan = std::isnan(a);
    const bool bNan = std::isnan(b);
    if (aNan || bNan)
        return aNan == bNan ? 0 : (aNan ? 1 : -1);
    return a < b ? -1 : (b < a ? 1 : 0);
}

int compareCells(const RowStore &rows, int column, quint32 a, quint32 b)
{
    const int rankA = rank(rows.kind(a, column));
    const int rankB = rank(rows.kind(b, column));
    if (rankA != rankB)
        return rankA < rankB ? -1 : 1;
    switch (rankA) {
    case 1: return compareNumbers(rows.number(a, column), rows.number(b, column));
    case 2: return compareText(rows.bytes(a, column), rows.bytes(b, column));
    case 3: {
        const QByteArrayView x = rows.bytes(a, column);
        const QByteArrayView y = rows.bytes(b, column);
        const int bytes = std::memcmp(x.data(), y.data(), size_t(std::min(x.size(), y.size())));
        return bytes != 0 ? bytes : (x.size() < y.size() ? -1 : (x.size() > y.size() ? 1 : 0));
    }
    default: return 0;
    }
}

auto lessThan(const RowStore &rows, int column, Qt::SortOrder order)
{
    const int sign = order == Qt::AscendingOrder ? 1 : -1;
    return [&rows, column, sign](quint32 a, quint32 b) { return sign * compareCells(rows, column, a, b) < 0; };
}

// Numbers and NULLs only, no NaN: the values sort as plain doubles beside their rows.
bool onlyPlainNumbers(const RowStore &rows, int column, quint32 from)
{
    for (qsizetype row = from; row < rows.rowCount(); ++row) {
        const Kind kind = rows.kind(row, column);
        if (kind != Kind::Null && (kind != Kind::Number || std::isnan(rows.number(row, column))))
            return false;
    }
    return true;
}

std::vector<quint32> sortedNumbers(const RowStore &rows, int column, Qt::SortOrder order, quint32 from)
{
    std::vector<quint32> nulls;
    std::vector<std::pair<double, quint32>> numbers;
    numbers.reserve(size_t(rows.rowCount() - from));
    for (quint32 row = from; row < quint32(rows.rowCount()); ++row) {
        if (rows.kind(row, column) == Kind::Null)
            nulls.push_back(row);
        else
            numbers.emplace_back(rows.number(row, column), row);
    }
    if (order == Qt::AscendingOrder)
        std::stable_sort(numbers.begin(), numbers.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    else
        std::stable_sort(numbers.begin(), numbers.end(), [](const auto &a, const auto &b) { return b.first < a.first; });
    std::vector<quint32> result;
    if (order == Qt::AscendingOrder)
        result = std::move(nulls);
    result.reserve(result.size() + numbers.size() + nulls.size());
    for (const auto &number : numbers)
        result.push_back(number.second);
    if (order == Qt::DescendingOrder)
        result.insert(result.end(), nulls.begin(), nulls.end());
    return result;
}

} // namespace

std::vector<quint32> sorted(const RowStore &rows, int column, Qt::SortOrder order, quint32 from)
{
    if (onlyPlainNumbers(rows, column, from))
        return sortedNumbers(rows, column, order, from);
    std::vector<quint32> result(size_t(rows.rowCount() - from));
    std::iota(result.begin(), result.end(), from);
    std::stable_sort(result.begin(), result.end(), lessThan(rows, column, order));
    return result;
}

void merge(std::vector<quint32> &sortedRows, const std::vector<quint32> &later, const RowStore &rows, int column,
           Qt::SortOrder order)
{
    std::vector<quint32> merged;
    merged.reserve(sortedRows.size() + later.size());
    std::merge(sortedRows.begin(), sortedRows.end(), later.begin(), later.end(), std::back_inserter(merged),
               lessThan(rows, column, order));
    sortedRows.swap(merged);
}

} // namespace roworder
