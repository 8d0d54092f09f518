#pragma once

#include "tessaly/tagstream.h"

#include <QList>
#include <QXmlStreamAttributes>
#include <QXmlStreamReader>

class QIODevice;

namespace tessaly {

// Reads the tagged stream from XML. An element named by ReadTag is only entered when it is read
// from (ReadValue, or ReadTag for its children); a ReadEndTag that follows a name nobody read
// closes the element around it, so a reader that stops at an unknown name leaves the stream in
// step. Malformed XML and values of the wrong type raise an error naming line and column; so
// does, when the reader is made from bytes, an element with more attributes than any the
// writer makes (at most 16).
class XmlTagReader final : public TagStream
{
public:
    XmlTagReader(QIODevice *device, QString sourceName);
    XmlTagReader(const QByteArray &data, QString sourceName);

    // Reads to the end of the document, so that truncation or garbage after the last element
    // read is reported, not ignored.
    void finish();

    // What the reader made from bytes checks before it parses, for code that parses the same
    // bytes itself: raises the error for an element with too many attributes, or a document
    // type that declares markup.
    static void checkMarkup(const QByteArray &data, const QString &sourceName);

    QString ReadTag() override;
    void ReadValue(QString &value) override;
    void ReadValue(qint32 &value) override;
    void ReadValue(bool &value) override;
    void ReadValue(ObjectRef &value) override;
    void ReadEndTag() override;
    QString ReadTagName() override;
    QString ReadAttribute(const QString &name) override;
    QString CurrentTag() const override;
    QString position() const override;

    void WriteTag(const QString &name) override;
    void WriteValue(const QString &value) override;
    void WriteValue(qint32 value) override;
    void WriteValue(bool value) override;
    void WriteValue(const ObjectRef &value) override;
    void WriteEndTag() override;
    void WriteAttribute(const QString &name, const QString &value) override;

private:
    struct Element
    {
        QString name;
        QXmlStreamAttributes attributes;
        qint64 line = 0;
        qint64 column = 0;
    };

    [[noreturn]] void fail(const QString &message) const;
    [[noreturn]] void failAt(const Element &element, const QString &message) const;
    [[noreturn]] void refuseWrite() const;
    void readNextToken();
    void enterPending();
    QString readText();
    void skipToEndOfCurrent();

    QXmlStreamReader m_xml;
    QString m_source;
    QList<Element> m_open;     // entered elements, innermost last
    Element m_pending;         // named by ReadTag, not entered
    bool m_hasPending = false;
    bool m_replayPending = false; // the next ReadTag names the pending element again
    bool m_atEndOfCurrent = false; // the innermost entered element's end tag has been read
};

} // namespace tessaly
