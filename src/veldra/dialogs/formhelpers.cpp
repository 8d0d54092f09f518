#include "veldra/dialogs/formhelpers.h"

#include "tessaly/error.h"
#include "tessaly/uiservice.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>

#include <exception>

namespace veldra::form {

QLabel *newLabel(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *label = new QLabel(text(caption), parent);
    label->setObjectName(objectName);
    return label;
}

QLabel *newValueLabel(const QString &objectName, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(objectName);
    // Names come from users: never read them as rich text.
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QPushButton *newButton(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *button = new QPushButton(text(caption), parent);
    button->setObjectName(objectName);
    return button;
}

QRadioButton *newRadioButton(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *button = new QRadioButton(text(caption), parent);
    button->setObjectName(objectName);
    return button;
}

QCheckBox *newCheckBox(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *box = new QCheckBox(text(caption), parent);
    box->setObjectName(objectName);
    return box;
}

QGroupBox *newGroupBox(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *box = new QGroupBox(text(caption), parent);
    box->setObjectName(objectName);
    return box;
}

QLineEdit *newLineEdit(const QString &objectName, QWidget *parent, int characters, QLabel *label)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(objectName);
    edit->setMinimumWidth(textWidth(edit, characters));
    if (label)
        label->setBuddy(edit);
    return edit;
}

QTreeWidget *newReportList(const QString &objectName, const QList<StringId> &headers, QWidget *parent)
{
    return setUpReportList(new QTreeWidget(parent), objectName, headers);
}

QTreeWidget *setUpReportList(QTreeWidget *list, const QString &objectName, const QList<StringId> &headers)
{
    list->setObjectName(objectName);
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    QStringList captions;
    for (const StringId header : headers)
        captions.append(text(header));
    list->setHeaderLabels(captions);
    list->header()->setStretchLastSection(true);
    return list;
}

QDialogButtonBox *newButtonBox(QWidget *parent)
{
    auto *box = new QDialogButtonBox(Qt::Horizontal, parent);
    box->setObjectName(QStringLiteral("ButtonBox"));
    return box;
}

QPushButton *addButton(QDialogButtonBox *box, const QString &objectName, StringId caption,
                       QDialogButtonBox::ButtonRole role)
{
    QPushButton *button = box->addButton(text(caption), role);
    button->setObjectName(objectName);
    return button;
}

QString nameFromCaption(StringId caption)
{
    QString name = text(caption).trimmed();
    if (name.endsWith(u':') || name.endsWith(u'\uFF1A'))
        name.chop(1);
    return name;
}

int textWidth(const QWidget *widget, int characters)
{
    // A Latin letter, not the font's average: a font with Japanese glyphs averages twice as wide.
    return widget->fontMetrics().horizontalAdvance(QLatin1Char('x')) * characters;
}

bool guarded(const QWidget *form, const std::function<void()> &handler)
{
    QString reason;
    try {
        handler();
        return true;
    } catch (const tessaly::Error &error) {
        reason = error.message();
    } catch (const std::exception &error) {
        reason = QString::fromLocal8Bit(error.what());
    }
    QString title = form ? form->window()->windowTitle() : QString();
    if (title.isEmpty())
        title = text(StringId::WizardCaption);
    tessaly::UiService::instance().report(title, { reason });
    return false;
}

} // namespace veldra::form
