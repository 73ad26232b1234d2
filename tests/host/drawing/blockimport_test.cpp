// Drawings taken into other drawings as block definitions.
#include "host/drawing/Blocks.h"
#include "host/drawing/Drawing.h"
#include "host/drawing/Findings.h"
#include "host/drawing/dxf/Skeleton.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>

using namespace velmor;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class BlockImportTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_target = Drawing::createNew();
        m_source = Drawing::createNew();
    }
    static AcDbObjectId addReference(Drawing &drawing, BlockRecord &definition, BlockRecord &owner)
    {
        AcDbBlockReference::Placement placement;
        placement.position = {7, 8};
        return drawing.append(std::make_unique<AcDbBlockReference>(idOf(definition), placement), owner);
    }
    static void addLine(Drawing &drawing, BlockRecord &owner, double length)
    {
        drawing.append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(length, 0)), owner);
    }
    std::unique_ptr<Drawing> m_target, m_source;
};

std::vector<const AcDbEntity *> presentIn(const BlockRecord &record)
{
    std::vector<const AcDbEntity *> present;
    for (const AcDbEntity *entity : record.entities())
        if (!entity->isErased())
            present.push_back(entity);
    return present;
}

double lengthOfLineIn(const BlockRecord &record)
{
    for (const AcDbEntity *entity : presentIn(record))
        if (kindOf(*entity) == EntityKind::Line)
            return static_cast<const AcDbLine *>(entity)->endPoint().x;
    return -1.0;
}

const BlockRecord &definitionOf(const AcDbEntity &reference)
{
    AcDbObject *object = nullptr;
    EXPECT_EQ(acdbOpenAcDbObject(object, static_cast<const AcDbBlockReference &>(reference).blockTableRecord(),
                                 AcDb::kForRead),
              Acad::eOk);
    object->close();
    return static_cast<const BlockRecord &>(*object);
}

} // namespace

TEST_F(BlockImportTest, EveryKindOfEntityIsCopiedWithItsLook)
{
    const std::size_t layer = m_source->ensureLayer(L"Oznake", 4);
    m_source->setLayer(layer, {L"Oznake", 4, true, false, true});
    m_source->setCurrentLayer(layer);
    std::vector<std::unique_ptr<AcDbEntity>> made;
    made.push_back(std::make_unique<AcDbLine>(AcGePoint3d(0, 0, 1), AcGePoint3d(1, 2, 3)));
    made.push_back(std::make_unique<AcDbArc>(AcGePoint3d(1, 1), 2.0, 0.5, 1.5));
    made.push_back(std::make_unique<CircleEntity>(AcGePoint3d(1, 1), 3.0));
    made.push_back(std::make_unique<EllipseEntity>(EllipseEntity::Shape{{1, 2}, {3, 0, 0}, 0.5, 0.0, 3.0}));
    SplineEntity::Shape spline;
    spline.controlPoints = {{0, 0}, {1, 1}, {2, 1}, {3, 0}};
    spline.knots = {0, 0, 0, 0, 1, 1, 1, 1};
    made.push_back(std::make_unique<SplineEntity>(spline));
    made.push_back(std::make_unique<PointEntity>(AcGePoint3d(9, 9)));
    const std::vector<AcDbPolyline::Vertex> vertices{{0, 0, 0.5}, {1, 0, 0}, {1, 1, 0}};
    made.push_back(std::make_unique<AcDbPolyline>(vertices, true, 2.0));
    made.push_back(std::make_unique<AcDb2dPolyline>(vertices, true, 3.0));
    made.push_back(std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{0, 0, 1}, {1, 1, 2}}, false));
    TextShape text;
    text.text = L"sliv \u0161";
    text.height = 2.5;
    made.push_back(std::make_unique<TextEntity>(text));
    made.push_back(std::make_unique<MTextEntity>(text));
    made.push_back(std::make_unique<AttributeDefinitionEntity>(L"ATT1", L"prompt?", text, true));
    for (auto &entity : made) {
        AcDbEntity &added = *entity;
        m_source->append(std::move(entity));
        m_source->setColorOf(added, 30);
    }
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    EXPECT_THAT(imported.leftOut, IsEmpty());
    ASSERT_EQ(imported.block->entities().size(), m_source->modelSpace().entities().size());
    for (std::size_t i = 0; i < imported.block->entities().size(); ++i) {
        const AcDbEntity &copy = *imported.block->entities()[i], &original = *m_source->modelSpace().entities()[i];
        EXPECT_EQ(kindOf(copy), kindOf(original));
        EXPECT_EQ(copy.isA(), original.isA());
        EXPECT_EQ(extentsOf(copy), extentsOf(original)) << typeNameOf(copy);
        EXPECT_EQ(m_target->layer(layerIndexOf(copy)).name, L"Oznake");
        EXPECT_EQ(copy.colorIndex(), 30);
    }
    const Layer &made4 = m_target->layer(*m_target->findLayer(L"Oznake"));
    EXPECT_EQ(made4.color, 4);
    EXPECT_TRUE(made4.locked);
    const auto &attribute = static_cast<const AttributeDefinitionEntity &>(*imported.block->entities().back());
    EXPECT_EQ(attribute.tag(), L"ATT1");
    EXPECT_EQ(attribute.prompt(), L"prompt?");
    EXPECT_TRUE(attribute.isInvisible());
    EXPECT_EQ(attribute.shape().text, L"sliv \u0161");
    EXPECT_EQ(m_target->findBlock(L"label"), imported.block);
    EXPECT_THAT(m_target->modelSpace().entities(), IsEmpty());
}

