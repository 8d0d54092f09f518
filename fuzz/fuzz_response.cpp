// The component's accessor reading the data service's answer. The first byte picks how the rest
// is used:
//   0: as the answer itself, whatever it holds: a navigation list and a key/value list are read
//      from it, and nothing may crash or hang;
//   1: as names the service lists (separated by NUL): the service's response writer writes
//      them and the accessor must read back every name the writer kept, in order, once each;
//   2: as the cells of a two-column result (separated by NUL; a cell "\x01" is NULL): the
//      writer writes them and the accessor's key/value list must be exactly the pairs the
//      rows give, text that XML cannot carry (written in base64) included.
// A difference aborts: the fuzzer keeps the input.

#include "fuzzcheck.h"

#include <dataservice/responsewriter.h>
#include <tessaly/error.h>
#include <tessaly/namemap.h>
#include <tessaly/serviceproxy.h>
#include <veldra/records/dbinfo.h>
#include <veldra/service/tsaccessor.h>

#include <QBuffer>
#include <QDomDocument>

#include <cstdint>

namespace {

// Answers every request with the same bytes, parsed as the in-process proxy parses them.
class Answer final : public tessaly::ServiceProxy
{
public:
    QByteArray bytes;

    QDomDocument request(const QDomDocument &) override
    {
        QDomDocument document;
        if (!document.setContent(bytes))
            throw tessaly::Error(tessaly::ErrorNumber::Fail, QStringLiteral("not well-formed"));
        return document;
    }
};

const QString keyColumn = QStringLiteral("k");
const QString valueColumn = QStringLiteral("v");

struct Reader
{
    Reader() : answer(std::make_shared<Answer>()), database(std::make_shared<veldra::dbInfo>())
    {
        accessor.setTsProxy(answer);
        accessor.setErrorReporter([](const veldra::DatabaseErrorReport &) {});
    }
    std::shared_ptr<tessaly::NameMap> names() { return accessor.QueryDSNs(QStringLiteral("SQLite")); }
    std::shared_ptr<tessaly::NameMap> pairs(const QString &key, const QString &value)
    {
        return accessor.QueryKeyValueColumns(database, QStringLiteral("t"), key, value);
    }

    std::shared_ptr<Answer> answer;
    std::shared_ptr<veldra::dbInfo> database;
    veldra::TSAccessor accessor;
};

QList<QByteArray> pieces(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)).split('\0');
}

// What the writer keeps of a listed name: text XML can carry, as the reader gets it.
bool listable(const QByteArray &name)
{
    const QString text = QString::fromUtf8(name);
    if (text.toUtf8() != name)
        return false; // not UTF-8
    for (const QChar c : text) {
        if ((c.unicode() < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c.unicode() == 0xFFFE
            || c.unicode() == 0xFFFF)
            return false;
    }
    return true;
}

void roundTripNames(const QList<QByteArray> &names)
{
    Reader reader;
    QBuffer out(&reader.answer->bytes);
    out.open(QIODevice::WriteOnly);
    dataservice::ResponseWriter writer(&out);
    writer.startResponse();
    tessaly::NameMap expected;
    for (const QByteArray &name : names) {
        writer.item(name, QByteArrayLiteral("table"));
        if (!name.isEmpty() && listable(name))
            expected.set(QString::fromUtf8(name), QVariant());
    }
    writer.endResponse();
    const auto read = reader.names();
    FUZZ_CHECK(read, "the names written were not read");
    FUZZ_CHECK(read->count() == expected.count(), "a different number of names came back");
    for (int i = 0; i < expected.count(); ++i)
        FUZZ_CHECK(read->key(i) == expected.key(i), "a name came back changed");
}

void roundTripPairs(const QList<QByteArray> &cells, bool oneColumn)
{
    Reader reader;
    QBuffer out(&reader.answer->bytes);
    out.open(QIODevice::WriteOnly);
    dataservice::ResponseWriter writer(&out);
    const qsizetype columns = oneColumn ? 1 : 2;
    writer.startResponse();
    writer.startTable(oneColumn ? QList<QByteArray>{ "k" } : QList<QByteArray>{ "k", "v" });
    tessaly::NameMap expected;
    qint64 rows = 0;
    for (qsizetype row = 0; row + columns <= cells.size(); row += columns, ++rows) {
        writer.startRecord();
        QString texts[2];
        for (qsizetype column = 0; column < columns; ++column) {
            const QByteArray &cell = cells.at(row + column);
            if (cell == "\x01") {
                writer.nullValue();
            } else {
                writer.value(cell.constData(), cell.size());
                texts[column] = QString::fromUtf8(cell);
            }
        }
        writer.endRecord();
        // The accessor's rule: a row without a key gives nothing, one without a display shows its key.
        const QString &key = texts[0];
        const QString &display = oneColumn ? QString() : texts[1];
        if (!key.isEmpty())
            expected.setText(key, display.isEmpty() ? key : display);
    }
    writer.endTable(rows, false, 100000);
    writer.endResponse();
    const auto read = oneColumn ? reader.pairs(keyColumn, keyColumn) : reader.pairs(keyColumn, valueColumn);
    FUZZ_CHECK(read, "the pairs written were not read");
    FUZZ_CHECK(read->count() == expected.count(), "a different number of pairs came back");
    for (int i = 0; i < expected.count(); ++i) {
        FUZZ_CHECK(read->key(i) == expected.key(i), "a key came back changed");
        FUZZ_CHECK(read->item(i).toString() == expected.item(i).toString(), "a display text came back changed");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    switch (data[0] % 4) {
    case 0: {
        Reader reader;
        reader.answer->bytes = QByteArray(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
        reader.names();
        reader.pairs(keyColumn, valueColumn);
        reader.pairs(keyColumn, keyColumn);
        break;
    }
    case 1:
        roundTripNames(pieces(data + 1, size - 1));
        break;
    default:
        roundTripPairs(pieces(data + 1, size - 1), data[0] % 4 == 3);
        break;
    }
    return 0;
}
