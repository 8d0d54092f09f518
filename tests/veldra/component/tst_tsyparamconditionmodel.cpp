#include "../common/definitions.h"
#include "../common/recordingsite.h"

#include "tessaly/componentdocument.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/variant.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/resources/stringtable.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;
using tessaly::ModelHost;

namespace {

// A model hosted as the framework hosts it: declared, initialised, echoing its reports.
struct Hosted
{
    Hosted()
    {
        model.zetPrimitiveModel_SetModel(site);
        model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::NewComponent);
        site->reports.clear();
    }
    void set(const QString &name, const QVariant &value) { host->setSlotValue(name, value); }
    QVariant get(const QString &name) { return host->slotValue(name); }
    QString requestText()
    {
        const auto request = get("request").value<tessaly::RequestRef>();
        return request ? request->text() : QString();
    }
    QStringList parameterSlots() const
    {
        QStringList names;
        for (const auto &slot : host->declaredSlots()) {
            if (slot.parameter)
                names.append(slot.name + u'=' + slot.description);
        }
        return names;
    }

    TsyParamConditionModel model;
    std::shared_ptr<ModelHost> host = std::make_shared<ModelHost>(&model);
    std::shared_ptr<RecordingModelSite> site = std::make_shared<RecordingModelSite>(host);
};

std::shared_ptr<SQLInfo> regionQuery(const QString &condition)
{
    auto query = std::make_shared<SQLInfo>();
    setDatabase(*query, "SQLite", "Sample", "main");
    addTable(*query, "regions", { "code", "name=Region" });
    addParameter(*query, "@@@A", "Alpha");
    addParameter(*query, "@@@C", "Gamma");
    query->setCondition(condition);
    return query;
}

} // namespace

class tst_TsyParamConditionModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { StringTable::setLanguage(Language::English); }
    void initialisationDeclaresFixedSlotsAndResetsOnlyForNewOrReset();
    void echoedWritesAreIgnoredAndReportsComeInOrder_data();
    void echoedWritesAreIgnoredAndReportsComeInOrder();
    void updateRequestRebuildsWithAnyValueAndStoresNothing();
    void parameterSlotsFollowTheDefinition();
    void parameterWriteRebuildsUnknownNameGoesToDefaultModel();
    void incompleteDefinitionKeepsTheLastRequest();
    void unconvertibleValueIsRefusedAndSlotKeepsItsValue();
    void saveAndLoadRestoreSlotsAndParameterSlots();
    void copySharesTheSourceObjects();
};

void tst_TsyParamConditionModel::initialisationDeclaresFixedSlotsAndResetsOnlyForNewOrReset()
{
    Hosted c;
    QStringList declared;
    for (const auto &slot : c.host->declaredSlots())
        declared.append(slot.name + u'=' + slot.description);
    QCOMPARE(declared, (QStringList { "selection=Select Columns", "request=Request Object", "SQLInfo=SQL Information",
                                      "parameters=Collection of Parameter Values", "UpdateRequest=Update Request-Slot",
                                      "TopN=Edit Query", "OrderBy=Number of TOP",
                                      "OrderByAscendant=Specified Column at ORDERBY" }));
    QVERIFY(tessaly::objectCast<SQLInfo>(tessaly::variant::heldObject(c.get("SQLInfo"))));
    QCOMPARE(c.get("OrderByAscendant").toBool(), true);

    c.set("TopN", 5);
    c.model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::BeforeLoad);
    QCOMPARE(c.get("TopN").toInt(), 5);
    QCOMPARE(c.host->declaredSlots().size(), 8);
    c.model.zetPrimitiveModel_onInitialize(tessaly::zetPrimitiveModel::Reset);
    QCOMPARE(c.get("TopN").toInt(), 0);
}

