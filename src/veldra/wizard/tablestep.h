#pragma once

#include "veldra/wizard/wizardstep.h"

#include <QStringList>

#include <memory>

namespace tessaly {
class NameMap;
}

namespace veldra {

class WizardState;

// The rules of the table step: the tables of the chosen catalog, which of them are chosen, and
// what entering the step keeps of the tables chosen before.
class TableStep final : public WizardStep
{
public:
    explicit TableStep(WizardState &state);

    // Going forward into the step: reads the catalog's tables (once per catalog; the accessor
    // keeps them) and settles the chosen tables. The definition's tables win when it has
    // some, minus those the database no longer has; otherwise the chosen tables are kept while
    // the database stays the same and emptied when it changed. The chosen database is then
    // written into the definition. False, and nothing changed, when the catalog has no tables
    // or the service cannot list them.
    bool prepare() override;
    // Complete with at least one table chosen.
    bool isComplete() const override;

    // The catalog's tables in the service's order, as of the last prepare().
    const QStringList &tableNames() const { return m_tableNames; }
    // Table name -> its TableInfo where known (the column step fills it in), else empty; in the
    // order the tables were chosen.
    tessaly::NameMap &chosen() const { return *m_chosen; }
    QStringList chosenNames() const;
    bool isChosen(const QString &table) const;
    // Checking adds the table (with no TableInfo yet: the column step fills it in), unchecking
    // removes it.
    void setChosen(const QString &table, bool chosen);

private:
    WizardState &m_state;
    QStringList m_tableNames;
    std::shared_ptr<tessaly::NameMap> m_chosen;
};

} // namespace veldra
