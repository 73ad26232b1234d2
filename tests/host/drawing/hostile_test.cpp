// Files at the edge of what makes sense: damaged structures that are written again, endless nesting, huge numbers,
// polylines of nothing.
#include "host/drawing/Blocks.h"
#include "host/drawing/CurvePath.h"
#include "host/drawing/Findings.h"
#include "host/drawing/dxf/Skeleton.h"
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>

using namespace velmor;
using namespace velmor::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double kPi = std::numbers::pi;
const DataItems kItems{{1, L"text"}, {90, std::int64_t{7}}};

std::size_t occurrences(const std::string &text, const std::string &part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

std::string section(const std::string &name, const std::string &groups)
{
    return dxf("0 SECTION\n2 " + name + "\n" + groups + "0 ENDSEC\n");
}
const std::string kHeader2000 = section("HEADER", "9 $ACADVER\n1 AC1015\n");
const std::string kLine = "0 LINE\n8 0\n10 0\n20 0\n11 1\n21 1\n";

/// Blocks L0, L1 ... of which each but the last refers to the next so many times; model space places L0.
std::string nested(int levels, int references)
{
    std::string blocks;
    for (int level = 0; level < levels; ++level) {
        blocks += "0 BLOCK\n8 0\n2 L" + std::to_string(level) + "\n10 0\n20 0\n";
        for (int i = 0; i < references && level + 1 < levels; ++i)
            blocks += "0 INSERT\n8 0\n2 L" + std::to_string(level + 1) + "\n10 " + std::to_string(i) + "\n20 0\n";
        blocks += level + 1 == levels ? kLine : "";
        blocks += "0 ENDBLK\n8 0\n";
    }
    return section("BLOCKS", blocks) + section("ENTITIES", "0 INSERT\n8 0\n2 L0\n10 0\n20 0\n") + dxf("0 EOF\n");
}

} // namespace

// --- Damaged structures
// -----------------------------------------------------------------------------------------------

TEST(DamagedDxfWritten, ASectionWithoutItsEndGetsItBehindWhatIsNew)
{
    // The objects end where another section begins, which is also where new tables belong.
    const std::string text = kHeader2000 + dxf("0 SECTION\n2 OBJECTS\n0 DICTIONARY\n5 C\n100 AcDbDictionary\n") +
                             section("ENTITIES", kLine) + dxf("0 EOF\n");
    LoadResult r;
    Drawing &drawing = read(r, text);
    EXPECT_TRUE(r.report.damaged());
    drawing.ensureLayer(L"NEW");
    drawing.setLayerOf(entityAt<AcDbLine>(drawing, 0), drawing.ensureLayer(L"NEW"));
    drawing.setDictionaryEntry("D", "KEY", kItems);
    const std::string written = drawing.write();
    const auto again = Drawing::read(written);
    ASSERT_TRUE(again.drawing);
    EXPECT_THAT(again.report.findings, IsEmpty());
    EXPECT_EQ(again.drawing->dictionaryEntry("D", "KEY"), kItems);
    EXPECT_EQ(again.drawing->write(), written);
}

TEST(DamagedDxfWritten, MissingEndsOfTablesAndBlocksAreMended)
{
    LoadResult r;
    Drawing &drawing = read(r, dxf("0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n0 LAYER\n2 A\n70 0\n62 1\n0 TABLE\n2 STYLE\n"
                                   "0 SECTION\n2 BLOCKS\n0 BLOCK\n8 0\n2 B\n10 0\n20 0\n0 BLOCK\n8 0\n2 C\n10 0\n20 "
                                   "0\n") +
                                   section("ENTITIES", kLine) + dxf("0 EOF\n"));
    EXPECT_TRUE(r.report.damaged());
    drawing.append(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 1.0), *drawing.findBlock(L"B"));
    drawing.append(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 1.0), *drawing.findBlock(L"C"));
    drawing.setLayerOf(entityAt<AcDbLine>(drawing, 0), drawing.ensureLayer(L"NEW"));
    const auto again = Drawing::read(drawing.write());
    ASSERT_TRUE(again.drawing);
    EXPECT_THAT(again.report.findings, IsEmpty());
    EXPECT_THAT(again.drawing->findBlock(L"B")->entities(), SizeIs(1));
    EXPECT_THAT(again.drawing->findBlock(L"C")->entities(), SizeIs(1));
    EXPECT_TRUE(again.drawing->findLayer(L"NEW"));
}

