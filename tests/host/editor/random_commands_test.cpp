// Ten thousand commands drawn by lot: undone, the drawing's text is the first; redone, the last.
#include "host/editor/LineworkCache.h"
#include "host/editor/Recovery.h"
#include "host/editor/UndoHistory.h"
#include "host/network/Network.h"
#include "host/sewage/AreaTable.h"
#include "host/sewage/CatchmentStore.h"
#include "tests/app/ProgramRun.h"
#include "tests/host/drawing/EveryKind.h"
#include "tests/host/editor/CommandLot.h"
#include "tests/host/editor/EditorFixture.h"

#include <map>

namespace velmor {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kCommands = 1000;
#else
constexpr int kCommands = 10000;
#endif
constexpr unsigned kSeed = 20261121;

/// Entities of every kind as files hold them, with data attached, and some drawn by lot.
std::string startText()
{
    const auto drawing = Drawing::read(test::everyKindFile()).drawing;
    int number = 0;
    for (AcDbEntity *entity : drawing->modelSpace().entities())
        drawing->setData(*entity, "KEY" + std::to_string(number++ % 2), {{1, std::wstring(L"kept š")}, {40, 0.1}});
    test::RandomChanges changes(*drawing, kSeed);
    for (int i = 0; i < 60; ++i)
        changes.make();
    return drawing->write();
}

class RandomCommands : public test::EditorFixture {
protected:
    void SetUp() override
    {
        setDrawing(Drawing::read(startText()).drawing);
        lot.emplace(session, kSeed, folder.path());
    }
    void setDrawing(std::unique_ptr<Drawing> drawing)
    {
        ASSERT_TRUE(drawing);
        session.setDrawing(std::move(drawing));
    }

    test::ScratchFolder folder;
    std::optional<test::CommandLot> lot;
};

TEST_F(RandomCommands, UndoneGiveTheFirstTextAndRedoneTheLast)
{
    drawing().component<ChangeLog>().setLimit(std::size_t{4} << 30);
    auto &history = drawing().component<UndoHistory>();
    drawing().component<Network>().sections();
    drawing().component<LineworkCache>().visible();
    drawing().component<CatchmentStore>();
    const std::string first = drawing().write();

    const auto &log = drawing().component<ChangeLog>();
    std::map<std::string, int> done;
    for (int i = 0; i < kCommands; ++i) {
        const std::uint64_t position = log.position();
        const std::string name = lot->run();
        if (log.position() != position)
            ++done[name];
        if (i % 500 == 0)
            drawing().write(); // as an autosave does
    }
    while (history.redo() != 0)
        ;
    const std::string last = drawing().write();
    std::size_t made = 0;
    for (const std::string &name : test::CommandLot::names()) {
        made += static_cast<std::size_t>(done[name]);
        RecordProperty(name, done[name]);
        // A short row need not meet the rare ones.
        EXPECT_TRUE(done[name] > 0 || kCommands < 10000) << name << " changed nothing";
    }
    EXPECT_GE(made, static_cast<std::size_t>(kCommands) / 2) << "too few commands changed anything";
    EXPECT_EQ(session.failures(), lot->failedHandlers);
    EXPECT_GT(lot->failedHandlers, 0u);
    const std::string areas = areasJson(areaTable(drawing()));
    const std::size_t sections = drawing().component<Network>().sections().size();

    history.undo(static_cast<std::size_t>(kCommands) * 10);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(test::differenceOf(drawing().write(), first), "");
    EXPECT_FALSE(drawing().isModified());
    EXPECT_TRUE(drawing().component<Network>().sections().empty());
    EXPECT_TRUE(drawing().component<CatchmentStore>().areas().empty());

    history.redo(static_cast<std::size_t>(kCommands) * 10);
    EXPECT_EQ(test::differenceOf(drawing().write(), last), "");
    EXPECT_EQ(drawing().component<Network>().sections().size(), sections);
    EXPECT_EQ(areasJson(areaTable(drawing())), areas);
    // The stores tell the same as those of a drawing that was never anything else.
    const auto again = Drawing::read(last);
    ASSERT_TRUE(again.drawing);
    EXPECT_FALSE(again.report.damaged());
    setWorkingDrawing(again.drawing.get());
    EXPECT_EQ(again.drawing->component<Network>().sections().size(), sections);
    EXPECT_EQ(areasJson(areaTable(*again.drawing)), areas);
    setWorkingDrawing(&drawing());
}

TEST_F(RandomCommands, RepeatedFromTheJournalGiveTheSameText)
{
    const auto state = folder / "state";
    Recovery &recovery = Recovery::instance();
    std::vector<std::wstring> told;
    recovery.enable(state, [&](const std::wstring &text) { told.push_back(text); });
    setDrawing(Drawing::read(startText()).drawing);
    for (int round = 0; round < 5; ++round) {
        for (int i = 0; i < kCommands / 10; ++i)
            lot->run();
        const std::string text = drawing().write();
        // The program dies and is started again.
        recovery.disable();
        recovery.enable(state, [&](const std::wstring &line) { told.push_back(line); });
        const auto left = recovery.left();
        ASSERT_EQ(left.size(), 1u);
        RecoveredDrawing recovered = recovery.recover(left[0]);
        ASSERT_TRUE(recovered.drawing) << recovered.message;
        EXPECT_TRUE(recovered.complete);
        EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
        session.setDrawing(std::move(recovered.drawing));
    }
    EXPECT_TRUE(told.empty());
    recovery.disable();
}

} // namespace
} // namespace velmor
