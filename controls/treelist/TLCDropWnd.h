// The marker of the place where dragged rows would be dropped.
#pragma once

#include "controls/treelist/TreeListLayered.h"

/// A small arrow to the right, in the desktop's highlight colour.
class CTLCDropWnd : public CTreeListLayeredWnd {
public:
    static constexpr char kClassName[] = "Morvane.TLCDropWnd";
    static constexpr int kWidth = 12;
    static constexpr int kHeight = 16;

    explicit CTLCDropWnd(QWidget *parent);

    /// Shows it with its left edge at the point and its middle at the point's height. Pixels of the screen.
    void ShowBeside(const QPoint &onScreen);

protected:
    void paintEvent(QPaintEvent *event) override;
};
