#include "veldra/dialogs/wizparamdbgetdialog.h"

#include "tessaly/namemap.h"
#include "tessaly/busycursor.h"
#include "tessaly/uiservice.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/resources/extratext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace veldra {

namespace {
QComboBox *newCombo(const QString &objectName, QLabel *label, QWidget *parent)
{
    auto *combo = new QComboBox(parent);
    combo->setObjectName(objectName);
    combo->setMinimumContentsLength(20);
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    label->setBuddy(combo);
    return combo;
}

QListWidget *newResultList(const QString &objectName, QWidget *parent)
{
    auto *list = new QListWidget(parent);
    list->setObjectName(objectName);
    list->setMinimumHeight(list->fontMetrics().lineSpacing() * 10);
    return list;
}
} // namespace

WizParamDBGetDialog::WizParamDBGetDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizParamDBGetDialog"));
    setWindowTitle(text(StringId::DBGetDialogCaption));

    QLabel *tableLabel = form::newLabel(QStringLiteral("TableLabel"), StringId::DBGetTableLabel, this);
    m_tables = newCombo(QStringLiteral("ParamDBGTableCombo"), tableLabel, this);
    QLabel *keyLabel = form::newLabel(QStringLiteral("KeyLabel"), StringId::DBGetKeyColumnLabel, this);
    m_keyColumns = newCombo(QStringLiteral("ParamDBGKeyColCombo"), keyLabel, this);
    QLabel *valueLabel = form::newLabel(QStringLiteral("ValueLabel"), StringId::DBGetValueColumnLabel, this);
    m_valueColumns = newCombo(QStringLiteral("ParamDBGValColCombo"), valueLabel, this);
    m_keys = newResultList(QStringLiteral("ParamDBGKeyColList"), this);
    m_names = newResultList(QStringLiteral("ParamDBGValColList"), this);
    m_keys->setAccessibleName(extraText(ExtraText::FoundValuesName));
    m_names->setAccessibleName(extraText(ExtraText::FoundNamesName));

    auto *tableRow = new QHBoxLayout;
    tableRow->addWidget(tableLabel);
    tableRow->addWidget(m_tables, 1);

    // The value and its display name side by side, each under the column it comes from.
    auto *grid = new QGridLayout;
    grid->addWidget(keyLabel, 0, 0);
    grid->addWidget(valueLabel, 0, 1);
    grid->addWidget(m_keyColumns, 1, 0);
    grid->addWidget(m_valueColumns, 1, 1);
    grid->addWidget(m_keys, 2, 0);
    grid->addWidget(m_names, 2, 1);
    grid->setRowStretch(2, 1);

    QDialogButtonBox *buttons = form::newButtonBox(this);
    m_ok = form::addButton(buttons, QStringLiteral("OKButton"), StringId::DBGetOKButton, QDialogButtonBox::AcceptRole);
    form::addButton(buttons, QStringLiteral("CancelButton"), StringId::DBGetCancelButton, QDialogButtonBox::RejectRole);
    m_ok->setDefault(true);

    // Ours, beside the system's controls: raw column contents are no SQL the condition can carry.
    m_asLiterals = new QCheckBox(extraText(ExtraText::StoreAsLiteralsCheck), this);
    m_asLiterals->setObjectName(QStringLiteral("ParamDBGLiteralCheck"));

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(tableRow);
    layout->addLayout(grid, 1);
    layout->addWidget(m_asLiterals);
    layout->addWidget(buttons);

    // A pair is one row in two lists: they scroll and select together.
    for (auto [from, to] : { std::pair{ m_keys, m_names }, std::pair{ m_names, m_keys } }) {
        connect(from->verticalScrollBar(), &QScrollBar::valueChanged, to->verticalScrollBar(), &QScrollBar::setValue);
        connect(from, &QListWidget::currentRowChanged, to, qOverload<int>(&QListWidget::setCurrentRow));
    }

    connect(m_tables, &QComboBox::currentIndexChanged, this, &WizParamDBGetDialog::tableChosen);
    connect(m_keyColumns, &QComboBox::currentIndexChanged, this, &WizParamDBGetDialog::keyColumnChosen);
    connect(m_valueColumns, &QComboBox::currentIndexChanged, this, &WizParamDBGetDialog::valueColumnChosen);
    connect(m_asLiterals, &QCheckBox::toggled, this, [this](bool on) {
        m_decision.setStoreAsLiterals(on);
        showResult();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &WizParamDBGetDialog::okClicked);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    start(nullptr, nullptr);
}

