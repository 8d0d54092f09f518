#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace dataservice {

// A request document read into its parts. Navigation requests ("<content>column</content>")
// list one level of the structure; record requests ("<content>record<field>...") run a query.
struct Request
{
    enum class Kind { Navigation, Record };
    enum class Level { Providers, DataSources, Catalogs, Tables, Columns };

    Kind kind = Kind::Navigation;
    QString provider;
    QString dsn;
    QString catalog;
    QString table;

    QString fields;
    QString condition;
    QString group;
    QString order;
    std::optional<qint64> rowCount;

    // The level a navigation request asks for: one past the last target value given.
    Level level() const;

    // Throws tessaly::Error(MalformedRequest) saying what is wrong and where.
    static Request parse(const QByteArray &xml);
};

} // namespace dataservice
