// The wrapper library: entities opened for a step, dictionaries, drawing in model space, blocks from files; argument
// chains and files of the support path.
#include "tests/contracts/ContractsFixture.h"

#include <cmath>
#include <numbers>

#include <malloc.h>

namespace velmor::test {
namespace {

using testing::HasSubstr;

class WrapperContract : public ContractsFixture {
protected:
    static std::vector<std::array<double, 3>> numbersOf(const AcGePoint3dArray &points)
    {
        std::vector<std::array<double, 3>> numbers;
        for (const AcGePoint3d &p : points)
            numbers.push_back({p.x, p.y, p.z});
        return numbers;
    }
};

TEST_F(WrapperContract, AnEntityIsOpenedByIdAndByHandleTextAndClosesItself)
{
    const AcDbObjectId id = line(0, 0, 1, 1);
    const std::wstring handle = handleTextOf(id);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const AcDbObjectId now = byHandle(handle);
        try {
            CZEMCEntityPtr writing(handle.c_str(), AcDb::kForWrite);
            EXPECT_EQ(writing.openStatus(), 0);
            EXPECT_EQ(CZEMCEntityPtr(now, AcDb::kForRead).openStatus(), Acad::eWasOpenForWrite);
            throw std::runtime_error("leaves the scope");
        } catch (const std::runtime_error &) {
        }
        EXPECT_EQ(CZEMCEntityPtr(now, AcDb::kForWrite).openStatus(), 0) << "closed by the exception, too";
        EXPECT_EQ(CZEMCEntityPtr(idOf(drawing().modelSpace()), AcDb::kForRead).openStatus(), 34);
        EXPECT_NE(CZEMCEntityPtr(L"FFFF", AcDb::kForRead).openStatus(), 0);
        EXPECT_EQ(CZEMCPolylineLWPtr(now, AcDb::kForRead).openStatus(), 34) << "not of that class";
        EXPECT_EQ(CZEMCLinePtr(now, AcDb::kForWrite).openStatus(), 0);
    }
    // A record of another kind: a layer's.
    AcDbObject *layer = nullptr;
    for (std::uint64_t h = 1; h < 0x100 && !layer; ++h)
        if (AcDbObject *object = drawing().findByHandle(h);
            object && !object->isKindOf(AcDbEntity::desc()) && !object->isKindOf(AcDbBlockTableRecord::desc()))
            layer = object;
    ASSERT_TRUE(layer);
    EXPECT_EQ(CZEMCEntityPtr(idOf(*layer), AcDb::kForRead).openStatus(), 34);
}

TEST_F(WrapperContract, VerticesOfTheThreeKindsComeInOrderWithTheirHeights)
{
    const std::vector<AcDbPolyline::Vertex> ring{{1, 2, 0}, {3, 4, 0.5}, {5, 7, 0}};
    drawing().append(std::make_unique<AcDbPolyline>(ring, true, 5.0));
    drawing().append(std::make_unique<AcDb2dPolyline>(ring, true, 5.0));
    drawing().append(
        std::make_unique<AcDb3dPolyline>(std::vector<AcGePoint3d>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, false));
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const auto all = entities();
        AcGePoint3dArray light, old, space;
        EXPECT_TRUE(CZEMCPolylineLWPtr(idOf(*all[0]), AcDb::kForRead).getVertexPoints(light));
        EXPECT_TRUE(CZEMC2dPolylinePtr(idOf(*all[1]), AcDb::kForRead).getVertexPoints(old));
        EXPECT_TRUE(CZEMC3dPolylinePtr(idOf(*all[2]), AcDb::kForRead).getVertexPoints(space));
        const std::vector<std::array<double, 3>> flat{{1, 2, 5}, {3, 4, 5}, {5, 7, 5}};
        EXPECT_EQ(numbersOf(light), flat);
        EXPECT_EQ(numbersOf(old), flat);
        EXPECT_EQ(numbersOf(space), (std::vector<std::array<double, 3>>{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}));
    }
}

