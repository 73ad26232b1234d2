// Undo and redo as a user works with them: commands, handlers of dialogs, marks.
#include "host/drawing/ChangeLog.h"
#include "host/editor/Asker.h"
#include "host/editor/Guarded.h"
#include "host/editor/LineworkCache.h"
#include "host/editor/UndoHistory.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

namespace velmor {
namespace {

using test::EditorFixture;
using testing::HasSubstr;
using testing::IsEmpty;

std::function<void()> &body()
{
    static std::function<void()> work;
    return work;
}

class Undo : public EditorFixture {
protected:
    Undo()
    {
        session.commands().addCommand(
            L"TEST", L"WORK", L"WORK", 1, [] { body()(); }, nullptr, -1, nullptr, nullptr);
    }
    ~Undo() override { body() = {}; }
    RunStatus work(std::function<void()> what)
    {
        body() = std::move(what);
        return session.commands().start(L"WORK");
    }
    RunStatus run(const wchar_t *name, std::vector<std::wstring> texts = {})
    {
        std::vector<Answer> answers;
        for (std::wstring &text : texts)
            answers.push_back({std::move(text)});
        return session.commands().start(name, answers);
    }
    UndoHistory &history() { return drawing().component<UndoHistory>(); }
    std::size_t present()
    {
        const auto &all = drawing().modelSpace().entities();
        return static_cast<std::size_t>(
            std::ranges::count_if(all, [](const AcDbEntity *entity) { return !entity->isErased(); }));
    }
};

TEST_F(Undo, ACommandIsOneStepUnderItsName)
{
    EXPECT_EQ(run(L"LAYER", {L"Parcels"}), RunStatus::Done);
    EXPECT_EQ(history().undoCount(), 1u);
    EXPECT_EQ(history().undoName(), L"LAYER");
    EXPECT_EQ(run(L"UNDO"), RunStatus::Done);
    EXPECT_EQ(drawing().findLayer(L"Parcels"), std::nullopt);
    EXPECT_EQ(drawing().layer(drawing().currentLayer()).name, L"0");
    EXPECT_EQ(history().redoName(), L"LAYER");
    EXPECT_EQ(run(L"REDO"), RunStatus::Done);
    EXPECT_EQ(drawing().layer(drawing().currentLayer()).name, L"Parcels");
}

TEST_F(Undo, CommandsThatACommandCallsBelongToItsStep)
{
    EXPECT_EQ(work([&] {
                  line(0, 0, 1, 1);
                  const std::vector<Answer> arguments{{std::wstring(L"LAYER")}, {std::wstring(L"Inner")}};
                  EXPECT_EQ(session.commands().runScripted(arguments), RunStatus::Done);
                  line(2, 2, 3, 3);
              }),
              RunStatus::Done);
    EXPECT_EQ(history().undoCount(), 1u);
    EXPECT_EQ(history().undo(), 1u);
    EXPECT_EQ(present(), 0u);
    EXPECT_EQ(drawing().findLayer(L"Inner"), std::nullopt);
}

TEST_F(Undo, AHandlerOfADialogIsAStepOfItsOwn)
{
    work([&] {
        runGuarded(
            session, L"Dialog", [&] { line(0, 0, 1, 1); }, Kept::ForGood);
        runGuarded(
            session, L"Dialog", [&] { line(2, 2, 3, 3); }, Kept::ForGood);
        runGuarded(
            session, L"Dialog", [] {}, Kept::ForGood);
    });
    EXPECT_EQ(history().undoCount(), 2u);
    EXPECT_EQ(history().undoName(), L"Dialog");
    history().undo();
    EXPECT_EQ(present(), 1u);
}

TEST_F(Undo, AFailedCommandTakesBackEverythingAndIsNoStep)
{
    AcDbEntity &kept = *open(line(0, 0, 1, 1));
    const std::string before = drawing().write();
    const std::size_t steps = history().undoCount();
    EXPECT_EQ(work([&] {
                  drawing().setLayerOf(kept, drawing().ensureLayer(L"New", 3));
                  drawing().setColorOf(kept, 5);
                  drawing().addBlock(L"Block");
                  drawing().setHeaderVariable("$USERR1", 40, "1.0");
                  AcDbEntity *entity = nullptr;
                  acdbOpenAcDbEntity(entity, idOf(kept), AcDb::kForWrite);
                  static_cast<AcDbLine *>(entity)->setEndPoint({9, 9, 0});
                  entity->close();
                  throw std::runtime_error("no more");
              }),
              RunStatus::Failed);
    EXPECT_EQ(drawing().write(), before);
    EXPECT_EQ(history().undoCount(), steps);
}

TEST_F(Undo, ACancelledOrRefusedCommandIsNoStep)
{
    const std::vector<Answer> escape{{Answer::Escape{}}};
    EXPECT_EQ(session.commands().start(L"LAYER", escape), RunStatus::Cancelled);
    EXPECT_EQ(run(L"LAYER", {L"no/name"}), RunStatus::BadInput);
    EXPECT_EQ(history().undoCount(), 0u);
}

TEST_F(Undo, ACommandThatIsLeftBehindItsFirstChangeHasDoneNothing)
{
    session.commands().addWork(L"HALF", 0, [](Asker &asker) {
        asker.drawing().append(std::make_unique<AcDbLine>());
        asker.drawing().ensureLayer(L"Half");
        asker.onlyPoint("ui.prompt.layer");
        return Command::Next::Commit;
    });
    const std::string before = drawing().write();
    const std::vector<Answer> escape{{Answer::Escape{}}};
    EXPECT_EQ(session.commands().start(L"HALF", escape), RunStatus::Cancelled);
    EXPECT_EQ(drawing().write(), before);
    EXPECT_EQ(history().undoCount(), 0u);
    const std::vector<Answer> point{{AcGePoint3d(1, 2)}};
    EXPECT_EQ(session.commands().start(L"HALF", point), RunStatus::Done);
    EXPECT_EQ(history().undoCount(), 1u);
}

TEST_F(Undo, TakesAsManyStepsAsAreAskedForOrAll)
{
    for (const wchar_t *name : {L"A", L"B", L"C", L"D"})
        run(L"LAYER", {name});
    EXPECT_EQ(run(L"UNDO", {L"2"}), RunStatus::Done);
    EXPECT_EQ(session.lastStatus(), L"Steps undone: 2");
    EXPECT_TRUE(drawing().findLayer(L"B"));
    EXPECT_FALSE(drawing().findLayer(L"C"));
    EXPECT_EQ(run(L"U"), RunStatus::Done);
    EXPECT_FALSE(drawing().findLayer(L"B"));
    EXPECT_EQ(run(L"REDO", {L"All"}), RunStatus::Done);
    EXPECT_TRUE(drawing().findLayer(L"D"));
    EXPECT_EQ(run(L"UNDO", {L"All"}), RunStatus::Done);
    EXPECT_FALSE(drawing().findLayer(L"A"));
    EXPECT_EQ(run(L"UNDO"), RunStatus::Done);
    EXPECT_EQ(session.lastStatus(), L"There is nothing to undo");
    EXPECT_EQ(run(L"UNDO", {L"99999999999999999999"}), RunStatus::Done);
    EXPECT_EQ(run(L"UNDO", {L"some"}), RunStatus::BadInput);
    EXPECT_THAT(session.alerts().back(), HasSubstr(L"some"));
}

TEST_F(Undo, GoesBackToAMark)
{
    run(L"LAYER", {L"A"});
    EXPECT_EQ(run(L"UNDO", {L"Back"}), RunStatus::BadInput) << "there is no mark";
    run(L"UNDO", {L"Mark"});
    run(L"LAYER", {L"B"});
    run(L"LAYER", {L"C"});
    EXPECT_EQ(run(L"UNDO", {L"Back"}), RunStatus::Done);
    EXPECT_TRUE(drawing().findLayer(L"A"));
    EXPECT_FALSE(drawing().findLayer(L"B"));
    EXPECT_FALSE(history().hasMark());
}

TEST_F(Undo, AMarkOfAStateThatWasUndoneIsNotMet)
{
    run(L"LAYER", {L"A"});
    run(L"LAYER", {L"B"});
    history().setMark();
    run(L"UNDO");
    run(L"LAYER", {L"C"});
    EXPECT_FALSE(history().hasMark());
    EXPECT_EQ(history().undoToMark(), 0u);
    EXPECT_TRUE(drawing().findLayer(L"C"));
}

TEST_F(Undo, InsideOfOtherWorkTakesNothingBack)
{
    run(L"LAYER", {L"A"});
    work([&] {
        line(0, 0, 1, 1);
        const std::vector<Answer> arguments{{std::wstring(L"UNDO")}, {std::wstring(L"1")}};
        session.commands().runScripted(arguments);
    });
    EXPECT_TRUE(drawing().findLayer(L"A"));
    EXPECT_EQ(present(), 1u);
}

TEST_F(Undo, FromAnItemOfAMenuWhichIsWorkOfItsOwn)
{
    run(L"LAYER", {L"A"});
    runGuarded(session, L"Undo", [&] { run(L"UNDO"); });
    EXPECT_FALSE(drawing().findLayer(L"A"));
    EXPECT_TRUE(history().canRedo());
    runGuarded(session, L"Redo", [&] { run(L"REDO"); });
    EXPECT_TRUE(drawing().findLayer(L"A"));
}

TEST_F(Undo, ANewDrawingHasNothingToUndo)
{
    run(L"LAYER", {L"A"});
    session.setDrawing(Drawing::createNew());
    EXPECT_FALSE(history().canUndo());
    EXPECT_FALSE(history().canRedo());
}

TEST_F(Undo, WhoWantsToKnowIsToldOfEveryChange)
{
    int told = 0;
    {
        const auto handle = history().onChange([&] { ++told; });
        run(L"LAYER", {L"A"});
        run(L"UNDO");
        run(L"REDO");
        EXPECT_EQ(told, 3);
    }
    run(L"UNDO");
    EXPECT_EQ(told, 3);
}

TEST_F(Undo, TheLineworkFollows)
{
    rectangle(0, 0, 10, 10);
    auto &cache = drawing().component<LineworkCache>();
    const auto areaAt = [&](double x, double y) { return cache.visible().regionAt({x, y}).outer.size(); };
    const auto before = areaAt(1, 1);
    work([&] { line(0, 5, 10, 5); });
    const auto divided = cache.visible().regionAt({1, 1}).outer;
    EXPECT_EQ(run(L"UNDO"), RunStatus::Done);
    EXPECT_EQ(areaAt(1, 1), before);
    EXPECT_EQ(areaAt(1, 9), before);
    EXPECT_EQ(run(L"REDO"), RunStatus::Done);
    EXPECT_EQ(cache.visible().regionAt({1, 1}).outer, divided);
    EXPECT_EQ(cache.builds(), 1u) << "it follows, and is not built anew";
}

TEST_F(Undo, MembersOfASelectionSetAreThoseThatStand)
{
    AcDbObjectId made;
    work([&] { made = line(0, 0, 1, 1); });
    SelectionSet &set = session.selectionSets().create();
    set.add(made);
    run(L"UNDO");
    EXPECT_TRUE(set.members().front().isErased());
    run(L"REDO");
    EXPECT_FALSE(set.members().front().isErased());
    EXPECT_NE(open(made), nullptr);
}

} // namespace
} // namespace velmor
