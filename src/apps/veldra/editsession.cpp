#include "editsession.h"

#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "host/runinputs.h"
#include "host/savetarget.h"
#include "tessaly/componentdocument.h"
#include "tessaly/error.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/frmwizard.h"

#include <QFileInfo>

EditSession::EditSession(const QString &document) : m_document(document), m_exists(QFileInfo::exists(document))
{
    // Refused now rather than after the person has built the whole query.
    if (const QString why = host::whyUnsavable(document); !why.isEmpty())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, why);
    if (!m_exists)
        return;
    const QByteArray data = readInput(document);
    if (!tessaly::ComponentDocument::looksLikeComponentDocument(data, inputName(document)))
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                             cliText(CliText::EditWantsComponent).arg(inputName(document)));
    m_session.load(data, inputName(document));
}

int EditSession::run()
{
    const QString target = QFileInfo(m_document).absoluteFilePath();
    out() << "veldra edit: " << cliText(m_exists ? CliText::EditTarget : CliText::EditNewTarget).arg(target)
          << Qt::endl;
    const host::RunInputs before = host::RunInputs::capture(m_session.host());
    veldra::frmWizard wizard;
    wizard.StartWizard(m_session.model(),
                       std::make_shared<dataservice::LocalServiceProxy>(std::make_shared<dataservice::DataService>()),
                       m_session.definition());
    // Finish is the only way the wizard writes a definition back.
    if (m_session.definition() == before.definition) {
        out() << "veldra edit: " << cliText(CliText::EditNotSaved).arg(target) << Qt::endl;
        return exitcode::ok;
    }
    host::seedRunInputs(m_session.host(), before);
    m_session.settings().dropOthers(*m_session.definition()); // those of parameters the edit took out
    const host::SaveOutcome saved = host::saveKeepingWork(m_document, *m_session.model(), nullptr, &m_session.settings());
    if (!saved.failure.isEmpty()) {
        err() << "veldra edit: " << cliText(CliText::EditKept).arg(saved.failure, saved.savedTo) << Qt::endl;
        return exitcode::badInput;
    }
    out() << "veldra edit: " << cliText(CliText::EditSaved).arg(target) << Qt::endl;
    return exitcode::ok;
}
