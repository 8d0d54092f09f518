// Loading and saving a large query definition, against bare QXmlStreamReader/QXmlStreamWriter
// passes over the same document measured in the same run. The records, the NameMap and the
// tagged stream should cost a small constant factor over the XML work itself (at most 3x), and
// doubling the definition should no more than double the time (2.2x allowing for caches).

#include "summaryreporter.h"

#include "veldra/records/definitionfile.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/tableinfo.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

struct Size
{
    const char *label;
    int tables;
    int expressions;
    int parameters;
};

constexpr int columnsPerTable = 40;
constexpr int selectionsPerParameter = 10;
constexpr int orderItems = 20;

constexpr Size sizes[] = {
    { "1x", 500, 200, 500 },
    { "2x", 1000, 400, 1000 },
};

QString tableName(int t)
{
    return QStringLiteral("sales_%1").arg(t, 4, 10, QLatin1Char('0'));
}

QString columnName(int c)
{
    return QStringLiteral("col_%1").arg(c, 2, 10, QLatin1Char('0'));
}

std::shared_ptr<veldra::SQLInfo> makeDefinition(const Size &size)
{
    auto query = std::make_shared<veldra::SQLInfo>();
    query->dbInfo()->setProvider(QStringLiteral("PostgreSQL"));
    query->dbInfo()->setDsn(QStringLiteral("warehouse"));
    query->dbInfo()->setCatalog(QStringLiteral("reporting"));

    for (int t = 0; t < size.tables; ++t) {
        auto table = std::make_shared<veldra::TableInfo>();
        table->setTableName(tableName(t));
        table->setDbInfo(query->dbInfo());
        for (int c = 0; c < columnsPerTable; ++c) {
            auto column = std::make_shared<veldra::ColumnInfo>();
            column->setTable(table->tableName());
            column->setExpress(columnName(c));
            if (c % 4 == 0)
                column->setAlias(QStringLiteral("Column %1 of %2").arg(c).arg(t));
            table->columns()->setObject(column->express(), column);
        }
        query->tables()->setObject(table->tableName(), table);
        query->selections()->append(tableName(t) + QStringLiteral(".col_00"));
        query->selections()->append(tableName(t) + QStringLiteral(".col_01"));
        query->groupBy()->append(tableName(t) + QStringLiteral(".col_00"));
    }

    for (int e = 0; e < size.expressions; ++e) {
        auto expression = std::make_shared<veldra::ColumnInfo>();
        expression->setColumnType(veldra::ColumnInfo::Expression);
        expression->setExpress(
            QStringLiteral("SUM(%1.col_%2 * 1.08)").arg(tableName(e % size.tables)).arg(e % 40));
        expression->setAlias(QStringLiteral("Total %1").arg(e));
        query->expressions()->setObject(expression->express(), expression);
        query->selections()->append(expression->express());
    }

    QString condition;
    for (int p = 0; p < size.parameters; ++p) {
        auto parameter = std::make_shared<veldra::ParamInfo>();
        parameter->setParamType(veldra::ParamInfo::ChosenFromList);
        parameter->setParamName(QStringLiteral("@@@Choice%1").arg(p));
        parameter->setTitle(QStringLiteral("Choice number %1").arg(p));
        for (int s = 0; s < selectionsPerParameter; ++s)
            parameter->selections()->setText(
                QStringLiteral("'V%1'").arg(s), QStringLiteral("Value %1").arg(s));
        query->parameters()->setObject(parameter->paramName(), parameter);

        // A condition typed over several lines holds CR LF, so the save and load go through
        // the escaped form as they do for real users.
        if (p > 0)
            condition += p % 10 == 0 ? QStringLiteral("\r\nAND ") : QStringLiteral(" AND ");
        condition += QStringLiteral("%1.col_02 <> %2")
                         .arg(tableName(p % size.tables), parameter->paramName());
    }
    query->setCondition(condition);

    for (int o = 0; o < orderItems; ++o) {
        auto order = std::make_shared<veldra::OrderInfo>();
        order->setColumn(tableName(o) + QStringLiteral(".col_01"));
        order->setAscendant(o % 2 == 0);
        query->orderBy()->append(order);
    }
    query->setUseGroupBy(true);
    query->setUseOrderBy(true);
    query->setTopN(1000);
    return query;
}

// What a bare writer needs to produce the same document: element names, attributes and texts.
struct Token
{
    enum Kind { Start, Text, End } kind;
    QString name;
    QString text;
    QList<std::pair<QString, QString>> attributes;
};

std::vector<Token> recordTokens(const QByteArray &data)
{
    std::vector<Token> tokens;
    QHash<QString, QString> names; // shared, as a writer's element names would be
    const auto intern = [&names](QStringView name) {
        const QString key = name.toString();
        auto it = names.constFind(key);
        if (it == names.cend())
            it = names.insert(key, key);
        return *it;
    };
    QXmlStreamReader xml(data);
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::StartElement: {
            Token token { Token::Start, intern(xml.name()), {}, {} };
            for (const QXmlStreamAttribute &attribute : xml.attributes())
                token.attributes.append({ intern(attribute.name()), attribute.value().toString() });
            tokens.push_back(std::move(token));
            break;
        }
        case QXmlStreamReader::Characters:
            if (!xml.isWhitespace())
                tokens.push_back({ Token::Text, {}, xml.text().toString(), {} });
            break;
        case QXmlStreamReader::EndElement:
            tokens.push_back({ Token::End, {}, {}, {} });
            break;
        default:
            break;
        }
    }
    if (xml.hasError())
        qFatal("the saved definition does not parse: %s", qPrintable(xml.errorString()));
    return tokens;
}

