// What a save changes in a text, and that it changes nothing else.
#include "tests/host/drawing/Drawing2000.h"

#include <gmock/gmock.h>

#include <numbers>
#include <set>
#include <unistd.h>

using namespace velmor;
using namespace velmor::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

TEST(DxfWriting, WhatNobodyTouchedComesBackByteForByte)
{
    for (const char *lineEnd : {"\n", "\r\n"}) {
        std::string text = drawing2000();
        if (std::string_view(lineEnd) == "\r\n") {
            std::string other;
            for (const char c : text)
                other += c == '\n' ? std::string("\r\n") : std::string(1, c);
            text = other;
        }
        LoadResult r;
        Drawing &d = read(r, text);
        EXPECT_THAT(r.report.findings, IsEmpty());
        EXPECT_EQ(d.write(), text);
        EXPECT_FALSE(d.isModified());
    }
}

TEST(DxfWriting, ALayerAndAColourChangeTouchOnlyTheirTags)
{
    LoadResult r;
    const std::string text = drawing2000();
    Drawing &d = read(r, text);
    d.setLayerOf(byHandle(d, 0x40), 0);
    d.setColorOf(byHandle(d, 0x40), 1);
    d.setLayerOf(byHandle(d, 0x41), 0);
    EXPECT_THAT(difference(text, d.write()), ElementsAre("-8 K", "+8 0", "+62 1", "-8 K", "+8 0"));
    d.setColorOf(byHandle(d, 0x40), 256);
    EXPECT_THAT(difference(text, d.write()), ElementsAre("-8 K", "+8 0", "-8 K", "+8 0"));
}

TEST(DxfWriting, ATrueColourGoesWithTheColourThatItBelongedTo)
{
    LoadResult r;
    const std::string text =
        drawing2000("0 POINT\n5 60\n330 1F\n100 AcDbEntity\n8 K\n62 1\n420 255\n100 AcDbPoint\n10 0\n20 0\n30 0\n");
    Drawing &d = read(r, text);
    d.setColorOf(byHandle(d, 0x60), 5);
    EXPECT_THAT(difference(text, d.write()), ElementsAre("-62 1", "-420 255", "+62 5"));
}

TEST(DxfWriting, ANewLayerComesIntoTheTable)
{
    LoadResult r;
    const std::string text = drawing2000();
    Drawing &d = read(r, text);
    d.ensureLayer(L"Čestice", 4);
    const std::string after = d.write();
    EXPECT_THAT(difference(text, after), ElementsAre("-5 200", "+5 201", "+0 LAYER", "+5 200", "+330 2",
                                                     "+100 AcDbSymbolTableRecord", "+100 AcDbLayerTableRecord",
                                                     "+2 \xC8"
                                                     "estice",
                                                     "+70 0", "+62 4", "+6 CONTINUOUS", "+370 -3", "+390 F"));
    EXPECT_EQ(Drawing::read(after).drawing->findLayer(L"čestice"), 2u);
}

TEST(DxfWriting, AChangedLayerIsPatched)
{
    LoadResult r;
    const std::string text = drawing2000();
    Drawing &d = read(r, text);
    Layer layer = d.layer(1);
    layer.on = false;
    layer.locked = true;
    d.setLayer(1, layer);
    EXPECT_THAT(difference(text, d.write()), ElementsAre("-70 0", "-62 3", "+70 4", "+62 -3"));
    layer.color = 6;
    d.setLayer(1, layer);
    d.setCurrentLayer(1);
    EXPECT_THAT(difference(text, d.write()),
                ElementsAre("-8 0", "+8 K", "-70 0", "-62 3", "-420 255", "+70 4", "+62 -6"));
}

TEST(DxfWriting, AnErasedEntityGoesWithAllThatItOwns)
{
    LoadResult r;
    const std::string text = drawing2000("0 POINT\n5 60\n102 {ACAD_XDICTIONARY\n360 61\n102 }\n330 1F\n100 "
                                         "AcDbEntity\n8 K\n100 AcDbPoint\n10 0\n20 0\n30 0\n");
    Drawing &d = read(r, text);
    d.erase(byHandle(d, 0x42));
    const auto gone = difference(text, d.write());
    EXPECT_THAT(gone, SizeIs(30));
    EXPECT_THAT(gone, testing::Contains("-1 M1"));
    EXPECT_THAT(gone, testing::Contains("-5 44"));
    d.erase(byHandle(d, 0x42), false);
    EXPECT_EQ(d.write(), text);
}

