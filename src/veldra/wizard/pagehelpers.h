#pragma once

// The few constructors the wizard's pages share: every control carries the system's control
// name as its object name and its caption from the string table.

#include "veldra/resources/stringtable.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

#include <exception>
#include <functional>

namespace veldra::pageform {

inline QLabel *newLabel(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *label = new QLabel(text(caption), parent);
    label->setObjectName(objectName);
    return label;
}

inline QPushButton *newButton(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *button = new QPushButton(text(caption), parent);
    button->setObjectName(objectName);
    return button;
}

inline QCheckBox *newCheckBox(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *box = new QCheckBox(text(caption), parent);
    box->setObjectName(objectName);
    return box;
}

inline QGroupBox *newGroupBox(const QString &objectName, StringId caption, QWidget *parent)
{
    auto *box = new QGroupBox(text(caption), parent);
    box->setObjectName(objectName);
    return box;
}

// A list in report mode: one row per entry, one column per caption, no tree decoration.
inline QTreeWidget *newReportList(const QString &objectName, const QList<StringId> &headers, QWidget *parent)
{
    auto *list = new QTreeWidget(parent);
    list->setObjectName(objectName);
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setAllColumnsShowFocus(true);
    QStringList captions;
    for (StringId header : headers)
        captions.append(text(header));
    list->setHeaderLabels(captions);
    list->header()->setStretchLastSection(true);
    return list;
}

// Runs the handler of a person's action; an error must not reach the event loop. It is
// logged with where, and the page stays as it is.
inline void guarded(const char *where, const std::function<void()> &handler)
{
    try {
        handler();
    } catch (const std::exception &error) {
        qWarning("%s: %s", where, error.what());
    }
}

} // namespace veldra::pageform
