#pragma once

#include "rowstore.h"

#include <Qt>

#include <vector>

// The order of an answer's rows by one column, as a header click sorts them: NULL first, then
// numbers and Booleans by value, then text by its characters ignoring the case of A-Z, then
// BLOBs by their bytes; descending is the reverse. Rows that compare equal keep the order the
// engine gave them.
namespace roworder {

// The rows from `from` to the last, sorted.
std::vector<quint32> sorted(const RowStore &rows, int column, Qt::SortOrder order, quint32 from = 0);

// Joins rows sorted the same way, later ones after equal earlier ones.
void merge(std::vector<quint32> &sortedRows, const std::vector<quint32> &later, const RowStore &rows, int column,
           Qt::SortOrder order);

} // namespace roworder
