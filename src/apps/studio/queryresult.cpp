#include "queryresult.h"

#include <QXmlStreamReader>

QueryResult QueryResult::fromResponse(const QByteArray &response)
{
    QueryResult result;
    QXmlStreamReader xml(response);
    bool sawTable = false;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == u"table") {
            sawTable = true;
        } else if (xml.name() == u"record") {
            const bool namesColumns = result.rows.isEmpty();
            QStringList row;
            QList<bool> nulls;
            while (!xml.atEnd() && !(xml.readNext() == QXmlStreamReader::EndElement && xml.name() == u"record")) {
                if (xml.tokenType() != QXmlStreamReader::StartElement || xml.name() != u"field")
                    continue;
                if (namesColumns)
                    result.columns.append(xml.attributes().value(QLatin1String("name")).toString());
                nulls.append(xml.attributes().value(QLatin1String("null")) == u"true");
                row.append(xml.readElementText());
            }
            result.rows.append(row);
            result.nulls.append(nulls);
        } else if (xml.name() == u"result") {
            result.truncated = xml.attributes().value(QLatin1String("truncated")) == u"true";
        }
    }
    if (xml.hasError())
        result.error = QStringLiteral("response %1:%2: %3").arg(xml.lineNumber()).arg(xml.columnNumber()).arg(xml.errorString());
    else if (!sawTable)
        result.error = QStringLiteral("the response holds no table of records");
    return result;
}
