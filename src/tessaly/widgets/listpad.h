#pragma once

#include "tessaly/widgets/childpadwidget.h"

class QListWidget;

namespace tessaly {

// "lxList.ListPad": a list of items, each ticked or not. Properties: "AddItems" (a
// comma-separated text of items to append); "CurrentItem" (the ticked items, comma-separated,
// in list order); "Count" (read only).
class ListPad final : public ChildPadWidget
{
    Q_OBJECT

public:
    explicit ListPad(QWidget *parent = nullptr);

    // A list scrolls: it keeps the height it is given instead of growing to its contents.
    void setSize(int width, int height) override;

protected:
    bool applyProperty(const QString &name, const QVariant &value) override;
    QVariant readProperty(const QString &name) const override;

private:
    QString currentItems() const;
    void setCurrentItems(const QString &items);

    QListWidget *m_list;
};

} // namespace tessaly
