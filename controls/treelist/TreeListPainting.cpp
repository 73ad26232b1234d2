// Painting of background and rows, in their order.
#include "controls/treelist/TreeListDC.h"
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListHeaderCtrl.h"
#include "controls/treelist/TreeListPaintingRow.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int kHintRows = 10;
constexpr int kHintWidth = 240, kHintMost = 720;
constexpr int kFewRects = 4;

} // namespace

QSize CTreeListCtrl::sizeHint() const
{
    const int width = std::clamp(GetTotalWidth(), kHintWidth, kHintMost) + verticalScrollBar()->sizeHint().width();
    const int header = viewportMargins().top();
    return QSize(width, header + kHintRows * GetItemHeight()) + QSize(2, 2) * frameWidth();
}

void CTreeListCtrl::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    // A step of a scroll exposes a strip or two; a region of many pieces is painted as the whole that it nearly is.
    const QRegion &region = event->region();
    if (region.rectCount() > kFewRects) {
        DrawCtrl(painter, region.boundingRect());
        return;
    }
    for (const QRect &clip : region)
        DrawCtrl(painter, clip);
}

void CTreeListCtrl::DrawCtrl(QPainter &painter, const QRect &clip) const
{
    if (clip.isEmpty())
        return;
    m_glyphs->Prepare(palette(), painter.device()->devicePixelRatioF());
    m_glyphs->paints.Prepare(m_colors, m_nSetColors, palette(), isEnabled());
    if (GetState(kControlBuffered)) {
        CTreeListDC buffer(painter, clip);
        DrawBkgnd(buffer.GetPainter(), clip);
        DrawItems(buffer.GetPainter(), clip);
        return;
    }
    // A text or a picture that reaches into another piece of the same region would be laid over itself there, and its
    // smoothed rims come out bolder.
    painter.save();
    painter.setClipRect(clip, Qt::IntersectClip);
    DrawBkgnd(painter, clip);
    DrawItems(painter, clip);
    painter.restore();
}

void CTreeListCtrl::DrawBkgnd(QPainter &painter, const QRect &clip) const
{
    if (HasStyle(StyleBkBitmap)) {
        DrawBkgndBmp(painter, clip);
        return;
    }
    const TreeListColor ground = HasStyle(StyleBkColor) ? (isEnabled() ? colorTreeBk : colorDisabledTreeBk)
                                                        : (isEnabled() ? colorBk : colorDisabledBk);
    // Rows fill all of their width down to the bottom, so only what stands beside them is left.
    const QRect client = GetClient();
    const QRect rows(client.left() - GetHorzScroll(), clip.top(), GetTotalWidth(), clip.height());
    for (const QRect &beside : QRegion(clip) - rows)
        painter.fillRect(beside, m_glyphs->paints[ground]);
}

void CTreeListCtrl::DrawBkgndBmp(QPainter &painter, const QRect &clip) const
{
    const QPixmap &tile = m_glyphs->Background(m_glyphs->paints[isEnabled() ? colorBk : colorDisabledBk]);
    const int width = std::max(1, qRound(tile.width() / tile.devicePixelRatio()));
    const QPoint origin(GetClient().left() - GetHorzScroll() % width, GetClient().top());
    painter.drawTiledPixmap(clip, tile, clip.topLeft() - origin);
}

/// By the parity of the row's index: the first row has the index 0 and the "odd" colour. Over a picture, which stays
/// seen, the plain one is what texts and buttons go by.
TreeListColor CTreeListCtrl::RowColor(int index) const
{
    if (!HasStyle(StyleAlternate) || HasStyle(StyleBkBitmap))
        return isEnabled() ? colorBk : colorDisabledBk;
    if (index % 2 != 0)
        return isEnabled() ? colorAltEven : colorDisabledAltEven;
    return isEnabled() ? colorAltOdd : colorDisabledAltOdd;
}

