#include "../common/definitions.h"
#include "../dialogs/recordinguiservice.h"

#include "tessaly/containersite.h"
#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/serviceproxy.h"
#include "tessaly/uiservice.h"
#include "tessaly/variant.h"
#include "tessaly/widgets/childpadregistry.h"
#include "tessaly/widgets/childpadwidget.h"
#include "tessaly/widgets/padsite.h"
#include "tessaly/xmltagreader.h"
#include "tessaly/xmltagwriter.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/resources/stringtable.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QToolButton>

using namespace testdefs;
using veldra::TsyParamConditionPad;

namespace {

class NoService final : public tessaly::ServiceProxy
{
public:
    QDomDocument request(const QDomDocument &) override { return {}; }
};

// A site without windows: it keeps what the pad declares and reports, and echoes a reported
// slot back into the pad as the framework does.
class FakeSite final : public tessaly::zetPadSite
{
public:
    explicit FakeSite(tessaly::zetPadSite *parent = nullptr) : parent(parent) { }

    bool readModelSlot(const QString &name, QVariant *value) override
    {
        *value = name == "SQLInfo" && readable ? tessaly::variant::holding(definition) : QVariant();
        return value->isValid();
    }
    tessaly::zetPadSite *parentPad() override { return parent; }
    void declarePadSlot(const QString &name, const QString &description) override
    {
        declared.append(name + '=' + description);
    }
    void reportSlotChanged(const QString &name) override
    {
        reports.append(name);
        pad->zetPrimitivePad_onSetSlotValue(name, pad->zetPrimitivePad_onGetSlotValue(name));
    }
    void reportChangeCode(int code) override { reports.append('#' + QString::number(code)); }
    void watchModelSlot(const QString &name, bool *accepted) override
    {
        watched.append(name);
        *accepted = true;
    }
    void removeChildPads() override { ++builds; }
    void refreshChildPads(const QString &slot) override { refreshed.append(slot); }

    tessaly::zetPadSite *parent;
    tessaly::zetPrimitivePad *pad = nullptr;
    std::shared_ptr<SQLInfo> definition = std::make_shared<SQLInfo>();
    bool readable = true;
    QStringList declared, reports, watched, refreshed;
    int builds = 0;
};

struct ContainerFixture
{
    ContainerFixture() { site.setDataServiceProxy(std::make_shared<NoService>()); }
    tessaly::ContainerSite site;
};

struct WizardCall
{
    std::shared_ptr<tessaly::ServiceProxy> proxy;
    std::shared_ptr<tessaly::zetVariable> definition;
    int busyDepth = 0;
};

// The sample's shape: a list parameter and a typed-in one, ordering and row count at run time.
std::shared_ptr<SQLInfo> sampleDefinition()
{
    auto query = std::make_shared<SQLInfo>();
    setDatabase(*query, "SQLite", "Sample", "main");
    addTable(*query, "regions", { "code", "name=Region" });
    addExpression(*query, "COUNT(*)", "Orders");
    select(*query, { "regions.name", "COUNT(*)" });
    query->setCondition("regions.code = @@@Region AND regions.name >= @@@From");
    auto region = addParameter(*query, "@@@Region", "Region", ParamInfo::ChosenFromList);
    region->selections()->setText("'NE'", "North East");
    region->selections()->setText("'SW'", "South West");
    addParameter(*query, "@@@From", "From");
    query->setTopN(10);
    query->setTopNAsParam(true);
    query->setUseOrderBy(true);
    query->setOrderByAsParam(true);
    return query;
}

} // namespace

