#include "veldra/wizard/tablepage.h"

#include "tessaly/uiservice.h"
#include "veldra/resources/stringtable.h"
#include "veldra/wizard/tablelistmodel.h"

#include <QGroupBox>
#include <QListView>
#include <QVBoxLayout>

namespace veldra {

namespace {
// The busy cursor for as long as a scope runs, also when it is left by an error.
class BusyCursor
{
public:
    BusyCursor() { tessaly::UiService::instance().setBusy(true); }
    ~BusyCursor() { tessaly::UiService::instance().setBusy(false); }
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};
} // namespace

TablePage::TablePage(WizardState &state, QWidget *parent)
    : WizardPage(state, parent), m_step(state), m_model(new TableListModel(m_step, this))
{
    auto *frame = new QGroupBox(text(StringId::TableStepCaption), this);
    frame->setObjectName(QStringLiteral("TableFrame"));

    m_list = new QListView(frame);
    m_list->setObjectName(QStringLiteral("TableSelectList"));
    // Every row is one line of text: the view then lays out tens of thousands of rows without
    // measuring each.
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setModel(m_model);

    auto *frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(m_list);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);

    // A click on the check box is the box's own; a click on the name flips it too.
    connect(m_list, &QListView::clicked, m_model, &TableListModel::toggle);
    connect(m_model, &TableListModel::chosenChanged, this, &WizardPage::completeChanged);
}

bool TablePage::prepare()
{
    const BusyCursor busy;
    if (!m_step.prepare())
        return false;
    m_model->reload();
    return true;
}

} // namespace veldra
