#pragma once

#include <QHash>
#include <QString>

#include <functional>

class QWidget;

namespace tessaly {

class ChildPadWidget;

// The child-pad classes the host knows, by ProgID. A ProgID nobody registered creates nothing,
// as a sibling library that is not installed would.
class ChildPadRegistry
{
public:
    using Factory = std::function<ChildPadWidget *(QWidget *parent)>;

    // The process's registry, holding the host's own classes: "CommonLX.StaticTextPad",
    // "lxList.ListPad", "ListZorbit.ComboBoxPad", "StringZorbit.StringPad", "CommonLX.SwitchPad".
    static ChildPadRegistry &instance();

    void add(const QString &progId, Factory factory) { m_factories.insert(progId, std::move(factory)); }
    bool remove(const QString &progId) { return m_factories.remove(progId) > 0; }
    bool contains(const QString &progId) const { return m_factories.contains(progId); }
    // nullptr for a ProgID nobody registered.
    ChildPadWidget *create(const QString &progId, QWidget *parent) const;

    // Back to the host's own classes.
    void reset();

private:
    QHash<QString, Factory> m_factories;
};

} // namespace tessaly
