// The default pictures of the items: a sewer network in 16 by 16.
#include "controls/treelist/TreeListGlyphs.h"

#include <QPainter>
#include <QPainterPath>

namespace {

/// Colours of the pictures on a light and on a dark desktop; with a high contrast lines of ink on the ground.
class Inks {
public:
    explicit Inks(const TreeListShades &shades) : m_shades(shades) {}

    QColor Line() const { return Of({0x4a, 0x54, 0x5e}, {0xc2, 0xca, 0xd2}); }
    QColor Paper() const { return Ground({0xff, 0xff, 0xff}, {0x3a, 0x40, 0x46}); }
    QColor Water() const { return Of({0x1f, 0x78, 0xc8}, {0x6c, 0xb8, 0xf4}); }
    QColor Pipe() const { return Ground({0xc9, 0xd3, 0xdc}, {0x6e, 0x78, 0x82}); }
    QColor Green() const { return Of({0x2f, 0x8a, 0x3c}, {0x7c, 0xcf, 0x86}); }
    QColor Meadow() const { return Ground({0xc4, 0xe6, 0xbe}, {0x2f, 0x5e, 0x38}); }
    QColor Roof() const { return Of({0xb8, 0x44, 0x30}, {0xf0, 0x8c, 0x76}); }
    QColor Wall() const { return Ground({0xf6, 0xe8, 0xd4}, {0x5c, 0x52, 0x46}); }
    QColor Works() const { return Of({0x6a, 0x50, 0x94}, {0xb8, 0xa2, 0xe4}); }
    QColor Amber() const { return Of({0xb8, 0x7a, 0x00}, {0xf4, 0xc0, 0x50}); }
    QColor Honey() const { return Ground({0xff, 0xdc, 0x8a}, {0x6a, 0x54, 0x1c}); }
    QColor Red() const { return Of({0xc0, 0x28, 0x28}, {0xf0, 0x70, 0x70}); }
    /// On a picture that is filled with one of the line colours.
    QColor Sign() const { return m_shades.plain || m_shades.dark ? m_shades.ground : QColor(Qt::white); }

private:
    QColor Of(const QColor &light, const QColor &dark) const
    {
        return m_shades.plain ? m_shades.ink : m_shades.dark ? dark : light;
    }
    QColor Ground(const QColor &light, const QColor &dark) const
    {
        return m_shades.plain ? m_shades.ground : m_shades.dark ? dark : light;
    }

    const TreeListShades &m_shades;
};

void use(QPainter &painter, const QColor &line, const QBrush &fill = Qt::NoBrush, double width = 1.0)
{
    painter.setPen(QPen(line, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(fill);
}

void fillOnly(QPainter &painter, const QColor &fill)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
}

void item(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Line(), inks.Paper());
    painter.drawPolygon(QPolygonF{{3.5, 1.5}, {9.5, 1.5}, {12.5, 4.5}, {12.5, 14.5}, {3.5, 14.5}});
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF{{9.5, 1.5}, {9.5, 4.5}, {12.5, 4.5}});
    for (const double y : {7.5, 9.5, 11.5})
        painter.drawLine(QPointF(5.5, y), QPointF(10.5, y));
}

void folder(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Amber(), inks.Honey());
    painter.drawPolygon(QPolygonF{{1.5, 13.5}, {1.5, 3.5}, {6.0, 3.5}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 13.5}});
    painter.drawLine(QPointF(1.5, 7.5), QPointF(14.5, 7.5));
}

void node(QPainter &painter, const Inks &inks, double x, double y, double radius = 2.0)
{
    use(painter, inks.Line(), inks.Paper(), 1.2);
    painter.drawEllipse(QPointF(x, y), radius, radius);
}

void network(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Water(), Qt::NoBrush, 1.6);
    painter.drawPolyline(QPolygonF{{3, 3}, {8, 8}, {13, 3}});
    painter.drawLine(QPointF(8, 8), QPointF(8, 13));
    for (const QPointF at : {QPointF(3, 3), QPointF(13, 3), QPointF(8, 8), QPointF(8, 13.2)})
        node(painter, inks, at.x(), at.y(), 1.9);
}

void branch(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Water(), Qt::NoBrush, 1.8);
    painter.drawPolyline(QPolygonF{{5, 2.5}, {5, 13.5}});
    painter.drawPolyline(QPolygonF{{12, 5}, {12, 7}, {5, 11}});
    node(painter, inks, 5, 3);
    node(painter, inks, 12, 4);
    node(painter, inks, 5, 13);
}

void section(QPainter &painter, const Inks &inks)
{
    QPainterPath pipe;
    pipe.moveTo(4, 4.5);
    pipe.lineTo(12, 4.5);
    pipe.arcTo(QRectF(10, 4.5, 4, 7), 90, -180);
    pipe.lineTo(4, 11.5);
    use(painter, inks.Line(), inks.Pipe());
    painter.drawPath(pipe);
    painter.setBrush(inks.Paper());
    painter.drawEllipse(QRectF(2, 4.5, 4, 7));
    // Water in the lower third of the mouth.
    QPainterPath water;
    water.moveTo(2.3, 9);
    water.lineTo(5.7, 9);
    water.arcTo(QRectF(2, 4.5, 4, 7), -15, -150);
    fillOnly(painter, inks.Water());
    painter.drawPath(water);
}

