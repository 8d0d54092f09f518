#pragma once

#include "tessaly/tessaly_export.h"
#include "tessaly/zetchildpad.h"

#include <QVariant>

#include <memory>

namespace tessaly {

class QueryContainer;
class zetPrimitiveModel;

// What the framework offers a pad: its model's slots, its parent, its own slot declarations,
// and the child pads of sibling libraries. The defaults are those of a site that holds no
// component (a container that only gives its children a place and, perhaps, a data service).
class TESSALY_EXPORT zetPadSite
{
public:
    virtual ~zetPadSite();

    // False when the model is missing or does not answer the slot.
    virtual bool readModelSlot(const QString &name, QVariant *value);
    virtual zetPadSite *parentPad() { return nullptr; }
    virtual void declarePadSlot(const QString &name, const QString &description);
    virtual void reportSlotChanged(const QString &name);
    virtual void reportChangeCode(int code);
    // Asks to be told of changes of a model slot; *accepted says whether the site took it.
    virtual void watchModelSlot(const QString &name, bool *accepted);

    // nullptr when no library provides the ProgID. The site owns the child.
    virtual zetChildPad *createChildPad(const QString &progId);
    virtual void removeChildPads();
    // The children that follow the model's slot take its current value again. Children that
    // follow a pad slot change only when the pad reports it.
    virtual void refreshChildPads(const QString &modelSlot);

    // The component as the framework shows it to others: the model's slots and the pad's.
    virtual std::shared_ptr<zetPrimitiveModel> componentModel();
    // Non-null when this site's pad holds queries.
    virtual QueryContainer *queryContainer() { return nullptr; }
};

} // namespace tessaly
