// The marker of the place where dragged rows would be dropped.
#pragma once

#include "controls/treelist/TreeListLayered.h"

/// A small arrow to the right, in the desktop's highlight colour.
class TREELIST_API CTLCDropWnd : public CTreeListLayeredWnd {
public:
    [[gnu::visibility("hidden")]] static constexpr char kClassName[] = "Morvane.TLCDropWnd";
    [[gnu::visibility("hidden")]] static constexpr int kWidth = 12;
    [[gnu::visibility("hidden")]] static constexpr int kHeight = 16;

    explicit CTLCDropWnd(QWidget *parent);

    /// Shows it with its left edge at the point and its middle at the point's height. Pixels of the screen.
    void ShowBeside(const QPoint &onScreen);

protected:
    void paintEvent(QPaintEvent *event) override;
};