TEST_F(WrapperContract, ThePointOnAnArcIsItsMiddle)
{
    for (const auto &[from, to] : {std::pair{0.0, 90.0}, std::pair{350.0, 20.0}, std::pair{180.0, 0.0}}) {
        const double degree = std::numbers::pi / 180.0;
        drawing().append(std::make_unique<AcDbArc>(AcGePoint3d(10, 20), 5.0, from * degree, to * degree));
        reopen();
        CZEMCArcPtr arc(idOf(*entities().back()), AcDb::kForRead);
        const AcGePoint3d point = arc.getPointOnArc();
        EXPECT_NEAR(point.distanceTo({10, 20}), 5.0, 1e-9);
        const auto &its = static_cast<const AcDbArc &>(*arc.get());
        EXPECT_NEAR(point.distanceTo(its.startPoint()), point.distanceTo(its.endPoint()), 1e-9);
        const double middle = (from + (to > from ? to : to + 360.0)) / 2.0 * degree;
        EXPECT_NEAR(point.x, 10 + 5 * std::cos(middle), 1e-9);
        EXPECT_NEAR(point.y, 20 + 5 * std::sin(middle), 1e-9);
    }
}

TEST_F(WrapperContract, AnAttributesTextIsShownAndKept)
{
    BlockRecord &block = drawing().addBlock(L"LABEL");
    TextShape shape;
    shape.height = 20.0;
    shape.text = L"-";
    drawing().append(std::make_unique<AttributeDefinitionEntity>(L"ATT1", L"prompt", shape), block);
    const AcDbObjectId id = CZEMCDraw::insertBlockReference(idOf(block), {5, 40, 0}, nullptr, 3.0, nullptr);
    const std::wstring handle = handleTextOf(id);
    const QImage before = picture();
    {
        CZEMCBlockReferencePtr reference(id, AcDb::kForWrite);
        EXPECT_TRUE(reference.setAttributeText(L"att1", L"WW"));
        EXPECT_FALSE(reference.setAttributeText(L"ATT2", L"none"));
    }
    EXPECT_FALSE(CZEMCBlockReferencePtr(id, AcDb::kForRead).setAttributeText(L"ATT1", L"no"));
    const QImage after = picture();
    EXPECT_GT(differences(before, after), 200);
    reopen();
    const auto attributes = attributesOf(static_cast<const AcDbBlockReference &>(entityOf(byHandle(handle))));
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0]->shape().text, L"WW");
    EXPECT_EQ(differences(after, picture()), 0);
}

TEST_F(WrapperContract, DictionariesKeepTextsNumbersAndListsUnderTheirCodes)
{
    resbuf *chain = nullptr, **end = &chain;
    for (int i = 0; i < 500; ++i) {
        *end = acutBuildList(RTSTR, (L"LAYER Č " + std::to_wstring(i)).c_str(), 0);
        end = &(*end)->rbnext;
    }
    {
        CZEMCDictionaryPtr dictionary(AcDb::kForRead);
        EXPECT_FALSE(dictionary.dctWrite(L"ZEMX_LSD2", L"T", std::wstring(L"refused"), false, true, 1));
        ASSERT_TRUE(dictionary.upgradeOpen());
        EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"TEXT_KEY", std::wstring(L"Čakovec"), false, true, 1));
        EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"REAL_KEY", 0.1, false, true, 38));
        EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"INT_KEY", -7, false, true, 60));
        EXPECT_TRUE(dictionary.dctWrite(L"ZEMX_LSD2", L"LIST_KEY", chain, false, true));
    }
    acutRelRb(chain);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const CZEMCDictionaryPtr dictionary(AcDb::kForRead);
        std::wstring text = L"before";
        double real = -1.0;
        int number = -1;
        EXPECT_TRUE(dictionary.dctRead(L"ZEMX_LSD2", L"TEXT_KEY", text, false));
        EXPECT_EQ(text, L"Čakovec");
        EXPECT_TRUE(dictionary.dctRead(L"ZEMX_LSD2", L"REAL_KEY", real, false));
        EXPECT_EQ(real, 0.1);
        EXPECT_TRUE(dictionary.dctRead(L"ZEMX_LSD2", L"INT_KEY", number, false));
        EXPECT_EQ(number, -7);
        EXPECT_FALSE(dictionary.dctRead(L"ZEMX_LSD2", L"INT_KEY", text, false)) << "a number is no text";
        EXPECT_FALSE(dictionary.dctRead(L"ZEMX_LSD2", L"NO_KEY", text, false));
        EXPECT_FALSE(dictionary.dctRead(L"NO_DICTIONARY", L"TEXT_KEY", text, false));
        EXPECT_EQ(text, L"Čakovec");
        resbuf *list = nullptr;
        ASSERT_TRUE(dictionary.dctRead(L"ZEMX_LSD2", L"LIST_KEY", list, false));
        int count = 0;
        for (const resbuf *item = list; item; item = item->rbnext)
            EXPECT_EQ(std::wstring(item->resval.rstring), L"LAYER Č " + std::to_wstring(count++));
        EXPECT_EQ(count, 500);
        acutRelRb(list);
    }
    // By other means: the group codes as they stand in the file.
    const std::string file = savedText();
    EXPECT_THAT(file, HasSubstr("\n 38\n0.1\n"));
    EXPECT_THAT(file, HasSubstr("\n 60\n-7\n"));
    EXPECT_THAT(file, HasSubstr("ZEMX_LSD2"));
    EXPECT_THAT(file, HasSubstr("LAYER \xC4\x8C 499"));
}

