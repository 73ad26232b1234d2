#include "host/drawing/CurvePath.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/HatchPattern.h"
#include "host/drawing/Journal.h"
#include "host/drawing/dxf/Skeleton.h"

#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <numbers>
#include <random>
#include <tuple>

using namespace velmor;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Vertex = AcDbPolyline::Vertex;
using Ring = std::vector<Vertex>;
constexpr double kPi = std::numbers::pi;
constexpr double kDegree = 0.017453292519943295;

Ring square(double x, double y, double side)
{
    return {{x, y, 0}, {x + side, y, 0}, {x + side, y + side, 0}, {x, y + side, 0}};
}

Ring circle(double x, double y, double radius)
{
    return {{x - radius, y, 1}, {x + radius, y, 1}};
}

double lengthOf(const std::vector<PatternLine> &lines)
{
    double length = 0.0;
    for (const PatternLine &line : lines)
        length += std::hypot(line.x2 - line.x1, line.y2 - line.y1);
    return length;
}

/// Hatching of a fine pattern covers length times spacing, so its length tells the area.
double areaOf(const std::vector<Ring> &rings, double scale, double angle = 0.0)
{
    return lengthOf(patternLines(rings, L"ANSI31", angle, scale)) * 3.175 * scale;
}

class HatchTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_drawing = Drawing::createNew();
        setWorkingDrawing(m_drawing.get());
    }
    void TearDown() override { setWorkingDrawing(nullptr); }
    AcDbObjectId add(std::unique_ptr<AcDbEntity> entity) { return m_drawing->append(std::move(entity)); }
    AcDbObjectId addRing(const Ring &ring) { return add(std::make_unique<AcDbPolyline>(ring, true)); }
    std::unique_ptr<Drawing> m_drawing;
};

/// As the preview of a definition is made.
std::unique_ptr<AcDbHatch> preview(const AcDbObjectId &outer, const AcDbObjectIdArray &inner, double scale,
                                   double degrees)
{
    auto hatch = std::make_unique<AcDbHatch>();
    EXPECT_EQ(hatch->setNormal({0, 0, 1}), Acad::eOk);
    EXPECT_EQ(hatch->setElevation(0.0), Acad::eOk);
    EXPECT_EQ(hatch->setPatternAngle(degrees * kDegree), Acad::eOk);
    EXPECT_EQ(hatch->setPatternScale(scale), Acad::eOk);
    EXPECT_EQ(hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI31"), Acad::eOk);
    EXPECT_EQ(hatch->setAssociative(false), Acad::eOk);
    EXPECT_EQ(hatch->setHatchStyle(AcDbHatch::kNormal), Acad::eOk);
    EXPECT_EQ(hatch->appendLoop(AcDbHatch::kExternal, {outer}), Acad::eOk);
    for (const AcDbObjectId &id : inner)
        EXPECT_EQ(hatch->appendLoop(AcDbHatch::kExternal, {id}), Acad::eOk);
    EXPECT_EQ(hatch->evaluateHatch(false), Acad::eOk);
    return hatch;
}

} // namespace

TEST_F(HatchTest, APatternThatIsNotKnownIsRefusedAndTheFormerStays)
{
    AcDbHatch hatch;
    EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, L"net3"), Acad::eOk);
    for (const auto type : {AcDbHatch::kPreDefined, AcDbHatch::kCustomDefined, AcDbHatch::kUserDefined})
        EXPECT_EQ(hatch.setPattern(type, L"NOSUCHBRICK"), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, L""), Acad::eInvalidInput);
    EXPECT_EQ(hatch.patternName(), L"net3");
    for (const wchar_t *name : {L"SOLID", L"ANSI31", L"ansi32", L"ANSI37", L"LINE", L"NET"})
        EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, name), Acad::eOk);
}

// --- Pattern lines
// -------------------------------------------------------------------------------------------------------

