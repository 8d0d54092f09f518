#include "tessaly/xmltagwriter.h"

#include "tessaly/error.h"
#include "tessaly/xmltext.h"

namespace tessaly {

XmlTagWriter::XmlTagWriter(QIODevice *device) : m_xml(device)
{
    begin();
}

XmlTagWriter::XmlTagWriter(QByteArray *buffer) : m_xml(buffer)
{
    begin();
}

void XmlTagWriter::begin()
{
    m_xml.setAutoFormatting(true);
    m_xml.setAutoFormattingIndent(1);
    m_xml.writeStartDocument();
}

void XmlTagWriter::finish()
{
    if (m_depth != 0)
        throw Error(ErrorNumber::Fail, QStringLiteral("%1 element(s) left open").arg(m_depth));
    m_xml.writeEndDocument();
}

void XmlTagWriter::WriteTag(const QString &name)
{
    m_xml.writeStartElement(name);
    ++m_depth;
}

void XmlTagWriter::WriteValue(const QString &value)
{
    if (xmltext::carriesUnchanged(value, false)) {
        m_xml.writeCharacters(value);
    } else {
        m_xml.writeAttribute(QStringLiteral("escaped"), QStringLiteral("true"));
        m_xml.writeCharacters(xmltext::escape(value, false));
    }
}

void XmlTagWriter::WriteValue(qint32 value)
{
    m_xml.writeCharacters(QString::number(value));
}

void XmlTagWriter::WriteValue(bool value)
{
    m_xml.writeCharacters(value ? QStringLiteral("true") : QStringLiteral("false"));
}

void XmlTagWriter::WriteValue(const ObjectRef &value)
{
    if (value)
        value->zetVariable_Write(*this);
}

void XmlTagWriter::WriteEndTag()
{
    if (m_depth == 0)
        throw Error(ErrorNumber::Fail, QStringLiteral("WriteEndTag without an open element"));
    m_xml.writeEndElement();
    --m_depth;
}

void XmlTagWriter::WriteAttribute(const QString &name, const QString &value)
{
    if (xmltext::carriesUnchanged(value, true)) {
        m_xml.writeAttribute(name, value);
    } else {
        m_xml.writeAttribute(name, xmltext::escape(value, true));
        m_xml.writeAttribute(name + QStringLiteral("Escaped"), QStringLiteral("true"));
    }
}

void XmlTagWriter::refuseRead() const
{
    throw Error(ErrorNumber::Fail, QStringLiteral("the stream is open for writing, not reading"));
}

QString XmlTagWriter::ReadTag() { refuseRead(); }
void XmlTagWriter::ReadValue(QString &) { refuseRead(); }
void XmlTagWriter::ReadValue(qint32 &) { refuseRead(); }
void XmlTagWriter::ReadValue(bool &) { refuseRead(); }
void XmlTagWriter::ReadValue(ObjectRef &) { refuseRead(); }
void XmlTagWriter::ReadEndTag() { refuseRead(); }
QString XmlTagWriter::ReadTagName() { refuseRead(); }
QString XmlTagWriter::ReadAttribute(const QString &) { refuseRead(); }

QString XmlTagWriter::CurrentTag() const
{
    return {};
}

QString XmlTagWriter::position() const
{
    return QStringLiteral("depth %1").arg(m_depth);
}

} // namespace tessaly
