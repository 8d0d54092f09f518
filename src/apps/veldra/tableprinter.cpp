#include "tableprinter.h"

#include "clitext.h"
#include "outputfile.h"
#include "textwidth.h"

namespace {

// Enough bytes of UTF-8 for CellLimit characters, ending where a character ends.
qsizetype utf8Prefix(const char *utf8, qsizetype size)
{
    qsizetype end = std::min(size, TablePrinter::CellLimit * 4);
    while (end < size && end > 0 && (static_cast<unsigned char>(utf8[end]) & 0xC0) == 0x80)
        --end;
    return end;
}

// The text as a cell shows it: escaped, and cut at CellLimit characters with a marker giving
// the whole size (wholeBytes, when text holds only the start of the value).
QString shownInCell(const QString &text, qsizetype wholeBytes = -1)
{
    QString shown = textwidth::visible(text);
    if (shown.size() <= TablePrinter::CellLimit && wholeBytes < 0)
        return shown;
    qsizetype cut = std::min(shown.size(), TablePrinter::CellLimit);
    if (cut > 0 && shown.at(cut - 1).isHighSurrogate())
        --cut;
    shown.truncate(cut);
    return shown + QStringLiteral("…[%1 bytes]").arg(wholeBytes >= 0 ? wholeBytes : text.toUtf8().size());
}

} // namespace

void TablePrinter::startTable(const QList<QByteArray> &columnNames)
{
    for (const QByteArray &name : columnNames) {
        const QString text = shownInCell(QString::fromUtf8(name));
        m_names.append({text, textwidth::displayWidth(text), false});
        m_widths.append(m_names.constLast().width);
    }
}

void TablePrinter::startRecord()
{
    m_row.clear();
}

void TablePrinter::add(const QString &text, bool number, qsizetype wholeBytes)
{
    const QString shown = shownInCell(text, wholeBytes);
    m_row.append({shown, textwidth::displayWidth(shown), number});
}

void TablePrinter::value(const char *utf8, qsizetype size)
{
    const qsizetype prefix = utf8Prefix(utf8, size);
    add(QString::fromUtf8(utf8, prefix), false, prefix < size ? size : -1);
}

void TablePrinter::numberValue(const char *text, qsizetype size)
{
    add(QString::fromLatin1(text, size), true);
}

void TablePrinter::blobValue(const char *data, qsizetype size)
{
    const qsizetype shown = std::min(size, CellLimit / 2);
    add(QStringLiteral("\\x") + QString::fromLatin1(QByteArray::fromRawData(data, shown).toHex()), false,
        shown < size ? size : -1);
}

void TablePrinter::booleanValue(bool truth)
{
    add(truth ? QStringLiteral("t") : QStringLiteral("f"), false);
}

void TablePrinter::nullValue()
{
    add(QStringLiteral("NULL"), false);
}

void TablePrinter::endRecord()
{
    if (m_started) {
        printRow(m_row);
        m_out.recordDone();
        return;
    }
    for (qsizetype i = 0; i < m_row.size() && i < m_widths.size(); ++i) {
        m_widths[i] = std::max(m_widths.at(i), m_row.at(i).width);
        m_heldBytes += m_row.at(i).text.size() * qsizetype(sizeof(QChar));
    }
    m_held.append(m_row);
    if (m_held.size() >= LookAhead || m_heldBytes >= HoldLimit)
        printHeader();
}

void TablePrinter::printHeader()
{
    m_started = true;
    printRow(m_names);
    QStringList rules;
    for (const int width : std::as_const(m_widths))
        rules.append(QString(width, u'-'));
    m_out.write(rules.join(QStringLiteral("-+-")).toUtf8());
    m_out.put('\n');
    for (const QList<Cell> &row : std::as_const(m_held))
        printRow(row);
    m_held.clear();
    m_heldBytes = 0;
    m_out.flush();
}

void TablePrinter::printRow(const QList<Cell> &row)
{
    QString line;
    for (qsizetype i = 0; i < row.size(); ++i) {
        const Cell &cell = row.at(i);
        const QString padding(std::max(0, m_widths.value(i) - cell.width), u' ');
        if (i > 0)
            line += QStringLiteral(" | ");
        // The last cell needs no padding; blanks of a value itself, leading or trailing, stay.
        line += cell.number ? padding + cell.text : i + 1 < row.size() ? cell.text + padding : cell.text;
    }
    line += u'\n';
    m_out.write(line.toUtf8());
}

void TablePrinter::finish()
{
    if (!m_started)
        printHeader();
    m_out.write(rowCountLine(rows(), truncated() ? rowCap() : -1).toUtf8());
    m_out.put('\n');
    m_out.flush();
}
