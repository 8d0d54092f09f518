#include "../common/definitions.h"
#include "wizardfixture.h"

#include "veldra/wizard/conditionstep.h"

#include <QTest>

using namespace veldra;
using namespace testdefs;

class tst_ConditionStep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void insertionsReplaceTheSelection_data();
    void insertionsReplaceTheSelection();
};

void tst_ConditionStep::insertionsReplaceTheSelection_data()
{
    QTest::addColumn<QString>("condition");
    QTest::addColumn<int>("selectionStart");
    QTest::addColumn<int>("selectionEnd");
    QTest::addColumn<QString>("action"); // "token N", "column TEXT KEY" or "parameter NAME"
    QTest::addColumn<QString>("result");
    QTest::addColumn<int>("caret");
    QTest::newRow("token at the end") << "a = 1" << 5 << 5 << "token 0" << "a = 1AND " << 9;
    QTest::newRow("token over a selection") << "a < 1" << 2 << 3 << "token 5" << "a >=  1" << 5;
    QTest::newRow("selection made backwards") << "a < 1" << 3 << 2 << "token 8" << "a =  1" << 4;
    QTest::newRow("sum() into an empty box: caret inside") << "" << 0 << 0 << "token 7" << "sum() " << 4;
    QTest::newRow("count() in the middle: caret inside") << "x > " << 4 << 4 << "token 6" << "x > count() " << 10;
    QTest::newRow("NOT keeps the caret after the blank") << "" << 0 << 0 << "token 9" << "NOT " << 4;
    QTest::newRow("column without alias: table and column") << "" << 0 << 0 << "column Amount" << "T.Amount " << 9;
    QTest::newRow("column with alias: the alias alone") << "x=" << 2 << 2 << "column Cost T.Price" << "x=Cost " << 7;
    QTest::newRow("known parameter") << "a = " << 4 << 4 << "parameter @@@p" << "a = @@@p " << 9;
    QTest::newRow("unknown parameter: nothing") << "a = " << 4 << 4 << "parameter @@@q" << "a = " << -1;
    QTest::newRow("empty parameter name: nothing") << "a = " << 4 << 4 << "parameter " << "a = " << -1;
    QTest::newRow("selection beyond the text is kept inside") << "ab" << 1 << 99 << "token 1" << "aOR " << 4;
}

void tst_ConditionStep::insertionsReplaceTheSelection()
{
    QFETCH(QString, condition);
    QFETCH(int, selectionStart);
    QFETCH(int, selectionEnd);
    QFETCH(QString, action);
    QFETCH(QString, result);
    QFETCH(int, caret);
    auto query = std::make_shared<SQLInfo>();
    addParameter(*query, "@@@p", "P");
    query->setCondition(condition);
    WizardState state;
    testwizard::start(state, query);
    ConditionStep &step = state.condition();

    const QStringList words = action.split(' ');
    std::optional<ConditionStep::Insertion> insertion;
    if (words[0] == "token")
        insertion = step.insertToken(words[1].toInt(), selectionStart, selectionEnd);
    else if (words[0] == "column")
        insertion = step.insertColumnToken("T", { words[1], words.value(2) }, selectionStart, selectionEnd);
    else
        insertion = step.insertParameterToken(words.value(1), selectionStart, selectionEnd);
    QCOMPARE(insertion.has_value(), caret >= 0);
    if (insertion) {
        QString text = condition;
        text.replace(insertion->start, insertion->end - insertion->start, insertion->text);
        QCOMPARE(text, result);
        QCOMPARE(insertion->caret, caret);
    }
}

QTEST_GUILESS_MAIN(tst_ConditionStep)
#include "tst_conditionstep.moc"
