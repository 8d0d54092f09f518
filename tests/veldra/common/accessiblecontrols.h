#pragma once

// A window as assistive technology finds it: the tree of QAccessibleInterfaces, from which the
// interactive controls a person can reach (shown, enabled or not) are taken with the names a
// screen reader says. Any window can be walked: the wizard's steps, the dialogs, the pad, the
// studio.

#include <QAccessible>
#include <QHash>
#include <QStringList>
#include <QWidget>

namespace testa11y {

// Roles a person acts on. The rows and cells of a list belong to the list.
inline bool isInteractive(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::PushButton:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::List:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::PageTab:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
        return true;
    default:
        return false;
    }
}

inline bool holdsItems(QAccessible::Role role)
{
    return role == QAccessible::List || role == QAccessible::Table || role == QAccessible::Tree
            || role == QAccessible::ComboBox;
}

// The name a screen reader says for a control: its accessible name, else what Qt derives. A
// choice derives its current value, which says nothing of what it is for: a choice is named by
// its accessible name or the label tied to it.
inline QString spokenName(QAccessibleInterface *node)
{
    const auto *widget = qobject_cast<const QWidget *>(node->object());
    if (widget && !widget->accessibleName().isEmpty())
        return widget->accessibleName();
    if (node->role() != QAccessible::ComboBox)
        return node->text(QAccessible::Name);
    for (const auto &[label, relation] : node->relations(QAccessible::Label)) {
        if (label)
            return label->text(QAccessible::Name);
    }
    return {};
}

struct Control
{
    QString name;
    QString what; // the object's name and role, to say which control is meant
};

inline void collectControls(QAccessibleInterface *node, QList<Control> &controls)
{
    if (!node || !node->isValid() || node->state().invisible)
        return;
    const QAccessible::Role role = node->role();
    if (isInteractive(role)) {
        const QObject *object = node->object();
        const QString objectName = object ? object->objectName() : QString();
        controls.append({ spokenName(node).remove(u'&').trimmed(),
                          QStringLiteral("%1 (%2, role %3)")
                                  .arg(objectName.isEmpty() ? QStringLiteral("unnamed object") : objectName,
                                       object ? QString::fromLatin1(object->metaObject()->className()) : QString())
                                  .arg(int(role)) });
        if (holdsItems(role))
            return;
    }
    for (int i = 0; i < node->childCount(); ++i)
        collectControls(node->child(i), controls);
}

// The interactive controls shown in window, in the order of the tree.
inline QList<Control> interactiveControls(QWidget *window)
{
    QList<Control> controls;
    collectControls(QAccessible::queryAccessibleInterface(window), controls);
    return controls;
}

// What keeps a screen reader from telling the controls of window apart: a control without a
// name, or a name that two controls share. Empty when there is nothing.
inline QStringList namingProblems(QWidget *window)
{
    QStringList problems;
    QHash<QString, QStringList> named;
    for (const Control &control : interactiveControls(window)) {
        if (control.name.isEmpty())
            problems.append(QStringLiteral("no name: ") + control.what);
        else
            named[control.name].append(control.what);
    }
    for (auto it = named.cbegin(); it != named.cend(); ++it) {
        if (it.value().size() > 1)
            problems.append(QStringLiteral("\"%1\" names %2").arg(it.key(), it.value().join(QStringLiteral(" and "))));
    }
    problems.sort();
    return problems;
}

} // namespace testa11y
