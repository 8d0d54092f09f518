#include "host/runinputs.h"

#include "host/slotvalues.h"

#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/padlayout.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

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
    QStringList kept;
    for (const QString &name : chosen) {
        if (all.contains(name))
            kept.append(name);
    }
    for (const QString &name : all) {
        if (!allBefore.contains(name) && !kept.contains(name))
            kept.append(name);
    }
    return (kept.isEmpty() ? all : kept).join(u',');
}

qint32 seededRowCount(const SQLInfo &definition, const RunInputs &before)
{
    const bool keep = takesRowCount(before.definition.get()) && before.definition->topN() == definition.topN()
            && before.topN > 0;
    return keep ? before.topN : definition.topN();
}

QString seededOrderColumn(const SQLInfo &definition, const RunInputs &before)
{
    const auto choices = PadLayout::orderChoices(definition);
    for (int i = 0; i < choices->count(); ++i) {
        if (tessaly::variant::toText(choices->item(i)) == before.orderBy)
            return before.orderBy;
    }
    return choices->isEmpty() ? QString() : tessaly::variant::toText(choices->item(0));
}

// The value a parameter slot starts on; nothing when it stays as it is.
std::optional<QString> seededValue(const ParamInfo *parameter, const QString &valueBefore)
{
    if (parameter && parameter->paramType() == ParamInfo::ChosenFromList) {
        const auto &values = parameter->selections();
        if (values && values->contains(valueBefore))
            return valueBefore;
        if (values && !values->isEmpty())
            return values->key(0);
        return std::nullopt;
    }
    if (!valueBefore.trimmed().isEmpty())
        return valueBefore;
    return std::nullopt;
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
    const auto &parameters = definition->parameters();
    for (int i = 0; values && i < values->count(); ++i) {
        const QString key = values->key(i);
        QVariant valueBefore;
        if (before.parameters)
            before.parameters->lookup(key, &valueBefore);
        const auto parameter = parameters ? parameters->object<ParamInfo>(key) : nullptr;
        if (const auto value = seededValue(parameter.get(), valueBefore.toString()))
            host.setSlotValue(key, *value);
    }
}

} // namespace host
