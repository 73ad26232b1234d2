// What is understood of a DXF text: kinds of entities, tables, odd orders and forms.
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

#include <numbers>

using namespace velmor;
using namespace velmor::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr double kPi = std::numbers::pi;

LoadResult readEntities(std::string_view groups)
{
    LoadResult result = Drawing::read(entitiesOnly(groups));
    if (!result.drawing)
        throw std::runtime_error(result.message);
    return result;
}

} // namespace

TEST(DxfReading, ALineAnArcACircleAndAPointComeWithTheirPlaces)
{
    const auto r = readEntities("0 LINE\n8 A\n62 3\n10 1\n20 2\n30 3\n11 4.5\n21 -5\n31 6e1\n"
                                "0 ARC\n8 A\n10 1\n20 1\n40 2\n50 90\n51 180\n"
                                "0 CIRCLE\n8 B\n10 5\n20 6\n40 7\n"
                                "0 POINT\n8 B\n10 .5\n20 -.25\n");
    EXPECT_THAT(r.report.findings, IsEmpty());
    const Drawing &d = *r.drawing;
    const auto &line = entityAt<AcDbLine>(d, 0);
    EXPECT_EQ(line.startPoint(), AcGePoint3d(1, 2, 3));
    EXPECT_EQ(line.endPoint(), AcGePoint3d(4.5, -5, 60));
    EXPECT_EQ(line.layer(), L"A");
    EXPECT_EQ(line.colorIndex(), 3);
    const auto &arc = entityAt<AcDbArc>(d, 1);
    EXPECT_DOUBLE_EQ(arc.startAngle(), kPi / 2);
    EXPECT_DOUBLE_EQ(arc.endAngle(), kPi);
    EXPECT_EQ(entityAt<CircleEntity>(d, 2).radius(), 7);
    EXPECT_EQ(entityAt<PointEntity>(d, 3).position(), AcGePoint3d(0.5, -0.25, 0));
    EXPECT_EQ(entityAt<PointEntity>(d, 3).colorIndex(), 256);
    EXPECT_EQ(d.version(), "AC1009");
    EXPECT_TRUE(d.isR12());
}

TEST(DxfReading, APolylineHasItsBulgesAndOldOnesLeaveTheFrameOut)
{
    const auto r =
        readEntities("0 LWPOLYLINE\n8 A\n90 2\n70 1\n38 4\n10 0\n20 0\n42 1\n10 2\n20 0\n"
                     "0 POLYLINE\n8 A\n66 1\n30 7\n70 1\n"
                     "0 VERTEX\n8 A\n10 0\n20 0\n42 -0.5\n0 VERTEX\n8 A\n10 9\n20 9\n70 16\n"
                     "0 VERTEX\n8 A\n10 1\n20 1\n0 SEQEND\n8 A\n"
                     "0 POLYLINE\n8 A\n66 1\n70 8\n0 VERTEX\n8 A\n10 0\n20 0\n30 5\n70 32\n0 SEQEND\n8 A\n"
                     "0 POLYLINE\n8 A\n66 1\n70 64\n0 VERTEX\n8 A\n10 0\n20 0\n30 5\n70 192\n0 SEQEND\n8 A\n");
    const Drawing &d = *r.drawing;
    ASSERT_THAT(d.modelSpace().entities(), SizeIs(4));
    const auto &light = entityAt<AcDbPolyline>(d, 0);
    EXPECT_THAT(light.vertices(), ElementsAre(AcDbPolyline::Vertex{0, 0, 1}, AcDbPolyline::Vertex{2, 0, 0}));
    EXPECT_TRUE(light.isClosed());
    EXPECT_EQ(light.elevation(), 4);
    const auto &old = entityAt<AcDb2dPolyline>(d, 1);
    EXPECT_THAT(old.vertices(), ElementsAre(AcDbPolyline::Vertex{0, 0, -0.5}, AcDbPolyline::Vertex{1, 1, 0}));
    EXPECT_EQ(old.elevation(), 7);
    EXPECT_THAT(entityAt<AcDb3dPolyline>(d, 2).vertices(), ElementsAre(AcGePoint3d(0, 0, 5)));
    EXPECT_EQ(kindOf(*d.modelSpace().entities()[3]), EntityKind::Unknown); // a mesh
    EXPECT_EQ(r.report.unread.at("POLYLINE"), 1u);
}

