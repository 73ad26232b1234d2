#include "controls/treelist/TreeListHeaderWindows.h"

#include <QPainter>
#include <QRegion>

namespace {

constexpr double kSeenThrough = 0.8;
constexpr int kPoint = 4; // pixels of the points of the mark to each side of its line
constexpr int kLine = 1;  // the same of the line
constexpr int kMarkWidth = 2 * kPoint + 1;

/// Line and points of the mark, in a window of that height.
QRegion markOf(int height)
{
    QRegion mark(kPoint - kLine, 0, 2 * kLine + 1, height);
    for (int row = 0; row < kPoint; ++row) {
        mark += QRect(row, row, kMarkWidth - 2 * row, 1);
        mark += QRect(row, height - 1 - row, kMarkWidth - 2 * row, 1);
    }
    return mark;
}

} // namespace

CTLHDragWnd::CTLHDragWnd(const QPixmap &picture, QWidget *parent)
    : CTreeListLayeredWnd(parent, kClassName), m_picture(picture)
{
    setFixedSize(picture.deviceIndependentSize().toSize());
}

void CTLHDragWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(IsLayered() ? kSeenThrough : 1);
    painter.drawPixmap(0, 0, m_picture);
    painter.setPen(palette().color(QPalette::Active, QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

CTLHDropWnd::CTLHDropWnd(int height, QWidget *parent) : CTreeListLayeredWnd(parent, kClassName)
{
    setFixedSize(kMarkWidth, height);
    if (!IsLayered())
        setMask(markOf(height));
}

void CTLHDropWnd::ShowAtEdge(const QPoint &top)
{
    ShowAt(top - QPoint(kPoint + 1, 0)); // the line between two columns is the last pixel of the one before
    raise();
}

QPoint CTLHDropWnd::GetEdge() const
{
    return pos() + QPoint(kPoint + 1, 0);
}

void CTLHDropWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setClipRegion(markOf(height()));
    painter.fillRect(rect(), palette().color(QPalette::Active, QPalette::Highlight));
}
