#include "host/drawing/Transient.h"

#include "host/drawing/CurvePath.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <numbers>

using namespace velmor;
using testing::IsEmpty;
using testing::SizeIs;

namespace {
constexpr double kPi = std::numbers::pi;

TransientMark markOf(int color)
{
    TransientMark mark;
    mark.color = color;
    return mark;
}

std::vector<AcGePoint3d> cornersOf(const CurvePath &path)
{
    std::vector<AcGePoint3d> points;
    for (const auto &vertex : path.vertices)
        points.emplace_back(vertex.x, vertex.y);
    return points;
}
} // namespace

TEST(TransientGraphics, WhatIsDrawnIsNoPartOfTheDrawing)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    AcDbLine line({0, 0}, {10, 5});
    const auto before = drawing->revision();
    transient.drawTemporary(line, 3);
    ASSERT_THAT(transient.temporary(), SizeIs(1));
    EXPECT_EQ(transient.temporary()[0].color, 3);
    EXPECT_FALSE(transient.temporary()[0].closed);
    EXPECT_THAT(transient.temporary()[0].vertices,
                testing::ElementsAre(AcDbPolyline::Vertex{0, 0, 0}, AcDbPolyline::Vertex{10, 5, 0}));
    EXPECT_EQ(drawing->revision(), before);
    EXPECT_FALSE(drawing->isModified());
    transient.clearTemporary();
    EXPECT_THAT(transient.temporary(), IsEmpty());
}

TEST(TransientGraphics, AnArcIsDrawnAsAnArc)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    transient.drawTemporary(AcDbArc({0, 0}, 2.0, 0.0, kPi / 2.0), 1);
    ASSERT_THAT(transient.temporary(), SizeIs(1));
    const auto &vertices = transient.temporary()[0].vertices;
    ASSERT_THAT(vertices, SizeIs(2));
    EXPECT_NEAR(vertices[0].x, 2.0, 1e-12);
    EXPECT_NEAR(vertices[1].y, 2.0, 1e-12);
    EXPECT_NEAR(vertices[0].bulge, std::tan(kPi / 8.0), 1e-12);
}

TEST(TransientGraphics, WhatIsNoCurveDrawsNothing)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    transient.drawTemporary(PointEntity({1, 1}), 1);
    EXPECT_THAT(transient.temporary(), IsEmpty());
}

TEST(TransientGraphics, ASecondMarkOfAKeyReplacesTheFirst)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    transient.setMark(L"a", markOf(1));
    transient.setMark(L"b", markOf(2));
    transient.setMark(L"a", markOf(3));
    ASSERT_THAT(transient.marks(), SizeIs(2));
    EXPECT_EQ(transient.marks().at(L"a").color, 3);
    transient.removeMark(L"a");
    transient.removeMark(L"unknown");
    EXPECT_THAT(transient.marks(), SizeIs(1));
    transient.clearMarks();
    EXPECT_THAT(transient.marks(), IsEmpty());
}

TEST(TransientGraphics, TemporaryDrawingAndMarksAreWipedApart)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    transient.drawTemporary(AcDbLine({0, 0}, {1, 1}), 3);
    transient.setMark(L"a", {});
    transient.clearTemporary();
    EXPECT_THAT(transient.marks(), SizeIs(1));
    transient.drawTemporary(AcDbLine({0, 0}, {1, 1}), 3);
    transient.clearMarks();
    EXPECT_THAT(transient.temporary(), SizeIs(1));
}

TEST(TransientGraphics, TheRevisionGrowsWithEveryChangeAndWithNothingElse)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    std::uint64_t last = transient.revision();
    const auto grew = [&] { return std::exchange(last, transient.revision()) < transient.revision(); };
    const AcDbLine line({0, 0}, {1, 1});
    transient.drawTemporary(line, 1);
    EXPECT_TRUE(grew());
    transient.setMark(L"a", {});
    EXPECT_TRUE(grew());
    transient.setHighlighted(line, true);
    EXPECT_TRUE(grew());
    transient.setHighlighted(line, true);
    EXPECT_FALSE(grew());
    transient.setHighlighted(line, false);
    EXPECT_TRUE(grew());
    transient.clearTemporary();
    EXPECT_TRUE(grew());
    transient.clearTemporary();
    EXPECT_FALSE(grew());
    transient.removeMark(L"unknown");
    EXPECT_FALSE(grew());
    transient.clearMarks();
    EXPECT_TRUE(grew());
    transient.clearMarks();
    EXPECT_FALSE(grew());
}

TEST(TransientGraphics, AnEntityIsHighlightedThroughTheContractUntilItIsNoMore)
{
    const auto drawing = Drawing::createNew();
    setWorkingDrawing(drawing.get());
    AcDbEntity *line = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(line, drawing->append(std::make_unique<AcDbLine>()), AcDb::kForRead), Acad::eOk);
    const auto before = drawing->revision();
    EXPECT_EQ(line->highlight(kNullSubent, false), Acad::eOk);
    EXPECT_TRUE(drawing->component<TransientGraphics>().isHighlighted(*line));
    EXPECT_EQ(line->unhighlight(kNullSubent, false), Acad::eOk);
    EXPECT_FALSE(drawing->component<TransientGraphics>().isHighlighted(*line));
    EXPECT_EQ(drawing->revision(), before);
    setWorkingDrawing(nullptr);
}

