#include "host/editor/DisplayIndex.h"
#include "host/editor/EntityParts.h"
#include "host/editor/Picking.h"
#include "host/editor/Selection.h"
#include "tests/host/editor/ViewShapes.h"

#include <gmock/gmock.h>

#include <random>

namespace velmor {
namespace {

using test::kPi;
using testing::ElementsAre;
using testing::IsEmpty;

class Picking : public testing::Test, protected test::ViewShapes {
protected:
    std::vector<AcDbObjectId> in(const Extents &window, SelectBy by)
    {
        const AcDbObjectIdArray ids = entitiesIn(*drawing, window, by);
        return {ids.begin(), ids.end()};
    }
    /// Inside: the window takes it either way. Cut: only by crossing. Beside: within its extents, yet not touched.
    void expectSelection(AcDbEntity &entity, const Extents &inside, const Extents &cut, const Extents &beside)
    {
        const AcDbObjectId id = idOf(entity);
        EXPECT_THAT(in(inside, SelectBy::Window), ElementsAre(id));
        EXPECT_THAT(in(inside, SelectBy::Crossing), ElementsAre(id));
        EXPECT_THAT(in(cut, SelectBy::Window), IsEmpty());
        EXPECT_THAT(in(cut, SelectBy::Crossing), ElementsAre(id));
        EXPECT_THAT(in(beside, SelectBy::Window), IsEmpty());
        EXPECT_THAT(in(beside, SelectBy::Crossing), IsEmpty());
    }
};

// --- Windows on each kind

TEST_F(Picking, ALineInAWindow)
{
    expectSelection(line(0, 0, 10, 10), {-1, -1, 11, 11}, {4, 4, 6, 6}, {6, 0, 10, 3});
}

TEST_F(Picking, AnArcInAWindow)
{
    // A quarter; the box in the corner of its extents holds the chord's middle, but nothing of the arc.
    expectSelection(arc(0, 0, 10, 0.0, 0.5 * kPi), {-0.1, -0.1, 10.1, 10.1}, {6.5, 6.5, 7.5, 7.5}, {3, 3, 6, 6});
}

TEST_F(Picking, AnArcIsCutWithNoEndInTheWindow)
{
    AcDbEntity &entity = arc(0, 0, 10, 0.0, 0.5 * kPi);
    EXPECT_THAT(in({9, 3, 12, 5}, SelectBy::Crossing), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({-12, 3, -9, 5}, SelectBy::Crossing), IsEmpty()); // on its circle
}

TEST_F(Picking, ACircleInAWindow)
{
    expectSelection(circle(0, 0, 10), {-10, -10, 10, 10}, {9, -1, 11, 1}, {-5, -5, 5, 5});
}

TEST_F(Picking, AnEllipseInAWindow)
{
    expectSelection(ellipse(0, 0, 10, 0, 0.5), {-10.001, -5.001, 10.001, 5.001}, {-1, 4.9, 1, 6}, {8, 4, 10, 5});
}

TEST_F(Picking, ASplineInAWindow)
{
    // A hump through (5, 7.5).
    expectSelection(spline({{0, 0}, {0, 10}, {10, 10}, {10, 0}}), {-0.1, -0.1, 10.1, 7.6}, {4, 7, 6, 8}, {4, 1, 6, 6});
}

TEST_F(Picking, LightPolylinesInAWindow)
{
    // With a half circle below from (10, 0) to (20, 0), down to y = -5.
    expectSelection(polyline({{0, 0, 0}, {10, 0, 1.0}, {20, 0, 0}}), {-0.1, -5.1, 20.1, 0.1}, {14, -6, 16, -4},
                    {13, -3, 17, -1});
}

TEST_F(Picking, AWindowThatLeavesOutABulgeTakesNotThePolyline)
{
    polyline({{0, 0, 0}, {10, 0, 1.0}, {20, 0, 0}});
    EXPECT_THAT(in({-0.1, -4.9, 20.1, 0.1}, SelectBy::Window), IsEmpty());
}

TEST_F(Picking, OldPolylinesInAWindow)
{
    expectSelection(polyline2d({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, true), {-1, -1, 11, 11}, {4, 4, 6, 6},
                    {1, 6, 3, 9});
}

TEST_F(Picking, SpatialPolylinesInAWindow)
{
    expectSelection(polyline3d({{0, 0, 5}, {10, 0, 6}, {10, 10, 7}}), {-1, -1, 11, 11}, {9, 4, 11, 6}, {1, 3, 8, 9});
}

TEST_F(Picking, APointInAWindow)
{
    AcDbEntity &entity = point(5, 5);
    EXPECT_THAT(in({4, 4, 6, 6}, SelectBy::Window), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({5, 5, 6, 6}, SelectBy::Crossing), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({5.1, 4, 6, 6}, SelectBy::Crossing), IsEmpty());
}

TEST_F(Picking, TextsInAWindow)
{
    AcDbEntity &entity = text(0, 0, 10, L"abc");
    EXPECT_THAT(in({-1, -1, 60, 11}, SelectBy::Window), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({5, 4, 6, 5}, SelectBy::Window), IsEmpty());
    EXPECT_THAT(in({5, 4, 6, 5}, SelectBy::Crossing), ElementsAre(idOf(entity))); // its inside
    EXPECT_THAT(in({5, 12, 6, 13}, SelectBy::Crossing), IsEmpty());
}

TEST_F(Picking, ReferencesInAWindowWithTheirContents)
{
    AcDbEntity &entity = reference(100, 50, 3.0, 3.0); // a circle of radius 6, a line from x = 97 to 103
    expectSelection(entity, {94, 44, 106, 56}, {105, 49, 107, 51}, {101, 51, 103, 53});
}

TEST_F(Picking, HatchesInAWindow)
{
    AcDbEntity &solid = hatch({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, L"SOLID");
    expectSelection(solid, {-1, -1, 11, 11}, {4, 4, 6, 6}, {10.5, 2, 12, 4});
}

TEST_F(Picking, AWindowIsClosed)
{
    AcDbEntity &entity = line(0, 0, 10, 0);
    EXPECT_THAT(in({0, 0, 10, 0}, SelectBy::Window), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({10, 0, 11, 1}, SelectBy::Crossing), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({10.000001, 0, 11, 1}, SelectBy::Crossing), IsEmpty());
}

TEST_F(Picking, ALongPolylineIsTakenOnceAndOnlyAsAWhole)
{
    test::Vertices vertices;
    for (int i = 0; i <= 300; ++i)
        vertices.push_back({static_cast<double>(i), i % 2 ? 1.0 : 0.0, 0.0});
    AcDbEntity &entity = polyline(vertices);
    EXPECT_THAT(in({-1, -1, 301, 2}, SelectBy::Window), ElementsAre(idOf(entity)));
    EXPECT_THAT(in({-1, -1, 250, 2}, SelectBy::Window), IsEmpty());
    EXPECT_THAT(in({-1, -1, 250, 2}, SelectBy::Crossing), ElementsAre(idOf(entity)));
}

TEST_F(Picking, WhatIsErasedOrHiddenIsNotTaken)
{
    drawing->erase(line(0, 0, 10, 0));
    hide(line(0, 1, 10, 1));
    AcDbEntity &left = line(0, 2, 10, 2);
    EXPECT_THAT(in({-1, -1, 11, 3}, SelectBy::Window), ElementsAre(idOf(left)));
}

TEST_F(Picking, ThousandsComeInTheOrderOfDrawing)
{
    std::vector<AcDbObjectId> expected;
    for (int i = 0; i < 5000; ++i) {
        AcDbEntity &entity = line(i % 70, i % 90, i % 70 + 0.5, i % 90 + 0.5);
        if (i % 70 >= 10 && i % 70 <= 29 && i % 90 >= 10 && i % 90 <= 39)
            expected.push_back(idOf(entity));
    }
    EXPECT_GT(expected.size(), 300u);
    EXPECT_EQ(in({10, 10, 30, 40}, SelectBy::Window), expected);
}

// --- Under the pointer

TEST_F(Picking, TheNearestIsFirstAndOfEquallyNearOnesTheLaterDrawn)
{
    AcDbEntity &below = line(0, 0, 10, 0), &above = line(0, 0, 10, 0), &near = line(0, 0.4, 10, 0.4);
    EXPECT_THAT(entitiesAt(*drawing, {5, 0.3}, 1.0), ElementsAre(&near, &above, &below));
    EXPECT_THAT(entitiesAt(*drawing, {5, 0.0}, 0.2), ElementsAre(&above, &below));
    EXPECT_THAT(entitiesAt(*drawing, {5, 2.0}, 1.0), IsEmpty());
}

TEST_F(Picking, CurvesAreNearWhereTheyAreDrawn)
{
    AcDbEntity &half = arc(0, 0, 10, 0.0, kPi);
    AcDbEntity &bulge = polyline({{100, 0, 1.0}, {120, 0, 0}});
    AcDbEntity &oval = ellipse(200, 0, 10, 0, 0.5);
    EXPECT_EQ(entityAt(*drawing, {0, 10.5}, 1.0), &half);
    EXPECT_EQ(entityAt(*drawing, {0, -10}, 1.0), nullptr); // the other half of its circle
    EXPECT_EQ(entityAt(*drawing, {110, -9.5}, 1.0), &bulge);
    EXPECT_EQ(entityAt(*drawing, {110, 0}, 1.0), nullptr); // its chord
    EXPECT_EQ(entityAt(*drawing, {200, 5.5}, 1.0), &oval);
    EXPECT_EQ(entityAt(*drawing, {200, 0}, 1.0), nullptr);
}

TEST_F(Picking, TheInsideOfATextIsNear)
{
    AcDbEntity &words = text(0, 0, 10, L"abc");
    EXPECT_EQ(entityAt(*drawing, {10, 5}, 0.1), &words);
}

// --- The index behind it

TEST_F(Picking, AfterAnyEditsTheIndexAnswersAsALookAtEveryEntityDoes)
{
    std::mt19937 random(20'261'121);
    const auto uniform = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const auto shape = [&]() -> AcDbEntity & {
        const double size = std::pow(10.0, uniform(-1.0, 3.0)), x = uniform(-5e3, 5e3), y = uniform(-5e3, 5e3);
        switch (random() % 4) {
        case 0:
            return circle(x, y, size);
        case 1:
            return arc(x, y, size, uniform(0, 6), uniform(0, 6));
        case 2: {
            test::Vertices vertices;
            for (int i = 0; i < 80; ++i)
                vertices.push_back({x + uniform(-size, size), y + uniform(-size, size), uniform(-1, 1)});
            return polyline(vertices, random() % 2 == 0);
        }
        default:
            return line(x, y, x + uniform(-size, size), y + uniform(-size, size));
        }
    };
    std::vector<AcDbEntity *> all;
    for (int i = 0; i < 3000; ++i)
        all.push_back(&shape());
    auto &index = drawing->component<DisplayIndex>();
    std::size_t useful = 0;
    for (int round = 0; round < 40; ++round) {
        for (int i = 0; i < 60; ++i) {
            AcDbEntity &entity = *all[random() % all.size()];
            switch (random() % 4) {
            case 0:
                drawing->erase(entity, !entity.isErased());
                break;
            case 1:
                all.push_back(&shape());
                break;
            case 2:
                drawing->setColorOf(entity, 1 + static_cast<int>(random() % 7));
                break;
            default:
                drawing->setLayerOf(entity, drawing->ensureLayer(L"other"));
            }
        }
        const double x = uniform(-6e3, 6e3), y = uniform(-6e3, 6e3), w = uniform(10, 3000), h = uniform(10, 3000);
        const Extents window{x, y, x + w, y + h};
        std::vector<AcDbObjectId> inside, crossing;
        for (AcDbEntity *entity : all) {
            if (entity->isErased())
                continue;
            const EntityParts parts = partsOf(*drawing, {entity});
            if (liesWithin(parts, window))
                inside.push_back(idOf(*entity));
            if (touches(parts, window))
                crossing.push_back(idOf(*entity));
        }
        useful += inside.empty() ? 0 : 1;
        ASSERT_EQ(in(window, SelectBy::Window), inside) << round;
        ASSERT_EQ(in(window, SelectBy::Crossing), crossing) << round;
        Extents extents;
        for (const AcDbEntity *entity : all)
            if (!entity->isErased())
                extents.add(extentsOf(*entity));
        ASSERT_EQ(index.visibleExtents(), extents);
    }
    EXPECT_GT(useful, 20u);
    EXPECT_EQ(index.builds(), 1u);
}

TEST_F(Picking, WhatComesFarOutsideOfWhatWasThereIsFound)
{
    line(0, 0, 1, 1);
    EXPECT_FALSE(in({-1, -1, 2, 2}, SelectBy::Window).empty());
    AcDbEntity &far = line(5e6, -3e6, 5e6 + 1, -3e6 + 1);
    AcDbEntity &huge = line(-1e7, -1e7, 1e7, 1e7);
    AcDbEntity &beyond = line(3e13, 0, 3e13 + 1e6, 0);
    EXPECT_THAT(in({5e6 - 1, -3e6 - 1, 5e6 + 2, -3e6 + 2}, SelectBy::Window), ElementsAre(idOf(far)));
    EXPECT_THAT(in({9e6, 9e6, 9.1e6, 9.1e6}, SelectBy::Crossing), ElementsAre(idOf(huge)));
    EXPECT_THAT(in({2e13, -1, 4e13, 1}, SelectBy::Window), ElementsAre(idOf(beyond)));
}

TEST_F(Picking, AChangedBlockDefinitionChangesItsReferences)
{
    AcDbEntity &entity = reference(0, 0);
    EXPECT_THAT(in({40, -1, 60, 1}, SelectBy::Crossing), IsEmpty());
    drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(50, 0)), *drawing->findBlock(L"MANHOLE"));
    EXPECT_THAT(in({40, -1, 60, 1}, SelectBy::Crossing), ElementsAre(idOf(entity)));
}

TEST_F(Picking, TheIndexTellsWhereSomethingChanged)
{
    AcDbEntity &first = line(0, 0, 10, 10);
    auto &index = drawing->component<DisplayIndex>();
    const std::uint64_t start = index.revision();
    EXPECT_TRUE(index.changedSince(start)->isEmpty());
    line(100, 100, 110, 120);
    const std::uint64_t second = index.revision();
    EXPECT_EQ(index.changedSince(start), (Extents{100, 100, 110, 120}));
    drawing->erase(first);
    const auto erased = index.changedSince(second);
    ASSERT_TRUE(erased);
    EXPECT_TRUE(erased->contains(5, 5));
    EXPECT_FALSE(erased->contains(100, 100));
    const std::size_t layer = drawing->ensureLayer(L"shown");
    const std::uint64_t third = index.revision();
    EXPECT_TRUE(index.changedSince(third)->isEmpty());
    Layer off = drawing->layer(layer);
    off.on = false;
    drawing->setLayer(layer, off);
    index.revision();
    EXPECT_FALSE(index.changedSince(third)); // it may be anywhere
}

// --- The standing selection

TEST_F(Picking, TheSelectionKeepsItsOrderAndTellsOfEachChange)
{
    AcDbEntity &a = line(0, 0, 1, 0), &b = line(0, 1, 1, 1), &c = line(0, 2, 1, 2);
    auto &selection = drawing->component<Selection>();
    int told = 0;
    auto watch = selection.onChange([&] { ++told; });
    const auto ids = [&] { return std::vector(selection.members().begin(), selection.members().end()); };
    const AcDbObjectId one[] = {idOf(c)}, two[] = {idOf(a), idOf(c), AcDbObjectId()};
    selection.add(one);
    selection.add(two);
    EXPECT_THAT(ids(), ElementsAre(idOf(c), idOf(a)));
    EXPECT_EQ(told, 2);
    selection.add(two);
    EXPECT_EQ(told, 2); // nothing new
    EXPECT_TRUE(selection.contains(a));
    EXPECT_FALSE(selection.contains(b));
    selection.remove(one);
    EXPECT_THAT(ids(), ElementsAre(idOf(a)));
    watch.reset();
    selection.clear();
    EXPECT_EQ(told, 3);
    EXPECT_TRUE(selection.isEmpty());
}

TEST_F(Picking, WhatIsErasedLeavesTheSelectionAndStaysOutOfItWhenItComesBack)
{
    AcDbEntity &a = line(0, 0, 1, 0), &b = line(0, 1, 1, 1);
    auto &selection = drawing->component<Selection>();
    const AcDbObjectId both[] = {idOf(a), idOf(b)};
    selection.set(both);
    drawing->erase(a);
    drawing->erase(a, false);
    EXPECT_EQ(selection.members().size(), 1u);
    EXPECT_EQ(selection.members().front(), idOf(b));
    drawing->erase(a);
    selection.add({both, 1});
    EXPECT_EQ(selection.members().size(), 1u); // an erased one can't be taken
}

} // namespace
} // namespace velmor
