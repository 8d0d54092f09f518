#pragma once

#include "veldra/veldraui_export.h"
#include "veldra/wizard/wizardstate.h"

#include <QDialog>

#include <array>

class QPushButton;
class QStackedWidget;

namespace veldra {

class WizardPage;

// The query creation wizard: six steps on a stack, Back / Next (Finish on the last step) /
// Quit below them. The form outlives one editing session: a host creates it once and calls
// StartWizard for each edit, so the accessor and its cache of the database structure survive
// between sessions.
class VELDRAUI_EXPORT frmWizard : public QDialog
{
    Q_OBJECT

public:
    explicit frmWizard(QWidget *parent = nullptr);
    ~frmWizard() override;

    // Edits definition (a copy of it) for model, asking the data service behind proxy. False,
    // showing nothing, without a model or a proxy; otherwise shows the wizard modally and
    // returns true once it is hidden again, whether the person finished or quit. A finished
    // wizard has written the definition into the model's "SQLInfo" slot and ends with
    // result() == Accepted. The proxy is used only by the first call: later calls keep the
    // accessor made then.
    bool StartWizard(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                     const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                     const std::shared_ptr<tessaly::zetVariable> &definition);

    const WizardState &state() const { return m_state; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    // Captions come from the string table once, when the form is made.
    void load();
    bool moveToStep(int step);
    bool showStepFrame(int step);
    bool isStepComplete(int step) const;
    bool prepareStep(int step);
    void updateNext();

    void backClicked();
    void nextClicked();
    void quitClicked();
    bool confirmQuit();

    WizardState m_state;
    QStackedWidget *m_steps;
    std::array<WizardPage *, WizardState::StepCount> m_pages{};
    QPushButton *m_back;
    QPushButton *m_next;
    QPushButton *m_quit;
};

} // namespace veldra