TEST(TransientGraphics, HighlightsGoInAnyOrder)
{
    const auto drawing = Drawing::createNew();
    auto &transient = drawing->component<TransientGraphics>();
    const std::vector<AcDbLine> lines(5);
    for (const AcDbLine &line : lines)
        transient.setHighlighted(line, true);
    std::vector<const AcDbEntity *> left{&lines[0], &lines[1], &lines[2], &lines[3], &lines[4]};
    for (const std::size_t gone : {1u, 4u, 0u, 2u, 3u}) {
        transient.setHighlighted(lines[gone], false);
        std::erase(left, &lines[gone]);
        EXPECT_THAT(transient.highlighted(), testing::UnorderedElementsAreArray(left));
        for (const AcDbLine &line : lines)
            EXPECT_EQ(transient.isHighlighted(line), std::ranges::find(left, &line) != left.end());
    }
}

TEST(CurvePath, CirclesAndWideArcsKeepTheirShape)
{
    const auto circle = curvePathOf(CircleEntity({5, 5}, 2.0), 0.01);
    ASSERT_TRUE(circle);
    EXPECT_TRUE(circle->closed);
    EXPECT_NEAR(ringAreaOf(circle->vertices), 4.0 * kPi, 1e-12);

    // Three quarters of a circle: the length of the path is that of the arc.
    const auto wide = curvePathOf(AcDbArc({0, 0}, 1.0, 0.0, 1.5 * kPi), 0.01);
    ASSERT_TRUE(wide);
    EXPECT_FALSE(wide->closed);
    double length = 0.0;
    for (std::size_t i = 0; i + 1 < wide->vertices.size(); ++i) {
        const auto &a = wide->vertices[i], &b = wide->vertices[i + 1];
        length += AcGeCircArc2d({a.x, a.y}, {b.x, b.y}, a.bulge).length();
    }
    EXPECT_NEAR(length, 1.5 * kPi, 1e-12);
}

TEST(CurvePath, EllipsesAndSplinesStayWithinTheTolerance)
{
    EllipseEntity::Shape shape;
    shape.center = {100, 100};
    shape.majorAxis = {30, 40, 0};
    shape.ratio = 0.3;
    const auto ellipse = curvePathOf(EllipseEntity(shape), 0.001);
    ASSERT_TRUE(ellipse);
    EXPECT_TRUE(ellipse->closed);
    const double area = kPi * 50.0 * 15.0;
    EXPECT_NEAR(ringAreaOf(ellipse->vertices), area, 0.001 * 220.0); // tolerance times the outline's length
    EXPECT_LT(ringAreaOf(ellipse->vertices), area);

    SplineEntity::Shape bezier; // one cubic piece from (0, 0) to (4, 0)
    bezier.knots = {0, 0, 0, 0, 1, 1, 1, 1};
    bezier.controlPoints = {{0, 0}, {1, 2}, {3, 2}, {4, 0}};
    const auto spline = curvePathOf(SplineEntity(bezier), 0.001);
    ASSERT_TRUE(spline);
    EXPECT_FALSE(spline->closed);
    EXPECT_NEAR(ringAreaOf(spline->vertices), -4.2, 0.01); // clockwise over its chord
}

TEST(CurvePath, APathWhoseEndsMeetIsClosed)
{
    // A triangle drawn back to its first corner without the closed flag.
    const auto open = curvePathOf(AcDbPolyline({{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {0, 0, 0}}, false), 0.01);
    ASSERT_TRUE(open);
    EXPECT_TRUE(open->closed);
    EXPECT_THAT(cornersOf(*open), SizeIs(3));
    EXPECT_NEAR(ringAreaOf(open->vertices), 6.0, 1e-12);
    const auto gap = curvePathOf(AcDbPolyline({{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {0, 0.01, 0}}, false), 0.01);
    ASSERT_TRUE(gap);
    EXPECT_FALSE(gap->closed);
    EXPECT_FALSE(curvePathOf(AcDbLine({0, 0}, {0, 0}), 0.01)->closed);
}

TEST(CurvePath, A3dPolylineIsSeenFromAbove)
{
    const auto path = curvePathOf(AcDb3dPolyline({{0, 0, 5}, {10, 0, 6}, {10, 10, 7}}, true), 0.01);
    ASSERT_TRUE(path);
    EXPECT_TRUE(path->closed);
    EXPECT_NEAR(ringAreaOf(path->vertices), 50.0, 1e-12);
}

TEST(CurvePath, AreasCountBulgesAndDirection)
{
    const double half = kPi * 25.0 / 2.0;
    EXPECT_NEAR(ringAreaOf({{0, 0, 1}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}), 100.0 + half, 1e-9);
    EXPECT_NEAR(ringAreaOf({{0, 0, -1}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}), 100.0 - half, 1e-9);
    EXPECT_NEAR(ringAreaOf({{0, 10, 0}, {10, 10, 0}, {10, 0, 0}, {0, 0, 0}}), -100.0, 1e-9);
    EXPECT_NEAR(ringAreaOf({{5e6, 5e6, 0}, {5e6 + 1, 5e6, 0}, {5e6 + 1, 5e6 + 1, 0}, {5e6, 5e6 + 1, 0}}), 1.0, 1e-9);
    EXPECT_EQ(ringAreaOf({}), 0.0);
}
