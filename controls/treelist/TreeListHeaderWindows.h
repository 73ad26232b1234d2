// What is seen of a header's column while it is dragged: its picture under the pointer, and a mark at its new place.
#pragma once

#include "controls/treelist/TreeListLayered.h"

#include <QPixmap>

/// The picture of a dragged column, seen through where the desktop blends windows.
class TREELIST_API CTLHDragWnd : public CTreeListLayeredWnd {
public:
    [[gnu::visibility("hidden")]] static constexpr char kClassName[] = "Morvane.TLHDragWnd";

    CTLHDragWnd(const QPixmap &picture, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_picture;
};

/// A line between two columns with a point at each end.
class TREELIST_API CTLHDropWnd : public CTreeListLayeredWnd {
public:
    [[gnu::visibility("hidden")]] static constexpr char kClassName[] = "Morvane.TLHDropWnd";

    /// As high as the header.
    CTLHDropWnd(int height, QWidget *parent);
    /// Marks the edge whose upper end is the given point; pixels of the screen.
    void ShowAtEdge(const QPoint &top);
    /// The marked edge.
    QPoint GetEdge() const;

protected:
    void paintEvent(QPaintEvent *event) override;
};
