#include "tessaly/widgets/childpadregistry.h"

#include "tessaly/widgets/comboboxpad.h"
#include "tessaly/widgets/listpad.h"
#include "tessaly/widgets/statictextpad.h"
#include "tessaly/widgets/stringpad.h"
#include "tessaly/widgets/switchpad.h"

namespace tessaly {

namespace {
template<typename Pad>
ChildPadRegistry::Factory factory()
{
    return [](QWidget *parent) -> ChildPadWidget * { return new Pad(parent); };
}
} // namespace

ChildPadRegistry &ChildPadRegistry::instance()
{
    static ChildPadRegistry registry = [] {
        ChildPadRegistry initial;
        initial.reset();
        return initial;
    }();
    return registry;
}

void ChildPadRegistry::reset()
{
    m_factories.clear();
    add(QStringLiteral("CommonLX.StaticTextPad"), factory<StaticTextPad>());
    add(QStringLiteral("lxList.ListPad"), factory<ListPad>());
    add(QStringLiteral("ListZorbit.ComboBoxPad"), factory<ComboBoxPad>());
    add(QStringLiteral("StringZorbit.StringPad"), factory<StringPad>());
    add(QStringLiteral("CommonLX.SwitchPad"), factory<SwitchPad>());
}

ChildPadWidget *ChildPadRegistry::create(const QString &progId, QWidget *parent) const
{
    const auto it = m_factories.constFind(progId);
    return it == m_factories.cend() ? nullptr : (*it)(parent);
}

} // namespace tessaly
