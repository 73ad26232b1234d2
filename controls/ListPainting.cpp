#include "controls/ListPainting.h"

#include "controls/ReadableColour.h"

#include <QPainter>
#include <QPainterPath>

namespace list_painting {

namespace {

QColor mixed(const QColor &one, const QColor &other, double part)
{
    const auto mix = [part](int a, int b) { return static_cast<int>(a + (b - a) * part); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue())};
}

bool isDark(const QColor &ground)
{
    return ContrastOf(Qt::white, ground) > ContrastOf(Qt::black, ground);
}

QColor edgeOf(const QPalette &palette)
{
    return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.55);
}

} // namespace

void CheckBox(QPainter &painter, const QRect &box, bool ticked, const QPalette &palette, bool enabled)
{
    const QPalette::ColorGroup group = enabled ? QPalette::Active : QPalette::Disabled;
    painter.save();
    painter.setPen(edgeOf(palette));
    painter.setBrush(palette.color(QPalette::Active, QPalette::Base));
    painter.drawRect(box.adjusted(0, 0, -1, -1));
    if (ticked) {
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF inner = QRectF(box).adjusted(3, 3, -3, -3);
        QPainterPath tick(QPointF(inner.left(), inner.center().y()));
        tick.lineTo(inner.left() + inner.width() * 0.38, inner.bottom() - 1);
        tick.lineTo(inner.right(), inner.top() + 1);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette.color(group, QPalette::Text), std::max(1.6, box.width() / 8.0), Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(tick);
    }
    painter.restore();
}

void DropDown(QPainter &painter, const QRect &cell, bool pressed, const QPalette &palette)
{
    painter.save();
    painter.setPen(edgeOf(palette));
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawRect(cell.adjusted(0, 0, -1, -1));
    QRect button(cell.right() + 1 - cell.height(), cell.top(), cell.height(), cell.height());
    painter.setBrush(palette.color(pressed ? QPalette::Mid : QPalette::Button));
    painter.drawRect(button.adjusted(0, 0, -1, -1));
    // Three lines of 5, 3 and 1 pixels.
    if (pressed)
        button.translate(1, 1);
    const QPoint middle = button.center();
    painter.setPen(palette.color(QPalette::ButtonText));
    for (int line = 0; line < 3; ++line)
        painter.drawLine(middle.x() - 2 + line, middle.y() - 1 + line, middle.x() + 2 - line, middle.y() - 1 + line);
    painter.restore();
}

QColor FirstColumnGround(const QPalette &palette)
{
    constexpr double kFarFromDarkGround = 0.09;
    const QColor base = palette.color(QPalette::Base);
    return isDark(base) ? mixed(base, Qt::white, kFarFromDarkGround) : QColor(0xF0, 0xF0, 0xF0);
}

} // namespace list_painting
