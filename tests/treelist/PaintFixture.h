// A tree list whose pixels are looked at.
#pragma once

#include "tests/controls/Ink.h"
#include "tests/treelist/PinnedFont.h"
#include "tests/treelist/PinnedPictures.h"
#include "tests/treelist/TreeFixture.h"

#include "controls/ReadableColour.h"
#include "controls/rules/TreeListImages.h"
#include "controls/treelist/TreeListColors.h"
#include "controls/treelist/TreeListGlyphs.h"

#include <QPainter>

class TreeListPaint : public TreeListTest {
protected:
    static void UseDesktop(const QPalette &palette)
    {
        QApplication::setPalette(palette);
        Settle();
    }
    /// A role's colour in the eight bits of a picture.
    QColor Shade(QPalette::ColorRole role) const { return QColor::fromRgb(list->palette().color(role).rgb()); }
    /// The colour that the table tells.
    static QColor Told(TreeListColor which) { return ColourOf(tree_list_colors::kDefaults[which]); }
    QColor Pixel(int x, int y) const { return Picture().pixelColor(x, y); }
    QImage Row(CTreeListItem *item) const { return Picture().copy(RowOf(item)); }
    QRect CellOf(CTreeListItem *item, int column) const
    {
        QRect cell;
        list->GetItemRect(item, column, cell, false);
        return cell;
    }
    QImage Cell(CTreeListItem *item, int column) const { return Picture().copy(CellOf(item, column)); }
    /// Behind a cell's text, near its lower edge, where no letter and no grid stands.
    QColor Behind(CTreeListItem *item, int column) const
    {
        QRect text;
        list->GetItemRect(item, column, text, true);
        return Pixel(text.left() + 1, text.bottom() - 2);
    }
    /// Of the row between the text's end and the cell's edge.
    QColor Margin(CTreeListItem *item, int column) const
    {
        const QRect cell = CellOf(item, column);
        return Pixel(cell.right() - 1, cell.bottom() - 2);
    }
    static int CountOf(const QImage &image, const QColor &color)
    {
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == color ? 1 : 0;
        }
        return count;
    }
    /// A line of one colour along a cell's bottom or right edge.
    bool HasBottomLine(const QRect &cell) const
    {
        const QImage line = Picture().copy(cell.left(), cell.bottom(), cell.width(), 1);
        return CountOf(line, Told(colorGrid)) == line.width();
    }
    bool HasRightLine(const QRect &cell) const
    {
        const QImage line = Picture().copy(cell.right(), cell.top(), 1, cell.height());
        return CountOf(line, Told(colorGrid)) == line.height();
    }
    /// The place of a row that is counted from the top of the view.
    QRect LineOf(int line) const { return {0, line * list->GetItemHeight(), 330, list->GetItemHeight()}; }
    QRect CellAt(int line, int column) const
    {
        const int lefts[] = {0, 160, 240, 330};
        return {lefts[column], line * list->GetItemHeight(), lefts[column + 1] - lefts[column], list->GetItemHeight()};
    }

    static QPalette DarkPalette()
    {
        QPalette palette(QColor(0x38, 0x3A, 0x3E));
        palette.setColor(QPalette::Base, QColor(0x22, 0x23, 0x26));
        palette.setColor(QPalette::AlternateBase, QColor(0x2A, 0x2B, 0x2F));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
            palette.setColor(role, QColor(0xE8, 0xE8, 0xEA));
            palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x82, 0x88));
        }
        palette.setColor(QPalette::Highlight, QColor(0x2F, 0x65, 0xCA));
        palette.setColor(QPalette::HighlightedText, Qt::white);
        return palette;
    }
    static QPalette ContrastPalette(const QColor &ground, const QColor &ink)
    {
        QPalette palette(ground);
        for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button, QPalette::AlternateBase})
            palette.setColor(role, ground);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, ink);
        palette.setColor(QPalette::Highlight, QColor(0x00, 0xFF, 0xFF));
        palette.setColor(QPalette::HighlightedText, Qt::black);
        return palette;
    }
};