TEST(DamagedDxfWritten, NewObjectsGoWhereTheRootDictionaryStands)
{
    LoadResult r;
    Drawing &drawing = read(r, kHeader2000 + section("OBJECTS", "0 PLACEHOLDER\n5 B\n") +
                                   section("OBJECTS", "0 DICTIONARY\n5 C\n100 AcDbDictionary\n") + dxf("0 EOF\n"));
    drawing.setDictionaryEntry("D", "KEY", kItems);
    const auto again = reread(drawing);
    EXPECT_EQ(again->dictionaryEntry("D", "KEY"), kItems);
}

TEST(DamagedDxfWritten, OfTwoBlocksOfANameTheFirstHoldsBeforeAndAfterASave)
{
    // Without tables; the new one must not come between the two sections and change which block is read first.
    const auto block = [](const char *content) {
        return section("BLOCKS", std::string("0 BLOCK\n8 0\n2 B\n10 0\n20 0\n") + content + "0 ENDBLK\n");
    };
    LoadResult r;
    Drawing &drawing = read(r, block(kLine.c_str()) + block("0 CIRCLE\n8 0\n10 0\n20 0\n40 1\n") + dxf("0 EOF\n"));
    ASSERT_THAT(drawing.findBlock(L"B")->entities(), SizeIs(1));
    EXPECT_EQ(kindOf(*drawing.findBlock(L"B")->entities()[0]), EntityKind::Line);
    drawing.append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    drawing.setDictionaryEntry("D", "KEY", kItems);
    const auto again = reread(drawing);
    EXPECT_EQ(kindOf(*again->findBlock(L"B")->entities()[0]), EntityKind::Line);
}

TEST(DamagedDxfWritten, SectionsThatWaitForTheTablesKeepTheirOrder)
{
    LoadResult r;
    const auto block = [](const std::string &content) {
        return section("BLOCKS", "0 BLOCK\n8 0\n2 B\n10 0\n20 0\n" + content + "0 ENDBLK\n");
    };
    Drawing &drawing = read(r, block(kLine) + section("TABLES", "") + block("") + dxf("0 EOF\n"));
    EXPECT_THAT(drawing.findBlock(L"B")->entities(), SizeIs(1));
}

TEST(DamagedDxfWritten, ASectionThatWaitsAndLacksItsEndEndsWhereTheNextBegins)
{
    LoadResult r;
    Drawing &drawing = read(r, dxf("0 SECTION\n2 ENTITIES\n" + kLine) + section("TABLES", "") + dxf("0 EOF\n"));
    EXPECT_TRUE(r.report.damaged());
    drawing.append(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 1.0));
    const std::string written = drawing.write();
    EXPECT_EQ(occurrences(written, "ENTITIES"), 1u);
    const auto again = Drawing::read(written);
    EXPECT_THAT(again.report.findings, IsEmpty());
    EXPECT_THAT(again.drawing->modelSpace().entities(), SizeIs(2));
}

TEST(DamagedDxfWritten, PointersToWhatIsLostAreNotGivenToNewObjects)
{
    LoadResult r;
    Drawing &drawing =
        read(r, kHeader2000 +
                    section("ENTITIES", "0 LINE\n5 30\n102 {ACAD_REACTORS\n330 77\n102 }\n8 0\n10 0\n20 0\n"
                                        "11 1\n21 1\n") +
                    dxf("0 SECTION\n2 OBJECTS\n0 DICTIONARY\n5 C\n100 AcDbDictionary\n3 OLD\n350 99\n"));
    EXPECT_TRUE(r.report.damaged());
    const auto id = drawing.append(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 1.0));
    drawing.setDictionaryEntry("D", "KEY", kItems);
    drawing.write();
    EXPECT_GT(id.handle().value(), 0x77u);
    EXPECT_GT(id.handle().value(), 0x30u);
}

