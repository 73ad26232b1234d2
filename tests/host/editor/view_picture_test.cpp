#include "host/editor/FramePainter.h"
#include "host/editor/LineRaster.h"
#include "host/editor/ViewPicture.h"
#include "tests/host/editor/ViewShapes.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace velmor {
namespace {

using test::kPi;

constexpr int kWidth = 320, kHeight = 240;

/// Greatest difference of a channel between two pictures.
int difference(const QImage &a, const QImage &b)
{
    EXPECT_EQ(a.size(), b.size());
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            greatest = std::max({greatest, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q))});
        }
    return greatest;
}

class Picture : public testing::Test, protected test::ViewShapes {
protected:
    Picture() { view.size = {kWidth, kHeight}; }

    void fillWithEverything()
    {
        std::mt19937 random(5);
        const auto uniform = [&](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        for (int i = 0; i < 400; ++i) {
            const double x = uniform(-300, 300), y = uniform(-300, 300);
            AcDbEntity *entity = nullptr;
            switch (i % 9) {
            case 0:
                entity = &circle(x, y, uniform(0.1, 40));
                break;
            case 1:
                entity = &arc(x, y, uniform(1, 60), uniform(0, 6), uniform(0, 6));
                break;
            case 2:
                entity = &polyline({{x, y, uniform(-1, 1)}, {x + 20, y, 0}, {x, y + 30, 0.3}}, true);
                break;
            case 3:
                entity = &text(x, y, uniform(2, 12), L"Šaht 12");
                break;
            case 4:
                entity = &reference(x, y, 3.0, 2.0, 0.4);
                break;
            case 5:
                entity = &ellipse(x, y, 20, 10, 0.4);
                break;
            case 6:
                entity = &point(x, y);
                break;
            case 7:
                entity = &hatch({{x, y, 0}, {x + 30, y, 0}, {x + 30, y + 20, 0.5}, {x, y + 20, 0}},
                                i % 2 ? L"SOLID" : L"ANSI31");
                break;
            default:
                entity = &line(x, y, x + uniform(-80, 80), y + uniform(-80, 80));
            }
            drawing->setColorOf(*entity, 1 + i % 7);
        }
    }

    QImage fresh(double ratio = 1.0)
    {
        QImage image(ViewPicture::imageSize(view.size, ratio), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        paintFrame(image, image.rect(), *drawing, view, style);
        return image;
    }
    const QImage &base(double ratio = 1.0) { return picture.base(*drawing, view, style, ratio); }

    ViewTransform view;
    PaintStyle style = PaintStyle::light();
    ViewPicture picture;
};

// --- Lines

TEST(LineRaster, ALineCoversWhatItsLengthAndWidthSay)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(10.0, 90.0);
    for (const double width : {1.0, 2.0, 3.0}) {
        for (int i = 0; i < 300; ++i) {
            const QPointF a(place(random), place(random)), b(place(random), place(random));
            const double length = std::hypot(a.x() - b.x(), a.y() - b.y());
            if (length < 5.0)
                continue;
            QImage image(100, 100, QImage::Format_RGB32);
            image.fill(Qt::white);
            LineRaster raster(image, image.rect());
            raster.setPen(qRgb(0, 0, 0), width);
            raster.line(a.x(), a.y(), b.x(), b.y());
            double ink = 0.0, farthest = 0.0;
            for (int y = 0; y < 100; ++y)
                for (int x = 0; x < 100; ++x) {
                    const int dark = 255 - qGray(image.pixel(x, y));
                    ink += dark / 255.0;
                    if (dark > 8) {
                        const double away =
                            std::abs((b.x() - a.x()) * (y + 0.5 - a.y()) - (b.y() - a.y()) * (x + 0.5 - a.x())) /
                            length;
                        farthest = std::max(farthest, away);
                    }
                }
            EXPECT_NEAR(ink, length * width, 0.03 * length * width) << i << " width " << width;
            EXPECT_LT(farthest, 0.5 * width + 1.0);
        }
    }
}

TEST(LineRaster, APicturePaintedInPartsIsTheSame)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-200.0, 300.0);
    QImage whole(100, 100, QImage::Format_RGB32), parts = whole;
    whole.fill(Qt::white);
    parts.fill(Qt::white);
    for (int i = 0; i < 200; ++i) {
        const double ax = place(random), ay = place(random), bx = place(random), by = place(random);
        const auto paint = [&](QImage &image, const QRect &clip) {
            LineRaster raster(image, clip);
            raster.setPen(qRgb(0, 0, 0), 1.0 + i % 3);
            raster.line(ax, ay, bx, by);
        };
        paint(whole, whole.rect());
        for (const QRect &clip : {QRect(0, 0, 37, 100), QRect(37, 0, 63, 51), QRect(37, 51, 63, 49)})
            paint(parts, clip);
    }
    EXPECT_LE(difference(whole, parts), 2);
}