TEST_F(BlockImportTest, ALayerOfTheTargetKeepsItsState)
{
    m_target->setLayer(m_target->ensureLayer(L"Oznake", 1), {L"Oznake", 1, false, true, false});
    m_source->setCurrentLayer(m_source->ensureLayer(L"OZNAKE", 4));
    addLine(*m_source, m_source->modelSpace(), 1);
    importBlockInto(*m_target, L"Label", *m_source, {});
    const Layer &layer = m_target->layer(*m_target->findLayer(L"Oznake"));
    EXPECT_EQ(layer.color, 1);
    EXPECT_FALSE(layer.on);
}

TEST_F(BlockImportTest, NestedBlocksComeAlongOnceWithTheirAttributes)
{
    BlockRecord &inner = m_source->addBlock(L"Inner"), &outer = m_source->addBlock(L"Outer", {1, 2});
    addLine(*m_source, inner, 5);
    addReference(*m_source, inner, outer);
    addReference(*m_source, outer, m_source->modelSpace());
    const auto id = addReference(*m_source, inner, m_source->modelSpace());
    CZEMCBlockReferencePtr reference(id, AcDb::kForWrite);
    TextShape text;
    text.text = L"value";
    m_source->appendAttribute(static_cast<AcDbBlockReference &>(*reference.get()),
                              std::make_unique<AttributeEntity>(L"TAG", text));
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    EXPECT_THAT(imported.nested, ElementsAre(L"Inner", L"Outer"));
    const auto present = presentIn(*imported.block);
    ASSERT_THAT(present, SizeIs(2));
    EXPECT_EQ(&definitionOf(*present[0]), m_target->findBlock(L"Outer"));
    EXPECT_EQ(&definitionOf(*present[1]), m_target->findBlock(L"Inner"));
    EXPECT_EQ(m_target->findBlock(L"Outer")->basePoint(), AcGePoint3d(1, 2));
    EXPECT_EQ(&definitionOf(*presentIn(*m_target->findBlock(L"Outer"))[0]), m_target->findBlock(L"Inner"));
    EXPECT_EQ(lengthOfLineIn(*m_target->findBlock(L"Inner")), 5.0);
    const auto attributes = attributesOf(static_cast<const AcDbBlockReference &>(*present[1]));
    ASSERT_THAT(attributes, SizeIs(1));
    EXPECT_EQ(attributes[0]->tag(), L"TAG");
    EXPECT_EQ(attributes[0]->shape().text, L"value");
    EXPECT_THAT(attributeTagsOf(*imported.block), IsEmpty()) << "tags of nested blocks are not the block's";
}

