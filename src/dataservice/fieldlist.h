#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace dataservice {

// The select list of a record request read as items: "expression [alias]", separated by
// commas outside parentheses and quotes.
class FieldList
{
public:
    static QStringList items(const QString &fields);

    // The name an item gives its column as written: its alias (after a blank, with or without
    // AS), else the last part of a dotted column reference; empty when it has neither or the
    // name is quoted.
    static QString writtenName(const QString &item);

    // Result column names with each one the engine folded to lower case replaced by the
    // spelling of the request; names are kept as they are when the items cannot be matched
    // to the columns one to one (a "*" in the list).
    static QList<QByteArray> namesAsWritten(const QString &fields, const QList<QByteArray> &engineNames);
};

} // namespace dataservice
