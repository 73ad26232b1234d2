// Another name for a layer: what follows it, what stays, and what is refused.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/EntityShape.h"
#include "host/drawing/LayerRename.h"
#include "host/drawing/StepCodec.h"
#include "host/drawing/Uses.h"
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

using namespace velmor;
using namespace velmor::test;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

/// A layer K with a record that says more than we understand; named by entities in model space and in a block, by
/// parts of entities, by extended data, by a filter and as the current one. Layer M holds none of them.
std::string drawingWithLayers(std::string_view version = "AC1015")
{
    return test::dxf(
        "0 SECTION\n2 HEADER\n9 $ACADVER\n1 " + std::string(version) +
        "\n9 $HANDSEED\n5 200\n9 $CLAYER\n8 K\n0 ENDSEC\n"
        "0 SECTION\n2 TABLES\n0 TABLE\n2 LAYER\n5 2\n70 3\n"
        "0 LAYER\n5 10\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 0\n70 0\n62 7\n6 CONTINUOUS\n"
        "0 LAYER\n5 11\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 K\n70 64\n62 3\n420 255\n"
        "6 DASHED\n290 0\n370 50\n390 F\n1001 OTHER\n1000 K\n1003 K\n"
        "0 LAYER\n5 12\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 M\n70 0\n62 1\n6 CONTINUOUS\n"
        "0 ENDTAB\n0 ENDSEC\n"
        "0 SECTION\n2 BLOCKS\n0 BLOCK\n5 31\n8 K\n2 MH\n70 0\n10 0\n20 0\n30 0\n3 MH\n"
        "0 CIRCLE\n5 32\n8 K\n10 0\n20 0\n30 0\n40 1\n0 ENDBLK\n5 33\n8 K\n0 ENDSEC\n"
        "0 SECTION\n2 ENTITIES\n"
        "0 LINE\n5 40\n8 K\n10 1\n20 2\n11 3\n21 4\n1001 OTHER\n1000 K\n1003 K\n"
        "0 STRANGE\n5 41\n8 K\n1 K\n"
        "0 INSERT\n5 42\n8 M\n66 1\n2 MH\n10 5\n20 6\n30 0\n"
        "0 ATTRIB\n5 43\n8 K\n10 5\n20 6\n30 0\n40 1\n1 K\n2 NAME\n70 0\n0 SEQEND\n5 44\n8 K\n"
        "0 POLYLINE\n5 45\n8 K\n66 1\n10 0\n20 0\n30 0\n70 0\n0 VERTEX\n5 46\n8 K\n10 0\n20 0\n30 0\n"
        "0 VERTEX\n5 47\n8 K\n10 9\n20 0\n30 0\n0 SEQEND\n5 48\n8 K\n"
        "0 ENDSEC\n0 SECTION\n2 OBJECTS\n0 DICTIONARY\n5 C\n330 0\n3 MINE\n350 51\n"
        "0 LAYER_FILTER\n5 50\n330 C\n100 AcDbFilter\n8 K\n"
        "0 XRECORD\n5 51\n330 C\n100 AcDbXrecord\n8 K\n0 ENDSEC\n0 EOF\n");
}

std::size_t layerNamed(const Drawing &drawing, const wchar_t *name)
{
    return drawing.findLayer(name).value();
}

/// The tags of a text under the codes that name layers, and those of layer records.
std::vector<std::string> valuesUnder(const std::string &text, int code)
{
    std::vector<std::string> values;
    for (const auto &[c, value] : tagsOf(text))
        if (c == code)
            values.push_back(value);
    return values;
}

} // namespace

TEST(LayerRename, TheNameChangesEverywhereInTheFileAndNothingElseDoes)
{
    const std::string before = drawingWithLayers();
    LoadResult r;
    Drawing &d = read(r, before);
    ASSERT_EQ(renameLayer(d, layerNamed(d, L"K"), L"Mains"), LayerNaming::Fine);
    TagTexts expected = tagsOf(before);
    bool inObjectRecord = false;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        auto &[code, value] = expected[i];
        if (code == 0)
            inObjectRecord = value == "XRECORD";
        const bool isRecordName = code == 2 && value == "K";
        if (isRecordName || ((code == 8 || code == 1003) && value == "K" && !inObjectRecord))
            value = "Mains";
    }
    EXPECT_EQ(tagsOf(d.write()), expected);
}

