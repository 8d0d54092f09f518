#include "tableprinter.h"

#include "clitext.h"
#include "outputfile.h"
#include "textwidth.h"

void TablePrinter::startTable(const QList<QByteArray> &columnNames)
{
    for (const QByteArray &name : columnNames) {
        const QString text = textwidth::visible(QString::fromUtf8(name));
        m_names.append({text, textwidth::displayWidth(text), false});
        m_widths.append(m_names.constLast().width);
    }
}

void TablePrinter::startRecord()
{
    m_row.clear();
}

void TablePrinter::add(const QString &text, bool number)
{
    const QString shown = textwidth::visible(text);
    m_row.append({shown, textwidth::displayWidth(shown), number});
}

void TablePrinter::value(const char *utf8, qsizetype size)
{
    add(QString::fromUtf8(utf8, size), false);
}

void TablePrinter::numberValue(const char *text, qsizetype size)
{
    add(QString::fromLatin1(text, size), true);
}

void TablePrinter::blobValue(const char *data, qsizetype size)
{
    add(QStringLiteral("\\x") + QString::fromLatin1(QByteArray::fromRawData(data, size).toHex()), false);
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
    for (qsizetype i = 0; i < m_row.size() && i < m_widths.size(); ++i)
        m_widths[i] = std::max(m_widths.at(i), m_row.at(i).width);
    m_held.append(m_row);
    if (m_held.size() >= LookAhead)
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