TEST(PatternLines, RunAt45DegreesAndAreSpacedByTheScale)
{
    for (const double scale : {1.0, 2.5}) {
        const auto lines = patternLines(std::vector<Ring>{square(0, 0, 100)}, L"ANSI31", 0.0, scale);
        ASSERT_GT(lines.size(), 10u);
        std::vector<double> across;
        for (const PatternLine &line : lines) {
            EXPECT_NEAR(line.x2 - line.x1, line.y2 - line.y1, 1e-9);
            across.push_back((line.y1 - line.x1) / std::sqrt(2.0));
        }
        std::sort(across.begin(), across.end());
        for (std::size_t i = 1; i < across.size(); ++i)
            EXPECT_NEAR(across[i] - across[i - 1], 3.175 * scale, 1e-9);
    }
}

TEST(PatternLines, AnAngleTurnsThem)
{
    for (const PatternLine &line : patternLines(std::vector<Ring>{square(0, 0, 100)}, L"ANSI31", 45 * kDegree, 1.0)) {
        EXPECT_NEAR(line.x2, line.x1, 1e-9);
        EXPECT_GT(std::abs(line.y2 - line.y1), 99.0);
    }
}

TEST(PatternLines, GoThroughTheOriginSoThatNeighboursMeet)
{
    const auto left = patternLines(std::vector<Ring>{square(0, 0, 50)}, L"LINE", 0.0, 1.0);
    const auto right = patternLines(std::vector<Ring>{square(50, 0, 50)}, L"LINE", 0.0, 1.0);
    ASSERT_EQ(left.size(), right.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        EXPECT_EQ(left[i].y1, right[i].y1);
        EXPECT_EQ(left[i].x2, right[i].x1);
        EXPECT_NEAR(std::remainder(left[i].y1, 3.175), 0.0, 1e-12);
    }
}

TEST(PatternLines, NoneCrossesAHole)
{
    const std::vector<Ring> rings{square(0, 0, 100), square(20, 20, 25), circle(70, 70, 15)};
    const auto lines = patternLines(rings, L"ANSI31", 0.3, 0.5);
    ASSERT_GT(lines.size(), 50u);
    for (const PatternLine &line : lines)
        for (int i = 0; i <= 20; ++i) {
            const double x = line.x1 + (line.x2 - line.x1) * i / 20, y = line.y1 + (line.y2 - line.y1) * i / 20;
            EXPECT_FALSE(x > 20 + 1e-9 && x < 45 - 1e-9 && y > 20 + 1e-9 && y < 45 - 1e-9);
            EXPECT_GE(std::hypot(x - 70, y - 70), 15 - 1e-9);
            EXPECT_TRUE(x > -1e-9 && x < 100 + 1e-9 && y > -1e-9 && y < 100 + 1e-9);
        }
    EXPECT_NEAR(areaOf(rings, 0.05, 0.3), 10000.0 - 625.0 - kPi * 225.0, 20.0);
}

TEST(PatternLines, AnIslandInAHoleIsHatchedAgain)
{
    const std::vector<Ring> rings{square(0, 0, 100), square(20, 20, 60), square(40, 40, 20)};
    EXPECT_NEAR(areaOf(rings, 0.05), 10000.0 - 3600.0 + 400.0, 20.0);
}

TEST(PatternLines, BulgesCountAsArcsOutwardAndInward)
{
    const double half = kPi * 2500.0 / 2.0;
    Ring outward = square(0, 0, 100), inward = square(0, 0, 100), wide = square(0, 0, 10);
    outward[0].bulge = 1.0;
    inward[0].bulge = -1.0;
    wide[0].bulge = 3.0; // more than a half circle
    EXPECT_NEAR(areaOf({outward}, 0.05), 10000.0 + half, 20.0);
    EXPECT_NEAR(areaOf({inward}, 0.05), 10000.0 - half, 20.0);
    EXPECT_NEAR(areaOf({wide}, 0.01), ringAreaOf(wide), 1.0);
    EXPECT_NEAR(areaOf({circle(7, 9, 50)}, 0.05), kPi * 2500.0, 20.0);
}