TEST(LayerRename, ASaveAndReopenShowsTheNameOnAllThatLayOnTheLayer)
{
    for (const char *version : {"AC1015", "AC1027"}) {
        LoadResult r;
        Drawing &d = read(r, drawingWithLayers(version));
        renameLayer(d, layerNamed(d, L"K"), L"Cijevi čšž");
        const auto again = reread(d);
        ASSERT_TRUE(again);
        EXPECT_FALSE(again->findLayer(L"K"));
        const std::size_t layer = layerNamed(*again, L"Cijevi čšž");
        EXPECT_EQ(again->currentLayer(), layer);
        EXPECT_EQ(again->layer(layer).color, 3);
        EXPECT_EQ(layerIndexOf(entityAt<AcDbLine>(*again, 0)), layer);
        EXPECT_EQ(layerIndexOf(*again->findBlock(L"MH")->entities().front()), layer);
        const auto &reference = entityAt<AcDbBlockReference>(*again, 2);
        EXPECT_EQ(layerIndexOf(*attributesOf(reference).front()), layer);
        EXPECT_EQ(layerIndexOf(reference), layerNamed(*again, L"M"));
    }
}

TEST(LayerRename, UndoBringsTheTextBackByteForByteAndRedoTheNewName)
{
    const std::string before = drawingWithLayers();
    LoadResult r;
    Drawing &d = read(r, before);
    auto &log = d.component<ChangeLog>();
    log.begin();
    renameLayer(d, layerNamed(d, L"K"), L"Mains");
    d.setDictionaryEntry("OURS", "KEY", {{1, std::wstring(L"x")}});
    log.keepForGood();
    const std::string renamed = d.write();
    ASSERT_TRUE(log.undo());
    EXPECT_TRUE(d.findLayer(L"K"));
    EXPECT_FALSE(d.findLayer(L"Mains"));
    EXPECT_EQ(d.write(), before);
    ASSERT_TRUE(log.redo());
    EXPECT_FALSE(d.findLayer(L"K"));
    EXPECT_EQ(d.write(), renamed);
}

TEST(LayerRename, TheStepGoesThroughTheJournal)
{
    const std::string before = drawingWithLayers();
    LoadResult r, other;
    Drawing &d = read(r, before), &again = read(other, before);
    StepCodec codec(d), reader(again);
    struct Keeper : StepFollower {
        StepCodec &codec;
        std::vector<std::string> steps;
        explicit Keeper(StepCodec &itsCodec) : codec(itsCodec) {}
        void stepDone(const ChangeStep &step) override { steps.push_back(codec.encode(step).value()); }
    } keeper(codec);
    auto &log = d.component<ChangeLog>(), &logAgain = again.component<ChangeLog>();
    log.addFollower(keeper);
    log.begin();
    // Beside the name other changes of the layer, before and behind it.
    Layer layer = d.layer(layerNamed(d, L"K"));
    layer.locked = true;
    d.setLayer(layerNamed(d, L"K"), layer);
    renameLayer(d, layerNamed(d, L"K"), L"Mains");
    layer.color = 5;
    d.setLayer(layerNamed(d, L"Mains"), layer);
    log.keepForGood();
    log.removeFollower(keeper);
    ASSERT_EQ(keeper.steps.size(), 1u);
    auto step = reader.decode(keeper.steps.front());
    ASSERT_TRUE(step);
    logAgain.replay(*std::move(step));
    EXPECT_EQ(again.write(), d.write());
    EXPECT_EQ(again.layer(layerNamed(again, L"Mains")).color, 5);
    ASSERT_TRUE(logAgain.undo());
    EXPECT_EQ(again.write(), before);
}

TEST(LayerRename, TheOldNameIsFreeForAnotherLayer)
{
    LoadResult r;
    Drawing &d = read(r, drawingWithLayers());
    renameLayer(d, layerNamed(d, L"K"), L"Mains");
    const std::size_t fresh = d.ensureLayer(L"K");
    EXPECT_NE(fresh, layerNamed(d, L"Mains"));
    d.setLayerOf(entityAt<AcDbLine>(d, 0), fresh);
    d.setLayerOf(entityAt<AcDbEntity>(d, 3), fresh);
    const auto again = reread(d);
    EXPECT_EQ(layerIndexOf(entityAt<AcDbLine>(*again, 0)), layerNamed(*again, L"K"));
    EXPECT_EQ(layerIndexOf(entityAt<AcDbEntity>(*again, 1)), layerNamed(*again, L"Mains"));
    EXPECT_EQ(layerIndexOf(entityAt<AcDbEntity>(*again, 3)), layerNamed(*again, L"K"));
    // The vertices stay on the layer of their polyline.
    const std::string text = d.write();
    EXPECT_THAT(text.substr(text.find("POLYLINE"), text.find("LAYER_FILTER") - text.find("POLYLINE")),
                Not(HasSubstr("Mains")));
}

