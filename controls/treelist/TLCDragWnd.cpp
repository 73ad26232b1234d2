#include "controls/treelist/TLCDragWnd.h"

#include <QPainter>

CTLCDragWnd::CTLCDragWnd(QWidget *parent, const QPixmap &picture, const QRegion &shape)
    : CTreeListLayeredWnd(parent, kClassName), m_picture(picture)
{
    setFixedSize(picture.deviceIndependentSize().toSize());
    if (!shape.isEmpty())
        setMask(shape);
}

void CTLCDragWnd::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawPixmap(0, 0, m_picture);
}
