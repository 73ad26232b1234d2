// Painting of the cells of a row: tree, glyphs, texts and grid.
#include "controls/treelist/TreeListGlyphs.h"
#include "controls/treelist/TreeListPaintingRow.h"

#include <QPainter>

namespace {

constexpr int kIndent = 16; // of a level

Qt::Alignment alignmentOf(std::uint32_t format)
{
    if (format & kColumnLeft)
        return Qt::AlignLeft;
    if (format & kColumnRight)
        return Qt::AlignRight;
    return format & kColumnCentred ? Qt::AlignHCenter : Qt::AlignLeft;
}

/// Holds a painter within a cell that is too small for its parts.
class WithinCell {
public:
    WithinCell(QPainter &painter, const QRect &cell, bool small) : m_painter(small ? &painter : nullptr)
    {
        if (m_painter) {
            m_painter->save();
            m_painter->setClipRect(cell, Qt::IntersectClip);
        }
    }
    ~WithinCell()
    {
        if (m_painter)
            m_painter->restore();
    }
    WithinCell(const WithinCell &) = delete;
    WithinCell &operator=(const WithinCell &) = delete;

private:
    QPainter *m_painter;
};

} // namespace

CTreeListCtrl::Selection CTreeListCtrl::SelectionOf(const CTreeListItem *item, int column) const
{
    if (item == m_pTargetItem)
        return Selection::Active;
    if (!item->Has(kItemSelected))
        return Selection::None;
    if (GetState(kControlFocused) == 0)
        return HasStyle(StyleShowSelectionAlways) ? Selection::NoFocus : Selection::None;
    if (HasStyle(StyleMultiSelect) && item != GetSelectedItem())
        return Selection::Other;
    if (HasStyle(StyleSelectColumn) && column >= 0 && column == GetSelectColumn())
        return Selection::Active;
    return Selection::Selected;
}

TreeListColor CTreeListCtrl::ColorOf(Selection selection)
{
    switch (selection) {
    case Selection::Other:
        return colorSelectedOther;
    case Selection::Active:
        return colorSelectedActive;
    case Selection::NoFocus:
        return colorSelectedNoFocus;
    default:
        return colorSelected;
    }
}

// The texts stand in the table as the grounds do.
TreeListColor CTreeListCtrl::TextColorOf(Selection selection)
{
    return static_cast<TreeListColor>(ColorOf(selection) - colorSelectedOther + colorSelectedOtherText);
}

void CTreeListCtrl::DrawItemTree(QPainter &painter, const RowLook &row, const QRect &cell) const
{
    const TreeListParts parts = PartsOf(GetCell(row.item, 0), PlaceOf(cell));
    {
        const WithinCell within(painter, cell, parts.text.left > cell.right() + 1 || cell.height() < kTreeListGlyph);
        if (HasStyle(StyleTreeLines))
            DrawItemTreeLine(painter, row, RectOf(parts.button));
        if (HasStyle(StyleTreeButtons) && ItemHasChildren(row.item))
            DrawItemTreeButton(painter, row, RectOf(parts.button));
        DrawItemGlyphs(painter, row, parts);
    }
    DrawItemTreeText(painter, row, cell, RectOf(parts.text));
    DrawCellGrid(painter, cell, HasStyle(StyleGridInFirstColumn));
}

void CTreeListCtrl::DrawItemMain(QPainter &painter, const RowLook &row, const QRect &cell) const
{
    const TreeListParts parts = PartsOf(GetCell(row.item, 0), PlaceOf(cell));
    {
        const WithinCell within(painter, cell, parts.text.left > cell.right() + 1 || cell.height() < kTreeListGlyph);
        DrawItemGlyphs(painter, row, parts);
    }
    DrawItemListText(painter, row, cell, RectOf(parts.text), 0);
    DrawCellGrid(painter, cell, HasStyle(StyleGridInFirstColumn));
}

void CTreeListCtrl::DrawItemList(QPainter &painter, const RowLook &row, const QRect &cell, int column) const
{
    const TreeListParts parts = PartsOf(GetCell(row.item, column), PlaceOf(cell));
    DrawItemListText(painter, row, cell, RectOf(parts.text), column);
    DrawCellGrid(painter, cell, HasStyle(StyleHorzGrid));
}

