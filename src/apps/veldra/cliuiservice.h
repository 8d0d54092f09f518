#pragma once

#include "tessaly/consoleuiservice.h"

// The command line's UI service: the platform's console service, with reports (the database
// error report) punctuated in the language of the texts, so a Japanese report does not mix
// ASCII and full-width punctuation.
class CliUiService : public tessaly::UiService
{
public:
    Answer message(const QString &text, const QString &title, Buttons buttons) override
    {
        return m_console.message(text, title, buttons);
    }
    int execDialog(QDialog &dialog) override { return m_console.execDialog(dialog); }
    bool showsWindows() const override { return false; }
    void report(const QString &title, const QStringList &lines) override;
    void setBusy(bool busy) override { m_console.setBusy(busy); }

private:
    tessaly::ConsoleUiService m_console;
};
