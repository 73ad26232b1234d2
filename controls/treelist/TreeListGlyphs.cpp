#include "controls/treelist/TreeListGlyphs.h"

#include "controls/ReadableColour.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

TreeListShades ShadesOf(const QPalette &palette)
{
    TreeListShades shades;
    shades.plain = tree_list_colors::IsHighContrast(palette);
    shades.dark = tree_list_colors::IsDark(palette);
    shades.ground = palette.color(QPalette::Active, QPalette::Base);
    shades.ink = palette.color(QPalette::Active, QPalette::Text);
    shades.accent = shades.plain ? shades.ink : shades.dark ? QColor(0x5a, 0xa2, 0xe8) : QColor(0x1f, 0x5f, 0xae);
    shades.onAccent = ReadableText(shades.ground, shades.accent);
    return shades;
}

namespace tree_list_glyphs {

namespace {

constexpr double kGrid = 16.0;

/// Puts the grid of the shapes over a cell, as long as it lives.
class OnGrid {
public:
    OnGrid(QPainter &painter, const QRectF &cell, double width) : m_painter(painter)
    {
        painter.save();
        painter.translate(cell.topLeft());
        painter.scale(cell.width() / width, cell.height() / kGrid);
        painter.setRenderHint(QPainter::Antialiasing);
    }
    ~OnGrid() { m_painter.restore(); }
    OnGrid(const OnGrid &) = delete;
    OnGrid &operator=(const OnGrid &) = delete;

private:
    QPainter &m_painter;
};

QPen lineOf(const QColor &color, double width)
{
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QColor edgeOf(const TreeListShades &shades)
{
    if (shades.plain)
        return shades.ink;
    return shades.dark ? QColor(0xa8, 0xb0, 0xb8) : QColor(0x6c, 0x76, 0x80);
}

} // namespace

void PaintCheck(QPainter &painter, const QRectF &cell, int check, const TreeListShades &shades)
{
    const OnGrid grid(painter, cell, kGrid);
    const bool filled = check != 0;
    painter.setPen(lineOf(filled ? shades.accent : edgeOf(shades), 1.0));
    painter.setBrush(filled ? shades.accent : shades.ground);
    painter.drawRoundedRect(QRectF(2.5, 2.5, 11, 11), 1.5, 1.5);
    if (!filled)
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(lineOf(shades.onAccent, 1.8));
    if (check == 1)
        painter.drawPolyline(QPolygonF{{5.0, 8.2}, {7.2, 10.5}, {11.2, 5.6}});
    else
        painter.drawLine(QPointF(5.2, 8.0), QPointF(10.8, 8.0));
}

void PaintLock(QPainter &painter, const QRectF &cell, int lock, const TreeListShades &shades)
{
    const OnGrid grid(painter, cell, kTreeListLock);
    const bool open = lock == 0;
    const QColor closed = shades.plain ? shades.ink : shades.dark ? QColor(0xf0, 0xb8, 0x4a) : QColor(0xb3, 0x6b, 0x00);
    QColor color = open ? edgeOf(shades) : closed;
    if (open && !shades.plain)
        color.setAlphaF(0.55F); // most rows are open; they shall not shout
    QPainterPath bow;
    bow.moveTo(1.2, 7.5);
    bow.lineTo(1.2, 5.0);
    bow.arcTo(QRectF(1.2, 3.0, 3.6, 4.0), 180, -180);
    if (!open)
        bow.lineTo(4.8, 7.5);
    painter.setPen(QPen(color, 1.2, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(bow);
    const QRectF body(0.0, 7.0, 6.0, 6.0); // two pixels are left to what stands beside it
    if (lock == 1) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRoundedRect(body, 0.8, 0.8);
        return;
    }
    painter.setPen(lineOf(color, 1.0));
    painter.drawRoundedRect(body.adjusted(0.5, 0.5, -0.5, -0.5), 0.6, 0.6);
    if (lock == 2) { // half closed: the lower half of the body is full
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawRect(QRectF(0.5, 10, 5.0, 2.5));
    }
}

void PaintButton(QPainter &painter, const QRect &cell, bool expanded, const QColor &edge, const QColor &ground)
{
    constexpr int kBox = 9;
    const QRect box(cell.left() + kTreeListGlyph / 2 - kBox / 2, cell.top() + cell.height() / 2 - kBox / 2, kBox, kBox);
    painter.fillRect(box, edge);
    painter.fillRect(box.adjusted(1, 1, -1, -1), ground);
    const QPoint middle = box.center();
    painter.fillRect(QRect(middle.x() - 2, middle.y(), 5, 1), edge);
    if (!expanded)
        painter.fillRect(QRect(middle.x(), middle.y() - 2, 1, 5), edge);
}

QPixmap Background(const QColor &ground, qreal ratio)
{
    constexpr int kTile = 48;
    QPixmap tile(QSize(kTile, kTile) * ratio);
    tile.setDevicePixelRatio(ratio);
    tile.fill(ground);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool dark = ContrastOf(Qt::white, ground) > ContrastOf(Qt::black, ground);
    QColor line = dark ? QColor(Qt::white) : QColor(0x20, 0x60, 0xa0);
    line.setAlphaF(0.07F);
    painter.setPen(QPen(line, 1.2));
    // Three waves; each ends at the height where it began, so tiles join.
    for (int wave = 0; wave < 3; ++wave) {
        const double y = 8 + 16 * wave, shift = wave % 2 == 0 ? 3.0 : -3.0;
        QPainterPath path(QPointF(0, y));
        path.cubicTo({8, y - shift}, {16, y - shift}, {24, y});
        path.cubicTo({32, y + shift}, {40, y + shift}, {48, y});
        painter.drawPath(path);
    }
    return tile;
}

} // namespace tree_list_glyphs

void CTreeListGlyphs::SetItemImages(std::vector<QIcon> images)
{
    m_itemImages = std::move(images);
    m_pictures.clear();
}

void CTreeListGlyphs::SetHeaderImages(std::vector<QIcon> images)
{
    m_headerImages = std::move(images);
    m_pictures.clear();
}

void CTreeListGlyphs::Prepare(const QPalette &palette, qreal ratio)
{
    if (palette.cacheKey() == m_nPalette && ratio == m_ratio)
        return;
    m_nPalette = palette.cacheKey();
    m_ratio = ratio;
    m_shades = ShadesOf(palette);
    m_pictures.clear();
    m_dots.clear();
    m_backgroundColor = {};
}

bool CTreeListGlyphs::HasHeaderImage(int number) const
{
    const int count = m_headerImages.empty() ? kTreeListImages : static_cast<int>(m_headerImages.size());
    return number >= 0 && number < count;
}

void CTreeListGlyphs::DrawCheck(QPainter &painter, const QPoint &at, int check, bool dimmed)
{
    Draw(painter, at, Kind::Check, check, dimmed);
}

void CTreeListGlyphs::DrawLock(QPainter &painter, const QPoint &at, int lock, bool dimmed)
{
    Draw(painter, at, Kind::Lock, lock, dimmed);
}

void CTreeListGlyphs::DrawItemImage(QPainter &painter, const QPoint &at, int number, bool dimmed)
{
    const int count = m_itemImages.empty() ? kTreeListImages : static_cast<int>(m_itemImages.size());
    if (number >= 0 && number < count)
        Draw(painter, at, Kind::Item, number, dimmed);
}

void CTreeListGlyphs::DrawHeaderImage(QPainter &painter, const QPoint &at, int number, bool dimmed)
{
    if (HasHeaderImage(number))
        Draw(painter, at, Kind::Header, number, dimmed);
}

void CTreeListGlyphs::Draw(QPainter &painter, const QPoint &at, Kind kind, int number, bool dimmed)
{
    constexpr int kKinds = 4;
    const int key = (number * kKinds + static_cast<int>(kind)) * 2 + (dimmed ? 1 : 0);
    auto found = m_pictures.find(key);
    if (found == m_pictures.end())
        found = m_pictures.emplace(key, Make(kind, number, dimmed)).first;
    painter.drawPixmap(at, found->second);
}

QPixmap CTreeListGlyphs::Make(Kind kind, int number, bool dimmed) const
{
    constexpr double kDimmed = 0.4;
    const QSize size(kind == Kind::Lock ? kTreeListLock : kTreeListGlyph, kTreeListGlyph);
    QPixmap picture(size * m_ratio);
    picture.setDevicePixelRatio(m_ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    if (dimmed)
        painter.setOpacity(kDimmed);
    const QRectF cell(QPointF(0, 0), size);
    const std::vector<QIcon> &icons = kind == Kind::Item ? m_itemImages : m_headerImages;
    switch (kind) {
    case Kind::Check:
        tree_list_glyphs::PaintCheck(painter, cell, number, m_shades);
        break;
    case Kind::Lock:
        tree_list_glyphs::PaintLock(painter, cell, number, m_shades);
        break;
    case Kind::Item:
    case Kind::Header:
        if (icons.empty())
            tree_list_glyphs::PaintImage(painter, cell, number, m_shades);
        else
            icons[static_cast<std::size_t>(number)].paint(&painter, cell.toRect());
    }
    return picture;
}

void CTreeListGlyphs::DrawDots(QPainter &painter, const QPoint &at, int length, bool vertical, const QColor &color)
{
    constexpr int kStrip = 64;
    auto found = m_dots.find(color.rgba());
    if (found == m_dots.end()) {
        const auto strip = [this, &color](bool down) {
            QPixmap dots((down ? QSize(1, kStrip) : QSize(kStrip, 1)) * m_ratio);
            dots.setDevicePixelRatio(m_ratio);
            dots.fill(Qt::transparent);
            QPainter to(&dots);
            for (int place = 0; place < kStrip; place += 2)
                to.fillRect(down ? QRect(0, place, 1, 1) : QRect(place, 0, 1, 1), color);
            return dots;
        };
        found = m_dots.emplace(color.rgba(), std::array{strip(true), strip(false)}).first;
    }
    const auto &[down, across] = found->second;
    for (int done = 0; done < length; done += kStrip) {
        const int part = std::min(kStrip, length - done);
        if (vertical)
            painter.drawPixmap(QPointF(at.x(), at.y() + done), down, QRectF(0, 0, m_ratio, part * m_ratio));
        else
            painter.drawPixmap(QPointF(at.x() + done, at.y()), across, QRectF(0, 0, part * m_ratio, m_ratio));
    }
}

const QPixmap &CTreeListGlyphs::Background(const QColor &ground)
{
    if (m_backgroundColor != ground || m_background.isNull()) {
        m_backgroundColor = ground;
        m_background = tree_list_glyphs::Background(ground, m_ratio);
    }
    return m_background;
}
