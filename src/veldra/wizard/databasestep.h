#pragma once

#include "veldra/wizard/wizardstep.h"

#include <QString>
#include <QStringList>

namespace veldra {

class WizardState;

// What a drop-down list of the database step shows: its entries and the one selected (-1 for
// none).
struct StepChoices
{
    QStringList entries;
    int selected = -1;
};

// The rules of the database step: which providers, data sources and catalogs the lists hold,
// which entries are chosen, and what a person's choice changes. The lists come from the
// wizard's accessor and are read again only when the level above them changes, so a failing
// service is asked (and its failure shown) once per change, not once per look.
class DatabaseStep final : public WizardStep
{
public:
    explicit DatabaseStep(WizardState &state) : m_state(state) {}

    // Opening the wizard: fills the three lists and chooses the definition's provider, data
    // source and catalog where the service still has them; a choice it no longer has is
    // emptied.
    void initialize() override;
    // Complete with a provider, a data source and a catalog chosen.
    bool isComplete() const override;

    // The chosen names; a data source marked "(Unavailable)" keeps its marker.
    const QString &provider() const { return m_provider; }
    const QString &dsn() const { return m_dsn; }
    const QString &catalog() const { return m_catalog; }

    StepChoices providers() const;
    // A data source without catalogs is listed with the "(Unavailable)" marker; that marked
    // text is then its chosen name, and it has no catalogs.
    StepChoices dataSources() const;
    StepChoices catalogs() const;

    // Why a data source entry is marked "(Unavailable)", with the service's reason when its
    // catalogs could not be listed; "" for an entry that is not marked. Asks nothing.
    QString unavailableReason(const QString &entry) const;

    // A person picked an entry. A new provider refills the data sources and a new data source
    // the catalogs, choosing again what the definition names; picking the chosen entry again
    // changes nothing. True when the choice changed.
    bool chooseProvider(const QString &entry);
    bool chooseDataSource(const QString &entry);
    void chooseCatalog(const QString &entry);

private:
    static StepChoices choices(const QStringList &entries, const QString &chosen);
    void fillProviderList();
    void fillDataSourceList();
    void fillCatalogList();

    WizardState &m_state;
    QString m_provider;
    QString m_dsn;
    QString m_catalog;
    QStringList m_providers;
    QStringList m_dataSources; // as shown, markers included
    QStringList m_dataSourceNames; // as the service names them
    QStringList m_catalogs;
};

} // namespace veldra
