// The double buffer of the tree list's painting.
#pragma once

#include <QPainter>
#include <QPixmap>
#include <QRect>

/// What is painted stands in a picture of its own, which is laid over its place when this is destroyed: nobody sees it
/// half done.
class CTreeListDC {
public:
    /// clip: pixels of the target, not empty. The target outlives this.
    CTreeListDC(QPainter &target, const QRect &clip);
    ~CTreeListDC();
    CTreeListDC(const CTreeListDC &) = delete;
    CTreeListDC &operator=(const CTreeListDC &) = delete;

    /// Takes the target's coordinates.
    QPainter &GetPainter() { return m_painter; }

private:
    QPainter &m_target;
    QRect m_clip;
    QPixmap m_picture;
    QPainter m_painter;
};
