#pragma once

#include "tessaly/zetchildpad.h"
#include "veldra/veldra_export.h"

#include <QList>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <utility>

namespace tessaly {
class NameMap;
}

namespace veldra {

class SQLInfo;

// What the pad's run-time face is made of, decided from the query definition alone: the rows
// of child pads, each child's ProgIDs, size, settings and the slot it follows. The pad carries
// it out through its site; nothing here needs a window.
class VELDRA_EXPORT PadLayout
{
public:
    using Setting = std::pair<QString, QVariant>;

    struct Child
    {
        QString name;        // its object name, for tests and accessibility
        QString accessibleName; // an input's: what assistive technology says for it
        QStringList progIds; // tried in order until one creates a child
        int width = 0;
        int height = 0;
        QList<Setting> settings;      // before the connection
        QString property;             // the property that follows the slot, if any
        tessaly::SlotOwner owner = tessaly::SlotOwner::Model;
        QString slot;
        QList<Setting> afterConnecting; // these reach the slot through the connection
    };

    // A child that cannot be created ends its row; rows already built stay.
    using Row = QList<Child>;

    static constexpr int width = 160;
    static constexpr int labelHeight = 16;
    static constexpr int inputHeight = 20;
    static constexpr int listHeight = 102;

    // The selection list first, then row count, ordering column, direction and one row per
    // parameter (in the definition's order), each only when the definition asks for it.
    static QList<Row> rows(const SQLInfo &definition);

    // The display name of each selection, in order: its alias, or the selection text.
    static QStringList displayNames(const SQLInfo &definition);
    // The items of the selection list: the display names, comma-separated.
    static QString selectionItems(const SQLInfo &definition) { return displayNames(definition).join(u','); }
    // The ordering choices, in selection order: display name -> the text ORDER BY takes.
    static std::shared_ptr<tessaly::NameMap> orderChoices(const SQLInfo &definition);
};

} // namespace veldra
