#include "studiowindow.h"
#include "../veldra/common/definitions.h"
#include "../veldra/dialogs/recordinguiservice.h"
#include "resulttablemodel.h"

#include "tessaly/registrystore.h"
#include "tessaly/uiservice.h"
#include "tessaly/variant.h"
#include "tessaly/widgets/padsite.h"
#include "tessaly/zetprimitivemodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/registration/registration.h"
#include "veldra/resources/stringtable.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString sample = QStringLiteral(VELDRA_SOURCE_DIR "/samples/sales-by-region.component.xml");

QSet<QString> column(const ResultTableModel &results, int column)
{
    QSet<QString> values;
    for (const QStringList &row : results.result().rows)
        values.insert(row.value(column));
    return values;
}

} // namespace

// The studio as a person uses it, offscreen: open the sample, change inputs, see the rows follow.
class tst_Studio : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_config;
    std::shared_ptr<testui::RecordingUiService> m_ui;

    static void waitForRows(StudioWindow &window)
    {
        window.setQueryDelay(0);
        QTRY_VERIFY_WITH_TIMEOUT(window.isSettled(), 20000);
    }
    template<typename T>
    static T *input(StudioWindow &window, const QString &name)
    {
        auto *child = window.findChild<QWidget *>(name);
        return child ? child->findChild<T *>() : nullptr;
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8()); // the built-in sample only
        veldra::StringTable::setLanguage(veldra::Language::English);
    }

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

    void makesTheComponentByProgIdWhenRegistered()
    {
        auto store = std::make_shared<tessaly::RegistryStore>();
        veldra::Registration::registerClasses(*store);
        tessaly::RegistryStore::setInstance(store);
        StudioWindow window;
        tessaly::RegistryStore::setInstance(nullptr);
        QVERIFY(window.site().pad());
        QCOMPARE(window.site().pad()->zetPrimitivePad_returnClassName(), QString("TsyParamConditionPad"));
    }

    void opensTheSampleAndShowsItsRows()
    {
        StudioWindow window;
        window.setQueryDelay(0);
        QVERIFY(window.openDocument(sample));
        waitForRows(window);
        QVERIFY2(m_ui->messages.isEmpty() && m_ui->reports.isEmpty(), qPrintable(m_ui->messages.value(0).text));
        QVERIFY(!window.results().result().rows.isEmpty());
        // Figures line up on the right, text on the left.
        const auto alignment = [&window](int column) {
            return window.results().data(window.results().index(0, column), Qt::TextAlignmentRole);
        };
        QVERIFY(!alignment(0).isValid());
        QCOMPARE(alignment(3).value<Qt::Alignment>() & Qt::AlignRight, Qt::AlignRight);
        QVERIFY(window.windowTitle().startsWith("sales-by-region.component.xml"));
    }

    void changingInputsRefreshesRequestAndRows()
    {
        StudioWindow window;
        QVERIFY(window.openDocument(sample));
        waitForRows(window);
        QCOMPARE(column(window.results(), 0), QSet<QString>{ "North East" });

        window.findChild<QAction *>("ShowRequestAction")->setChecked(true);
        QVERIFY(window.findChild<QWidget *>("RequestPane")->isVisibleTo(&window));

        input<QComboBox>(window, "ParamInput@@@Region")->setCurrentText("South West");
        waitForRows(window);
        QCOMPARE(column(window.results(), 0), QSet<QString>{ "South West" });
        QVERIFY(window.findChild<QPlainTextEdit *>("RequestText")->toPlainText().contains("'SW'"));

        // A date after every order leaves nothing.
        QLineEdit *from = input<QLineEdit>(window, "ParamInput@@@FromDate");
        from->clear();
        QTest::keyClicks(from, "'2999-01-01'");
        waitForRows(window);
        QVERIFY(window.results().result().rows.isEmpty());
        QVERIFY(window.results().result().error.isEmpty());
    }

    void savesAndReopensWhatWasChosen()
    {
        QTemporaryDir dir;
        const QString fileName = dir.filePath("chosen.xml");
        {
            StudioWindow window;
            QVERIFY(window.openDocument(sample));
            input<QComboBox>(window, "ParamInput@@@Region")->setCurrentText("Central");
            QVERIFY(window.saveDocument(fileName));
            QCOMPARE(window.fileName(), fileName);
        }
        StudioWindow window;
        QVERIFY(window.openDocument(fileName));
        QCOMPARE(input<QComboBox>(window, "ParamInput@@@Region")->currentText(), QString("Central"));
        waitForRows(window);
        QCOMPARE(column(window.results(), 0), QSet<QString>{ "Central" });
    }

    void aDocumentThatCannotBeReadLeavesTheCurrentOne()
    {
        QTemporaryDir dir;
        const QString broken = dir.filePath("broken.xml");
        QFile file(broken);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<Component><Model><ClassPart>");
        file.close();

        StudioWindow window;
        QVERIFY(window.openDocument(sample));
        QVERIFY(!window.openDocument(broken));
        QCOMPARE(m_ui->messages.size(), 1);
        QVERIFY2(m_ui->messages.at(0).text.contains("broken.xml:"), qPrintable(m_ui->messages.at(0).text));
        QCOMPARE(window.fileName(), sample);
        QVERIFY(input<QComboBox>(window, "ParamInput@@@Region"));
        QVERIFY(!window.saveDocument(dir.filePath("no/such/folder/out.xml")));
        QCOMPARE(m_ui->messages.size(), 2);
    }

    // What the wizard does on Finish, through the pad's wizard seam: the studio's service reaches
    // it, and afterwards what the person had set (the document's values too) stays where it
    // still applies.
    void editQueryKeepsTheInputsThatStillApply()
    {
        StudioWindow window;
        QVERIFY(window.openDocument(sample));
        input<QComboBox>(window, "ParamInput@@@Region")->setCurrentText("South West");
        auto *pad = dynamic_cast<veldra::TsyParamConditionPad *>(window.site().pad());
        QVERIFY(pad);
        // Without the studio's service the pad would not open the wizard at all.
        pad->setWizardLauncher([](const auto &model, const auto &, const auto &definition) {
            auto edited = tessaly::objectCast<veldra::SQLInfo>(definition)->copy();
            edited->setTopN(2);
            edited->setTopNAsParam(true);
            edited->setCondition(edited->condition() + " AND orders.amount >= @@@Least");
            testdefs::addParameter(*edited, "@@@Least", "Smallest amount");
            model->zetPrimitiveModel_onSetSlotValue("SQLInfo", tessaly::variant::holding(edited));
            model->zetPrimitiveModel_onSetSlotValue("BuildUI", tessaly::variant::holding(edited));
            return true;
        });
        window.findChild<QAction *>("EditQueryAction")->trigger();
        QCOMPARE(input<QComboBox>(window, "ParamInput@@@Region")->currentText(), QString("South West"));
        QCOMPARE(input<QLineEdit>(window, "ParamInput@@@FromDate")->text(), QString("'2023-01-01'"));
        QCOMPARE(input<QLineEdit>(window, "TopNInput")->text(), QString("2"));
        QVERIFY(window.findChild<QLabel *>("DocumentText")->text().startsWith("Query changed, not saved yet"));

        // The new parameter has no value: it is named, and the service is not asked.
        waitForRows(window);
        QVERIFY(window.results().result().rows.isEmpty());
        const QString status = window.findChild<QLabel *>("StatusText")->text();
        QVERIFY2(status.contains("\"Smallest amount\""), qPrintable(status));
    }
};

QTEST_MAIN(tst_Studio)
#include "tst_studio.moc"
