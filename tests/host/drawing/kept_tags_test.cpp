// What an entity's tags say beside its shape outlives a change of the shape, and goes along into a copy.
#include "host/drawing/EntityShape.h"
#include "host/drawing/LayerRename.h"
#include "host/drawing/Moving.h"
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

using namespace velmor;
using testing::Contains;
using testing::IsSubsetOf;
using testing::Not;
using velmor::test::entityAt;
using velmor::test::TagText;
using velmor::test::TagTexts;

namespace {

constexpr const char *kOthersData = "1001 OTHER\n1000 kept\n1003 K\n1040 0.5\n";
/// Line type with its scale, weight, true colour, transparency, reactors.
constexpr const char *kLook = "6 DASHED\n48 2.5\n62 1\n370 50\n420 255\n440 33554559\n";

/// One entity in a drawing of 2004.
std::string drawingWith(const std::string &entities)
{
    return test::dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1018\n9 $HANDSEED\n5 1000\n0 ENDSEC\n"
                     "0 SECTION\n2 BLOCKS\n0 BLOCK\n5 A0\n8 0\n2 Box\n70 2\n10 0\n20 0\n30 0\n0 ENDBLK\n5 A2\n8 0\n"
                     "0 ENDSEC\n0 SECTION\n2 ENTITIES\n" +
                     entities + "0 ENDSEC\n0 EOF\n");
}

std::string hatch(const std::string &pattern)
{
    return "0 HATCH\n5 36\n102 {ACAD_REACTORS\n330 99\n102 }\n100 AcDbEntity\n8 0\n" + std::string(kLook) +
           "100 AcDbHatch\n10 0.0\n20 0.0\n30 0.0\n210 0.0\n220 0.0\n230 1.0\n2 " + pattern +
           "\n70 1\n71 0\n91 1\n92 3\n72 0\n73 1\n93 3\n10 0.0\n20 0.0\n10 9.0\n20 0.0\n10 9.0\n20 9.0\n97 0\n"
           "75 0\n76 1\n98 0\n450 1\n451 0\n460 0.5\n461 0.0\n452 0\n462 0.25\n453 2\n463 0.0\n63 5\n421 255\n"
           "463 1.0\n63 2\n421 16776960\n470 LINEAR\n" +
           kOthersData;
}

std::string polyline()
{
    return "0 POLYLINE\n5 27\n100 AcDbEntity\n8 0\n" + std::string(kLook) +
           "100 AcDb2dPolyline\n66 1\n10 0.0\n20 0.0\n30 0.0\n39 3.5\n70 128\n" + kOthersData +
           "0 VERTEX\n5 28\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 0.0\n20 0.0\n30 0.0\n"
           "0 VERTEX\n5 29\n100 AcDbEntity\n8 0\n100 AcDbVertex\n100 AcDb2dVertex\n10 5.0\n20 0.0\n30 0.0\n"
           "0 SEQEND\n5 2A\n100 AcDbEntity\n8 0\n";
}

std::string reference()
{
    return "0 INSERT\n5 33\n100 AcDbEntity\n8 0\n" + std::string(kLook) +
           "100 AcDbBlockReference\n66 1\n2 Box\n10 50.0\n20 60.0\n30 0.0\n" + kOthersData +
           "0 ATTRIB\n5 34\n100 AcDbEntity\n8 0\n370 35\n100 AcDbText\n10 52.0\n20 62.0\n30 0.0\n40 2.0\n1 M1\n7 "
           "FANCY\n"
           "100 AcDbAttribute\n2 NAME\n70 0\n0 SEQEND\n5 35\n100 AcDbEntity\n8 0\n";
}

/// Of the n-th object of a kind: its own tags.
TagTexts tagsOfObject(const std::string &text, const std::string &type, std::size_t number = 0)
{
    TagTexts found;
    bool isIt = false;
    for (const TagText &tag : test::tagsOf(text)) {
        if (tag.first == 0)
            isIt = tag.second == type && number-- == 0;
        if (isIt)
            found.push_back(tag);
    }
    return found;
}

const TagTexts kLookTags{{6, "DASHED"}, {48, "2.5"}, {62, "1"}, {370, "50"}, {420, "255"}, {440, "33554559"}};
const TagTexts kDataTags{{1001, "OTHER"}, {1000, "kept"}, {1003, "K"}, {1040, "0.5"}};
const TagTexts kGradientTags{{450, "1"}, {453, "2"}, {463, "1.0"}, {421, "16776960"}, {470, "LINEAR"}};