TEST(DxfReading, WhatIsNoEntityIsCountedAsReadOrKeptUnreadToo)
{
    const auto r =
        Drawing::read(dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $INSUNITS\n70 6\n0 ENDSEC\n"
                          "0 SECTION\n2 MYSTUFF\n0 THING\n5 A0\n0 ENDSEC\n"
                          "0 SECTION\n2 TABLES\n0 TABLE\n2 VPORT\n70 1\n0 VPORT\n5 A1\n2 *Active\n0 ENDTAB\n"
                          "0 TABLE\n2 LAYER\n70 3\n0 LAYER\n5 A2\n2 One\n70 0\n0 LAYER\n5 A3\n2 Two\n70 0\n"
                          "0 LAYER\n5 A4\n2 ONE\n70 0\n0 ENDTAB\n0 ENDSEC\n"
                          "0 SECTION\n2 BLOCKS\n0 BLOCK\n5 A5\n2 B\n10 0\n20 0\n0 ENDBLK\n5 A6\n0 ENDSEC\n"
                          "0 SECTION\n2 ENTITIES\n0 POINT\n5 A7\n8 Three\n10 0\n20 0\n0 ENDSEC\n"
                          "0 SECTION\n2 OBJECTS\n0 DICTIONARY\n5 B0\n3 SETTINGS\n350 B1\n"
                          "0 DICTIONARY\n5 B1\n3 KEY\n350 B2\n3 OTHER\n350 B3\n0 XRECORD\n5 B2\n1 text\n"
                          "0 MATERIAL\n5 B3\n0 MATERIAL\n5 B4\n0 XRECORD\n5 B5\n1 of nobody\n0 ENDSEC\n0 EOF\n"));
    ASSERT_TRUE(r.drawing);
    using testing::Pair;
    EXPECT_THAT(r.report.readOthers,
                ElementsAre(Pair("blocks", 1), Pair("data records", 1), Pair("header variables", 2), Pair("layers", 2),
                            Pair("named dictionaries", 1)));
    EXPECT_THAT(r.report.unreadOthers,
                ElementsAre(Pair("object MATERIAL", 2), Pair("object XRECORD", 1), Pair("record LAYER", 1),
                            Pair("record VPORT", 1), Pair("section MYSTUFF", 1)));
    EXPECT_THAT(r.report.read, ElementsAre(Pair("POINT", 1)));
    EXPECT_TRUE(r.report.unread.empty());
}

TEST(DxfReading, WhatLooksDownIsTurnedIntoTheWorld)
{
    const auto r = readEntities("0 CIRCLE\n8 0\n10 1\n20 2\n30 3\n40 1\n230 -1.0\n"
                                "0 ARC\n8 0\n10 1\n20 0\n40 1\n50 0\n51 90\n210 0\n220 0\n230 -1\n"
                                "0 LWPOLYLINE\n8 0\n90 2\n70 0\n10 1\n20 1\n42 0.5\n10 2\n20 1\n210 0\n220 0\n230 -1\n"
                                "0 LINE\n8 0\n10 1\n20 1\n11 2\n21 2\n230 -1\n"
                                "0 ELLIPSE\n8 0\n10 0\n20 0\n11 2\n21 0\n40 0.5\n41 0\n42 1.5707963267948966\n230 -1\n"
                                "0 CIRCLE\n8 0\n10 1\n20 2\n40 1\n210 1\n220 0\n230 0\n");
    const Drawing &d = *r.drawing;
    EXPECT_EQ(entityAt<CircleEntity>(d, 0).center(), AcGePoint3d(-1, 2, -3));
    const auto &arc = entityAt<AcDbArc>(d, 1);
    EXPECT_TRUE(arc.startPoint().isEqualTo({-1, 1, 0}, 1e-12));
    EXPECT_TRUE(arc.endPoint().isEqualTo({-2, 0, 0}, 1e-12));
    EXPECT_THAT(entityAt<AcDbPolyline>(d, 2).vertices(),
                ElementsAre(AcDbPolyline::Vertex{-1, 1, -0.5}, AcDbPolyline::Vertex{-2, 1, 0}));
    EXPECT_EQ(entityAt<AcDbLine>(d, 3).startPoint(), AcGePoint3d(1, 1, 0)); // lines stand in the world
    const auto &ellipse = entityAt<EllipseEntity>(d, 4);
    EXPECT_EQ(ellipse.shape().ratio, -0.5);
    EXPECT_TRUE(ellipse.pointAt(kPi / 2).isEqualTo({0, -1, 0}, 1e-12));
    EXPECT_EQ(kindOf(*d.modelSpace().entities()[5]), EntityKind::Unknown); // stands upright
    EXPECT_FALSE(r.report.damaged());
}

