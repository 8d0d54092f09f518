#include "host/runinputs.h"

#include "host/slotvalues.h"

#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/padlayout.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QSet>

#include <optional>

namespace host {

namespace {

using veldra::PadLayout;
using veldra::ParamInfo;
using veldra::SQLInfo;

const QString selectionSlot = QStringLiteral("selection");
const QString topNSlot = QStringLiteral("TopN");
const QString orderBySlot = QStringLiteral("OrderBy");
const QString ascendantSlot = QStringLiteral("OrderByAscendant");
const QString parametersSlot = QStringLiteral("parameters");

bool takesRowCount(const SQLInfo *definition)
{
    return definition && definition->topNAsParam() && definition->topN() >= 1;
}

bool takesOrdering(const SQLInfo *definition)
{
    return definition && definition->useOrderBy() && definition->orderByAsParam();
}

QStringList splitSelection(const QString &selection)
{
    QStringList names;
    for (const QString &name : selection.split(u','))
        names.append(name.trimmed());
    names.removeAll(QString());
    return names;
}

QString seededSelection(const SQLInfo &definition, const RunInputs &before)
{
    const QStringList all = PadLayout::displayNames(definition);
    const QStringList chosen = splitSelection(before.selection);
    if (!chosen.isEmpty() && before.definition.get() == &definition)
        return before.selection; // the same query: the choice stands as it was made
    const QStringList allBefore = before.definition ? PadLayout::displayNames(*before.definition) : QStringList();
    if (chosen.isEmpty() || chosen == allBefore)
        return all.join(u',');
    const QSet<QString> offered(all.cbegin(), all.cend());
    const QSet<QString> offeredBefore(allBefore.cbegin(), allBefore.cend());
    QStringList kept;
    QSet<QString> keptNames;
    for (const QString &name : chosen) {
        if (offered.contains(name)) {
            kept.append(name);
            keptNames.insert(name);
        }
    }
    for (const QString &name : all) {
        if (!offeredBefore.contains(name) && !keptNames.contains(name)) {
            kept.append(name);
            keptNames.insert(name);
        }
    }
    return (kept.isEmpty() ? all : kept).join(u',');
}

qint32 seededRowCount(const SQLInfo &definition, const RunInputs &before)
{
    const bool keep = takesRowCount(before.definition.get()) && before.definition->topN() == definition.topN()
            && before.topN > 0;
    return keep ? before.topN : definition.topN();
}

bool isOrderChoice(const SQLInfo *definition, const QString &column)
{
    const auto choices = definition ? PadLayout::orderChoices(*definition) : nullptr;
    for (int i = 0; choices && i < choices->count(); ++i) {
        if (choices->item(i).toString() == column)
            return true;
    }
    return false;
}

// A column the query no longer offers, or none, gives way to the first choice; one given by
// hand, never a choice, stays.
QString seededOrderColumn(const SQLInfo &definition, const RunInputs &before)
{
    const bool dropped = isOrderChoice(before.definition.get(), before.orderBy) && !isOrderChoice(&definition, before.orderBy);
    if (!before.orderBy.isEmpty() && !dropped)
        return before.orderBy;
    const auto choices = PadLayout::orderChoices(definition);
    return choices->isEmpty() ? QString() : choices->item(0).toString();
}

bool isList(const ParamInfo *parameter)
{
    return parameter && parameter->paramType() == ParamInfo::ChosenFromList && parameter->selections();
}

// The value a parameter slot starts on; nothing when it stays as it is. A list value the edit
// took out of the list gives way to the list's first; a value given by hand, never in the list,
// stays.
std::optional<QString> seededValue(const ParamInfo *parameter, const ParamInfo *parameterBefore, const QString &value)
{
    const bool blank = value.trimmed().isEmpty();
    if (!isList(parameter))
        return blank ? std::nullopt : std::optional<QString>(value);
    const auto &values = parameter->selections();
    const bool dropped = isList(parameterBefore) && parameterBefore->selections()->contains(value) && !values->contains(value);
    if (!blank && !dropped)
        return value;
    return values->isEmpty() ? std::nullopt : std::optional<QString>(values->key(0));
}

} // namespace

RunInputs RunInputs::capture(const tessaly::ModelHost &host)
{
    using namespace tessaly::variant;
    RunInputs inputs;
    inputs.definition = definitionOf(host);
    inputs.selection = toText(host.slotValue(selectionSlot));
    const auto values = parameterValuesOf(host);
    inputs.parameters = values ? values->copy() : std::make_shared<tessaly::NameMap>();
    inputs.topN = toLong(host.slotValue(topNSlot));
    inputs.orderBy = toText(host.slotValue(orderBySlot));
    inputs.orderByAscendant = toBoolean(host.slotValue(ascendantSlot));
    return inputs;
}

// Written even when a slot holds the value already: whatever shows the slot follows a write,
// and a face just built may show something else.
void seedRunInputs(tessaly::ModelHost &host, const RunInputs &before)
{
    const auto definition = definitionOf(host);
    if (!definition)
        return;
    host.setSlotValue(selectionSlot, seededSelection(*definition, before));
    if (takesRowCount(definition.get()))
        host.setSlotValue(topNSlot, seededRowCount(*definition, before));
    if (takesOrdering(definition.get())) {
        host.setSlotValue(orderBySlot, seededOrderColumn(*definition, before));
        host.setSlotValue(ascendantSlot, takesOrdering(before.definition.get()) ? before.orderByAscendant : true);
    }
    const auto values = parameterValuesOf(host);
    const auto parameter = [](const SQLInfo *query, const QString &key) {
        return query && query->parameters() ? query->parameters()->object<ParamInfo>(key) : nullptr;
    };
    QStringList seeded;
    for (int i = 0; values && i < values->count(); ++i) {
        const QString key = values->key(i);
        QVariant valueBefore;
        if (before.parameters)
            before.parameters->lookup(key, &valueBefore);
        const auto value = seededValue(parameter(definition.get(), key).get(),
                                       parameter(before.definition.get(), key).get(), valueBefore.toString());
        if (value) {
            values->setText(key, *value);
            seeded.append(key);
        }
    }
    if (seeded.isEmpty())
        return;
    // All values in one write of the collection: the model rebuilds its request once, where a
    // write of each parameter slot would rebuild it once per parameter (thousands of times for a
    // large definition, each over the whole condition). What shows a slot is told it changed.
    host.setSlotValue(parametersSlot, tessaly::variant::holding(values));
    for (const QString &key : std::as_const(seeded))
        host.notifySlotChanged(key);
}

} // namespace host
