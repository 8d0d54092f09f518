#pragma once

#include "veldra/wizard/databasestep.h"
#include "veldra/wizard/wizardpage.h"

class QComboBox;

namespace veldra {

// Step 0: the provider, data source and catalog to connect to.
class DatabasePage : public WizardPage
{
    Q_OBJECT

public:
    explicit DatabasePage(WizardState &state, QWidget *parent = nullptr);

    void initialize() override;

private:
    void providerActivated(int index);
    void dataSourceActivated(int index);
    void catalogActivated(int index);
    void showLists();

    DatabaseStep m_step;
    QComboBox *m_providers;
    QComboBox *m_dataSources;
    QComboBox *m_catalogs;
};

} // namespace veldra
