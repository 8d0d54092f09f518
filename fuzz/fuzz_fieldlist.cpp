// The data service reading the select list of a record request (the <field> text) as items,
// their written names, and the result column names it gives back as the request wrote them.
// Items are parts of the list, trimmed; a written name ends its item; and when the engine folds
// every written name to lower case, each comes back as the request wrote it.

#include "fuzzcheck.h"

#include <dataservice/fieldlist.h>

#include <cstdint>

namespace {

QByteArray asciiLower(QByteArray text)
{
    for (char &c : text) {
        if (c >= 'A' && c <= 'Z')
            c = char(c - 'A' + 'a');
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString fields = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    const QStringList items = dataservice::FieldList::items(fields);
    FUZZ_CHECK(!items.isEmpty(), "a select list gave no item at all");
    QList<QByteArray> written;
    QList<QByteArray> folded;
    for (const QString &item : items) {
        FUZZ_CHECK(item == item.trimmed(), "an item keeps blanks around it");
        FUZZ_CHECK(fields.contains(item), "an item is not part of the list");
        const QString name = dataservice::FieldList::writtenName(item);
        FUZZ_CHECK(name.isEmpty() || item.endsWith(name), "a written name is not where the item ends");
        written.append(name.toUtf8());
        folded.append(asciiLower(name.toUtf8()));
    }
    const QList<QByteArray> given = dataservice::FieldList::namesAsWritten(fields, folded);
    FUZZ_CHECK(given.size() == folded.size(), "a different number of column names came back");
    // The engine here folds every written name: each comes back as written.
    for (qsizetype i = 0; i < given.size(); ++i)
        FUZZ_CHECK(given.at(i) == written.at(i), "a column name did not come back as written");
    return 0;
}
