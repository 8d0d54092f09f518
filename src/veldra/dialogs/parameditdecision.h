#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace tessaly {
class NameMap;
}

namespace veldra {

class ParamInfo;

// One row of a parameter's selection values: the value put into the query and the name shown.
struct SelectionValueRow
{
    QString value;
    QString name;
    bool selected = false;
};

// What the parameter edit dialog decides, without its window. The record it is given is
// edited field by field as the user types, not on OK: for Modify that is the record the
// definition holds, so Cancel keeps what was typed.
class ParamEditDecision
{
public:
    static constexpr int StringFieldOption = 0;
    static constexpr int ValueListOption = 1;

    const std::shared_ptr<ParamInfo> &parameter() const { return m_parameter; }
    // A new parameter to edit; the chosen value is forgotten.
    void setParameter(const std::shared_ptr<ParamInfo> &parameter);

    // Every parameter name starts with "@@@": a text that does not gets it in front of what is
    // there (so removing part of the prefix adds a whole one again).
    static QString withParameterPrefix(const QString &text);
    // A change of the name field: the name takes the prefixed text, which the field shows.
    QString editName(const QString &text);
    void editTitle(const QString &text);

    // StringFieldOption for paramType 1, ValueListOption for 2, -1 for any other.
    int typeOption() const;
    // The option clicked: the kind changes, the selection values stay.
    void chooseTypeOption(int option);
    // The selection value controls are for a parameter chosen from a list only.
    bool valueAreaEnabled() const;
    // OK is enabled for a name and a title, and for the list kind at least one value.
    bool isValid() const;

    // The selection values in the map's order; the row of the chosen value is selected.
    QList<SelectionValueRow> valueRows() const;
    const QString &selectedValue() const { return m_selectedValue; }

    // From the value edit dialog: the value takes this name (added, or renamed when held) and
    // becomes the chosen one.
    void storeValue(const QString &value, const QString &name);
    // Modify of the row holding oldValue: a new name replaces the old in place; a changed value
    // takes the row's place too (a row already holding the new value merges into it), so no
    // row of the old value is left behind.
    void modifyValue(const QString &oldValue, const QString &value, const QString &name);
    // The values the condition would carry as written although they are no SQL literal.
    QStringList nonLiteralValues() const;
    // Quote: each of those becomes a text literal in its place, its name kept; a value that is
    // then held twice keeps its first row. False when there was nothing to quote.
    bool quoteValues();
    // From the retrieve-from-database dialog: these values replace the old ones whole.
    void takeValues(const std::shared_ptr<tessaly::NameMap> &values);
    void removeValue(const QString &value);
    // Delete without a question: the row's value goes, and the row below it (else above it,
    // else none) becomes the chosen one.
    void deleteRow(int row);

    // What OK hands to the parameter list: a copy of the record as edited.
    std::shared_ptr<ParamInfo> committedCopy() const;

private:
    // Replaces the selection values by these pairs, in this order, the first of a repeated
    // value winning; the map stays the same object.
    void rebuildValues(const QList<std::pair<QString, QVariant>> &pairs);

    std::shared_ptr<ParamInfo> m_parameter;
    QString m_selectedValue;
};

} // namespace veldra
