#include "tessaly/modulename.h"

#include <QFileInfo>

#include <dlfcn.h>

namespace tessaly {

QString moduleNameOf(const void *address)
{
    Dl_info info {};
    if (dladdr(address, &info) == 0 || !info.dli_fname)
        return {};
    QString name = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).fileName();
    if (name.startsWith(QLatin1String("lib")) && name.contains(QLatin1String(".so")))
        name.remove(0, 3);
    const qsizetype dot = name.indexOf(u'.');
    return dot < 0 ? name : name.left(dot);
}

} // namespace tessaly
