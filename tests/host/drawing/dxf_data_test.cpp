// Attached data and dictionaries through saves, old files, saves over files.
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
INSTANTIATE_TEST_SUITE_P(Versions, KeptData, testing::Values("2000", "R12", "R12 with handles"),
                         [](const auto &version) {
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
