#include "tessaly/componentloader.h"
#include "tessaly/error.h"
#include "tessaly/registrystore.h"
#include "tessaly/zetprimitivemodel.h"
#include "tessaly/zetprimitivepad.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/registration/registration.h"

#include <QTest>

// The component made the way a host makes it: by ProgID, through the registry that
// "veldra register" writes, from the library the ProgID's module names.
class tst_ComponentLoader : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<tessaly::RegistryStore> m_store;

    static QString progId(const char *suffix) { return veldra::ClsidLookup::progId(QLatin1String(suffix)); }

private Q_SLOTS:
    void init()
    {
        m_store = std::make_shared<tessaly::RegistryStore>();
        veldra::Registration::registerClasses(*m_store);
        tessaly::RegistryStore::setInstance(m_store);
    }

    void cleanup() { tessaly::RegistryStore::setInstance(nullptr); }

    void makesTheModelAndThePadByProgId()
    {
        const auto model = tessaly::ComponentLoader::createModel(progId(".TsyParamConditionModel"));
        QVERIFY(dynamic_cast<veldra::TsyParamConditionModel *>(model.get()));
        const auto pad = tessaly::ComponentLoader::createPad(progId(".TsyParamConditionPad"));
        QVERIFY(dynamic_cast<veldra::TsyParamConditionPad *>(pad.get()));
        // The pad answers the identifiers it was made by.
        QCOMPARE(pad->zetPrimitivePad_returnPadCLSID(), tessaly::ComponentLoader::classIdOf(progId(".TsyParamConditionPad")));
    }

    void refusesWithTheStepThatFailed_data()
    {
        QTest::addColumn<QString>("progId");
        QTest::addColumn<bool>("asPad");
        QTest::addColumn<QString>("said");
        QTest::newRow("not registered") << "Veldra.Nothing" << false << "not registered";
        QTest::newRow("a record is no model") << progId(".SQLInfo") << false << "makes no zetPrimitiveModel";
        QTest::newRow("the model is no pad") << progId(".TsyParamConditionModel") << true << "makes no zetPrimitivePad";
        QTest::newRow("no such library") << "Elsewhere.Thing" << false << "no library of module Elsewhere";
    }

    void refusesWithTheStepThatFailed()
    {
        QFETCH(QString, progId);
        QFETCH(bool, asPad);
        QFETCH(QString, said);
        m_store->setValue(tessaly::RegistryRoot::LocalMachine, "SOFTWARE\\Classes\\Elsewhere.Thing\\CLSID", QString(),
                          tessaly::RegistryValue::fromText("{00000000-0000-0000-0000-000000000001}"));
        try {
            if (asPad)
                tessaly::ComponentLoader::createPad(progId);
            else
                tessaly::ComponentLoader::createModel(progId);
            QFAIL("made something");
        } catch (const tessaly::Error &error) {
            QVERIFY2(error.message().contains(said), qPrintable(error.message()));
        }
    }
};

QTEST_GUILESS_MAIN(tst_ComponentLoader)
#include "tst_componentloader.moc"
