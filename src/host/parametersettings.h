#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace veldra {
class SQLInfo;
}

namespace host {

// A list whose values a host reads from the component's own data source when the query runs,
// instead of the values "Get from DB" copied once: SELECT value[, display] FROM table
// WHERE filter GROUP BY value[, display] ORDER BY order, one page at a time.
struct LiveList
{
    static constexpr int DefaultCacheSeconds = 300;

    QString table;
    QString valueColumn;
    QString displayColumn; // empty: the value is shown
    QString filter;        // a condition; may refer to other parameters (@@@Country)
    QString order;         // empty: the shown column
    bool descending = false;
    int cacheSeconds = DefaultCacheSeconds; // 0: read again every time

    bool isSet() const { return !table.isEmpty(); }
    QString shownColumn() const { return displayColumn.isEmpty() ? valueColumn : displayColumn; }
    bool operator==(const LiveList &other) const;
};

// What a host does for one parameter beyond the component's own records.
struct ParameterSetting
{
    QString reference;       // "@@@Region"
    bool multiple = false;   // several values, written as the engine's literals joined by commas
    QString relativeDefault; // "today-30d": the value at every open, as the engine's literal
    LiveList list;

    bool operator==(const ParameterSetting &other) const;
};

// The host-level settings of a component document: the <Host> part beside <Model>, which the
// component never reads and a host without these settings skips (component-document.md).
class HostSettings
{
public:
    QList<ParameterSetting> parameters;

    bool isEmpty() const { return parameters.isEmpty(); }
    const ParameterSetting *find(const QString &reference) const;
    ParameterSetting &edit(const QString &reference); // adds one when there is none

    // The <Host> part of a component document (empty settings when it has none). Raises
    // tessaly::Error (BadFileFormat) naming the line and column of a malformed setting.
    static HostSettings read(const QByteArray &document, const QString &sourceName);
    // The document with its <Host> part replaced by these settings (none when empty).
    QByteArray writeInto(const QByteArray &document) const;

    // Raises tessaly::Error (InvalidArgument) naming the parameter: a setting for no parameter
    // of the query, a default that is no relative date, a list without its value column, and
    // lists whose filters refer to each other in a cycle (naming every parameter in it).
    void check(const veldra::SQLInfo &definition) const;

    // Without the settings of parameters the query no longer has (after an edit of the query).
    void dropOthers(const veldra::SQLInfo &definition);

    // The parameters a live list's filter refers to, in the order of the filter.
    QStringList dependencies(const QString &reference) const;
    // The live lists whose filter refers to reference, directly or through another list.
    QStringList dependents(const QString &reference) const;
    // The parameters with a live list, each after every list its filter refers to.
    QStringList listOrder() const;

    bool operator==(const HostSettings &other) const { return parameters == other.parameters; }
};

} // namespace host
