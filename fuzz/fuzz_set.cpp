// What a person gives a host by name, as `--set NAME=VALUE` does: each line of the input is an
// assignment, split at its first "=" as the command line splits it, and goes to the component
// through the host's check of inputs, whatever it holds. Then two promises are checked:
// - a request the host lets through (no missing piece, no missing value, no character XML
//   cannot carry) is well-formed XML with <query> at its root;
// - what the model saves loads again into a new model and saves to the same bytes.
// The component starts from a definition with every kind of run-time input: a list parameter,
// a typed-in one, the row count and the ordering, aliased columns and an expression.

#include "fuzzcheck.h"

#include <host/componentsession.h>
#include <tessaly/componentdocument.h>
#include <tessaly/error.h>
#include <tessaly/modelhost.h>
#include <veldra/component/tsyparamconditionmodel.h>
#include <veldra/records/paraminfo.h>
#include <veldra/records/sqlinfo.h>
#include <veldra/records/tableinfo.h>

#include <QXmlStreamReader>

#include <cstdint>

namespace {

using namespace veldra;

std::shared_ptr<ColumnInfo> item(const QString &table, const QString &text, const QString &alias)
{
    auto column = std::make_shared<ColumnInfo>();
    column->setTable(table);
    column->setColumnType(table.isEmpty() ? ColumnInfo::Expression : ColumnInfo::TableColumn);
    column->setExpress(text);
    column->setAlias(alias);
    return column;
}

std::shared_ptr<SQLInfo> definition()
{
    auto query = std::make_shared<SQLInfo>();
    query->dbInfo()->setProvider(QStringLiteral("SQLite"));
    query->dbInfo()->setDsn(QStringLiteral("Sample"));
    query->dbInfo()->setCatalog(QStringLiteral("main"));
    auto regions = std::make_shared<TableInfo>();
    regions->setTableName(QStringLiteral("regions"));
    regions->columns()->setObject(QStringLiteral("code"), item(regions->tableName(), QStringLiteral("code"), {}));
    regions->columns()->setObject(QStringLiteral("name"),
                                  item(regions->tableName(), QStringLiteral("name"), QStringLiteral("Region")));
    query->tables()->setObject(regions->tableName(), regions);
    query->expressions()->setObject(QStringLiteral("COUNT(*)"), item({}, QStringLiteral("COUNT(*)"), QStringLiteral("Orders")));
    for (const char *selection : { "regions.code", "regions.name", "COUNT(*)" })
        query->selections()->append(QString::fromLatin1(selection));

    auto region = std::make_shared<ParamInfo>();
    region->setParamType(ParamInfo::ChosenFromList);
    region->setParamName(QStringLiteral("@@@Region"));
    region->setTitle(QStringLiteral("Region"));
    region->selections()->setText(QStringLiteral("'NE'"), QStringLiteral("North East"));
    region->selections()->setText(QStringLiteral("'SW'"), QStringLiteral("South West"));
    query->parameters()->setObject(region->paramName(), region);
    auto from = std::make_shared<ParamInfo>();
    from->setParamName(QStringLiteral("@@@From"));
    from->setTitle(QStringLiteral("From"));
    query->parameters()->setObject(from->paramName(), from);
    query->setCondition(QStringLiteral("regions.code = @@@Region AND regions.name >= @@@From"));

    query->setTopN(10);
    query->setTopNAsParam(true);
    query->setUseOrderBy(true);
    query->setOrderByAsParam(true);
    query->setUseGroupBy(true);
    return query;
}

void checkWellFormed(const QString &request)
{
    QXmlStreamReader xml(request);
    bool root = true;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && root) {
            FUZZ_CHECK(xml.name() == u"query", "the request is not a <query>");
            root = false;
        }
    }
    FUZZ_CHECK(!xml.hasError(), "a request let through is not well-formed XML");
}

void checkSavedLoadsAgain(tessaly::zetPrimitiveModel &model)
{
    const QByteArray saved = tessaly::ComponentDocument::save(model);
    TsyParamConditionModel reloaded;
    auto site = std::make_shared<tessaly::ModelHost>(&reloaded);
    reloaded.zetPrimitiveModel_SetModel(site);
    reloaded.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
    try {
        tessaly::ComponentDocument::load(saved, QStringLiteral("saved"), reloaded);
    } catch (const tessaly::Error &) {
        FUZZ_CHECK(false, "what the model saved does not load");
    }
    FUZZ_CHECK(tessaly::ComponentDocument::save(reloaded) == saved, "what the model saved loads into something else");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    host::ComponentSession session;
    session.useDefinition(definition());
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const QString &assignment : input.split(u'\n')) {
        const qsizetype equals = assignment.indexOf(u'=');
        if (equals <= 0)
            continue; // the command line refuses it before the component sees it
        try {
            session.setInput(assignment.left(equals), assignment.mid(equals + 1));
        } catch (const tessaly::Error &) {
            // refused with a message: the component keeps what it had
        }
    }
    try {
        const host::CurrentRequest request = session.request();
        if (request.ready())
            checkWellFormed(request.text);
    } catch (const tessaly::Error &) {
        // a character XML cannot carry, named with where it is
    }
    checkSavedLoadsAgain(*session.model());
    return 0;
}
