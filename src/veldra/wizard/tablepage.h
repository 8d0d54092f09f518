#pragma once

#include "veldra/wizard/tablestep.h"
#include "veldra/wizard/wizardpage.h"

class QListView;

namespace veldra {

class TableListModel;

// Step 1: the tables the query reads, checked in the catalog's list.
class TablePage : public WizardPage
{
    Q_OBJECT

public:
    explicit TablePage(WizardState &state, QWidget *parent = nullptr);

    bool prepare() override;

private:
    TableStep m_step;
    TableListModel *m_model;
    QListView *m_list;
};

} // namespace veldra
