#include "host/editor/ViewTransform.h"

#include <gtest/gtest.h>

namespace velmor {
namespace {

TEST(ViewTransform, WorldPointsComeBackFromTheirPixels)
{
    ViewTransform view{.centerX = 657214.5, .centerY = 4853297.25, .pixelsPerUnit = 3.7, .size = {1200.0, 800.0}};
    const QPointF pixel = view.toView(657300.125, 4853200.5);
    const AcGePoint3d back = view.toWorld(pixel);
    EXPECT_NEAR(back.x, 657300.125, 1e-7);
    EXPECT_NEAR(back.y, 4853200.5, 1e-7);
}

TEST(ViewTransform, ZoomingKeepsThePointUnderThePointer)
{
    ViewTransform view{.centerX = 100.0, .centerY = 50.0, .pixelsPerUnit = 2.0, .size = {640.0, 480.0}};
    const QPointF pointer(500.0, 100.0);
    const AcGePoint3d before = view.toWorld(pointer);
    view.zoomAt(pointer, 1.5);
    const AcGePoint3d after = view.toWorld(pointer);
    EXPECT_NEAR(before.x, after.x, 1e-9);
    EXPECT_NEAR(before.y, after.y, 1e-9);
    EXPECT_DOUBLE_EQ(view.pixelsPerUnit, 3.0);
}

TEST(ViewTransform, ShowingExtentsCentresThemAndFitsThemWhole)
{
    ViewTransform view;
    view.size = {800.0, 400.0};
    const Extents extents{10.0, 20.0, 30.0, 60.0};
    view.show(extents);
    EXPECT_DOUBLE_EQ(view.centerX, 20.0);
    EXPECT_DOUBLE_EQ(view.centerY, 40.0);
    const Extents visible = view.visible();
    EXPECT_LE(visible.minX, 10.0);
    EXPECT_GE(visible.maxX, 30.0);
    EXPECT_LE(visible.minY, 20.0);
    EXPECT_GE(visible.maxY, 60.0);
    EXPECT_LT(visible.maxY - visible.minY, 40.0 * 1.2);
}

TEST(ViewTransform, EmptyExtentsChangeNothing)
{
    ViewTransform view{.centerX = 1.0, .centerY = 2.0, .pixelsPerUnit = 3.0};
    view.show(Extents{});
    EXPECT_DOUBLE_EQ(view.centerX, 1.0);
    EXPECT_DOUBLE_EQ(view.pixelsPerUnit, 3.0);
}

TEST(ViewTransform, PanningMovesTheDrawingWithThePointer)
{
    ViewTransform view{.centerX = 0.0, .centerY = 0.0, .pixelsPerUnit = 2.0, .size = {100.0, 100.0}};
    const QPointF before = view.toView(5.0, 5.0);
    view.panBy({10.0, -6.0});
    const QPointF after = view.toView(5.0, 5.0);
    EXPECT_NEAR(after.x() - before.x(), 10.0, 1e-9);
    EXPECT_NEAR(after.y() - before.y(), -6.0, 1e-9);
}

} // namespace
} // namespace velmor