class tst_TsyParamConditionPad : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<testui::RecordingUiService> m_ui;

    // A pad on a fake site, initialised as a new component.
    struct Fixture
    {
        explicit Fixture(tessaly::zetPadSite *parent = nullptr) : site(std::make_shared<FakeSite>(parent))
        {
            site->pad = &pad;
            pad.zetPrimitivePad_setPad(site);
            pad.zetPrimitivePad_onInitialize(tessaly::zetPrimitivePad::NewComponent);
            pad.setWizardLauncher([this](const auto &, const auto &proxy, const auto &definition) {
                calls.append({ proxy, definition, 0 });
                return true;
            });
        }
        TsyParamConditionPad pad;
        std::shared_ptr<FakeSite> site;
        QList<WizardCall> calls;
    };

    // A pad with the real model on a desktop site, its face a widget of its own.
    struct Desktop
    {
        Desktop()
            : model(std::make_shared<veldra::TsyParamConditionModel>()),
              pad(std::make_shared<TsyParamConditionPad>()),
              face(std::make_unique<QWidget>()),
              site(tessaly::PadSite::create(model, face.get()))
        {
            site->setRegistry(&registry);
            registry.reset();
            site->initialize(pad.get(), tessaly::zetPrimitivePad::NewComponent);
        }
        ~Desktop() { site->cleanup(); }

        void build(const std::shared_ptr<SQLInfo> &definition)
        {
            site->modelHost().setSlotValue("SQLInfo", tessaly::variant::holding(definition));
            site->setPadSlotValue("BuildUI", true);
        }
        template<typename T>
        T *control(const QString &name) const
        {
            auto *child = face->findChild<QWidget *>(name);
            return child ? child->findChild<T *>() : nullptr;
        }
        QString request() const
        {
            const auto request = site->modelHost().slotValue("request").value<tessaly::RequestRef>();
            return request ? request->text() : QString();
        }

        tessaly::ChildPadRegistry registry;
        std::shared_ptr<veldra::TsyParamConditionModel> model;
        std::shared_ptr<TsyParamConditionPad> pad;
        std::unique_ptr<QWidget> face;
        std::shared_ptr<tessaly::PadSite> site;
    };