class KeptTags : public testing::Test {
protected:
    Drawing &readWith(const std::string &entities) { return test::read(m_result, drawingWith(entities)); }
    AcDbEntity &first() { return *m_result.drawing->modelSpace().entities().front(); }

    template <class Shape>
    void change(const std::function<void(Shape &)> &change)
    {
        EntityShape shape = shapeOf(first());
        change(std::get<Shape>(shape.value));
        ASSERT_TRUE(setShape(*m_result.drawing, first(), std::move(shape)));
    }

    LoadResult m_result;
};

} // namespace

TEST_F(KeptTags, AHatchKeepsItsGradientItsLookAndTheDataOfOthers)
{
    Drawing &drawing = readWith(hatch("SOLID"));
    change<HatchShape>([](HatchShape &shape) { shape.loops.front().vertices.front().x = -4.0; });
    const TagTexts tags = tagsOfObject(drawing.write(), "HATCH");
    EXPECT_THAT(tags, Contains(TagText(10, "-4.0"))) << "written anew";
    for (const TagTexts &kept : {kLookTags, kDataTags, kGradientTags})
        EXPECT_THAT(kept, IsSubsetOf(tags));
    EXPECT_THAT(tags, Contains(TagText(102, "{ACAD_REACTORS")));
    EXPECT_EQ(tags.back(), kDataTags.back()) << "extended data come last";
    const auto again = test::reread(drawing);
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->loadReport().findings.empty());
    EXPECT_EQ(entityAt<AcDbHatch>(*again, 0).colorIndex(), 1);
}

TEST_F(KeptTags, AHatchThatGetsLinesLosesItsGradient)
{
    Drawing &drawing = readWith(hatch("SOLID"));
    change<HatchShape>([](HatchShape &shape) { shape.pattern = L"ANSI31"; });
    const TagTexts tags = tagsOfObject(drawing.write(), "HATCH");
    EXPECT_THAT(tags, Not(Contains(TagText(470, "LINEAR"))));
    EXPECT_THAT(kDataTags, IsSubsetOf(tags));
}

TEST_F(KeptTags, AnOldPolylineKeepsThemInItsHead)
{
    Drawing &drawing = readWith(polyline());
    change<PolylineShape>([](PolylineShape &shape) { shape.vertices.push_back({9.0, 9.0, 0.5}); });
    const std::string text = drawing.write();
    const TagTexts head = tagsOfObject(text, "POLYLINE");
    EXPECT_THAT(kLookTags, IsSubsetOf(head));
    EXPECT_THAT(kDataTags, IsSubsetOf(head));
    EXPECT_THAT(head, Contains(TagText(39, "3.5")));
    EXPECT_THAT(head, Contains(TagText(70, "128")));
    EXPECT_EQ(tagsOfObject(text, "VERTEX", 3), TagTexts());
    EXPECT_THAT(tagsOfObject(text, "VERTEX", 2), Contains(TagText(42, "0.5")));
    const auto again = test::reread(drawing);
    EXPECT_EQ(entityAt<AcDb2dPolyline>(*again, 0).vertices().size(), 3u);
}

TEST_F(KeptTags, AReferenceKeepsThemAndItsAttributesStayAsTheyWere)
{
    Drawing &drawing = readWith(reference());
    const TagTexts attribute = tagsOfObject(drawing.write(), "ATTRIB");
    change<ReferenceShape>([](ReferenceShape &shape) { shape.placement.rotation = 0.5; });
    const std::string text = drawing.write();
    EXPECT_THAT(kLookTags, IsSubsetOf(tagsOfObject(text, "INSERT")));
    EXPECT_THAT(kDataTags, IsSubsetOf(tagsOfObject(text, "INSERT")));
    EXPECT_EQ(tagsOfObject(text, "ATTRIB"), attribute);
    const auto again = test::reread(drawing);
    const auto &read = entityAt<AcDbBlockReference>(*again, 0);
    EXPECT_NEAR(read.placement().rotation, 0.5, 1e-12);
    EXPECT_EQ(attributesOf(read).size(), 1u);
}

