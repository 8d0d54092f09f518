#include "request.h"

#include "errornumber.h"
#include "messagetext.h"

#include <tessaly/error.h>
#include <tessaly/markupscan.h>

#include <QByteArrayView>
#include <QXmlStreamReader>

#include <optional>

namespace dataservice {

namespace {

// A request is a few hundred bytes; its clauses together make one statement of at most 1 MB,
// which XML escaping can make a few times longer.
constexpr qsizetype RequestLimit = 16 * 1024 * 1024;

[[noreturn]] void malformed(const QString &what)
{
    throw tessaly::Error(ErrorNumber::MalformedRequest, QStringLiteral("Malformed request: %1.").arg(what));
}

// "line L, column C" of a byte offset, columns counted in characters as the XML reader counts.
QString position(QByteArrayView xml, qsizetype offset)
{
    qsizetype line = 1;
    qsizetype column = 1;
    for (qsizetype i = 0; i < offset; ++i) {
        if (xml[i] == '\n') {
            ++line;
            column = 1;
        } else if ((static_cast<unsigned char>(xml[i]) & 0xC0) != 0x80) {
            ++column;
        }
    }
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

bool isXmlBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// No element of a request has attributes, and a request has no document type. Both are
// refused in one pass over the bytes before any XML parser sees them: the parser compares
// each attribute of an element with every other one, so a hostile element with a few hundred
// thousand of them would take minutes, and a document type could declare as many.
void checkMarkup(QByteArrayView xml)
{
    tessaly::scanMarkup(xml, [&](tessaly::Markup kind, qsizetype i) -> qsizetype {
        if (kind == tessaly::Markup::Declaration)
            malformed(QStringLiteral("a document type declaration or other markup declaration at %1 is not "
                                     "accepted in a request").arg(position(xml, i)));
        if (kind == tessaly::Markup::EndTag)
            return i + 2;
        qsizetype end = i + 1;
        while (end < xml.size() && !isXmlBlank(xml[end]) && xml[end] != '>' && xml[end] != '/')
            ++end;
        const QString name = QString::fromUtf8(xml.sliced(i + 1, end - i - 1));
        while (end < xml.size() && isXmlBlank(xml[end]))
            ++end;
        if (end < xml.size() && xml[end] != '>' && !xml.sliced(end).startsWith("/>"))
            malformed(QStringLiteral("element <%1> at %2 has attributes; no element of a request has any")
                          .arg(MessageText::excerpt(name), position(xml, i)));
        return end;
    });
}

[[noreturn]] void unknownElement(const QXmlStreamReader &reader, const char *parent)
{
    malformed(QStringLiteral("unknown element <%1> in <%2> (line %3)")
                  .arg(MessageText::excerpt(reader.name().toString()), QLatin1String(parent))
                  .arg(reader.lineNumber()));
}

// The text of the element the reader is at. The protocol puts no element inside one that
// holds text, so one found there is refused before any more is read.
QString elementText(QXmlStreamReader &reader, const char *element)
{
    QString text;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::Characters)
            text += reader.text();
        else if (token == QXmlStreamReader::EndElement)
            break;
        else if (token == QXmlStreamReader::StartElement)
            unknownElement(reader, element);
    }
    return text;
}

void readTarget(QXmlStreamReader &reader, Request &request)
{
    while (reader.readNextStartElement()) {
        const QStringView name = reader.name();
        QString *part = name == u"provider" ? &request.provider
                        : name == u"dsn"    ? &request.dsn
                        : name == u"catalog" ? &request.catalog
                        : name == u"table"  ? &request.table
                                            : nullptr;
        if (!part)
            unknownElement(reader, "target");
        *part = elementText(reader, "target").trimmed();
    }
}

// <content> holds its word ("column" or "record") as its own text; a record request's select
// list is the text of its first <field>.
void readContent(QXmlStreamReader &reader, Request &request)
{
    QString word;
    bool haveField = false;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::Characters) {
            word += reader.text();
        } else if (token == QXmlStreamReader::StartElement) {
            if (reader.name() != u"field" || haveField)
                unknownElement(reader, "content");
            request.fields = elementText(reader, "field");
            haveField = true;
        } else if (token == QXmlStreamReader::EndElement) {
            break;
        }
    }
    word = word.trimmed();
    if (word == u"column") {
        request.kind = Request::Kind::Navigation;
        return;
    }
    if (word != u"record")
        malformed(QStringLiteral("<content> must be \"column\" or \"record\", not \"%1\"")
                      .arg(MessageText::excerpt(word)));
    request.kind = Request::Kind::Record;
    if (request.fields.trimmed().isEmpty())
        malformed(QStringLiteral("a record request needs a non-empty <field> list in <content>"));
}

