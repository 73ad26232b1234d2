// Real drawings: opened, saved, changed and judged by other programs.
#include "tests/host/drawing/DxfText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <unistd.h>

using namespace velmor;
using namespace velmor::test;
using testing::SizeIs;

namespace {

std::vector<std::filesystem::path> drawings()
{
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    for (const auto &entry : std::filesystem::directory_iterator(dataFolder(), error))
        if (entry.path().filename().string().starts_with("dwg_") && entry.path().extension() == ".dxf")
            paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// First line that a command prints, without its end; no value when it can't be run or fails.
std::optional<std::string> output(const std::string &command)
{
    FILE *pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return std::nullopt;
    std::string text;
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe))
        text.append(buffer, count);
    const int status = ::pclose(pipe);
    if (status != 0)
        return std::nullopt;
    return text.substr(0, text.find('\n'));
}

std::string judge()
{
    return "/usr/bin/python3 " +
           std::string(std::getenv("VELMOR_SOURCE_DIR") ? std::getenv("VELMOR_SOURCE_DIR") : ".") +
           "/tests/host/drawing/judge.py ";
}
bool hasJudge()
{
    return output("/usr/bin/python3 -c 'import ezdxf' 2>/dev/null").has_value();
}
bool hasOgr()
{
    return output("ogrinfo --version 2>/dev/null").has_value();
}

struct Verdict {
    int errors = -1, entities = -1;
};
Verdict verdict(const std::optional<std::string> &line)
{
    Verdict v;
    if (line)
        std::sscanf(line->c_str(), "%d %d", &v.errors, &v.entities);
    return v;
}

/// How many tags of a text are not in another, in order: the fewest edits from one to the other (Myers, "An O(ND)
/// Difference Algorithm", 1986) are that many deletions and the rest insertions.
int lostTags(const TagTexts &before, const TagTexts &after)
{
    const int n = static_cast<int>(before.size()), m = static_cast<int>(after.size());
    constexpr int kMostEdits = 3000;
    std::vector<int> furthest(2 * kMostEdits + 3, 0);
    for (int edits = 0; edits <= kMostEdits; ++edits)
        for (int k = -edits; k <= edits; k += 2) {
            int *at = furthest.data() + kMostEdits + 1 + k;
            int i = k == -edits || (k != edits && at[-1] < at[1]) ? at[1] : at[-1] + 1;
            while (i < n && i - k < m && before[static_cast<std::size_t>(i)] == after[static_cast<std::size_t>(i - k)])
                ++i;
            *at = i;
            if (i >= n && i - k >= m)
                return (edits - (m - n)) / 2;
        }
    return n;
}

/// What the program does to a drawing, all at once.
void change(Drawing &d)
{
    d.ensureLayer(L"VELMOR_CATCHMENTS", 3);
    auto made = std::make_unique<AcDbPolyline>(
        std::vector<AcDbPolyline::Vertex>{{0, 0, 0.5}, {100, 0, 0}, {100, 100, 0}}, true);
    AcDbPolyline &ring = *made;
    d.append(std::move(made));
    d.setLayerOf(ring, *d.findLayer(L"VELMOR_CATCHMENTS"));
    d.setData(ring, "VELMOR_CATCHMENT", {{1, L"slivno područje"}, {40, 0.7}, {90, std::int64_t{3}}});
    d.append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 1)));
    TextShape shape;
    shape.text = L"Čvor 1";
    shape.horizontal = shape.vertical = 1;
    d.append(std::make_unique<TextEntity>(shape));
    d.append(std::make_unique<MTextEntity>(shape));
    auto hatch = std::make_unique<AcDbHatch>();
    hatch->setPattern(AcDbHatch::kPreDefined, L"ANSI31");
    hatch->appendLoop(AcDbHatch::kExternal, {idOf(ring)});
    d.append(std::move(hatch));
    BlockRecord &block = d.addBlock(L"VELMOR_LABEL");
    d.append(std::make_unique<AttributeDefinitionEntity>(L"ATT1", L"Name", shape), block);
    d.append(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 1), block);
    auto reference = std::make_unique<AcDbBlockReference>(idOf(block), AcDbBlockReference::Placement{});
    AcDbBlockReference &label = *reference;
    d.append(std::move(reference));
    d.appendAttribute(label, std::make_unique<AttributeEntity>(L"ATT1", shape));
    d.setDictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_METHOD", {{60, std::int64_t{2}}});
    // And to what was there before.
    AcDbEntity &first = *d.modelSpace().entities().front();
    d.setData(first, "SLIV_MAIN_AREA", {{1, L"guid"}});
    d.setColorOf(first, 1);
    d.setLayerOf(first, *d.findLayer(L"VELMOR_CATCHMENTS"));
}

