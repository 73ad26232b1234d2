// What a save changes in a text, and that it changes nothing else.
#include "tests/host/drawing/DxfText.h"

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

namespace {

/// A small drawing of 2000 with a bit of everything that must stay.
std::string drawing2000(std::string_view entities = "")
{
    return dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $DWGCODEPAGE\n3 ANSI_1250\n9 $HANDSEED\n5 200\n9 "
               "$CLAYER\n8 0\n0 ENDSEC\n"
               "0 SECTION\n2 CLASSES\n0 CLASS\n1 MINE\n0 ENDSEC\n"
               "0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n5 2\n330 0\n100 AcDbSymbolTable\n70 1\n"
               "0 LAYER\n5 10\n330 2\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 0\n70 0\n62 7\n6 "
               "CONTINUOUS\n390 F\n"
               "0 LAYER\n5 11\n330 2\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 K\n70 0\n62 3\n420 255\n6 "
               "CONTINUOUS\n390 F\n1001 OTHER\n1000 kept\n"
               "0 ENDTAB\n0 TABLE\n2 BLOCK_RECORD\n5 1\n330 0\n100 AcDbSymbolTable\n70 2\n"
               "0 BLOCK_RECORD\n5 1F\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 *Model_Space\n340 "
               "0\n"
               "0 BLOCK_RECORD\n5 1B\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 *Paper_Space\n340 "
               "0\n"
               "0 BLOCK_RECORD\n5 30\n330 1\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 MH\n340 0\n0 "
               "ENDTAB\n0 ENDSEC\n"
               "0 SECTION\n2 BLOCKS\n"
               "0 BLOCK\n5 20\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 *Model_Space\n70 0\n10 0\n20 0\n30 "
               "0\n3 *Model_Space\n1 \n0 ENDBLK\n5 21\n330 1F\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n"
               "0 BLOCK\n5 31\n330 30\n100 AcDbEntity\n8 0\n100 AcDbBlockBegin\n2 MH\n70 0\n10 0\n20 0\n30 0\n3 MH\n1 "
               "\n"
               "0 CIRCLE\n5 32\n330 30\n100 AcDbEntity\n8 0\n100 AcDbCircle\n10 0\n20 0\n30 0\n40 1\n0 ENDBLK\n5 "
               "33\n330 30\n100 AcDbEntity\n8 0\n100 AcDbBlockEnd\n0 ENDSEC\n"
               "0 SECTION\n2 ENTITIES\n"
               "0 LINE\n5 40\n102 {ACAD_REACTORS\n330 99\n102 }\n330 1F\n100 AcDbEntity\n8 K\n370 25\n100 AcDbLine\n10 "
               "1.50\n20 2.00\n30 0\n11 3\n21 4\n31 0\n1001 OTHER\n1000 8\n1070 62\n"
               "0 STRANGE\n5 41\n330 1F\n100 AcDbEntity\n8 K\n100 AcDbStrange\n310 00FF\n"
               "0 INSERT\n5 42\n330 1F\n100 AcDbEntity\n8 K\n100 AcDbBlockReference\n66 1\n2 MH\n10 5\n20 6\n30 0\n"
               "0 ATTRIB\n5 43\n330 42\n100 AcDbEntity\n8 K\n100 AcDbText\n10 5\n20 6\n30 0\n40 1\n1 M1\n100 "
               "AcDbAttribute\n2 NAME\n70 0\n"
               "0 SEQEND\n5 44\n330 42\n100 AcDbEntity\n8 K\n") +
           dxf(entities) +
           dxf("0 ENDSEC\n0 SECTION\n2 OBJECTS\n"
               "0 DICTIONARY\n5 C\n330 0\n100 AcDbDictionary\n281 1\n3 ACAD_GROUP\n350 D\n3 SETTINGS\n350 50\n"
               "0 DICTIONARY\n5 D\n330 C\n100 AcDbDictionary\n281 1\n"
               "0 DICTIONARY\n5 50\n330 C\n100 AcDbDictionary\n281 1\n3 KEY\n350 51\n"
               "0 XRECORD\n5 51\n102 {ACAD_REACTORS\n330 50\n102 }\n330 50\n100 AcDbXrecord\n280 1\n1 old\n40 1.5\n0 "
               "ENDSEC\n"
               "0 SECTION\n2 FUTURE\n0 THING\n1 kept\n0 ENDSEC\n0 EOF\n");
}

