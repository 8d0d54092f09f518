#pragma once

#include "host/componentsession.h"

// `veldra edit` once its arguments are read, apart from the check that windows can be shown:
// what a test drives in-process with the real wizard.
class EditSession
{
public:
    // Checks that DOC can be saved and reads it when it exists (a component document only).
    // Raises tessaly::Error naming what is wrong, before any window opens.
    explicit EditSession(const QString &document);

    // Says where the component goes, opens the wizard through the UI service installed, and
    // after Finish seeds the run-time inputs and saves, keeping the work elsewhere when DOC
    // will not take it. The exit status.
    int run();

private:
    QString m_document;
    bool m_exists;
    host::ComponentSession m_session;
};
