// A flat combo box with a coloured edit part.
#pragma once

#include "controls/rules/EditBox.h"

#include <QComboBox>

/// Black on white unless told otherwise. The colours are those of an editable box's edit part alone, while it is
/// enabled; list and button stay the desktop's.
class CFlatComboBox : public QComboBox {
    Q_OBJECT

public:
    /// In blue, green, red byte order.
    using ColorRef = AMSEdit::ColorRef;

    explicit CFlatComboBox(QWidget *parent = nullptr);

    void SetBackgroundColor(ColorRef colour);
    void SetTextColor(ColorRef colour);
    ColorRef GetBackgroundColor() const { return m_crBackground; }
    ColorRef GetTextColor() const { return m_crText; }

protected:
    void childEvent(QChildEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void ColourEditPart();

    ColorRef m_crBackground = 0xFFFFFF;
    ColorRef m_crText = 0;
};