void tst_TsyParamConditionModel::echoedWritesAreIgnoredAndReportsComeInOrder_data()
{
    QTest::addColumn<QString>("slot");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QStringList>("reports");
    QTest::newRow("selection") << "selection" << QVariant("Region") << QStringList { "selection", "#1", "request" };
    QTest::newRow("TopN") << "TopN" << QVariant(3) << QStringList { "request", "#8", "TopN" };
    QTest::newRow("OrderBy") << "OrderBy" << QVariant("x") << QStringList { "request", "#9", "OrderBy" };
    QTest::newRow("OrderByAscendant") << "OrderByAscendant" << QVariant(false) << QStringList { "request", "#10", "OrderByAscendant" };
    QTest::newRow("UpdateRequest") << "UpdateRequest" << QVariant(true) << QStringList { "request", "#5", "UpdateRequest" };
    QTest::newRow("parameter") << "@@@A" << QVariant("'x'") << QStringList { "@@@A", "#2", "request" };
}

// The host writes every reported slot straight back into the model. Each write must still
// report exactly once and rebuild exactly once.
void tst_TsyParamConditionModel::echoedWritesAreIgnoredAndReportsComeInOrder()
{
    QFETCH(QString, slot);
    QFETCH(QVariant, value);
    QFETCH(QStringList, reports);
    Hosted c;
    c.set("SQLInfo", tessaly::variant::holding(regionQuery("code = @@@A")));
    c.set("selection", "Region");
    c.site->reports.clear();
    c.set(slot, value);
    QCOMPARE(c.site->reports, reports);
    // The flag is clear again: a second write reports again.
    c.site->reports.clear();
    c.set(slot, value);
    QCOMPARE(c.site->reports, reports);
}

void tst_TsyParamConditionModel::updateRequestRebuildsWithAnyValueAndStoresNothing()
{
    Hosted c;
    auto query = regionQuery("code = @@@A");
    c.set("SQLInfo", tessaly::variant::holding(query));
    c.set("selection", "Region");
    query->setCondition("code = 'NE'"); // changed behind the model's back
    c.set("UpdateRequest", false);
    QVERIFY(c.requestText().contains("<condition>code = 'NE'</condition>"));
    QCOMPARE(c.get("UpdateRequest").toBool(), false);
}

void tst_TsyParamConditionModel::parameterSlotsFollowTheDefinition()
{
    Hosted c;
    c.set("SQLInfo", tessaly::variant::holding(regionQuery("code = @@@A or name = @@@A or x = @@@B")));
    QCOMPARE(c.parameterSlots(), QStringList { "@@@A=Alpha" });
    const auto values = tessaly::objectCast<tessaly::NameMap>(tessaly::variant::heldObject(c.get("parameters")));
    QCOMPARE(values->count(), 1);
    QCOMPARE(values->item("@@@A").toString(), QString());
    c.set("@@@A", "'NE'");

    c.set("SQLInfo", tessaly::variant::holding(regionQuery("@@@C > 0")));
    QCOMPARE(c.parameterSlots(), QStringList { "@@@C=Gamma" });
    QVERIFY(!values->contains("@@@A"));
    QCOMPARE(values->item("@@@C").toString(), QString());
}

void tst_TsyParamConditionModel::parameterWriteRebuildsUnknownNameGoesToDefaultModel()
{
    Hosted c;
    c.set("SQLInfo", tessaly::variant::holding(regionQuery("code = @@@A")));
    c.set("selection", "Region");
    c.set("@@@A", "'SW'");
    QVERIFY(c.requestText().contains("<condition>code = 'SW'</condition>"));
    QCOMPARE(c.get("@@@A").toString(), "'SW'");

    // The definition is shared with whoever edits it: an edit in place shows at the next keystroke.
    const auto query = tessaly::objectCast<SQLInfo>(tessaly::variant::heldObject(c.get("SQLInfo")));
    query->tables()->object<TableInfo>("regions")->columns()->object<ColumnInfo>("name")->setExpress("label");
    c.set("@@@A", "'NE'");
    QVERIFY(c.requestText().contains("<field>regions.label Region</field>"));

    c.site->reports.clear();
    c.set("@@@C", "'ignored'"); // a parameter of the definition, but not referenced: no slot
    QVERIFY(c.site->reports.isEmpty());
    QVERIFY(!c.get("@@@C").isValid());
}