TEST_F(BlockImportTest, ADefinitionOfTheUserIsNotReplacedByANestedOneOfItsName)
{
    addLine(*m_target, m_target->addBlock(L"ARROW"), 99);
    BlockRecord &arrow = m_source->addBlock(L"Arrow");
    addLine(*m_source, arrow, 1);
    addReference(*m_source, arrow, m_source->modelSpace());
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    EXPECT_EQ(lengthOfLineIn(*m_target->findBlock(L"ARROW")), 99.0);
    EXPECT_THAT(imported.nested, ElementsAre(L"Label$0$Arrow"));
    EXPECT_EQ(lengthOfLineIn(definitionOf(*presentIn(*imported.block)[0])), 1.0);
}

TEST_F(BlockImportTest, ASecondImportReplacesWhatTheFirstBrought)
{
    BlockRecord &arrow = m_source->addBlock(L"Arrow");
    addLine(*m_source, arrow, 1);
    addReference(*m_source, arrow, m_source->modelSpace());
    addLine(*m_source, m_source->modelSpace(), 10);
    const auto first = importBlockInto(*m_target, L"Label", *m_source, {});
    const auto reference = addReference(*m_target, *first.block, m_target->modelSpace());

    auto changed = Drawing::createNew();
    BlockRecord &newArrow = changed->addBlock(L"Arrow");
    addLine(*changed, newArrow, 2);
    addReference(*changed, newArrow, changed->modelSpace());
    const auto second = importBlockInto(*m_target, L"Label", *changed, first.nested);
    EXPECT_EQ(second.block, first.block);
    EXPECT_THAT(presentIn(*second.block), SizeIs(1));
    EXPECT_THAT(second.nested, ElementsAre(L"Arrow"));
    EXPECT_EQ(lengthOfLineIn(*m_target->findBlock(L"Arrow")), 2.0);
    CZEMCBlockReferencePtr placed(reference, AcDb::kForRead);
    EXPECT_EQ(&definitionOf(*placed.get()), second.block) << "references show the new definition";
}

TEST_F(BlockImportTest, ABlockOfTheFilesOwnNameDoesNotHoldItself)
{
    // The file Label.dxf places a block that is called Label as well.
    BlockRecord &label = m_source->addBlock(L"Label");
    addLine(*m_source, label, 3);
    addReference(*m_source, label, m_source->modelSpace());
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    ASSERT_THAT(presentIn(*imported.block), SizeIs(1));
    const BlockRecord &inner = definitionOf(*presentIn(*imported.block)[0]);
    EXPECT_NE(&inner, imported.block);
    EXPECT_EQ(lengthOfLineIn(inner), 3.0);
}

TEST_F(BlockImportTest, ABlockThatHoldsItselfIsCut)
{
    BlockRecord &ring = m_source->addBlock(L"Ring");
    addLine(*m_source, ring, 3);
    addReference(*m_source, ring, ring);
    addReference(*m_source, ring, m_source->modelSpace());
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    EXPECT_THAT(imported.leftOut, ElementsAre(testing::Pair("INSERT", 1)));
    EXPECT_THAT(presentIn(*m_target->findBlock(L"Ring")), SizeIs(1));
}

TEST_F(BlockImportTest, ErasedEntitiesAndOtherSpacesStayBehind)
{
    addLine(*m_source, m_source->modelSpace(), 1);
    m_source->erase(*m_source->modelSpace().entities().front());
    addLine(*m_source, *m_source->findBlock(L"*Paper_Space"), 2);
    addLine(*m_source, m_source->addBlock(L"Unused"), 3);
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    EXPECT_THAT(imported.block->entities(), IsEmpty());
    EXPECT_EQ(m_target->findBlock(L"Unused"), nullptr);
}

TEST_F(BlockImportTest, AttachedDataIsNotCopied)
{
    addLine(*m_source, m_source->modelSpace(), 1);
    m_source->setData(*m_source->modelSpace().entities().front(), "VELMOR_CATCHMENT", {{1, std::wstring(L"x")}});
    importBlockInto(*m_target, L"Label", *m_source, {});
    EXPECT_THAT(m_target->entitiesWithData("VELMOR_CATCHMENT"), IsEmpty());
}

