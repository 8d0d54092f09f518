#pragma once

#include <QString>

namespace tessaly {
class zetPrimitiveModel;
class zetPrimitivePad;
} // namespace tessaly

namespace host {

class HostSettings;

// Why a component document cannot be saved as fileName, as far as can be told without writing:
// a folder that is missing, is no folder or cannot be written (saving writes aside and renames,
// so the folder must take a new file), or a name that is a folder, a device or a file that
// cannot be written. Empty when nothing stands in the way.
QString whyUnsavable(const QString &fileName);

// Where a component saved in place of fileName goes when fileName cannot take it:
// NAME.recovered.component.xml (or NAME.recovered-2.component.xml, ... when taken) in folder.
QString recoveryFileName(const QString &fileName, const QString &folder);

struct SaveOutcome
{
    QString savedTo; // the file written
    QString failure; // why fileName itself could not be written; empty when it was
};

// Saves the component as fileName; when that fails, keeps it in a recovery file beside
// fileName, else in the working folder, the home folder or the temporary folder, whichever
// first takes it. Raises tessaly::Error only when none could, so nothing built is lost quietly.
// The document keeps settings, when given, as its <Host> part.
SaveOutcome saveKeepingWork(const QString &fileName, tessaly::zetPrimitiveModel &model,
                            tessaly::zetPrimitivePad *pad = nullptr, const HostSettings *settings = nullptr);

} // namespace host
