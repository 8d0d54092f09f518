#pragma once

#include "tessaly/tessaly_export.h"

#include <QByteArray>
#include <QString>

namespace tessaly {

class zetPrimitiveModel;
class zetPrimitivePad;

// A component saved on its own: <Component> holding the model's part (<Model> with the
// model's "ClassPart") and, when present, the pad's. Errors name file, line and column;
// saving writes aside and renames, so a failed save leaves the previous file intact.
class TESSALY_EXPORT ComponentDocument
{
public:
    // Raises tessaly::Error (BadFileFormat) naming sourceName, line and column for markup no
    // document of ours holds (an element with thousands of attributes), before the parser
    // spends time on it.
    static bool looksLikeComponentDocument(const QByteArray &data, const QString &sourceName);

    // With a pad, its part is read and written too; a document without one leaves it as it is.
    static void load(const QString &fileName, zetPrimitiveModel &model, zetPrimitivePad *pad = nullptr);
    static void load(const QByteArray &data, const QString &sourceName, zetPrimitiveModel &model,
                     zetPrimitivePad *pad = nullptr);
    static QByteArray save(zetPrimitiveModel &model, zetPrimitivePad *pad = nullptr);
    static void save(const QString &fileName, zetPrimitiveModel &model, zetPrimitivePad *pad = nullptr);
};

} // namespace tessaly