TEST(DxfReading, TextsSayWhatIsSeen)
{
    const auto r = readEntities("0 TEXT\n8 0\n10 1\n20 2\n40 2.5\n1 %%c200 90%%d 100%% \n50 90\n41 0.8\n"
                                "0 TEXT\n8 0\n10 1\n20 2\n40 1\n1 M\n72 1\n73 2\n11 5\n21 6\n"
                                "0 MTEXT\n8 0\n10 1\n20 2\n40 1\n71 5\n3 {\\fArial|b0;A}\\PB\n1  \\S1/2;\\~x\\\\y\n");
    const auto &text = entityAt<TextEntity>(*r.drawing, 0);
    EXPECT_EQ(text.shape().text, L"\u2300200 90\u00b0 100%% ");
    EXPECT_NEAR(text.shape().rotation, kPi / 2, 1e-12);
    EXPECT_EQ(text.shape().widthFactor, 0.8);
    const auto &centred = entityAt<TextEntity>(*r.drawing, 1).shape();
    EXPECT_EQ(centred.position, AcGePoint3d(5, 6, 0));
    EXPECT_EQ(centred.horizontal, 1);
    EXPECT_EQ(centred.vertical, 2);
    const auto &paragraphs = entityAt<MTextEntity>(*r.drawing, 2).shape();
    EXPECT_EQ(paragraphs.text, L"A\nB 1/2\u00a0x\\y");
    EXPECT_EQ(paragraphs.horizontal, 1);
    EXPECT_EQ(paragraphs.vertical, 2);
}

