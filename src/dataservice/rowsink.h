#pragma once

#include <QByteArray>
#include <QList>

namespace dataservice {

// Receives the result of a record request while the backend reads it, one value at a time,
// so nothing holds the whole result. Values come as the engine's own UTF-8 text; the calls
// follow startTable (startRecord value... endRecord)* endTable. Any call may throw to stop
// the statement.
class RowSink
{
public:
    virtual ~RowSink();

    virtual void startTable(const QList<QByteArray> &columnNames) = 0;
    virtual void startRecord() = 0;
    virtual void value(const char *utf8, qsizetype size) = 0;
    // A value the engine holds as a number (integer, floating point, decimal), as it prints it.
    virtual void numberValue(const char *text, qsizetype size) = 0;
    // A value the engine holds as a Boolean (PostgreSQL's boolean; SQLite has none).
    virtual void booleanValue(bool value) = 0;
    virtual void blobValue(const char *data, qsizetype size) = 0;
    virtual void nullValue() = 0;
    virtual void endRecord() = 0;
    // truncated: the data source's row cap cut the result; there were more rows than rowCap.
    virtual void endTable(qint64 rows, bool truncated, qint64 rowCap) = 0;
};

} // namespace dataservice
