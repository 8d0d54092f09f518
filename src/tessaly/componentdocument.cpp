#include "tessaly/componentdocument.h"

#include "tessaly/documentfile.h"
#include "tessaly/error.h"
#include "tessaly/xmltagreader.h"
#include "tessaly/xmltagwriter.h"
#include "tessaly/zetprimitivemodel.h"
#include "tessaly/zetprimitivepad.h"

#include <QFile>
#include <QSaveFile>
#include <QXmlStreamReader>

namespace tessaly {

namespace {
const QString componentElement = QStringLiteral("Component");
const QString modelElement = QStringLiteral("Model");
const QString padElement = QStringLiteral("Pad");
} // namespace

bool ComponentDocument::looksLikeComponentDocument(const QByteArray &data, const QString &sourceName)
{
    XmlTagReader::checkMarkup(data, sourceName);
    QXmlStreamReader xml(data);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            return xml.name() == componentElement;
    }
    return false;
}

void ComponentDocument::load(const QByteArray &data, const QString &sourceName, zetPrimitiveModel &model,
                             zetPrimitivePad *pad)
{
    XmlTagReader stream(data, sourceName);
    const QString root = stream.ReadTag();
    if (root != componentElement) {
        const QString found = root.isEmpty() ? QStringLiteral("no element") : u'<' + root + u'>';
        throw Error(ErrorNumber::BadFileFormat,
                    QStringLiteral("%1: not a component document: expected <Component>, found %2")
                            .arg(stream.position(), found));
    }
    for (QString part = stream.ReadTag(); !part.isEmpty(); part = stream.ReadTag()) {
        if (part == modelElement) {
            stream.ReadTag(); // names the model's class part, which the model reads itself
            if (!model.zetPrimitiveModel_onLoad(stream))
                throw Error(ErrorNumber::Fail, QStringLiteral("%1: the model could not be loaded").arg(stream.position()));
        } else if (part == padElement && pad) {
            stream.ReadTag();
            if (!pad->zetPrimitivePad_onLoad(stream))
                throw Error(ErrorNumber::Fail, QStringLiteral("%1: the pad could not be loaded").arg(stream.position()));
        }
        stream.ReadEndTag();
    }
    stream.ReadEndTag();
    stream.finish();
}

void ComponentDocument::load(const QString &fileName, zetPrimitiveModel &model, zetPrimitivePad *pad)
{
    load(DocumentFile::read(fileName), fileName, model, pad);
}

QByteArray ComponentDocument::save(zetPrimitiveModel &model, zetPrimitivePad *pad)
{
    QByteArray data;
    XmlTagWriter stream(&data);
    stream.WriteTag(componentElement);
    stream.WriteTag(modelElement);
    if (!model.zetPrimitiveModel_onSave(stream))
        throw Error(ErrorNumber::Fail, QStringLiteral("the model could not be saved"));
    stream.WriteEndTag();
    if (pad) {
        stream.WriteTag(padElement);
        if (!pad->zetPrimitivePad_onSave(stream))
            throw Error(ErrorNumber::Fail, QStringLiteral("the pad could not be saved"));
        stream.WriteEndTag();
    }
    stream.WriteEndTag();
    stream.finish();
    return data;
}

void ComponentDocument::save(const QString &fileName, zetPrimitiveModel &model, zetPrimitivePad *pad)
{
    DocumentFile::checkReplaceable(fileName);
    const QByteArray data = save(model, pad);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw Error(ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}

} // namespace tessaly
