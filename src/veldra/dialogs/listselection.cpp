#include "veldra/dialogs/listselection.h"

namespace veldra {

QString selectionAfterDelete(const QStringList &entries, int row)
{
    if (row < 0 || row >= entries.size())
        return {};
    if (row + 1 < entries.size())
        return entries.at(row + 1);
    if (entries.size() >= 2)
        return entries.at(row - 1);
    return {};
}

} // namespace veldra
