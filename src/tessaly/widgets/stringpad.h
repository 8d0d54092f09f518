#pragma once

#include "tessaly/widgets/childpadwidget.h"

class QLineEdit;

namespace tessaly {

// "StringZorbit.StringPad": a line of text. Properties: "String"; "Format" ("L": a 32-bit
// integer); "KeyEntry" (true, the default: every keystroke counts as a change; false: only a
// finished entry); "BorderStyle", "ForeColor", "BackColor" (colours as 0xBBGGRR).
class StringPad final : public ChildPadWidget
{
    Q_OBJECT

public:
    explicit StringPad(QWidget *parent = nullptr);

protected:
    bool applyProperty(const QString &name, const QVariant &value) override;
    QVariant readProperty(const QString &name) const override;

private:
    void applyColours();

    QLineEdit *m_edit;
    QString m_format;
    bool m_keyEntry = true;
    qint32 m_borderStyle = 0;
    qint32 m_foreColor = 0;
    qint32 m_backColor = 0xFFFFFF;
};

} // namespace tessaly