TEST(PatternLines, RandomRingsAreCoveredByTheirArea)
{
    std::mt19937 random(31);
    std::uniform_real_distribution<double> part(0.0, 1.0);
    std::size_t withArcs = 0;
    for (int draw = 0; draw < 200; ++draw) {
        // A star around a far centre, some of its sides flat arcs that cannot meet each other.
        Ring ring;
        const int corners = 3 + static_cast<int>(random() % 10);
        const double x = 5e6 * part(random), y = 5e6 * part(random);
        for (int i = 0; i < corners; ++i) {
            const double angle = 2.0 * kPi * i / corners, radius = 60.0 + 40.0 * part(random);
            const double bulge = corners > 5 && random() % 3 == 0 ? 0.1 * (part(random) - 0.5) : 0.0;
            ring.push_back({x + radius * std::cos(angle), y + radius * std::sin(angle), bulge});
            withArcs += bulge != 0.0;
        }
        const double area = ringAreaOf(ring);
        EXPECT_NEAR(areaOf({ring}, 0.02, part(random) * 7.0), area, 0.01 * area) << "seed 31 draw " << draw;
        Ring reversed(ring.rbegin(), ring.rend());
        if (std::all_of(ring.begin(), ring.end(), [](const Vertex &v) { return v.bulge == 0.0; })) {
            EXPECT_NEAR(areaOf({reversed}, 0.02), areaOf({ring}, 0.02), 1e-6 * area);
        }
    }
    EXPECT_GT(withArcs, 40u);
}

TEST(PatternLines, CornersOnALineNeitherDoubleNorLoseIt)
{
    // Spacing 3.175: a diamond with corners exactly on lines of the pattern.
    const double s = 3.175;
    const std::vector<Ring> rings{{{0, -2 * s, 0}, {2 * s, 0, 0}, {0, 2 * s, 0}, {-2 * s, 0, 0}}};
    const auto lines = patternLines(rings, L"LINE", 0.0, 1.0);
    ASSERT_THAT(lines, SizeIs(3)); // at -s, 0 and s; the tips are points
    for (const PatternLine &line : lines)
        EXPECT_NEAR(line.x2 - line.x1, 4 * s - 2 * std::abs(line.y1), 1e-9);
}

TEST(PatternLines, ADensePatternIsThinnedInsteadOfFillingTheMemory)
{
    const auto lines = patternLines(std::vector<Ring>{square(0, 0, 1e6)}, L"ANSI31", 0.0, 1e-6);
    EXPECT_GT(lines.size(), static_cast<std::size_t>(kMostPatternLines) / 3);
    EXPECT_LE(lines.size(), static_cast<std::size_t>(kMostPatternLines) + 1);
}

