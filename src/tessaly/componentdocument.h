#pragma once

#include <QByteArray>
#include <QString>

namespace tessaly {

class zetPrimitiveModel;

// A component saved on its own: <Component> holding the model's part (<Model> with the
// model's "ClassPart") and, when present, the pad's. Errors name file, line and column;
// saving writes aside and renames, so a failed save leaves the previous file intact.
class ComponentDocument
{
public:
    static bool looksLikeComponentDocument(const QByteArray &data);

    static void load(const QString &fileName, zetPrimitiveModel &model);
    static void load(const QByteArray &data, const QString &sourceName, zetPrimitiveModel &model);
    static QByteArray save(zetPrimitiveModel &model);
    static void save(const QString &fileName, zetPrimitiveModel &model);
};

} // namespace tessaly