private Q_SLOTS:
    void initTestCase() { veldra::StringTable::setLanguage(veldra::Language::English); }

    void init()
    {
        m_ui = std::make_shared<testui::RecordingUiService>();
        m_ui->windows = false;
        tessaly::UiService::setInstance(m_ui);
    }

    void cleanup()
    {
        tessaly::UiService::setInstance(nullptr);
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void declaresItsSlotsAndWatchesTheRequestOnlyWhenNew_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("declares");
        QTest::newRow("new") << 0 << true;
        QTest::newRow("before load") << 1 << false;
        QTest::newRow("reset") << 2 << false;
    }

    void declaresItsSlotsAndWatchesTheRequestOnlyWhenNew()
    {
        QFETCH(int, kind);
        QFETCH(bool, declares);
        TsyParamConditionPad pad;
        auto site = std::make_shared<FakeSite>();
        pad.zetPrimitivePad_setPad(site);
        QVERIFY(pad.zetPrimitivePad_onInitialize(kind));
        if (!declares) {
            QVERIFY(site->declared.isEmpty());
            return;
        }
        QCOMPARE(site->declared, (QStringList{ "BuildUI=Build a UI", "EditQuery=Edit Query", "labels=Label of Prameters" }));
        QCOMPARE(site->watched, QStringList{ "request" });
    }

    void slotsReadAsNothingStored_data()
    {
        QTest::addColumn<QString>("slot");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("BuildUI") << "BuildUI" << QVariant(false);
        QTest::newRow("EditQuery") << "EditQuery" << QVariant(false);
        QTest::newRow("labels") << "labels" << QVariant(QString());
        QTest::newRow("not a pad slot") << "buildui" << QVariant();
    }

    void slotsReadAsNothingStored()
    {
        QFETCH(QString, slot);
        QFETCH(QVariant, value);
        Fixture f;
        f.pad.zetPrimitivePad_onSetSlotValue(slot, "written");
        QCOMPARE(f.pad.zetPrimitivePad_onGetSlotValue(slot), value);
        if (slot == "labels")
            QVERIFY(f.site->reports.isEmpty());
    }

    // The echo of the report is a nested write: it must not run the action again.
    void triggersRunOnceOnAnyValueAndReport_data()
    {
        QTest::addColumn<QString>("slot");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("code");
        QTest::newRow("BuildUI true") << "BuildUI" << QVariant(true) << "#6";
        QTest::newRow("BuildUI false") << "BuildUI" << QVariant(false) << "#6";
        QTest::newRow("EditQuery true") << "EditQuery" << QVariant(true) << "#8";
        QTest::newRow("EditQuery false") << "EditQuery" << QVariant(false) << "#8";
    }

    void triggersRunOnceOnAnyValueAndReport()
    {
        QFETCH(QString, slot);
        QFETCH(QVariant, value);
        QFETCH(QString, code);
        ContainerFixture container;
        Fixture f(&container.site);
        f.pad.zetPrimitivePad_onSetSlotValue(slot, value);
        QCOMPARE(f.site->reports, (QStringList{ slot, code }));
        QCOMPARE(f.site->builds + f.calls.size(), 1);
        // A second write runs again: the flag did not stay set.
        f.pad.zetPrimitivePad_onSetSlotValue(slot, value);
        QCOMPARE(f.site->builds + f.calls.size(), 2);
    }

    void editQueryWithoutAServiceSaysSoEveryTime()
    {
        tessaly::ContainerSite emptyContainer; // holds queries but has no service
        emptyContainer.setHoldsQueries(true);
        Fixture f(&emptyContainer);
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        QCOMPARE(m_ui->messages.size(), 2);
        QCOMPARE(m_ui->messages.at(0).text, "Failed to connectiong the TessalyService.");
        QCOMPARE(m_ui->messages.at(0).title, "Error");
        QVERIFY(f.calls.isEmpty());
        QCOMPARE(m_ui->busyDepth, 0);
    }

    void editQueryUsesTheNearestAncestorWithAService()
    {
        auto far = std::make_shared<NoService>();
        auto near = std::make_shared<NoService>();
        tessaly::ContainerSite top;
        top.setDataServiceProxy(far);
        tessaly::ContainerSite middle(&top);
        middle.setDataServiceProxy(near);
        tessaly::ContainerSite group(&middle); // not a query container
        Fixture f(&group);

        int busyDuringCall = 0;
        f.pad.setWizardLauncher([&](const auto &, const auto &proxy, const auto &definition) {
            busyDuringCall = m_ui->busyDepth;
            f.calls.append({ proxy, definition, m_ui->busyDepth });
            return true;
        });
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        QCOMPARE(f.calls.size(), 1);
        QCOMPARE(f.calls.at(0).proxy, std::shared_ptr<tessaly::ServiceProxy>(near));
        QCOMPARE(f.calls.at(0).definition, std::shared_ptr<tessaly::zetVariable>(f.site->definition));
        QCOMPARE(busyDuringCall, 1);
        QCOMPARE(m_ui->busyDepth, 0);
        QVERIFY(m_ui->messages.isEmpty());

        // The service found first is kept until cleanup, then looked for again.
        middle.setDataServiceProxy(nullptr);
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        QCOMPARE(f.calls.at(1).proxy, std::shared_ptr<tessaly::ServiceProxy>(near));
        f.pad.zetPrimitivePad_onCleanup();
        QVERIFY(!f.pad.dataServiceProxy());
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        QCOMPARE(f.calls.at(2).proxy, std::shared_ptr<tessaly::ServiceProxy>(far));
    }

    void triggersDoNothingButReportWhenTheDefinitionCannotBeRead()
    {
        ContainerFixture container;
        Fixture f(&container.site);
        f.site->readable = false;
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        f.pad.zetPrimitivePad_onSetSlotValue("BuildUI", true);
        QCOMPARE(f.site->reports, (QStringList{ "EditQuery", "#8", "BuildUI", "#6" }));
        QCOMPARE(f.site->builds, 0);
        QVERIFY(f.calls.isEmpty());
        QVERIFY(m_ui->messages.isEmpty());
        QCOMPARE(m_ui->busyDepth, 0);
    }

    void theBusyCursorReturnsWhenTheWizardFails()
    {
        ContainerFixture container;
        Fixture f(&container.site);
        f.pad.setWizardLauncher([](const auto &, const auto &, const auto &) -> bool {
            throw tessaly::Error(tessaly::ErrorNumber::Fail, "broken");
        });
        QVERIFY_THROWS_EXCEPTION(tessaly::Error, f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true));
        QCOMPARE(m_ui->busyDepth, 0);
        // The flag was cleared on the way out.
        f.pad.setWizardLauncher({});
        f.pad.zetPrimitivePad_onSetSlotValue("EditQuery", true);
        QCOMPARE(f.site->reports, (QStringList{ "EditQuery", "#8" }));
    }

    void savesAnEmptyClassPartAndSkipsOldVariables()
    {
        TsyParamConditionPad pad;
        QByteArray saved;
        {
            tessaly::XmlTagWriter writer(&saved);
            writer.WriteTag("Pad");
            QVERIFY(pad.zetPrimitivePad_onSave(writer));
            writer.WriteEndTag();
            writer.finish();
        }
        QVERIFY(saved.contains("<ClassPart/>") || saved.contains("<ClassPart></ClassPart>"));

        const QByteArray old = "<Pad><ClassPart><Variable name=\"x\">1</Variable><Variable name=\"y\"/>"
                               "<Variable name=\"z\"><NameMap><Text key=\"k\">v</Text></NameMap></Variable></ClassPart>"
                               "<After>kept</After></Pad>";
        tessaly::XmlTagReader reader(old, "old");
        QCOMPARE(reader.ReadTag(), QString("Pad"));
        QCOMPARE(reader.ReadTag(), QString("ClassPart"));
        QVERIFY(pad.zetPrimitivePad_onLoad(reader));
        QCOMPARE(reader.ReadTag(), QString("After"));
    }

    void readsThePropertyCodeOfItsOwnPropertyOperations_data()
    {
        QTest::addColumn<bool>("ownSite");
        QTest::addColumn<quint32>("code");
        QTest::addColumn<QString>("value");
        QTest::addColumn<qint32>("expected");
        QTest::newRow("own site, bit 20") << true << quint32(1u << 20 | 5) << "42" << 42;
        QTest::newRow("another site") << false << quint32(1u << 20) << "42" << 0;
        QTest::newRow("bit 20 clear") << true << quint32(5) << "42" << 0;
        QTest::newRow("not a number") << true << quint32(1u << 20) << "many" << 0;
    }

    void readsThePropertyCodeOfItsOwnPropertyOperations()
    {
        QFETCH(bool, ownSite);
        QFETCH(quint32, code);
        QFETCH(QString, value);
        QFETCH(qint32, expected);
        Fixture f;
        FakeSite other;
        auto parameters = std::make_shared<tessaly::NameMap>();
        parameters->setText("PROPERTYCODE", value);
        QVERIFY(f.pad.zetPrimitivePad_postOperation({ ownSite ? f.site.get() : &other, code, parameters }));
        QCOMPARE(f.pad.lastPropertyCode(), expected);
    }

    void aSettingsUpdateRefreshesTheSettingsChildren()
    {
        Fixture f;
        f.pad.zetPrimitivePad_onUpdateView(1);
        QVERIFY(f.site->refreshed.isEmpty());
        f.pad.zetPrimitivePad_onUpdateView(tessaly::zetPrimitivePad::SettingsChanged);
        QCOMPARE(f.site->refreshed, (QStringList{ "labels", "TopN", "OrderBy", "OrderByAscendant" }));
    }

    // From here on the pad runs on a desktop site with the real model, offscreen.

    void buildsTheRunTimeFace()
    {
        Desktop d;
        d.build(sampleDefinition());
        QStringList names;
        for (const auto *child : d.site->children())
            names.append(child->objectName());
        QCOMPARE(names, (QStringList{ "SelectionList", "TopNLabel", "TopNInput", "OrderByLabel", "OrderByInput",
                                      "DirectionLabel", "DirectionSwitch", "ParamLabel@@@Region",
                                      "ParamInput@@@Region", "ParamLabel@@@From", "ParamInput@@@From" }));
        // The inputs' starting values reached the model.
        QCOMPARE(d.site->modelHost().slotValue("selection").toString(), QString("Region,Orders"));
        QCOMPARE(d.site->modelHost().slotValue("@@@Region").toString(), QString("'NE'"));
        QCOMPARE(d.site->modelHost().slotValue("@@@From").toString(), QString());
        QCOMPARE(d.site->modelHost().slotValue("OrderBy").toString(), QString("regions.name"));
        QCOMPARE(d.site->modelHost().slotValue("OrderByAscendant"), QVariant(true));
        QCOMPARE(d.control<QComboBox>("ParamInput@@@Region")->currentText(), QString("North East"));

        // Building again replaces the children rather than adding to them.
        d.site->setPadSlotValue("BuildUI", false);
        QCOMPARE(d.site->children().size(), names.size());
        QCOMPARE(d.face->findChildren<tessaly::ChildPadWidget *>().size(), names.size());
    }

    void inputsAndSlotsFollowEachOther()
    {
        Desktop d;
        d.build(sampleDefinition());
        QLineEdit *from = d.control<QLineEdit>("ParamInput@@@From");
        QTest::keyClicks(from, "'2024'");
        QCOMPARE(d.site->modelHost().slotValue("@@@From").toString(), QString("'2024'"));
        QVERIFY2(d.request().contains("regions.name &gt;= '2024'"), qPrintable(d.request()));

        d.control<QComboBox>("ParamInput@@@Region")->setCurrentIndex(1);
        QVERIFY2(d.request().contains("regions.code = 'SW'"), qPrintable(d.request()));

        d.control<QToolButton>("DirectionSwitch")->click();
        QCOMPARE(d.site->modelHost().slotValue("OrderByAscendant"), QVariant(false));
        QTest::keyClicks(d.control<QLineEdit>("TopNInput"), "7");
        QCOMPARE(d.site->modelHost().slotValue("TopN"), QVariant(7));

        QListWidget *list = d.control<QListWidget>("SelectionList");
        list->item(1)->setCheckState(Qt::Unchecked);
        QCOMPARE(d.site->modelHost().slotValue("selection").toString(), QString("Region"));

        // A slot written by someone else shows in its input.
        d.site->modelHost().setSlotValue("@@@From", "'2020'");
        QCOMPARE(from->text(), QString("'2020'"));
        d.site->modelHost().setSlotValue("TopN", 3);
        QCOMPARE(d.control<QLineEdit>("TopNInput")->text(), QString("3"));
        // Captions follow "labels", which keeps nothing: they stay as built.
        QCOMPARE(d.face->findChild<QWidget *>("ParamLabel@@@From")->findChild<QLabel *>()->text(), QString("From"));
    }

    // The face goes (cleaned up, rebuilt, destroyed) while the person is on one of its inputs:
    // nothing an input says as it goes may reach a slot or a half-destroyed input. The
    // sanitizer build is what sees the second.
    void theFaceGoesQuietlyWhateverInputHasTheFocus_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<QString>("ending");
        for (const char *input : { "TopNInput", "ParamInput@@@From", "ParamInput@@@Region", "OrderByInput",
                                   "DirectionSwitch", "SelectionList" }) {
            for (const char *ending : { "cleanup", "rebuild", "destroy" })
                QTest::addRow("%s %s", input, ending) << QString(input) << QString(ending);
        }
    }

    void theFaceGoesQuietlyWhateverInputHasTheFocus()
    {
        QFETCH(QString, input);
        QFETCH(QString, ending);
        Desktop d;
        d.build(sampleDefinition());
        d.face->show();
        QVERIFY(QTest::qWaitForWindowActive(d.face.get()));
        auto *child = d.face->findChild<tessaly::ChildPadWidget *>(input);
        QVERIFY(child);
        if (input == "ParamInput@@@From") // its entry then counts when it loses the focus
            child->setProperty("KeyEntry", false);
        child->setFocus();
        QVERIFY(child->focusWidget()->hasFocus());
        QTest::keyClick(child->focusWidget(), Qt::Key_Down);
        QTest::keyClicks(child->focusWidget(), "7 ");
        if (ending == "cleanup") {
            d.site->modelHost().clearReports();
            d.site->cleanup();
            QCOMPARE(d.site->modelHost().reports(), QStringList());
        } else if (ending == "rebuild") {
            d.site->setPadSlotValue("BuildUI", true);
            QCOMPARE(d.site->children().size(), 11);
        } else {
            d.face.reset();
            d.site->modelHost().setSlotValue("TopN", 3); // no input is left to follow it
            QVERIFY(d.site->children().isEmpty());
        }
    }

    void aMissingChildLibraryUsesTheFallbackOrEndsTheRow()
    {
        Desktop d;
        // The second combo box library stands in for the first without a word.
        d.registry.remove("ListZorbit.ComboBoxPad");
        d.build(sampleDefinition());
        QVERIFY(!d.face->findChild<QWidget *>("ParamInput@@@Region"));
        QVERIFY(d.face->findChild<QWidget *>("ParamLabel@@@Region"));
        QVERIFY(d.face->findChild<QWidget *>("ParamInput@@@From"));

        d.registry.add("ListLX.ComboBoxPad", [](QWidget *parent) {
            return tessaly::ChildPadRegistry::instance().create("ListZorbit.ComboBoxPad", parent);
        });
        d.site->setPadSlotValue("BuildUI", true);
        QVERIFY(d.control<QComboBox>("ParamInput@@@Region"));

        // Without labels every row ends before its input; the list has no label and stays.
        d.registry.remove("CommonLX.StaticTextPad");
        d.site->setPadSlotValue("BuildUI", true);
        QCOMPARE(d.site->children().size(), 1);
        QVERIFY(m_ui->messages.isEmpty());
    }

    // What the wizard does on Finish: the definition, then "BuildUI", through the component.
    void finishingTheWizardRebuildsTheInputs()
    {
        Desktop d;
        tessaly::ContainerSite container;
        container.setDataServiceProxy(std::make_shared<NoService>());
        auto site = tessaly::PadSite::create(d.model, d.face.get(), &container);
        site->setRegistry(&d.registry);
        d.site->cleanup();
        d.site = site;
        site->initialize(d.pad.get(), tessaly::zetPrimitivePad::NewComponent);
        d.build(sampleDefinition());

        d.pad->setWizardLauncher([](const auto &model, const auto &, const auto &definition) {
            auto edited = tessaly::objectCast<SQLInfo>(definition)->copy();
            addParameter(*edited, "@@@New", "New");
            edited->setCondition(edited->condition() + " AND regions.code <> @@@New");
            model->zetPrimitiveModel_onSetSlotValue("SQLInfo", tessaly::variant::holding(edited));
            model->zetPrimitiveModel_onSetSlotValue("BuildUI", tessaly::variant::holding(edited));
            return true;
        });
        site->setPadSlotValue("EditQuery", true);
        QVERIFY(d.face->findChild<QWidget *>("ParamInput@@@New"));
        QVERIFY(site->modelHost().hasSlot("@@@New"));
    }

};

QTEST_MAIN(tst_TsyParamConditionPad)
#include "tst_tsyparamconditionpad.moc"
