#include "host/editor/Guarded.h"

#include "host/drawing/ChangeLog.h"
#include "tests/host/editor/EditorFixture.h"

#include <gmock/gmock.h>

#include <new>

namespace velmor {
namespace {

using test::EditorFixture;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What the command of the test does.
std::function<void()> &body()
{
    static std::function<void()> work;
    return work;
}

class Guarded : public EditorFixture {
protected:
    Guarded()
    {
        session.commands().addCommand(
            L"TEST", L"work", L"work", 1, [] { body()(); }, nullptr, -1, nullptr, nullptr);
    }
    ~Guarded() override { body() = {}; }
    RunStatus run(std::function<void()> work)
    {
        body() = std::move(work);
        return session.commands().start(L"work");
    }
    std::size_t present()
    {
        const auto &all = drawing().modelSpace().entities();
        return static_cast<std::size_t>(
            std::ranges::count_if(all, [](const AcDbEntity *entity) { return !entity->isErased(); }));
    }
};

TEST_F(Guarded, WhatLeavesACommandBodyIsToldTheDrawingIsAsBeforeAndTheNextCommandRuns)
{
    AcDbEntity &kept = *open(rectangle(0, 0, 1, 1));
    drawing().setData(kept, "NOTE", {{1, L"before"}});
    drawing().setDictionaryEntry("BOOK", "PAGE", {{1, L"before"}});
    EXPECT_EQ(run([&] {
                  line(0, 0, 5, 5);
                  drawing().setData(kept, "NOTE", {{1, L"after"}});
                  drawing().setData(kept, "NEW", {{1, L"after"}});
                  drawing().setDictionaryEntry("BOOK", "PAGE", {{1, L"after"}});
                  drawing().erase(kept);
                  throw std::runtime_error("the pump is dry");
              }),
              RunStatus::Failed);
    EXPECT_THAT(session.alerts(), ElementsAre(L"work failed and was taken back: the pump is dry"));
    EXPECT_FALSE(kept.isErased());
    EXPECT_EQ(present(), 1u);
    EXPECT_EQ(drawing().data(kept, "NOTE"), (DataItems{{1, L"before"}}));
    EXPECT_EQ(drawing().data(kept, "NEW"), std::nullopt);
    EXPECT_EQ(drawing().dictionaryEntry("BOOK", "PAGE"), (DataItems{{1, L"before"}}));
    EXPECT_THAT(session.commands().running(), IsEmpty());
    EXPECT_EQ(session.commands().start(L"LAYER", std::vector<Answer>{{std::wstring(L"Next")}}), RunStatus::Done);
}

TEST_F(Guarded, ACommandThatEndsWellKeepsItsChanges)
{
    EXPECT_EQ(run([&] { line(0, 0, 5, 5); }), RunStatus::Done);
    EXPECT_EQ(present(), 1u);
    EXPECT_THAT(session.alerts(), IsEmpty());
    EXPECT_EQ(session.failures(), 0u);
}

TEST_F(Guarded, EveryKindOfExceptionEndsHere)
{
    EXPECT_EQ(run([] { throw std::bad_alloc(); }), RunStatus::Failed);
    EXPECT_THAT(session.alerts().back(), HasSubstr(L"not enough memory"));
    EXPECT_EQ(run([] { throw 7; }), RunStatus::Failed);
    EXPECT_THAT(session.alerts().back(), HasSubstr(L"unknown error"));
    EXPECT_EQ(session.failures(), 2u);
}

TEST_F(Guarded, AFailedInnerWorkIsTakenBackAloneAndAnOuterOneWithItsInnerOnes)
{
    EXPECT_EQ(run([&] {
                  line(0, 0, 1, 0);
                  EXPECT_FALSE(runGuarded(session, L"inner", [&] {
                      line(0, 1, 1, 1);
                      throw std::runtime_error("inner");
                  }));
                  EXPECT_EQ(present(), 1u);
              }),
              RunStatus::Done);
    EXPECT_EQ(present(), 1u);
    run([&] {
        EXPECT_TRUE(runGuarded(session, L"inner", [&] { line(0, 2, 1, 2); }));
        throw std::runtime_error("outer");
    });
    EXPECT_EQ(present(), 1u);
}

TEST_F(Guarded, AStepThatWasKeptForGoodOutlivesTheFailureOfTheWorkAroundIt)
{
    run([&] {
        EXPECT_TRUE(runGuarded(
            session, L"step", [&] { line(0, 0, 1, 0); }, Kept::ForGood));
        line(0, 1, 1, 1);
        throw std::runtime_error("later");
    });
    EXPECT_EQ(present(), 1u);
}

TEST_F(Guarded, AnObserverOrFollowerThatFailsWhileTheWorkEndsIsToldAndEndsNothingElse)
{
    struct Failing final : DrawingObserver, StepFollower {
        void entityErased(AcDbEntity &, bool) override { throw std::runtime_error("the view is gone"); }
        void stepDone(const ChangeStep &) override { throw std::runtime_error("the menu is gone"); }
    } failing;
    auto &log = drawing().component<ChangeLog>();
    drawing().addObserver(failing);
    // The work fails, and so does who is told that it is taken back.
    EXPECT_EQ(run([&] {
                  line(0, 0, 1, 0);
                  throw std::runtime_error("the pump is dry");
              }),
              RunStatus::Failed);
    EXPECT_THAT(session.alerts().back(), HasSubstr(L"the pump is dry"));
    EXPECT_EQ(present(), 0u);
    // It gives itself up.
    EXPECT_FALSE(runGuarded(session, L"given up", [&] {
        line(0, 0, 1, 0);
        log.giveUp();
    }));
    EXPECT_THAT(session.alerts().back(), HasSubstr(L"the view is gone"));
    EXPECT_EQ(present(), 0u);
    EXPECT_FALSE(log.isRunning());
    drawing().removeObserver(failing);
    // Its step stands, whoever fails over it.
    log.addFollower(failing);
    EXPECT_FALSE(runGuarded(session, L"done", [&] { line(0, 0, 1, 0); }));
    EXPECT_THAT(session.alerts().back(), HasSubstr(L"the menu is gone"));
    log.removeFollower(failing);
    EXPECT_EQ(present(), 1u);
    EXPECT_EQ(log.undoCount(), 1u);
    EXPECT_FALSE(log.isRunning());
}

TEST_F(Guarded, ADrawingThatWasOpenedByTheFailedWorkStaysAsItIs)
{
    rectangle(0, 0, 1, 1);
    run([&] {
        line(0, 0, 1, 0);
        session.setDrawing(Drawing::createNew());
        line(0, 1, 1, 1);
        throw std::runtime_error("late");
    });
    EXPECT_EQ(present(), 1u);
}

} // namespace
} // namespace velmor