TEST(OddDxfWritten, EachGroupCountsWhereItFirstStands)
{
    // Layer, colour and extension dictionary twice; a handle that belongs to an object inside.
    const std::string line = "0 LINE\n102 {ACAD_XDICTIONARY\n360 90\n102 }\n102 {ACAD_XDICTIONARY\n360 91\n102 }\n8 "
                             "A\n8 B\n62 1\n62 2\n10 0\n20 0\n11 1\n21 1\n101 Embedded Object\n5 55\n102 "
                             "{ACAD_XDICTIONARY\n360 92\n102 }\n";
    LoadResult r;
    Drawing &drawing = read(r, kHeader2000 + section("ENTITIES", line) + dxf("0 EOF\n"));
    AcDbEntity &entity = entityAt<AcDbLine>(drawing, 0);
    EXPECT_EQ(drawing.layer(layerIndexOf(entity)).name, L"A");
    EXPECT_EQ(entity.colorIndex(), 1);
    drawing.setLayerOf(entity, drawing.ensureLayer(L"NEW"));
    drawing.setColorOf(entity, 5);
    drawing.setData(entity, "KEY", kItems);
    const auto again = reread(drawing);
    AcDbEntity &read = entityAt<AcDbLine>(*again, 0);
    EXPECT_EQ(again->layer(layerIndexOf(read)).name, L"NEW");
    EXPECT_EQ(read.colorIndex(), 5);
    EXPECT_EQ(again->data(read, "KEY"), kItems);
    EXPECT_NE(handleOf(read), 0x55u);
}

TEST(OddDxfWritten, ADictionaryWithStrangeEntriesTakesNewOnes)
{
    LoadResult r;
    Drawing &drawing =
        read(r, kHeader2000 +
                    section("ENTITIES", "0 LINE\n5 30\n102 {ACAD_XDICTIONARY\n360 40\n102 }\n8 0\n10 0\n20 "
                                        "0\n11 1\n21 1\n") +
                    section("OBJECTS", "0 DICTIONARY\n5 C\n100 AcDbDictionary\n"
                                       "0 DICTIONARY\n5 40\n330 30\n100 AcDbDictionary\n3 ODD\n36 31\n") +
                    dxf("0 EOF\n"));
    drawing.setData(entityAt<AcDbLine>(drawing, 0), "KEY", kItems);
    const auto again = reread(drawing);
    EXPECT_EQ(again->data(entityAt<AcDbLine>(*again, 0), "KEY"), kItems);
}

TEST(OddDxfWritten, ARecordWithoutItsMarkerIsReadAgainAfterAChange)
{
    LoadResult r;
    Drawing &drawing = read(r, kHeader2000 +
                                   section("OBJECTS", "0 DICTIONARY\n5 C\n100 AcDbDictionary\n3 D\n350 D\n"
                                                      "0 DICTIONARY\n5 D\n330 C\n100 AcDbDictionary\n3 KEY\n350 E\n"
                                                      "0 XRECORD\n5 E\n330 D\n1 old\n") +
                                   dxf("0 EOF\n"));
    drawing.setDictionaryEntry("D", "KEY", kItems);
    EXPECT_EQ(reread(drawing)->dictionaryEntry("D", "KEY"), kItems);
}

// --- Nesting and huge numbers
// -----------------------------------------------------------------------------------------

TEST(HostileDxf, ABlockThatHoldsItselfHasTheExtentsOfItsOtherContents)
{
    LoadResult r;
    const std::string self = "0 INSERT\n8 0\n2 S\n10 5\n20 5\n";
    Drawing &drawing =
        read(r, section("BLOCKS", "0 BLOCK\n8 0\n2 S\n10 0\n20 0\n" + self + self + self + kLine + "0 ENDBLK\n") +
                    section("ENTITIES", "0 INSERT\n8 0\n2 S\n10 10\n20 0\n") + dxf("0 EOF\n"));
    const Extents extents = extentsOf(entityAt<AcDbBlockReference>(drawing, 0));
    EXPECT_EQ(extents, (Extents{10, 0, 11, 1}));
}