TEST(LineRaster, NothingOutsideOfTheClipIsTouched)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-200.0, 300.0);
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    const QRect clip(20, 30, 40, 50);
    LineRaster raster(image, clip);
    for (int i = 0; i < 3000; ++i) {
        raster.setPen(qRgb(0, 0, 0), 1.0 + i % 5);
        raster.line(place(random), place(random), place(random), place(random));
        raster.dot(place(random), place(random));
    }
    raster.line(1e300, 1e300, -1e300, 40.0);
    raster.line(std::nan(""), 0.0, 50.0, 50.0);
    raster.line(-1e18, 41.0, 1e18, 42.0);
    raster.dot(1e300, -1e300);
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 100; ++x)
            if (!clip.contains(x, y)) {
                ASSERT_EQ(image.pixel(x, y), qRgb(255, 255, 255)) << x << ", " << y;
            }
    EXPECT_NE(image.pixel(40, 41), qRgb(255, 255, 255));
}

// --- The base picture

TEST_F(Picture, PanningShiftsThePictureAndPaintsOnlyTheStrips)
{
    fillWithEverything();
    base();
    std::mt19937 random(9);
    for (int step = 0; step < 30; ++step) {
        view.panBy({static_cast<double>(random() % 81) - 40.0, static_cast<double>(random() % 81) - 40.0});
        base();
    }
    EXPECT_EQ(picture.counts().full, 1u);
    EXPECT_GT(picture.counts().strips, 30u);
    EXPECT_LE(difference(base(), fresh()), 4);
}

TEST_F(Picture, AMoveByMoreThanTheViewIsPaintedAnew)
{
    fillWithEverything();
    base();
    view.panBy({kWidth + 1.0, 0.0});
    EXPECT_EQ(difference(base(), fresh()), 0);
    EXPECT_EQ(picture.counts().full, 2u);
}

TEST_F(Picture, APanByPartsOfAPixelIsPaintedAnew)
{
    fillWithEverything();
    base();
    view.panBy({10.5, 0.0});
    EXPECT_EQ(difference(base(), fresh()), 0);
    EXPECT_EQ(picture.counts().full, 2u);
}

TEST_F(Picture, AtAHigherPixelRatioAPanGoesByPixelsOfTheScreen)
{
    fillWithEverything();
    EXPECT_EQ(base(2.0).size(), QSize(2 * kWidth, 2 * kHeight));
    view.panBy({10.5, -3.0});
    EXPECT_LE(difference(base(2.0), fresh(2.0)), 4);
    EXPECT_EQ(picture.counts().full, 1u);
}

TEST_F(Picture, AChangeIsPaintedWhereItIs)
{
    fillWithEverything();
    base();
    AcDbEntity &added = line(-20, 0, 20, 5);
    EXPECT_LE(difference(base(), fresh()), 4);
    drawing->erase(added);
    EXPECT_LE(difference(base(), fresh()), 4);
    line(5000, 0, 5000, 10); // out of the view
    EXPECT_LE(difference(base(), fresh()), 4);
    EXPECT_EQ(picture.counts().full, 1u);
    EXPECT_EQ(picture.counts().patches, 2u);
}

TEST_F(Picture, AChangeTogetherWithAPanIsPaintedInBoth)
{
    fillWithEverything();
    base();
    line(-20, 0, 200, 50);
    view.panBy({-30.0, 20.0});
    EXPECT_LE(difference(base(), fresh()), 4);
    EXPECT_EQ(picture.counts().full, 1u);
}

TEST_F(Picture, ALayerThatGoesOffDisappears)
{
    AcDbEntity &entity = line(-50, 0, 50, 0);
    const QImage with = base();
    hide(entity);
    EXPECT_GT(difference(base(), with), 100);
    EXPECT_EQ(base().pixel(kWidth / 2, kHeight / 2), style.background.rgb());
}

TEST_F(Picture, WhatFallsInOnePixelIsStillSeen)
{
    line(-40, 10, -39.999, 10);
    circle(30, 0, 0.01);
    polyline({{0, 0, 0}, {0.1, 0, 0}, {0.1, 0.1, 0}}, true);
    point(50, 50);
    for (int i = 0; i < 100; ++i)
        line(60, -60, 60.001, -60);
    const QImage image = fresh();
    const auto isDark = [&](double x, double y) {
        const QPointF p = view.toView(x, y);
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                if (qGray(image.pixel(static_cast<int>(p.x()) + dx, static_cast<int>(p.y()) + dy)) < 128)
                    return true;
        return false;
    };
    EXPECT_TRUE(isDark(-40, 10));
    EXPECT_TRUE(isDark(30, 0));
    EXPECT_TRUE(isDark(0, 0));
    EXPECT_TRUE(isDark(50, 50));
    EXPECT_TRUE(isDark(60, -60));
    EXPECT_FALSE(isDark(-40, -40));
}

