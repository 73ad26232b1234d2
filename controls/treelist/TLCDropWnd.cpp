#include "controls/treelist/TLCDropWnd.h"

#include <QPainter>
#include <QPolygon>

namespace {

/// Corners of the arrow; its tip stands at the middle of the height.
QPolygon arrow()
{
    return QPolygon(
        {QPoint(1, 1), QPoint(CTLCDropWnd::kWidth - 2, CTLCDropWnd::kHeight / 2), QPoint(1, CTLCDropWnd::kHeight - 1)});
}

} // namespace

CTLCDropWnd::CTLCDropWnd(QWidget *parent) : CTreeListLayeredWnd(parent, kClassName)
{
    setFixedSize(kWidth, kHeight);
    if (!IsLayered())
        setMask(QRegion(arrow()));
}

void CTLCDropWnd::ShowBeside(const QPoint &onScreen)
{
    ShowAt(onScreen - QPoint(0, kHeight / 2));
    raise();
}

void CTLCDropWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, IsLayered());
    painter.setPen(palette().color(QPalette::Active, QPalette::HighlightedText));
    painter.setBrush(palette().color(QPalette::Active, QPalette::Highlight));
    painter.drawPolygon(arrow());
}