TEST(HostileDxf, NestingThatStandsForBillionsOfLinesIsMeasuredByBoxes)
{
    // Twenty levels of four references each: 4^19 lines, each level moved by up to 3.
    LoadResult r;
    Drawing &drawing = read(r, nested(20, 4));
    EXPECT_EQ(extentsOf(entityAt<AcDbBlockReference>(drawing, 0)), (Extents{0, 0, 19 * 3 + 1, 1}));
}

TEST(HostileDxf, AThousandLevelsOfBlocksAreReadWrittenAndMeasuredToADepth)
{
    LoadResult r;
    const std::string text = nested(1000, 1);
    Drawing &drawing = read(r, text);
    EXPECT_TRUE(extentsOf(entityAt<AcDbBlockReference>(drawing, 0)).isEmpty());
    EXPECT_EQ(drawing.write(), text);
    const auto target = Drawing::createNew();
    const BlockImport imported = importBlockInto(*target, L"B", drawing, {});
    EXPECT_THAT(imported.nested, SizeIs(1000));
    EXPECT_THAT(imported.leftOut, IsEmpty());
}

TEST(HostileDxf, AnImportFollowsAThousandLevelsAndSaysThatThereAreMore)
{
    LoadResult r;
    Drawing &drawing = read(r, nested(20000, 1));
    const auto target = Drawing::createNew();
    const BlockImport imported = importBlockInto(*target, L"B", drawing, {});
    EXPECT_THAT(imported.nested, SizeIs(1000));
    EXPECT_EQ(imported.leftOut.at("INSERT"), 1u);
}

TEST(HostileDxf, CountsAreOnlyHints)
{
    const auto r = Drawing::read(entitiesOnly("0 LWPOLYLINE\n8 0\n90 2000000000\n70 0\n10 0\n20 0\n10 1\n20 1\n"
                                              "0 SPLINE\n8 0\n71 2000000000\n72 2000000000\n73 2000000000\n10 0\n20 0\n"
                                              "0 HATCH\n8 0\n2 SOLID\n70 1\n91 2000000000\n92 2\n93 2000000000\n10 "
                                              "0\n20 0\n75 0\n98 2000000000\n"
                                              "0 INSERT\n8 0\n2 B\n10 0\n20 0\n70 2000000000\n71 2000000000\n"));
    ASSERT_TRUE(r.drawing);
    EXPECT_THAT(entityAt<AcDbPolyline>(*r.drawing, 0).vertices(), SizeIs(2));
    for (const AcDbEntity *entity : r.drawing->modelSpace().entities())
        extentsOf(*entity);
}

TEST(HostileDxf, TextsThatAreNoNumbersKeepTheirEntityUnread)
{
    for (const char *number : {"nan", "inf", "-inf", "1e999", "0x10", "", "1,5"}) {
        const std::string text =
            entitiesOnly(std::string("0 CIRCLE\n8 0\n10 0\n20 0\n40 ") + number + "\n0 POINT\n8 0\n10 1\n20 1\n");
        LoadResult r;
        Drawing &drawing = read(r, text);
        EXPECT_TRUE(r.report.damaged()) << number;
        EXPECT_EQ(r.report.unread["CIRCLE"], 1u) << number;
        EXPECT_EQ(drawing.write(), text) << number;
    }
}

