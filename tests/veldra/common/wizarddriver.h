#pragma once

// The query wizard driven as a person drives it, by the controls' names, for the tests that
// need a query built from nothing (the wizard's own, and the hosts' journey to rows).

#include "../dialogs/recordinguiservice.h"

#include "veldra/resources/stringtable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

namespace testwizard {

using veldra::Language;
using veldra::StringTable;

// The wizard (or one of its pages) as a person sees it, found by the controls' names.
class WizardDriver
{
public:
    explicit WizardDriver(QWidget &dialog) : m_dialog(dialog) {}

    template<typename T>
    T *find(const char *name) const
    {
        T *widget = m_dialog.findChild<T *>(QLatin1String(name));
        if (!widget)
            qFatal("no control named %s", name);
        return widget;
    }

    int step() const { return find<QStackedWidget>("fraStep")->currentIndex(); }
    QPushButton *back() const { return find<QPushButton>("BackButton"); }
    QPushButton *next() const { return find<QPushButton>("NextButton"); }
    QPushButton *quit() const { return find<QPushButton>("QuitButton"); }

    // Picks an entry as a person does; false when the list does not hold it.
    bool choose(const char *comboName, const QString &entry) const
    {
        auto *combo = find<QComboBox>(comboName);
        const int index = combo->findText(entry);
        if (index < 0)
            return false;
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
        return true;
    }

    QStringList entries(const char *comboName) const
    {
        auto *combo = find<QComboBox>(comboName);
        QStringList list;
        for (int i = 0; i < combo->count(); ++i)
            list.append(combo->itemText(i));
        return list;
    }

    QAbstractItemModel *tables() const { return find<QListView>("TableSelectList")->model(); }
    QStringList tableNames(Qt::CheckState only) const
    {
        QStringList names;
        for (int row = 0; row < tables()->rowCount(); ++row) {
            const QModelIndex index = tables()->index(row, 0);
            if (only == Qt::PartiallyChecked || index.data(Qt::CheckStateRole).toInt() == only)
                names.append(index.data().toString());
        }
        return names;
    }
    // A mouse click on a table's name, or on its check box; the wizard must be shown.
    void clickTable(const QString &name, bool onBox = false) const
    {
        const QModelIndexList found = tables()->match(tables()->index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        if (found.isEmpty())
            qFatal("no table %s in the list", qPrintable(name));
        auto *list = find<QListView>("TableSelectList");
        list->scrollTo(found.first());
        QStyleOptionViewItem option;
        option.initFrom(list->viewport());
        option.rect = list->visualRect(found.first());
        option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
        option.text = name;
        const auto element = onBox ? QStyle::SE_ItemViewItemCheckIndicator : QStyle::SE_ItemViewItemText;
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->style()->subElementRect(element, &option, list).center());
    }

    void click(const char *buttonName) const { find<QPushButton>(buttonName)->click(); }
    void type(const char *editName, const QString &typed) const { QTest::keyClicks(find<QWidget>(editName), typed); }

    // Marks a row of a list, as a click on it does.
    void pick(const char *listName, const QString &row) const
    {
        if (auto *list = m_dialog.findChild<QListWidget *>(QLatin1String(listName))) {
            const auto found = list->findItems(row, Qt::MatchExactly);
            if (found.isEmpty())
                qFatal("no row %s in %s", qPrintable(row), listName);
            list->setCurrentItem(found.first());
            return;
        }
        auto *tree = find<QTreeWidget>(listName);
        const auto found = tree->findItems(row, Qt::MatchExactly);
        if (found.isEmpty())
            qFatal("no row %s in %s", qPrintable(row), listName);
        tree->setCurrentItem(found.first());
    }