bool isChanged(Drawing &d)
{
    const auto rings = d.entitiesWithData("VELMOR_CATCHMENT");
    if (rings.size() != 1 || d.entitiesWithData("SLIV_MAIN_AREA").size() != 1)
        return false;
    const BlockRecord *label = d.findBlock(L"VELMOR_LABEL");
    return d.data(*rings[0], "VELMOR_CATCHMENT") ==
               DataItems{{1, L"slivno područje"}, {40, 0.7}, {90, std::int64_t{3}}} &&
           rings[0]->layer() == L"VELMOR_CATCHMENTS" && label && label->entities().size() == 2 &&
           d.dictionaryEntry("ZEMX_LSD2", "ZEMX_CATCH_DEFINE_METHOD") == DataItems{{60, std::int64_t{2}}};
}

} // namespace

class RealDrawing : public testing::TestWithParam<std::filesystem::path> {
protected:
    RealDrawing() : folder(std::filesystem::temp_directory_path() / ("dxf_files_test_" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(folder);
    }
    ~RealDrawing() override { std::filesystem::remove_all(folder); }
    std::unique_ptr<Drawing> load(const std::filesystem::path &path)
    {
        LoadResult result = Drawing::load(path);
        EXPECT_TRUE(result.drawing) << result.message;
        return std::move(result.drawing);
    }
    std::filesystem::path folder;
};

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(RealDrawing);
INSTANTIATE_TEST_SUITE_P(Data, RealDrawing, testing::ValuesIn(drawings()),
                         [](const auto &path) { return path.param.stem().string(); });

TEST(RealDrawings, AreThere)
{
    if (drawings().empty())
        GTEST_SKIP() << "no drawings in " << dataFolder() << "; set VELMOR_DATA_DIR";
    EXPECT_THAT(drawings(), SizeIs(testing::Ge(7)));
}

TEST_P(RealDrawing, ComesBackTagForTag)
{
    const auto drawing = load(GetParam());
    const bool malformed = GetParam().stem().string().find("malformed") != std::string::npos;
    EXPECT_EQ(drawing->loadReport().damaged(), malformed);
    ASSERT_TRUE(drawing->save(folder / "saved.dxf"));
    EXPECT_EQ(bytesOf(folder / "saved.dxf"), bytesOf(GetParam()));
}

TEST_P(RealDrawing, KeepsEveryTagThatWasNotChanged)
{
    const auto drawing = load(GetParam());
    change(*drawing);
    const std::string written = drawing->write();
    EXPECT_EQ(drawing->write(), written);
    // Layer and colour of the first entity and the next free handle; all else is in the new text in its order.
    const TagTexts before = tagsOf(bytesOf(GetParam())), after = tagsOf(written);
    EXPECT_LE(lostTags(before, after), 3);
    LoadResult again = Drawing::read(written);
    ASSERT_TRUE(again.drawing);
    EXPECT_EQ(again.report.findings.size(), drawing->loadReport().findings.size());
    EXPECT_TRUE(isChanged(*again.drawing));
    EXPECT_EQ(again.drawing->write(), written);
}

TEST_P(RealDrawing, IsNoWorseToAnotherReaderThanBefore)
{
    if (!hasJudge())
        GTEST_SKIP() << "python3 with ezdxf is not there";
    const Verdict before = verdict(output(judge() + "audit " + GetParam().string() + " 2>/dev/null"));
    ASSERT_GE(before.errors, 0);
    const auto drawing = load(GetParam());
    change(*drawing);
    ASSERT_TRUE(drawing->save(folder / "changed.dxf"));
    const Verdict after = verdict(
        output(judge() + "resave " + (folder / "changed.dxf").string() + " " + (folder / "resaved.dxf").string()));
    EXPECT_LE(after.errors, before.errors);
    // R12 has no hatches: theirs is a reference to a block with its lines.
    EXPECT_EQ(after.entities, before.entities + 6);
    // Our data survives that program's own save.
    const auto again = load(folder / "resaved.dxf");
    EXPECT_TRUE(isChanged(*again));
    EXPECT_EQ(again->modelSpace().entities().size(), drawing->modelSpace().entities().size());
}

TEST_P(RealDrawing, IsReadByGdal)
{
    if (!hasOgr())
        GTEST_SKIP() << "ogrinfo is not there";
    const auto drawing = load(GetParam());
    const auto count = [](const std::filesystem::path &path) {
        const auto line = output("ogrinfo -ro -so " + path.string() + " entities 2>/dev/null | grep 'Feature Count'");
        return line ? std::atoi(line->substr(line->find(':') + 1).c_str()) : -1;
    };
    const int before = count(GetParam());
    change(*drawing);
    ASSERT_TRUE(drawing->save(folder / "changed.dxf"));
    EXPECT_GT(count(folder / "changed.dxf"), before);
}

TEST(MalformedDrawing, OpensWithAReportOfWhatIsWrongAndWhere)
{
    const auto path = dataFolder() / "dwg_malformed_R2018.dxf";
    if (!std::filesystem::exists(path))
        GTEST_SKIP() << path << " is not there";
    const auto r = Drawing::load(path);
    ASSERT_TRUE(r.drawing);
    EXPECT_THAT(r.drawing->modelSpace().entities(), SizeIs(95));
    EXPECT_EQ(r.report.read.at("TEXT"), 59u);
    EXPECT_EQ(r.report.read.at("LINE"), 35u);
    ASSERT_THAT(r.report.findings, SizeIs(1));
    EXPECT_EQ(r.report.findings[0].line, 1919u);
    EXPECT_TRUE(r.report.damaged());
}

TEST(NanaimoDrawing, HasItsLayersInCroatianAndItsCounts)
{
    const auto path = dataFolder() / "dwg_nanaimo_sewers_R2000_cp1250.dxf";
    if (!std::filesystem::exists(path))
        GTEST_SKIP() << path << " is not there";
    const auto r = Drawing::load(path);
    ASSERT_TRUE(r.drawing);
    std::map<std::wstring, int> byLayer;
    double parcels = 0.0;
    for (const AcDbEntity *entity : r.drawing->modelSpace().entities()) {
        ++byLayer[entity->layer()];
        double area = 0.0;
        if (entity->layer() == L"Katastarske čestice" &&
            static_cast<const AcDbPolyline *>(entity)->getArea(area) == Acad::eOk)
            parcels += area;
    }
    EXPECT_EQ(byLayer[L"Katastarske čestice"], 875);
    EXPECT_EQ(byLayer[L"Zgrade \u2013 tlocrti"], 656);
    EXPECT_NEAR(parcels / 10000.0, 88.759, 0.001);
}

TEST(NewDrawings, AreFineToOtherReadersWithAllThatTheProgramDraws)
{
    if (!hasJudge())
        GTEST_SKIP() << "python3 with ezdxf is not there";
    const auto folder = std::filesystem::temp_directory_path() / ("dxf_new_test_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    const auto drawing = Drawing::createNew();
    drawing->append(std::make_unique<PointEntity>(AcGePoint3d(0, 0)));
    change(*drawing);
    ASSERT_TRUE(drawing->save(folder / "new.dxf"));
    const Verdict v =
        verdict(output(judge() + "resave " + (folder / "new.dxf").string() + " " + (folder / "again.dxf").string()));
    EXPECT_EQ(v.errors, 0);
    const auto again = Drawing::load(folder / "again.dxf");
    ASSERT_TRUE(again.drawing);
    EXPECT_TRUE(isChanged(*again.drawing));
    std::filesystem::remove_all(folder);
}
