// Entities that a file marks as invisible (group 60): nobody sees, meets or catches them, and they are kept.
#include "host/drawing/Visibility.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/ObjectSnap.h"
#include "host/editor/Painter.h"
#include "host/editor/Picking.h"
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace velmor {
namespace {

using test::dxf;

/// A square of side 10 from lines, cut in halves by an invisible line; and a block of one visible and one invisible
/// line with a reference beside it.
std::unique_ptr<Drawing> cutSquare(const char *visibility)
{
    const std::string groups = std::string(R"(0 SECTION
2 BLOCKS
0 BLOCK
8 0
2 PAIR
70 0
10 0
20 0
0 LINE
8 0
10 0
20 0
11 1
21 0
0 LINE
8 0
60 1
10 0
20 0
11 500
21 500
0 ENDBLK
0 ENDSEC
0 SECTION
2 ENTITIES
0 LINE
8 0
10 0
20 0
11 10
21 0
0 LINE
8 0
10 10
20 0
11 10
21 10
0 LINE
8 0
10 10
20 10
11 0
21 10
0 LINE
8 0
10 0
20 10
11 0
21 0
0 LINE
8 0
)") + visibility + R"(
10 5
20 -1
11 5
21 20
0 INSERT
8 0
2 PAIR
10 20
20 0
0 ENDSEC
0 EOF
)";
    return Drawing::read(dxf(groups)).drawing;
}

double areaAround(Drawing &drawing, double x, double y)
{
    const boundary::Region region = drawing.component<LineworkCache>().visible().regionAt({x, y});
    return region ? signedArea(region.outer) : 0.0;
}

struct InvisibleEntity : testing::Test {
    std::unique_ptr<Drawing> invisible = cutSquare("60 1"), visible = cutSquare("60 0");
};

TEST_F(InvisibleEntity, BoundsNothing)
{
    EXPECT_DOUBLE_EQ(areaAround(*visible, 2, 5), 50.0);
    EXPECT_DOUBLE_EQ(areaAround(*invisible, 2, 5), 100.0);
}

TEST_F(InvisibleEntity, IsNotInTheExtentsOfAllThatIsSeen)
{
    EXPECT_DOUBLE_EQ(visibleExtents(*visible).maxY, 20.0);
    EXPECT_DOUBLE_EQ(visibleExtents(*invisible).maxY, 10.0);
    EXPECT_DOUBLE_EQ(visibleExtents(*invisible).maxX, 21.0) << "the block's invisible line reaches to 520";
}

TEST_F(InvisibleEntity, CantBePickedNorSelectedNorSnappedTo)
{
    const AcGePoint3d end(5, 20);
    EXPECT_NE(entityAt(*visible, end, 0.5), nullptr);
    EXPECT_EQ(entityAt(*invisible, end, 0.5), nullptr);
    const Extents around{4, 15, 6, 25};
    EXPECT_EQ(entitiesIn(*visible, around, SelectBy::Crossing).size(), 1u);
    EXPECT_TRUE(entitiesIn(*invisible, around, SelectBy::Crossing).empty());
    const SnapQuery query{.point = end, .aperture = 0.5, .modes = kSnapEnd};
    EXPECT_TRUE(findSnap(*visible, query));
    EXPECT_FALSE(findSnap(*invisible, query));
    EXPECT_FALSE(findSnap(*invisible, {.point = {520, 500}, .aperture = 0.5, .modes = kSnapEnd}))
        << "inside of a block";
}

TEST_F(InvisibleEntity, IsKeptWhenTheFileIsWritten)
{
    const std::string text = invisible->write();
    const auto again = Drawing::read(text).drawing;
    ASSERT_TRUE(again);
    EXPECT_DOUBLE_EQ(areaAround(*again, 2, 5), 100.0);
    EXPECT_EQ(again->modelSpace().entities().size(), invisible->modelSpace().entities().size());
}

TEST_F(InvisibleEntity, StaysInvisibleInABlockMadeOfItsDrawing)
{
    const auto target = Drawing::createNew();
    const BlockRecord &block = target->importBlock(L"SQUARE", *invisible);
    std::size_t shown = 0, hidden = 0;
    for (const AcDbEntity *entity : block.entities())
        ++(isShown(*target, *entity) ? shown : hidden);
    EXPECT_EQ(shown, 5u);
    EXPECT_EQ(hidden, 1u);
    const auto again = Drawing::read(target->write()).drawing;
    ASSERT_TRUE(again && again->findBlock(L"SQUARE"));
    const auto &entities = again->findBlock(L"SQUARE")->entities();
    EXPECT_EQ(std::ranges::count_if(entities, [](const AcDbEntity *entity) { return isInvisible(*entity); }), 1);
}

} // namespace
} // namespace velmor
