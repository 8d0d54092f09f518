#pragma once

#include "veldra/wizard/wizardpage.h"

class QListView;

namespace veldra {

class TableListModel;
class TableStep;
class WizardState;

// Step 1: the tables the query reads, checked in the catalog's list.
class TablePage : public WizardPage
{
    Q_OBJECT

public:
    explicit TablePage(WizardState &state, QWidget *parent = nullptr);

private:
    void showEntered() override;

    TableStep &m_step;
    TableListModel *m_model;
    QListView *m_list;
};

} // namespace veldra
