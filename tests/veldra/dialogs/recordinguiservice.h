#pragma once

// A UI service that answers in place of a person and keeps what would have been shown.
// Install it with tessaly::UiService::setInstance, and put the default back with nullptr.
//
// Modal dialogs are acted on by scripts: each dialog run takes the next script queued with
// then(), in the order the dialogs open (a dialog opened from inside a script takes the one
// after), and `script` when the queue is empty. Messages are answered from `answers` by their
// text, Ok otherwise.

#include "tessaly/uiservice.h"

#include <QDialog>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <functional>

namespace testui {

struct Message
{
    QString text;
    QString title;
    tessaly::UiService::Buttons buttons;
};

// A modal dialog as it looked when it was run: its title and the text of every named label and
// text box.
struct DialogSeen
{
    QString objectName;
    QString title;
    QHash<QString, QString> texts;
};

class RecordingUiService final : public tessaly::UiService
{
public:
    using Script = std::function<void(QDialog &)>;

    Answer message(const QString &text, const QString &title, Buttons buttons) override
    {
        messages.append({ text, title, buttons });
        if (answers.contains(text))
            return answers.value(text);
        return answerQueue.isEmpty() ? Answer::Ok : answerQueue.takeFirst();
    }

    // Queues the script for the next dialog that opens without one.
    RecordingUiService &then(Script next)
    {
        scripts.append(std::move(next));
        return *this;
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
        for (const QPlainTextEdit *edit : dialog.findChildren<QPlainTextEdit *>())
            seen.texts.insert(edit->objectName(), edit->toPlainText());
        dialogs.append(seen);
        dialog.setResult(QDialog::Rejected);
        bool finished = false;
        const auto connection = QObject::connect(&dialog, &QDialog::finished, [&finished] { finished = true; });
        const Script run = scripts.isEmpty() ? script : scripts.takeFirst();
        if (run)
            run(dialog);
        closedByScript = finished;
        QObject::disconnect(connection);
        if (!finished)
            dialog.reject();
        return dialog.result();
    }

    bool showsWindows() const override { return windows; }
    void report(const QString &title, const QStringList &lines) override { reports.append(QStringList{ title } + lines); }
    void setBusy(bool busy) override
    {
        busyDepth += busy ? 1 : -1;
        busyCalls += busy ? 1 : 0;
    }

    bool windows = true;
    Script script;
    QList<Script> scripts;
    // The answer to a message by its text; messages not named here take the next answer of
    // answerQueue, and Ok when none is left.
    QHash<QString, Answer> answers;
    QList<Answer> answerQueue;

    QList<Message> messages;
    QList<DialogSeen> dialogs;
    QList<QStringList> reports;
    bool closedByScript = false;
    // setBusy(true) calls so far, and how many still wait for their setBusy(false).
    int busyCalls = 0;
    int busyDepth = 0;
};

} // namespace testui