TEST_F(WrapperContract, WhatIsDrawnStandsInModelSpaceOnTheCurrentLayer)
{
    drawing().setCurrentLayer(drawing().ensureLayer(L"CURRENT"));
    ASSERT_FALSE(CZEMCDraw::polylineLW({{0, 0, 0}, {80, 0, 0}, {80, 80, 0}}, 0.0, 1, nullptr).isNull());
    ASSERT_FALSE(CZEMCDraw::line({0, 0, 0}, {50, 90, 0}, nullptr).isNull());
    EXPECT_TRUE(CZEMCDraw::polylineLW({}, 0.0, 1, nullptr).isNull());
    auto *made = new AcDbLine({1, 1, 0}, {2, 2, 0});
    AcDbObjectId id;
    ASSERT_EQ(CZEMCDraw::appendToModelSpace(made, id), Acad::eOk);
    EXPECT_EQ(made->objectId(), id);
    made->close();
    EXPECT_EQ(CZEMCDraw::appendToModelSpace(nullptr, id), Acad::eInvalidInput);
    for (const bool afterwards : {false, true}) {
        if (afterwards)
            reopen();
        const auto all = entities();
        ASSERT_EQ(all.size(), 3u);
        for (const AcDbEntity *entity : all)
            EXPECT_EQ(entity->layer(), L"CURRENT");
        const auto &polyline = static_cast<const AcDbPolyline &>(*all[0]);
        EXPECT_TRUE(polyline.isClosed());
        EXPECT_EQ(polyline.numVerts(), 3u);
        EXPECT_GT(inkOf(picture()), 200);
        std::wstring current;
        EXPECT_TRUE(CZEMCLayerTablePtr().getCurrent(current));
        EXPECT_EQ(current, L"CURRENT");
    }
}

TEST_F(WrapperContract, LayersComeInAStableOrderAndErasedOnesNot)
{
    for (const wchar_t *name : {L"B", L"A", L"Č"})
        drawing().ensureLayer(name);
    CStringArray first, again, afterwards, fewer;
    CZEMCLayerTablePtr().allLayerNames(first);
    CZEMCLayerTablePtr().allLayerNames(again);
    EXPECT_EQ(first, again);
    EXPECT_EQ(CStringArray(first.end() - 3, first.end()), (CStringArray{L"B", L"A", L"Č"}));
    reopen();
    CZEMCLayerTablePtr().allLayerNames(afterwards);
    EXPECT_EQ(first, afterwards);
    ASSERT_TRUE(drawing().eraseLayer(*drawing().findLayer(L"A")));
    CZEMCLayerTablePtr().allLayerNames(fewer);
    std::erase(first, L"A");
    EXPECT_EQ(first, fewer);
}