TEST(DxfWriting, TheDictionaryOfAnErasedEntityGoesAlong)
{
    LoadResult r;
    std::string text = drawing2000();
    Drawing &d = read(r, text);
    d.setData(byHandle(d, 0x40), "SLIV", {{1, L"a"}});
    LoadResult again;
    const std::string with = d.write();
    Drawing &e = read(again, with);
    e.erase(byHandle(e, 0x40));
    const std::string without = e.write();
    EXPECT_THAT(without, Not(HasSubstr("SLIV")));
    EXPECT_EQ(tagsOf(without).size(), tagsOf(text).size() - 19); // the line's own
}

TEST(DxfWriting, AnAttributesTextIsPatched)
{
    LoadResult r;
    const std::string text = drawing2000();
    Drawing &d = read(r, text);
    auto &attribute = dynamic_cast<AttributeEntity &>(byHandle(d, 0x43));
    d.setAttributeText(attribute, L"Š 100%%");
    EXPECT_THAT(difference(text, d.write()), ElementsAre("-1 M1", "+1 \x8A 100%%%%%%"));
    EXPECT_EQ(dynamic_cast<AttributeEntity &>(byHandle(*reread(d), 0x43)).shape().text, L"Š 100%%");
}

TEST(DxfWriting, AReferenceThatGetsAttributesSaysSo)
{
    LoadResult r;
    const std::string text =
        drawing2000("0 INSERT\n5 60\n330 1F\n100 AcDbEntity\n8 K\n100 AcDbBlockReference\n2 MH\n10 5\n20 6\n30 0\n");
    Drawing &d = read(r, text);
    TextShape shape;
    shape.text = L"new";
    for (const std::uint64_t handle : {0x42, 0x60})
        d.appendAttribute(dynamic_cast<AcDbBlockReference &>(byHandle(d, handle)),
                          std::make_unique<AttributeEntity>(L"DEPTH", shape));
    const std::string after = d.write();
    const auto e = Drawing::read(after);
    EXPECT_THAT(e.report.findings, IsEmpty());
    const auto first = attributesOf(dynamic_cast<AcDbBlockReference &>(byHandle(*e.drawing, 0x42)));
    ASSERT_THAT(first, SizeIs(2));
    EXPECT_EQ(first[1]->tag(), L"DEPTH");
    const auto second = attributesOf(dynamic_cast<AcDbBlockReference &>(byHandle(*e.drawing, 0x60)));
    ASSERT_THAT(second, SizeIs(1));
    EXPECT_EQ(second[0]->shape().text, L"new");
    for (const std::string &line : difference(text, after))
        EXPECT_TRUE(line[0] == '+' || line == "-5 200") << line;
    EXPECT_EQ(d.write(), after); // again the same
}

TEST(DxfWriting, AMovedLineEndIsPatched)
{
    LoadResult r;
    const std::string text = drawing2000();
    Drawing &d = read(r, text);
    AcDbEntity *open = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(open, idOf(byHandle(d, 0x40)), AcDb::kForWrite), Acad::eOk);
    static_cast<AcDbLine *>(open)->setEndPoint({0.1, 4, 0});
    open->close();
    // Coordinates that stay the same number may be written in another form.
    EXPECT_THAT(difference(text, d.write()), testing::Contains("+11 0.1"));
    EXPECT_EQ(dynamic_cast<AcDbLine &>(byHandle(*reread(d), 0x40)).startPoint(), AcGePoint3d(1.5, 2, 0));
}

