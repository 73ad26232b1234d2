#include "tests/host/sewage/AreaWorld.h"

#include "host/network/Catalog.h"
#include "host/services/Services.h"
#include "host/sewage/AreaLabels.h"

#include <map>

namespace velmor::test {
namespace {

using Texts = std::map<std::wstring, std::wstring>;

class Label : public AreaWorld {
protected:
    AcDbObjectId block(std::initializer_list<std::pair<const wchar_t *, const wchar_t *>> tagsWithDefaults)
    {
        BlockRecord &record = drawing().addBlock(L"LABEL", {1.0, 1.0, 0.0});
        double y = 1.0;
        for (const auto &[tag, text] : tagsWithDefaults) {
            TextShape shape;
            shape.position = {1.0, y, 0.0};
            shape.height = 0.5;
            shape.text = text;
            drawing().append(std::make_unique<AttributeDefinitionEntity>(tag, tag, shape), record);
            y -= 1.0;
        }
        return idOf(record);
    }
    /// All labels that stand in the drawing.
    std::vector<AcDbBlockReference *> labels()
    {
        std::vector<AcDbBlockReference *> found;
        for (AcDbEntity *entity : drawing().modelSpace().entities())
            if (!entity->isErased() && entity->isA() == AcDbBlockReference::desc() &&
                entity->layer() == L"VELMOR_LABELS")
                found.push_back(static_cast<AcDbBlockReference *>(entity));
        return found;
    }
    Texts texts()
    {
        Texts found;
        for (const AcDbBlockReference *label : labels())
            for (const AttributeEntity *attribute : attributesOf(*label))
                found[attribute->tag()] = attribute->shape().text;
        return found;
    }
    AreaPtr area(int type = 3)
    {
        return manager().CreateCA(
            kSquare, L"North", type,
            bag({{L"CA_GUID", L"{G}"}, {L"CA_POPULATION", 120.0}, {L"CA_COEFF", 0.456}, {L"CA_SLOPE", 2.0}}));
    }
};

TEST_F(Label, FillsEachTagByItsMeaning)
{
    const AcDbObjectId id = block({{L"Area", L"?"}, {L"NAME", L"?"}, {L"DENSITY", L"?"}, {L"COEFF", L"?"}});
    EXPECT_NE(manager().WriteCatchmentLabel(area(), id, CStringArray{L"AREA", L"NAME", L"DENSITY", L"COEFF"}), 0);
    EXPECT_EQ(texts(),
              (Texts{{L"Area", L"1.0000"}, {L"NAME", L"North"}, {L"DENSITY", L"120.00"}, {L"COEFF", L"0.46"}}));
}

TEST_F(Label, KnowsTheCroatianWordsAndTheNumberedTags)
{
    for (const auto &[tag, value] : {std::pair{L"IME", LabelValue::Name},
                                     {L"Povrsina", LabelValue::Area},
                                     {L"površina", LabelValue::Area},
                                     {L"KOEF", LabelValue::Coefficient},
                                     {L"GUSTOCA", LabelValue::Density},
                                     {L"gustoća", LabelValue::Density},
                                     {L"ATT1", LabelValue::Name},
                                     {L"ATT2", LabelValue::Area},
                                     {L"ATT3", LabelValue::Coefficient}})
        EXPECT_EQ(meaningOfTag(tag), value) << tag;
    EXPECT_FALSE(meaningOfTag(L"REMARK"));
    EXPECT_FALSE(meaningOfTag(L""));
}

TEST_F(Label, LeavesAnUnknownTagAndOneThatWasNotAskedForAtTheirDefault)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}, {L"REMARK", L"see plan"}, {L"AREA", L"area?"}});
    EXPECT_NE(manager().WriteCatchmentLabel(area(), id, CStringArray{L"NAME", L"REMARK"}), 0);
    EXPECT_EQ(texts(), (Texts{{L"NAME", L"North"}, {L"REMARK", L"see plan"}, {L"AREA", L"area?"}}));
}

TEST_F(Label, AConstantDefinitionBetweenTheOthersTakesNoValue)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}});
    auto &record = static_cast<BlockRecord &>(*store().objectOf(id));
    drawing().append(std::make_unique<AttributeDefinitionEntity>(
                         L"COEFF", L"COEFF", TextShape{.position = {1, 0}, .text = L"fixed"}, false, true),
                     record);
    drawing().append(
        std::make_unique<AttributeDefinitionEntity>(L"AREA", L"AREA", TextShape{.position = {1, 0}, .text = L"?"}),
        record);
    EXPECT_NE(manager().WriteCatchmentLabel(area(), id, CStringArray{L"NAME", L"AREA", L"COEFF"}), 0);
    EXPECT_EQ(texts(), (Texts{{L"NAME", L"North"}, {L"AREA", L"1.0000"}}));
}