TEST_F(WrapperContract, ABlockComesFromAFileWithItsAttributesAndNestedBlocks)
{
    auto source = Drawing::createNew();
    BlockRecord &inner = source->addBlock(L"INNER");
    source->append(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 5.0), inner);
    source->append(std::make_unique<AcDbBlockReference>(idOf(inner), AcDbBlockReference::Placement{}));
    TextShape shape;
    source->append(std::make_unique<AttributeDefinitionEntity>(L"ATT1", L"", shape));
    ASSERT_TRUE(source->save(folder / "label.dxf"));
    const auto path = (folder / "label.dxf").wstring();
    const AcDbObjectId id = CZEMCDraw::insertBlockDefinition(L"LABEL", path.c_str());
    ASSERT_FALSE(id.isNull());
    EXPECT_EQ(CZEMCDraw::insertBlockDefinition(L"LABEL", path.c_str()), id) << "a second call gives the same";
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"OTHER", (folder / "missing.dwg").wstring().c_str()).isNull());
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"OTHER", L"").isNull());
    const QImage before = picture();
    ASSERT_FALSE(CZEMCDraw::insertBlockReference(id, {50, 50, 0}, nullptr, 3.0, nullptr).isNull());
    const QImage placed = picture();
    EXPECT_GT(inkIn(placed, pixelsOf({30, 30, 70, 70})), inkIn(before, pixelsOf({30, 30, 70, 70})) + 50)
        << "a circle of 5 three times as large";
    EXPECT_EQ(inkIn(placed, pixelsOf({45, 45, 55, 55})), 0);
    reopen();
    EXPECT_EQ(differences(placed, picture()), 0);
    CStringArray tags;
    EXPECT_EQ(ZEMGis::Utility::CUtility::GetAttributesFromBlockDef(idOf(*drawing().findBlock(L"LABEL")), tags), 1);
}

TEST_F(WrapperContract, ABlockFileInTheClosedFormatComesThroughAnInstalledConverterElseItIsToldWhichOnes)
{
    std::vector<std::wstring> told;
    session.setMessageSink([&](MessageKind, const std::wstring &text) { told.push_back(text); });
    std::ofstream(folder / "closed.dwg") << "AC1027 and so on";
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (folder / "bin").c_str(), 1);
    const auto file = (folder / "closed.dwg").wstring();
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"CLOSED", file.c_str()).isNull());
    EXPECT_THAT(told, testing::Contains(HasSubstr(L"dwg2dxf")));
    // A converter that copies a drawing to the place it is asked for: PROGRAM -y -o OUT IN.
    auto source = Drawing::createNew();
    source->append(boxEntity(0, 0, 4, 3));
    ASSERT_TRUE(source->save(folder / "inside.dxf"));
    std::filesystem::create_directories(folder / "bin");
    const auto converter = folder / "bin" / "dwg2dxf";
    std::ofstream(converter) << "#!/bin/sh\n/bin/cp '" << (folder / "inside.dxf").string() << "' \"$3\"\n";
    std::filesystem::permissions(converter, std::filesystem::perms::owner_all);
    const AcDbObjectId id = CZEMCDraw::insertBlockDefinition(L"CLOSED", file.c_str());
    EXPECT_FALSE(id.isNull());
    EXPECT_EQ(drawing().findBlock(L"CLOSED")->entities().size(), 1u);
    // One that fails.
    std::ofstream(converter) << "#!/bin/sh\nexit 3\n";
    told.clear();
    std::ofstream(folder / "other.dwg") << "AC1027 other";
    EXPECT_TRUE(CZEMCDraw::insertBlockDefinition(L"OTHER", (folder / "other.dwg").wstring().c_str()).isNull());
    EXPECT_THAT(told, testing::Contains(HasSubstr(L"could not convert")));
    ::setenv("PATH", path.c_str(), 1);
}

// --- Argument chains, plane geometry, files -------------------------------------------------------------------------

