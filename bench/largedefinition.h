#pragma once

// A bare definition that grows in one direction: list parameters, all referenced by the
// condition, or selected columns of one table (every third with an alias).

#include "veldra/records/definitionfile.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"

#include <QStringList>

inline QByteArray largeDefinition(int listParameters, int selectedColumns)
{
    using namespace veldra;
    SQLInfo query;
    query.dbInfo()->setProvider(QStringLiteral("SQLite"));
    query.dbInfo()->setDsn(QStringLiteral("Sample"));
    query.dbInfo()->setCatalog(QStringLiteral("main"));
    auto table = std::make_shared<TableInfo>();
    table->setTableName(QStringLiteral("wide"));
    for (int c = 0; c < selectedColumns; ++c) {
        auto column = std::make_shared<ColumnInfo>();
        column->setTable(table->tableName());
        column->setExpress(QStringLiteral("c%1").arg(c));
        if (c % 3 == 0)
            column->setAlias(QStringLiteral("Column%1").arg(c));
        table->columns()->setObject(column->express(), column);
        query.selections()->append(column->GetSelectionName());
    }
    query.tables()->setObject(table->tableName(), table);

    QStringList condition;
    for (int p = 0; p < listParameters; ++p) {
        auto parameter = std::make_shared<ParamInfo>();
        parameter->setParamType(ParamInfo::ChosenFromList);
        parameter->setParamName(QStringLiteral("@@@P%1").arg(p));
        parameter->setTitle(QStringLiteral("Parameter %1").arg(p));
        parameter->selections()->setText(QStringLiteral("'a'"), QStringLiteral("A"));
        parameter->selections()->setText(QStringLiteral("'b'"), QStringLiteral("B"));
        query.parameters()->setObject(parameter->paramName(), parameter);
        condition.append(QStringLiteral("wide.c0 <> ") + parameter->paramName());
    }
    query.setCondition(condition.join(QStringLiteral(" AND ")));
    return writeDefinition(query);
}
