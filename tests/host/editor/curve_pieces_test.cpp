// Pieces of curves against the curves themselves.
#include "host/editor/CurvePieces.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

namespace velmor {
namespace {

using boundary::Piece;
using boundary::Point;
using test::EditorFixture;
constexpr double kPi = std::numbers::pi;

class CurvePiecesTest : public EditorFixture {
protected:
    std::vector<Piece> piecesOf(const AcDbEntity &entity)
    {
        std::vector<Piece> pieces;
        PieceMaker(drawing(), [](std::size_t) { return true; }).append(entity, 7, pieces);
        for (const Piece &piece : pieces)
            EXPECT_EQ(piece.source, 7u);
        return pieces;
    }
    /// Pieces of an entity placed through a block reference.
    std::vector<Piece> placed(std::unique_ptr<AcDbEntity> entity, const AcDbBlockReference::Placement &placement)
    {
        BlockRecord &block = drawing().addBlock(L"B" + std::to_wstring(++blocks));
        drawing().append(std::move(entity), block);
        return piecesOf(AcDbBlockReference(idOf(block), placement));
    }
    /// Area that closed pieces enclose, arcs counted as arcs.
    static double enclosed(const std::vector<Piece> &pieces)
    {
        double twice = 0.0;
        for (const Piece &p : pieces) {
            const double chord = std::hypot(p.b.x - p.a.x, p.b.y - p.a.y);
            twice += p.a.x * p.b.y - p.b.x * p.a.y;
            if (p.bulge != 0.0) {
                const double angle = 4.0 * std::atan(p.bulge);
                const double radius = chord * (1.0 + p.bulge * p.bulge) / (4.0 * p.bulge);
                twice += radius * radius * (angle - std::sin(angle));
            }
        }
        return 0.5 * twice;
    }
    static void expectConnected(const std::vector<Piece> &pieces, bool closed)
    {
        ASSERT_FALSE(pieces.empty());
        for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
            EXPECT_EQ(pieces[i].b, pieces[i + 1].a) << i;
        if (closed) {
            EXPECT_EQ(pieces.back().b, pieces.front().a);
        }
    }
    int blocks = 0;
};

TEST_F(CurvePiecesTest, ACircleIsTwoHalves)
{
    const auto pieces = piecesOf(CircleEntity({10, 20}, 5));
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_DOUBLE_EQ(pieces[0].bulge, 1.0);
    expectConnected(pieces, true);
    EXPECT_NEAR(enclosed(pieces), 25 * kPi, 1e-9);
}

TEST_F(CurvePiecesTest, AnArcKeepsItsEndsAndItsBulge)
{
    const AcDbArc arc({0, 0}, 10, 0.25 * kPi, 0.75 * kPi);
    const auto pieces = piecesOf(arc);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].a, (Point{arc.startPoint().x, arc.startPoint().y}));
    EXPECT_EQ(pieces[0].b, (Point{arc.endPoint().x, arc.endPoint().y}));
    EXPECT_DOUBLE_EQ(pieces[0].bulge, std::tan(0.125 * kPi));
}

TEST_F(CurvePiecesTest, AnArcOverTheZeroDirectionRunsCounterClockwise)
{
    const auto pieces = piecesOf(AcDbArc({0, 0}, 1, 1.75 * kPi, 0.25 * kPi));
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(pieces[0].bulge, std::tan(0.125 * kPi), 1e-12);
}

TEST_F(CurvePiecesTest, AnArcOfNearlyAFullTurnIsCut)
{
    const auto pieces = piecesOf(AcDbArc({0, 0}, 1, 0.0, 2 * kPi - 1e-6));
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_LE(pieces[0].bulge, 1.0);
}

TEST_F(CurvePiecesTest, AnEllipseHasItsAreaAndSmoothJoints)
{
    const auto pieces = piecesOf(EllipseEntity({.center = {100, 50}, .majorAxis = {30, 40, 0}, .ratio = 0.2}));
    expectConnected(pieces, true);
    EXPECT_LT(pieces.size(), 600u);
    EXPECT_NEAR(enclosed(pieces) / (kPi * 50 * 10), 1.0, 2e-7);
}

TEST_F(CurvePiecesTest, EveryPointOfAnEllipseLiesOnItsPieces)
{
    const EllipseEntity ellipse({.center = {0, 0}, .majorAxis = {100, 0, 0}, .ratio = 0.05});
    AcDbObjectId id = drawing().append(std::make_unique<EllipseEntity>(
        EllipseEntity::Shape{.center = {0, 0}, .majorAxis = {100, 0, 0}, .ratio = 0.05}));
    (void)id;
    const auto pieces = piecesOf(ellipse);
    for (int i = 0; i < 5000; ++i) {
        const AcGePoint3d p = ellipse.pointAt(2 * kPi * i / 5000);
        double nearest = 1e300;
        for (const Piece &piece : pieces) {
            const double cx = piece.b.x - piece.a.x, cy = piece.b.y - piece.a.y;
            if (piece.bulge == 0.0)
                continue;
            const double offset = (1 - piece.bulge * piece.bulge) / (4 * piece.bulge);
            const double mx = piece.a.x + 0.5 * cx - offset * cy, my = piece.a.y + 0.5 * cy + offset * cx;
            const double radius = std::hypot(cx, cy) * (1 + piece.bulge * piece.bulge) / (4 * std::abs(piece.bulge));
            const double along = ((p.x - piece.a.x) * cx + (p.y - piece.a.y) * cy) / (cx * cx + cy * cy);
            if (along > -0.2 && along < 1.2 && std::hypot(p.x - piece.a.x, p.y - piece.a.y) < 30)
                nearest = std::min(nearest, std::abs(std::hypot(p.x - mx, p.y - my) - radius));
        }
        EXPECT_LT(nearest, 200 * kCurveTolerance * 1.01) << i;
    }
}

