#include "veldra/component/padlayout.h"

#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/extratext.h"
#include "veldra/resources/stringtable.h"

#include <QHash>

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

// The caption of an input's row is its name for assistive technology; captions that repeat (two
// parameters with one title) are told apart by the slot they set.
void nameInputs(QList<PadLayout::Row> &rows)
{
    QHash<QString, int> uses;
    for (const PadLayout::Row &row : rows) {
        for (const Child &child : row)
            ++uses[child.accessibleName];
    }
    for (PadLayout::Row &row : rows) {
        for (Child &child : row) {
            if (!child.accessibleName.isEmpty() && uses.value(child.accessibleName) > 1)
                child.accessibleName += QStringLiteral(" (%1)").arg(child.slot);
        }
    }
}

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
    list.accessibleName = extraText(ExtraText::PadSelectionListName);
    const QString items = selectionItems(definition);
    list.afterConnecting = { { QStringLiteral("AddItems"), items }, { QStringLiteral("CurrentItem"), items } };
    rows.append(Row{ list });

    if (definition.topN() >= 1 && definition.topNAsParam()) {
        Child count = input(QStringLiteral("TopNInput"), textProgIds, QStringLiteral("String"), QStringLiteral("TopN"));
        count.settings = textAppearance;
        count.settings += { { QStringLiteral("Format"), QStringLiteral("L") }, { QStringLiteral("KeyEntry"), true } };
        count.accessibleName = text(StringId::PadTopNLabel);
        rows.append(Row{ label(QStringLiteral("TopNLabel"), text(StringId::PadTopNLabel)), count });
    }

    if (definition.useOrderBy() && definition.orderByAsParam()) {
        Child column = input(QStringLiteral("OrderByInput"), choiceProgIds, QStringLiteral("SelectValue"),
                             QStringLiteral("OrderBy"));
        column.settings = { { QStringLiteral("LeftMargin"), 0 }, { QStringLiteral("RightMargin"), 0 } };
        column.accessibleName = text(StringId::PadOrderByLabel);
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
        direction.accessibleName = text(StringId::PadDirectionLabel);
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
        const QString inputName = parameter->title().trimmed().isEmpty() ? slot : parameter->title();
        if (parameter->paramType() == ParamInfo::TypedIn) {
            Child entry = input(QStringLiteral("ParamInput") + slot, textProgIds, QStringLiteral("String"), slot);
            entry.settings = textAppearance;
            entry.afterConnecting = { { QStringLiteral("String"), QString() } };
            entry.accessibleName = inputName;
            row.append(entry);
        } else if (parameter->paramType() == ParamInfo::ChosenFromList) {
            Child choice = input(QStringLiteral("ParamInput") + slot, choiceProgIds, QStringLiteral("SelectKey"), slot);
            const auto &selections = parameter->selections();
            choice.settings = { { QStringLiteral("Mode"), true },
                                { QStringLiteral("List"), tessaly::NameMap::fromObject(selections) } };
            if (selections && !selections->isEmpty())
                choice.afterConnecting = { { QStringLiteral("SelectIndex"), 0 } };
            choice.accessibleName = inputName;
            row.append(choice);
        }
        rows.append(row);
    }
    nameInputs(rows);
    return rows;
}

} // namespace veldra
