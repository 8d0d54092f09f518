#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <optional>

// The rows of a record response, read back for printing.
class ResultSet
{
public:
    // Raises tessaly::Error when the response is not a record response.
    static ResultSet fromResponse(const QByteArray &response);

    QStringList columns;
    QList<QList<std::optional<QString>>> rows; // nullopt is NULL
    bool truncated = false;
    qint64 rowCap = 0;

    QString toTable() const;
    QString toCsv() const;
    QString toJson() const;
};