TEST(HostileDxf, HugeCoordinatesAreMeasuredWithoutHarm)
{
    const auto r = Drawing::read(
        entitiesOnly("0 LINE\n8 0\n10 1e300\n20 -1e300\n11 -1e300\n21 1e300\n"
                     "0 LWPOLYLINE\n8 0\n70 1\n10 1e308\n20 1e308\n42 0.5\n10 -1e308\n20 1e308\n42 1e200\n10 0\n20 0\n"
                     "0 SPLINE\n8 0\n71 3\n11 1e308\n21 0\n11 -1e308\n21 1e308\n11 0\n21 0\n"
                     "0 SPLINE\n8 0\n71 1\n40 0\n40 0\n40 1\n40 1\n10 1e308\n20 0\n10 -1e308\n20 1e308\n"
                     "0 ARC\n8 0\n10 1e300\n20 0\n40 1e300\n50 1e300\n51 -1e300\n"
                     "0 ELLIPSE\n8 0\n10 0\n20 0\n11 1e300\n21 0\n40 1e-300\n41 1e300\n42 -1e308\n"));
    ASSERT_TRUE(r.drawing);
    EXPECT_THAT(r.report.findings, IsEmpty());
    for (const AcDbEntity *entity : r.drawing->modelSpace().entities()) {
        extentsOf(*entity);
        curvePathOf(*entity, 1.0);
        double area = 0.0;
        dynamic_cast<const AcDbCurve &>(*entity).getArea(area);
    }
}

TEST(Turns, EndAboveTheirStartAndAtMostAFullTurnAway)
{
    EXPECT_EQ(endOfTurn(1.0, 2.5), 2.5);
    EXPECT_EQ(endOfTurn(0.0, 2.0 * kPi), 2.0 * kPi);
    EXPECT_NEAR(endOfTurn(6.0, 0.5), 0.5 + 2.0 * kPi, 1e-12);
    EXPECT_NEAR(endOfTurn(1.0, 1.0), 1.0 + 2.0 * kPi, 1e-12);
    EXPECT_NEAR(endOfTurn(0.0, 5.0 * kPi), kPi, 1e-12);
    for (const auto &[start, end] : {std::pair(1e300, -1e300), std::pair(-1e17, 1e17), std::pair(1.7e308, -1.7e308)}) {
        const double sweep = endOfTurn(start, end) - start;
        EXPECT_GE(sweep, 0.0);
        EXPECT_LE(sweep, std::max(7.0, std::abs(start) * 1e-15));
    }
}

// --- Polylines
// ----------------------------------------------------------------------------------------------------------

TEST(EmptyPolylines, AreReadMeasuredAndWrittenInEveryForm)
{
    LoadResult r;
    const std::string text = entitiesOnly("0 LWPOLYLINE\n8 0\n90 0\n70 1\n"
                                          "0 POLYLINE\n8 0\n66 1\n70 1\n0 SEQEND\n8 0\n"
                                          "0 POLYLINE\n8 0\n66 1\n70 9\n0 SEQEND\n8 0\n");
    Drawing &drawing = read(r, text);
    EXPECT_THAT(r.report.findings, IsEmpty());
    EXPECT_EQ(kindOf(entityAt<AcDbEntity>(drawing, 0)), EntityKind::LwPolyline);
    EXPECT_EQ(kindOf(entityAt<AcDbEntity>(drawing, 1)), EntityKind::Polyline2d);
    EXPECT_EQ(kindOf(entityAt<AcDbEntity>(drawing, 2)), EntityKind::Polyline3d);
    EXPECT_EQ(drawing.write(), text);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto &curve = entityAt<AcDbCurve>(drawing, i);
        double area = -1.0;
        EXPECT_EQ(curve.getArea(area), Acad::eOk);
        EXPECT_EQ(area, 0.0);
        EXPECT_TRUE(curve.isClosed());
        EXPECT_TRUE(extentsOf(curve).isEmpty());
        EXPECT_FALSE(curvePathOf(curve, 1.0));
    }
    AcGePoint3d point;
    EXPECT_EQ(entityAt<AcDbPolyline>(drawing, 0).getPointAt(0, point), Acad::eOutOfRange);
}

