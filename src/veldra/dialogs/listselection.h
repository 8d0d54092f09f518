#pragma once

#include <QStringList>

namespace veldra {

// The entry a list selects once the entry at `row` is deleted: the one below it, otherwise the
// one above it, otherwise none (""). `entries` is the list before the delete, in its order; a
// row outside it selects nothing.
QString selectionAfterDelete(const QStringList &entries, int row);

} // namespace veldra