// Dots stand where the sum of both coordinates is even, counted from the line's place in the row. Rows are an even
// number of pixels high, so the dots of one row go on in the next.
void CTreeListCtrl::DrawItemTreeLine(QPainter &painter, const RowLook &row, const QRect &button) const
{
    const QColor &color = m_glyphs->paints[colorTreeLine];
    const bool rootLines = HasStyle(StyleTreeRootLines);
    const int top = row.rect.top(), height = row.rect.height(), middle = height / 2;
    const int odd = middle % 2;
    int x = button.left() + kTreeListGlyph / 2;

    const CTreeListItem *item = row.item;
    if (item->Level() > 1 || rootLines) {
        const bool above = item->Level() > 1 || item->Previous();
        const bool below = item->Next() != nullptr;
        if (above)
            m_glyphs->DrawDots(painter, {x, top}, below ? height : middle + 1, true, color);
        else if (below)
            m_glyphs->DrawDots(painter, {x, top + middle + odd}, height - middle - odd, true, color);
        m_glyphs->DrawDots(painter, {x + odd, top + middle}, kTreeListGlyph / 2 - odd, false, color);
    }
    for (item = item->Parent(); item && item->Level() >= 1; item = item->Parent()) {
        x -= kIndent;
        if (item->Next() && (item->Level() > 1 || rootLines))
            m_glyphs->DrawDots(painter, {x, top}, height, true, color);
    }
}

void CTreeListCtrl::DrawItemTreeButton(QPainter &painter, const RowLook &row, const QRect &button) const
{
    tree_list_glyphs::PaintButton(painter, button, row.item->Has(kItemExpanded), m_glyphs->paints[colorTreeLine],
                                  m_glyphs->paints[row.ground]);
}

void CTreeListCtrl::DrawItemGlyphs(QPainter &painter, const RowLook &row, const TreeListParts &parts) const
{
    const bool dimmed = !isEnabled() || row.item == m_pHoverItem || row.item == m_pTargetItem;
    if (!parts.check.IsEmpty())
        m_glyphs->DrawCheck(painter, RectOf(parts.check).topLeft(), GetCheck(row.item), dimmed);
    if (!parts.lock.IsEmpty())
        m_glyphs->DrawLock(painter, RectOf(parts.lock).topLeft(), GetLock(row.item), dimmed);
    if (!parts.image.IsEmpty()) {
        const TreeListImages images = row.item->Images();
        const int number = row.item == GetSelectedItem() ? images.selected : images.normal;
        m_glyphs->DrawItemImage(painter, RectOf(parts.image).topLeft(), number, !isEnabled());
    }
}

void CTreeListCtrl::DrawItemTreeText(QPainter &painter, const RowLook &row, const QRect &cell, const QRect &text) const
{
    DrawItemText(painter, row, cell, text, 0);
}

void CTreeListCtrl::DrawItemListText(QPainter &painter, const RowLook &row, const QRect &cell, const QRect &text,
                                     int column) const
{
    DrawItemText(painter, row, cell, text, column);
}

void CTreeListCtrl::DrawItemText(QPainter &painter, const RowLook &row, const QRect &cell, const QRect &text,
                                 int column) const
{
    if (text.isEmpty())
        return;
    const Selection selection = SelectionOf(row.item, column);
    const bool selected = selection != Selection::None;
    if (selected && !(selection == Selection::NoFocus && row.filled))
        painter.fillRect(text & row.clip, m_glyphs->paints[ColorOf(selection)]);
    const CTreeListColumnInfo *info = GetColumns(column);
    painter.setPen(selected ? m_glyphs->paints[TextColorOf(selection)] : row.text);
    m_glyphs->texts.Draw(painter, text, cell.right() - text.right(), row.item->TextView(column),
                         alignmentOf(info ? info->format : kColumnDefaultFormat));
}

void CTreeListCtrl::DrawCellGrid(QPainter &painter, const QRect &cell, bool bottom) const
{
    const QColor &grid = m_glyphs->paints[colorGrid];
    if (bottom)
        painter.fillRect(cell.left(), cell.bottom(), cell.width(), 1, grid);
    if (HasStyle(StyleVertGrid))
        painter.fillRect(cell.right(), cell.top(), 1, cell.height(), grid);
}

void CTreeListCtrl::DrawGrid(QPainter &painter, const QRect &row) const
{
    const QColor &grid = m_glyphs->paints[colorGrid];
    QRect cell = row;
    for (const int column : GetColumnOrderArray()) {
        const int width = GetColumnWidth(column);
        if (width <= 0)
            continue;
        cell.setWidth(width);
        if (HasStyle(StyleHorzGridEmptyRows) && (column != 0 || HasStyle(StyleGridInFirstColumn)))
            painter.fillRect(cell.left(), cell.bottom(), width, 1, grid);
        if (HasStyle(StyleVertGridAll))
            painter.fillRect(cell.right(), cell.top(), 1, cell.height(), grid);
        cell.moveLeft(cell.left() + width);
    }
}
