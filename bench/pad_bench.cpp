// The pad's run-time inputs, offscreen: the choice input of a parameter with 50,000 selection
// values, and the inputs of a definition with 200 parameters rebuilt, each against making the
// same number of plain Qt items in the same run.

#include "summaryreporter.h"

#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "tessaly/widgets/padsite.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QVBoxLayout>

using namespace veldra;

namespace {

constexpr int choiceCount = 50000;
constexpr int parameterCount = 200;
constexpr int valuesPerChoice = 5;

std::shared_ptr<ParamInfo> parameter(const QString &name, qint32 kind, int values)
{
    auto info = std::make_shared<ParamInfo>();
    info->setParamName(name);
    info->setTitle(QStringLiteral("Title of ") + name);
    info->setParamType(kind);
    for (int i = 0; i < values; ++i)
        info->selections()->setText(QStringLiteral("'k%1'").arg(i), QStringLiteral("Value number %1").arg(i));
    return info;
}

std::shared_ptr<SQLInfo> definition(int parameters, int valuesOfEachChoice, bool alternate)
{
    auto query = std::make_shared<SQLInfo>();
    query->selections()->append(QStringLiteral("t.a"));
    QStringList condition;
    for (int i = 0; i < parameters; ++i) {
        const QString name = QStringLiteral("@@@P%1").arg(i);
        const bool choice = !alternate || i % 2 == 0;
        query->parameters()->setObject(name, parameter(name, choice ? ParamInfo::ChosenFromList : ParamInfo::TypedIn,
                                                       choice ? valuesOfEachChoice : 0));
        condition.append(QStringLiteral("t.c%1 = ").arg(i) + name);
    }
    query->setCondition(condition.join(QStringLiteral(" AND ")));
    return query;
}

// A component on a desktop site whose face is never shown, as a host has before its window opens.
struct Component
{
    Component()
        : model(std::make_shared<TsyParamConditionModel>()),
          face(std::make_unique<QWidget>()),
          site(tessaly::PadSite::create(model, face.get()))
    {
        site->initialize(&pad, tessaly::zetPrimitivePad::NewComponent);
    }
    ~Component() { site->cleanup(); }

    void setDefinition(const std::shared_ptr<SQLInfo> &query)
    {
        site->modelHost().setSlotValue(QStringLiteral("SQLInfo"), tessaly::variant::holding(query));
    }
    void build() { site->setPadSlotValue(QStringLiteral("BuildUI"), true); }

    std::shared_ptr<TsyParamConditionModel> model;
    TsyParamConditionPad pad;
    std::unique_ptr<QWidget> face;
    std::shared_ptr<tessaly::PadSite> site;
};

void BM_ChoiceInputOf50000Values(benchmark::State &state)
{
    Component component;
    component.setDefinition(definition(1, choiceCount, false));
    for (auto _ : state) {
        component.build();
        QCoreApplication::sendPostedEvents(); // the layout work a host's event loop does next
    }
    state.counters["children"] = double(component.site->children().size());
}

// The same number of entries in a plain combo box, beside a list and a caption as the pad has.
void BM_PlainComboOf50000Items(benchmark::State &state)
{
    QStringList texts;
    for (int i = 0; i < choiceCount; ++i)
        texts.append(QStringLiteral("Value number %1").arg(i));
    for (auto _ : state) {
        QWidget face;
        auto *layout = new QVBoxLayout(&face);
        auto *list = new QListWidget;
        list->addItem(QStringLiteral("a"));
        layout->addWidget(list);
        layout->addWidget(new QLabel(QStringLiteral("Title")));
        auto *combo = new QComboBox;
        combo->addItems(texts);
        combo->setCurrentIndex(0);
        layout->addWidget(combo);
        QCoreApplication::sendPostedEvents();
        benchmark::DoNotOptimize(combo);
    }
}

void BM_RebuildInputsOf200Parameters(benchmark::State &state)
{
    Component component;
    component.setDefinition(definition(parameterCount, valuesPerChoice, true));
    component.build();
    for (auto _ : state) {
        component.build(); // what the wizard's Finish asks for
        QCoreApplication::sendPostedEvents();
    }
    state.counters["children"] = double(component.site->children().size());
}

// The same widgets made plainly: a list, then a caption and an input per parameter.
void BM_Plain200ParameterRows(benchmark::State &state)
{
    QStringList values;
    for (int i = 0; i < valuesPerChoice; ++i)
        values.append(QStringLiteral("Value number %1").arg(i));
    for (auto _ : state) {
        QWidget face;
        auto *layout = new QVBoxLayout(&face);
        auto *list = new QListWidget;
        list->addItem(QStringLiteral("a"));
        layout->addWidget(list);
        for (int i = 0; i < parameterCount; ++i) {
            layout->addWidget(new QLabel(QStringLiteral("Title of @@@P%1").arg(i)));
            if (i % 2 == 0) {
                auto *combo = new QComboBox;
                combo->addItems(values);
                combo->setCurrentIndex(0);
                layout->addWidget(combo);
            } else {
                layout->addWidget(new QLineEdit);
            }
        }
        QCoreApplication::sendPostedEvents();
        benchmark::DoNotOptimize(layout);
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Each pair takes turns, so a spell of load on the machine falls on both alike.
    for (int round = 0; round < 5; ++round) {
        benchmark::RegisterBenchmark("BM_ChoiceInputOf50000Values", BM_ChoiceInputOf50000Values)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_PlainComboOf50000Items", BM_PlainComboOf50000Items)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_RebuildInputsOf200Parameters", BM_RebuildInputsOf200Parameters)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_Plain200ParameterRows", BM_Plain200ParameterRows)->Unit(benchmark::kMillisecond);
    }
    SummaryReporter reporter;
    if (!reporter.runBenchmarks(argc, argv))
        return 1;

    std::printf("\nRatios (best CPU time)\n");
    SummaryReporter::printRatio("50,000-value choice / plain combo", reporter.best("BM_ChoiceInputOf50000Values"),
                                reporter.best("BM_PlainComboOf50000Items"), 3.0);
    SummaryReporter::printRatio("200-parameter rebuild / plain rows", reporter.best("BM_RebuildInputsOf200Parameters"),
                                reporter.best("BM_Plain200ParameterRows"), 3.0);
    std::printf("\nMilliseconds (best CPU time; each within 100 ms)\n");
    std::printf("  %-34s %8.2f\n", "50,000-value choice", reporter.best("BM_ChoiceInputOf50000Values"));
    std::printf("  %-34s %8.2f\n", "200-parameter rebuild", reporter.best("BM_RebuildInputsOf200Parameters"));
    return 0;
}