TEST(DxfWriting, EveryKindThatIsMadeReadsBackAsItIs)
{
    for (const char *version : {"AC1012", "AC1015", "AC1032"}) {
        LoadResult r;
        std::string text = drawing2000();
        text.replace(text.find("AC1015"), 6, version);
        Drawing &d = read(r, text);
        const double pi = std::numbers::pi;
        const std::size_t before = d.modelSpace().entities().size();
        d.append(std::make_unique<AcDbLine>(AcGePoint3d(0.1, 1e-7, 1), AcGePoint3d(1e20, -2, 3)));
        d.append(std::make_unique<AcDbArc>(AcGePoint3d(1, 2, 3), 4.5, 0.5, 5.5));
        d.append(std::make_unique<CircleEntity>(AcGePoint3d(1, 2, 3), 1.0 / 3));
        d.append(std::make_unique<EllipseEntity>(EllipseEntity::Shape{{1, 2, 3}, {3, 1, 0}, -0.25, 0.5, 4}));
        d.append(std::make_unique<PointEntity>(AcGePoint3d(583195.159999074, 6132829.7)));
        const std::vector<AcDbPolyline::Vertex> ring{{0, 0, 0.5}, {583195.159999074, 0, 0}, {1, 1, -1}};
        d.append(std::make_unique<AcDbPolyline>(ring, true, 2.5));
        d.append(std::make_unique<AcDb2dPolyline>(ring, true, 2.5));
        d.append(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0, 1}, {1, 2, 3}}, true));
        SplineEntity::Shape spline;
        spline.degree = 2;
        spline.knots = {0, 0, 0, 1, 1, 1};
        spline.controlPoints = {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
        spline.weights = {1, 0.5, 1};
        d.append(std::make_unique<SplineEntity>(spline));
        TextShape shape;
        shape.position = {3, 4, 0};
        shape.rotation = pi / 2;
        shape.height = 2.5;
        shape.horizontal = 1;
        shape.vertical = 2;
        shape.text = L"Čvor 1^ 50%%d";
        d.append(std::make_unique<TextEntity>(shape));
        shape.text = L"a\\{b}\n" + std::wstring(700, L'č') + L"\nend";
        d.append(std::make_unique<MTextEntity>(shape));
        auto hatch = std::make_unique<AcDbHatch>();
        d.append(std::make_unique<AcDbPolyline>(ring, true));
        hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI31");
        hatch->setPatternAngle(pi / 6);
        hatch->setPatternScale(2);
        ASSERT_EQ(hatch->appendLoop(AcDbHatch::kExternal, {idOf(*d.modelSpace().entities().back())}), Acad::eOk);
        d.append(std::move(hatch));
        BlockRecord &block = d.addBlock(L"LABEL", {1, 2, 0});
        TextShape attribute;
        attribute.text = L"?";
        d.append(std::make_unique<AttributeDefinitionEntity>(L"ATT1", L"First", attribute, true), block);
        AcDbBlockReference::Placement placement{{7, 8, 9}, 2, -3, 1, pi / 4, 3, 2, 10, 20};
        auto made = std::make_unique<AcDbBlockReference>(idOf(block), placement);
        AcDbBlockReference &reference = *made;
        d.append(std::move(made));
        d.appendAttribute(reference, std::make_unique<AttributeEntity>(L"ATT1", attribute));

        const std::string after = d.write();
        EXPECT_EQ(d.write(), after);
        const auto e = Drawing::read(after);
        ASSERT_TRUE(e.drawing);
        EXPECT_THAT(e.report.findings, IsEmpty());
        const auto &old = d.modelSpace().entities(), &now = e.drawing->modelSpace().entities();
        ASSERT_EQ(now.size(), old.size());
        for (std::size_t i = before; i < old.size(); ++i) {
            EXPECT_EQ(kindOf(*now[i]), kindOf(*old[i])) << i;
            EXPECT_EQ(handleOf(*now[i]), handleOf(*old[i])) << i;
            EXPECT_EQ(now[i]->layer(), old[i]->layer()) << i;
            const Extents a = extentsOf(*old[i]), b = extentsOf(*now[i]);
            EXPECT_NEAR(a.minX, b.minX, 1e-9) << i;
            EXPECT_NEAR(a.maxY, b.maxY, 1e-9) << i;
        }
        const auto at = [&](std::size_t i) -> AcDbEntity & { return *now[before + i]; };
        EXPECT_EQ(static_cast<AcDbLine &>(at(0)).endPoint().x, 1e20);
        EXPECT_DOUBLE_EQ(static_cast<AcDbArc &>(at(1)).endAngle(), 5.5);
        EXPECT_EQ(static_cast<EllipseEntity &>(at(3)).shape().ratio, -0.25);
        EXPECT_EQ(static_cast<AcDbPolyline &>(at(5)).vertices(), ring);
        EXPECT_EQ(static_cast<AcDbPolyline &>(at(5)).elevation(), 2.5);
        EXPECT_TRUE(static_cast<AcDbPolyline &>(at(5)).isClosed());
        EXPECT_EQ(static_cast<AcDb2dPolyline &>(at(6)).vertices(), ring);
        EXPECT_EQ(static_cast<AcDb2dPolyline &>(at(6)).elevation(), 2.5);
        EXPECT_EQ(static_cast<AcDb3dPolyline &>(at(7)).vertices()[1], AcGePoint3d(1, 2, 3));
        EXPECT_EQ(static_cast<SplineEntity &>(at(8)).shape().weights, spline.weights);
        EXPECT_EQ(static_cast<TextEntity &>(at(9)).shape().text, L"Čvor 1^ 50%%d");
        EXPECT_EQ(static_cast<TextEntity &>(at(9)).shape().vertical, 2);
        EXPECT_EQ(static_cast<MTextEntity &>(at(10)).shape().text, shape.text);
        EXPECT_EQ(static_cast<MTextEntity &>(at(10)).shape().vertical, 2);
        EXPECT_NEAR(static_cast<MTextEntity &>(at(10)).shape().rotation, pi / 2, 1e-12);
        EXPECT_EQ(static_cast<AcDbHatch &>(at(12)).loops()[0].vertices, ring);
        EXPECT_EQ(static_cast<AcDbHatch &>(at(12)).patternScale(), 2);
        const auto &p = static_cast<AcDbBlockReference &>(at(13)).placement();
        EXPECT_EQ(p.scaleY, -3);
        EXPECT_EQ(p.columns, 3);
        EXPECT_EQ(p.rowSpacing, 20);
        EXPECT_THAT(attributesOf(static_cast<AcDbBlockReference &>(at(13))), SizeIs(1));
        const BlockRecord *read = e.drawing->findBlock(L"LABEL");
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->basePoint(), AcGePoint3d(1, 2, 0));
        ASSERT_THAT(read->entities(), SizeIs(1));
        EXPECT_EQ(static_cast<AttributeDefinitionEntity &>(*read->entities()[0]).prompt(), L"First");
        // All that was there is still there.
        for (const std::string &line : difference(text, after))
            EXPECT_TRUE(line[0] == '+' || line == "-5 200") << line;
    }
}

