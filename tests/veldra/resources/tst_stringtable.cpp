#include "veldra/resources/stringtable.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

using veldra::Language;
using veldra::StringId;
using veldra::StringTable;

class tst_StringTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyKeyHasBothLanguages();
    void environmentPicksLanguage_data();
    void environmentPicksLanguage();
    void childReportsLanguage();
};

void tst_StringTable::everyKeyHasBothLanguages()
{
    // Texts that read the same in both languages on purpose.
    const QStringList sameInBoth = { QStringLiteral("OK"), QStringLiteral(">>") };
    const QList<int> ids = StringTable::ids();
    QVERIFY(ids.size() > 100);
    for (int id : ids) {
        const QString english = StringTable::text(id, Language::English);
        const QString japanese = StringTable::text(id, Language::Japanese);
        QVERIFY2(!english.isEmpty(), qPrintable(QString::number(id)));
        QVERIFY2(!japanese.isEmpty(), qPrintable(QString::number(id)));
        if (!sameInBoth.contains(english))
            QVERIFY2(japanese != english, qPrintable(QString::number(id) + u' ' + english));
        QVERIFY2(japanese.count(u'&') == english.count(u'&'), qPrintable(QString::number(id)));
        QVERIFY2(japanese.count(u'%') == english.count(u'%'), qPrintable(QString::number(id)));
    }
    QVERIFY(StringTable::text(99999, Language::English).isEmpty());
}

// The environment is read once per process, so each language is checked in a child run of this
// binary, with the locale set to the other language so that the variable has to win.
void tst_StringTable::environmentPicksLanguage_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("expected");
    QTest::newRow("ja") << QStringLiteral("ja") << QStringLiteral("en_US.UTF-8") << QStringLiteral("ja");
    QTest::newRow("JA_jp") << QStringLiteral("JA_jp") << QStringLiteral("C") << QStringLiteral("ja");
    QTest::newRow("en") << QStringLiteral("en") << QStringLiteral("ja_JP.UTF-8") << QStringLiteral("en");
}

void tst_StringTable::environmentPicksLanguage()
{
    QFETCH(QString, variable);
    QFETCH(QString, locale);
    QFETCH(QString, expected);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("VELDRA_LANG"), variable);
    environment.insert(QStringLiteral("LC_ALL"), locale);
    environment.insert(QStringLiteral("LANG"), locale);
    environment.insert(QStringLiteral("TST_STRINGTABLE_EXPECT"), expected);
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), { QStringLiteral("childReportsLanguage") });
    QVERIFY(child.waitForFinished(30000));
    QVERIFY2(child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0,
             child.readAllStandardOutput().constData());
}

void tst_StringTable::childReportsLanguage()
{
    const QByteArray expected = qgetenv("TST_STRINGTABLE_EXPECT");
    if (expected.isEmpty())
        QSKIP("run by environmentPicksLanguage");
    const bool japanese = expected == "ja";
    QCOMPARE(StringTable::language(), japanese ? Language::Japanese : Language::English);
    QCOMPARE(veldra::text(StringId::WizardCaption),
             StringTable::text(1000, japanese ? Language::Japanese : Language::English));

    // A language chosen in code wins over the environment.
    StringTable::setLanguage(japanese ? Language::English : Language::Japanese);
    QCOMPARE(veldra::text(StringId::WizardCaption),
             StringTable::text(1000, japanese ? Language::English : Language::Japanese));
}

QTEST_GUILESS_MAIN(tst_StringTable)
#include "tst_stringtable.moc"
