#include "host/inputcheck.h"

#include "host/hosttext.h"
#include "host/slotvalues.h"

#include "tessaly/error.h"
#include "veldra/component/padlayout.h"
#include "veldra/records/displaynameindex.h"

namespace host {

namespace {

using veldra::SQLInfo;

const QString selectionSlot = QStringLiteral("selection");
const QString topNSlot = QStringLiteral("TopN");
const QString orderBySlot = QStringLiteral("OrderBy");
const QString ascendantSlot = QStringLiteral("OrderByAscendant");
const QString updateSlot = QStringLiteral("UpdateRequest");

[[noreturn]] void refuse(const QString &message)
{
    throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, message);
}

bool takesRowCount(const SQLInfo &definition)
{
    return definition.topNAsParam() && definition.topN() >= 1;
}

bool takesOrdering(const SQLInfo &definition)
{
    return definition.useOrderBy() && definition.orderByAsParam();
}

QString list(const QStringList &names)
{
    return names.join(hostText(HostText::ListSeparator));
}

void checkSelection(const SQLInfo &definition, const QString &value)
{
    const QStringList names = value.split(u',');
    const veldra::DisplayNameIndex items(definition, names.size());
    for (const QString &item : names) {
        const QString name = item.trimmed();
        if (!name.isEmpty() && !items.find(name))
            refuse(hostText(HostText::NotASelection).arg(name, list(veldra::PadLayout::displayNames(definition))));
    }
}

// The ordering column as ORDER BY takes it, from its text or its display name.
QString orderColumn(const SQLInfo &definition, const QString &value)
{
    const auto choices = veldra::PadLayout::orderChoices(definition);
    QVariant column;
    if (value.isEmpty() || choices->lookup(value, &column))
        return value.isEmpty() ? value : column.toString();
    QStringList names;
    for (int i = 0; i < choices->count(); ++i) {
        if (choices->item(i).toString() == value)
            return value;
        names.append(choices->key(i));
    }
    refuse(hostText(HostText::NotAnOrderChoice).arg(value, list(names)));
}

} // namespace

QStringList inputNames(const tessaly::ModelHost &host)
{
    QStringList names{ selectionSlot };
    const auto definition = definitionOf(host);
    if (definition && takesRowCount(*definition))
        names.append(topNSlot);
    if (definition && takesOrdering(*definition))
        names += { orderBySlot, ascendantSlot };
    names.append(updateSlot);
    for (const tessaly::ModelHost::Slot &slot : host.declaredSlots()) {
        if (slot.parameter)
            names.append(slot.name);
    }
    return names;
}

QVariant acceptInput(const tessaly::ModelHost &host, const QString &name, const QString &value)
{
    const auto definition = definitionOf(host);
    if (definition) {
        if (name == selectionSlot)
            checkSelection(*definition, value);
        else if (name == topNSlot && !takesRowCount(*definition))
            refuse(hostText(HostText::NoRunTimeRowCount)
                           .arg(name, definition->topN() >= 1 ? hostText(HostText::FixedRowCount).arg(definition->topN())
                                                              : hostText(HostText::NoRowCount)));
        else if ((name == orderBySlot || name == ascendantSlot) && !takesOrdering(*definition))
            refuse(hostText(HostText::NoRunTimeOrdering).arg(name));
        else if (name == orderBySlot)
            return orderColumn(*definition, value);
    }
    if (!inputNames(host).contains(name))
        refuse(hostText(HostText::NotAnInput).arg(name, list(inputNames(host))));
    return value;
}

} // namespace host
