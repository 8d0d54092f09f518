#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QStringList>

// The rows of one answer of the data service, as the studio shows them.
struct QueryResult
{
    QStringList columns;
    QList<QStringList> rows;
    QList<QList<bool>> nulls; // per row, which fields are NULL
    bool truncated = false;
    QString error; // empty when the service answered with rows

    // A response that is not a table of records gives a result with an error.
    static QueryResult fromResponse(const QByteArray &response);
};

Q_DECLARE_METATYPE(QueryResult)
