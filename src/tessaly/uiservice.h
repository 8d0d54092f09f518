#pragma once

#include "tessaly/tessaly_export.h"

#include <QString>
#include <QStringList>

#include <memory>

class QDialog;

namespace tessaly {

// The one place that talks to the person in front of the host: message boxes, modal dialogs
// and the busy cursor. Everything else goes through instance(), so a test (or a host without
// windows) can answer instead of a person.
class TESSALY_EXPORT UiService
{
public:
    // SaveDiscardCancel: the question a host asks before unsaved work would go.
    enum class Buttons { Ok, OkCancel, YesNo, SaveDiscardCancel };
    enum class Answer { Ok, Cancel, Yes, No, Save, Discard };

    virtual ~UiService();

    // A modal message box; the answer is the button pressed.
    virtual Answer message(const QString &text, const QString &title, Buttons buttons) = 0;
    // Runs a dialog modally and returns its result code. Only valid when showsWindows().
    virtual int execDialog(QDialog &dialog) = 0;
    virtual bool showsWindows() const = 0;
    // What a dialog would have shown, for hosts that cannot show it: the first line is the
    // statement, the others are details.
    virtual void report(const QString &title, const QStringList &lines) = 0;
    // Calls nest: the cursor returns when every setBusy(true) has had its setBusy(false).
    virtual void setBusy(bool busy) = 0;

    // The installed service; a ConsoleUiService until a host installs another (a desktop host
    // installs a WidgetUiService).
    static UiService &instance();
    // Installs a service; nullptr goes back to the default.
    static void setInstance(std::shared_ptr<UiService> service);

protected:
    UiService() = default;
    UiService(const UiService &) = delete;
    UiService &operator=(const UiService &) = delete;
};

} // namespace tessaly
