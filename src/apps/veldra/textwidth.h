#pragma once

#include <QString>

// How text looks in a terminal cell by cell.
namespace textwidth {

// Columns the text takes: per grapheme cluster, 2 for East Asian wide and fullwidth
// characters, 0 for a cluster of marks or format characters only, else 1.
int displayWidth(const QString &text);

// The text with every control character shown as an escape (\n, \t, \r, \xNN, \u0085), so
// one value stays on one line of a grid.
QString visible(const QString &text);

} // namespace textwidth
