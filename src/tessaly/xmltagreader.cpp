#include "tessaly/xmltagreader.h"

#include "tessaly/markupscan.h"

#include "tessaly/error.h"
#include "tessaly/variablefactory.h"
#include "tessaly/xmltext.h"

namespace tessaly {

namespace {
// Records and maps read themselves recursively; a hostile file must not nest them until the
// stack runs out. Real definitions nest about a dozen levels.
constexpr qsizetype maximumDepth = 512;
// The writer puts at most three attributes on an element. The XML parser compares each
// attribute of an element with every other one, so the count is bounded before it parses.
constexpr int maximumAttributes = 16;
const QString escapedAttribute = QStringLiteral("escaped");
const QString trueText = QStringLiteral("true");
} // namespace

XmlTagReader::XmlTagReader(QIODevice *device, QString sourceName)
    : m_xml(device), m_source(std::move(sourceName))
{
}

XmlTagReader::XmlTagReader(const QByteArray &data, QString sourceName)
    : m_xml(data), m_source(std::move(sourceName))
{
    checkMarkup(data, m_source);
}

// One pass over the bytes: every start tag's attributes counted (outside their quoted values),
// and a document type's internal subset, which could declare attributes, refused.
void XmlTagReader::checkMarkup(const QByteArray &data, const QString &sourceName)
{
    const auto failAtOffset = [&](qsizetype offset, const QString &message) {
        const QByteArray before = data.left(offset);
        const qsizetype lineStart = before.lastIndexOf('\n') + 1;
        throw Error(ErrorNumber::BadFileFormat, QStringLiteral("%1:%2:%3: %4")
                                                        .arg(sourceName)
                                                        .arg(before.count('\n') + 1)
                                                        .arg(QString::fromUtf8(before.mid(lineStart)).size() + 1)
                                                        .arg(message));
    };
    scanMarkup(data, [&](Markup kind, qsizetype i) -> qsizetype {
        if (kind == Markup::EndTag)
            return i + 2;
        const qsizetype end = data.indexOf('>', i);
        if (kind == Markup::Declaration) {
            const qsizetype after = end < 0 ? data.size() : end + 1;
            if (data.mid(i, after - i).contains('['))
                failAtOffset(i, QStringLiteral("a document type that declares its own markup is not accepted"));
            return after;
        }
        int count = 0;
        char quote = 0;
        qsizetype j = i + 1;
        for (; j < data.size() && (quote || data.at(j) != '>'); ++j) {
            if (quote) {
                quote = data.at(j) == quote ? 0 : quote;
            } else if (data.at(j) == '"' || data.at(j) == '\'') {
                quote = data.at(j);
            } else if (data.at(j) == '=' && ++count > maximumAttributes) {
                failAtOffset(i, QStringLiteral("an element has more than %1 attributes").arg(maximumAttributes));
            }
        }
        return j;
    });
}

void XmlTagReader::fail(const QString &message) const
{
    throw Error(ErrorNumber::BadFileFormat, QStringLiteral("%1:%2:%3: %4")
                                                    .arg(m_source)
                                                    .arg(m_xml.lineNumber())
                                                    .arg(m_xml.columnNumber())
                                                    .arg(message));
}

void XmlTagReader::failAt(const Element &element, const QString &message) const
{
    throw Error(ErrorNumber::BadFileFormat,
                QStringLiteral("%1:%2:%3: %4").arg(m_source).arg(element.line).arg(element.column).arg(message));
}

void XmlTagReader::readNextToken()
{
    m_xml.readNext();
    if (m_xml.hasError())
        fail(m_xml.errorString());
}

void XmlTagReader::enterPending()
{
    if (m_open.size() >= maximumDepth)
        failAt(m_pending, QStringLiteral("elements are nested more than %1 levels deep").arg(maximumDepth));
    m_open.append(std::move(m_pending));
    m_hasPending = false;
    m_atEndOfCurrent = false;
}

QString XmlTagReader::ReadTag()
{
    if (m_replayPending && m_hasPending) {
        m_replayPending = false;
        return m_pending.name;
    }
    m_replayPending = false;
    if (m_hasPending)
        enterPending();
    if (m_atEndOfCurrent)
        return {};
    for (;;) {
        readNextToken();
        switch (m_xml.tokenType()) {
        case QXmlStreamReader::StartElement:
            m_pending = { m_xml.name().toString(), m_xml.attributes(), m_xml.lineNumber(),
                          m_xml.columnNumber() };
            m_hasPending = true;
            return m_pending.name;
        case QXmlStreamReader::EndElement:
        case QXmlStreamReader::EndDocument:
            m_atEndOfCurrent = true;
            return {};
        default:
            break; // text between elements, comments, processing instructions
        }
    }
}

QString XmlTagReader::ReadTagName()
{
    const QString name = ReadTag();
    m_replayPending = m_hasPending;
    return name;
}

QString XmlTagReader::readText()
{
    if (!m_hasPending)
        fail(QStringLiteral("a value was asked for where no element was named"));
    enterPending();
    const Element &element = m_open.last();
    QString text = m_xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
    if (m_xml.hasError()) {
        if (m_xml.error() == QXmlStreamReader::UnexpectedElementError)
            failAt(element, QStringLiteral("<%1> holds elements where a value was expected").arg(element.name));
        fail(m_xml.errorString());
    }
    m_atEndOfCurrent = true;
    if (element.attributes.value(escapedAttribute) != trueText)
        return text;
    const std::optional<QString> decoded = xmltext::unescape(text);
    if (!decoded)
        failAt(element, QStringLiteral("<%1> is marked escaped but holds a malformed \\u escape").arg(element.name));
    return *decoded;
}

void XmlTagReader::ReadValue(QString &value)
{
    value = readText();
}

void XmlTagReader::ReadValue(qint32 &value)
{
    const QString text = readText();
    bool ok = false;
    const qint32 number = text.trimmed().toInt(&ok);
    if (!ok)
        failAt(m_open.last(), QStringLiteral("<%1> holds \"%2\", which is not a 32-bit integer")
                                  .arg(m_open.last().name, text));
    value = number;
}

void XmlTagReader::ReadValue(bool &value)
{
    const QString text = readText().trimmed();
    if (text.compare(trueText, Qt::CaseInsensitive) == 0)
        value = true;
    else if (text.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
        value = false;
    else
        failAt(m_open.last(), QStringLiteral("<%1> holds \"%2\", which is neither true nor false")
                                  .arg(m_open.last().name, text));
}

void XmlTagReader::ReadValue(ObjectRef &value)
{
    if (!m_hasPending)
        fail(QStringLiteral("an object was asked for where no element was named"));
    enterPending();
    if (!value) {
        const QString className = ReadTag();
        if (className.isEmpty())
            return; // Nothing
        value = VariableFactory::create(className);
        if (!value)
            failAt(m_pending, QStringLiteral("<%1> is not a known kind of object").arg(className));
        m_replayPending = true;
    }
    value->zetVariable_Read(*this);
}

void XmlTagReader::skipToEndOfCurrent()
{
    for (;;) {
        readNextToken();
        switch (m_xml.tokenType()) {
        case QXmlStreamReader::StartElement:
            m_xml.skipCurrentElement();
            if (m_xml.hasError())
                fail(m_xml.errorString());
            break;
        case QXmlStreamReader::EndElement:
            return;
        case QXmlStreamReader::EndDocument:
            fail(QStringLiteral("the document ends inside <%1>").arg(m_open.last().name));
        default:
            break;
        }
    }
}

void XmlTagReader::ReadEndTag()
{
    m_replayPending = false;
    if (m_hasPending) {
        // Named but never read: it is skipped along with the rest of the element around it.
        m_hasPending = false;
        m_xml.skipCurrentElement();
        if (m_xml.hasError())
            fail(m_xml.errorString());
    }
    if (m_open.isEmpty())
        return;
    if (!m_atEndOfCurrent)
        skipToEndOfCurrent();
    m_open.removeLast();
    m_atEndOfCurrent = false;
}

void XmlTagReader::finish()
{
    while (m_hasPending || !m_open.isEmpty())
        ReadEndTag();
    while (!m_xml.atEnd()) {
        readNextToken();
        if (m_xml.tokenType() == QXmlStreamReader::StartElement)
            fail(QStringLiteral("unexpected element <%1>").arg(m_xml.name()));
    }
}

QString XmlTagReader::ReadAttribute(const QString &name)
{
    const QXmlStreamAttributes &attributes =
            m_hasPending ? m_pending.attributes
                         : (m_open.isEmpty() ? QXmlStreamAttributes() : m_open.last().attributes);
    const QString value = attributes.value(name).toString();
    if (attributes.value(name + QStringLiteral("Escaped")) != trueText)
        return value;
    const std::optional<QString> decoded = xmltext::unescape(value);
    if (!decoded)
        fail(QStringLiteral("attribute %1 is marked escaped but holds a malformed \\u escape").arg(name));
    return *decoded;
}

QString XmlTagReader::CurrentTag() const
{
    if (m_hasPending)
        return m_pending.name;
    return m_open.isEmpty() ? QString() : m_open.last().name;
}

QString XmlTagReader::position() const
{
    return QStringLiteral("%1:%2:%3").arg(m_source).arg(m_xml.lineNumber()).arg(m_xml.columnNumber());
}

void XmlTagReader::refuseWrite() const
{
    throw Error(ErrorNumber::Fail, QStringLiteral("the stream is open for reading, not writing"));
}

void XmlTagReader::WriteTag(const QString &) { refuseWrite(); }
void XmlTagReader::WriteValue(const QString &) { refuseWrite(); }
void XmlTagReader::WriteValue(qint32) { refuseWrite(); }
void XmlTagReader::WriteValue(bool) { refuseWrite(); }
void XmlTagReader::WriteValue(const ObjectRef &) { refuseWrite(); }
void XmlTagReader::WriteEndTag() { refuseWrite(); }
void XmlTagReader::WriteAttribute(const QString &, const QString &) { refuseWrite(); }

} // namespace tessaly
