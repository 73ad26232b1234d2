// Entities of files, moved and copied: the points in their tags change, nothing else does.
#include "host/drawing/Moving.h"
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

#include <cmath>
#include <map>

namespace velmor {
namespace {

using test::dxf;
using test::TagTexts;

/// One of each kind, in the plane and (turned over) seen from below, with tags that the host doesn't look at.
std::string file()
{
    return dxf(
        "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $HANDSEED\n5 1000\n0 ENDSEC\n"
        "0 SECTION\n2 BLOCKS\n0 BLOCK\n5 A0\n8 0\n2 Box\n70 2\n10 0\n20 0\n30 0\n"
        "0 ATTDEF\n5 A1\n8 0\n10 1\n20 1\n40 1\n1 x\n3 Name\n2 NAME\n70 0\n"
        "0 ENDBLK\n5 A2\n8 0\n0 ENDSEC\n"
        "0 SECTION\n2 ENTITIES\n"
        "0 LINE\n5 20\n8 0\n6 DASHED\n10 1.50\n20 2.0\n30 3.0\n11 4.0\n21 5.0\n31 6.0\n"
        "0 CIRCLE\n5 21\n8 0\n39 0.5\n10 10.0\n20 10.0\n40 2.0\n"
        "0 CIRCLE\n5 22\n8 0\n10 -10.0\n20 10.0\n30 0.0\n40 2.0\n210 0.0\n220 0.0\n230 -1.0\n"
        "0 ARC\n5 23\n8 0\n10 20.0\n20 0.0\n40 5.0\n50 0.0\n51 90.0\n"
        "0 ELLIPSE\n5 24\n8 0\n10 30.0\n20 0.0\n30 0.0\n11 4.0\n21 0.0\n31 0.0\n40 0.5\n41 0.0\n42 6.283185307179586\n"
        "0 LWPOLYLINE\n5 25\n8 0\n90 3\n70 1\n43 0.25\n38 7.0\n10 0.1\n20 0.2\n42 0.5\n10 10.1\n20 0.2\n10 5.0\n20 "
        "9.0\n"
        "1001 OTHER\n1000 kept\n1040 0.1\n"
        "0 LWPOLYLINE\n5 26\n8 0\n90 2\n70 0\n10 1.0\n20 2.0\n10 3.0\n20 4.0\n210 0.0\n220 0.0\n230 -1.0\n"
        "0 POLYLINE\n5 27\n8 0\n66 1\n10 0.0\n20 0.0\n30 2.0\n70 1\n"
        "0 VERTEX\n5 28\n8 0\n10 0.0\n20 0.0\n30 2.0\n0 VERTEX\n5 29\n8 0\n10 5.0\n20 0.0\n30 2.0\n42 1.0\n"
        "0 SEQEND\n5 2A\n8 0\n"
        "0 POLYLINE\n5 2B\n8 0\n66 1\n10 0.0\n20 0.0\n30 0.0\n70 8\n"
        "0 VERTEX\n5 2C\n8 0\n10 1.0\n20 2.0\n30 3.0\n70 32\n0 VERTEX\n5 2D\n8 0\n10 4.0\n20 5.0\n30 6.0\n70 32\n"
        "0 SEQEND\n5 2E\n8 0\n"
        "0 TEXT\n5 2F\n8 0\n10 1.0\n20 1.0\n30 0.0\n40 2.0\n1 Ulica\n72 1\n11 3.0\n21 1.0\n31 0.0\n7 FANCY\n"
        "0 MTEXT\n5 30\n8 0\n10 7.0\n20 8.0\n30 0.0\n40 2.0\n71 1\n1 Two\\Plines\n11 0.0\n21 1.0\n31 0.0\n"
        "0 POINT\n5 31\n8 0\n10 6.0\n20 7.0\n30 8.0\n"
        "0 SPLINE\n5 32\n8 0\n70 8\n71 3\n72 8\n73 4\n74 0\n40 0.0\n40 0.0\n40 0.0\n40 0.0\n40 1.0\n40 1.0\n40 1.0\n40 "
        "1.0\n"
        "12 1.0\n22 0.0\n32 0.0\n10 0.0\n20 0.0\n30 0.0\n10 1.0\n20 2.0\n30 0.0\n10 3.0\n20 2.0\n30 0.0\n10 4.0\n20 "
        "0.0\n30 0.0\n"
        "0 INSERT\n5 33\n8 0\n66 1\n2 Box\n10 50.0\n20 60.0\n30 0.0\n41 2.0\n"
        "0 ATTRIB\n5 34\n8 0\n10 52.0\n20 62.0\n30 0.0\n40 2.0\n1 M1\n2 NAME\n70 0\n0 SEQEND\n5 35\n8 0\n"
        "0 HATCH\n5 36\n8 0\n10 0.0\n20 0.0\n30 0.0\n210 0.0\n220 0.0\n230 1.0\n2 ANSI31\n70 0\n71 0\n91 2\n"
        "92 3\n72 0\n73 1\n93 4\n10 0.0\n20 0.0\n10 9.0\n20 0.0\n10 9.0\n20 9.0\n10 0.0\n20 9.0\n97 0\n"
        "92 0\n93 1\n72 3\n10 4.0\n20 4.0\n11 2.0\n21 0.0\n40 0.5\n50 0.0\n51 360.0\n73 1\n97 0\n"
        "75 0\n76 1\n52 0.0\n41 1.0\n77 0\n78 1\n53 45.0\n43 0.5\n44 0.5\n45 -2.2\n46 2.2\n79 0\n98 1\n10 1.0\n20 1.0\n"
        "440 33554559\n"
        "0 3DFACE\n5 37\n8 0\n10 0.0\n20 0.0\n30 0.0\n11 1.0\n21 0.0\n31 0.0\n12 1.0\n22 1.0\n32 0.0\n13 0.0\n23 "
        "1.0\n33 0.0\n"
        "0 ENDSEC\n0 EOF\n");
}

class Moving : public testing::Test {
protected:
    Moving() : result(Drawing::read(file())), drawing(*result.drawing) {}
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
    const TagTexts before = test::tagsOf(file());
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
    EXPECT_NE(drawing.write(), file());
    for (std::size_t i = 0; i < all.size(); ++i)
        setShape(drawing, *all[i], shapes[i]);
    EXPECT_EQ(drawing.write(), file());
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
    EXPECT_EQ(drawing.write(), file());
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
