#pragma once

#include "tessaly/widgets/childpadwidget.h"

class QLabel;

namespace tessaly {

// "CommonLX.StaticTextPad": a caption. Property: "String".
class StaticTextPad final : public ChildPadWidget
{
    Q_OBJECT

public:
    explicit StaticTextPad(QWidget *parent = nullptr);

protected:
    bool applyProperty(const QString &name, const QVariant &value) override;
    QVariant readProperty(const QString &name) const override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitHeightToText();

    QLabel *m_label;
};

} // namespace tessaly