TEST(PatternLines, RingsOfNothingGiveNothing)
{
    EXPECT_THAT(patternLines(std::vector<Ring>{}, L"ANSI31", 0.0, 1.0), IsEmpty());
    EXPECT_THAT(patternLines(std::vector<Ring>{{}}, L"ANSI31", 0.0, 1.0), IsEmpty());
    EXPECT_THAT(patternLines(std::vector<Ring>{{{1, 1, 0}}}, L"ANSI31", 0.0, 1.0), IsEmpty());
    EXPECT_THAT(patternLines(std::vector<Ring>{{{1, 1, 1}, {1, 1, 1}}}, L"ANSI31", 0.0, 1.0), IsEmpty());
    const Ring broken{{NAN, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    EXPECT_THAT(patternLines(std::vector<Ring>{broken}, L"ANSI31", 0.0, 1.0), IsEmpty());
}

TEST(PatternLines, NamesAreKnownInAnyCaseAndUnknownOnesStandIn)
{
    const std::vector<Ring> rings{square(0, 0, 50)};
    const auto lining = patternLines(rings, L"ANSI31", 0.0, 1.0);
    EXPECT_EQ(patternLines(rings, L"ansi31", 0.0, 1.0), lining);
    EXPECT_EQ(patternLines(rings, L"something else", 0.0, 1.0), lining);
    EXPECT_EQ(patternLines(rings, L"ANSI31", 0.0, 0.0), lining);
    EXPECT_THAT(patternLines(rings, L"SOLID", 0.0, 1.0), IsEmpty());
    EXPECT_GT(patternLines(rings, L"NET", 0.0, 1.0).size(), lining.size());
}

TEST(PatternLines, BrokenLinesComeAsTheirDashes)
{
    // Lines of y = k; dashes of 1 and gaps of 1.5, which start 0.25 farther on each next line.
    const HatchFamily family{0.0, 0.5, 0.0, 0.25, 1.0, {1.0, -1.5}};
    const auto lines = patternLines(std::vector<Ring>{square(0.1, 0.1, 50)}, std::vector{family});
    double length = 0.0;
    for (const PatternLine &line : lines) {
        const double start = 0.5 + 0.25 * std::round(line.y1);
        const double from = line.x1 - start, phase = from - std::floor(from / 2.5 + 1e-9) * 2.5;
        EXPECT_LE(phase + line.x2 - line.x1, 1.0 + 1e-9) << line.x1 << " " << line.y1;
        EXPECT_EQ(line.y1, line.y2);
        EXPECT_GE(line.x1, 0.1);
        EXPECT_LE(line.x2, 50.1);
        length += line.x2 - line.x1;
    }
    EXPECT_NEAR(length, 50 * 50 / 2.5, 50.0);
}

TEST(PatternLines, DashesFollowADownwardOffsetToo)
{
    const std::vector<Ring> rings{square(0, 0, 20)};
    const HatchFamily up{0.3, 1.0, 2.0, 0.4, 1.0, {1.0, -0.5, 0.0, -0.5}};
    HatchFamily down = up;
    down.offsetX = -up.offsetX;
    down.offsetY = -up.offsetY;
    auto a = patternLines(rings, std::vector{up}), b = patternLines(rings, std::vector{down});
    ASSERT_EQ(a.size(), b.size());
    const auto order = [](const PatternLine &l, const PatternLine &r) {
        return std::tie(l.y1, l.x1) < std::tie(r.y1, r.x1);
    };
    std::sort(a.begin(), a.end(), order);
    std::sort(b.begin(), b.end(), order);
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_NEAR(a[i].x1, b[i].x1, 1e-9);
        EXPECT_NEAR(a[i].y2, b[i].y2, 1e-9);
    }
}

TEST(PatternLines, MoreDashesThanAnybodySeesAreDrawnUnbroken)
{
    const HatchFamily family{0.0, 0.0, 0.0, 0.0, 1.0, {1e-9, -1e-9}};
    EXPECT_THAT(patternLines(std::vector<Ring>{square(0.5, 0.5, 10)}, std::vector{family}), SizeIs(10));
    const HatchFamily fine{0.0, 0.0, 0.0, 0.0, 1e-7, {1e-15, -1e-15}};
    EXPECT_LE(patternLines(std::vector<Ring>{square(5e6, 5e6, 1e-6)}, std::vector{fine}).size(), 400000u);
    const HatchFamily broken{0.0, 0.0, 0.0, 0.0, INFINITY, {}};
    EXPECT_THAT(patternLines(std::vector<Ring>{square(0, 0, 10)}, std::vector{broken}), IsEmpty());
}

// --- Patterns as a view shows them

TEST(PatternLines, AViewGetsThePiecesOfItsPartAndNoOthers)
{
    // A dashed pattern over a ring with a hole and an arc, whole and in two parts that touch.
    const std::vector<Ring> rings{{{0, 0, 0}, {100, 0, 0.6}, {100, 80, 0}, {0, 80, 0}}, square(30, 30, 20)};
    for (const wchar_t *pattern : {L"ANSI31", L"NET3", L"DASH"}) {
        const auto families = hatchFamilies(pattern, 0.3, 0.7);
        const double whole = lengthOf(patternLines(rings, families));
        double together = 0.0;
        for (const Extents &part : {Extents{-50, -50, 41, 200}, Extents{41, -50, 300, 200}}) {
            const auto lines = patternLines(rings, families, {part});
            double inside = 0.0;
            for (const PatternLine &line : lines) {
                // What is cut off at the part's turned box may reach beyond its sides, so only its inside is counted.
                double from = 0.0, to = 1.0;
                const double dx = line.x2 - line.x1;
                for (const double side : {part.minX, part.maxX}) {
                    const double at = (side - line.x1) / dx;
                    if ((dx > 0.0) == (side == part.minX))
                        from = std::max(from, at);
                    else
                        to = std::min(to, at);
                }
                inside += std::max(0.0, to - from) * std::hypot(dx, line.y2 - line.y1);
            }
            together += inside;
            EXPECT_LE(lengthOf(lines), whole + 1e-9);
        }
        EXPECT_NEAR(together, whole, 1e-6 * whole);
    }
}

TEST(PatternLines, AViewThatShowsNothingOfTheRingsGetsNothing)
{
    const std::vector<Ring> rings{square(0, 0, 100)};
    const auto families = hatchFamilies(L"ANSI31", 0.0, 1.0);
    const auto lengthIn = [&](const Extents &part) { return lengthOf(patternLines(rings, families, {part})); };
    EXPECT_EQ(lengthIn({300, 0, 400, 100}), 0.0);
    EXPECT_EQ(lengthIn({-400, 0, -300, 100}), 0.0);
    EXPECT_EQ(lengthIn({300, 300, 400, 400}), 0.0);
    EXPECT_GT(lengthIn({50, 50, 60, 60}), 0.0);
    EXPECT_LT(lengthIn({50, 50, 60, 60}), 0.03 * lengthIn({-10, -10, 110, 110}));
}

TEST(PatternLines, AViewGetsNoMoreLinesThanItCanTellApart)
{
    const std::vector<Ring> rings{square(0, 0, 1000)};
    const Extents part{0, 0, 1000, 1000};
    for (const double scale : {1e-3, 1e-6, 1e-9}) {
        const auto lines = patternLines(rings, hatchFamilies(L"LINE", 0.0, scale), {part, 10.0});
        EXPECT_LE(lines.size(), 101u) << scale;
        EXPECT_GT(lines.size(), 48u) << scale;
        const auto dots = patternLines(rings, hatchFamilies(L"DOTS", 0.0, scale), {part, 10.0});
        EXPECT_LE(dots.size(), 101u) << scale;
        EXPECT_GT(lengthOf(dots), 48000.0) << "dots that run together are lines";
    }
    // A coarse pattern is left as it is.
    EXPECT_EQ(patternLines(rings, hatchFamilies(L"LINE", 0.0, 10.0), {part, 10.0}),
              patternLines(rings, hatchFamilies(L"LINE", 0.0, 10.0)));
    EXPECT_EQ(patternLines(rings, hatchFamilies(L"DASH", 0.0, 10.0), {part, 10.0}).size(),
              patternLines(rings, hatchFamilies(L"DASH", 0.0, 10.0)).size());
}

// --- The hatch of the contract
// ---------------------------------------------------------------------------------------------

TEST_F(HatchTest, ARegionWithTwoIslandsIsHatchedWithTwoHoles)
{
    const auto outer = addRing(square(0, 0, 100));
    const auto hatch = preview(outer, {addRing(square(10, 10, 20)), addRing(circle(70, 70, 20))}, 0.05, 0.0);
    EXPECT_THAT(hatch->loops(), SizeIs(3));
    EXPECT_NEAR(lengthOf(hatch->lines()) * 3.175 * 0.05, 10000.0 - 400.0 - kPi * 400.0, 20.0);
}

TEST_F(HatchTest, AngleAndScaleShowInItsLines)
{
    const auto outer = addRing(square(0, 0, 100));
    const auto upright = preview(outer, {}, 1.0, 45.0);
    for (const auto &line : upright->lines())
        EXPECT_NEAR(line.x1, line.x2, 1e-9);
    const double wide = lengthOf(preview(outer, {}, 2.5, 0.0)->lines());
    EXPECT_NEAR(lengthOf(preview(outer, {}, 1.0, 0.0)->lines()) / wide, 2.5, 0.1);
}

TEST_F(HatchTest, EveryClosedCurveMakesALoop)
{
    EllipseEntity::Shape ellipse;
    ellipse.majorAxis = {20, 0, 0};
    ellipse.ratio = 0.5;
    struct Row {
        AcDbObjectId id;
        double area;
    };
    const Row rows[] = {
        {addRing(square(0, 0, 10)), 100.0},
        {add(std::make_unique<AcDb2dPolyline>(square(0, 0, 10), true)), 100.0},
        {add(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0, 1}, {10, 0, 1}, {10, 10, 1}, {0, 10, 1}},
                                              true)),
         100.0},
        {add(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 10.0)), 100.0 * kPi},
        {add(std::make_unique<EllipseEntity>(ellipse)), 200.0 * kPi},
        {add(std::make_unique<AcDbPolyline>(Ring{{0, 0, 1}, {10, 0, 1}}, true)), 25.0 * kPi},
    };
    for (const Row &row : rows) {
        AcDbHatch hatch;
        ASSERT_EQ(hatch.appendLoop(AcDbHatch::kExternal, {row.id}), Acad::eOk) << row.area;
        ASSERT_THAT(hatch.loops(), SizeIs(1));
        EXPECT_NEAR(std::abs(ringAreaOf(hatch.loops()[0].vertices)), row.area, 0.1);
    }
}

