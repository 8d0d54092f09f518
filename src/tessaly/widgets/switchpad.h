#pragma once

#include "tessaly/widgets/childpadwidget.h"

#include <QHash>

class QToolButton;

namespace tessaly {

// "CommonLX.SwitchPad": an on/off switch. Properties: "SwitchOn"; "OnOutFileName",
// "OnInFileName", "OffOutFileName", "OffInFileName" (images of the two states, kept for hosts
// that have them; without them the switch draws an arrow and a word).
class SwitchPad final : public ChildPadWidget
{
    Q_OBJECT

public:
    explicit SwitchPad(QWidget *parent = nullptr);

protected:
    bool applyProperty(const QString &name, const QVariant &value) override;
    QVariant readProperty(const QString &name) const override;

private:
    void showState();

    QToolButton *m_button;
    QHash<QString, QString> m_images;
};

} // namespace tessaly