TEST_F(BlockImportTest, HatchesKeepTheirPattern)
{
    auto hatch = std::make_unique<AcDbHatch>();
    hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI37");
    hatch->setPatternScale(2.0);
    hatch->setPatternAngle(0.5);
    const auto circle = m_source->append(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 50.0));
    ASSERT_EQ(hatch->appendLoop(AcDbHatch::kExternal, {circle}), Acad::eOk);
    const auto lines = hatch->lines();
    m_source->append(std::move(hatch));
    const auto imported = importBlockInto(*m_target, L"Label", *m_source, {});
    const auto &copy = static_cast<const AcDbHatch &>(*imported.block->entities().back());
    EXPECT_EQ(copy.patternName(), L"ANSI37");
    EXPECT_EQ(copy.lines(), lines);
    EXPECT_FALSE(lines.empty());
}

// --- Files
// ---------------------------------------------------------------------------------------------------------------

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// A drawing with these entities (groups as "code value" lines) in model space.
std::string drawingWith(const std::string &entities)
{
    std::string text = newDrawingText();
    const std::string mark = "  2\nENTITIES\n";
    std::string groups;
    std::size_t at = 0;
    while (at < entities.size()) {
        const auto end = entities.find('\n', at);
        const std::string line = entities.substr(at, end - at);
        const auto blank = line.find(' ');
        groups += line.substr(0, blank) + "\n" + line.substr(blank + 1) + "\n";
        at = end + 1;
    }
    return text.insert(text.find(mark) + mark.size(), groups);
}

const std::string kTag = R"(0 ATTDEF
5 A0
330 1F
100 AcDbEntity
8 Oznake
62 3
100 AcDbText
10 1.0
20 2.0
30 0.0
40 2.5
1 default
7 NoSuchStyle
41 0.8
100 AcDbAttributeDefinition
3 prompt
2 ATT1
70 0
)";
const std::string kSolid = R"(0 SOLID
5 A1
330 1F
100 AcDbEntity
8 Oznake
62 5
370 35
100 AcDbTrace
10 0.0
20 0.0
30 0.0
11 1.0
21 0.0
31 0.0
12 0.0
22 1.0
32 0.0
13 1.0
23 1.0
33 0.0
)";

class BlockFiles : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-block-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
        m_drawing = Drawing::createNew();
        setWorkingDrawing(m_drawing.get());
    }
    void TearDown() override
    {
        setWorkingDrawing(nullptr);
        fs::remove_all(m_folder);
    }
    std::wstring put(const std::string &name, const std::string &content)
    {
        std::ofstream(m_folder / name, std::ios::binary) << content;
        return (m_folder / name).wstring();
    }
    BlockRecord *insert(const wchar_t *name, const std::wstring &path)
    {
        const AcDbObjectId id = CZEMCDraw::insertBlockDefinition(name, path.c_str());
        BlockRecord *record = m_drawing->findBlock(name ? name : L"");
        EXPECT_TRUE(id.isNull() || !record || id == idOf(*record));
        return id.isNull() ? nullptr : record;
    }
    fs::path m_folder;
    std::unique_ptr<Drawing> m_drawing;
};

} // namespace

TEST_F(BlockFiles, AFileBecomesADefinitionWithItsAttributes)
{
    BlockRecord *label = insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(kTag + kSolid)));
    ASSERT_NE(label, nullptr);
    EXPECT_THAT(attributeTagsOf(*label), ElementsAre(L"ATT1"));
    EXPECT_THAT(presentIn(*label), SizeIs(2));
    EXPECT_TRUE(m_drawing->findLayer(L"Oznake"));
    EXPECT_THAT(m_drawing->modelSpace().entities(), IsEmpty());
}

TEST_F(BlockFiles, WhatCannotBeReadGivesNoDefinition)
{
    EXPECT_EQ(insert(L"A", (m_folder / "missing.dxf").wstring()), nullptr);
    EXPECT_EQ(insert(L"A", m_folder.wstring()), nullptr);
    EXPECT_EQ(insert(L"A", put("empty.dxf", "")), nullptr);
    EXPECT_EQ(insert(L"A", put("garbage.dxf", "this is no drawing\nat all\n")), nullptr);
    EXPECT_EQ(insert(L"A", put("closed.dwg", "AC1027 closed format")), nullptr);
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"A", nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"A", L"").isNull());
    EXPECT_EQ(m_drawing->findBlock(L"A"), nullptr);
    const std::wstring path = put("good.dxf", drawingWith(kTag));
    setWorkingDrawing(nullptr);
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"A", path.c_str()).isNull());
}