TEST_F(HatchTest, WhatIsNoClosedCurveMakesNone)
{
    AcDbHatch hatch;
    const auto closed = addRing(square(0, 0, 10));
    const auto line = add(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    const auto open = add(std::make_unique<AcDbPolyline>(square(0, 0, 10), false));
    const auto text = add(std::make_unique<TextEntity>(TextShape{}));
    const auto arc = add(std::make_unique<AcDbArc>(AcGePoint3d(0, 0), 1.0, 0.0, 1.0));
    for (const AcDbObjectId &id : {line, open, text, arc, idOf(m_drawing->modelSpace())}) {
        EXPECT_EQ(hatch.appendLoop(AcDbHatch::kExternal, {id}), Acad::eInvalidInput);
        EXPECT_EQ(hatch.appendLoop(AcDbHatch::kExternal, {closed, id}), Acad::eInvalidInput);
    }
    EXPECT_NE(hatch.appendLoop(AcDbHatch::kExternal, {AcDbObjectId()}), Acad::eOk);
    EXPECT_EQ(hatch.appendLoop(AcDbHatch::kExternal, {}), Acad::eInvalidInput);
    const auto erased = addRing(square(0, 0, 5));
    m_drawing->erase(*m_drawing->modelSpace().entities().back());
    EXPECT_NE(hatch.appendLoop(AcDbHatch::kExternal, {erased}), Acad::eOk);
    EXPECT_THAT(hatch.loops(), IsEmpty());
    EXPECT_EQ(hatch.evaluateHatch(), Acad::eDegenerateGeometry);
}

TEST_F(HatchTest, ALoopWithoutAreaIsDegenerate)
{
    AcDbHatch hatch;
    hatch.setPattern(AcDbHatch::kPreDefined, L"ANSI31");
    ASSERT_EQ(hatch.appendLoop(AcDbHatch::kExternal, {addRing({{0, 0, 0}, {10, 0, 0}})}), Acad::eOk);
    EXPECT_EQ(hatch.evaluateHatch(false), Acad::eDegenerateGeometry);
}

TEST_F(HatchTest, ItStandsInModelSpaceAndChangesOnlyWhenOpenForWriting)
{
    const auto outer = addRing(square(0, 0, 100));
    AcDbHatch *hatch = preview(outer, {}, 1.0, 0.0).release();
    EXPECT_EQ(hatch->setColorIndex(30, true), Acad::eOk);
    AcDbObjectId id;
    ASSERT_EQ(CZEMCDraw::appendToModelSpace(hatch, id), Acad::eOk);
    EXPECT_TRUE(hatch->isWriteEnabled());
    EXPECT_EQ(hatch->close(), Acad::eOk);
    EXPECT_EQ(m_drawing->modelSpace().entities().back(), hatch);
    EXPECT_EQ(hatch->colorIndex(), 30);
    EXPECT_EQ(hatch->setPatternScale(2.0), Acad::eNotOpenForWrite);
    EXPECT_EQ(hatch->patternScale(), 1.0);

    const double before = lengthOf(hatch->lines());
    const auto revision = m_drawing->revision();
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(hatch->setPatternScale(2.0), Acad::eOk);
    EXPECT_GT(m_drawing->revision(), revision);
    EXPECT_NEAR(lengthOf(hatch->lines()), before / 2.0, before * 0.05);
    entity->close();
}

TEST_F(HatchTest, ItsLoopsAreItsOwn)
{
    const auto outer = addRing(square(0, 0, 100));
    const auto hatch = preview(outer, {}, 1.0, 0.0);
    AcDbEntity *entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, outer, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(entity->erase(true), Acad::eOk);
    entity->close();
    EXPECT_THAT(hatch->loops(), SizeIs(1));
    EXPECT_FALSE(hatch->lines().empty());
}

namespace {

/// A drawing with the pattern's own lines: horizontal, 2 apart.
const std::string kForeignHatch = R"(  0
HATCH
  5
A0
330
1F
100
AcDbEntity
  8
0
100
AcDbHatch
 10
0.0
 20
0.0
 30
0.0
210
0.0
220
0.0
230
1.0
  2
MYPATTERN
 70
0
 71
0
 91
1
 92
3
 72
0
 73
1
 93
4
 10
0.0
 20
0.5
 10
10.0
 20
0.5
 10
10.0
 20
10.5
 10
0.0
 20
10.5
 97
0
 75
0
 76
2
 52
0.0
 41
1.0
 77
0
 78
1
 53
0.0
 43
0.0
 44
0.0
 45
0.0
 46
2.0
 79
0
 98
0
)";

std::string newDrawingWith(const std::string &entities)
{
    std::string text = newDrawingText();
    const std::string mark = "  2\nENTITIES\n";
    return text.insert(text.find(mark) + mark.size(), entities);
}

} // namespace