/// The lines of a text that another does not have, and the other way round, in order: "-" taken out, "+" put in.
std::vector<std::string> difference(const std::string &before, const std::string &after)
{
    const auto tags = [](const std::string &text) {
        std::vector<std::string> lines;
        for (const auto &[code, value] : tagsOf(text))
            lines.push_back(std::to_string(code) + ' ' + value);
        return lines;
    };
    const auto a = tags(before), b = tags(after);
    // The longest common subsequence; the texts are small.
    std::vector<std::vector<int>> length(a.size() + 1, std::vector<int>(b.size() + 1));
    for (std::size_t i = a.size(); i-- > 0;)
        for (std::size_t j = b.size(); j-- > 0;)
            length[i][j] = a[i] == b[j] ? length[i + 1][j + 1] + 1 : std::max(length[i + 1][j], length[i][j + 1]);
    std::vector<std::string> result;
    std::size_t i = 0, j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            ++i;
            ++j;
        } else if (j == b.size() || (i < a.size() && length[i + 1][j] >= length[i][j + 1])) {
            result.push_back('-' + a[i++]);
        } else {
            result.push_back('+' + b[j++]);
        }
    }
    return result;
}

AcDbEntity &byHandle(const Drawing &drawing, std::uint64_t handle)
{
    return dynamic_cast<AcDbEntity &>(*drawing.findByHandle(handle));
}

} // namespace

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

// --- Data
// --------------------------------------------------------------------------------------------------------------------

namespace {

const DataItems kItems{{1, L"slivno područje \\ ^ {x}\nsecond line"},
                       {40, 0.1},
                       {90, std::int64_t{-7}},
                       {1, L""},
                       {1, L"  blanks  "},
                       {40, -1e6},
                       {90, std::int64_t{2147483647}},
                       {1, std::wstring(3000, L'č') + L"." + std::wstring(600, L'x')}};

DataItems longItems(int count)
{
    DataItems items;
    for (int i = 0; i < count; ++i) {
        items.push_back({1, L"R" + std::to_wstring(i)});
        items.push_back({40, 1.0 / (i + 1)});
    }
    return items;
}

std::string drawingR12(bool withHandles)
{
    std::string h = withHandles ? "5 7\n" : "";
    return dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n0 LINE\n" + h +
               "8 A\n10 0\n20 0\n11 1\n21 1\n1001 OTHER\n1000 kept\n0 POINT\n8 A\n10 0\n20 0\n0 ENDSEC\n0 EOF\n");
}

} // namespace

class KeptData : public testing::TestWithParam<std::string> {
protected:
    static std::string text()
    {
        return GetParam() == "R12"                ? drawingR12(false)
               : GetParam() == "R12 with handles" ? drawingR12(true)
                                                  : drawing2000();
    }
};
INSTANTIATE_TEST_SUITE_P(Versions, KeptData, testing::Values("2000", "R12", "R12 with handles"), [](const auto &version) {
    std::string name = version.param;
    std::erase(name, ' ');
    return name;
});

TEST_P(KeptData, OnAnObjectSurvivesSaves)
{
    LoadResult r;
    Drawing &d = read(r, text());
    AcDbEntity &line = *d.modelSpace().entities()[0];
    d.setData(line, "VELMOR_A", kItems);
    d.setData(line, "VELMOR_B", longItems(2000)); // 80 kilobytes
    auto made = std::make_unique<AcDbPolyline>(std::vector<AcDbPolyline::Vertex>{{0, 0, 0}, {1, 1, 0}}, false);
    AcDbPolyline &polyline = *made;
    d.append(std::move(made));
    d.setData(polyline, "VELMOR_A", longItems(3));
    std::string written = d.write();
    EXPECT_EQ(d.write(), written);
    for (const auto &tag : tagsOf(written))
        EXPECT_LE(tag.second.size(), 255u);

    auto e = Drawing::read(written);
    EXPECT_THAT(e.report.findings, IsEmpty());
    EXPECT_EQ(e.drawing->write(), written);
    AcDbEntity &again = *e.drawing->modelSpace().entities()[0];
    EXPECT_EQ(e.drawing->data(again, "VELMOR_A"), kItems);
    EXPECT_EQ(e.drawing->data(again, "VELMOR_B"), longItems(2000));
    EXPECT_THAT(e.drawing->dataKeys(again), ElementsAre("VELMOR_A", "VELMOR_B"));
    EXPECT_THAT(e.drawing->entitiesWithData("VELMOR_A"), SizeIs(2));
    EXPECT_EQ(handleOf(again), handleOf(line));

    // Changed, taken away and added again.
    e.drawing->setData(again, "VELMOR_A", longItems(1));
    e.drawing->setData(again, "VELMOR_B", {});
    e.drawing->setData(again, "VELMOR_C", kItems);
    auto f = Drawing::read(e.drawing->write());
    AcDbEntity &third = *f.drawing->modelSpace().entities()[0];
    EXPECT_EQ(f.drawing->data(third, "VELMOR_A"), longItems(1));
    EXPECT_EQ(f.drawing->data(third, "VELMOR_B"), std::nullopt);
    EXPECT_EQ(f.drawing->data(third, "VELMOR_C"), kItems);
    EXPECT_EQ(f.drawing->write().find("R1999"), std::string::npos);
    EXPECT_NE(f.drawing->write().find("kept"), std::string::npos); // others' extended data
}