TEST(EmptyPolylines, MadeAnewComeBackInEveryVersion)
{
    for (const char *version : {"AC1009", "AC1015", "AC1032"}) {
        LoadResult r;
        Drawing &drawing = read(r, section("HEADER", std::string("9 $ACADVER\n1 ") + version + "\n") + dxf("0 EOF\n"));
        drawing.append(std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>(), false));
        drawing.append(std::make_unique<AcDb2dPolyline>(std::vector<AcDbPolyline::Vertex>(), true, 1.5));
        drawing.append(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>(), true));
        const std::string written = drawing.write();
        const auto again = Drawing::read(written);
        ASSERT_TRUE(again.drawing) << version;
        EXPECT_THAT(again.report.findings, IsEmpty()) << version;
        ASSERT_THAT(again.drawing->modelSpace().entities(), SizeIs(3)) << version;
        EXPECT_EQ(kindOf(entityAt<AcDbEntity>(*again.drawing, 2)), EntityKind::Polyline3d);
        EXPECT_TRUE(entityAt<AcDb3dPolyline>(*again.drawing, 2).isClosed());
        EXPECT_EQ(entityAt<AcDb2dPolyline>(*again.drawing, 1).elevation(), 1.5) << version;
        EXPECT_EQ(again.drawing->write(), written) << version;
    }
}

TEST(Elevation, OfALightPolylineIsTheHeightOfItsPointsAndComesBack)
{
    LoadResult r;
    Drawing &drawing = read(r, kHeader2000 +
                                   section("ENTITIES", "0 LWPOLYLINE\n5 30\n8 0\n100 AcDbPolyline\n90 3\n70 1\n38 "
                                                       "12.5\n10 0\n20 0\n42 1\n10 4\n20 0\n10 4\n20 4\n"
                                                       "0 LWPOLYLINE\n5 31\n8 0\n100 AcDbPolyline\n90 2\n70 0\n38 "
                                                       "3\n210 0\n220 0\n230 -1\n10 1\n20 0\n42 1\n10 5\n20 0\n") +
                                   dxf("0 EOF\n"));
    const auto &up = entityAt<AcDbPolyline>(drawing, 0);
    AcGePoint3d point;
    ASSERT_EQ(up.getPointAt(2, point), Acad::eOk);
    EXPECT_EQ(point.z, 12.5);
    // The bulge runs through (2, -2); the height plays no part in the plane.
    EXPECT_NEAR(extentsOf(up).minY, -2.0, 1e-12);
    EXPECT_EQ(extentsOf(up).maxX, 4.0);
    // Looked at from below, x and height run the other way and arcs turn round.
    const auto &down = entityAt<AcDbPolyline>(drawing, 1);
    ASSERT_EQ(down.getPointAt(0, point), Acad::eOk);
    EXPECT_EQ(point.x, -1.0);
    EXPECT_EQ(point.z, -3.0);
    EXPECT_EQ(down.vertices()[0].bulge, -1.0);

    for (const char *version : {"AC1009", "AC1015"}) {
        LoadResult made;
        Drawing &other = read(made, section("HEADER", std::string("9 $ACADVER\n1 ") + version + "\n") + dxf("0 EOF\n"));
        other.append(std::make_unique<AcDbPolyline>(up.vertices(), true, -7.25));
        const auto again = reread(other);
        const AcDbEntity &read = entityAt<AcDbEntity>(*again, 0);
        const double elevation = kindOf(read) == EntityKind::LwPolyline
                                     ? static_cast<const AcDbPolyline &>(read).elevation()
                                     : static_cast<const AcDb2dPolyline &>(read).elevation();
        EXPECT_EQ(elevation, -7.25) << version;
    }
}

TEST(Elevation, IsKeptWhenThePolylineGoesIntoAnotherDrawing)
{
    LoadResult r;
    Drawing &source = read(r, entitiesOnly("0 LWPOLYLINE\n8 0\n90 2\n70 0\n38 2.5\n10 0\n20 0\n10 1\n20 1\n"));
    const auto target = Drawing::createNew();
    const BlockImport imported = importBlockInto(*target, L"B", source, {});
    const auto again = reread(*target);
    const auto &polyline = dynamic_cast<const AcDbPolyline &>(*again->findBlock(L"B")->entities().at(0));
    EXPECT_EQ(polyline.elevation(), 2.5);
}
