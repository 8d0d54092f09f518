#include "tessaly/widgets/widgetuiservice.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>

namespace tessaly {

WidgetUiService::~WidgetUiService()
{
    // A cursor left overridden would outlive the service that set it.
    while (m_busyDepth > 0)
        setBusy(false);
}

UiService::Answer WidgetUiService::message(const QString &text, const QString &title, Buttons buttons)
{
    QMessageBox::StandardButtons standard = QMessageBox::Ok;
    QMessageBox::Icon icon = QMessageBox::Information;
    switch (buttons) {
    case Buttons::Ok:
        break;
    case Buttons::OkCancel:
        standard = QMessageBox::Ok | QMessageBox::Cancel;
        icon = QMessageBox::Question;
        break;
    case Buttons::YesNo:
        standard = QMessageBox::Yes | QMessageBox::No;
        icon = QMessageBox::Question;
        break;
    case Buttons::SaveDiscardCancel:
        standard = QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel;
        icon = QMessageBox::Warning;
        break;
    }
    QMessageBox box(icon, title, text, standard, QApplication::activeWindow());
    if (buttons == Buttons::SaveDiscardCancel)
        box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
    case QMessageBox::Ok:
        return Answer::Ok;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Save:
        return Answer::Save;
    case QMessageBox::Discard:
        return Answer::Discard;
    default:
        // Closed without a button: the negative answer, so nothing acts.
        switch (buttons) {
        case Buttons::Ok:
            return Answer::Ok;
        case Buttons::YesNo:
            return Answer::No;
        case Buttons::OkCancel:
        case Buttons::SaveDiscardCancel:
            break;
        }
        return Answer::Cancel;
    }
}

int WidgetUiService::execDialog(QDialog &dialog)
{
    return dialog.exec();
}

void WidgetUiService::report(const QString &title, const QStringList &lines)
{
    QMessageBox box(QMessageBox::Warning, title, lines.value(0), QMessageBox::Ok, QApplication::activeWindow());
    if (lines.size() > 1)
        box.setInformativeText(lines.mid(1).join(u'\n'));
    box.exec();
}

void WidgetUiService::setBusy(bool busy)
{
    if (busy) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        ++m_busyDepth;
    } else if (m_busyDepth > 0) {
        // Only restore what this service set: another component's override stays.
        QGuiApplication::restoreOverrideCursor();
        --m_busyDepth;
    }
}

} // namespace tessaly
