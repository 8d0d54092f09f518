#pragma once

#include "veldra/resources/stringtable.h"

#include <QDialogButtonBox>

#include <functional>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTreeWidget;
class QWidget;

namespace veldra::form {

// Every control of a form carries the system's control name as its object name, so a test finds
// it the way the behaviour describes it, and its caption from the string table.

QLabel *newLabel(const QString &objectName, StringId caption, QWidget *parent);
// A label whose text is data rather than a caption.
QLabel *newValueLabel(const QString &objectName, QWidget *parent);
QPushButton *newButton(const QString &objectName, StringId caption, QWidget *parent);
QRadioButton *newRadioButton(const QString &objectName, StringId caption, QWidget *parent);
QCheckBox *newCheckBox(const QString &objectName, StringId caption, QWidget *parent);
QGroupBox *newGroupBox(const QString &objectName, StringId caption, QWidget *parent);
// A line edit wide enough for about `characters` average characters; the label, when given,
// becomes its buddy.
QLineEdit *newLineEdit(const QString &objectName, QWidget *parent, int characters = 32, QLabel *label = nullptr);
// A list in report mode: one row per entry, one column per caption, no tree decoration.
QTreeWidget *newReportList(const QString &objectName, const QList<StringId> &headers, QWidget *parent);
// The same for a list made elsewhere; returns it.
QTreeWidget *setUpReportList(QTreeWidget *list, const QString &objectName, const QList<StringId> &headers);

// The dialog's button row. The buttons are added by addButton, so they keep the system's names
// and the platform's order; the caller connects them (OK usually checks before it accepts).
QDialogButtonBox *newButtonBox(QWidget *parent);
QPushButton *addButton(QDialogButtonBox *box, const QString &objectName, StringId caption,
                       QDialogButtonBox::ButtonRole role);

// A caption as a control's name for assistive technology: without its closing colon.
QString nameFromCaption(StringId caption);

// The width of `characters` average characters in the widget's font.
int textWidth(const QWidget *widget, int characters);

// Runs the handler of a person's action. An error must not reach the event loop: it is shown to
// the person through the UI service, titled with the caption of the window that holds `form`,
// and the form stays as it is. True when the handler ran to its end.
bool guarded(const QWidget *form, const std::function<void()> &handler);

} // namespace veldra::form