TEST(DxfReading, AReferenceHasItsBlockItsPlaceAndItsAttributes)
{
    LoadResult r;
    const Drawing &d =
        read(r, dxf("0 SECTION\n2 BLOCKS\n0 BLOCK\n8 0\n2 MH\n70 2\n10 1\n20 1\n30 0\n"
                    "0 ATTDEF\n8 0\n10 0\n20 0\n40 1\n1 ?\n3 Name of it\n2 NAME\n70 1\n"
                    "0 CIRCLE\n8 0\n10 1\n20 1\n40 1\n0 ENDBLK\n8 0\n0 ENDSEC\n"
                    "0 SECTION\n2 ENTITIES\n"
                    "0 INSERT\n8 K\n66 1\n2 mh\n10 5\n20 6\n41 2\n42 3\n50 90\n70 4\n71 5\n44 10\n45 20\n"
                    "0 ATTRIB\n8 K\n10 5\n20 7\n40 1\n1 M17\n2 NAME\n70 0\n"
                    "0 ATTRIB\n8 K\n10 5\n20 7\n40 1\n1 3,5\n2 DEPTH\n70 1\n0 SEQEND\n8 K\n"
                    "0 LINE\n8 0\n10 0\n20 0\n11 1\n21 1\n0 ENDSEC\n0 EOF\n"));
    EXPECT_THAT(r.report.findings, IsEmpty());
    ASSERT_THAT(d.modelSpace().entities(), SizeIs(2));
    const auto &reference = entityAt<AcDbBlockReference>(d, 0);
    const BlockRecord *block = d.findBlock(L"MH");
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reference.blockTableRecord(), block->objectId());
    EXPECT_EQ(block->basePoint(), AcGePoint3d(1, 1, 0));
    EXPECT_THAT(block->entities(), SizeIs(2));
    const auto &definition = dynamic_cast<AttributeDefinitionEntity &>(*block->entities()[0]);
    EXPECT_EQ(definition.tag(), L"NAME");
    EXPECT_EQ(definition.prompt(), L"Name of it");
    EXPECT_TRUE(definition.isInvisible());
    const auto &p = reference.placement();
    EXPECT_EQ(p.position, AcGePoint3d(5, 6, 0));
    EXPECT_EQ(p.scaleX, 2);
    EXPECT_EQ(p.scaleY, 3);
    EXPECT_NEAR(p.rotation, kPi / 2, 1e-12);
    EXPECT_EQ(p.columns, 4);
    EXPECT_EQ(p.rows, 5);
    EXPECT_EQ(p.columnSpacing, 10);
    EXPECT_EQ(p.rowSpacing, 20);
    const auto attributes = attributesOf(reference);
    ASSERT_THAT(attributes, SizeIs(2));
    EXPECT_EQ(attributes[0]->tag(), L"NAME");
    EXPECT_EQ(attributes[0]->shape().text, L"M17");
    EXPECT_FALSE(attributes[0]->isInvisible());
    EXPECT_TRUE(attributes[1]->isInvisible());
}

TEST(DxfReading, HatchLoopsBecomeRings)
{
    const auto r = readEntities(
        // a ring of vertices with a bulge, and a ring of edges: a line and a half circle, counted clockwise
        "0 HATCH\n8 0\n10 0\n20 0\n30 2\n210 0\n220 0\n230 1\n2 ANSI31\n70 0\n71 1\n91 2\n"
        "92 3\n72 1\n73 1\n93 3\n10 0\n20 0\n42 0.5\n10 10\n20 0\n42 0\n10 10\n20 10\n42 0\n97 0\n"
        "92 1\n93 2\n72 1\n10 1\n20 0\n11 3\n21 0\n72 2\n10 2\n20 0\n40 1\n50 0\n51 180\n73 1\n97 0\n"
        "75 0\n76 1\n52 30\n41 2\n77 0\n78 1\n53 75\n43 0\n44 0\n45 1\n46 1\n79 0\n98 0\n");
    ASSERT_THAT(r.report.findings, IsEmpty());
    const auto &hatch = entityAt<AcDbHatch>(*r.drawing, 0);
    ASSERT_THAT(hatch.loops(), SizeIs(2));
    EXPECT_THAT(hatch.loops()[0].vertices, ElementsAre(AcDbPolyline::Vertex{0, 0, 0.5}, AcDbPolyline::Vertex{10, 0, 0},
                                                       AcDbPolyline::Vertex{10, 10, 0}));
    const auto &ring = hatch.loops()[1].vertices;
    ASSERT_THAT(ring, SizeIs(2));
    EXPECT_EQ(ring[0], (AcDbPolyline::Vertex{1, 0, 0}));
    EXPECT_NEAR(ring[1].x, 3, 1e-12);
    EXPECT_NEAR(ring[1].bulge, 1, 1e-12);
    EXPECT_EQ(hatch.patternName(), L"ANSI31");
    EXPECT_NEAR(hatch.patternAngle(), kPi / 6, 1e-12);
    EXPECT_EQ(hatch.patternScale(), 2);
}