CTreeListCtrl::RowLook CTreeListCtrl::LookOf(const QRect &row, int index, CTreeListItem *item, const QRect &clip) const
{
    RowLook look;
    look.rect = row;
    look.clip = clip;
    look.item = item;
    look.ground = RowColor(index);
    look.text = m_glyphs->paints.TextOn(look.ground);
    return look;
}

void CTreeListCtrl::DrawRowBkgnd(QPainter &painter, const RowLook &row) const
{
    if (!HasStyle(StyleBkBitmap))
        painter.fillRect(row.rect & row.clip, m_glyphs->paints[row.ground]);
}

void CTreeListCtrl::DrawItems(QPainter &painter, const QRect &clip) const
{
    painter.setFont(font());
    m_glyphs->texts.SetFont(painter.font());
    const QColor &grid = m_glyphs->paints[colorGrid];
    const QRect client = GetClient();
    const int height = GetItemHeight(), top = GetTopIndex(), shown = GetVisibleCount();
    QRect row(client.left() - GetHorzScroll(), 0, GetTotalWidth(), height);
    if (row.width() <= 0)
        return;
    const int first = std::max(0, (clip.top() - client.top()) / height);
    const int last = std::min((clip.bottom() - client.top()) / height, client.height() / height);
    const auto bottomLine = [&] { painter.fillRect(QRect(row.left(), row.bottom(), row.width(), 1) & clip, grid); };

    int line = first;
    for (CTreeListItem *item = GetFirstShowItem(top + first); item && line <= last; ++line) {
        row.moveTop(client.top() + line * height);
        const RowLook look = LookOf(row, top + line, item, clip);
        DrawRowBkgnd(painter, look);
        DrawItem(painter, look);
        const bool closing =
            top + line == shown - 1 && HasStyle(StyleHorzGrid) && !HasStyle(StyleHorzGridEmptyRows | StyleVertGridAll);
        if (HasStyle(StyleHorzGridFull) || closing)
            bottomLine();
        item = GetNextShowItem(item);
    }
    for (; line <= last; ++line) {
        row.moveTop(client.top() + line * height);
        DrawRowBkgnd(painter, LookOf(row, top + line, nullptr, clip));
        DrawGrid(painter, row);
        if (HasStyle(StyleHorzGridEmptyRows) && HasStyle(StyleHorzGridFull))
            bottomLine();
    }
}

void CTreeListCtrl::DrawItem(QPainter &painter, const RowLook &row) const
{
    RowLook look = row;
    look.filled = DrawItemBkgnd(painter, row);
    QRect cell = row.rect;
    for (const int column : GetColumnOrderArray()) {
        const int width = GetColumnWidth(column);
        if (width <= 0)
            continue;
        cell.setWidth(width);
        if (cell.left() > row.clip.right())
            break;
        if (cell.right() >= row.clip.left()) {
            if (column != 0)
                DrawItemList(painter, look, cell, column);
            else if (HasStyle(StyleTree))
                DrawItemTree(painter, look, cell);
            else
                DrawItemMain(painter, look, cell);
        }
        cell.moveLeft(cell.left() + width);
    }
    if (row.item == GetFocusItem())
        DrawFocus(painter, row);
}

bool CTreeListCtrl::DrawItemBkgnd(QPainter &painter, const RowLook &row) const
{
    if (!HasStyle(StyleFullRowSelect))
        return false;
    const Selection selection = SelectionOf(row.item, -1);
    if (selection == Selection::None)
        return false;
    const QColor &fill = m_glyphs->paints[ColorOf(selection)];
    // The row without its decoration: what is between the parts, and what is above and below each.
    QRect rest = row.rect;
    for (const QRect &part : DrawItemExclude(row)) {
        if (part.isEmpty())
            continue;
        const auto paint = [&](const QRect &rect) { painter.fillRect(rect & row.clip, fill); };
        paint(QRect(QPoint(rest.left(), rest.top()), QPoint(part.left() - 1, rest.bottom())));
        paint(QRect(QPoint(part.left(), rest.top()), QPoint(part.right(), part.top() - 1)));
        paint(QRect(QPoint(part.left(), part.bottom() + 1), QPoint(part.right(), rest.bottom())));
        rest.setLeft(part.right() + 1);
    }
    painter.fillRect(rest & row.clip, fill);
    return true;
}

