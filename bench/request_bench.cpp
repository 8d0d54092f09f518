// The model rebuilds its request on every keystroke in a parameter input: shown next to handing
// the finished text on, and the condition must stay linear in its size.

#include "summaryreporter.h"

#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/requestbuilder.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/tableinfo.h"

using namespace veldra;

namespace {

std::shared_ptr<TableInfo> table(const QString &name, int columns)
{
    auto table = std::make_shared<TableInfo>();
    table->setTableName(name);
    for (int c = 0; c < columns; ++c) {
        auto column = std::make_shared<ColumnInfo>();
        column->setTable(name);
        column->setExpress(QStringLiteral("col_%1").arg(c));
        column->setAlias(c % 2 ? QStringLiteral("%1 %2").arg(name).arg(c) : QString());
        table->columns()->setObject(column->express(), column);
    }
    return table;
}

// 3 tables, 10 selections, a 200-character condition with 5 references.
std::shared_ptr<SQLInfo> typicalDefinition()
{
    auto query = std::make_shared<SQLInfo>();
    query->dbInfo()->setProvider(QStringLiteral("SQLite"));
    query->dbInfo()->setDsn(QStringLiteral("Sample"));
    query->dbInfo()->setCatalog(QStringLiteral("main"));
    for (const char *name : { "orders", "customers", "regions" })
        query->tables()->setObject(QString::fromLatin1(name), table(QString::fromLatin1(name), 8));
    for (int p = 1; p <= 5; ++p) {
        auto parameter = std::make_shared<ParamInfo>();
        parameter->setParamName(QStringLiteral("@@@P%1").arg(p));
        parameter->setTitle(QStringLiteral("Parameter %1").arg(p));
        query->parameters()->setObject(parameter->paramName(), parameter);
    }
    query->setCondition(QStringLiteral("orders.customer_id = customers.id AND customers.region_code = regions.code "
                                       "AND regions.code = @@@P1 AND orders.amount >= @@@P2 AND orders.amount < @@@P3 "
                                       "AND orders.status <> @@@P4 AND orders.order_date >= @@@P5"));
    query->setUseOrderBy(true);
    auto order = std::make_shared<OrderInfo>();
    order->setColumn(QStringLiteral("orders.amount"));
    query->orderBy()->append(order);
    query->setTopN(100);
    return query;
}

QString typicalSelection()
{
    return QStringLiteral("orders.col_0,orders 1,orders.col_2,orders 3,customers.col_0,customers 1,"
                          "customers.col_4,regions.col_0,regions 1,regions.col_2");
}

struct HostedModel
{
    HostedModel()
    {
        model.zetPrimitiveModel_SetModel(host);
        model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
        host->setSlotValue(QStringLiteral("SQLInfo"), tessaly::variant::holding(typicalDefinition()));
        host->setSlotValue(QStringLiteral("selection"), typicalSelection());
        for (int p = 1; p <= 5; ++p)
            host->setSlotValue(QStringLiteral("@@@P%1").arg(p), QStringLiteral("'value %1'").arg(p));
    }
    TsyParamConditionModel model;
    std::shared_ptr<tessaly::ModelHost> host = std::make_shared<tessaly::ModelHost>(&model);
};

// One keystroke: the framework writes the parameter slot, the model rebuilds and publishes.
void BM_RebuildThroughSlotWrite(benchmark::State &state)
{
    HostedModel hosted;
    const QString values[] = { QStringLiteral("'NE'"), QStringLiteral("'NW'") };
    int i = 0;
    for (auto _ : state) {
        hosted.host->setSlotValue(QStringLiteral("@@@P1"), values[i++ & 1]);
    }
}

// Handing the finished text on: a copy of its characters.
void BM_CopyRequestText(benchmark::State &state)
{
    HostedModel hosted;
    const QString text = hosted.host->slotValue(QStringLiteral("request")).value<tessaly::RequestRef>()->text();
    for (auto _ : state) {
        QString copy(text.constData(), text.size());
        benchmark::DoNotOptimize(copy.data());
    }
    state.counters["chars"] = double(text.size());
}

// A condition of scale MiB (as UTF-16 units / 2^20) with 10,000 references per MiB.
struct LargeCondition
{
    explicit LargeCondition(int scale)
    {
        const int references = 10000 * scale;
        const qsizetype target = qsizetype(scale) * 1024 * 1024;
        const qsizetype stretch = target / references - 8;
        const QString filler = QString(stretch, u'x').replace(0, 4, QStringLiteral("a = "));
        condition.reserve(target + 64);
        for (int r = 0; r < references; ++r) {
            condition += filler;
            condition += QStringLiteral("@@@P%1 ").arg(r % 50);
        }
        for (int p = 0; p < 50; ++p)
            values.setText(QStringLiteral("@@@P%1").arg(p), QStringLiteral("'v%1'").arg(p));
        query.setCondition(condition);
    }
    QString condition;
    SQLInfo query;
    tessaly::NameMap values;
};

const LargeCondition &largeCondition(int scale)
{
    static const LargeCondition one(1);
    static const LargeCondition two(2);
    return scale == 1 ? one : two;
}

void BM_ConditionBlock(benchmark::State &state)
{
    const LargeCondition &large = largeCondition(int(state.range(0)));
    RequestInputs inputs;
    inputs.query = &large.query;
    inputs.parameters = &large.values;
    for (auto _ : state)
        benchmark::DoNotOptimize(RequestBuilder(inputs).conditionBlock());
    state.counters["chars"] = double(large.condition.size());
}

// The baseline: one pass of indexOf("@@@") over the same text, visiting every occurrence.
void BM_IndexOfPass(benchmark::State &state)
{
    const LargeCondition &large = largeCondition(int(state.range(0)));
    for (auto _ : state) {
        qsizetype found = 0;
        for (qsizetype at = large.condition.indexOf(QLatin1String("@@@")); at >= 0;
             at = large.condition.indexOf(QLatin1String("@@@"), at + 3))
            ++found;
        benchmark::DoNotOptimize(found);
    }
}

} // namespace