TEST_F(HatchTest, TheLinesOfAFilesOwnPatternAreUsedUntilItIsSetAnew)
{
    const auto loaded = Drawing::read(newDrawingWith(kForeignHatch));
    ASSERT_TRUE(loaded.drawing);
    ASSERT_THAT(loaded.drawing->modelSpace().entities(), SizeIs(1));
    AcDbEntity *entity = loaded.drawing->modelSpace().entities()[0];
    ASSERT_EQ(entity->isA(), AcDbHatch::desc());
    auto &hatch = static_cast<AcDbHatch &>(*entity);
    ASSERT_THAT(hatch.lines(), SizeIs(5)); // 2, 4, 6, 8, 10
    for (const auto &line : hatch.lines())
        EXPECT_NEAR(line.x2 - line.x1, 10.0, 1e-9);
    EXPECT_NEAR(hatch.lines()[0].y1, 2.0, 1e-12);
    setWorkingDrawing(loaded.drawing.get());
    ASSERT_EQ(acdbOpenAcDbEntity(entity, idOf(hatch), AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, L"ANSI31"), Acad::eOk);
    entity->close();
    setWorkingDrawing(m_drawing.get());
    EXPECT_EQ(hatch.families(), hatchFamilies(L"ANSI31", 0.0, 1.0));
}

