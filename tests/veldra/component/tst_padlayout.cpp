#include "../common/definitions.h"

#include "tessaly/namemap.h"
#include "veldra/component/padlayout.h"
#include "veldra/resources/stringtable.h"

#include <QTest>

using namespace testdefs;
using veldra::PadLayout;

namespace {

// A definition with an aliased column, an unaliased one and an aliased expression.
std::shared_ptr<SQLInfo> definition()
{
    auto query = std::make_shared<SQLInfo>();
    addTable(*query, "regions", { "name=Region", "code" });
    addExpression(*query, "SUM(orders.amount)", "Revenue");
    select(*query, { "regions.name", "regions.code", "SUM(orders.amount)" });
    return query;
}

QStringList childNames(const QList<PadLayout::Row> &rows)
{
    QStringList names;
    for (const PadLayout::Row &row : rows) {
        for (const PadLayout::Child &child : row)
            names.append(child.name);
    }
    return names;
}

const PadLayout::Child *find(const QList<PadLayout::Row> &rows, const QString &name)
{
    for (const PadLayout::Row &row : rows) {
        for (const PadLayout::Child &child : row) {
            if (child.name == name)
                return &child;
        }
    }
    return nullptr;
}

QVariant setting(const QList<PadLayout::Setting> &settings, const QString &name)
{
    for (const auto &[key, value] : settings) {
        if (key == name)
            return value;
    }
    return {};
}

} // namespace

class tst_PadLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { veldra::StringTable::setLanguage(veldra::Language::English); }

    void rowsFollowTheDefinitionsSettings_data()
    {
        QTest::addColumn<qint32>("topN");
        QTest::addColumn<bool>("topNAsParam");
        QTest::addColumn<bool>("useOrderBy");
        QTest::addColumn<bool>("orderByAsParam");
        QTest::addColumn<QStringList>("names");

        const QString list = "SelectionList";
        const QStringList count = { "TopNLabel", "TopNInput" };
        const QStringList order = { "OrderByLabel", "OrderByInput", "DirectionLabel", "DirectionSwitch" };
        QTest::newRow("nothing at run time") << 5 << false << true << false << QStringList{ list };
        QTest::newRow("row count as parameter") << 5 << true << false << false << QStringList{ list } + count;
        QTest::newRow("row count 0 is no row") << 0 << true << false << false << QStringList{ list };
        QTest::newRow("ordering as parameter") << 0 << false << true << true << QStringList{ list } + order;
        QTest::newRow("ordering parameter without ordering") << 0 << false << false << true << QStringList{ list };
        QTest::newRow("both") << 1 << true << true << true << QStringList{ list } + count + order;
    }

    void rowsFollowTheDefinitionsSettings()
    {
        QFETCH(qint32, topN);
        QFETCH(bool, topNAsParam);
        QFETCH(bool, useOrderBy);
        QFETCH(bool, orderByAsParam);
        QFETCH(QStringList, names);
        auto query = definition();
        query->setTopN(topN);
        query->setTopNAsParam(topNAsParam);
        query->setUseOrderBy(useOrderBy);
        query->setOrderByAsParam(orderByAsParam);
        QCOMPARE(childNames(PadLayout::rows(*query)), names);
    }

    void parameterRowsFollowTheKind_data()
    {
        QTest::addColumn<qint32>("kind");
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("progIds");
        QTest::addColumn<QString>("property");

        QTest::newRow("typed in") << ParamInfo::TypedIn << QStringList{ "ParamLabel@@@A", "ParamInput@@@A" }
                                  << QStringList{ "StringZorbit.StringPad", "CommonLX.StringPad" } << "String";
        QTest::newRow("chosen from a list") << ParamInfo::ChosenFromList
                                            << QStringList{ "ParamLabel@@@A", "ParamInput@@@A" }
                                            << QStringList{ "ListZorbit.ComboBoxPad", "ListLX.ComboBoxPad" }
                                            << "SelectKey";
        QTest::newRow("unknown kind: label only") << 7 << QStringList{ "ParamLabel@@@A" } << QStringList() << QString();
    }

    void parameterRowsFollowTheKind()
    {
        QFETCH(qint32, kind);
        QFETCH(QStringList, names);
        QFETCH(QStringList, progIds);
        QFETCH(QString, property);
        auto query = definition();
        auto parameter = addParameter(*query, "@@@A", "Title of A", kind);
        parameter->selections()->setText("'x'", "Ex");
        const auto rows = PadLayout::rows(*query);
        QCOMPARE(rows.size(), 2);
        QCOMPARE(childNames({ rows.at(1) }), names);

        const PadLayout::Child &label = rows.at(1).at(0);
        QCOMPARE(setting(label.settings, "String").toString(), QString("Title of A"));
        QCOMPARE(label.owner, tessaly::SlotOwner::Pad);
        QCOMPARE(label.slot, QString("labels"));
        QCOMPARE(label.height, PadLayout::labelHeight);
        if (progIds.isEmpty())
            return;
        const PadLayout::Child &input = rows.at(1).at(1);
        QCOMPARE(input.progIds, progIds);
        QCOMPARE(input.property, property);
        QCOMPARE(input.owner, tessaly::SlotOwner::Model);
        QCOMPARE(input.slot, QString("@@@A"));
        QCOMPARE(input.width, PadLayout::width);
        QCOMPARE(input.height, PadLayout::inputHeight);
        // A text starts empty; a choice starts on its first entry.
        if (kind == ParamInfo::TypedIn)
            QCOMPARE(setting(input.afterConnecting, "String"), QVariant(QString()));
        else
            QCOMPARE(setting(input.afterConnecting, "SelectIndex"), QVariant(0));
    }

    void anEmptyChoiceListSelectsNothing()
    {
        auto query = definition();
        addParameter(*query, "@@@A", "A", ParamInfo::ChosenFromList);
        const auto rows = PadLayout::rows(*query);
        const PadLayout::Child *input = find(rows, "ParamInput@@@A");
        QVERIFY(input);
        QVERIFY(!setting(input->afterConnecting, "SelectIndex").isValid());
    }

    void theListAndTheOrderingChoicesShowDisplayNames()
    {
        auto query = definition();
        QCOMPARE(PadLayout::selectionItems(*query), QString("Region,regions.code,Revenue"));
        const auto choices = PadLayout::orderChoices(*query);
        QCOMPARE(choices->count(), 3);
        QCOMPARE(choices->key(0), QString("Region"));
        QCOMPARE(choices->item(0).toString(), QString("regions.name"));
        QCOMPARE(choices->item(2).toString(), QString("SUM(orders.amount)"));

        const auto rows = PadLayout::rows(*query);
        const PadLayout::Child *list = find(rows, "SelectionList");
        QCOMPARE(list->slot, QString("selection"));
        QCOMPARE(list->height, PadLayout::listHeight);
        QCOMPARE(setting(list->afterConnecting, "CurrentItem").toString(), PadLayout::selectionItems(*query));
    }

};

QTEST_GUILESS_MAIN(tst_PadLayout)
#include "tst_padlayout.moc"