void manhole(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Line(), inks.Pipe(), 1.2);
    painter.drawEllipse(QRectF(1.8, 1.8, 12.4, 12.4));
    use(painter, inks.Line(), Qt::NoBrush, 0.9);
    painter.drawEllipse(QRectF(3.8, 3.8, 8.4, 8.4));
    fillOnly(painter, inks.Line());
    for (const QPointF hole : {QPointF(8, 8), QPointF(8, 5.6), QPointF(8, 10.4), QPointF(5.6, 8), QPointF(10.4, 8)})
        painter.drawEllipse(hole, 0.8, 0.8);
}

void waves(QPainter &painter, double y, const QColor &color)
{
    QPainterPath wave(QPointF(1.5, y));
    for (int crest = 0; crest < 3; ++crest)
        wave.cubicTo({2.9 + 4.3 * crest, y - 2.2}, {4.4 + 4.3 * crest, y + 2.2}, {5.8 + 4.3 * crest, y});
    use(painter, color, Qt::NoBrush, 1.3);
    painter.drawPath(wave);
}

void outfall(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Line(), inks.Pipe());
    painter.drawRect(QRectF(1.5, 2.5, 5, 5));
    painter.drawRect(QRectF(6.5, 1.5, 2, 7));
    QPainterPath fall(QPointF(8.8, 5.2));
    fall.cubicTo({11.6, 5.2}, {11.8, 7}, {11.8, 10});
    use(painter, inks.Water(), Qt::NoBrush, 2.0);
    painter.drawPath(fall);
    waves(painter, 11.4, inks.Water());
    waves(painter, 14.0, inks.Water());
}

void area(QPainter &painter, const Inks &inks)
{
    const QPolygonF outline{{2.5, 5.5}, {8.5, 2.5}, {13.5, 6.5}, {11.5, 13.5}, {4.5, 12.5}};
    use(painter, inks.Green(), inks.Meadow(), 1.2);
    painter.drawPolygon(outline);
    fillOnly(painter, inks.Green());
    for (const QPointF &corner : outline)
        painter.drawRect(QRectF(corner.x() - 1.2, corner.y() - 1.2, 2.4, 2.4));
}

void house(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Line(), inks.Wall());
    painter.drawRect(QRectF(3.5, 7.5, 9, 6));
    fillOnly(painter, inks.Line());
    painter.drawRect(QRectF(7, 10, 2.2, 3.5));
    use(painter, inks.Roof(), inks.Roof());
    painter.drawPolygon(QPolygonF{{1.5, 8}, {8, 2.2}, {14.5, 8}});
}

void industrial(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Works(), inks.Wall(), 1.1);
    painter.drawPolygon(QPolygonF{
        {1.5, 13.5}, {1.5, 8.5}, {5, 6}, {5, 8.5}, {8.5, 6}, {8.5, 8.5}, {11, 7}, {11.5, 2}, {13.7, 2}, {14.5, 13.5}});
    fillOnly(painter, inks.Works());
    for (const double x : {3.2, 6.2, 9.2})
        painter.drawRect(QRectF(x, 10.2, 1.8, 1.8));
}

void rain(QPainter &painter, const Inks &inks)
{
    QPainterPath cloud;
    cloud.setFillRule(Qt::WindingFill);
    cloud.addEllipse(QRectF(1.5, 4.5, 6, 5));
    cloud.addEllipse(QRectF(4.5, 1.8, 6.4, 6.4));
    cloud.addEllipse(QRectF(8.4, 4.2, 6, 5.3));
    cloud.addRect(QRectF(4.5, 6.5, 7, 3));
    use(painter, inks.Line(), inks.Paper());
    painter.drawPath(cloud.simplified());
    use(painter, inks.Water(), Qt::NoBrush, 1.4);
    for (const double x : {4.8, 8.4, 12.0})
        painter.drawLine(QPointF(x, 11.2), QPointF(x - 1.0, 14.2));
}

void warning(QPainter &painter, const Inks &inks)
{
    use(painter, inks.Amber(), inks.Honey(), 1.2);
    painter.drawPolygon(QPolygonF{{8, 2}, {14.6, 13.6}, {1.4, 13.6}});
    use(painter, inks.Line(), Qt::NoBrush, 1.6);
    painter.drawLine(QPointF(8, 6.4), QPointF(8, 9.6));
    painter.drawPoint(QPointF(8, 11.8));
}

void error(QPainter &painter, const Inks &inks)
{
    fillOnly(painter, inks.Red());
    painter.drawEllipse(QRectF(1.8, 1.8, 12.4, 12.4));
    use(painter, inks.Sign(), Qt::NoBrush, 1.8);
    painter.drawLine(QPointF(5.6, 5.6), QPointF(10.4, 10.4));
    painter.drawLine(QPointF(10.4, 5.6), QPointF(5.6, 10.4));
}

void good(QPainter &painter, const Inks &inks)
{
    fillOnly(painter, inks.Green());
    painter.drawEllipse(QRectF(1.8, 1.8, 12.4, 12.4));
    use(painter, inks.Sign(), Qt::NoBrush, 1.8);
    painter.drawPolyline(QPolygonF{{5.0, 8.3}, {7.2, 10.5}, {11.0, 5.8}});
}

using Picture = void (*)(QPainter &, const Inks &);

/// By TreeListImage.
constexpr Picture kPictures[kTreeListImages] = {item, folder, network,    branch, section, manhole, outfall,
                                                area, house,  industrial, rain,   warning, error,   good};

} // namespace

namespace tree_list_glyphs {

void PaintImage(QPainter &painter, const QRectF &cell, int number, const TreeListShades &shades)
{
    if (number < 0 || number >= kTreeListImages)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(cell.topLeft());
    painter.scale(cell.width() / kTreeListGlyph, cell.height() / kTreeListGlyph);
    kPictures[number](painter, Inks(shades));
    painter.restore();
}

} // namespace tree_list_glyphs
