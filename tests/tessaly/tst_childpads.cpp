#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "tessaly/widgets/childpadregistry.h"
#include "tessaly/widgets/childpadwidget.h"
#include "tessaly/widgets/padsite.h"
#include "tessaly/zetprimitivemodel.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

using namespace tessaly;

namespace {

// A model with free-form slots; "Number" refuses what is not a 32-bit integer, as typed slots do.
class SlotBag final : public zetPrimitiveModel
{
public:
    bool zetPrimitiveModel_SetModel(const std::shared_ptr<zetModelSite> &site) override
    {
        m_site = site;
        return true;
    }
    bool zetPrimitiveModel_onInitialize(int) override { return true; }
    bool zetPrimitiveModel_onCleanup() override { return true; }
    bool zetPrimitiveModel_onCopy(zetPrimitiveModel &) override { return true; }
    QVariant zetPrimitiveModel_onGetSlotValue(const QString &name) override { return values.value(name); }
    bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) override
    {
        const QVariant stored = name == "Number" ? QVariant(variant::toLong(value)) : value;
        if (values.value(name) == stored)
            return true; // the framework's echo
        values.insert(name, stored);
        ++writes;
        m_site->reportSlotChanged(name);
        return true;
    }
    bool zetPrimitiveModel_onSave(TagStream &) override { return true; }
    bool zetPrimitiveModel_onLoad(TagStream &) override { return true; }

    QHash<QString, QVariant> values;
    int writes = 0;

private:
    std::shared_ptr<zetModelSite> m_site;
};

std::shared_ptr<NameMap> choices(int count)
{
    auto map = std::make_shared<NameMap>();
    for (int i = 0; i < count; ++i)
        map->setText("k" + QString::number(i), "Value " + QString::number(i));
    return map;
}

} // namespace

class tst_ChildPads : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<SlotBag> m_model;
    std::unique_ptr<QWidget> m_face;
    std::shared_ptr<PadSite> m_site;

    ChildPadWidget *create(const QString &progId)
    {
        return static_cast<ChildPadWidget *>(m_site->createChildPad(progId));
    }

private Q_SLOTS:
    void init()
    {
        m_model = std::make_shared<SlotBag>();
        m_face = std::make_unique<QWidget>();
        m_site = PadSite::create(m_model, m_face.get());
        m_site->initialize(nullptr, zetPrimitiveModel::NewComponent);
    }

    void cleanup()
    {
        m_site.reset();
        m_face.reset();
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void childrenAreMadeByProgIdOnly_data()
    {
        QTest::addColumn<QString>("progId");
        QTest::addColumn<bool>("made");
        // Every installed kind is made by the pad's run-time face; one stands for them here.
        QTest::newRow("installed") << "CommonLX.StaticTextPad" << true;
        QTest::newRow("fallback not installed") << "ListLX.ComboBoxPad" << false;
        QTest::newRow("case matters") << "commonlx.statictextpad" << false;
        QTest::newRow("empty") << QString() << false;
    }

    void childrenAreMadeByProgIdOnly()
    {
        QFETCH(QString, progId);
        QFETCH(bool, made);
        QCOMPARE(m_site->createChildPad(progId) != nullptr, made);
        QCOMPARE(m_face->findChildren<ChildPadWidget *>().size(), made ? 1 : 0);
    }

    void anUnknownPropertyOrValueIsRefused_data()
    {
        QTest::addColumn<QString>("progId");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("no such property") << "StringZorbit.StringPad" << "Colour" << QVariant(1);
        QTest::newRow("list that is no map") << "ListZorbit.ComboBoxPad" << "List" << QVariant("a,b");
        QTest::newRow("index past the end") << "ListZorbit.ComboBoxPad" << "SelectIndex" << QVariant(0);
        QTest::newRow("switch not boolean") << "CommonLX.SwitchPad" << "SwitchOn" << QVariant("maybe");
    }

    void anUnknownPropertyOrValueIsRefused()
    {
        QFETCH(QString, progId);
        QFETCH(QString, property);
        QFETCH(QVariant, value);
        QVERIFY_THROWS_EXCEPTION(Error, create(progId)->setProperty(property, value));
    }

    void aChoiceShowsTextsOrKeysAndReportsBoth()
    {
        ChildPadWidget *choice = create("ListZorbit.ComboBoxPad");
        auto *combo = choice->findChild<QComboBox *>();
        choice->setProperty("List", variant::holding(choices(3)));
        QCOMPARE(combo->itemText(0), QString("k0"));
        QCOMPARE(choice->property("SelectIndex"), QVariant(-1));
        choice->setProperty("Mode", true);
        QCOMPARE(combo->itemText(0), QString("Value 0"));
        choice->setProperty("SelectIndex", 2);
        QCOMPARE(choice->property("SelectKey"), QVariant("k2"));
        QCOMPARE(choice->property("SelectValue"), QVariant("Value 2"));
        choice->setProperty("SelectKey", "k1");
        QCOMPARE(combo->currentIndex(), 1);
    }

    void aCaptionLongerThanItsWidthGrowsInsteadOfBeingCut()
    {
        ChildPadWidget *caption = create("CommonLX.StaticTextPad");
        caption->setSize(60, 10);
        caption->setProperty("String", "Orders from ('YYYY-MM-DD') and on");
        QVERIFY(caption->minimumHeight() >= 2 * caption->fontMetrics().height());
    }

    void aConnectedPropertyAndItsSlotFollowEachOther()
    {
        ChildPadWidget *text = create("StringZorbit.StringPad");
        auto *edit = text->findChild<QLineEdit *>();
        text->setProperty("String", "before"); // not connected yet: the slot knows nothing
        QVERIFY(!m_model->values.contains("Name"));

        text->connectProperty("String", SlotOwner::Model, "Name");
        QTest::keyClicks(edit, "ab");
        QCOMPARE(m_model->values.value("Name"), QVariant("beforeab"));
        const int writes = m_model->writes;
        m_site->modelHost().setSlotValue("Name", "other");
        QCOMPARE(edit->text(), QString("other"));
        QCOMPARE(m_model->writes, writes + 1); // following the slot wrote nothing back
    }

    void aRefusedValueKeepsTheSlotAndSaysWhy()
    {
        ChildPadWidget *number = create("StringZorbit.StringPad");
        number->connectProperty("String", SlotOwner::Model, "Number");
        number->setProperty("String", "12");
        QCOMPARE(m_model->values.value("Number"), QVariant(12));
        number->setProperty("String", "twelve");
        QCOMPARE(m_model->values.value("Number"), QVariant(12));
        QVERIFY(!number->lastRefusal().isEmpty());
        QCOMPARE(number->toolTip(), number->lastRefusal());
        number->setProperty("String", "13");
        QVERIFY(number->lastRefusal().isEmpty());
    }

    void aListReportsItsTickedItemsInListOrder()
    {
        ChildPadWidget *list = create("lxList.ListPad");
        list->connectProperty("CurrentItem", SlotOwner::Model, "selection");
        list->setProperty("AddItems", "A,B,C");
        QVERIFY(!m_model->values.contains("selection"));
        list->setProperty("CurrentItem", "C,A");
        QCOMPARE(m_model->values.value("selection"), QVariant("A,C"));
        QCOMPARE(list->property("Count"), QVariant(3));
    }

};

QTEST_MAIN(tst_ChildPads)
#include "tst_childpads.moc"