TEST_F(Picture, DeepInsideOfALargeDrawingLinesStandWhereTheyAre)
{
    line(0, 0, 1e6, 1e6);
    const double x = 312'345.1171, y = 687'654.1171; // between two floats
    line(x, y - 1, x, y + 1);                        // upright
    view.centerX = x;
    view.centerY = y;
    view.pixelsPerUnit = 5e4; // a float's step would be hundreds of pixels
    const QImage image = fresh();
    EXPECT_LT(qGray(image.pixel(kWidth / 2, 10)), 140);
    EXPECT_LT(qGray(image.pixel(kWidth / 2 - 1, 10)), 140);
    EXPECT_GT(qGray(image.pixel(kWidth / 2 + 3, 10)), 250);
}

TEST_F(Picture, APolylineWithAWidthIsAsWideAsItIs)
{
    view.pixelsPerUnit = 2.0;
    drawing->append(std::make_unique<AcDbPolyline>(test::Vertices{{-50, 0, 0}, {50, 0, 0}}, false, 0.0, 10.0));
    const QImage image = fresh();
    EXPECT_LT(qGray(image.pixel(kWidth / 2, kHeight / 2 + 8)), 60);
    EXPECT_LT(qGray(image.pixel(kWidth / 2, kHeight / 2 - 8)), 60);
    EXPECT_GT(qGray(image.pixel(kWidth / 2, kHeight / 2 + 12)), 250);
}

TEST_F(Picture, ABlankedEntityIsLeftOutUntilItIsDrawnAgain)
{
    AcDbEntity &entity = line(-50, 0, 50, 0);
    const QImage with = base();
    auto &transient = drawing->component<TransientGraphics>();
    transient.setBlanked(entity, true);
    EXPECT_EQ(base().pixel(kWidth / 2, kHeight / 2), style.background.rgb());
    transient.setBlanked(entity, false);
    EXPECT_EQ(difference(base(), with), 0);
    EXPECT_EQ(picture.counts().full, 1u);
}

// --- What lies over it

TEST_F(Picture, HighlightSelectionMarksAndTemporaryDrawingLeaveTheBaseAlone)
{
    AcDbEntity &entity = line(-50, 0, 50, 0), &other = line(-50, 20, 50, 20);
    const QImage plain = base();
    const auto &overlay = [&]() -> const QImage & { return picture.overlay(*drawing, view, style, 1.0); };
    const auto alphaAt = [&](double x, double y) {
        const QPoint p = view.toView(x, y).toPoint();
        return overlay().isNull() ? 0 : qAlpha(overlay().pixel(p.x(), p.y()));
    };
    EXPECT_TRUE(overlay().isNull());
    auto &transient = drawing->component<TransientGraphics>();
    transient.setHighlighted(entity, true);
    EXPECT_GT(alphaAt(0, 0), 200);
    const AcDbObjectId id[] = {idOf(other)};
    drawing->component<Selection>().set(id);
    EXPECT_GT(alphaAt(0, 20), 200);
    transient.drawTemporary(TransientPath{{{-50, -40, 0}, {50, -40, 0}}, false, 1});
    EXPECT_GT(alphaAt(0, -40), 200);
    TransientMark mark;
    mark.rings = {{{60, 60}, {100, 60}, {100, 100}, {60, 100}}};
    mark.pattern = L"ANSI31";
    transient.setMark(L"A", mark);
    EXPECT_GT(alphaAt(80, 60), 100); // its outline
    transient.setHighlighted(entity, false);
    EXPECT_EQ(alphaAt(0, 0), 0);
    transient.clearMarks();
    transient.clearTemporary();
    drawing->component<Selection>().clear();
    EXPECT_TRUE(overlay().isNull());
    EXPECT_EQ(difference(base(), plain), 0);
    EXPECT_EQ(picture.counts().full, 1u);
    EXPECT_EQ(picture.counts().patches, 0u);
}

