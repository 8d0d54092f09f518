#include "veldra/wizard/frmwizard.h"

#include "tessaly/uiservice.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/dialogs/wizdberrordialog.h"
#include "veldra/resources/stringtable.h"
#include "veldra/service/tsaccessor.h"
#include "veldra/wizard/columnpage.h"
#include "veldra/wizard/conditionpage.h"
#include "veldra/wizard/databasepage.h"
#include "veldra/wizard/finishpage.h"
#include "veldra/wizard/grouporderpage.h"
#include "veldra/wizard/tablepage.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace veldra {

namespace {
// The first control of page in tab order that a person can reach now.
QWidget *firstControl(QWidget *window, QWidget *page)
{
    for (QWidget *widget = window->nextInFocusChain(); widget && widget != window; widget = widget->nextInFocusChain()) {
        if (page->isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled()
            && widget->isVisibleTo(page))
            return widget;
    }
    return nullptr;
}
} // namespace

frmWizard::frmWizard(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmWizard"));

    m_pages[WizardState::DatabaseStep] = new DatabasePage(m_state, this);
    m_pages[WizardState::TableStep] = new TablePage(m_state, this);
    // The column, condition and grouping pages take these places.
    m_pages[WizardState::ColumnStep] = new ColumnPage(m_state, this);
    m_pages[WizardState::ConditionStep] = new ConditionPage(m_state, this);
    m_pages[WizardState::GroupOrderStep] = new GroupOrderPage(m_state, this);
    m_pages[WizardState::FinishStep] = new FinishPage(m_state, this);

    // The steps lie on a stack rather than side by side off-screen: only the current one is
    // shown, so focus and the keyboard never reach the others.
    m_steps = new QStackedWidget(this);
    m_steps->setObjectName(QStringLiteral("fraStep"));
    for (WizardPage *page : m_pages) {
        m_steps->addWidget(page);
        connect(page, &WizardPage::completeChanged, this, &frmWizard::updateNext);
    }

    auto *buttons = new QDialogButtonBox(this);
    m_back = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
    m_back->setObjectName(QStringLiteral("BackButton"));
    m_next = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
    m_next->setObjectName(QStringLiteral("NextButton"));
    m_quit = buttons->addButton(QString(), QDialogButtonBox::RejectRole);
    m_quit->setObjectName(QStringLiteral("QuitButton"));
    // Enter moves on; the question on the last step keeps it from finishing by accident.
    m_next->setDefault(true);
    m_back->setAutoDefault(false);
    m_quit->setAutoDefault(false);
    connect(m_back, &QPushButton::clicked, this, [this] { form::guarded(this, [this] { backClicked(); }); });
    connect(m_next, &QPushButton::clicked, this, [this] { form::guarded(this, [this] { nextClicked(); }); });
    connect(m_quit, &QPushButton::clicked, this, [this] { form::guarded(this, [this] { quitClicked(); }); });

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_steps, 1);
    layout->addWidget(buttons);

    load();
    moveToStep(WizardState::DatabaseStep);
    // Room for a statement's longer lines and a screenful of tables, in any font (measured in
    // Latin letters: statements are mostly Latin, and a font with Japanese glyphs averages twice
    // as wide), within the screen.
    const QFontMetrics metrics = fontMetrics();
    QSize wanted = QSize(metrics.horizontalAdvance(QLatin1Char('x')) * 150, metrics.lineSpacing() * 28).expandedTo(sizeHint());
    if (const QScreen *screen = this->screen())
        wanted = wanted.boundedTo(screen->availableGeometry().size() * 9 / 10);
    resize(wanted);
}

frmWizard::~frmWizard()
{
    tessaly::detachChildSignals(this);
}

void frmWizard::load()
{
    setWindowTitle(text(StringId::WizardCaption));
    m_back->setText(text(StringId::BackButton));
    m_next->setText(text(StringId::NextButton));
    m_quit->setText(text(StringId::QuitButton));
}

bool frmWizard::StartWizard(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                            const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                            const std::shared_ptr<tessaly::zetVariable> &definition)
{
    if (!m_state.start(model, proxy, definition))
        return false;
    m_state.accessor()->setErrorReporter(showDatabaseError);
    for (WizardPage *page : m_pages)
        page->initialize();
    moveToStep(m_state.currentStep());
    setResult(QDialog::Rejected);
    tessaly::UiService::instance().execDialog(*this);
    return true;
}

bool frmWizard::moveToStep(int step)
{
    if (!showStepFrame(step))
        return false;
    m_back->setEnabled(step != WizardState::DatabaseStep);
    m_next->setText(text(step < WizardState::StepCount - 1 ? StringId::NextButton : StringId::FinishButton));
    m_next->setEnabled(isStepComplete(step));
    // The step opens on its own first control. Next is often disabled as a step opens, and the
    // focus would otherwise fall to Quit, where Enter or Space leaves the wizard.
    if (QWidget *control = firstControl(this, m_pages[size_t(step)]))
        control->setFocus(Qt::TabFocusReason);
    return true;
}

bool frmWizard::showStepFrame(int step)
{
    if (!m_state.setCurrentStep(step))
        return false;
    m_steps->setCurrentIndex(step);
    return true;
}

bool frmWizard::isStepComplete(int step) const
{
    return m_state.isStepComplete(step);
}

bool frmWizard::prepareStep(int step)
{
    if (step <= WizardState::DatabaseStep || step >= WizardState::StepCount)
        return true;
    return m_pages[size_t(step)]->prepare();
}

void frmWizard::updateNext()
{
    m_next->setEnabled(isStepComplete(m_state.currentStep()));
}

void frmWizard::backClicked()
{
    moveToStep(m_state.currentStep() - 1);
}

void frmWizard::nextClicked()
{
    const int step = m_state.currentStep();
    if (!m_state.isLastStep()) {
        if (prepareStep(step + 1))
            moveToStep(step + 1);
        return;
    }
    const auto answer = tessaly::UiService::instance().message(
            text(StringId::CreateQueryMessage), text(StringId::CreateQueryTitle), tessaly::UiService::Buttons::OkCancel);
    if (answer != tessaly::UiService::Answer::Ok)
        return;
    m_state.finish();
    accept();
    moveToStep(WizardState::DatabaseStep);
}

void frmWizard::quitClicked()
{
    if (!confirmQuit())
        return;
    m_state.quit();
    reject();
    moveToStep(WizardState::DatabaseStep);
}

bool frmWizard::confirmQuit()
{
    return tessaly::UiService::instance().message(text(StringId::QuitWizardMessage), text(StringId::QuitWizardTitle),
                                                  tessaly::UiService::Buttons::YesNo)
            == tessaly::UiService::Answer::Yes;
}

void frmWizard::closeEvent(QCloseEvent *event)
{
    // Only the person's close box asks; a close by the program or the system does not.
    if (event->spontaneous() && !confirmQuit()) {
        event->ignore();
        return;
    }
    m_state.quit();
    moveToStep(WizardState::DatabaseStep);
    QDialog::closeEvent(event);
}

void frmWizard::keyPressEvent(QKeyEvent *event)
{
    // Escape would close the dialog without the question that Quit asks.
    if (event->matches(QKeySequence::Cancel)) {
        form::guarded(this, [this] { quitClicked(); });
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace veldra