TEST_F(BlockFiles, WhatOfAFileCouldNotBeTakenIsTold)
{
    std::vector<std::string> told;
    setNoticeSink([&](const std::string &line) { told.push_back(line); });
    const std::string strange = "0 STRANGE\n5 A1\n8 0\n0 LINE\n5 A2\n8 0\n10 x\n20 0\n11 1\n21 1\n";
    const std::wstring path = put("CatchLabel.dxf", drawingWith(kTag + strange));
    ASSERT_NE(insert(L"CatchLabel", path), nullptr);
    ASSERT_THAT(told, SizeIs(2));
    EXPECT_THAT(told[0], HasSubstr("CatchLabel.dxf:"));
    EXPECT_THAT(told[0], HasSubstr("not a number"));
    EXPECT_THAT(told[1], HasSubstr("1 LINE, 1 STRANGE"));
    insert(L"CatchLabel", path);
    EXPECT_THAT(told, SizeIs(2)) << "what is in the drawing already needs no telling";

    told.clear();
    insert(L"B", put("whole.dxf", drawingWith(kTag)));
    EXPECT_THAT(told, IsEmpty());
    insert(L"C", put("garbage.dxf", "this is no drawing\nat all\n"));
    ASSERT_THAT(told, SizeIs(1));
    EXPECT_THAT(told[0], HasSubstr("garbage.dxf: "));
    setNoticeSink({});
}

TEST_F(BlockFiles, ASecondCallAnswersTheSameDefinitionAndChangesNothing)
{
    const std::wstring path = put("CatchLabel.dxf", drawingWith(kTag));
    const BlockRecord *first = insert(L"CatchLabel", path);
    const auto revision = m_drawing->revision();
    EXPECT_EQ(insert(L"catchlabel", path), first);
    EXPECT_EQ(insert(L"CatchLabel", put("a copy.dxf", drawingWith(kTag))), first);
    EXPECT_EQ(m_drawing->revision(), revision);
}

TEST_F(BlockFiles, AnotherContentRenewsTheDefinition)
{
    BlockRecord *first = insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(kTag)));
    std::string other = kTag;
    other.replace(other.find("2 ATT1"), 6, "2 NAME");
    BlockRecord *second = insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(other + kSolid)));
    EXPECT_EQ(second, first);
    EXPECT_THAT(attributeTagsOf(*second), ElementsAre(L"NAME"));
    EXPECT_THAT(presentIn(*second), SizeIs(2));
    EXPECT_EQ(insert(L"CatchLabel", (m_folder / "gone.dxf").wstring()), nullptr);
    EXPECT_THAT(attributeTagsOf(*second), ElementsAre(L"NAME"));
}

TEST_F(BlockFiles, WhereTheDefinitionCameFromIsKeptInTheFile)
{
    const std::wstring path = put("CatchLabel.dxf", drawingWith(kTag));
    ASSERT_NE(insert(L"CatchLabel", path), nullptr);
    const std::string text = m_drawing->write();
    auto again = Drawing::read(text);
    ASSERT_TRUE(again.drawing);
    setWorkingDrawing(again.drawing.get());
    EXPECT_FALSE(CZEMCDraw::insertBlockDefinition(L"CatchLabel", path.c_str()).isNull());
    EXPECT_EQ(again.drawing->write(), text) << "the same file changes nothing";
    put("CatchLabel.dxf", drawingWith(kSolid));
    EXPECT_FALSE(CZEMCDraw::insertBlockDefinition(L"CatchLabel", path.c_str()).isNull());
    EXPECT_THAT(attributeTagsOf(*again.drawing->findBlock(L"CatchLabel")), IsEmpty());
    setWorkingDrawing(nullptr);
}

TEST_F(BlockFiles, ADefinitionThatCameWithTheDrawingIsKept)
{
    BlockRecord &own = m_drawing->addBlock(L"CatchLabel");
    m_drawing->append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(42, 0)), own);
    const auto revision = m_drawing->revision();
    EXPECT_EQ(insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(kTag))), &own);
    EXPECT_EQ(lengthOfLineIn(own), 42.0);
    // It stays the user's own, whatever the file holds later, and nothing claims that it came from there.
    EXPECT_EQ(insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(kTag + kSolid))), &own);
    EXPECT_EQ(lengthOfLineIn(own), 42.0);
    EXPECT_THAT(attributeTagsOf(own), IsEmpty());
    EXPECT_EQ(m_drawing->revision(), revision);
}