void tst_TsyParamConditionModel::incompleteDefinitionKeepsTheLastRequest()
{
    Hosted c;
    c.set("SQLInfo", tessaly::variant::holding(regionQuery("code = @@@A")));
    c.set("selection", "Region");
    const auto published = c.get("request").value<tessaly::RequestRef>();
    QVERIFY(published);

    c.site->reports.clear();
    c.set("selection", "nothing known");
    QCOMPARE(c.get("request").value<tessaly::RequestRef>(), published);
    QVERIFY(!c.site->reports.contains("request"));
    QCOMPARE(c.model.missingRequestPiece().left(9), "no fields");

    // No catalog: no target, so no request, though fields and a condition are there.
    c.set("selection", "Region");
    const auto complete = c.get("request").value<tessaly::RequestRef>();
    auto noCatalog = regionQuery("a = 1");
    noCatalog->dbInfo()->setCatalog({});
    c.set("SQLInfo", tessaly::variant::holding(noCatalog));
    QCOMPARE(c.get("request").value<tessaly::RequestRef>(), complete);
    QCOMPARE(c.model.missingRequestPiece(), "no catalog");
}

void tst_TsyParamConditionModel::unconvertibleValueIsRefusedAndSlotKeepsItsValue()
{
    Hosted c;
    c.set("TopN", 7);
    QVERIFY_THROWS_EXCEPTION(tessaly::Error, c.set("TopN", "abc"));
    QVERIFY_THROWS_EXCEPTION(tessaly::Error, c.set("TopN", "3000000000"));
    QVERIFY_THROWS_EXCEPTION(tessaly::Error, c.set("OrderByAscendant", "maybe"));
    QVERIFY_THROWS_EXCEPTION(tessaly::Error, c.set("SQLInfo", "not an object"));
    QCOMPARE(c.get("TopN").toInt(), 7);
    c.set("TopN", " 12 ");
    QCOMPARE(c.get("TopN").toInt(), 12);
    c.set("OrderByAscendant", "FALSE");
    QCOMPARE(c.get("OrderByAscendant").toBool(), false);
}

void tst_TsyParamConditionModel::saveAndLoadRestoreSlotsAndParameterSlots()
{
    Hosted c;
    c.set("SQLInfo", tessaly::variant::holding(regionQuery("code = @@@A")));
    c.set("selection", "Region");
    c.set("@@@A", "'NE'");
    c.set("TopN", 4);
    c.set("OrderBy", "regions.code");
    const QByteArray saved = tessaly::ComponentDocument::save(c.model);

    Hosted d;
    tessaly::ComponentDocument::load(saved, "saved", d.model);
    QCOMPARE(d.parameterSlots(), QStringList { "@@@A=Alpha" });
    QCOMPARE(d.get("@@@A").toString(), "'NE'");
    QCOMPARE(d.get("TopN").toInt(), 4);
    QCOMPARE(d.requestText(), c.requestText());
    QCOMPARE(tessaly::ComponentDocument::save(d.model), saved);

    // A later write rebuilds from the loaded values.
    d.set("@@@A", "'SW'");
    QVERIFY(d.requestText().contains("code = 'SW'"));
}

void tst_TsyParamConditionModel::copySharesTheSourceObjects()
{
    Hosted source;
    source.set("SQLInfo", tessaly::variant::holding(regionQuery("code = @@@A")));
    source.set("selection", "Region");
    source.set("TopN", 9);
    Hosted copy;
    copy.model.zetPrimitiveModel_onCopy(source.model);
    QCOMPARE(tessaly::variant::heldObject(copy.get("SQLInfo")), tessaly::variant::heldObject(source.get("SQLInfo")));
    QCOMPARE(tessaly::variant::heldObject(copy.get("parameters")), tessaly::variant::heldObject(source.get("parameters")));
    QCOMPARE(copy.get("request").value<tessaly::RequestRef>(), source.get("request").value<tessaly::RequestRef>());
    QCOMPARE(copy.get("TopN").toInt(), 9);

    copy.model.zetPrimitiveModel_onCleanup();
    QVERIFY(!tessaly::variant::heldObject(copy.get("SQLInfo")));
    QVERIFY(tessaly::variant::heldObject(source.get("SQLInfo")));
}

QTEST_APPLESS_MAIN(tst_TsyParamConditionModel)
#include "tst_tsyparamconditionmodel.moc"