std::optional<qint64> readRowCount(const QString &text)
{
    if (text.isEmpty())
        return std::nullopt;
    bool ok = false;
    const qint64 count = text.toLongLong(&ok);
    if (ok && count < 0)
        malformed(QStringLiteral("the row count in <rowcount> is %1, and a request asks for zero rows or more "
                                 "(a component's TopN must not be negative)").arg(count));
    if (!ok)
        malformed(QStringLiteral("<rowcount> must be a whole number of zero or more, not \"%1\"")
                      .arg(MessageText::excerpt(text)));
    return count;
}

void readGet(QXmlStreamReader &reader, Request &request)
{
    bool haveContent = false;
    bool haveTarget = false;
    while (reader.readNextStartElement()) {
        const QStringView name = reader.name();
        if (name == u"content") {
            readContent(reader, request);
            haveContent = true;
        } else if (name == u"target") {
            readTarget(reader, request);
            haveTarget = true;
        } else if (name == u"condition") {
            request.condition = elementText(reader, "condition");
        } else if (name == u"group") {
            request.group = elementText(reader, "group");
        } else if (name == u"order") {
            request.order = elementText(reader, "order");
        } else if (name == u"rowcount") {
            request.rowCount = readRowCount(elementText(reader, "rowcount").trimmed());
        } else {
            unknownElement(reader, "get");
        }
    }
    if (!haveContent)
        malformed(QStringLiteral("<get> has no <content>"));
    if (!haveTarget)
        malformed(QStringLiteral("<get> has no <target>"));
}

void checkTarget(const Request &request)
{
    const QString values[] = {request.provider, request.dsn, request.catalog, request.table};
    const char *names[] = {"provider", "dsn", "catalog", "table"};
    for (int i = 1; i < 4; ++i) {
        if (!values[i].isEmpty() && values[i - 1].isEmpty())
            malformed(QStringLiteral("<%1> is given but <%2> is empty")
                          .arg(QLatin1String(names[i]), QLatin1String(names[i - 1])));
    }
    if (request.kind == Request::Kind::Record && request.table.isEmpty())
        malformed(QStringLiteral("a record request needs provider, dsn, catalog and table in <target>"));
}

void readQuery(QXmlStreamReader &reader, Request &request)
{
    if (!reader.readNextStartElement())
        malformed(QStringLiteral("it holds no element"));
    if (reader.name() != u"query")
        malformed(QStringLiteral("the root element is <%1>, expected <query>")
                      .arg(MessageText::excerpt(reader.name().toString())));
    bool haveGet = false;
    while (reader.readNextStartElement()) {
        if (reader.name() != u"get" || haveGet)
            unknownElement(reader, "query");
        readGet(reader, request);
        haveGet = true;
    }
    if (!haveGet)
        malformed(QStringLiteral("<query> has no <get>"));
    checkTarget(request);
}

} // namespace

Request::Level Request::level() const
{
    if (provider.isEmpty())
        return Level::Providers;
    if (dsn.isEmpty())
        return Level::DataSources;
    if (catalog.isEmpty())
        return Level::Catalogs;
    if (table.isEmpty())
        return Level::Tables;
    return Level::Columns;
}

// Read as a stream in one pass, never built into a tree: memory stays near the request's own
// size, every step is linear in it, and no element is nested in another the protocol does not
// put there. A request that goes wrong is refused where it goes wrong; one that reads right is
// read to its end, so that it is refused unless all of it is well-formed.
Request Request::parse(const QByteArray &xml)
{
    if (xml.size() > RequestLimit)
        malformed(QStringLiteral("it is %1 bytes long, and the service reads requests of up to %2 bytes (16 MB)")
                      .arg(xml.size()).arg(RequestLimit));
    checkMarkup(xml);
    QXmlStreamReader reader(xml);
    Request request;
    std::optional<tessaly::Error> refusal;
    try {
        readQuery(reader, request);
        while (!reader.atEnd())
            reader.readNext();
    } catch (const tessaly::Error &error) {
        refusal = error;
    }
    // Broken XML says so, whatever the elements read up to the break looked like.
    if (reader.hasError())
        malformed(QStringLiteral("not well-formed XML at line %1, column %2: %3")
                      .arg(reader.lineNumber())
                      .arg(reader.columnNumber())
                      .arg(reader.errorString()));
    if (refusal)
        throw *refusal;
    return request;
}

} // namespace dataservice