WizParamDBGetDialog::~WizParamDBGetDialog()
{
    tessaly::detachChildSignals(this);
}

void WizParamDBGetDialog::start(TSAccessor *accessor, const std::shared_ptr<dbInfo> &database)
{
    m_decision.start(accessor, database);
    fillColumns(m_keyColumns, {});
    fillColumns(m_valueColumns, {});
    fillTables();
    showResult();
}

void WizParamDBGetDialog::fillTables()
{
    QStringList tables;
    {
        const tessaly::BusyCursor busy;
        tables = m_decision.tables();
    }
    {
        const QSignalBlocker blocker(m_tables);
        // Emptied from the last entry to the first, as the list has always been.
        for (int i = m_tables->count() - 1; i >= 0; --i)
            m_tables->removeItem(i);
        m_tables->addItems(tables);
        m_tables->setCurrentIndex(tables.isEmpty() ? -1 : 0);
    }
    // The first table is chosen as a click would choose it.
    if (!tables.isEmpty())
        tableChosen();
}

void WizParamDBGetDialog::tableChosen()
{
    form::guarded(this, [this] {
        if (!m_decision.chooseTable(m_tables->currentText()))
            return;
        QStringList columns;
        {
            const tessaly::BusyCursor busy;
            columns = m_decision.columns();
        }
        fillColumns(m_keyColumns, columns);
        fillColumns(m_valueColumns, columns);
        keyColumnChosen();
        valueColumnChosen();
        showResult();
    });
}

void WizParamDBGetDialog::fillColumns(QComboBox *combo, const QStringList &entries)
{
    const QSignalBlocker blocker(combo);
    combo->clear();
    combo->addItems(entries);
    combo->setCurrentIndex(entries.isEmpty() ? -1 : 0);
}

void WizParamDBGetDialog::keyColumnChosen()
{
    form::guarded(this, [this] {
        const tessaly::BusyCursor busy;
        if (m_decision.chooseKeyColumn(m_keyColumns->currentText()))
            showResult();
    });
}

void WizParamDBGetDialog::valueColumnChosen()
{
    form::guarded(this, [this] {
        const tessaly::BusyCursor busy;
        if (m_decision.chooseValueColumn(m_valueColumns->currentText()))
            showResult();
    });
}

void WizParamDBGetDialog::showResult()
{
    m_keys->clear();
    m_names->clear();
    const std::shared_ptr<tessaly::NameMap> stored = m_decision.valuesToStore();
    const tessaly::NameMap &pairs = *stored;
    QStringList keys;
    QStringList names;
    keys.reserve(pairs.count());
    names.reserve(pairs.count());
    for (int i = 0; i < pairs.count(); ++i) {
        keys.append(pairs.key(i));
        names.append(pairs.item(i).toString());
    }
    m_keys->addItems(keys);
    m_names->addItems(names);
    m_ok->setEnabled(m_decision.okEnabled());
}

void WizParamDBGetDialog::okClicked()
{
    if (!m_decision.okEnabled())
        return;
    accept();
}

std::optional<std::shared_ptr<tessaly::NameMap>> retrieveSelectionValues(QWidget *parent, TSAccessor *accessor,
                                                                         const std::shared_ptr<dbInfo> &database)
{
    WizParamDBGetDialog dialog(parent);
    dialog.start(accessor, database);
    if (tessaly::UiService::instance().execDialog(dialog) != QDialog::Accepted)
        return std::nullopt;
    return dialog.result();
}

} // namespace veldra
