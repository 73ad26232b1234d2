#include "host/editor/SwitchButton.h"

#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace velmor {

SwitchButton::SwitchButton(QAction &action, QWidget *parent) : QToolButton(parent)
{
    setDefaultAction(&action);
    setAutoRaise(true);
}

void SwitchButton::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    const QPalette colors = palette();
    const bool isOn = isChecked();
    if (isOn || underMouse() || isDown())
        painter.fillRect(rect(), colors.color(isOn ? QPalette::Highlight : QPalette::Button));
    painter.setPen(colors.color(isOn ? QPalette::HighlightedText : QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextHideMnemonic, text());
    if (!hasFocus())
        return;
    QStyleOptionFocusRect frame;
    frame.initFrom(this);
    frame.rect = rect().adjusted(1, 1, -1, -1);
    frame.backgroundColor = colors.color(isOn ? QPalette::Highlight : QPalette::Window);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, frame);
}

} // namespace velmor
