#pragma once

#include "veldra/wizard/wizardpage.h"

class QComboBox;
class QLabel;

namespace veldra {

class DatabaseStep;
class WizardState;

// Step 0: the provider, data source and catalog to connect to.
class DatabasePage : public WizardPage
{
    Q_OBJECT

public:
    explicit DatabasePage(WizardState &state, QWidget *parent = nullptr);

private:
    void showOpened() override { showLists(); }
    void providerActivated(int index);
    void dataSourceActivated(int index);
    void catalogActivated(int index);
    void showLists();

    DatabaseStep &m_step;
    QComboBox *m_providers;
    QComboBox *m_dataSources;
    QComboBox *m_catalogs;
    QLabel *m_dataSourceReason;
};

} // namespace veldra
