#pragma once

#include "tessaly/uiservice.h"
#include "tessaly/widgets/tessalywidgets_export.h"

namespace tessaly {

// The UI service of a desktop host: real message boxes, dialogs and the wait cursor.
class TESSALYWIDGETS_EXPORT WidgetUiService final : public UiService
{
public:
    WidgetUiService() = default;
    ~WidgetUiService() override;

    Answer message(const QString &text, const QString &title, Buttons buttons) override;
    int execDialog(QDialog &dialog) override;
    bool showsWindows() const override { return true; }
    // A desktop host shows the report as a warning box.
    void report(const QString &title, const QStringList &lines) override;
    void setBusy(bool busy) override;

private:
    int m_busyDepth = 0;
};

} // namespace tessaly
