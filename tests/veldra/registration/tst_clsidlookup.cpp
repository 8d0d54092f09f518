#include "veldra/registration/clsidlookup.h"
#include "veldra/records/sqlinfo.h"

#include <QTest>

using namespace veldra;
using tessaly::RegistryRoot;
using tessaly::RegistryValue;

namespace {

// Counts the value queries, so the tests can tell a cache hit from a registry read.
class CountingStore : public tessaly::RegistryStore
{
public:
    std::optional<RegistryValue> queryValue(RegistryRoot root, const QString &path,
                                            const QString &valueName) const override
    {
        ++queries;
        return RegistryStore::queryValue(root, path, valueName);
    }
    mutable int queries = 0;
};

QString classKey(const QString &progId)
{
    return QStringLiteral("SOFTWARE\\Classes\\") + progId + QStringLiteral("\\CLSID");
}

} // namespace

class tst_ClsidLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanupTestCase() { tessaly::RegistryStore::setInstance(nullptr); }
    void aFoundIdentifierIsReadOnce();
    void aMissingIdentifierIsAskedForEveryTime();
    void recordsAskForTheirOwnProgId();
    void numberValuesKeepTheirHistoricFormatting_data();
    void numberValuesKeepTheirHistoricFormatting();
    void valuesLargerThanTheBufferFail();

private:
    std::shared_ptr<CountingStore> m_store;
};

void tst_ClsidLookup::init()
{
    m_store = std::make_shared<CountingStore>();
    tessaly::RegistryStore::setInstance(m_store);
    ClsidLookup::clearCacheForTesting();
}

void tst_ClsidLookup::aFoundIdentifierIsReadOnce()
{
    m_store->setValue(RegistryRoot::LocalMachine, classKey(QStringLiteral("Veldra.SQLInfo")), QString(),
                      RegistryValue::fromText(QStringLiteral("{1234}")));
    QCOMPARE(ClsidLookup::lookup(QStringLiteral("Veldra.SQLInfo")), QStringLiteral("{1234}"));
    QCOMPARE(ClsidLookup::lookup(QStringLiteral("Veldra.SQLInfo")), QStringLiteral("{1234}"));
    QCOMPARE(m_store->queries, 1);
    // Case matters: another ProgID, another read.
    QCOMPARE(ClsidLookup::lookup(QStringLiteral("veldra.SQLInfo")), QString());
    QCOMPARE(m_store->queries, 1); // no such key: the value is never queried
}

void tst_ClsidLookup::aMissingIdentifierIsAskedForEveryTime()
{
    const QString key = classKey(QStringLiteral("Veldra.Late"));
    m_store->setValue(RegistryRoot::LocalMachine, key, QStringLiteral("other"), RegistryValue::fromText(QStringLiteral("x")));
    QCOMPARE(ClsidLookup::lookup(QStringLiteral("Veldra.Late")), QString());
    QCOMPARE(ClsidLookup::lookup(QStringLiteral("Veldra.Late")), QString());
    QCOMPARE(m_store->queries, 2);
    m_store->setValue(RegistryRoot::LocalMachine, key, QString(), RegistryValue::fromText(QStringLiteral("{late}")));
    QCOMPARE(ClsidLookup::lookup(QStringLiteral("Veldra.Late")), QStringLiteral("{late}"));
}

void tst_ClsidLookup::recordsAskForTheirOwnProgId()
{
    m_store->setValue(RegistryRoot::LocalMachine, classKey(QStringLiteral("Veldra.DBInfo")), QString(),
                      RegistryValue::fromText(QStringLiteral("{db}")));
    QCOMPARE(dbInfo().zetVariable_GetCLSID(), QStringLiteral("{db}"));
    QCOMPARE(SQLInfo().zetVariable_GetCLSID(), QString());
}

void tst_ClsidLookup::numberValuesKeepTheirHistoricFormatting_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("ten") << QByteArray::fromHex("0a000000") << "10";
    QTest::newRow("byte below 0x10 loses its zero") << QByteArray::fromHex("01020000") << "33";
    QTest::newRow("full bytes are exact") << QByteArray::fromHex("ffee1020") << QString::number(0x2010eeff);
    QTest::newRow("all bits set") << QByteArray::fromHex("ffffffff") << "-1";
}

void tst_ClsidLookup::numberValuesKeepTheirHistoricFormatting()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    m_store->setValue(RegistryRoot::LocalMachine, QStringLiteral("K"), QStringLiteral("n"),
                      RegistryValue { RegistryValue::NumberType, bytes });
    QString value;
    QVERIFY(ClsidLookup::readRegistryValue(RegistryRoot::LocalMachine, QStringLiteral("K"), QStringLiteral("n"), &value));
    QCOMPARE(value, text);
}

void tst_ClsidLookup::valuesLargerThanTheBufferFail()
{
    m_store->setValue(RegistryRoot::LocalMachine, QStringLiteral("K"), QStringLiteral("fits"),
                      RegistryValue::fromText(QString(1023, u'x')));
    m_store->setValue(RegistryRoot::LocalMachine, QStringLiteral("K"), QStringLiteral("big"),
                      RegistryValue::fromText(QString(1024, u'x')));
    QString value;
    QVERIFY(ClsidLookup::readRegistryValue(RegistryRoot::LocalMachine, QStringLiteral("K"), QStringLiteral("fits"), &value));
    QCOMPARE(value.size(), 1023);
    QVERIFY(!ClsidLookup::readRegistryValue(RegistryRoot::LocalMachine, QStringLiteral("K"), QStringLiteral("big"), &value));
    QVERIFY(value.isEmpty());
}

QTEST_APPLESS_MAIN(tst_ClsidLookup)
#include "tst_clsidlookup.moc"
