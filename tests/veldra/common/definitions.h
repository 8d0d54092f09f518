#pragma once

// Small builders for query definitions in tests.

#include "tessaly/xmltagreader.h"
#include "tessaly/xmltagwriter.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"

#include <QStringList>

namespace testdefs {

using namespace veldra;

inline std::shared_ptr<ColumnInfo> column(const QString &table, const QString &name, const QString &alias = {})
{
    auto column = std::make_shared<ColumnInfo>();
    column->setTable(table);
    column->setExpress(name);
    column->setAlias(alias);
    return column;
}

inline std::shared_ptr<ColumnInfo> expression(const QString &text, const QString &alias = {})
{
    auto column = std::make_shared<ColumnInfo>();
    column->setColumnType(ColumnInfo::Expression);
    column->setExpress(text);
    column->setAlias(alias);
    return column;
}

// Adds a table whose columns are given as "name" or "name=Alias".
inline std::shared_ptr<TableInfo> addTable(SQLInfo &query, const QString &name, const QStringList &columns)
{
    auto table = std::make_shared<TableInfo>();
    table->setTableName(name);
    for (const QString &entry : columns) {
        const QStringList parts = entry.split(u'=');
        table->columns()->setObject(parts.at(0), column(name, parts.at(0), parts.value(1)));
    }
    query.tables()->setObject(name, table);
    return table;
}

inline void addExpression(SQLInfo &query, const QString &text, const QString &alias = {})
{
    query.expressions()->setObject(text, expression(text, alias));
}

inline void setDatabase(SQLInfo &query, const QString &provider, const QString &dsn, const QString &catalog)
{
    query.dbInfo()->setProvider(provider);
    query.dbInfo()->setDsn(dsn);
    query.dbInfo()->setCatalog(catalog);
}

inline void select(SQLInfo &query, const QStringList &selections)
{
    for (const QString &selection : selections)
        query.selections()->append(selection);
}

// A parameter record; its selection values are given as "value=name,value=name".
inline std::shared_ptr<ParamInfo> parameter(const QString &name, qint32 type, const QString &title,
                                            const QString &pairs = {})
{
    auto result = std::make_shared<ParamInfo>();
    result->setParamName(name);
    result->setParamType(type);
    result->setTitle(title);
    for (const QString &pair : pairs.split(',', Qt::SkipEmptyParts))
        result->selections()->setText(pair.section('=', 0, 0), pair.section('=', 1));
    return result;
}

inline std::shared_ptr<ParamInfo> addParameter(SQLInfo &query, const QString &name, const QString &title,
                                               qint32 type = ParamInfo::TypedIn)
{
    auto added = parameter(name, type, title);
    query.parameters()->setObject(name, added);
    return added;
}

// The keys of a map in order.
inline QStringList keys(const tessaly::NameMap &map)
{
    QStringList list;
    for (int i = 0; i < map.count(); ++i)
        list.append(map.key(i));
    return list;
}

// A map's entries in order as "key=value,key=value".
inline QString pairs(const tessaly::NameMap &map)
{
    QStringList list;
    for (int i = 0; i < map.count(); ++i)
        list.append(map.key(i) + '=' + map.item(i).toString());
    return list.join(',');
}

inline QByteArray save(tessaly::zetVariable &variable)
{
    QByteArray xml;
    tessaly::XmlTagWriter writer(&xml);
    variable.zetVariable_Write(writer);
    writer.finish();
    return xml;
}

template<typename T>
void load(T &variable, const QByteArray &xml)
{
    tessaly::XmlTagReader reader(xml, QStringLiteral("test"));
    variable.zetVariable_Read(reader);
    reader.finish();
}

} // namespace testdefs