TEST(DxfReading, AnArcEdgeOfAHatchThatRunsClockwiseCountsItsAnglesClockwise)
{
    // From (0,1) clockwise over (1,0) to (0,-1), then back along the axis.
    const auto r = readEntities("0 HATCH\n8 0\n10 0\n20 0\n30 0\n2 SOLID\n70 1\n71 0\n91 1\n92 1\n93 2\n"
                                "72 2\n10 0\n20 0\n40 1\n50 270\n51 450\n73 0\n"
                                "72 1\n10 0\n20 -1\n11 0\n21 1\n97 0\n75 0\n76 1\n98 0\n");
    const auto &ring = entityAt<AcDbHatch>(*r.drawing, 0).loops().at(0).vertices;
    ASSERT_THAT(ring, SizeIs(2));
    EXPECT_NEAR(ring[0].x, 0, 1e-12);
    EXPECT_NEAR(ring[0].y, 1, 1e-12);
    EXPECT_NEAR(ring[0].bulge, -1, 1e-12);
    EXPECT_NEAR(ring[1].y, -1, 1e-12);
}

TEST(DxfReading, SplinesHaveKnotsPointsAndWeights)
{
    const auto r = readEntities("0 SPLINE\n8 0\n70 8\n71 2\n72 6\n73 3\n74 0\n40 0\n40 0\n40 0\n40 1\n40 1\n40 1\n"
                                "10 0\n20 0\n30 0\n41 1\n10 1\n20 2\n30 0\n41 0.5\n10 2\n20 0\n30 0\n41 1\n");
    const auto &shape = entityAt<SplineEntity>(*r.drawing, 0).shape();
    EXPECT_EQ(shape.degree, 2);
    EXPECT_THAT(shape.knots, ElementsAre(0, 0, 0, 1, 1, 1));
    EXPECT_THAT(shape.weights, ElementsAre(1, 0.5, 1));
    EXPECT_THAT(shape.controlPoints, SizeIs(3));
    EXPECT_EQ(shape.controlPoints[1], AcGePoint3d(1, 2, 0));
}

TEST(DxfReading, PaperSpaceIsKeptApart)
{
    const auto r = readEntities("0 LINE\n67 1\n8 0\n10 0\n20 0\n11 1\n21 1\n0 LINE\n8 0\n10 0\n20 0\n11 2\n21 2\n");
    EXPECT_THAT(r.drawing->modelSpace().entities(), SizeIs(1));
    EXPECT_THAT(r.drawing->findBlock(L"*Paper_Space")->entities(), SizeIs(1));
}

TEST(DxfReading, LayersComeInTheTablesOrderAndUnlistedOnesBehind)
{
    LoadResult r;
    const Drawing &d =
        read(r, dxf("0 SECTION\n2 HEADER\n9 $CLAYER\n8 b\n0 ENDSEC\n0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n70 3\n"
                    "0 LAYER\n2 0\n70 0\n62 7\n6 CONTINUOUS\n0 LAYER\n2 B\n70 5\n62 -3\n6 CONTINUOUS\n"
                    "0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n0 POINT\n8 new\n10 0\n20 0\n"
                    "0 POINT\n8 b\n10 0\n20 0\n0 POINT\n10 0\n20 0\n0 ENDSEC\n0 EOF\n"));
    ASSERT_THAT(d.layers(), SizeIs(3));
    EXPECT_EQ(d.layer(1).name, L"B");
    EXPECT_EQ(d.layer(1).color, 3);
    EXPECT_FALSE(d.layer(1).on);
    EXPECT_TRUE(d.layer(1).frozen);
    EXPECT_TRUE(d.layer(1).locked);
    EXPECT_EQ(d.layer(2).name, L"new");
    EXPECT_TRUE(d.layer(2).visible());
    EXPECT_EQ(layerIndexOf(*d.modelSpace().entities()[1]), 1u);
    EXPECT_EQ(layerIndexOf(*d.modelSpace().entities()[2]), 0u);
    EXPECT_EQ(d.currentLayer(), 1u);
}

