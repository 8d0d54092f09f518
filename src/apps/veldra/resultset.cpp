#include "resultset.h"

#include "tessaly/error.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

namespace {

QString cellText(const std::optional<QString> &value)
{
    return value ? *value : QStringLiteral("NULL");
}

QString csvField(const QString &text)
{
    if (!text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n') && !text.contains(u'\r'))
        return text;
    QString quoted = text;
    quoted.replace(u'"', QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

// Display width of a text in a terminal: East Asian wide characters take two cells.
int displayWidth(const QString &text)
{
    int width = 0;
    for (const uint code : text.toUcs4()) {
        const bool wide = (code >= 0x1100 && code <= 0x115F) || (code >= 0x2E80 && code <= 0xA4CF)
                || (code >= 0xAC00 && code <= 0xD7A3) || (code >= 0xF900 && code <= 0xFAFF)
                || (code >= 0xFE30 && code <= 0xFE4F) || (code >= 0xFF00 && code <= 0xFF60)
                || (code >= 0xFFE0 && code <= 0xFFE6) || (code >= 0x1F300 && code <= 0x1FAFF)
                || (code >= 0x20000 && code <= 0x3FFFD);
        width += wide ? 2 : 1;
    }
    return width;
}

QString padded(const QString &text, int width)
{
    return text + QString(width - displayWidth(text), u' ');
}

} // namespace

// One <record>: its fields in order; the first record also names the columns.
static QList<std::optional<QString>> readRecord(QXmlStreamReader &xml, ResultSet &result)
{
    QList<std::optional<QString>> row;
    const bool namesColumns = result.rows.isEmpty();
    while (xml.readNext() != QXmlStreamReader::EndElement || xml.name() != u"record") {
        if (xml.atEnd())
            break;
        if (xml.tokenType() != QXmlStreamReader::StartElement || xml.name() != u"field")
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        const bool isNull = attributes.value(QLatin1String("null")) == u"true";
        if (namesColumns)
            result.columns.append(attributes.value(QLatin1String("name")).toString());
        const QString text = xml.readElementText();
        row.append(isNull ? std::nullopt : std::optional<QString>(text));
    }
    return row;
}

ResultSet ResultSet::fromResponse(const QByteArray &response)
{
    ResultSet result;
    QXmlStreamReader xml(response);
    bool sawTable = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"table") {
            sawTable = true;
        } else if (xml.name() == u"record") {
            result.rows.append(readRecord(xml, result));
        } else if (xml.name() == u"result") {
            result.truncated = xml.attributes().value(QLatin1String("truncated")) == u"true";
            result.rowCap = xml.attributes().value(QLatin1String("rowcap")).toLongLong();
        }
    }
    if (xml.hasError())
        throw tessaly::Error(tessaly::ErrorNumber::BadFileFormat, QStringLiteral("response:%1:%2: %3")
                                                                          .arg(xml.lineNumber())
                                                                          .arg(xml.columnNumber())
                                                                          .arg(xml.errorString()));
    if (!sawTable)
        throw tessaly::Error(tessaly::ErrorNumber::BadFileFormat, QStringLiteral("the response holds no table of records"));
    return result;
}

QString ResultSet::toTable() const
{
    QList<int> widths;
    for (const QString &column : columns)
        widths.append(displayWidth(column));
    for (const auto &row : rows) {
        for (qsizetype i = 0; i < row.size() && i < widths.size(); ++i)
            widths[i] = std::max(widths[i], displayWidth(cellText(row.at(i))));
    }
    QString out;
    auto line = [&](const QStringList &cells) {
        QStringList paddedCells;
        for (qsizetype i = 0; i < cells.size(); ++i)
            paddedCells.append(padded(cells.at(i), widths.value(i)));
        out += paddedCells.join(QStringLiteral(" | ")).trimmed() + u'\n';
    };
    if (!columns.isEmpty()) {
        line(columns);
        QStringList rules;
        for (const int width : widths)
            rules.append(QString(width, u'-'));
        out += rules.join(QStringLiteral("-+-")) + u'\n';
    }
    for (const auto &row : rows) {
        QStringList cells;
        for (const auto &value : row)
            cells.append(cellText(value));
        line(cells);
    }
    out += QStringLiteral("(%1 row%2%3)\n")
                   .arg(rows.size())
                   .arg(rows.size() == 1 ? QString() : QStringLiteral("s"))
                   .arg(truncated ? QStringLiteral(", cut at the data source's row cap of %1").arg(rowCap) : QString());
    return out;
}

QString ResultSet::toCsv() const
{
    QString out;
    QStringList header;
    for (const QString &column : columns)
        header.append(csvField(column));
    out += header.join(u',') + QStringLiteral("\r\n");
    for (const auto &row : rows) {
        QStringList cells;
        for (const auto &value : row)
            cells.append(value ? csvField(*value) : QString());
        out += cells.join(u',') + QStringLiteral("\r\n");
    }
    return out;
}

QString ResultSet::toJson() const
{
    QJsonArray array;
    for (const auto &row : rows) {
        QJsonObject object;
        for (qsizetype i = 0; i < row.size() && i < columns.size(); ++i)
            object.insert(columns.at(i), row.at(i) ? QJsonValue(*row.at(i)) : QJsonValue(QJsonValue::Null));
        array.append(object);
    }
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Indented));
}
