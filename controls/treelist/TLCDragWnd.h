// The picture of dragged rows under the pointer.
#pragma once

#include "controls/treelist/TreeListLayered.h"

#include <QPixmap>
#include <QRegion>

/// Shows one picture and nothing else.
class TREELIST_API CTLCDragWnd : public CTreeListLayeredWnd {
public:
    [[gnu::visibility("hidden")]] static constexpr char kClassName[] = "Morvane.TLCDragWnd";
    /// Side of the layered window, and where it stands from the pointer.
    [[gnu::visibility("hidden")]] static constexpr int kSide = 320;
    [[gnu::visibility("hidden")]] static constexpr int kOffset = -160;
    /// Where a plain window stands from the pointer.
    [[gnu::visibility("hidden")]] static constexpr QPoint kPlainOffset{20, 4};

    /// The window is as large as the picture. shape: what there is of it, null: all.
    CTLCDragWnd(QWidget *parent, const QPixmap &picture, const QRegion &shape = {});

    const QPixmap &GetPicture() const { return m_picture; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_picture;
};
