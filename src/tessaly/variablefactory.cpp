#include "tessaly/variablefactory.h"

#include <QHash>

namespace tessaly {

namespace {
QHash<QString, VariableFactory::Creator> &creators()
{
    static QHash<QString, VariableFactory::Creator> map;
    return map;
}
} // namespace

bool VariableFactory::add(const QString &elementName, Creator creator)
{
    creators().insert(elementName, std::move(creator));
    return true;
}

ObjectRef VariableFactory::create(const QString &elementName)
{
    const auto it = creators().constFind(elementName);
    return it == creators().cend() ? nullptr : (*it)();
}

} // namespace tessaly