TEST(LayerRename, WhatOnlyTheFileNamesStillCountsAsAUse)
{
    LoadResult r;
    Drawing &d =
        read(r, test::dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n0 ENDSEC\n0 SECTION\n2 TABLES\n0 TABLE\n"
                          "2 LAYER\n70 1\n0 LAYER\n5 11\n100 AcDbSymbolTableRecord\n100 AcDbLayerTableRecord\n2 K\n"
                          "70 0\n62 3\n0 ENDTAB\n0 ENDSEC\n0 SECTION\n2 OBJECTS\n0 LAYER_FILTER\n5 50\n"
                          "100 AcDbFilter\n8 K\n0 ENDSEC\n0 EOF\n"));
    const std::size_t layer = layerNamed(d, L"K");
    ASSERT_TRUE(usesOf(d).layers[layer]);
    renameLayer(d, layer, L"Mains");
    EXPECT_TRUE(usesOf(d).layers[layer]);
    EXPECT_FALSE(d.eraseLayer(layer));
}

TEST(LayerRename, ZeroTakenNamesAndBadCharactersAreRefusedAndChangeNothing)
{
    const std::string before = drawingWithLayers();
    LoadResult r;
    Drawing &d = read(r, before);
    const std::size_t layer = layerNamed(d, L"K");
    EXPECT_EQ(renameLayer(d, layerNamed(d, L"0"), L"Zero"), LayerNaming::Zero);
    EXPECT_EQ(renameLayer(d, layer, L"m"), LayerNaming::Taken) << "case does not tell names apart";
    EXPECT_EQ(renameLayer(d, layer, L"0"), LayerNaming::Taken);
    for (const wchar_t *name : {L"", L" ", L"a|b", L"a*", L"tab\there", L"a,b"})
        EXPECT_EQ(renameLayer(d, layer, name), LayerNaming::BadName);
    EXPECT_EQ(renameLayer(d, layer, std::wstring(256, L'x')), LayerNaming::BadName);
    EXPECT_FALSE(d.isModified());
    EXPECT_EQ(renameLayer(d, layer, L"K"), LayerNaming::Fine);
    EXPECT_FALSE(d.isModified()) << "the name that it has";
    EXPECT_EQ(d.write(), before);
    EXPECT_EQ(renameLayer(d, layer, L"k"), LayerNaming::Fine) << "another spelling of its own";
    EXPECT_EQ(reread(d)->layer(layerNamed(d, L"k")).name, L"k");
}

TEST(LayerRename, ALayerThatWasMadeSinceAndOneWithoutARecordTakeANameToo)
{
    LoadResult r;
    Drawing &d = read(r, entitiesOnly("0 LINE\n8 ONLY USED\n10 0\n20 0\n11 1\n21 1\n"));
    renameLayer(d, layerNamed(d, L"ONLY USED"), L"Mains");
    const std::size_t made = d.ensureLayer(L"Made");
    d.setLayerOf(*d.modelSpace().entities().front(), layerNamed(d, L"Mains"));
    renameLayer(d, made, L"Made again");
    const auto again = reread(d);
    EXPECT_EQ(again->layer(layerIndexOf(entityAt<AcDbLine>(*again, 0))).name, L"Mains");
    EXPECT_TRUE(again->findLayer(L"Made again"));
    EXPECT_FALSE(again->findLayer(L"Made"));
    EXPECT_FALSE(again->findLayer(L"ONLY USED"));
}

TEST(LayerRename, AShapeThatIsWrittenAnewKeepsItsExtendedDataUnderTheNewName)
{
    LoadResult r;
    Drawing &d =
        read(r, test::dxf("0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1015\n9 $CLAYER\n8 0\n0 ENDSEC\n0 SECTION\n2 ENTITIES\n"
                          "0 LWPOLYLINE\n5 40\n100 AcDbEntity\n8 K\n100 AcDbPolyline\n90 2\n70 0\n43 0\n10 0\n"
                          "20 0\n10 5\n20 5\n1001 OTHER\n1003 K\n1003 M\n0 ENDSEC\n0 EOF\n"));
    auto &polyline = entityAt<AcDbPolyline>(d, 0);
    PolylineShape shape = std::get<PolylineShape>(shapeOf(polyline).value);
    shape.vertices.push_back({9.0, 0.0, 0.0});
    ASSERT_TRUE(setShape(d, polyline, {shape}));
    renameLayer(d, layerNamed(d, L"K"), L"Mains");
    EXPECT_THAT(valuesUnder(d.write(), 1003), testing::ElementsAre("Mains", "M"));
    EXPECT_THAT(valuesUnder(d.write(), 8), testing::ElementsAre("0", "Mains"));
}