    // Renames a row in place (F2, typing, Enter); the wizard must be shown.
    void editInPlace(const char *treeName, int row, const QString &typed) const
    {
        auto *tree = find<QTreeWidget>(treeName);
        QTreeWidgetItem *item = tree->topLevelItem(row);
        tree->setCurrentItem(item);
        tree->editItem(item, 0);
        auto *editor = qobject_cast<QLineEdit *>(tree->indexWidget(tree->model()->index(row, 0)));
        if (!editor)
            qFatal("no editor opened in %s", treeName);
        editor->setText(typed);
        QTest::keyClick(editor, Qt::Key_Return);
        // The view commits the editor, and the page answers, each in a later turn of the loop.
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

private:
    QWidget &m_dialog;
};

// What may differ from the shipped sample; the defaults build it exactly.
struct SampleChoices
{
    QString provider = QStringLiteral("SQLite");
    QString dataSource = QStringLiteral("Sample");
    QString catalog = QStringLiteral("main");
    int rowCount = 10;
    bool rowCountAsParameter = false;
    QStringList fromDateValues; // value, text, value, text...: chosen from a list; none: typed in
    bool conditionOnAlias = false; // the condition also names a column by its alias (Region), no column's name
};

// Builds the shipped sales-by-region query in form from an empty definition and stops on the
// last step, before Finish; dialogs the wizard opens are answered through ui.
inline void buildSampleQuery(QDialog &form, testui::RecordingUiService &ui, const SampleChoices &choices = {})
{
    WizardDriver wizard(form);
    form.show(); // renaming in place needs a window
    QVERIFY(QTest::qWaitForWindowExposed(&form));

    // Step 0: the database.
    QVERIFY(wizard.choose("ProviderCombo", choices.provider));
    QVERIFY(wizard.choose("DSNCombo", choices.dataSource));
    QVERIFY(wizard.choose("CatalogCombo", choices.catalog));
    wizard.next()->click();

    // Step 1: the tables, in the order the query names them.
    QCOMPARE(wizard.step(), 1);
    wizard.clickTable("regions");
    wizard.clickTable("customers");
    wizard.clickTable("orders");
    wizard.next()->click();

    // Step 2: two columns and two expressions, each with its alias.
    QCOMPARE(wizard.step(), 2);
    const auto insertColumn = [&](const QString &table, const QString &column) {
        QVERIFY(wizard.choose("SelectTableCombo", table));
        wizard.pick("SelectColumnList", column);
        wizard.click("SelectInsertButton");
    };
    insertColumn("regions", "name");
    insertColumn("customers", "segment");
    wizard.editInPlace("SelectList", 0, "Region");
    wizard.editInPlace("SelectList", 1, "Segment");
    // A column named and then left out again keeps its alias, as the sample's customer name does.
    insertColumn("customers", "name");
    wizard.editInPlace("SelectList", 2, "Customer");
    wizard.pick("SelectList", "Customer");
    wizard.click("SelectRemoveButton");

    wizard.find<QTabWidget>("ColExprTab")->setCurrentIndex(1);
    const auto addExpression = [&](const QString &expression) {
        ui.then([expression](QDialog &dialog) {
            WizardDriver exprDialog(dialog);
            exprDialog.find<QPlainTextEdit>("AddExprText")->setPlainText(expression);
            exprDialog.click("OKButton");
        });
        wizard.click("ExprAddButton");
        wizard.click("SelectInsertButton");
    };
    addExpression("COUNT(orders.id)");
    addExpression("ROUND(SUM(orders.amount), 2)");
    wizard.editInPlace("SelectList", 2, "Orders");
    wizard.editInPlace("SelectList", 3, "Revenue");
    const auto *selectList = wizard.find<QTreeWidget>("SelectList");
    QVERIFY(selectList->columnWidth(2) > selectList->fontMetrics().horizontalAdvance("ROUND(SUM(orders.amount), 2)"));
    QVERIFY(ui.messages.isEmpty());
    wizard.next()->click();

    // Step 3: the condition, from the column list, the token buttons, the parameter dialogs
    // and a little typing.
    QCOMPARE(wizard.step(), 3);
    const auto column = [&](const QString &table, const QString &name) {
        QVERIFY(wizard.choose("CondTableCombo", table));
        wizard.pick("CondColumnList", name);
        wizard.click("CondColAddButton");
    };
    const auto token = [&](const QString &caption) {
        for (auto *button : form.findChildren<QPushButton *>()) {
            if (button->objectName().startsWith("CondItemButton_") && button->text() == caption)
                return button->click();
        }
        QFAIL(qPrintable("no token button " + caption));
    };
    // Add in the parameter list, fill in the edit dialog (and a value dialog per listed
    // value), and OK in the list inserts the parameter.
    const auto parameter = [&](const QString &name, const QString &title, const QStringList &values) {
        ui.then([](QDialog &dialog) {
            WizardDriver list(dialog);
            list.click("AddButton");
            list.click("OKButton");
        });
        ui.then([=](QDialog &dialog) {
            WizardDriver edit(dialog);
            edit.type("ParamEditNameText", name);
            edit.type("ParamEditTitleText", title);
            const auto kinds = dialog.findChildren<QRadioButton *>("TypeOption");
            kinds.value(values.isEmpty() ? 0 : 1)->click();
            for (qsizetype i = 0; i < values.size(); i += 2)
                edit.click("AddButton");
            edit.click("OKButton");
        });
        for (qsizetype i = 0; i < values.size(); i += 2) {
            ui.then([value = values.at(i), shown = values.at(i + 1)](QDialog &dialog) {
                WizardDriver valueDialog(dialog);
                valueDialog.type("ParamValKeyText", value);
                valueDialog.type("ParamValValText", shown);
                valueDialog.click("OKButton");
            });
        }
        wizard.click("CondParamButton");
    };
    column("customers", "region_code");
    token("=");
    column("regions", "code");
    token("AND");
    column("orders", "customer_id");
    token("=");
    column("customers", "id");
    token("AND");
    column("orders", "status");
    wizard.type("ConditionText", "<> 'cancelled' "); // no token for "<>"
    token("AND");
    column("regions", "code");
    token("=");
    parameter("Region", "Region",
              { "'NE'", "North East", "'NW'", "North West", "'SE'", "South East", "'SW'", "South West",
                "'CE'", "Central", "'OS'", "Overseas" });
    token("AND");
    column("orders", "order_date");
    token(">=");
    parameter("FromDate", "Orders from ('YYYY-MM-DD')", choices.fromDateValues);
    if (choices.conditionOnAlias) {
        token("AND");
        column("regions", "Region"); // the list names an aliased column by its alias
        wizard.type("ConditionText", "= 'North East' ");
    }
    QTest::keyClick(wizard.find<QPlainTextEdit>("ConditionText"), Qt::Key_Backspace); // the last blank
    QVERIFY(ui.scripts.isEmpty());
    QVERIFY(ui.messages.isEmpty());
    wizard.next()->click();

    // Step 4: the row count, grouped, the largest revenue first.
    QCOMPARE(wizard.step(), 4);
    wizard.find<QCheckBox>("GrpOrdTopnCheck")->click();
    wizard.find<QLineEdit>("GrpOrdTopnText")->selectAll();
    wizard.type("GrpOrdTopnText", QString::number(choices.rowCount));
    if (choices.rowCountAsParameter)
        wizard.find<QCheckBox>("GrpOrdTopnParamCheck")->click();
    wizard.find<QCheckBox>("GrpOrdGroupCheck")->click();
    wizard.find<QCheckBox>("GrpOrdOrderCheck")->click();
    QVERIFY(wizard.choose("GrpOrdOrderCombo", "ROUND(SUM(orders.amount), 2)"));
    wizard.find<QRadioButton>("OrderByOption_1")->click();
    wizard.next()->click();

    QCOMPARE(wizard.step(), 5);
}

} // namespace testwizard
