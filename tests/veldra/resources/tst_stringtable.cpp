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
    void recordTypeNames();
    void keysTheComponentNeeds();
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

void tst_StringTable::recordTypeNames()
{
    const QList<std::pair<int, QString>> classes = {
        { 201, QStringLiteral("SQLInfo") },   { 211, QStringLiteral("DBInfo") },
        { 221, QStringLiteral("TableInfo") }, { 231, QStringLiteral("ColumnInfo") },
        { 241, QStringLiteral("OrderInfo") }, { 251, QStringLiteral("ParamInfo") },
    };
    for (const auto &[id, name] : classes) {
        QCOMPARE(StringTable::text(id, Language::English), name + QStringLiteral(" Type"));
        QCOMPARE(StringTable::text(id, Language::Japanese), name + QStringLiteral("型"));
    }
}

void tst_StringTable::keysTheComponentNeeds()
{
    QList<int> needed = { 101, 102, 150, 151, 152, 160, 161, 1600 };
    // Ranges whose every key the wizard reads when a form loads.
    const QList<std::pair<int, int>> ranges = { { 103, 112 },   { 1000, 1004 }, { 1100, 1104 },
                                                { 1300, 1317 }, { 1400, 1405 }, { 1500, 1509 },
                                                { 1700, 1709 } };
    for (const auto &[first, last] : ranges) {
        for (int id = first; id <= last; ++id)
            needed.append(id);
    }
    for (int id : needed)
        QVERIFY2(StringTable::contains(id), qPrintable(QString::number(id)));

    // The model's slots share and shift descriptions; the texts must stay where they are.
    QCOMPARE(StringTable::text(110, Language::English), QStringLiteral("Edit Query"));
    QCOMPARE(StringTable::text(111, Language::English), QStringLiteral("Number of TOP"));
    QCOMPARE(StringTable::text(112, Language::English), QStringLiteral("Specified Column at ORDERBY"));
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