TEST(DxfWriting, EntitiesOfBlocksGoIntoTheirBlocks)
{
    LoadResult r;
    Drawing &d = read(r, drawing2000());
    d.append(std::make_unique<PointEntity>(AcGePoint3d(1, 1)), *d.findBlock(L"MH"));
    d.append(std::make_unique<PointEntity>(AcGePoint3d(2, 2)), *d.findBlock(L"*Paper_Space"));
    d.append(std::make_unique<PointEntity>(AcGePoint3d(3, 3)), d.addBlock(L"NEW"));
    const auto e = reread(d);
    EXPECT_THAT(e->findBlock(L"MH")->entities(), SizeIs(2));
    EXPECT_THAT(e->findBlock(L"*Paper_Space")->entities(), SizeIs(1));
    EXPECT_THAT(e->findBlock(L"NEW")->entities(), SizeIs(1));
    EXPECT_THAT(e->modelSpace().entities(), SizeIs(3));
}

TEST(DxfWriting, AFileOfEntitiesOnlyGetsWhatItNeeds)
{
    LoadResult r;
    const std::string text = entitiesOnly("0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n");
    Drawing &d = read(r, text);
    d.setLayerOf(*d.modelSpace().entities()[0], d.ensureLayer(L"B", 3));
    d.append(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 1), d.addBlock(L"S"));
    d.append(std::make_unique<AcDbBlockReference>(idOf(*d.findBlock(L"S")), AcDbBlockReference::Placement{}));
    d.setHeaderVariable("$INSUNITS", 70, "6");
    const std::string after = d.write();
    EXPECT_THAT(after, Not(HasSubstr("\n5\n"))); // it had no handles and nobody asked for one
    const auto e = Drawing::read(after);
    EXPECT_THAT(e.report.findings, IsEmpty());
    EXPECT_EQ(e.drawing->version(), "AC1009");
    EXPECT_EQ(e.drawing->headerVariable("$INSUNITS"), "6");
    EXPECT_EQ(e.drawing->modelSpace().entities()[0]->layer(), L"B");
    EXPECT_EQ(e.drawing->layer(*e.drawing->findLayer(L"B")).color, 3);
    EXPECT_FALSE(entityAt<AcDbBlockReference>(*e.drawing, 1).blockTableRecord().isNull());
}

TEST(DxfWriting, AHandleThatSomebodyAskedForStandsInTheFileFromThenOn)
{
    LoadResult r;
    std::string text = entitiesOnly(
        "0 LINE\n8 A\n10 0\n20 0\n11 1\n21 1\n0 LINE\n8 A\n10 0\n20 0\n11 2\n21 2\n0 POINT\n8 A\n10 0\n20 0\n");
    Drawing &d = read(r, text);
    const std::uint64_t second = handleOf(*d.modelSpace().entities()[1]);
    d.erase(*d.modelSpace().entities()[0]);
    d.append(std::make_unique<AcDbLine>());
    const auto e = reread(d);
    EXPECT_EQ(e->findByHandle(second), e->modelSpace().entities()[0]);
    EXPECT_EQ(entityAt<AcDbLine>(*e, 0).endPoint(), AcGePoint3d(2, 2, 0));
    // What comes later gets other handles.
    std::set<std::uint64_t> all;
    for (AcDbEntity *entity : e->modelSpace().entities())
        EXPECT_TRUE(all.insert(handleOf(*entity)).second);
}

TEST(DxfWriting, NewHandlesStartBehindAllThatAreUsed)
{
    LoadResult r;
    std::string text = drawing2000();
    text.replace(text.find("\n200\n"), 5, "\n20\n"); // a seed that is wrong
    Drawing &d = read(r, text);
    d.append(std::make_unique<AcDbLine>());
    EXPECT_GT(handleOf(*d.modelSpace().entities().back()), 0x51u);
}
