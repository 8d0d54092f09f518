#include "tessaly/widgets/childsignals.h"

#include <QObject>

namespace tessaly {

void detachChildSignals(QObject *receiver)
{
    const QList<QObject *> descendants = receiver->findChildren<QObject *>();
    for (QObject *descendant : descendants)
        QObject::disconnect(descendant, nullptr, receiver, nullptr);
}

} // namespace tessaly
