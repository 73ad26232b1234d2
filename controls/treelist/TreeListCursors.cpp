// The five cursors: black with a white rim, to be seen on every ground.
#include "controls/treelist/TreeListGlyphs.h"

#include <QPainter>
#include <QPainterPath>

namespace tree_list_glyphs {

namespace {

constexpr int kSide = 32;

void arrow(QPainter &painter)
{
    painter.setPen(QPen(Qt::black, 1.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::white);
    painter.drawPolygon(
        QPolygonF{{1.5, 1.5}, {1.5, 17.0}, {5.2, 13.6}, {7.8, 19.4}, {10.4, 18.2}, {7.9, 12.6}, {12.8, 12.6}});
}

/// Once broad in white, then in black: a rim around the shape.
void rimmed(QPainter &painter, const QPainterPath &shape, double width, const QBrush &fill = Qt::NoBrush)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, width + 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(shape);
    painter.setBrush(fill);
    painter.setPen(QPen(Qt::black, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(shape);
}

void emptyBox(QPainter &painter)
{
    QPainterPath box;
    box.addRect(QRectF(15.5, 14.5, 12, 12));
    rimmed(painter, box, 1.0, Qt::white);
}

void boxWithPlus(QPainter &painter)
{
    emptyBox(painter);
    QPainterPath plus(QPointF(21.5, 17.5));
    plus.lineTo(21.5, 23.5);
    plus.moveTo(18.5, 20.5);
    plus.lineTo(24.5, 20.5);
    painter.drawPath(plus);
}

void boxWithTick(QPainter &painter)
{
    emptyBox(painter);
    QPainterPath tick(QPointF(18.2, 20.6));
    tick.lineTo(20.6, 23.2);
    tick.lineTo(25.0, 17.6);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
}

void padlock(QPainter &painter)
{
    QPainterPath bow(QPointF(18, 20));
    bow.lineTo(18, 17.5);
    bow.arcTo(QRectF(18, 14, 7, 7), 180, -180);
    bow.lineTo(25, 20);
    rimmed(painter, bow, 1.6);
    QPainterPath body;
    body.addRoundedRect(QRectF(16, 20, 11, 8), 1.2, 1.2);
    rimmed(painter, body, 1.0, Qt::black);
    painter.setPen(QPen(Qt::white, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(21.5, 23), QPointF(21.5, 25));
}

void rows(QPainter &painter)
{
    QPainterPath sheet;
    sheet.addRect(QRectF(14.5, 15.5, 14, 11));
    rimmed(painter, sheet, 1.0, Qt::white);
    for (const double y : {18.5, 21.0, 23.5})
        painter.drawLine(QPointF(17, y), QPointF(26, y));
}

void refused(QPainter &painter)
{
    QPainterPath ring;
    ring.addEllipse(QPointF(16, 16), 9, 9);
    ring.moveTo(9.6, 9.6);
    ring.lineTo(22.4, 22.4);
    rimmed(painter, ring, 2.4);
}

} // namespace

QCursor Cursor(int number, qreal ratio)
{
    using Badge = void (*)(QPainter &);
    Badge badge = nullptr;
    switch (number) {
    case kCursorButton:
        badge = boxWithPlus;
        break;
    case kCursorCheck:
        badge = boxWithTick;
        break;
    case kCursorLock:
        badge = padlock;
        break;
    case kCursorDrag:
        badge = rows;
        break;
    case kCursorRefused:
        badge = refused;
        break;
    default:
        return {Qt::ArrowCursor};
    }
    QPixmap picture(QSize(kSide, kSide) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool pointsAt = number != kCursorRefused; // the ring stands around the place instead
    if (pointsAt)
        arrow(painter);
    badge(painter);
    painter.end();
    return pointsAt ? QCursor(picture, 1, 1) : QCursor(picture, kSide / 2, kSide / 2);
}

} // namespace tree_list_glyphs