TEST_F(KeptTags, AnotherColourPutsTheTrueColourOut)
{
    Drawing &drawing = readWith(hatch("SOLID"));
    change<HatchShape>([](HatchShape &shape) { shape.loops.front().vertices.front().x = -4.0; });
    drawing.setColorOf(first(), 3);
    const TagTexts tags = tagsOfObject(drawing.write(), "HATCH");
    EXPECT_THAT(tags, Not(Contains(TagText(420, "255"))));
    EXPECT_THAT(tags, Contains(TagText(62, "3")));
}

TEST_F(KeptTags, ACopyHasTheLookAndTheDataOfOthersToo)
{
    for (const auto &[entity, type] : std::map<std::string, std::string>{
             {hatch("SOLID"), "HATCH"}, {polyline(), "POLYLINE"}, {reference(), "INSERT"}}) {
        Drawing &drawing = readWith(entity);
        drawing.setData(first(), "KEY", {{1, std::wstring(L"ours")}});
        ASSERT_TRUE(copyEntity(drawing, first(), {100.0, 0.0, 0.0}));
        const TagTexts copy = tagsOfObject(drawing.write(), type, 1);
        EXPECT_THAT(kLookTags, IsSubsetOf(copy)) << type;
        EXPECT_THAT(kDataTags, IsSubsetOf(copy)) << type;
        EXPECT_EQ(std::ranges::count(copy, 1001, &TagText::first), 1) << type;
        const auto again = test::reread(drawing);
        EXPECT_TRUE(again->data(*again->modelSpace().entities().back(), "KEY")) << type;
        EXPECT_EQ(again->modelSpace().entities().size(), 2u) << type;
    }
}

TEST_F(KeptTags, OurOwnDataStandOnceInACopyOfAnOldFile)
{
    LoadResult first;
    Drawing &drawing =
        test::read(first, test::entitiesOnly("0 LINE\n5 20\n8 0\n10 0\n20 0\n11 1\n21 1\n1001 OTHER\n1000 kept\n"));
    drawing.setData(*drawing.modelSpace().entities().front(), "KEY", {{1, std::wstring(L"ours")}});
    LoadResult second;
    Drawing &again = test::read(second, drawing.write());
    ASSERT_TRUE(copyEntity(again, *again.modelSpace().entities().front(), {100.0, 0.0, 0.0}));
    const TagTexts copy = tagsOfObject(again.write(), "LINE", 1);
    EXPECT_EQ(std::ranges::count(copy, TagText(1001, "OTHER")), 1);
    EXPECT_EQ(std::ranges::count(copy, TagText(1001, "VELMOR")), 1);
    const auto third = test::reread(again);
    EXPECT_TRUE(third->data(*third->modelSpace().entities().back(), "KEY"));
}

TEST_F(KeptTags, ACopyNamesLayersByTheNamesThatTheyHaveWhenItIsSaved)
{
    Drawing &drawing = readWith("0 LINE\n5 20\n8 K\n10 0\n20 0\n11 1\n21 1\n" + std::string(kOthersData));
    ASSERT_TRUE(copyEntity(drawing, first(), {100.0, 0.0, 0.0}));
    renameLayer(drawing, drawing.findLayer(L"K").value(), L"Mains");
    for (const std::size_t number : {0u, 1u})
        EXPECT_THAT(tagsOfObject(drawing.write(), "LINE", number), Contains(TagText(1003, "Mains")));
}

TEST_F(KeptTags, ARecolouredCopyHasNoTrueColour)
{
    Drawing &drawing = readWith("0 LINE\n5 20\n100 AcDbEntity\n8 0\n62 1\n420 255\n100 AcDbLine\n10 0\n20 0\n11 1\n"
                                "21 1\n");
    AcDbEntity *copy = copyEntity(drawing, first(), {100.0, 0.0, 0.0});
    ASSERT_TRUE(copy);
    EXPECT_THAT(tagsOfObject(drawing.write(), "LINE", 1), Contains(TagText(420, "255")));
    drawing.setColorOf(*copy, 3);
    EXPECT_THAT(tagsOfObject(drawing.write(), "LINE", 1), Not(Contains(TagText(420, "255"))));
    EXPECT_THAT(tagsOfObject(drawing.write(), "LINE", 0), Contains(TagText(420, "255")));
}