TEST(DxfReading, TakesEitherLineEndBlanksAroundCodesAndCommentsInStride)
{
    const std::string text =
        "999\r\nmade by hand\r\n 0 \r\nSECTION\r\n  2\r\nENTITIES\r\n0\r\n LINE \r\n\t8\r\nA\r\n 10 \r\n 1.0 "
        "\r\n20\r\n2\r\n999\r\nhere\r\n11\r\n3\r\n21\r\n4\r\n0\r\nENDSEC\r\n0\r\nEOF\r\n\r\n\x1A";
    LoadResult r;
    Drawing &d = read(r, text);
    EXPECT_THAT(r.report.findings, IsEmpty());
    EXPECT_EQ(entityAt<AcDbLine>(d, 0).endPoint(), AcGePoint3d(3, 4, 0));
    EXPECT_EQ(d.write(), text);
    d.append(std::make_unique<AcDbLine>());
    const std::string changed = d.write();
    EXPECT_EQ(changed.find("\n0\r\nLINE\r\n8\r\n"),
              changed.rfind("\n0\r\nLINE\r\n8\r\n")); // the new one, in the file's form
    EXPECT_NE(changed.find("\n0\r\nLINE\r\n8\r\n"), std::string::npos);
}

TEST(DxfReading, SectionsMayComeInAnyOrder)
{
    LoadResult r;
    const Drawing &d = read(
        r,
        dxf("0 SECTION\n2 ENTITIES\n0 INSERT\n8 Č\n2 B\n10 0\n20 0\n0 ENDSEC\n"
            "0 SECTION\n2 BLOCKS\n0 BLOCK\n8 0\n2 B\n10 0\n20 0\n0 CIRCLE\n8 K\n10 0\n20 0\n40 1\n0 ENDBLK\n0 ENDSEC\n"
            "0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n0 LAYER\n2 0\n70 0\n62 7\n0 LAYER\n2 Č\n70 0\n62 5\n0 LAYER\n2 "
            "K\n70 0\n62 6\n0 ENDTAB\n0 ENDSEC\n"
            "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1021\n0 ENDSEC\n0 EOF\n"));
    EXPECT_THAT(r.report.findings, IsEmpty());
    ASSERT_THAT(d.layers(), SizeIs(3));
    EXPECT_EQ(d.layer(1).name, L"Č");
    EXPECT_EQ(effectiveColor(d, *d.modelSpace().entities().at(0)), 5);
    EXPECT_FALSE(entityAt<AcDbBlockReference>(d, 0).blockTableRecord().isNull());
    EXPECT_THAT(d.findBlock(L"B")->entities(), SizeIs(1));
}

TEST(DxfReading, TextFollowsTheCodePageAndUtf8Later)
{
    LoadResult r;
    const std::string head = dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 ANSI_1250\n0 ENDSEC\n0 "
                                 "SECTION\n2 ENTITIES\n0 TEXT\n8 0\n10 0\n20 0\n");
    EXPECT_EQ(entityAt<TextEntity>(read(r, head + "1\n\xE8vor \\U+0160\n0\nENDSEC\n0\nEOF\n"), 0).shape().text,
              L"čvor Š");
    EXPECT_EQ(r.report.codePage, "ANSI_1250");
    EXPECT_EQ(r.report.version, "AC1015");
}

TEST(DxfReading, AReferenceToABlockThatIsNotThereIsAWarning)
{
    const auto r = readEntities("0 INSERT\n8 0\n2 GONE\n10 0\n20 0\n");
    EXPECT_TRUE(entityAt<AcDbBlockReference>(*r.drawing, 0).blockTableRecord().isNull());
    ASSERT_THAT(r.report.findings, SizeIs(1));
    EXPECT_EQ(r.report.findings[0].severity, Severity::Warning);
    EXPECT_EQ(r.report.findings[0].line, 10u);
    EXPECT_FALSE(r.report.damaged());
}

// --- Damage
// ------------------------------------------------------------------------------------------------------------------

namespace {

/// Two lines with something wrong between them; both must be read.
LoadResult readBetweenLines(const std::string &wrong)
{
    const std::string line = dxf("0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n");
    return Drawing::read(dxf("0 SECTION\n2 ENTITIES\n") + line + wrong + line + dxf("0 ENDSEC\n0 EOF\n"));
}

} // namespace