QByteArray replayTokens(const std::vector<Token> &tokens)
{
    QByteArray out;
    QXmlStreamWriter xml(&out);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartDocument();
    const Token *previous = nullptr;
    for (const Token &token : tokens) {
        switch (token.kind) {
        case Token::Start:
            xml.writeStartElement(token.name);
            for (const auto &[name, value] : token.attributes)
                xml.writeAttribute(name, value);
            break;
        case Token::Text:
            xml.writeCharacters(token.text);
            break;
        case Token::End:
            // An empty value is written as <name></name>, as the tagged stream writes it.
            if (previous && previous->kind == Token::Start)
                xml.writeCharacters(QString());
            xml.writeEndElement();
            break;
        }
        previous = &token;
    }
    xml.writeEndDocument();
    return out;
}

// The least any loader does: every token, with its name and text looked at.
qsizetype bareParse(const QByteArray &data)
{
    qsizetype touched = 0;
    QXmlStreamReader xml(data);
    while (!xml.atEnd()) {
        xml.readNext();
        touched += xml.name().size() + xml.text().size();
    }
    return touched;
}

struct Fixture
{
    std::shared_ptr<veldra::SQLInfo> query;
    QByteArray saved;
    std::vector<Token> tokens;
};

Fixture &fixture(int index)
{
    static Fixture fixtures[std::size(sizes)];
    Fixture &f = fixtures[index];
    if (!f.query) {
        f.query = makeDefinition(sizes[index]);
        f.saved = veldra::writeDefinition(*f.query);
        f.tokens = recordTokens(f.saved);
    }
    return f;
}

void setBytes(benchmark::State &state, qsizetype bytes)
{
    state.SetBytesProcessed(int64_t(state.iterations()) * bytes);
}

void BM_BareParse(benchmark::State &state)
{
    const Fixture &f = fixture(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(bareParse(f.saved));
    setBytes(state, f.saved.size());
}

void BM_Load(benchmark::State &state)
{
    const Fixture &f = fixture(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(veldra::readDefinition(f.saved, QStringLiteral("bench.xml")));
    setBytes(state, f.saved.size());
}

void BM_BareWrite(benchmark::State &state)
{
    const Fixture &f = fixture(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(replayTokens(f.tokens));
    setBytes(state, f.saved.size());
}

void BM_Save(benchmark::State &state)
{
    const Fixture &f = fixture(int(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(veldra::writeDefinition(*f.query));
    setBytes(state, f.saved.size());
}

void sizeArguments(benchmark::internal::Benchmark *benchmark)
{
    for (int i = 0; i < int(std::size(sizes)); ++i)
        benchmark->Arg(i);
    // The first runs pay for growing the heap, hence the warm-up. Other work on the machine
    // stretches wall time more than this thread's CPU time; the summary compares the best CPU
    // time of a few repetitions.
    benchmark->Unit(benchmark::kMillisecond)->MinWarmUpTime(0.2)->Repetitions(5);
}

BENCHMARK(BM_BareParse)->Apply(sizeArguments);
BENCHMARK(BM_Load)->Apply(sizeArguments);
BENCHMARK(BM_BareWrite)->Apply(sizeArguments);
BENCHMARK(BM_Save)->Apply(sizeArguments);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;

    for (int i = 0; i < int(std::size(sizes)); ++i) {
        const Fixture &f = fixture(i);
        // Both comparisons must hold, or the figures compare different work.
        const bool sameDocument = replayTokens(f.tokens) == f.saved;
        const auto reloaded = veldra::readDefinition(f.saved, QStringLiteral("bench.xml"));
        const bool reloads = veldra::writeDefinition(*reloaded) == f.saved;
        std::printf("%s: %d tables x %d columns, %d expressions, %d list parameters: %.1f MB, "
                    "bare writer output %s, load and save again %s\n",
            sizes[i].label, sizes[i].tables, columnsPerTable, sizes[i].expressions,
            sizes[i].parameters, double(f.saved.size()) / (1024 * 1024),
            sameDocument ? "identical" : "DIFFERS", reloads ? "identical" : "DIFFERS");
    }

    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    const auto best = [&reporter](const char *name, int size) {
        return reporter.best(std::string(name) + '/' + std::to_string(size));
    };
    std::printf("\nSummary (best CPU time per run, ms)\n");
    std::printf("  %-6s %10s %10s %10s %10s\n", "size", "bareParse", "load", "bareWrite", "save");
    for (int i = 0; i < int(std::size(sizes)); ++i)
        std::printf("  %-6s %10.2f %10.2f %10.2f %10.2f\n", sizes[i].label, best("BM_BareParse", i),
            best("BM_Load", i), best("BM_BareWrite", i), best("BM_Save", i));
    std::printf("\nRatios\n");
    for (int i = 0; i < int(std::size(sizes)); ++i) {
        const std::string label = sizes[i].label;
        SummaryReporter::printRatio((label + " load / bareParse").c_str(), best("BM_Load", i),
            best("BM_BareParse", i), 3.0);
        SummaryReporter::printRatio((label + " save / bareWrite").c_str(), best("BM_Save", i),
            best("BM_BareWrite", i), 3.0);
    }
    SummaryReporter::printRatio("load 2x / 1x", best("BM_Load", 1), best("BM_Load", 0), 2.2);
    SummaryReporter::printRatio("save 2x / 1x", best("BM_Save", 1), best("BM_Save", 0), 2.2);
    return 0;
}
