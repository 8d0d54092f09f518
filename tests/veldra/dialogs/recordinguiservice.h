#pragma once

// A UI service that answers in place of a person and keeps what would have been shown.
// Install it with tessaly::UiService::setInstance, and put the default back with nullptr.

#include "tessaly/uiservice.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>

#include <functional>

namespace testui {

struct Message
{
    QString text;
    QString title;
    tessaly::UiService::Buttons buttons;
};

// A modal dialog as it looked when it was run: its title and the text of every named label and
// line edit.
struct DialogSeen
{
    QString objectName;
    QString title;
    QHash<QString, QString> texts;
};

class RecordingUiService final : public tessaly::UiService
{
public:
    Answer message(const QString &text, const QString &title, Buttons buttons) override
    {
        messages.append({ text, title, buttons });
        return answers.isEmpty() ? Answer::Ok : answers.takeFirst();
    }

    // Lets the script act on the dialog as a user would, without a window, and closes it as
    // the window's close button would when the script left it open. closedByScript tells
    // which it was.
    int execDialog(QDialog &dialog) override
    {
        DialogSeen seen{ dialog.objectName(), dialog.windowTitle(), {} };
        for (const QLabel *label : dialog.findChildren<QLabel *>()) {
            if (!label->objectName().isEmpty())
                seen.texts.insert(label->objectName(), label->text());
        }
        for (const QLineEdit *edit : dialog.findChildren<QLineEdit *>())
            seen.texts.insert(edit->objectName(), edit->text());
        dialogs.append(seen);
        dialog.setResult(QDialog::Rejected);
        bool finished = false;
        const auto connection = QObject::connect(&dialog, &QDialog::finished, [&finished] { finished = true; });
        if (script)
            script(dialog);
        closedByScript = finished;
        QObject::disconnect(connection);
        if (!finished)
            dialog.reject();
        return dialog.result();
    }

    bool showsWindows() const override { return windows; }
    void report(const QString &title, const QStringList &lines) override { reports.append(QStringList{ title } + lines); }
    void setBusy(bool) override {}

    bool windows = true;
    std::function<void(QDialog &)> script;
    // The answers to the next messages, in order; OK once they have run out.
    QList<Answer> answers;

    QList<Message> messages;
    QList<DialogSeen> dialogs;
    QList<QStringList> reports;
    bool closedByScript = false;
};

} // namespace testui
