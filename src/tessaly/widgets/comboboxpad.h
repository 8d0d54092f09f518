#pragma once

#include "tessaly/widgets/childpadwidget.h"

#include <QStringList>

class QComboBox;

namespace tessaly {

// "ListZorbit.ComboBoxPad": a choice from a keyed list. Properties: "List" (a NameMap of key ->
// text); "Mode" (true: show the texts and keep the keys behind them, false: show the keys);
// "SelectIndex" (0-based, -1 for none); "SelectKey" and "SelectValue" (the chosen entry's key
// and text); "LeftMargin", "RightMargin" (pixels).
class ComboBoxPad final : public ChildPadWidget
{
    Q_OBJECT

public:
    explicit ComboBoxPad(QWidget *parent = nullptr);

protected:
    bool applyProperty(const QString &name, const QVariant &value) override;
    QVariant readProperty(const QString &name) const override;

private:
    void setList(const QVariant &value);
    void showEntries();
    void select(int index);

    QComboBox *m_combo;
    QStringList m_keys;
    QStringList m_values;
    bool m_mode = false;
    int m_leftMargin = 0;
    int m_rightMargin = 0;
};

} // namespace tessaly
