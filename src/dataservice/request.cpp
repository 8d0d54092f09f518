#include "request.h"

#include "errornumber.h"
#include "messagetext.h"

#include <tessaly/error.h>

#include <QDomDocument>
#include <QXmlStreamReader>

namespace dataservice {

namespace {

[[noreturn]] void malformed(const QString &what)
{
    throw tessaly::Error(ErrorNumber::MalformedRequest, QStringLiteral("Malformed request: %1.").arg(what));
}

// The text directly inside an element, ignoring child elements ("record" in <content>).
QString ownText(const QDomElement &element)
{
    QString text;
    for (QDomNode node = element.firstChild(); !node.isNull(); node = node.nextSibling()) {
        if (node.isText() || node.isCDATASection())
            text += node.toCharacterData().data();
    }
    return text;
}

void readTarget(const QDomElement &target, Request &request)
{
    for (QDomElement e = target.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        const QString name = e.tagName();
        const QString value = e.text().trimmed();
        if (name == u"provider")
            request.provider = value;
        else if (name == u"dsn")
            request.dsn = value;
        else if (name == u"catalog")
            request.catalog = value;
        else if (name == u"table")
            request.table = value;
        else
            malformed(QStringLiteral("unknown element <%1> in <target> (line %2)")
                          .arg(MessageText::excerpt(name)).arg(e.lineNumber()));
    }
}

void readContent(const QDomElement &content, Request &request)
{
    const QString word = ownText(content).trimmed();
    if (word == u"column") {
        request.kind = Request::Kind::Navigation;
        return;
    }
    if (word != u"record")
        malformed(QStringLiteral("<content> must be \"column\" or \"record\", not \"%1\"")
                      .arg(MessageText::excerpt(word)));
    request.kind = Request::Kind::Record;
    const QDomElement field = content.firstChildElement(QStringLiteral("field"));
    request.fields = field.text();
    if (request.fields.trimmed().isEmpty())
        malformed(QStringLiteral("a record request needs a non-empty <field> list in <content>"));
}

std::optional<qint64> readRowCount(const QDomElement &element)
{
    const QString text = element.text().trimmed();
    if (text.isEmpty())
        return std::nullopt;
    bool ok = false;
    const qint64 count = text.toLongLong(&ok);
    if (!ok || count < 0)
        malformed(QStringLiteral("<rowcount> must be a whole number of zero or more, not \"%1\"")
                      .arg(MessageText::excerpt(text)));
    return count;
}

void readGet(const QDomElement &get, Request &request)
{
    bool haveContent = false;
    bool haveTarget = false;
    for (QDomElement e = get.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        const QString name = e.tagName();
        if (name == u"content") {
            readContent(e, request);
            haveContent = true;
        } else if (name == u"target") {
            readTarget(e, request);
            haveTarget = true;
        } else if (name == u"condition") {
            request.condition = e.text();
        } else if (name == u"group") {
            request.group = e.text();
        } else if (name == u"order") {
            request.order = e.text();
        } else if (name == u"rowcount") {
            request.rowCount = readRowCount(e);
        } else {
            malformed(QStringLiteral("unknown element <%1> in <get> (line %2)")
                          .arg(MessageText::excerpt(name)).arg(e.lineNumber()));
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

// A request is four levels deep. QDom builds and frees its tree recursively, so a hostile
// request nested a few hundred thousand levels would exhaust the stack: refuse it first.
static void checkNesting(const QByteArray &xml)
{
    constexpr int maximumDepth = 32;
    QXmlStreamReader reader(xml);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::EndElement)
            --depth;
        else if (token == QXmlStreamReader::StartElement && ++depth > maximumDepth)
            malformed(QStringLiteral("elements are nested more than %1 levels deep at line %2, column %3")
                              .arg(maximumDepth)
                              .arg(reader.lineNumber())
                              .arg(reader.columnNumber()));
    }
}

Request Request::parse(const QByteArray &xml)
{
    checkNesting(xml);
    QDomDocument document;
    QString message;
    int line = 0;
    int column = 0;
    if (!document.setContent(xml, &message, &line, &column))
        malformed(QStringLiteral("not well-formed XML at line %1, column %2: %3").arg(line).arg(column).arg(message));
    const QDomElement root = document.documentElement();
    if (root.tagName() != u"query")
        malformed(QStringLiteral("the root element is <%1>, expected <query>")
                      .arg(MessageText::excerpt(root.tagName())));
    const QDomElement get = root.firstChildElement(QStringLiteral("get"));
    if (get.isNull())
        malformed(QStringLiteral("<query> has no <get>"));
    Request request;
    readGet(get, request);
    checkTarget(request);
    return request;
}

} // namespace dataservice
