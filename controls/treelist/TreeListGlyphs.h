// The pictures of a tree list, drawn by us at any scale, and what painting keeps of them between two frames.
#pragma once

#include "controls/rules/TreeListImages.h"
#include "controls/treelist/TreeListColors.h"
#include "controls/treelist/TreeListTexts.h"

#include <QColor>
#include <QCursor>
#include <QIcon>
#include <QPalette>
#include <QPixmap>

#include <array>
#include <unordered_map>
#include <vector>

class QPainter;

/// Side of the cell of a check box, a button and an image; a lock is half as wide. Pixels.
inline constexpr int kTreeListGlyph = 16;
inline constexpr int kTreeListLock = 8;

/// What pictures are drawn with on a desktop.
struct TreeListShades {
    QColor ground, ink, accent, onAccent;
    bool dark = false;  ///< light lines on a dark ground
    bool plain = false; ///< a high contrast: ink on ground, nothing else
};
TreeListShades ShadesOf(const QPalette &palette);

/// Each fills a cell of any size; the shapes stand on a grid of 16 by 16 (a lock's of 8 by 16).
namespace tree_list_glyphs {

/// check: 0 off, 1 on, 2 mixed.
void PaintCheck(QPainter &painter, const QRectF &cell, int check, const TreeListShades &shades);
/// lock: 0 open, 1 closed, 2 mixed.
void PaintLock(QPainter &painter, const QRectF &cell, int lock, const TreeListShades &shades);
/// A box of 9 by 9 pixels in the middle of the cell, with a minus, or a plus while it is not expanded.
void PaintButton(QPainter &painter, const QRect &cell, bool expanded, const QColor &edge, const QColor &ground);
/// number: TreeListImage; others draw nothing.
void PaintImage(QPainter &painter, const QRectF &cell, int number, const TreeListShades &shades);
/// One tile of the background, a light ripple on that ground.
QPixmap Background(const QColor &ground, qreal ratio);

/// Numbers of the cursors.
enum CursorNumber : int {
    kCursorButton = 8005,
    kCursorCheck = 8006,
    kCursorLock = 8007,
    kCursorDrag = 8015,
    kCursorRefused = 8016,
};
/// The arrow for other numbers.
QCursor Cursor(int number, qreal ratio);

} // namespace tree_list_glyphs

/// Pictures and laid out texts of one control, made when they are first drawn and kept while palette and scale stay.
class CTreeListGlyphs {
public:
    /// Icons by number; an empty list: the pictures of PaintImage.
    void SetItemImages(std::vector<QIcon> images);
    void SetHeaderImages(std::vector<QIcon> images);

    /// For the drawing that follows. ratio: device pixels in a pixel.
    void Prepare(const QPalette &palette, qreal ratio);
    const TreeListShades &Shades() const { return m_shades; }

    /// dimmed: as a control that is disabled.
    void DrawCheck(QPainter &painter, const QPoint &at, int check, bool dimmed);
    void DrawLock(QPainter &painter, const QPoint &at, int lock, bool dimmed);
    void DrawItemImage(QPainter &painter, const QPoint &at, int number, bool dimmed);
    /// 16 by 16 pixels, as all of them.
    void DrawHeaderImage(QPainter &painter, const QPoint &at, int number, bool dimmed = false);
    bool HasHeaderImage(int number) const;
    /// Every second pixel from the first one on; vertical: downwards, else to the right.
    void DrawDots(QPainter &painter, const QPoint &at, int length, bool vertical, const QColor &color);
    const QPixmap &Background(const QColor &ground);

    CTreeListTexts texts;
    CTreeListPaints paints;

private:
    enum class Kind { Check, Lock, Item, Header };

    void Draw(QPainter &painter, const QPoint &at, Kind kind, int number, bool dimmed);
    QPixmap Make(Kind kind, int number, bool dimmed) const;

    std::vector<QIcon> m_itemImages, m_headerImages;
    TreeListShades m_shades;
    qint64 m_nPalette = 0;
    qreal m_ratio = 0;
    std::unordered_map<int, QPixmap> m_pictures;             ///< by kind, number and dimmed
    std::unordered_map<QRgb, std::array<QPixmap, 2>> m_dots; ///< downwards, to the right
    QPixmap m_background;
    QColor m_backgroundColor;
};