TEST_F(Picture, AMarkOfAFinePatternIsShadedByLinesThatCanBeToldApart)
{
    const auto inkOf = [&](const wchar_t *pattern, double scale) {
        TransientMark mark;
        mark.rings = {{{-100, -80}, {100, -80}, {100, 80}, {-100, 80}}};
        mark.pattern = pattern;
        mark.scale = scale;
        drawing->component<TransientGraphics>().setMark(L"A", mark);
        const QImage &image = picture.overlay(*drawing, view, style, 1.0);
        double ink = 0.0;
        const QPoint from = view.toView(-90, 70).toPoint(), to = view.toView(90, -70).toPoint();
        for (int y = from.y(); y < to.y(); ++y)
            for (int x = from.x(); x < to.x(); ++x)
                ink += qAlpha(image.pixel(x, y)) / 255.0;
        return ink / (to.x() - from.x()) / (to.y() - from.y());
    };
    EXPECT_NEAR(inkOf(L"LINE", 8.0), 1.0 / 8.0 / 3.175, 0.005) << "one pixel in so many";
    for (const double scale : {0.1, 0.001, 1e-6}) {
        EXPECT_GT(inkOf(L"LINE", scale), 0.15) << scale;
        EXPECT_LT(inkOf(L"LINE", scale), 0.35) << scale;
    }
    EXPECT_GT(inkOf(L"SOLID", 1.0), 0.3);
    EXPECT_EQ(inkOf(L"", 1.0), 0.0);
}

TEST_F(Picture, AMarkSmallerThanAPixelIsADotAndOneOutsideIsNothing)
{
    auto &transient = drawing->component<TransientGraphics>();
    TransientMark mark;
    mark.pattern = L"ANSI31";
    mark.rings = {{{10, 10}, {10.2, 10}, {10.2, 10.2}, {10, 10.2}}};
    transient.setMark(L"small", mark);
    const double far = 10.0 * view.size.width();
    mark.rings = {{{far, 10}, {far + 90, 10}, {far + 90, 100}, {far, 100}}};
    transient.setMark(L"far", mark);
    const QImage &image = picture.overlay(*drawing, view, style, 1.0);
    int inked = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            inked += qAlpha(image.pixel(x, y)) > 0;
    EXPECT_EQ(inked, 1);
}

TEST_F(Picture, PanningShiftsWhatLiesOverTheBaseToo)
{
    fillWithEverything();
    TransientMark fine;
    fine.rings = {{{-150, 0}, {-20, -90, 0.4}, {60, 90}, {-100, 100}}};
    fine.pattern = L"NET3";
    fine.scale = 0.01;
    drawing->component<TransientGraphics>().setMark(L"F", fine);
    AcDbObjectIdArray all;
    for (AcDbEntity *entity : drawing->modelSpace().entities())
        all.push_back(idOf(*entity));
    drawing->component<Selection>().set({all.data(), all.size()});
    TransientMark mark;
    mark.rings = {{{-60, -60}, {100, -60}, {100, 100}, {-60, 100}}};
    mark.pattern = L"ANSI31";
    drawing->component<TransientGraphics>().setMark(L"A", mark);
    picture.overlay(*drawing, view, style, 1.0);
    for (const QPointF &step : {QPointF(20, 7), QPointF(-31, 0), QPointF(0, -18), QPointF(40, 40)}) {
        view.panBy(step);
        picture.overlay(*drawing, view, style, 1.0);
    }
    EXPECT_EQ(picture.counts().overlays, 1u);
    EXPECT_EQ(picture.counts().overlayStrips, 6u);
    ViewPicture other;
    EXPECT_LE(difference(picture.overlay(*drawing, view, style, 1.0), other.overlay(*drawing, view, style, 1.0)), 4);
}

TEST_F(Picture, ALargeSelectionLooksAsItsMembersOneByOneDo)
{
    AcDbObjectIdArray all;
    for (int i = 0; i < 2500; ++i)
        all.push_back(idOf(line(i % 50 * 6 - 150, i / 50 * 4 - 100, i % 50 * 6 - 147, i / 50 * 4 - 98)));
    test::Vertices vertices;
    for (int i = 0; i < 100; ++i)
        vertices.push_back({i * 3.0 - 150, i % 2 * 20.0, 0.2});
    all.push_back(idOf(polyline(vertices)));
    drawing->component<Selection>().set({all.data(), all.size()});
    QImage image(kWidth, kHeight, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QImage oneByOne = image;
    const auto &selection = drawing->component<Selection>();
    paintSelection(image, image.rect(), selection, kSelectionColor, 3.0, *drawing, view, style);
    paintOver(oneByOne, oneByOne.rect(), selection.entities(), kSelectionColor, 3.0, *drawing, view, style);
    EXPECT_LE(difference(image, oneByOne), 2);
}

TEST_F(Picture, TheOverlayIsPaintedOnlyWhenSomethingOfItChanged)
{
    AcDbEntity &entity = line(-50, 0, 50, 0);
    drawing->component<TransientGraphics>().setHighlighted(entity, true);
    for (int i = 0; i < 5; ++i)
        picture.overlay(*drawing, view, style, 1.0);
    EXPECT_EQ(picture.counts().overlays, 1u);
}

} // namespace
} // namespace velmor
