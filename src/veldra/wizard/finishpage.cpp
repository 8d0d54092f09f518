#include "veldra/wizard/finishpage.h"

#include "veldra/resources/stringtable.h"
#include "veldra/wizard/finishstep.h"
#include "veldra/wizard/wizardstate.h"

#include <QFontDatabase>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace veldra {

FinishPage::FinishPage(WizardState &state, QWidget *parent)
    : WizardPage(state.finishing(), parent), m_step(state.finishing())
{
    auto *frame = new QGroupBox(text(StringId::FinalStepCaption), this);
    frame->setObjectName(QStringLiteral("FinishFrame"));
    m_text = new QPlainTextEdit(frame);
    m_text->setObjectName(QStringLiteral("FinishResultText"));
    m_text->setReadOnly(true);
    // The condition is one line however long it is; wrapped, the whole statement reads
    // without scrolling sideways.
    m_text->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    // The statement's indents line up only in a fixed-width font.
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    auto *frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(m_text);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
}

void FinishPage::showEntered()
{
    m_text->setPlainText(m_step.statement());
}

} // namespace veldra
