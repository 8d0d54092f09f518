#include "veldra/records/definitionfile.h"

#include "tessaly/documentfile.h"
#include "tessaly/error.h"
#include "tessaly/xmltagreader.h"
#include "tessaly/xmltagwriter.h"

#include <QSaveFile>

namespace veldra {

std::shared_ptr<SQLInfo> readDefinition(const QByteArray &data, const QString &sourceName)
{
    tessaly::XmlTagReader stream(data, sourceName);
    const QString root = stream.ReadTagName();
    if (root != u"SQLInfo") {
        const QString found = root.isEmpty() ? QStringLiteral("no element") : u'<' + root + u'>';
        throw tessaly::Error(tessaly::ErrorNumber::BadFileFormat,
                             QStringLiteral("%1: not a query definition: expected <SQLInfo>, found %2")
                                     .arg(stream.position(), found));
    }
    auto query = std::make_shared<SQLInfo>();
    query->zetVariable_Read(stream);
    stream.finish();
    return query;
}

std::shared_ptr<SQLInfo> readDefinitionFile(const QString &fileName)
{
    return readDefinition(tessaly::DocumentFile::read(fileName), fileName);
}

QByteArray writeDefinition(SQLInfo &query)
{
    QByteArray data;
    tessaly::XmlTagWriter stream(&data);
    query.zetVariable_Write(stream);
    stream.finish();
    return data;
}

void writeDefinitionFile(const QString &fileName, SQLInfo &query)
{
    tessaly::DocumentFile::checkReplaceable(fileName);
    const QByteArray data = writeDefinition(query);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess,
                             QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}

} // namespace veldra