TEST_F(CurvePiecesTest, APartOfAnEllipseKeepsItsEnds)
{
    const EllipseEntity ellipse(
        {.center = {5, 5}, .majorAxis = {10, 0, 0}, .ratio = 0.5, .startParameter = 0.3, .endParameter = 2.9});
    const auto pieces = piecesOf(ellipse);
    expectConnected(pieces, false);
    EXPECT_NEAR(pieces.front().a.x, ellipse.pointAt(0.3).x, 1e-12);
    EXPECT_NEAR(pieces.back().b.y, ellipse.pointAt(2.9).y, 1e-12);
}

TEST_F(CurvePiecesTest, APolylineKeepsItsBulgesAndClosesWhenItIsClosed)
{
    const std::vector<AcDbPolyline::Vertex> vertices{{0, 0, 0.5}, {10, 0, 0}, {10, 10, -0.25}};
    EXPECT_EQ(piecesOf(AcDbPolyline(vertices, false)).size(), 2u);
    const auto closed = piecesOf(AcDbPolyline(vertices, true));
    ASSERT_EQ(closed.size(), 3u);
    EXPECT_EQ(closed[0].bulge, 0.5);
    EXPECT_EQ(closed[2].bulge, -0.25);
    expectConnected(closed, true);
    EXPECT_EQ(piecesOf(AcDb2dPolyline(vertices, true)).size(), 3u);
}

TEST_F(CurvePiecesTest, A3dPolylineCountsInThePlane)
{
    const auto pieces = piecesOf(AcDb3dPolyline({{0, 0, 5}, {10, 0, 7}, {10, 10, 1}}, true));
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(pieces[1].b, (Point{10, 10}));
}

TEST_F(CurvePiecesTest, HugeAnglesAreTurnedBackAndEndlessOnesMakeAtMostATurn)
{
    const AcDbArc arc({0, 0}, 1.0, 0.0, 200.0 * kPi + 1.0);
    const auto pieces = piecesOf(arc);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(pieces[0].bulge, std::tan(0.25), 1e-9);
    EllipseEntity::Shape shape;
    shape.majorAxis = {2, 0};
    shape.ratio = 0.5;
    for (const auto &[start, end] : {std::pair(1e17, -1e300), std::pair(-1.7e308, 1.7e308), std::pair(0.0, 1e300)}) {
        EXPECT_LE(piecesOf(AcDbArc({0, 0}, 1.0, start, end)).size(), 3u);
        shape.startParameter = start;
        shape.endParameter = end;
        EXPECT_LE(piecesOf(EllipseEntity(shape)).size(), 1000u);
    }
}

TEST_F(CurvePiecesTest, NestedArraysEndAtTheMostThatIsFollowed)
{
    // An array of nothing and one of lines, each of billions of places.
    BlockRecord &empty = drawing().addBlock(L"EMPTY"), &block = drawing().addBlock(L"LINES");
    drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 0)), block);
    AcDbBlockReference::Placement placement;
    placement.columns = placement.rows = 2'000'000'000;
    placement.columnSpacing = 2.0;
    for (BlockRecord *definition : {&empty, &block}) {
        std::vector<Piece> pieces;
        PieceMaker(
            drawing(), [](std::size_t) { return true; }, 1000)
            .append(AcDbBlockReference(idOf(*definition), placement), 7, pieces);
        EXPECT_EQ(pieces.size(), definition == &empty ? 0u : 333u); // place, line and piece count each
    }
    // A block within itself shows once.
    drawing().append(std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement()), block);
    EXPECT_EQ(piecesOf(AcDbBlockReference(idOf(block), {})).size(), 1u);
}

TEST_F(CurvePiecesTest, PolylinesOfNothingMakeNoPiece)
{
    EXPECT_TRUE(piecesOf(AcDbPolyline({}, true)).empty());
    EXPECT_TRUE(piecesOf(AcDb2dPolyline({}, true, 0.0)).empty());
    EXPECT_TRUE(piecesOf(AcDb3dPolyline({}, true)).empty());
}

TEST_F(CurvePiecesTest, PointsThatRepeatMakeNoPiece)
{
    EXPECT_EQ(piecesOf(AcDbPolyline({{0, 0, 0}, {0, 0, 0}, {1, 0, 0}}, false)).size(), 1u);
    EXPECT_TRUE(piecesOf(AcDbLine({1, 1, 0}, {1, 1, 5})).empty());
}

