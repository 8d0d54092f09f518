#pragma once

#include <QList>
#include <QString>

#include <memory>

namespace veldra {

class ParamInfo;
class SQLInfo;

// One row of the parameter list.
struct ParamListRow
{
    QString name;
    QString type; // "String Field", "Selected Value List" or blank
    QString title;
    bool selected = false;
};

// What the parameter list dialog decides, without its window: the rows of the definition's
// parameters, the chosen name, and the changes Add, Modify and Delete make. The changes go
// straight into the definition, whether the dialog later ends with OK or Cancel.
class ParamListDecision
{
public:
    const std::shared_ptr<SQLInfo> &definition() const { return m_definition; }
    void setDefinition(const std::shared_ptr<SQLInfo> &definition) { m_definition = definition; }

    // One row per ParamInfo of the parameters, in the map's order; a row is selected when its
    // name is the chosen one (case-sensitive).
    QList<ParamListRow> rows() const;
    // The row the list marks: the last selected one (a single-selection list keeps the last
    // mark), or -1.
    static int selectedRow(const QList<ParamListRow> &rows);
    static QString typeCaption(qint32 paramType);

    const QString &selectedName() const { return m_selectedName; }
    // A click on a row.
    void select(const QString &name) { m_selectedName = name; }
    bool okEnabled() const { return !m_selectedName.isEmpty(); }

    // What Modify edits: the record held under the chosen name, or nothing when the name is
    // empty or no longer in the map.
    std::shared_ptr<ParamInfo> parameterToModify() const;

    // The parameter edit dialog's confirmation: the record is stored under its name (added, or
    // replacing what that name held) and becomes the chosen one.
    void chooseParameter(const std::shared_ptr<ParamInfo> &parameter);
    void removeParameter(const QString &name);
    // Delete without a question: the row's parameter goes, and the row below it (else above
    // it, else none) becomes the chosen one.
    void deleteRow(int row);

private:
    std::shared_ptr<SQLInfo> m_definition;
    QString m_selectedName;
};

} // namespace veldra
