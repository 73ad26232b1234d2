// Entities of files, moved and copied: the points in their tags change, nothing else does.
#include "host/drawing/Moving.h"
#include "tests/host/drawing/EveryKind.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>

namespace velmor {
namespace {

using test::TagTexts;

class Moving : public testing::Test {
protected:
    Moving() : result(Drawing::read(test::everyKindFile())), drawing(*result.drawing) {}
    AcDbEntity &at(const char *handle)
    {
        return dynamic_cast<AcDbEntity &>(*drawing.findByHandle(std::strtoull(handle, nullptr, 16)));
    }
    /// All entities of model space, moved.
    void moveAll(const AcGeVector3d &by)
    {
        for (AcDbEntity *entity : drawing.modelSpace().entities())
            moveEntity(drawing, *entity, by);
    }
    LoadResult result;
    Drawing &drawing;
};

TEST_F(Moving, OnlyTheValuesOfPointsChangeInTheFile)
{
    const TagTexts before = test::tagsOf(test::everyKindFile());
    moveAll({100.0, 50.0, 0.0});
    const TagTexts after = test::tagsOf(drawing.write());
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(before[i].first, after[i].first);
        const int code = before[i].first;
        const bool isPlace = code >= 10 && code < 30 && code % 10 < 2;
        EXPECT_TRUE(isPlace || before[i].second == after[i].second) << i << ": " << code;
    }
}

TEST_F(Moving, WhatIsReadAgainIsWhatStoodInMemory)
{
    moveAll({100.1, 50.7, 0.0});
    const auto again = test::reread(drawing);
    ASSERT_TRUE(again);
    const auto &mine = drawing.modelSpace().entities(), &theirs = again->modelSpace().entities();
    ASSERT_EQ(mine.size(), theirs.size());
    for (std::size_t i = 0; i < mine.size(); ++i) {
        std::vector<double> a, b;
        EntityShape first = shapeOf(*mine[i]), second = shapeOf(*theirs[i]);
        visitCoordinates(first, [&](double value, int) { a.push_back(value); });
        visitCoordinates(second, [&](double value, int) { b.push_back(value); });
        if (kindOf(*mine[i]) == EntityKind::Hatch) // its elliptical edge is flattened anew
            EXPECT_THAT(a, testing::Pointwise(testing::DoubleNear(1e-9), b));
        else
            EXPECT_EQ(a, b) << i << " " << typeNameOf(*mine[i]);
    }
}

TEST_F(Moving, EachKindMovesAsAWhole)
{
    moveAll({100.0, 50.0, 0.0});
    EXPECT_EQ(dynamic_cast<AcDbLine &>(at("20")).startPoint().x, 101.5);
    EXPECT_EQ(dynamic_cast<CircleEntity &>(at("21")).center().x, 110.0);
    EXPECT_EQ(dynamic_cast<CircleEntity &>(at("22")).center().x, 110.0); // mirrored: it stood at 10
    EXPECT_EQ(dynamic_cast<AcDbArc &>(at("23")).center().y, 50.0);
    EXPECT_EQ(dynamic_cast<EllipseEntity &>(at("24")).shape().majorAxis.x, 4.0);
    EXPECT_EQ(dynamic_cast<AcDbPolyline &>(at("25")).vertices()[0].bulge, 0.5);
    EXPECT_EQ(dynamic_cast<AcDbPolyline &>(at("25")).elevation(), 7.0);
    EXPECT_EQ(dynamic_cast<TextEntity &>(at("2F")).shape().position.x, 103.0);
    EXPECT_EQ(dynamic_cast<AcDbBlockReference &>(at("33")).placement().position.y, 110.0);
    EXPECT_EQ(dynamic_cast<AttributeEntity &>(at("34")).shape().position.x, 152.0);
    EXPECT_EQ(dynamic_cast<AcDbHatch &>(at("36")).loops()[0].vertices[1].x, 109.0);
}

TEST_F(Moving, MirroredEntitiesMoveTheOtherWayInTheirOwnPlane)
{
    moveAll({100.0, 0.0, 0.0});
    const std::string text = drawing.write();
    const TagTexts tags = test::tagsOf(text);
    std::map<std::string, std::string> firstX; // by handle
    std::string handle;
    for (const auto &[code, value] : tags) {
        if (code == 5)
            handle = value;
        if (code == 10)
            firstX.emplace(handle, value);
    }
    EXPECT_EQ(std::stod(firstX["22"]), -110.0);
    EXPECT_EQ(std::stod(firstX["26"]), -99.0);
}

TEST_F(Moving, TheAxisOfAnEllipticalEdgeAndPatternLinesStayAndSeedsMove)
{
    moveAll({100.0, 50.0, 0.0});
    const TagTexts tags = test::tagsOf(drawing.write());
    TagTexts hatch;
    bool inside = false;
    for (const auto &tag : tags) {
        if (tag.first == 0)
            inside = tag.second == "HATCH";
        if (inside)
            hatch.push_back(tag);
    }
    EXPECT_THAT(hatch, testing::Contains(test::TagText{11, "2.0"}));
    EXPECT_THAT(hatch, testing::Contains(test::TagText{43, "0.5"}));
    EXPECT_THAT(hatch, testing::Contains(test::TagText{440, "33554559"}));
    const std::string seed = hatch[hatch.size() - 3].second; // 10, 20, 440
    EXPECT_EQ(std::stod(seed), 101.0);
}

TEST_F(Moving, BackAgainGivesTheFirstTextToTheLastByte)
{
    std::vector<EntityShape> shapes;
    std::vector<AcDbEntity *> all;
    for (AcDbEntity *entity : drawing.modelSpace().entities()) {
        all.push_back(entity);
        if (kindOf(*entity) == EntityKind::BlockReference)
            for (AttributeEntity *attribute : attributesOf(static_cast<AcDbBlockReference &>(*entity)))
                all.push_back(attribute);
    }
    for (AcDbEntity *entity : all)
        shapes.push_back(shapeOf(*entity));
    moveAll({0.1, 1e7 / 3.0, 0.0});
    moveAll({7.7, -3.3, 0.0});
    EXPECT_NE(drawing.write(), test::everyKindFile());
    for (std::size_t i = 0; i < all.size(); ++i)
        setShape(drawing, *all[i], shapes[i]);
    EXPECT_EQ(drawing.write(), test::everyKindFile());
}

TEST_F(Moving, AMoveInHeightGoesIntoTheFileToo)
{
    moveAll({0.0, 0.0, 2.5});
    const auto again = test::reread(drawing);
    const auto &entities = again->modelSpace().entities();
    EXPECT_EQ(dynamic_cast<AcDbLine &>(*entities[0]).startPoint().z, 5.5);
    EXPECT_EQ(dynamic_cast<CircleEntity &>(*entities[1]).center().z, 2.5); // had no height in the file
    EXPECT_EQ(dynamic_cast<AcDbPolyline &>(*entities[5]).elevation(), 9.5);
    EXPECT_EQ(dynamic_cast<AcDb2dPolyline &>(*entities[7]).elevation(), 4.5);
}

TEST_F(Moving, WhatIsKeptAsItWasReadIsNotMovedAndNotCopied)
{
    AcDbEntity &face = at("37");
    EXPECT_FALSE(canMove(face));
    EXPECT_FALSE(moveEntity(drawing, face, {1.0, 1.0, 0.0}));
    EXPECT_EQ(copyEntity(drawing, face, {1.0, 1.0, 0.0}), nullptr);
    EXPECT_EQ(drawing.write(), test::everyKindFile());
}

TEST_F(Moving, ACopyHasAllThatItsTagsSayInAnotherPlace)
{
    AcDbEntity *copy = copyEntity(drawing, at("25"), {100.0, 0.0, 0.0});
    ASSERT_TRUE(copy);
    moveEntity(drawing, *copy, {0.0, 10.0, 0.0}); // and a copy can be moved
    const auto again = test::reread(drawing);
    const auto *polyline = dynamic_cast<AcDbPolyline *>(again->modelSpace().entities().back());
    ASSERT_TRUE(polyline);
    EXPECT_EQ(polyline->vertices()[0].x, 0.1 + 100.0);
    EXPECT_EQ(polyline->vertices()[0].y, 0.2 + 10.0);
    EXPECT_EQ(polyline->vertices()[0].bulge, 0.5);
    EXPECT_EQ(polyline->elevation(), 7.0);
    EXPECT_EQ(polyline->constantWidth(), 0.25);
}

TEST_F(Moving, EveryKnownKindCanBeCopied)
{
    const auto originals = drawing.modelSpace().entities();
    std::size_t copies = 0;
    for (const AcDbEntity *entity : originals)
        copies += copyEntity(drawing, *entity, {1000.0, 0.0, 0.0}) != nullptr;
    EXPECT_EQ(copies, originals.size() - 1); // all but the face
    const auto again = test::reread(drawing);
    ASSERT_EQ(again->modelSpace().entities().size(), originals.size() + copies);
    for (std::size_t i = 0; i < copies; ++i) {
        const AcDbEntity &first = *again->modelSpace().entities()[i];
        const AcDbEntity &copy = *again->modelSpace().entities()[originals.size() + i];
        EXPECT_EQ(kindOf(copy), kindOf(first)) << i;
        const Extents a = extentsOf(first), b = extentsOf(copy);
        EXPECT_NEAR(b.minX - a.minX, 1000.0, 1e-6) << typeNameOf(first);
        EXPECT_NEAR(b.maxY - a.maxY, 0.0, 1e-6) << typeNameOf(first);
    }
}

} // namespace
} // namespace velmor