TEST(DamagedDxf, ANumberThatIsNoneKeepsItsEntityUnreadAndIsReportedWithItsLine)
{
    for (const std::string bad : {"abc", "1.0.0", "", "nan", "1e999", "0x10", "1,5"}) {
        const auto r = readBetweenLines(dxf("0 CIRCLE\n8 A\n10 0\n20 0\n40 " + bad + "\n"));
        ASSERT_TRUE(r.drawing) << bad;
        EXPECT_THAT(r.drawing->modelSpace().entities(), SizeIs(3));
        EXPECT_EQ(kindOf(*r.drawing->modelSpace().entities()[1]), EntityKind::Unknown);
        ASSERT_THAT(r.report.findings, SizeIs(1)) << bad;
        EXPECT_EQ(r.report.findings[0].severity, Severity::Damage);
        EXPECT_EQ(r.report.findings[0].line, 26u);
        EXPECT_THAT(r.report.findings[0].text, testing::HasSubstr("CIRCLE"));
        EXPECT_TRUE(r.report.damaged());
    }
}

TEST(DamagedDxf, ALineThatIsNoGroupCodeIsPassedOver)
{
    auto r = readBetweenLines("garbage\n");
    ASSERT_TRUE(r.drawing);
    EXPECT_THAT(r.drawing->modelSpace().entities(), SizeIs(2));
    ASSERT_THAT(r.report.findings, SizeIs(1));
    EXPECT_EQ(r.report.findings[0].line, 17u);
    EXPECT_THAT(r.report.findings[0].text, testing::HasSubstr("garbage"));
}

TEST(DamagedDxf, AFileThatWasCutOpensUpToTheCut)
{
    const std::string whole =
        dxf("0 SECTION\n2 ENTITIES\n0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n"
            "0 POLYLINE\n8 A\n66 1\n0 VERTEX\n8 A\n10 0\n20 0\n0 VERTEX\n8 A\n10 1234\n20 0\n0 SEQEND\n8 A\n"
            "0 ENDSEC\n0 EOF\n");
    const std::size_t afterLine = whole.find("POLYLINE");
    for (std::size_t length = whole.find("LINE") + 4; length < whole.size() - 4; ++length) {
        auto r = Drawing::read(whole.substr(0, length));
        ASSERT_TRUE(r.drawing) << length << r.message;
        EXPECT_TRUE(r.report.damaged()) << length;
        EXPECT_GT(r.report.findings.back().line, 0u);
        // The line is sure once something follows it.
        if (length > afterLine) {
            ASSERT_FALSE(r.drawing->modelSpace().entities().empty()) << length;
            EXPECT_EQ(entityAt<AcDbLine>(*r.drawing, 0).endPoint(), AcGePoint3d(1, 1, 0));
        }
        // What is written is whole again, and new entities find their place.
        r.drawing->append(std::make_unique<PointEntity>(AcGePoint3d(5, 5)));
        const auto again = Drawing::read(r.drawing->write());
        ASSERT_TRUE(again.drawing) << length;
        EXPECT_THAT(again.report.findings, IsEmpty()) << length;
        EXPECT_EQ(entityAt<PointEntity>(*again.drawing, again.drawing->modelSpace().entities().size() - 1).position(),
                  AcGePoint3d(5, 5));
    }
}