TEST_F(BlockFiles, AMissingDwgIsTheDxfBesideIt)
{
    put("CatchLabel.dxf", drawingWith(kTag));
    EXPECT_NE(insert(L"CatchLabel", (m_folder / "CatchLabel.dwg").wstring()), nullptr);
    put("Other.DXF", drawingWith(kTag));
    EXPECT_NE(insert(L"Other", (m_folder / "Other.DWG").wstring()), nullptr);
    put("Third.dxf", drawingWith(kTag));
    EXPECT_NE(insert(L"Third", put("Third.dwg", "AC1018 closed format")), nullptr);
}

TEST_F(BlockFiles, TheNameIsMadeFitForAFile)
{
    const std::wstring path = put("Oznaka sliva.dxf", drawingWith(kTag));
    EXPECT_FALSE(CZEMCDraw::insertBlockDefinition(nullptr, path.c_str()).isNull());
    EXPECT_NE(m_drawing->findBlock(L"Oznaka sliva"), nullptr);
    EXPECT_FALSE(CZEMCDraw::insertBlockDefinition(L"*a/b|c", path.c_str()).isNull());
    EXPECT_NE(m_drawing->findBlock(L"_a_b_c"), nullptr);
    const auto space = CZEMCDraw::insertBlockDefinition(L"*Model_Space", path.c_str());
    EXPECT_NE(space, idOf(m_drawing->modelSpace()));
    EXPECT_THAT(m_drawing->modelSpace().entities(), IsEmpty());
}

TEST_F(BlockFiles, TagsThatAreNotUnderstoodComeAlong)
{
    ASSERT_NE(insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(kTag + kSolid))), nullptr);
    const std::string text = m_drawing->write();
    EXPECT_THAT(text, HasSubstr("AcDbTrace\n 10\n0.0\n 20\n0.0\n 30\n0.0\n 11\n1.0\n"));
    EXPECT_THAT(text, HasSubstr("370\n35\n"));
    EXPECT_THAT(text, HasSubstr(" 41\n0.8\n"));
    EXPECT_THAT(text, Not(HasSubstr("NoSuchStyle")));
    const auto again = Drawing::read(text);
    ASSERT_TRUE(again.drawing);
    EXPECT_FALSE(again.report.damaged());
    EXPECT_EQ(again.report.unread.at("SOLID"), 1u);
    EXPECT_THAT(attributeTagsOf(*again.drawing->findBlock(L"CatchLabel")), ElementsAre(L"ATT1"));
}

TEST_F(BlockFiles, AConstantAttributeStaysConstant)
{
    std::string constant = kTag;
    constant.replace(constant.find("70 0"), 4, "70 2");
    constant.replace(constant.find("2 ATT1"), 6, "2 FIXED");
    constant.replace(constant.find("5 A0"), 4, "5 A2");
    BlockRecord *label = insert(L"CatchLabel", put("CatchLabel.dxf", drawingWith(kTag + constant)));
    ASSERT_NE(label, nullptr);
    EXPECT_THAT(attributeTagsOf(*label), ElementsAre(L"ATT1"));
    const auto again = Drawing::read(m_drawing->write());
    EXPECT_THAT(attributeTagsOf(*again.drawing->findBlock(L"CatchLabel")), ElementsAre(L"ATT1"));
}

TEST_F(BlockFiles, TextChangesItsCodePage)
{
    std::string source = drawingWith(kTag);
    source.replace(source.find("AC1027"), 6, "AC1015");
    source.replace(source.find("ANSI_1252"), 9, "ANSI_1250");
    source.replace(source.find("default"), 7, "to\xE8ka");
    BlockRecord *label = insert(L"CatchLabel", put("CatchLabel.dxf", source));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(static_cast<AttributeDefinitionEntity *>(label->entities()[0])->shape().text, L"to\u010Dka");
    EXPECT_THAT(m_drawing->write(), HasSubstr("to\u010Dka"));
}

