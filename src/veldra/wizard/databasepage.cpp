#include "veldra/wizard/databasepage.h"

#include "veldra/dialogs/formhelpers.h"
#include "veldra/resources/stringtable.h"
#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/wizardstate.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace veldra {

namespace {
void fillCombo(QComboBox *combo, const StepChoices &choices)
{
    form::refillComboBox(combo, choices.entries, choices.selected);
}
} // namespace

DatabasePage::DatabasePage(WizardState &state, QWidget *parent)
    : WizardPage(state.database(), parent), m_step(state.database())
{
    auto *frame = new QGroupBox(text(StringId::DatabaseStepCaption), this);
    frame->setObjectName(QStringLiteral("DatabaseFrame"));
    auto *form = new QFormLayout(frame);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    const auto addRow = [&](const QString &labelName, StringId caption, const QString &comboName) {
        auto *label = new QLabel(text(caption), frame);
        label->setObjectName(labelName);
        auto *combo = new QComboBox(frame);
        combo->setObjectName(comboName);
        // Long data source names must not widen the wizard beyond the screen.
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(24);
        label->setBuddy(combo);
        form->addRow(label, combo);
        return combo;
    };
    m_providers = addRow(QStringLiteral("ProviderLabel"), StringId::ProviderLabel, QStringLiteral("ProviderCombo"));
    m_dataSources = addRow(QStringLiteral("DSNLabel"), StringId::DSNLabel, QStringLiteral("DSNCombo"));
    m_catalogs = addRow(QStringLiteral("CatalogLabel"), StringId::CatalogLabel, QStringLiteral("CatalogCombo"));
    // Ours: why the chosen data source is marked "(Unavailable)".
    m_dataSourceReason = new QLabel(frame);
    m_dataSourceReason->setObjectName(QStringLiteral("DSNReasonLabel"));
    m_dataSourceReason->setTextFormat(Qt::PlainText);
    m_dataSourceReason->setWordWrap(true);
    m_dataSourceReason->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(QString(), m_dataSourceReason);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
    layout->addStretch(1);

    connect(m_providers, &QComboBox::activated, this, &DatabasePage::providerActivated);
    connect(m_dataSources, &QComboBox::activated, this, &DatabasePage::dataSourceActivated);
    connect(m_catalogs, &QComboBox::activated, this, &DatabasePage::catalogActivated);
}

void DatabasePage::providerActivated(int index)
{
    form::guarded(this, [this, index] {
        if (m_step.chooseProvider(m_providers->itemText(index)))
            showLists();
    });
    Q_EMIT completeChanged();
}

void DatabasePage::dataSourceActivated(int index)
{
    form::guarded(this, [this, index] {
        if (m_step.chooseDataSource(m_dataSources->itemText(index)))
            showLists();
    });
    Q_EMIT completeChanged();
}

void DatabasePage::catalogActivated(int index)
{
    m_step.chooseCatalog(m_catalogs->itemText(index));
    Q_EMIT completeChanged();
}

void DatabasePage::showLists()
{
    fillCombo(m_providers, m_step.providers());
    const StepChoices dataSources = m_step.dataSources();
    fillCombo(m_dataSources, dataSources);
    for (int i = 0; i < dataSources.entries.size(); ++i)
        m_dataSources->setItemData(i, m_step.unavailableReason(dataSources.entries.at(i)), Qt::ToolTipRole);
    fillCombo(m_catalogs, m_step.catalogs());
    const QString reason = m_step.unavailableReason(m_step.dsn());
    m_dataSourceReason->setText(reason);
    m_dataSourceReason->setVisible(!reason.isEmpty());
}

} // namespace veldra