TEST(DamagedDxf, ACutInsideOfTablesAndBlocksIsClosedToo)
{
    const std::string whole =
        dxf("0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n70 1\n0 LAYER\n2 A\n70 0\n62 1\n0 ENDTAB\n0 ENDSEC\n"
            "0 SECTION\n2 BLOCKS\n0 BLOCK\n8 0\n2 B\n10 0\n20 0\n0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n"
            "0 ENDBLK\n0 ENDSEC\n0 EOF\n");
    for (std::size_t length = whole.find("TABLES") + 7; length < whole.size() - 4; ++length) {
        const auto r = Drawing::read(whole.substr(0, length));
        if (!r.drawing) { // nothing but the beginning of a section
            EXPECT_FALSE(r.message.empty());
            continue;
        }
        r.drawing->ensureLayer(L"NEW", 2);
        const std::size_t made = r.drawing->ensureLayer(L"MADE", 4);
        r.drawing->append(std::make_unique<PointEntity>(AcGePoint3d(5, 5)), r.drawing->addBlock(L"C"));
        r.drawing->append(std::make_unique<PointEntity>(AcGePoint3d(5, 5)));
        r.drawing->setLayerOf(*r.drawing->modelSpace().entities().back(), made);
        const auto again = Drawing::read(r.drawing->write());
        ASSERT_TRUE(again.drawing) << length;
        EXPECT_THAT(again.report.findings, IsEmpty()) << length << '\n' << again.report.findings[0].text;
        EXPECT_TRUE(again.drawing->findLayer(L"NEW"));
        ASSERT_NE(again.drawing->findBlock(L"C"), nullptr);
        EXPECT_THAT(again.drawing->findBlock(L"C")->entities(), SizeIs(1));
        EXPECT_THAT(again.drawing->modelSpace().entities(), SizeIs(1));
        EXPECT_EQ(again.drawing->modelSpace().entities()[0]->layer(), L"MADE");
    }
}

TEST(DamagedDxf, MissingEndsOfSectionsTablesAndBlocksAreReported)
{
    const auto r = Drawing::read(
        dxf("0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n0 LAYER\n2 A\n70 0\n62 1\n"
            "0 SECTION\n2 BLOCKS\n0 BLOCK\n8 0\n2 B\n10 0\n20 0\n0 BLOCK\n8 0\n2 C\n10 0\n20 0\n0 ENDBLK\n0 ENDSEC\n"
            "0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n"
            "0 SECTION\n2 ENTITIES\n0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n0 ENDSEC\n0 EOF\n"));
    ASSERT_TRUE(r.drawing);
    EXPECT_THAT(r.drawing->modelSpace().entities(), SizeIs(1));
    EXPECT_NE(r.drawing->findBlock(L"B"), nullptr);
    EXPECT_NE(r.drawing->findBlock(L"C"), nullptr);
    std::vector<std::size_t> lines;
    for (const Finding &finding : r.report.findings) {
        EXPECT_EQ(finding.severity, Severity::Damage);
        lines.push_back(finding.line);
    }
    EXPECT_THAT(lines, ElementsAre(17, 17, 31, 45)); // section, its table, block B, the line outside
}

TEST(DamagedDxf, WhatIsNoDrawingIsRefusedWithAReason)
{
    const auto status = [](const std::string &text) {
        const auto r = Drawing::read(text);
        EXPECT_FALSE(r.drawing);
        EXPECT_FALSE(r.message.empty());
        EXPECT_EQ(r.message.find('\n'), std::string::npos);
        return r.status;
    };
    EXPECT_EQ(status(""), FileStatus::Empty);
    EXPECT_EQ(status("hello\nworld\n"), FileStatus::NotADrawing);
    EXPECT_EQ(status(std::string("\0\1\2\3\n\n\0", 7)), FileStatus::NotADrawing);
    EXPECT_EQ(status("AC1027\0\0\0\0"), FileStatus::NotADrawing);
    EXPECT_EQ(status("1\n2\n3\n4\n"), FileStatus::NotADrawing);
    EXPECT_EQ(status("  0\nEOF\n"), FileStatus::NotADrawing);
    EXPECT_EQ(Drawing::load("/no/such/file.dxf").status, FileStatus::NotFound);
    EXPECT_EQ(Drawing::load("/tmp").status, FileStatus::NotAFile);
}

TEST(DamagedDxf, FindingsAreLimitedInNumber)
{
    std::string wrong;
    for (int i = 0; i < 5000; ++i)
        wrong += "garbage\n";
    const auto r = readBetweenLines(wrong);
    ASSERT_TRUE(r.drawing);
    EXPECT_LE(r.report.findings.size(), 1001u);
    EXPECT_THAT(r.drawing->modelSpace().entities(), SizeIs(2));
}
