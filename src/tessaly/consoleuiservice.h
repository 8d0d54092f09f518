#pragma once

#include "tessaly/tessaly_export.h"
#include "tessaly/uiservice.h"

#include <functional>

namespace tessaly {

// The UI service of a host without windows (the command line): every message and report
// becomes one line on standard error. Nobody can answer a question there, so questions take
// the negative answer (Cancel or No) and the line says so; only the affirmative answer ever
// acts, so nothing happens that a person did not agree to.
class TESSALY_EXPORT ConsoleUiService final : public UiService
{
public:
    using LineSink = std::function<void(const QString &line)>;

    // Writes to standard error.
    ConsoleUiService();
    // Writes each line to the sink instead, e.g. into a log.
    explicit ConsoleUiService(LineSink sink);

    Answer message(const QString &text, const QString &title, Buttons buttons) override;
    // A programming error: callers ask showsWindows() first. Rejects the dialog unseen.
    int execDialog(QDialog &dialog) override;
    bool showsWindows() const override { return false; }
    void report(const QString &title, const QStringList &lines) override;
    void setBusy(bool) override {}

private:
    LineSink m_sink;
};

} // namespace tessaly
