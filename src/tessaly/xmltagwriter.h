#pragma once

#include "tessaly/tagstream.h"

#include <QXmlStreamWriter>

class QIODevice;

namespace tessaly {

// Writes the tagged stream as indented XML 1.0 in UTF-8. Read operations raise an error.
class XmlTagWriter final : public TagStream
{
public:
    explicit XmlTagWriter(QIODevice *device);
    explicit XmlTagWriter(QByteArray *buffer);

    // Closes the document; call once after the last element.
    void finish();

    void WriteTag(const QString &name) override;
    void WriteValue(const QString &value) override;
    void WriteValue(qint32 value) override;
    void WriteValue(bool value) override;
    void WriteValue(const ObjectRef &value) override;
    void WriteEndTag() override;
    void WriteAttribute(const QString &name, const QString &value) override;

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

private:
    void begin();
    [[noreturn]] void refuseRead() const;

    QXmlStreamWriter m_xml;
    int m_depth = 0;
};

} // namespace tessaly