std::array<QRect, 3> CTreeListCtrl::DrawItemExclude(const RowLook &row) const
{
    QRect cell = row.rect;
    for (const int column : GetColumnOrderArray()) {
        const int width = GetColumnWidth(column);
        if (width <= 0)
            continue;
        cell.setWidth(width);
        if (column == 0) {
            const TreeListParts parts = PartsOf(GetCell(row.item, 0), PlaceOf(cell));
            return {RectOf(parts.check) & cell, RectOf(parts.lock) & cell, RectOf(parts.image) & cell};
        }
        cell.moveLeft(cell.left() + width);
    }
    return {};
}

void CTreeListCtrl::DrawItemAt(QPainter &painter, const QPoint &at, CTreeListItem *item) const
{
    m_glyphs->Prepare(palette(), painter.device()->devicePixelRatioF());
    m_glyphs->paints.Prepare(m_colors, m_nSetColors, palette(), isEnabled());
    painter.setFont(font());
    m_glyphs->texts.SetFont(painter.font());
    const QRect row(at, QSize(GetTotalWidth(), GetItemHeight()));
    const RowLook look = LookOf(row, std::max(0, GetShowIndex(item)), item, row);
    painter.fillRect(row, m_glyphs->paints[look.ground]);
    DrawItem(painter, look);
}

void CTreeListCtrl::DrawFocus(QPainter &painter, const RowLook &row) const
{
    const QRect rect = row.rect.adjusted(0, 0, HasStyle(StyleVertGrid) ? -1 : 0, HasStyle(StyleHorzGrid) ? -1 : 0);
    if (rect.width() < 2 || rect.height() < 2)
        return;
    const QColor &ground = m_glyphs->paints[HasStyle(StyleBkColor) ? colorTreeBk : colorBk];
    const QColor &text = m_glyphs->paints[colorTextNormal];
    const auto side = [&](const QRect &line, bool vertical) {
        if (!line.intersects(row.clip))
            return;
        painter.fillRect(line, ground);
        // Dots of the four sides meet in the corners: each begins at the rectangle's parity.
        const int odd = (line.left() - rect.left() + line.top() - rect.top()) % 2;
        const QPoint at = line.topLeft() + (vertical ? QPoint(0, odd) : QPoint(odd, 0));
        m_glyphs->DrawDots(painter, at, (vertical ? line.height() : line.width()) - odd, vertical, text);
    };
    side(QRect(rect.left(), rect.top(), rect.width(), 1), false);
    side(QRect(rect.left(), rect.bottom(), rect.width(), 1), false);
    side(QRect(rect.left(), rect.top() + 1, 1, rect.height() - 2), true);
    side(QRect(rect.right(), rect.top() + 1, 1, rect.height() - 2), true);
}

void CTreeListCtrl::DrawNcFrame()
{
    if (frameShape() != QFrame::Box) // the client edge is the style's
        return;
    QPainter painter(this);
    const QRect frame = rect();
    const bool plain = tree_list_colors::IsHighContrast(palette());
    const QColor shadow = palette().color(plain ? QPalette::Text : QPalette::Dark);
    const QColor light = palette().color(plain ? QPalette::Text : QPalette::Mid);
    painter.fillRect(QRect(frame.left(), frame.top(), frame.width(), 1), shadow);
    painter.fillRect(QRect(frame.left(), frame.top(), 1, frame.height()), shadow);
    painter.fillRect(QRect(frame.left() + 1, frame.bottom(), frame.width() - 1, 1), light);
    painter.fillRect(QRect(frame.right(), frame.top() + 1, 1, frame.height() - 1), light);
}