TEST_F(Label, GoesByThePlaceInTheListWhenNoTagHasAMeaning)
{
    // The label dialog gives the tags of name, area, coefficient and density in this order, empty where there is none.
    const AcDbObjectId id = block({{L"T1", L"?"}, {L"T2", L"?"}, {L"T3", L"?"}});
    EXPECT_NE(manager().WriteCatchmentLabel(area(), id, CStringArray{L"T2", L"", L"T3", L"T1"}), 0);
    EXPECT_EQ(texts(), (Texts{{L"T2", L"North"}, {L"T3", L"0.46"}, {L"T1", L"120.00"}}));
}

TEST_F(Label, AChoiceOfFourGoesByThePlaceEvenAgainstTheMeaningOfTheTags)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}, {L"AREA", L"?"}, {L"COEFF", L"?"}, {L"DENSITY", L"?"}});
    const AreaPtr labelled = area();
    // Name and area are exchanged, the coefficient is not ticked.
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"AREA", L"NAME", L"", L"DENSITY"});
    EXPECT_EQ(texts(), (Texts{{L"NAME", L"1.0000"}, {L"AREA", L"North"}, {L"COEFF", L"?"}, {L"DENSITY", L"120.00"}}));
    // The block's own tags in their order are nobody's choice.
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME", L"AREA", L"COEFF", L"DENSITY"});
    EXPECT_EQ(texts(),
              (Texts{{L"NAME", L"North"}, {L"AREA", L"1.0000"}, {L"COEFF", L"0.46"}, {L"DENSITY", L"120.00"}}));
}

TEST_F(Label, TheBlocksOwnTagsGoByTheirMeaningWhateverTheirOrder)
{
    const AcDbObjectId id = block({{L"DENSITY", L"?"}, {L"NAME", L"?"}});
    manager().WriteCatchmentLabel(area(), id, CStringArray{L"DENSITY", L"NAME", L"", L""});
    EXPECT_EQ(texts(), (Texts{{L"DENSITY", L"120.00"}, {L"NAME", L"North"}}));
}

TEST_F(Label, TakesItsSizeFromThePlotScale)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}}); // half a unit high
    const AreaPtr labelled = area();
    const auto heightAt = [&](int plotScale) {
        EXPECT_TRUE(Services::instance().set("LABEL_SCALE", plotScale));
        EXPECT_NE(manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME"}), 0);
        return attributesOf(*labels().front()).front()->shape().height;
    };
    EXPECT_DOUBLE_EQ(heightAt(1000), 1.5);
    EXPECT_DOUBLE_EQ(heightAt(500), 0.75);
    EXPECT_DOUBLE_EQ(heightAt(5000), 7.5);
    const LabelType type{.name = L"x", .lines = {L"{name}", L"{area}"}, .textHeight = 2.0};
    ASSERT_TRUE(writeLabel(store(), *store().own(labelled.get()), type));
    const auto attributes = attributesOf(*labels().front());
    EXPECT_DOUBLE_EQ(attributes[0]->shape().height, 10.0) << "two millimetres on paper at 1:5000";
    EXPECT_GT(attributes[0]->shape().position.y - attributes[1]->shape().position.y, 10.0) << "lines do not overlap";
    Services::instance().reset("LABEL_SCALE");
}

TEST_F(Label, StandsAtTheCentrePointOnItsLayer)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}, {L"AREA", L"?"}});
    manager().WriteCatchmentLabel(area(), id, CStringArray{L"NAME", L"AREA"});
    ASSERT_EQ(labels().size(), 1u);
    const AcDbBlockReference &label = *labels().front();
    EXPECT_EQ(label.placement().position, AcGePoint3d(50, 50));
    EXPECT_EQ(label.blockTableRecord(), id);
    const auto attributes = attributesOf(label);
    ASSERT_EQ(attributes.size(), 2u);
    const double scale = label.placement().scaleX;
    EXPECT_EQ(attributes[0]->shape().position, AcGePoint3d(50, 50));
    EXPECT_EQ(attributes[1]->shape().position, AcGePoint3d(50, 50 - scale));
    EXPECT_EQ(attributes[0]->shape().height, 0.5 * scale);
}