// --- Splines

SplineEntity::Shape quarterCircle()
{
    // The rational quarter of the unit circle.
    SplineEntity::Shape shape;
    shape.degree = 2;
    shape.knots = {0, 0, 0, 1, 1, 1};
    shape.controlPoints = {{1, 0}, {1, 1}, {0, 1}};
    shape.weights = {1, std::sqrt(0.5), 1};
    return shape;
}

TEST_F(CurvePiecesTest, ARationalSplineOfACircleLiesOnTheCircle)
{
    const auto pieces = piecesOf(SplineEntity(quarterCircle()));
    expectConnected(pieces, false);
    for (const Piece &piece : pieces)
        EXPECT_NEAR(std::hypot(piece.b.x, piece.b.y), 1.0, 1e-9);
    double angle = 0.0;
    for (const Piece &piece : pieces)
        angle += 4 * std::atan(piece.bulge);
    EXPECT_NEAR(angle, 0.5 * kPi, 1e-6);
}

TEST_F(CurvePiecesTest, ACubicSplineKeepsItsArea)
{
    // One Bezier arch; its area over the chord is 3/20 of a known polynomial: 0.6 times its height and width.
    SplineEntity::Shape shape;
    shape.degree = 3;
    shape.knots = {0, 0, 0, 0, 1, 1, 1, 1};
    shape.controlPoints = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
    const auto pieces = piecesOf(SplineEntity(shape));
    expectConnected(pieces, false);
    // Green's integral of the curve: x and y are Bernstein polynomials, the exact value is 60.
    EXPECT_NEAR(-enclosed(pieces), 60.0, 60.0 * 1e-6);
}

TEST_F(CurvePiecesTest, ASplineWithACornerKeepsTheCorner)
{
    SplineEntity::Shape shape; // two straight legs as one spline of degree 2 with a double knot at the corner
    shape.degree = 2;
    shape.knots = {0, 0, 0, 1, 1, 2, 2, 2};
    shape.controlPoints = {{0, 0}, {5, 0}, {10, 0}, {10, 5}, {10, 10}};
    const auto pieces = piecesOf(SplineEntity(shape));
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].b, (Point{10, 0}));
    EXPECT_EQ(pieces[0].bulge, 0.0);
}

TEST_F(CurvePiecesTest, ASplineWithKnotsThatDoNotFitIsStillDrawnFromItsPoints)
{
    SplineEntity::Shape shape;
    shape.degree = 3;
    shape.fitPoints = {{0, 0}, {10, 0}, {10, 10}};
    const auto pieces = piecesOf(SplineEntity(shape));
    ASSERT_FALSE(pieces.empty());
    EXPECT_EQ(pieces.front().a, (Point{0, 0}));
    EXPECT_EQ(pieces.back().b, (Point{10, 10}));
}

// --- Placements

TEST_F(CurvePiecesTest, AnEvenlyScaledMirroredArcStaysOneArcTheOtherWayRound)
{
    const auto pieces = placed(std::make_unique<AcDbArc>(AcGePoint3d(0, 0), 1.0, 0.0, 0.5 * kPi),
                               {.position = {}, .scaleX = -3, .scaleY = 3});
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(pieces[0].bulge, -std::tan(0.125 * kPi), 1e-12);
    EXPECT_NEAR(pieces[0].a.x, -3.0, 1e-12);
}

TEST_F(CurvePiecesTest, AMirroredPolylineTurnsItsBulges)
{
    const auto pieces =
        placed(std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0, 0.5}, {10, 0, 0}}, false),
               {.position = {}, .scaleX = 2, .scaleY = -2});
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(pieces[0].bulge, -0.5);
}

TEST_F(CurvePiecesTest, AnUnevenlyScaledCircleIsAnEllipse)
{
    const auto pieces = placed(std::make_unique<CircleEntity>(AcGePoint3d(2, 1), 1.0),
                               {.position = {50, 50}, .scaleX = 10, .scaleY = 4, .rotation = 0.7});
    expectConnected(pieces, true);
    EXPECT_NEAR(enclosed(pieces) / (40 * kPi), 1.0, 2e-7);
}

TEST_F(CurvePiecesTest, AnUnevenlyScaledPolylineArcKeepsItsEndsAndItsArea)
{
    // A half disc of radius 5 on a chord of 10: scaled 2 by 3 its area is six times as large.
    const auto pieces =
        placed(std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0, 1}, {10, 0, 0}}, true),
               {.position = {}, .scaleX = 2, .scaleY = 3});
    expectConnected(pieces, true);
    EXPECT_NEAR(enclosed(pieces) / (0.5 * kPi * 25 * 6), 1.0, 2e-7);
}

TEST_F(CurvePiecesTest, AQuarterTurnKeepsCirclesToRounding)
{
    const auto pieces = placed(std::make_unique<CircleEntity>(AcGePoint3d(1000, 2000), 3.0),
                               {.position = {}, .scaleX = 7, .scaleY = 7, .rotation = 1.2345});
    EXPECT_EQ(pieces.size(), 2u);
}

} // namespace
} // namespace velmor
