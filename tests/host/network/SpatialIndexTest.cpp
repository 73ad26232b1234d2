#include "host/network/SpatialIndex.h"

#include "tests/host/network/NetworkFixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

namespace velmor {
namespace {

using ZEMGis::Topology::CEntity;
using ZEMGis::Topology::CTopoEditor;

constexpr double kPi = 3.14159265358979323846;

CurvePath closedPath(std::vector<AcDbPolyline::Vertex> vertices)
{
    return {std::move(vertices), true};
}

TEST(PathDistance, IsZeroInsideAndToTheNearestSideOutside)
{
    const CurvePath square = closedPath({{0, 0}, {10, 0}, {10, 10}, {0, 10}});

    EXPECT_EQ(distanceTo(square, 5, 5), 0.0);
    EXPECT_EQ(distanceTo(square, 12, 5), 2.0);
    EXPECT_EQ(distanceTo(square, 13, 14), 5.0);
}

TEST(PathDistance, OfAnOpenPathDoesNotCountTheClosingSide)
{
    const CurvePath open{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, false};
    EXPECT_EQ(distanceTo(open, 0, 5), 5.0);
}

TEST(PathDistance, ArcsCountAsArcsInsideAndOut)
{
    // A circle of radius 5 about the origin, in two halves, either way round.
    for (const double bulge : {1.0, -1.0}) {
        const CurvePath circle = closedPath({{-5, 0, bulge}, {5, 0, bulge}});
        EXPECT_EQ(distanceTo(circle, 0, 4.9), 0.0);
        EXPECT_EQ(distanceTo(circle, 0, 0.1), 0.0);
        EXPECT_NEAR(distanceTo(circle, 0, 7), 2.0, 1e-12);
        EXPECT_NEAR(distanceTo(circle, 6, 8), 5.0, 1e-12);
    }
    // A square whose right side is pushed in by a half circle of radius 5.
    const CurvePath bitten = closedPath({{0, 0}, {10, 0, -1.0}, {10, 10}, {0, 10}});
    EXPECT_NEAR(distanceTo(bitten, 8, 5), 3.0, 1e-12) << "in the bite, so outside";
    EXPECT_EQ(distanceTo(bitten, 4, 5), 0.0);
    // The same side pushed out.
    const CurvePath bulging = closedPath({{0, 0}, {10, 0, 1.0}, {10, 10}, {0, 10}});
    EXPECT_EQ(distanceTo(bulging, 14, 5), 0.0);
    EXPECT_NEAR(distanceTo(bulging, 17, 5), 2.0, 1e-12);
    // Three quarters of a circle: an arc greater than a half, closed by its chord.
    const CurvePath most = closedPath({{5, 0, std::tan(3 * kPi / 8)}, {0, -5}});
    EXPECT_EQ(distanceTo(most, -3, 3), 0.0);
    EXPECT_EQ(distanceTo(most, 1, 1), 0.0);
    EXPECT_GT(distanceTo(most, 3.4, -3.4), 0.0) << "beyond the chord";
}

TEST(PathDistance, AgreesWithFineChordsOnRandomRings)
{
    std::mt19937 random(7); // fixed, so that a failure repeats
    std::uniform_real_distribution<double> place(-20, 20), bend(-0.9, 0.9), radius(6, 14);
    int inside = 0;
    for (int round = 0; round < 200; ++round) {
        CurvePath ring = closedPath({}), chords = closedPath({});
        for (int i = 0; i < 7; ++i) {
            const double angle = 2 * kPi * i / 7, r = radius(random);
            ring.vertices.push_back({r * std::cos(angle), r * std::sin(angle), 0.3 * bend(random)});
        }
        for (std::size_t i = 0; i < 7; ++i) {
            const auto &a = ring.vertices[i], &b = ring.vertices[(i + 1) % 7];
            for (int step = 0; step < 400; ++step) {
                // The point of the arc over the chord's fraction of the angle, by the tangent half way formula.
                const double theta = 4 * std::atan(a.bulge), t = step / 400.0;
                if (std::abs(theta) < 1e-9) {
                    chords.vertices.push_back({a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
                    continue;
                }
                const double half = theta / 2, dx = b.x - a.x, dy = b.y - a.y;
                const double along = std::sin(t * half) / std::sin(half), turn = t * half - half;
                chords.vertices.push_back({a.x + along * (dx * std::cos(turn) - dy * std::sin(turn)),
                                           a.y + along * (dx * std::sin(turn) + dy * std::cos(turn))});
            }
        }
        const double x = place(random), y = place(random);
        const double exact = distanceTo(ring, x, y);
        EXPECT_NEAR(exact, distanceTo(chords, x, y), 1e-3) << round;
        inside += exact == 0.0;
    }
    EXPECT_GT(inside, 20) << "too few useful points";
    EXPECT_LT(inside, 180);
}

class SpatialIndexOfSections : public test::NetworkFixture {
protected:
    /// A closed square with its lower left corner at x, y, as an entity of the network.
    CEntity *square(const std::wstring &name, double x, double y, double side)
    {
        makeSection(
            std::make_unique<AcDbPolyline>(
                std::vector<AcDbPolyline::Vertex>{{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}}, true),
            {name, name, 0.0, L"", L""});
        return network().sectionByName(name).get();
    }
    std::wstring closest(const AcGePoint3d &point, double *radius = nullptr)
    {
        const auto index = CTopoEditor::Instance()->CreateCustomSpatialIndex(entities);
        const CEntity *found = index->GetClosestEntity(point, radius);
        return found ? found->GetName() : L"none";
    }
    std::vector<CEntity *> entities;
};

TEST_F(SpatialIndexOfSections, AnEmptyIndexFindsNothing)
{
    double radius = 1e9;
    EXPECT_EQ(closest({0, 0}, &radius), L"none");
    EXPECT_EQ(radius, 1e9);
}

TEST_F(SpatialIndexOfSections, TheNearestWithinTheRadiusIsFoundAndItsDistanceTold)
{
    entities = {square(L"A", 0, 0, 10), square(L"B", 100, 0, 10)};
    double radius = 5.0;

    EXPECT_EQ(closest({12, 5}, &radius), L"A");
    EXPECT_EQ(radius, 2.0);
    radius = 1.0;
    EXPECT_EQ(closest({12, 5}, &radius), L"none");
    EXPECT_EQ(radius, 1.0) << "untouched by a miss";
    radius = 2.0;
    EXPECT_EQ(closest({12, 5}, &radius), L"A") << "the radius itself counts";
    EXPECT_EQ(closest({90, 5}), L"B") << "without a radius there is no limit";
}

TEST_F(SpatialIndexOfSections, InsideAnIslandTheIslandComesBeforeItsMainArea)
{
    entities = {square(L"main", 0, 0, 100), square(L"island", 40, 40, 10), square(L"later", -10, -10, 120)};
    double radius = 3.0;

    EXPECT_EQ(closest({45, 45}, &radius), L"island");
    EXPECT_EQ(radius, 0.0);
    EXPECT_EQ(closest({20, 20}, &radius), L"main");
}

TEST_F(SpatialIndexOfSections, ANearCornerOfABoxDoesNotHideANearerEntity)
{
    // The box of the diagonal covers the point, the line itself is farther than the square.
    makeSection(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(100, 100)),
                {L"diagonal", L"diagonal", 0.0, L"", L""});
    entities = {network().sectionByName(L"diagonal").get(), square(L"square", 90, -20, 10)};

    EXPECT_EQ(closest({95, 0}), L"square");
    EXPECT_EQ(closest({60, 55}), L"diagonal");
}

TEST_F(SpatialIndexOfSections, NullPointersErasedEntitiesAndPointsThatAreNoneArePassedOver)
{
    CEntity *gone = square(L"gone", 0, 0, 10);
    entities = {nullptr, gone, square(L"far", 50, 0, 10)};
    const auto index = CTopoEditor::Instance()->CreateCustomSpatialIndex(entities);
    drawing->erase(*dynamic_cast<AcDbEntity *>(drawing->findByHandle(gone->GetObjectId().handle().value())));

    double radius = 100.0;
    EXPECT_EQ(index->GetClosestEntity({5, 5}, &radius)->GetName(), L"far");
    EXPECT_EQ(index->GetClosestEntity({std::numeric_limits<double>::quiet_NaN(), 0}, &radius), nullptr);
    radius = -1.0;
    EXPECT_EQ(index->GetClosestEntity({55, 5}, &radius), nullptr);
}

TEST_F(SpatialIndexOfSections, PointsAreFoundByTheirPlace)
{
    addNode(L"A", 3, 4);
    addNode(L"B", 30, 40);
    for (const auto &node : network().nodes())
        entities.push_back(node.get());
    double radius = 10.0;

    EXPECT_EQ(closest({0, 0}, &radius), L"A");
    EXPECT_EQ(radius, 5.0);
}

TEST_F(SpatialIndexOfSections, TheNearestOfManyIsFoundWhateverStandsBefore)
{
    // The boxes of all the diagonals cover the point, and those that are gone stand nearer than any other.
    for (int i = 0; i < 60; ++i)
        makeSection(std::make_unique<AcDbLine>(AcGePoint3d(-200 - i, 0), AcGePoint3d(0, 200 + i)),
                    {L"diagonal" + std::to_wstring(i), L"diagonal" + std::to_wstring(i), 0.0, L"", L""});
    for (const auto &section : network().sections())
        entities.push_back(section.get());
    std::vector<CEntity *> gone;
    for (int i = 0; i < 40; ++i)
        gone.push_back(square(L"gone" + std::to_wstring(i), -5, 5, 10));
    entities.insert(entities.end(), gone.begin(), gone.end());
    entities.push_back(square(L"there", 20, 0, 5));
    const auto index = CTopoEditor::Instance()->CreateCustomSpatialIndex(entities);
    for (const CEntity *entity : gone)
        drawing->erase(*dynamic_cast<AcDbEntity *>(drawing->findByHandle(entity->GetObjectId().handle().value())));

    EXPECT_EQ(index->GetClosestEntity({-4, 6}, nullptr)->GetName(), L"there");
    double radius = 30.0;
    EXPECT_EQ(index->GetClosestEntity({-4, 4}, &radius)->GetName(), L"there");
    EXPECT_EQ(radius, 24.0);
    radius = 23.0;
    EXPECT_EQ(index->GetClosestEntity({-4, 4}, &radius), nullptr);
}

} // namespace
} // namespace velmor
