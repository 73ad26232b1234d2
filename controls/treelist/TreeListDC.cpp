#include "controls/treelist/TreeListDC.h"

CTreeListDC::CTreeListDC(QPainter &target, const QRect &clip)
    : m_target(target), m_clip(clip), m_picture(clip.size() * target.device()->devicePixelRatioF())
{
    m_picture.setDevicePixelRatio(target.device()->devicePixelRatioF());
    m_painter.begin(&m_picture);
    m_painter.translate(-clip.topLeft());
}

CTreeListDC::~CTreeListDC()
{
    m_painter.end();
    m_target.drawPixmap(m_clip.topLeft(), m_picture);
}