TEST_F(BlockFiles, TheBasePointOfTheFileIsThatOfTheDefinition)
{
    std::string source = drawingWith(kTag);
    const std::string before = "$INSBASE\n 10\n0.0\n 20\n0.0\n";
    ASSERT_NE(source.find(before), std::string::npos);
    source.replace(source.find(before), before.size(), "$INSBASE\n 10\n 1.5\n 20\n-2.5\n");
    BlockRecord *label = insert(L"CatchLabel", put("CatchLabel.dxf", source));
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->basePoint(), AcGePoint3d(1.5, -2.5, 0));
}

TEST_F(BlockFiles, AnotherProgramsFileComesInAndTheResultPassesItsAudit)
{
    const std::string python = "/usr/bin/python3";
    const auto run = [](const std::string &command) { return std::system((command + " >/dev/null 2>&1").c_str()); };
    if (run(python + " -c 'import ezdxf'") != 0)
        GTEST_SKIP() << "python3-ezdxf is not installed";
    std::ofstream(m_folder / "make.py") << R"(import sys, ezdxf
for version in ('R12', 'R2000', 'R2018'):
    doc = ezdxf.new(version, setup=True)
    inner = doc.blocks.new('INNER', base_point=(1, 1))
    inner.add_circle((0, 0), 1)
    inner.add_attdef('INNERTAG', (0, 0), 'x')
    space = doc.modelspace()
    space.add_attdef('ATT1', (0, 0), 'text', dxfattribs={'height': 2.5, 'prompt': 'Name'})
    space.add_attdef('ATT2', (0, -4), 'text')
    reference = space.add_blockref('INNER', (5, 5), dxfattribs={'rotation': 30})
    reference.add_attrib('INNERTAG', 'value', (5, 5))
    space.add_solid([(0, 0), (1, 0), (0, 1), (1, 1)])
    space.add_line((0, 0), (10, 0), dxfattribs={'linetype': 'DASHED', 'color': 1})
    space.add_text('label', dxfattribs={'style': 'OpenSans', 'height': 1})
    if version != 'R12':
        space.add_lwpolyline([(0, 0, .1, .1, 0), (5, 0, .1, .1, 1), (5, 5, .1, .1, 0)], close=True)
        space.add_mtext('two\\Plines')
        hatch = space.add_hatch(dxfattribs={'hatch_style': 0})
        hatch.set_pattern_fill('ANSI37', scale=0.5)
        hatch.paths.add_polyline_path([(0, 0), (10, 0, 1), (10, 10)], is_closed=True)
    dimension = space.add_linear_dim((0, 3), (0, 0), (10, 0))
    dimension.render()
    doc.saveas(sys.argv[1] + '/' + version + '.dxf')
)";
    std::ofstream(m_folder / "audit.py") << R"(import sys, ezdxf
doc = ezdxf.readfile(sys.argv[1])
audit = doc.audit()
for error in list(audit.errors) + list(audit.fixes): print(error.code, error.message)
sys.exit(1 if audit.errors or audit.fixes else 0)
)";
    const std::string folder = m_folder.string();
    ASSERT_EQ(run(python + " " + folder + "/make.py " + folder), 0);
    for (const wchar_t *version : {L"R12", L"R2000", L"R2018"}) {
        BlockRecord *label = insert(version, (m_folder / version).wstring() + L".dxf");
        ASSERT_NE(label, nullptr) << version;
        EXPECT_THAT(attributeTagsOf(*label), ElementsAre(L"ATT1", L"ATT2"));
        CZEMCDraw::insertBlockReference(idOf(*label), {100, 100}, nullptr, 3.0, nullptr);
    }
    EXPECT_NE(m_drawing->findBlock(L"INNER"), nullptr);
    EXPECT_NE(m_drawing->findBlock(L"R2000$0$INNER"), nullptr);
    const std::string written = folder + "/written.dxf";
    ASSERT_TRUE(m_drawing->save(written));
    EXPECT_EQ(std::system((python + " " + folder + "/audit.py " + written).c_str()), 0);
    const auto again = Drawing::load(written);
    ASSERT_TRUE(again.drawing);
    EXPECT_FALSE(again.report.damaged());
    EXPECT_EQ(again.report.unread.at("SOLID"), 2u); // not that of R12, whose tags are of another kind
    for (const wchar_t *version : {L"R12", L"R2000", L"R2018"})
        EXPECT_EQ(presentIn(*again.drawing->findBlock(version)).size(),
                  presentIn(*m_drawing->findBlock(version)).size());
}