TEST_F(HatchTest, WrittenAndReadBackItIsTheSame)
{
    Ring ring = square(0, 0, 100);
    ring[1].bulge = 0.5;
    AcDbHatch *hatch = preview(addRing(ring), {addRing(circle(50, 50, 10))}, 2.5, 45.0).release();
    hatch->setColorIndex(30);
    AcDbObjectId id;
    CZEMCDraw::appendToModelSpace(hatch, id);
    hatch->close();
    const auto again = Drawing::read(m_drawing->write());
    ASSERT_TRUE(again.drawing);
    EXPECT_FALSE(again.report.damaged());
    const auto &back = static_cast<AcDbHatch &>(*again.drawing->modelSpace().entities().back());
    ASSERT_EQ(back.isA(), AcDbHatch::desc());
    EXPECT_EQ(back.patternName(), L"ANSI31");
    EXPECT_NEAR(back.patternAngle(), hatch->patternAngle(), 1e-12);
    EXPECT_EQ(back.patternScale(), 2.5);
    EXPECT_EQ(back.colorIndex(), 30);
    ASSERT_THAT(back.loops(), SizeIs(2));
    EXPECT_EQ(back.loops()[0].vertices, ring);
    ASSERT_EQ(back.lines().size(), hatch->lines().size());
    for (std::size_t i = 0; i < back.lines().size(); ++i)
        EXPECT_NEAR(back.lines()[i].x1, hatch->lines()[i].x1, 1e-9);
}

