#include "host/hosttext.h"

#include "host/translations.h"

namespace host {

namespace {

// In the order of HostText. The translations use full-width punctuation in Japanese.
const char *const entries[] = {
    QT_TRANSLATE_NOOP("HostText", "\"%1\" is not an input of the component; its inputs are: %2"),
    QT_TRANSLATE_NOOP("HostText", "selection: \"%1\" is no column or expression of the query; its selections are: %2"),
    QT_TRANSLATE_NOOP("HostText", "%1: the query takes no row count at run time (%2)"),
    QT_TRANSLATE_NOOP("HostText", "its row count is fixed at %1 in the wizard"),
    QT_TRANSLATE_NOOP("HostText", "it has no row count"),
    QT_TRANSLATE_NOOP("HostText", "%1: the query takes no ordering at run time"),
    QT_TRANSLATE_NOOP("HostText", "OrderBy: \"%1\" is not one of the query's ordering choices: %2"),
    QT_TRANSLATE_NOOP("HostText", "cannot set \"%1\" to \"%2\": %3"),
    QT_TRANSLATE_NOOP("HostText", "%1: the folder %2 does not exist"),
    QT_TRANSLATE_NOOP("HostText", "%1: %2 is not a folder"),
    QT_TRANSLATE_NOOP("HostText", "%1: the folder %2 cannot be written (%3)"),
    QT_TRANSLATE_NOOP("HostText", "%1: is a folder, not a file"),
    QT_TRANSLATE_NOOP("HostText", "%1: not a regular file (a device, FIFO or socket)"),
    QT_TRANSLATE_NOOP("HostText", "%1: the file cannot be written (%2)"),
    QT_TRANSLATE_NOOP("HostText", "%1; no writable folder was found to keep the component in"),
    QT_TRANSLATE_NOOP("HostText", ", "),
    QT_TRANSLATE_NOOP("HostText", "%1: the settings name a parameter the query does not have"),
    QT_TRANSLATE_NOOP("HostText", "%1: \"%2\" is no relative date; use today, start-of-week, start-of-month or start-of-year, optionally with an offset such as -30d, +1w, -1m or -2y"),
    QT_TRANSLATE_NOOP("HostText", "%1: a list read from the data source needs its value column"),
    QT_TRANSLATE_NOOP("HostText", "the lists refer to each other in a cycle: %1"),
    QT_TRANSLATE_NOOP("HostText", "%1: the list could not be read from the data source (%2); it shows the values stored in the query"),
    QT_TRANSLATE_NOOP("HostText", "%1: the list waits for a value of %2"),
    QT_TRANSLATE_NOOP("HostText", "%1: no value is chosen"),
    QT_TRANSLATE_NOOP("HostText", "there is no data source named \"%1\"; there are: %2"),
    QT_TRANSLATE_NOOP("HostText", "%1: %2"),
    QT_TRANSLATE_NOOP("HostText", "%1 takes one value; allow several values in its settings to choose more"),
};

} // namespace

QString hostText(HostText id)
{
    return host::translatedText("HostText", entries[int(id)]);
}

} // namespace host
