#pragma once

#include "resultprinter.h"

#include <QList>
#include <QString>

// An aligned grid for reading. Column widths come from the names and the first rows, held
// until LookAhead rows or HoldLimit bytes of their text are in, whichever comes first; a
// later, wider value overflows its cell on that row only. A value longer than CellLimit
// characters is cut there and ends in a marker giving its whole size, so neither a cell nor
// what is held grows with the values. NULL shows as NULL, numbers are aligned right, control
// characters show as escapes (\n, \t, \x01) and a BLOB as \x and its bytes in hex. Under the
// grid: "(N rows)".
class TablePrinter : public ResultPrinter
{
public:
    static constexpr int LookAhead = 1000;
    static constexpr qsizetype HoldLimit = 4 * 1024 * 1024;
    static constexpr qsizetype CellLimit = 1000;

    using ResultPrinter::ResultPrinter;

    void startTable(const QList<QByteArray> &columnNames) override;
    void startRecord() override;
    void value(const char *utf8, qsizetype size) override;
    void numberValue(const char *text, qsizetype size) override;
    void blobValue(const char *data, qsizetype size) override;
    void booleanValue(bool truth) override;
    void nullValue() override;
    void endRecord() override;

protected:
    void finish() override;

private:
    struct Cell
    {
        QString text;
        int width;
        bool number;
    };
    void add(const QString &text, bool number, qsizetype wholeBytes = -1);
    void printHeader();
    void printRow(const QList<Cell> &row);

    QList<Cell> m_names;
    QList<int> m_widths;
    QList<QList<Cell>> m_held;
    qsizetype m_heldBytes = 0;
    QList<Cell> m_row;
    bool m_started = false;
};