TEST_F(Label, ASecondOneReplacesTheFirst)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}});
    const AreaPtr labelled = area();
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME"});
    labelled->SetName(L"South");
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME"});
    EXPECT_EQ(labels().size(), 1u);
    EXPECT_EQ(texts(), (Texts{{L"NAME", L"South"}}));
}

TEST_F(Label, IsNotWrittenForANullAreaBlockOrItemOrEmptyTags)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}});
    const AreaPtr unlabelled = area();
    EXPECT_EQ(manager().WriteCatchmentLabel({}, id, CStringArray{L"NAME"}), 0);
    EXPECT_EQ(manager().WriteCatchmentLabel(unlabelled, AcDbObjectId(), CStringArray{L"NAME"}), 0);
    EXPECT_EQ(manager().WriteCatchmentLabel(unlabelled, id, CStringArray{}), 0);
    EXPECT_EQ(manager().WriteCatchmentLabel(unlabelled, id, CStringArray{L"", L""}), 0);
    EXPECT_EQ(manager().WriteCatchmentLabel(unlabelled, unlabelled->GetObjectId(), CStringArray{L"NAME"}), 0)
        << "no block";
    EXPECT_EQ(manager().WriteCatchmentLabel(unlabelled, nullptr), 0);
    EXPECT_TRUE(labels().empty());
}

TEST_F(Label, ARefusedOneLeavesTheLabelThatStands)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}});
    const AreaPtr labelled = area();
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME"});
    manager().WriteCatchmentLabel(labelled, nullptr);
    manager().WriteCatchmentLabel(labelled, id, CStringArray{});
    EXPECT_EQ(labels().size(), 1u);
}

TEST_F(Label, DeletingItTakesTheLabelOnly)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}});
    const AreaPtr labelled = area();
    EXPECT_EQ(manager().DeleteCatchmentLabel(labelled), 0) << "there is none yet";
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME"});
    EXPECT_NE(manager().DeleteCatchmentLabel(labelled), 0);
    EXPECT_TRUE(labels().empty());
    EXPECT_EQ(names(), Names{L"North"});
    EXPECT_EQ(manager().DeleteCatchmentLabel({}), 0);
}

TEST_F(Label, GoesWithItsArea)
{
    const AcDbObjectId id = block({{L"NAME", L"?"}});
    const AreaPtr labelled = area();
    manager().WriteCatchmentLabel(labelled, id, CStringArray{L"NAME"});
    manager().DeleteCA(labelled);
    EXPECT_TRUE(labels().empty());
}

TEST_F(Label, AHiddenAreaGetsOneAtItsSectionsMiddle)
{
    const AcDbObjectId id = block({{L"AREA", L"?"}});
    const AreaPtr hidden = manager().SetHiddenCA(section(L"S1"), 12345.0, 1, {});
    EXPECT_NE(manager().WriteCatchmentLabel(hidden, id, CStringArray{L"AREA"}), 0);
    ASSERT_EQ(labels().size(), 1u);
    EXPECT_EQ(labels().front()->placement().position, AcGePoint3d(15, 0));
    EXPECT_EQ(texts(), (Texts{{L"AREA", L"1.2345"}}));
}

TEST_F(Label, AMainAreaTellsItsNetAreaOnceItsIslandIsThere)
{
    const AcDbObjectId id = block({{L"AREA", L"?"}});
    const AreaPtr main = area();
    manager().WriteCatchmentLabel(main, id, CStringArray{L"AREA"});
    EXPECT_EQ(texts(), (Texts{{L"AREA", L"1.0000"}}));
    create(L"{I}", kSmallSquare, L"island");
    main->SetPropertyData(L"CA_ISLANDS", CDataBox(CStringArray{L"{I}"}));
    manager().WriteCatchmentLabel(main, id, CStringArray{L"AREA"});
    EXPECT_EQ(texts(), (Texts{{L"AREA", L"0.9600"}}));
}

TEST_F(Label, LeavesOutWhatTheTypeDoesNotHave)
{
    const AcDbObjectId id = block({{L"COEFF", L"?"}, {L"DENSITY", L"?"}});
    manager().WriteCatchmentLabel(area(2), id, CStringArray{L"COEFF", L"DENSITY"});
    EXPECT_EQ(texts(), (Texts{{L"COEFF", L""}, {L"DENSITY", L"120.00"}}));
}

// --- From the catalogue -------------------------------------------------------------------------------------

