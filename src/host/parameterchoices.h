#pragma once

#include "host/livelists.h"
#include "host/parametersettings.h"
#include "host/sourcechoice.h"

#include <QDate>
#include <QSet>
#include <QStringList>

namespace tessaly {
class ModelHost;
}

namespace host {

// What a host does with the host-level parameter settings, through the component's own
// parameter slots: every value it writes is a literal of the engine the request goes to, so
// the data service judges it as it judges a typed value. One implementation for every host.
class ParameterChoices
{
public:
    // lists may be null: a host that reads no live lists (the stored values stand in).
    ParameterChoices(tessaly::ModelHost &host, const HostSettings &settings, LiveLists *lists,
                     const SourceChoice &source);

    // The provider the request goes to: the chosen source's, else the component's.
    QString provider() const;

    // Writes each relative default, as the engine's literal for today, into its slot.
    void applyDefaults(const QDate &today = QDate::currentDate());

    // The literal for a value a person typed or chose for reference: the literal of a relative
    // date; an entry of its list, by value or by shown text (the stored values, then the live
    // list); else the text quoted for the engine (a number stays bare when the list's values
    // are numbers). Raises tessaly::Error naming the parameter when no literal can hold it.
    QString literalFor(const QString &reference, const QString &value, const QDate &today = QDate::currentDate());

    // Writes the values chosen for reference into its slot, each as literalFor() makes it and
    // joined by commas. Several values need the setting that allows them; none empties the
    // slot, so the parameter is named as missing (never "IN ()").
    void choose(const QString &reference, const QStringList &values);

    // Writes literals taken from the list's entries as they are (a control that shows them).
    void setChosen(const QString &reference, const QStringList &literals);

    // The slot's value as the values a person chose (the literals of a multiple-value slot).
    QStringList chosen(const QString &reference) const;

    // Reads the live lists again, each after the lists its filter refers to (all of them, or
    // those that depend on changed), and gives a list's first entry to a parameter whose value
    // the list no longer holds (a multiple-value parameter keeps the values still held). The
    // parameters in keep are left as the person set them. The notes to show (fallbacks).
    QStringList settle(const QStringList &changed = {}, const QSet<QString> &keep = {});

    // A page of the parameter's list for the person to choose from.
    ListPage page(const QString &reference, const QString &search = {}, int limit = LiveLists::PageSize) const;

private:
    void write(const QString &reference, const QString &value);

    tessaly::ModelHost &m_host;
    const HostSettings &m_settings;
    LiveLists *m_lists;
    SourceChoice m_source;
};

} // namespace host