BENCHMARK(BM_RebuildThroughSlotWrite);
BENCHMARK(BM_CopyRequestText);

int main(int argc, char **argv)
{
    // Growth is judged on the best of ten runs of each size, the sizes taking turns: a spell of
    // load on the machine then falls on both alike, where runs of one size after the other could
    // put all of it on one of them.
    for (int round = 0; round < 10; ++round) {
        for (const int scale : { 1, 2 }) {
            benchmark::RegisterBenchmark("BM_ConditionBlock", BM_ConditionBlock)->Arg(scale)->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark("BM_IndexOfPass", BM_IndexOfPass)->Arg(scale)->Unit(benchmark::kMillisecond);
        }
    }
    SummaryReporter reporter;
    if (!reporter.runBenchmarks(argc, argv))
        return 1;

    std::printf("\nRatios (best CPU time)\n");
    SummaryReporter::printRatio("rebuild / copy of request text", reporter.best("BM_RebuildThroughSlotWrite"),
                                reporter.best("BM_CopyRequestText"), 0.0);
    SummaryReporter::printRatio("1 MiB condition / indexOf pass", reporter.best("BM_ConditionBlock/1"),
                                reporter.best("BM_IndexOfPass/1"), 10.0);
    SummaryReporter::printRatio("2 MiB condition / indexOf pass", reporter.best("BM_ConditionBlock/2"),
                                reporter.best("BM_IndexOfPass/2"), 10.0);
    SummaryReporter::printRatio("condition 2x / 1x", reporter.best("BM_ConditionBlock/2"),
                                reporter.best("BM_ConditionBlock/1"), 2.2);
    SummaryReporter::printRatio("indexOf pass 2x / 1x", reporter.best("BM_IndexOfPass/2"),
                                reporter.best("BM_IndexOfPass/1"), 0.0);
    return 0;
}