TEST_F(Label, OfACatalogueTypeHasALineForEachOfItsLines)
{
    const LabelType type{
        .name = L"Sliv puni", .lines = {L"{name}", L"A = {area} ha", L"c {coeff}, {density} st/ha"}, .textHeight = 2.0};
    const AreaPtr labelled = area();
    ASSERT_TRUE(writeLabel(store(), *store().own(labelled.get()), type));
    EXPECT_EQ(texts(), (Texts{{L"NAME", L"North"}, {L"AREA", L"A = 1.0000 ha"}, {L"LINE3", L"c 0.46, 120.00 st/ha"}}));
    ASSERT_EQ(labels().size(), 1u);
    const auto attributes = attributesOf(*labels().front());
    EXPECT_EQ(attributes[1]->shape().position, AcGePoint3d(50, 50)) << "the lines stand around the centre";
    EXPECT_GT(attributes[0]->shape().position.y, 50.0 + 2.0) << "lines do not overlap";
    EXPECT_EQ(attributes[0]->shape().height, 2.0);
}

TEST_F(Label, OfACatalogueTypeLeavesOutALineWithoutItsValue)
{
    const LabelType type{.name = L"x", .lines = {L"{name}", L"c = {coeff}"}};
    ASSERT_TRUE(writeLabel(store(), *store().own(area(2).get()), type));
    EXPECT_EQ(texts(), (Texts{{L"NAME", L"North"}, {L"COEFF", L""}}));
}

TEST_F(Label, OfACatalogueTypeSharesOneBlockUntilTheTypeChanges)
{
    LabelType type{.name = L"Ime i površina", .lines = {L"{name}", L"{area}"}};
    create(L"{1}", kSquare);
    create(L"{2}", kFarSquare);
    const auto write = [&](const wchar_t *guid) { writeLabel(store(), *store().byGuid(guid), type); };
    const auto block = [&](std::size_t i) { return labels()[i]->blockTableRecord(); };
    write(L"{1}");
    write(L"{2}");
    ASSERT_EQ(labels().size(), 2u);
    EXPECT_EQ(block(0), block(1));
    const AcDbObjectId before = block(0);
    type.textHeight = 4.0;
    write(L"{2}");
    EXPECT_EQ(block(0), before) << "the label that stands keeps its block";
    EXPECT_NE(block(1), before);
}

TEST_F(Label, EveryTypeOfTheShippedCatalogueWritesALabel)
{
    const auto catalogue = ZEMGis::Data::CCatalogManager::Instance()->GetCatalog(L"CA_LABEL_CATALOG", 1);
    ASSERT_TRUE(catalogue);
    const auto *elements = catalogue->GetAllElementsMap();
    ASSERT_TRUE(elements);
    const AreaPtr labelled = area();
    int written = 0;
    for (const auto &[key, item] : *elements) {
        if (item->IsGroup()) {
            EXPECT_EQ(manager().WriteCatchmentLabel(labelled, item.get()), 0) << "a group is no label";
            continue;
        }
        EXPECT_NE(manager().WriteCatchmentLabel(labelled, item.get()), 0);
        EXPECT_EQ(labels().size(), 1u);
        bool named = false;
        for (const auto &[tag, text] : texts()) {
            named = named || text.find(L"North") != std::wstring::npos;
            EXPECT_EQ(text.find(L'{'), std::wstring::npos) << text;
        }
        EXPECT_TRUE(named);
        ++written;
    }
    EXPECT_EQ(written, 3);
}

// --- The shipped block --------------------------------------------------------------------------------------

TEST_F(Label, TheShippedBlockTakesAllFourValues)
{
    const std::wstring path = ZEMGis::CModuleConfiguration::Instance()->GetPath(L"Symbol") + L"CatchLabel.dwg";
    const AcDbObjectId id = CZEMCDraw::insertBlockDefinition(L"CatchLabel", path.c_str());
    ASSERT_FALSE(id.isNull());
    CStringArray tags;
    EXPECT_EQ(ZEMGis::Utility::CUtility::GetAttributesFromBlockDef(id, tags), 4);
    EXPECT_EQ(tags, (CStringArray{L"NAME", L"AREA", L"COEFF", L"DENSITY"}))
        << "in the order of the label dialog's rows";
    EXPECT_NE(manager().WriteCatchmentLabel(area(), id, tags), 0);
    EXPECT_EQ(texts(),
              (Texts{{L"NAME", L"North"}, {L"AREA", L"1.0000"}, {L"COEFF", L"0.46"}, {L"DENSITY", L"120.00"}}));
}

} // namespace
} // namespace velmor::test
