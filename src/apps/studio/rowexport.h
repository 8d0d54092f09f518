#pragma once

#include <QString>

#include <vector>

class RowStore;

// Writes rows to a file in the format `veldra run --format` names (csv or json), through the
// same writers, so the file holds the bytes `veldra run` prints for the same rows. The file is
// written aside and renamed. Raises tessaly::Error naming the file when it cannot be written.
void exportRows(const RowStore &rows, const std::vector<quint32> &order, bool truncated, qint64 rowCap,
                const QString &format, const QString &fileName);
