#pragma once

#include "veldra/wizard/wizardstep.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace veldra {

class WizardState;

// The rules of the grouping, ordering and row count step. Every setting goes into the
// definition at once, except the GROUP BY list and the ORDER BY items, which store() writes
// when the person goes forward to the last step.
class GroupOrderStep final : public WizardStep
{
public:
    // What the row count starts at when the definition has none.
    static constexpr qint32 DefaultRowCount = 100;

    struct GroupItem
    {
        QString name;
        bool checked = false;
    };

    explicit GroupOrderStep(WizardState &state);

    // When the wizard opens: the row count, direction and order column of the definition.
    void initialize() override;
    // Entry of the step: the GROUP BY checks come from the definition, and an order column that
    // is no longer selected is forgotten.
    bool prepare() override;
    // A fixed ORDER BY needs its column; ordering off or as a parameter needs none.
    bool isComplete() const override;

    bool rowCountOn() const;
    // The count, its label and its parameter check are usable only while a count is set.
    bool rowCountEnabled() const { return rowCountOn(); }
    QString rowCountText() const;
    bool rowCountAsParam() const;
    // On: the last count typed; off: no row count.
    void setRowCountOn(bool on);
    // False, and nothing changed, for a text that is not a 32-bit integer.
    bool setRowCountText(const QString &text);
    // Whether the person may leave the count box with this text.
    static bool canLeaveRowCount(const QString &text);
    void setRowCountAsParam(bool on);

    bool groupByOn() const;
    void setGroupByOn(bool on);
    // One item per named selection, in order.
    QList<GroupItem> groupItems() const;
    void setGroupItemChecked(const QString &name, bool checked);

    bool orderByOn() const;
    void setOrderByOn(bool on);
    bool orderByAsParam() const;
    void setOrderByAsParam(bool on);
    QStringList orderCandidates() const;
    // The chosen order column's place among the candidates, or -1.
    int orderColumnIndex() const;
    void setOrderColumn(const QString &displayName);
    bool ascending() const;
    void setAscending(bool ascending);
    // The column and direction matter only for a fixed ORDER BY.
    bool orderColumnEnabled() const;
    bool orderParamEnabled() const { return orderByOn(); }

    // Going forward to the last step: groupBy gets the checked items in list order, and with
    // ORDER BY on, orderBy gets every selection as a candidate (as a parameter) or the one
    // chosen column with its direction (fixed).
    void store();

private:
    WizardState &m_state;
    qint32 m_lastRowCount = 0;
    bool m_ascending = true;
    QString m_orderColumn;
    // The checked items of the GROUP BY list; they reach the definition only through store().
    QStringList m_groupByChecked;
};

} // namespace veldra
