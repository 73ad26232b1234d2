#include "host/editor/Selection.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "host/sewage/CatchmentStore.h"
#include "tests/host/commands/CommandsFixture.h"

namespace velmor {
namespace {

using test::CommandsFixture;

class ModifyCommands : public CommandsFixture {
protected:
    void lock(const wchar_t *name)
    {
        const std::size_t index = drawing().ensureLayer(name);
        Layer layer = drawing().layer(index);
        layer.locked = true;
        drawing().setLayer(index, layer);
    }
};

// --- Selecting
// ---------------------------------------------------------------------------------------------------

TEST_F(ModifyCommands, EraseTakesWhatIsNamedOneByOne)
{
    const auto a = line(0, 0, 10, 0), b = line(0, 5, 10, 5);
    ASSERT_TRUE(run(L"ERASE 5,0 \"\""));
    EXPECT_TRUE(a.isErased());
    EXPECT_FALSE(b.isErased());
    ASSERT_TRUE(run(L"E \"#" + handleText(*open(b)) + L"\" \"\""));
    EXPECT_TRUE(b.isErased());
}

TEST_F(ModifyCommands, AWindowTakesWhatLiesInsideAndACrossingWhatItTouches)
{
    const auto inside = line(1, 1, 4, 4), across = line(3, 3, 9, 9);
    ASSERT_TRUE(run(L"SELECT Window 0,0 5,5 \"\""));
    EXPECT_EQ(drawing().component<Selection>().members(), AcDbObjectIdArray({inside}));
    ASSERT_TRUE(run(L"SELECT Crossing 0,0 5,5 \"\""));
    EXPECT_EQ(drawing().component<Selection>().members(), AcDbObjectIdArray({inside, across}));
}

TEST_F(ModifyCommands, RemoveAddLastAndPreviousWorkOnTheSet)
{
    const auto a = line(0, 0, 10, 0), b = line(0, 5, 10, 5);
    ASSERT_TRUE(run(L"SELECT ALL Remove 5,0 Add Last \"\""));
    EXPECT_EQ(drawing().component<Selection>().members(), AcDbObjectIdArray({b}));
    drawing().component<Selection>().clear();
    ASSERT_TRUE(run(L"ERASE Previous \"\""));
    EXPECT_TRUE(b.isErased());
    EXPECT_FALSE(a.isErased());
}

TEST_F(ModifyCommands, WhatStandsSelectedIsTakenWithoutAskingAndOnlyOnce)
{
    const auto a = line(0, 0, 10, 0), b = line(0, 5, 10, 5);
    drawing().component<Selection>().set(AcDbObjectIdArray{a});
    ASSERT_TRUE(run(L"ERASE"));
    EXPECT_TRUE(a.isErased());
    EXPECT_TRUE(drawing().component<Selection>().isEmpty());
    EXPECT_FALSE(run(L"ERASE")); // asks, and nobody answers
    EXPECT_FALSE(b.isErased());
}

TEST_F(ModifyCommands, WhatStandsOnALockedLayerIsLeftAloneAndTold)
{
    const auto a = onLayer(line(0, 0, 10, 0), L"Kept"), b = line(0, 5, 10, 5);
    lock(L"Kept");
    ASSERT_TRUE(run(L"ERASE ALL \"\""));
    EXPECT_FALSE(a.isErased());
    EXPECT_TRUE(b.isErased());
    EXPECT_TRUE(wasTold(L"locked"));
    run(L"MOVE ALL \"\" 0,0 1,1"); // ends before it asks for points
    EXPECT_EQ(static_cast<AcDbLine *>(open(a))->startPoint().x, 0.0);
}

// --- Moving
// ------------------------------------------------------------------------------------------------------

TEST_F(ModifyCommands, MoveGoesFromTheFirstPointToTheSecond)
{
    const auto id = line(0, 0, 10, 0);
    const std::wstring handle = handleText(*open(id));
    ASSERT_TRUE(run(L"MOVE ALL \"\" 1,1 4,5"));
    const auto *moved = only<AcDbLine>();
    EXPECT_EQ(moved->startPoint().x, 3.0);
    EXPECT_EQ(moved->endPoint().x, 13.0);
    EXPECT_EQ(moved->endPoint().y, 4.0);
    EXPECT_EQ(handleText(*moved), handle);
    ASSERT_TRUE(run(L"M ALL \"\" 2,3 \"\"")); // the first point is the way
    EXPECT_EQ(only<AcDbLine>()->startPoint().x, 5.0);
}

TEST_F(ModifyCommands, AMoveIsUndoneToTheLastByte)
{
    line(0.1, 0.2, 10.3, 0.4);
    rectangle(0.7, 0.1, 3.3, 9.9);
    ASSERT_TRUE(run(L"CIRCLE 0.1,0.3 0.7"));
    ASSERT_TRUE(run(L"TEXT 1,2 3 4 word"));
    const std::string before = drawing().write();
    ASSERT_TRUE(run(L"MOVE ALL \"\" 0.1,0.1 1000000.7,3.3"));
    EXPECT_NE(drawing().write(), before);
    EXPECT_EQ(drawing().component<UndoHistory>().undo(), 1u);
    EXPECT_EQ(drawing().write(), before);
}

TEST_F(ModifyCommands, AMovedSectionStaysTheSameSection)
{
    ASSERT_TRUE(run(L"LAYER Pipes"));
    ASSERT_TRUE(run(L"LINE 0,0 50,0 \"\""));
    ASSERT_TRUE(run(L"SECTIONS Pipes"));
    const auto guid = drawing().component<Network>().sections()[0]->GetGuid();
    ASSERT_TRUE(run(L"MOVE 25,0 \"\" 0,0 0,10"));
    ASSERT_EQ(drawing().component<Network>().sections().size(), 1u);
    EXPECT_EQ(drawing().component<Network>().sections()[0]->GetGuid(), guid);
    EXPECT_EQ(drawing().component<Network>().sections()[0]->GetStartPoint().y, 10.0);
}

// --- Copying
// -----------------------------------------------------------------------------------------------------

TEST_F(ModifyCommands, CopyMakesACopyForEachPoint)
{
    line(0, 0, 10, 0);
    ASSERT_TRUE(run(L"COPY ALL \"\" 0,0 0,5 0,10 \"\""));
    const auto all = living();
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(static_cast<AcDbLine &>(*all[1]).startPoint().y, 5.0);
    EXPECT_EQ(static_cast<AcDbLine &>(*all[2]).startPoint().y, 10.0);
    EXPECT_EQ(static_cast<AcDbLine &>(*all[0]).startPoint().y, 0.0);
}

TEST_F(ModifyCommands, UndoInsideOfCopyTakesTheLastCopy)
{
    line(0, 0, 10, 0);
    ASSERT_TRUE(run(L"CO ALL \"\" 0,0 0,5 0,10 U \"\""));
    EXPECT_EQ(living().size(), 2u);
}

TEST_F(ModifyCommands, ACopyOfASectionIsAPlainLine)
{
    ASSERT_TRUE(run(L"LAYER Pipes"));
    ASSERT_TRUE(run(L"LINE 0,0 50,0 \"\""));
    ASSERT_TRUE(run(L"SECTIONS Pipes"));
    const std::size_t before = living().size();
    ASSERT_TRUE(run(L"COPY ALL \"\" 0,0 0,100"));
    EXPECT_EQ(living().size(), 2 * before);
    EXPECT_EQ(drawing().component<Network>().sections().size(), 1u);
    EXPECT_EQ(drawing().component<Network>().nodes().size(), 2u);
    for (std::size_t i = before; i < living().size(); ++i)
        EXPECT_TRUE(drawing().dataKeys(*living()[i]).empty());
}

TEST_F(ModifyCommands, ACopyHasTheDataThatWereAttachedToTheFirst)
{
    AcDbEntity *first = open(line(0, 0, 50, 0));
    const DataItems islands{{1, std::wstring(L"one")}, {1, std::wstring(L"two")}};
    drawing().setData(*first, "SLIV_ISLANDS", islands);
    drawing().setData(*first, kSectionKey, itemsOf(SectionData{L"guid", L"S1", 0.0, L"", L""}));
    ASSERT_TRUE(run(L"COPY ALL \"\" 0,0 0,100"));
    EXPECT_EQ(drawing().dataKeys(*living().back()), std::vector<std::string>{"SLIV_ISLANDS"});
    const auto again = Drawing::read(drawing().write()).drawing;
    EXPECT_EQ(again->data(*again->modelSpace().entities().back(), "SLIV_ISLANDS"), islands);
}

TEST_F(ModifyCommands, ACopyMayBeTakenFromALockedLayer)
{
    onLayer(line(0, 0, 50, 0), L"Kept");
    lock(L"Kept");
    ASSERT_TRUE(run(L"COPY ALL \"\" 0,0 0,100"));
    EXPECT_EQ(living().size(), 2u);
}

TEST_F(ModifyCommands, ACopyOfAnAreasOutlineIsNoSecondArea)
{
    auto &store = drawing().component<CatchmentStore>();
    ASSERT_TRUE(store.create({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, L"A1", 1, {}));
    ASSERT_TRUE(run(L"COPY ALL \"\" 0,0 100,0"));
    EXPECT_EQ(living().size(), 2u);
    EXPECT_EQ(store.areas().size(), 1u);
    // Also after the file was read again.
    auto again = Drawing::read(drawing().write()).drawing;
    EXPECT_EQ(again->component<CatchmentStore>().areas().size(), 1u);
}

TEST_F(ModifyCommands, AMovedOutlineCarriesItsArea)
{
    auto &store = drawing().component<CatchmentStore>();
    const auto area = store.create({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, L"A1", 1, {});
    ASSERT_TRUE(area);
    const std::wstring guid = area->GetGuid();
    ASSERT_TRUE(run(L"MOVE ALL \"\" 0,0 100,0"));
    ASSERT_EQ(store.areas().size(), 1u);
    EXPECT_EQ(store.areas()[0]->GetGuid(), guid);
    EXPECT_NEAR(store.areas()[0]->GetCenterPoint().x, 105.0, 1e-9);
}

TEST_F(ModifyCommands, ABlockReferenceGoesWithItsAttributes)
{
    BlockRecord &block = drawing().addBlock(L"Box");
    drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(0, 0), AcGePoint3d(1, 0)), block);
    TextShape shape;
    shape.position = {0.5, 0.5};
    drawing().append(std::make_unique<AttributeDefinitionEntity>(L"NAME", L"Name", shape), block);
    ASSERT_TRUE(run(L"INSERT Box 10,10 1 0 first"));
    ASSERT_TRUE(run(L"COPY ALL \"\" 0,0 100,0"));
    ASSERT_TRUE(run(L"MOVE Last \"\" 0,0 0,1"));
    const auto *copy = last<AcDbBlockReference>();
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->placement().position.x, 110.0);
    EXPECT_EQ(copy->placement().position.y, 11.0);
    const auto attributes = attributesOf(*copy);
    ASSERT_EQ(attributes.size(), 1u);
    EXPECT_EQ(attributes[0]->shape().text, L"first");
    EXPECT_EQ(attributes[0]->shape().position.x, 110.5);
    EXPECT_EQ(attributes[0]->shape().position.y, 11.5);
}

// --- PURGE
// -------------------------------------------------------------------------------------------------------

TEST_F(ModifyCommands, PurgeTakesOutWhatNothingUsesAndTellsIt)
{
    drawing().ensureLayer(L"Used");
    drawing().ensureLayer(L"Unused");
    onLayer(line(0, 0, 1, 1), L"Used");
    drawing().addBlock(L"Alone");
    ASSERT_TRUE(run(L"PURGE Layers"));
    EXPECT_FALSE(drawing().findLayer(L"Unused"));
    EXPECT_TRUE(drawing().findLayer(L"Used"));
    EXPECT_TRUE(drawing().findBlock(L"Alone"));
    ASSERT_TRUE(run(L"PURGE Blocks"));
    EXPECT_FALSE(drawing().findBlock(L"Alone"));
    EXPECT_TRUE(wasTold(L"Alone"));
    ASSERT_TRUE(run(L"PURGE All"));
    EXPECT_TRUE(wasTold(L"0 blocks, 0 layers"));
}

} // namespace
} // namespace velmor