TEST_P(KeptData, OnAnAttributeAndABlockSurvivesSaves)
{
    LoadResult r;
    Drawing &d = read(r, text());
    BlockRecord &block = d.addBlock(L"LABEL");
    d.append(std::make_unique<PointEntity>(AcGePoint3d(0, 0)), block);
    auto made = std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement{});
    AcDbBlockReference &reference = *made;
    d.append(std::move(made));
    d.appendAttribute(reference, std::make_unique<AttributeEntity>(L"ATT1", TextShape{}));
    d.setData(*attributesOf(reference)[0], "K", longItems(1));
    d.setData(block, "K", longItems(2));
    d.setData(reference, "K", longItems(3));
    auto e = reread(d);
    auto &again = dynamic_cast<AcDbBlockReference &>(*e->modelSpace().entities().back());
    EXPECT_EQ(e->data(again, "K"), longItems(3));
    ASSERT_THAT(attributesOf(again), SizeIs(1));
    EXPECT_EQ(e->data(*attributesOf(again)[0], "K"), longItems(1));
    EXPECT_EQ(e->data(*e->findBlock(L"LABEL"), "K"), longItems(2));
}

TEST_P(KeptData, InNamedDictionariesSurvivesSaves)
{
    LoadResult r;
    Drawing &d = read(r, text());
    d.setDictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_METHOD", {{60, std::int64_t{2}}});
    d.setDictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_SCALE", {{38, 0.5}});
    d.setDictionaryEntry("ZEMX_SEWAGE_CATCHMENT", "LABEL_BLOCK", kItems);
    d.setDictionaryEntry("SETTINGS", "KEY", {{1, L"new"}});
    d.setDictionaryEntry("SETTINGS", "OTHER", longItems(2000));
    const std::string written = d.write();
    EXPECT_EQ(d.write(), written);
    auto e = Drawing::read(written);
    EXPECT_THAT(e.report.findings, IsEmpty());
    EXPECT_EQ(e.drawing->write(), written);
    EXPECT_THAT(e.drawing->dictionaryKeys("ZEMX_LSD2"),
                ElementsAre("ZEMX_CATCH_DEFINE_METHOD", "ZEMX_CATCH_DEFINE_SCALE"));
    EXPECT_EQ(e.drawing->dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_METHOD"), (DataItems{{60, std::int64_t{2}}}));
    EXPECT_EQ(e.drawing->dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_SCALE"), (DataItems{{38, 0.5}}));
    EXPECT_EQ(e.drawing->dictionaryEntry("ZEMX_SEWAGE_CATCHMENT", "LABEL_BLOCK"), kItems);
    EXPECT_EQ(e.drawing->dictionaryEntry("SETTINGS", "KEY"), (DataItems{{1, L"new"}}));
    EXPECT_EQ(e.drawing->dictionaryEntry("SETTINGS", "OTHER"), longItems(2000));
    e.drawing->setDictionaryEntry("SETTINGS", "OTHER", {});
    e.drawing->setDictionaryEntry("SETTINGS", "KEY", {{1, L"newer"}});
    const auto f = reread(*e.drawing);
    EXPECT_THAT(f->dictionaryKeys("SETTINGS"), ElementsAre("KEY"));
    EXPECT_EQ(f->dictionaryEntry("SETTINGS", "KEY"), (DataItems{{1, L"newer"}}));
    EXPECT_EQ(f->write().find("R1999"), std::string::npos);
}

TEST_P(KeptData, OfAnErasedEntityIsGoneFromTheFile)
{
    LoadResult r;
    Drawing &d = read(r, text());
    d.setData(*d.modelSpace().entities()[0], "K", longItems(2000));
    const auto e = reread(d);
    e->erase(*e->modelSpace().entities()[0]);
    EXPECT_THAT(e->entitiesWithData("K"), IsEmpty());
    EXPECT_EQ(e->write().find("R1999"), std::string::npos);
}

TEST(KeptDictionaries, WhatTheFileHoldsIsReadAndOnlyWhatChangesIsPatched)
{
    LoadResult r;
    const std::string text = drawing2000();
    Drawing &d = read(r, text);
    EXPECT_EQ(d.dictionaryEntry("SETTINGS", "KEY"), (DataItems{{1, L"old"}, {40, 1.5}}));
    d.setDictionaryEntry("SETTINGS", "KEY", {{1, L"old"}, {40, 1.5}});
    EXPECT_EQ(d.write(), text);
    EXPECT_FALSE(d.isModified());
    d.setDictionaryEntry("SETTINGS", "KEY", {{1, L"new"}});
    EXPECT_THAT(difference(text, d.write()), ElementsAre("-1 old", "-40 1.5", "+1 new"));
}

TEST(KeptDictionaries, ADrawingWithoutObjectsGetsARoot)
{
    LoadResult r;
    std::string text = drawing2000();
    text.erase(text.find("0\nSECTION\n2\nOBJECTS"),
               text.find("0\nSECTION\n2\nFUTURE") - text.find("0\nSECTION\n2\nOBJECTS"));
    Drawing &d = read(r, text);
    d.setDictionaryEntry("D", "K", {{1, L"v"}});
    d.setData(byHandle(d, 0x40), "K", {{1, L"w"}});
    const auto e = reread(d);
    EXPECT_EQ(e->dictionaryEntry("D", "K"), (DataItems{{1, L"v"}}));
    EXPECT_EQ(e->data(byHandle(*e, 0x40), "K"), (DataItems{{1, L"w"}}));
}

// --- R12
// ---------------------------------------------------------------------------------------------------------------------

TEST(DxfR12, HasOldPolylinesForNewOnesAndLinesForHatches)
{
    LoadResult r;
    Drawing &d = read(r, drawingR12(true));
    const std::vector<AcDbPolyline::Vertex> ring{{0, 0, 0.5}, {100, 0, 0}, {100, 100, 0}};
    d.append(std::make_unique<AcDbPolyline>(ring, true, 1.0));
    auto hatch = std::make_unique<AcDbHatch>();
    hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI31");
    hatch->appendLoop(AcDbHatch::kExternal, {idOf(*d.modelSpace().entities().back())});
    const std::size_t lines = hatch->lines().size();
    ASSERT_GT(lines, 10u);
    d.append(std::move(hatch));
    d.append(std::make_unique<EllipseEntity>(EllipseEntity::Shape{{0, 0, 0}, {3, 0, 0}, 0.5}));
    TextShape shape;
    shape.text = L"one\ntwo";
    d.append(std::make_unique<MTextEntity>(shape));
    const std::string written = d.write();
    EXPECT_EQ(d.write(), written);
    EXPECT_THAT(written, Not(HasSubstr("AcDb")));
    EXPECT_THAT(written, Not(HasSubstr("LWPOLYLINE")));
    const auto e = Drawing::read(written);
    EXPECT_THAT(e.report.findings, IsEmpty());
    const auto &polyline = entityAt<AcDb2dPolyline>(*e.drawing, 2);
    EXPECT_EQ(polyline.vertices(), ring);
    EXPECT_EQ(polyline.elevation(), 1.0);
    const auto &reference = entityAt<AcDbBlockReference>(*e.drawing, 3);
    const BlockRecord *block = e.drawing->findBlock(L"*X0");
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reference.blockTableRecord(), block->objectId());
    EXPECT_EQ(block->entities().size(), lines);
    double area = 0;
    entityAt<AcDb2dPolyline>(*e.drawing, 4).getArea(area);
    EXPECT_NEAR(area, 4.5 * std::numbers::pi, 0.02);
    EXPECT_EQ(entityAt<TextEntity>(*e.drawing, 5).shape().text, L"one");
    EXPECT_EQ(entityAt<TextEntity>(*e.drawing, 6).shape().text, L"two");
}

TEST(DxfR12, CarriesDataUnderItsOwnApplicationWhichIsListed)
{
    LoadResult r;
    Drawing &d = read(r, drawingR12(false));
    d.setData(*d.modelSpace().entities()[1], "K", {{1, L"x"}, {40, 2.0}, {90, std::int64_t{3}}});
    const auto added = difference(drawingR12(false), d.write());
    EXPECT_THAT(added, testing::Contains("+2 VELMOR"));
    EXPECT_THAT(added, testing::IsSupersetOf({"+1001 VELMOR", "+1002 {", "+1000 K", "+1070 1", "+1000 x", "+1070 40",
                                              "+1040 2.0", "+1070 90", "+1071 3", "+1002 }"}));
    EXPECT_THAT(d.write(), Not(HasSubstr("VELMOR_DATA")));
}

// --- Files
// -------------------------------------------------------------------------------------------------------------------

class DrawingFiles : public testing::Test {
protected:
    DrawingFiles() : folder(std::filesystem::temp_directory_path() / ("dxf_write_test_" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(folder);
    }
    ~DrawingFiles() override { std::filesystem::remove_all(folder); }
    std::filesystem::path put(const std::string &name, const std::string &bytes) const
    {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    std::filesystem::path folder;
};

TEST_F(DrawingFiles, ASaveKeepsTheLastVersion)
{
    const auto path = put("a.dxf", drawing2000());
    auto r = Drawing::load(path);
    ASSERT_TRUE(r.drawing) << r.message;
    r.drawing->append(std::make_unique<AcDbLine>());
    EXPECT_TRUE(r.drawing->isModified());
    const auto saved = r.drawing->save(path);
    ASSERT_TRUE(saved) << saved.message;
    EXPECT_FALSE(r.drawing->isModified());
    EXPECT_EQ(bytesOf(path.string() + ".bak"), drawing2000());
    EXPECT_EQ(bytesOf(path), r.drawing->write());
}

TEST_F(DrawingFiles, ACopyLeavesTheDrawingModified)
{
    const auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<AcDbLine>());
    ASSERT_TRUE(drawing->save(folder / "copy.dxf", {.isCopy = true}));
    EXPECT_TRUE(drawing->isModified());
}

TEST_F(DrawingFiles, ADamagedFileIsNotOverwrittenUnasked)
{
    const std::string broken = drawing2000().substr(0, drawing2000().size() * 2 / 3);
    const auto path = put("a.dxf", broken);
    auto r = Drawing::load(path);
    ASSERT_TRUE(r.drawing);
    ASSERT_TRUE(r.drawing->loadReport().damaged());
    const auto refused = r.drawing->save(path);
    EXPECT_EQ(refused.status, FileStatus::Refused);
    EXPECT_THAT(refused.message, HasSubstr("a.dxf"));
    EXPECT_EQ(bytesOf(path), broken);
    EXPECT_EQ(r.drawing->save(folder / "." / "a.dxf").status, FileStatus::Refused); // by another way
    EXPECT_TRUE(r.drawing->save(folder / "other.dxf"));
    EXPECT_TRUE(r.drawing->save(path, {.overwriteDamaged = true}));
    EXPECT_EQ(bytesOf(path.string() + ".bak"), broken);
    EXPECT_TRUE(r.drawing->save(path));
    EXPECT_THAT(Drawing::load(path).report.findings, IsEmpty());
}

TEST_F(DrawingFiles, AFolderThatIsNotThereIsSaid)
{
    const auto drawing = Drawing::createNew();
    const auto result = drawing->save(folder / "no" / "a.dxf");
    EXPECT_EQ(result.status, FileStatus::NotFound);
    EXPECT_FALSE(result.message.empty());
}

TEST(NewDrawings, ReadBackWithoutFindings)
{
    const auto drawing = Drawing::createNew();
    EXPECT_FALSE(drawing->isModified());
    LoadResult r;
    Drawing &d = read(r, drawing->write());
    EXPECT_THAT(r.report.findings, IsEmpty());
    EXPECT_EQ(d.version(), "AC1027");
    EXPECT_EQ(d.headerVariable("$INSUNITS"), "6");
    EXPECT_EQ(d.headerVariable("$NONE"), std::nullopt);
}
