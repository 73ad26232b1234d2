// Drawings taken into other drawings as block definitions.
#include "host/drawing/Blocks.h"
#include "host/drawing/Drawing.h"

#include <gmock/gmock.h>

using namespace velmor;
using testing::ElementsAre;
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