TEST_F(WrapperContract, ArgumentChainsOfFiftyPointsLeaveNoMemoryBehind)
{
    ads_point points[50];
    for (int i = 0; i < 50; ++i)
        points[i][0] = points[i][1] = i, points[i][2] = 0;
    const auto once = [&] {
        resbuf *head =
            acutBuildList(RTSTR, L"_-BOUNDARY", RTSTR, L"_A", RTSTR, L"_I", RTSTR, L"_N", RTSTR, L"", RTSTR, L"", 0);
        resbuf *last = head;
        while (last->rbnext)
            last = last->rbnext;
        for (const ads_point &point : points) {
            last->rbnext = acutNewRb(RTPOINT);
            last = last->rbnext;
            std::copy(point, point + 3, last->resval.rpoint);
        }
        last->rbnext = acutBuildList(RTSTR, L"", 0);
        EXPECT_EQ(acedCmd(head), RTNORM);
        EXPECT_EQ(acutRelRb(head), RTNORM);
    };
    // Inside of a square the chain makes its outline; the points lie on a diagonal that leaves it.
    box(-0.5, -0.5, 10.5, 10.5);
    once();
    EXPECT_EQ(entities().size(), 2u) << "the square and its outline, however many of the points lie in it";
    for (AcDbEntity *entity : entities())
        drawing().erase(*entity);
    // Where nothing is made, nothing may be left.
    box(1000.0, 0.0, 1001.0, 1.0);
    for (int i = 0; i < 100; ++i)
        once(); // whatever is kept for reuse is there now
    [[maybe_unused]] const auto before = ::mallinfo2().uordblks;
    for (int i = 0; i < 1000; ++i)
        once();
    EXPECT_EQ(entities().size(), 1u);
#if !defined(__SANITIZE_ADDRESS__) // its allocator tells no figures; it looks for leaks itself
    ASSERT_GT(before, 0u);
    EXPECT_LE(::mallinfo2().uordblks, before + 1024);
#endif
}

TEST_F(WrapperContract, AnglesAndPolarPointsInEightDirections)
{
    const ads_point from = {10, 20, 0};
    for (int i = 0; i < 8; ++i) {
        const double angle = i * std::numbers::pi / 4.0;
        ads_point to = {};
        acutPolar(from, angle, 5.0, to);
        EXPECT_NEAR(to[0], 10 + 5 * std::cos(angle), 1e-12);
        EXPECT_NEAR(to[1], 20 + 5 * std::sin(angle), 1e-12);
        EXPECT_NEAR(std::remainder(acutAngle(from, to) - angle, 2 * std::numbers::pi), 0.0, 1e-12);
        EXPECT_GE(acutAngle(from, to), 0.0);
        EXPECT_LT(acutAngle(from, to), 2 * std::numbers::pi);
    }
}

TEST_F(WrapperContract, AFileIsFoundInTheSecondFolderOfTheSupportPath)
{
    std::filesystem::create_directories(folder / "first");
    std::filesystem::create_directories(folder / "second");
    std::ofstream(folder / "second" / "own.cfg") << "x";
    ASSERT_TRUE(
        Services::instance().set("SUPPORT_PATH", (folder / "first").wstring() + L";" + (folder / "second").wstring()));
    std::wstring path = L"before";
    EXPECT_EQ(acedFindFile(L"own.cfg", path), RTNORM);
    EXPECT_EQ(path, (folder / "second" / "own.cfg").wstring());
    EXPECT_NE(acedFindFile(L"absent.cfg", path), RTNORM);
    EXPECT_EQ(path, (folder / "second" / "own.cfg").wstring());
}

TEST_F(WrapperContract, ScreenColoursAreThoseOfTheStandardPalette)
{
    const std::pair<int, std::uint32_t> blueGreenRed[] = {{1, 0x0000FF}, {3, 0x00FF00}, {5, 0xFF0000},
                                                          {7, 0xFFFFFF}, {8, 0x808080}, {250, 0x333333}};
    for (const auto &[index, color] : blueGreenRed)
        EXPECT_EQ(acedGetRGB(index), color) << index;
}

} // namespace
} // namespace velmor::test