TEST_F(HatchTest, AnotherProgramReadsItsPathsAndPattern)
{
    const std::string python = "/usr/bin/python3";
    if (std::system((python + " -c 'import ezdxf' >/dev/null 2>&1").c_str()) != 0)
        GTEST_SKIP() << "python3-ezdxf is not installed";
    AcDbObjectId id;
    AcDbHatch *hatch = preview(addRing(square(0, 0, 100)), {addRing(circle(50, 50, 10))}, 2.0, 45.0).release();
    CZEMCDraw::appendToModelSpace(hatch, id);
    hatch->close();
    std::string folder = (std::filesystem::temp_directory_path() / "velmor-hatch-XXXXXX").string();
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    ASSERT_TRUE(m_drawing->save(folder + "/hatch.dxf"));
    std::ofstream(folder + "/check.py") << R"(import sys, math, ezdxf
doc = ezdxf.readfile(sys.argv[1])
audit = doc.audit()
assert not audit.errors and not audit.fixes, audit.errors + audit.fixes
hatch, = doc.modelspace().query('HATCH')
assert hatch.dxf.pattern_name == 'ANSI31' and hatch.dxf.associative == 0 and hatch.dxf.hatch_style == 0
assert hatch.dxf.pattern_type == 1 and hatch.dxf.pattern_scale == 2 and abs(hatch.dxf.pattern_angle - 45) < 1e-9
assert [len(path.vertices) for path in hatch.paths] == [4, 2]
assert [path.path_type_flags & 1 for path in hatch.paths] == [1, 1]
assert hatch.paths[1].vertices[0][2] == 1
line, = hatch.pattern.lines
assert abs(line.angle - 90) < 1e-9 and abs(abs(line.offset[0]) - 6.35) < 1e-9 and abs(line.offset[1]) < 1e-9
)";
    EXPECT_EQ(std::system((python + " " + folder + "/check.py " + folder + "/hatch.dxf").c_str()), 0);
    std::filesystem::remove_all(folder);
}

TEST_F(HatchTest, InADrawingThatKnowsNoHatchesItsLinesAreWritten)
{
    const auto old = Drawing::read("  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1009\n  0\nENDSEC\n  0\nSECTION\n"
                                   "  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n");
    ASSERT_TRUE(old.drawing);
    setWorkingDrawing(old.drawing.get());
    const auto outer = old.drawing->append(std::make_unique<AcDbPolyline>(square(0, 0, 100), true));
    AcDbHatch *hatch = preview(outer, {}, 1.0, 0.0).release();
    AcDbObjectId id;
    CZEMCDraw::appendToModelSpace(hatch, id);
    hatch->close();
    const std::string text = old.drawing->write();
    EXPECT_THAT(text, testing::Not(testing::HasSubstr("HATCH\n")));
    const auto again = Drawing::read(text);
    ASSERT_TRUE(again.drawing);
    std::size_t lines = 0;
    for (const auto &block : again.drawing->blocks())
        if (!block->isLayout())
            for (const AcDbEntity *entity : block->entities())
                lines += kindOf(*entity) == EntityKind::Line;
    EXPECT_EQ(lines, hatch->lines().size());
    setWorkingDrawing(m_drawing.get());
}

TEST_F(HatchTest, BadValuesAreRefused)
{
    AcDbHatch hatch;
    EXPECT_EQ(hatch.setPatternScale(0.0), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setPatternScale(-1.0), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setPatternScale(NAN), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setPatternAngle(INFINITY), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setNormal({0, 0, 0}), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, nullptr), Acad::eInvalidInput);
    EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, L""), Acad::eInvalidInput);
    EXPECT_EQ(hatch.patternScale(), 1.0);
}

TEST_F(HatchTest, TheJournalTellsItsMaking)
{
    const auto outer = addRing(square(0, 0, 100)), inner = addRing(square(10, 10, 10));
    Journal::instance().setRecording(true);
    preview(outer, {inner}, 2.5, 45.0);
    Journal::instance().setRecording(false);
    std::vector<std::string> operations;
    for (const JournalEntry &entry : Journal::instance().entries())
        operations.push_back(entry.operation.substr(std::string("AcDbHatch::").size()));
    EXPECT_THAT(operations,
                testing::ElementsAre("setNormal", "setElevation", "setPatternAngle", "setPatternScale", "setPattern",
                                     "setAssociative", "setHatchStyle", "appendLoop", "appendLoop", "evaluateHatch"));
    EXPECT_THAT(Journal::instance().entries()[7].arguments, testing::ElementsAre("1", journalText(outer)));
    EXPECT_THAT(Journal::instance().entries()[4].arguments, testing::ElementsAre("1", "ANSI31"));
}
