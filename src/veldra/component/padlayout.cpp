#include "veldra/component/padlayout.h"

#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/stringtable.h"

namespace veldra {

namespace {

using tessaly::SlotOwner;
using Child = PadLayout::Child;

const QString labelsSlot = QStringLiteral("labels");
const QString labelProgId = QStringLiteral("CommonLX.StaticTextPad");
const QStringList listProgIds = { QStringLiteral("lxList.ListPad") };
const QStringList textProgIds = { QStringLiteral("StringZorbit.StringPad"), QStringLiteral("CommonLX.StringPad") };
const QStringList choiceProgIds = { QStringLiteral("ListZorbit.ComboBoxPad"), QStringLiteral("ListLX.ComboBoxPad") };
const QStringList switchProgIds = { QStringLiteral("CommonLX.SwitchPad") };

Child label(const QString &name, const QString &caption)
{
    Child child;
    child.name = name;
    child.progIds = QStringList{ labelProgId };
    child.width = PadLayout::width;
    child.height = PadLayout::labelHeight;
    child.settings = { { QStringLiteral("String"), caption } };
    child.property = QStringLiteral("String");
    child.owner = SlotOwner::Pad;
    child.slot = labelsSlot;
    return child;
}

Child input(const QString &name, const QStringList &progIds, const QString &property, const QString &slot)
{
    Child child;
    child.name = name;
    child.progIds = progIds;
    child.width = PadLayout::width;
    child.height = PadLayout::inputHeight;
    child.property = property;
    child.slot = slot;
    return child;
}

// A white, framed, black-on-white entry.
const QList<PadLayout::Setting> textAppearance = {
    { QStringLiteral("BorderStyle"), 3 },
    { QStringLiteral("ForeColor"), 0 },
    { QStringLiteral("BackColor"), 0xFFFFFF },
};

QString displayName(const SQLInfo &definition, const QString &selection)
{
    std::shared_ptr<ColumnInfo> column;
    try {
        column = definition.getColumnInfo(selection);
    } catch (const tessaly::Error &) {
        // An empty selection names nothing; it shows as it is.
    }
    return column && !column->alias().isEmpty() ? column->alias() : selection;
}

} // namespace

QStringList PadLayout::displayNames(const SQLInfo &definition)
{
    QStringList names;
    if (const auto &selections = definition.selections()) {
        for (const QString &selection : *selections)
            names.append(displayName(definition, selection));
    }
    return names;
}

std::shared_ptr<tessaly::NameMap> PadLayout::orderChoices(const SQLInfo &definition)
{
    auto choices = std::make_shared<tessaly::NameMap>();
    if (const auto &selections = definition.selections()) {
        for (const QString &selection : *selections)
            choices->setText(displayName(definition, selection), selection);
    }
    return choices;
}

QList<PadLayout::Row> PadLayout::rows(const SQLInfo &definition)
{
    QList<Row> rows;

    Child list = input(QStringLiteral("SelectionList"), listProgIds, QStringLiteral("CurrentItem"),
                       QStringLiteral("selection"));
    list.height = listHeight;
    const QString items = selectionItems(definition);
    list.afterConnecting = { { QStringLiteral("AddItems"), items }, { QStringLiteral("CurrentItem"), items } };
    rows.append(Row{ list });

    if (definition.topN() >= 1 && definition.topNAsParam()) {
        Child count = input(QStringLiteral("TopNInput"), textProgIds, QStringLiteral("String"), QStringLiteral("TopN"));
        count.settings = textAppearance;
        count.settings += { { QStringLiteral("Format"), QStringLiteral("L") }, { QStringLiteral("KeyEntry"), true } };
        rows.append(Row{ label(QStringLiteral("TopNLabel"), text(StringId::PadTopNLabel)), count });
    }

    if (definition.useOrderBy() && definition.orderByAsParam()) {
        Child column = input(QStringLiteral("OrderByInput"), choiceProgIds, QStringLiteral("SelectValue"),
                             QStringLiteral("OrderBy"));
        column.settings = { { QStringLiteral("LeftMargin"), 0 }, { QStringLiteral("RightMargin"), 0 } };
        const auto choices = orderChoices(definition);
        column.afterConnecting = { { QStringLiteral("List"), tessaly::NameMap::fromObject(choices) } };
        if (!choices->isEmpty())
            column.afterConnecting.append({ QStringLiteral("SelectIndex"), 0 });
        rows.append(Row{ label(QStringLiteral("OrderByLabel"), text(StringId::PadOrderByLabel)), column });

        Child direction = input(QStringLiteral("DirectionSwitch"), switchProgIds, QStringLiteral("SwitchOn"),
                                QStringLiteral("OrderByAscendant"));
        direction.settings = {
            { QStringLiteral("OffOutFileName"), QStringLiteral("res:res\\vd\\desc_out.bmp") },
            { QStringLiteral("OffInFileName"), QStringLiteral("res:res\\vd\\desc_in.bmp") },
            { QStringLiteral("OnOutFileName"), QStringLiteral("res:res\\vd\\asc_out.bmp") },
            { QStringLiteral("OnInFileName"), QStringLiteral("res:res\\vd\\asc_in.bmp") },
        };
        direction.afterConnecting = { { QStringLiteral("SwitchOn"), true } };
        rows.append(Row{ label(QStringLiteral("DirectionLabel"), text(StringId::PadDirectionLabel)), direction });
    }

    const auto &parameters = definition.parameters();
    const int count = parameters ? parameters->count() : 0;
    for (int i = 0; i < count; ++i) {
        const auto parameter = parameters->objectAt<ParamInfo>(i);
        if (!parameter)
            continue;
        const QString &slot = parameter->paramName();
        Row row{ label(QStringLiteral("ParamLabel") + slot, parameter->title()) };
        if (parameter->paramType() == ParamInfo::TypedIn) {
            Child entry = input(QStringLiteral("ParamInput") + slot, textProgIds, QStringLiteral("String"), slot);
            entry.settings = textAppearance;
            entry.afterConnecting = { { QStringLiteral("String"), QString() } };
            row.append(entry);
        } else if (parameter->paramType() == ParamInfo::ChosenFromList) {
            Child choice = input(QStringLiteral("ParamInput") + slot, choiceProgIds, QStringLiteral("SelectKey"), slot);
            const auto &selections = parameter->selections();
            choice.settings = { { QStringLiteral("Mode"), true },
                                { QStringLiteral("List"), tessaly::NameMap::fromObject(selections) } };
            if (selections && !selections->isEmpty())
                choice.afterConnecting = { { QStringLiteral("SelectIndex"), 0 } };
            row.append(choice);
        }
        rows.append(row);
    }
    return rows;
}

} // namespace veldra
