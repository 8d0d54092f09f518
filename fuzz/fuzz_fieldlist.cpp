// The data service reading the select list of a record request (the <field> text) as items, and
// the result column names it gives back as the request wrote them. The first byte picks the
// engine's rules. Each alias is found where the list has it, and when the engine folds every
// plain alias to lower case, each comes back as the request wrote it; quoted ones stay as the
// engine gave them.

#include "fuzzcheck.h"

#include <dataservice/fieldlist.h>
#include <tessaly/error.h>

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

bool plainName(const QString &alias)
{
    return !alias.isEmpty() && alias.at(0) != u'"';
}

void readList(const QString &fields, dataservice::SqlDialect dialect)
{
    try {
        const dataservice::FieldList list(fields, dialect);
        list.statementText();
        QList<QByteArray> engineNames;
        qsizetype previous = -1;
        for (const auto &item : list.items()) {
            FUZZ_CHECK(item.start > previous && item.start <= fields.size(), "an item is not in its place");
            previous = item.start;
            if (!item.alias.isEmpty())
                FUZZ_CHECK(fields.mid(item.aliasStart, item.alias.size()) == item.alias, "an alias is not where it was read");
            // A name with no letter of a word: the engine's name for an expression without an alias.
            engineNames.append(plainName(item.alias) ? asciiLower(item.alias.toUtf8()) : QByteArrayLiteral("?column?"));
        }
        const QList<QByteArray> given = list.namesAsWritten(engineNames);
        FUZZ_CHECK(given.size() == engineNames.size(), "a different number of column names came back");
        for (qsizetype i = 0; i < given.size(); ++i) {
            const QString &alias = list.items().at(i).alias;
            FUZZ_CHECK(given.at(i) == (plainName(alias) ? alias.toUtf8() : engineNames.at(i)),
                       "a column name did not come back as written");
        }
    } catch (const tessaly::Error &) {
        // refused, naming the item: what the service does with a list it cannot place
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QString fields = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    readList(fields, data[0] % 2 ? dataservice::SqlDialect::PostgreSQL : dataservice::SqlDialect::SQLite);
    return 0;
}
