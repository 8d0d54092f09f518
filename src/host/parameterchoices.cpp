#include "host/parameterchoices.h"

#include "host/hosttext.h"
#include "host/parameterliteral.h"
#include "host/slotvalues.h"

#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/dialogs/sqlliteral.h"
#include "veldra/records/paraminfo.h"

namespace host {

ParameterChoices::ParameterChoices(tessaly::ModelHost &host, const HostSettings &settings, LiveLists *lists,
                                   const SourceChoice &source)
    : m_host(host), m_settings(settings), m_lists(lists), m_source(source)
{
}

QString ParameterChoices::provider() const
{
    const auto definition = definitionOf(m_host);
    return m_source.target(definition ? targetOf(*definition) : RunTarget{}).provider;
}

void ParameterChoices::write(const QString &reference, const QString &value)
{
    m_host.setSlotValue(reference, value);
}

void ParameterChoices::applyDefaults(const QDate &today)
{
    const auto definition = definitionOf(m_host);
    for (const ParameterSetting &setting : m_settings.parameters) {
        if (setting.relativeDefault.isEmpty() || !definition || !definition->parameters()
            || !definition->parameters()->contains(setting.reference))
            continue;
        if (const std::optional<QDate> date = relativeDate(setting.relativeDefault, today))
            write(setting.reference, dateLiteral(*date, provider()));
    }
}

QString ParameterChoices::literalFor(const QString &reference, const QString &value, const QDate &today)
{
    if (const std::optional<QDate> date = relativeDate(value, today))
        return dateLiteral(*date, provider());
    const auto definition = definitionOf(m_host);
    const auto parameter = definition && definition->parameters()
            ? definition->parameters()->object<veldra::ParamInfo>(reference) : nullptr;
    bool numbersOnly = false;
    if (parameter && parameter->selections() && !parameter->selections()->isEmpty()) {
        const auto &selections = parameter->selections();
        numbersOnly = true;
        for (int i = 0; i < selections->count(); ++i) {
            const QString key = selections->key(i);
            if (key == value || tessaly::variant::toText(selections->item(i)) == value || unquoted(key) == value)
                return key;
            numbersOnly = numbersOnly && isPlainNumber(key);
        }
    }
    // A quoted literal is a value as the list gives it ('SW'), already safe for the engine.
    if (value.startsWith(u'\'') && splitLiterals(value).size() == 1 && veldra::isSqlLiteral(value))
        return value;
    const ParameterSetting *setting = m_settings.find(reference);
    if (m_lists && definition && setting && setting->list.isSet()) {
        const auto values = parameterValuesOf(m_host);
        if (isPlainNumber(value)) {
            const ListPage first = m_lists->page(*definition, m_settings, reference, values.get(), m_source, {}, 1);
            if (first.live && !first.entries.isEmpty() && isPlainNumber(first.entries.first().literal))
                return value; // the list's values are numbers
        }
        if (const auto entry = m_lists->match(*definition, m_settings, reference, parameterValuesOf(m_host).get(),
                                              m_source, value))
            return entry->literal;
    }
    if (numbersOnly && isPlainNumber(value))
        return value;
    try {
        return textLiteral(value, provider());
    } catch (const tessaly::Error &error) {
        throw tessaly::Error(error.number(), hostText(HostText::BadLiteral).arg(reference, error.message()));
    }
}

void ParameterChoices::choose(const QString &reference, const QStringList &values)
{
    const ParameterSetting *setting = m_settings.find(reference);
    if (values.size() > 1 && !(setting && setting->multiple))
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, hostText(HostText::OneValueOnly).arg(reference));
    QStringList literals;
    for (const QString &value : values) {
        if (value.trimmed().isEmpty())
            continue; // nothing chosen: the parameter is named as missing, never "IN ()"
        const QString literal = literalFor(reference, value);
        if (!literals.contains(literal))
            literals.append(literal);
    }
    write(reference, joinLiterals(literals));
}

void ParameterChoices::setChosen(const QString &reference, const QStringList &literals)
{
    const ParameterSetting *setting = m_settings.find(reference);
    if (literals.size() > 1 && !(setting && setting->multiple))
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, hostText(HostText::OneValueOnly).arg(reference));
    write(reference, joinLiterals(literals));
}

QStringList ParameterChoices::chosen(const QString &reference) const
{
    const auto values = parameterValuesOf(m_host);
    QVariant value;
    if (!values || !values->lookup(reference, &value))
        return {};
    const QString text = tessaly::variant::toText(value);
    const ParameterSetting *setting = m_settings.find(reference);
    if (setting && setting->multiple)
        return splitLiterals(text);
    return text.trimmed().isEmpty() ? QStringList() : QStringList{ text };
}

QStringList ParameterChoices::settle(const QStringList &changed, const QSet<QString> &keep)
{
    QStringList notes;
    const auto definition = definitionOf(m_host);
    if (!m_lists || !definition)
        return notes;
    QStringList order = m_settings.listOrder();
    if (!changed.isEmpty()) {
        QStringList affected;
        for (const QString &reference : changed)
            affected += m_settings.dependents(reference);
        order.erase(std::remove_if(order.begin(), order.end(),
                                   [&](const QString &reference) { return !affected.contains(reference); }),
                    order.end());
    }
    for (const QString &reference : order) {
        if (keep.contains(reference))
            continue;
        const auto values = parameterValuesOf(m_host);
        const ListPage first = m_lists->page(*definition, m_settings, reference, values.get(), m_source, {}, 1);
        if (!first.note.isEmpty())
            notes.append(first.note);
        if (!first.live)
            continue; // the stored values are the component's own: its seeding judged them
        const QStringList held = m_lists->present(*definition, m_settings, reference, values.get(), m_source,
                                                  chosen(reference));
        if (!held.isEmpty())
            write(reference, joinLiterals(held));
        else
            write(reference, first.entries.isEmpty() ? QString() : first.entries.first().literal);
    }
    return notes;
}

ListPage ParameterChoices::page(const QString &reference, const QString &search, int limit) const
{
    const auto definition = definitionOf(m_host);
    if (!definition)
        return {};
    if (!m_lists) // the stored values only: no live list is read without a data service
        return LiveLists(nullptr).page(*definition, HostSettings{}, reference, nullptr, m_source, search, limit);
    return m_lists->page(*definition, m_settings, reference, parameterValuesOf(m_host).get(), m_source, search, limit);
}

} // namespace host
