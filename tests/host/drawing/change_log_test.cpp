// What was done to a drawing can be taken back, undone and redone, to the last byte of its text.
#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/Findings.h"

#include "tests/host/drawing/RandomChanges.h"

#include <gmock/gmock.h>

using namespace velmor;
using testing::IsEmpty;
using testing::ElementsAre;

namespace {

// Sanitized programs are ten times slower.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kSteps = 1000;
#else
constexpr int kSteps = 10000;
#endif

AcDbLine &addLine(Drawing &drawing, double x)
{
    auto line = std::make_unique<AcDbLine>(AcGePoint3d(x, 0), AcGePoint3d(x, 1));
    AcDbLine &made = *line;
    drawing.append(std::move(line));
    return made;
}

class ChangeLogTest : public testing::Test {
protected:
    void step(const std::function<void()> &work, const std::wstring &name = L"work")
    {
        log.begin(name);
        work();
        log.keep();
    }
    std::unique_ptr<Drawing> drawing = Drawing::createNew();
    ChangeLog &log = drawing->component<ChangeLog>();
};

} // namespace

TEST_F(ChangeLogTest, AStepOfManyChangesIsUndoneAndRedoneAsOne)
{
    const std::string first = drawing->write();
    AcDbLine *line = nullptr;
    step([&] {
        line = &addLine(*drawing, 1);
        drawing->setColorOf(*line, 3);
        drawing->setLayerOf(*line, drawing->ensureLayer(L"New", 5));
        drawing->setData(*line, "KEY", {{1, L"value"}});
        addLine(*drawing, 2);
    });
    const std::string last = drawing->write();
    EXPECT_EQ(log.undoCount(), 1u);
    EXPECT_EQ(log.undoName(), L"work");

    EXPECT_TRUE(log.undo());
    EXPECT_TRUE(line->isErased());
    EXPECT_EQ(drawing->findLayer(L"new"), std::nullopt);
    EXPECT_EQ(test::differenceOf(drawing->write(), first), "");
    EXPECT_FALSE(log.undo());

    EXPECT_TRUE(log.redo());
    EXPECT_EQ(drawing->data(*line, "KEY"), (DataItems{{1, L"value"}}));
    EXPECT_EQ(test::differenceOf(drawing->write(), last), "");
    EXPECT_FALSE(log.redo());
}

TEST_F(ChangeLogTest, ANewStepEndsWhatCouldBeRedone)
{
    step([&] { addLine(*drawing, 1); });
    log.undo();
    EXPECT_TRUE(log.canRedo());
    step([&] { addLine(*drawing, 2); });
    EXPECT_FALSE(log.canRedo());
    EXPECT_FALSE(log.redo());
    EXPECT_EQ(log.undoCount(), 1u);
}

TEST_F(ChangeLogTest, AStepWithoutChangesIsNoStepAndKeepsWhatCanBeRedone)
{
    step([&] { addLine(*drawing, 1); });
    log.undo();
    step([] {});
    EXPECT_TRUE(log.canRedo());
    EXPECT_EQ(log.undoCount(), 0u);
}

TEST_F(ChangeLogTest, InnerRunsBelongToTheOuterStep)
{
    log.begin(L"outer");
    addLine(*drawing, 1);
    log.begin(L"inner");
    addLine(*drawing, 2);
    log.keep();
    log.keep();
    EXPECT_EQ(log.undoCount(), 1u);
    EXPECT_EQ(log.undoName(), L"outer");
}

TEST_F(ChangeLogTest, AFailedInnerRunTakesBackItsOwnChangesAlone)
{
    log.begin(L"outer");
    AcDbLine &kept = addLine(*drawing, 1);
    log.begin(L"inner");
    AcDbLine &lost = addLine(*drawing, 2);
    drawing->setColorOf(kept, 4);
    log.takeBack();
    EXPECT_FALSE(kept.isErased());
    EXPECT_EQ(kept.colorIndex(), 256);
    EXPECT_TRUE(lost.isErased());
    log.keep();
    EXPECT_EQ(log.undoCount(), 1u);
    log.undo();
    EXPECT_TRUE(kept.isErased());
}

TEST_F(ChangeLogTest, AHandlersStepHasWhatItsCommandDidBeforeItAndOutlivesTheCommandsFailure)
{
    log.begin(L"command");
    AcDbLine &before = addLine(*drawing, 1);
    log.begin(L"handler");
    AcDbLine &handled = addLine(*drawing, 2);
    log.keepForGood();
    AcDbLine &after = addLine(*drawing, 3);
    log.takeBack();
    EXPECT_TRUE(after.isErased());
    EXPECT_FALSE(handled.isErased());
    EXPECT_FALSE(before.isErased());
    EXPECT_EQ(log.undoCount(), 1u);
    EXPECT_EQ(log.undoName(), L"handler");
    log.undo();
    EXPECT_TRUE(handled.isErased());
    EXPECT_TRUE(before.isErased());
}

TEST_F(ChangeLogTest, ChangesOutsideOfAnyRunAreAStepWithoutAName)
{
    step([&] { addLine(*drawing, 1); });
    AcDbLine &loose = addLine(*drawing, 2);
    EXPECT_EQ(log.undoCount(), 2u);
    EXPECT_EQ(log.undoName(), L"");
    log.undo();
    EXPECT_TRUE(loose.isErased());
    EXPECT_EQ(log.undoName(), L"work");
}

TEST_F(ChangeLogTest, ADrawingIsCleanAgainAtTheStateThatWasSaved)
{
    const auto file = std::filesystem::temp_directory_path() / "velmor_change_log_test.dxf";
    EXPECT_FALSE(drawing->isModified());
    step([&] { addLine(*drawing, 1); });
    EXPECT_TRUE(drawing->isModified());
    log.undo();
    EXPECT_FALSE(drawing->isModified());
    log.redo();
    ASSERT_TRUE(drawing->save(file, {.backup = false}));
    EXPECT_FALSE(drawing->isModified());
    log.undo();
    EXPECT_TRUE(drawing->isModified());
    log.redo();
    EXPECT_FALSE(drawing->isModified());
    log.undo();
    step([&] { addLine(*drawing, 2); });
    log.undo();
    EXPECT_TRUE(drawing->isModified()) << "the saved state was given up";
    std::filesystem::remove(file);
}

TEST_F(ChangeLogTest, AFailedRunLeavesACleanDrawingClean)
{
    log.begin();
    addLine(*drawing, 1);
    log.takeBack();
    EXPECT_FALSE(drawing->isModified());
}

TEST_F(ChangeLogTest, ARunThatChangedNothingLeavesNoTrace)
{
    const std::uint64_t revision = drawing->revision();
    log.begin();
    log.giveUp();
    log.keep();
    log.begin();
    log.takeBack();
    EXPECT_EQ(drawing->revision(), revision);
    EXPECT_FALSE(drawing->isModified());
}

TEST_F(ChangeLogTest, AnUndoneObjectIsNotFoundByItsHandleAndItsNumberIsFreeOnceItCannotComeBack)
{
    std::uint64_t handle = 0;
    step([&] { handle = handleOf(addLine(*drawing, 1)); });
    EXPECT_NE(drawing->findByHandle(handle), nullptr);
    log.undo();
    EXPECT_EQ(drawing->findByHandle(handle), nullptr);
    step([&] { EXPECT_NE(handleOf(addLine(*drawing, 2)), handle); });
    log.undo();
    log.forget();
    step([&] { EXPECT_EQ(handleOf(addLine(*drawing, 3)), handle); });
}

TEST_F(ChangeLogTest, AHandleAskedForAfterAnUndoIsNotOneThatComesBack)
{
    // A file of the first release without handles.
    auto read =
        Drawing::read("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n1\n21\n1\n0\nENDSEC\n0\nEOF\n");
    ASSERT_TRUE(read.drawing);
    Drawing &old = *read.drawing;
    auto &oldLog = old.component<ChangeLog>();
    AcDbEntity &line = *old.modelSpace().entities().front();
    AcDbLine *made = nullptr;
    oldLog.begin();
    made = &addLine(old, 1);
    const std::uint64_t second = handleOf(*made);
    oldLog.keep();
    oldLog.undo();
    const std::uint64_t asked = handleOf(line);
    EXPECT_NE(asked, second);
    EXPECT_TRUE(oldLog.canRedo()) << "asking for a handle is no step";
    oldLog.redo();
    EXPECT_EQ(old.findByHandle(second), made);
    EXPECT_EQ(old.findByHandle(asked), &line);
}

TEST_F(ChangeLogTest, TheOldestStepsAreForgottenWhenTheLogIsFull)
{
    for (int i = 0; i < 100; ++i)
        step([&] { addLine(*drawing, i); });
    const std::size_t each = log.bytes() / 100;
    log.setLimit(10 * each);
    EXPECT_EQ(log.undoCount(), 10u);
    EXPECT_LE(log.bytes(), 10 * each);
    while (log.undo())
        ;
    EXPECT_TRUE(drawing->isModified()) << "steps that are kept no longer still were done";
}

TEST_F(ChangeLogTest, ObserversLearnOfWhatUndoAndRedoChange)
{
    struct Recorder final : DrawingObserver {
        std::vector<std::string> calls;
        void entityModified(AcDbEntity &) override { calls.push_back("modified"); }
        void entityErased(AcDbEntity &, bool erased) override { calls.push_back(erased ? "erased" : "back"); }
    } recorder;
    AcDbLine &line = addLine(*drawing, 1);
    step([&] { drawing->setColorOf(line, 2); });
    step([&] { addLine(*drawing, 2); });
    step([&] { drawing->erase(line); });
    drawing->addObserver(recorder);
    log.undo();
    log.undo();
    log.undo();
    log.redo();
    log.redo();
    drawing->removeObserver(recorder);
    EXPECT_THAT(recorder.calls, ElementsAre("back", "erased", "modified", "modified", "back"));
}

class EveryVersion : public testing::TestWithParam<const char *> {};

TEST_P(EveryVersion, RandomStepsUndoneAndRedoneGiveTheSameText)
{
    // An empty drawing in the version, with a few things to change.
    std::string text = Drawing::createNew()->write();
    if (std::string_view(GetParam()) == "AC1009") {
        text = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n";
        for (int i = 0; i < 20; ++i)
            text += "0\nLINE\n8\nA\n10\n" + std::to_string(i) + "\n20\n0\n11\n1\n21\n1\n";
        text += "0\nENDSEC\n0\nEOF\n";
    }
    auto read = Drawing::read(text);
    ASSERT_TRUE(read.drawing);
    Drawing &drawing = *read.drawing;
    {
        test::RandomChanges before(drawing, 1);
        for (int i = 0; i < 200; ++i)
            before.make();
        // And what a file already holds: the changes come back from their own text.
        read = Drawing::read(drawing.write());
        ASSERT_TRUE(read.drawing);
    }
    Drawing &town = *read.drawing;
    auto &log = town.component<ChangeLog>();
    log.setLimit(std::size_t{4} << 30);
    const std::string first = town.write();

    constexpr unsigned kSeed = 20261121;
    test::RandomChanges changes(town, kSeed);
    std::mt19937 random(kSeed);
    for (int i = 0; i < kSteps; ++i) {
        log.begin(L"step");
        for (unsigned count = 1 + random() % 3; count > 0; --count)
            changes.make();
        if (random() % 50 == 0)
            log.takeBack();
        else
            log.keep();
        if (random() % 20 == 0)
            log.undo();
        if (random() % 25 == 0)
            log.redo();
        if (random() % 100 == 0)
            town.write(); // an autosave leaves no trace
    }
    while (log.redo())
        ;
    EXPECT_GT(log.undoCount(), static_cast<std::size_t>(kSteps) * 7 / 10);
    const std::string last = town.write();
    EXPECT_FALSE(last == first);

    while (log.undo())
        ;
    EXPECT_EQ(test::differenceOf(town.write(), first), "");
    EXPECT_FALSE(town.isModified());
    while (log.redo())
        ;
    EXPECT_EQ(test::differenceOf(town.write(), last), "");
    // And what it says is a whole drawing.
    const auto again = Drawing::read(last);
    ASSERT_TRUE(again.drawing);
    for (const Finding &finding : again.report.findings)
        EXPECT_NE(finding.severity, Severity::Damage) << findingLine("", finding);
    EXPECT_EQ(test::differenceOf(again.drawing->write(), last), "");
}

INSTANTIATE_TEST_SUITE_P(Versions, EveryVersion, testing::Values("AC1027", "AC1009"));

TEST(ChangeLogRuns, AnUndoInsideOfNestedRunsMovesTheirBeginnings)
{
    // An old file, whose entities get their handles when somebody asks for them.
    const auto drawing = Drawing::read("0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n9\n21\n9\n"
                                       "0\nENDSEC\n0\nEOF\n")
                             .drawing;
    AcDbEntity *first = drawing->modelSpace().entities().front();
    auto &log = drawing->component<ChangeLog>();
    log.begin(L"before");
    drawing->setColorOf(addLine(*drawing, 1), 3);
    log.keep();
    log.begin(L"outer");
    drawing->priv().giveHandle(*first);
    log.begin(L"inner");
    EXPECT_TRUE(log.undo()); // which closes the handle that was given so far
    log.takeBack();
    log.begin(L"inner");
    addLine(*drawing, 2);
    log.takeBack();
    log.keep();
    EXPECT_FALSE(log.isRunning());
    EXPECT_EQ(log.undoCount(), 0u);
    EXPECT_EQ(log.redoCount(), 1u);
    EXPECT_TRUE(log.redo());
}

TEST_F(ChangeLogTest, AnAidThatIsGoneWhenTheRunEndsIsNoPartOfItsSteps)
{
    const std::string before = drawing->write();
    AcDbLine *area = nullptr, *first = nullptr, *second = nullptr;
    const auto handler = [&](const std::function<void()> &work) {
        log.begin(L"handler");
        work();
        log.keepForGood();
    };
    log.begin(L"command");
    handler([&] {
        first = &addLine(*drawing, 1);
        log.noteAid(*first);
        handleOf(*first);
    });
    handler([&] {
        area = &addLine(*drawing, 2);
        drawing->setData(*first, "STAMP", {{1, L"on the aid"}});
    });
    handler([&] {
        drawing->erase(*first);
        second = &addLine(*drawing, 3);
        log.noteAid(*second);
    });
    handler([&] { drawing->setColorOf(*area, 3); });
    drawing->erase(*second);
    drawing->setDictionaryEntry("SETTINGS", "KEY", {{1, L"value"}});
    log.keep();

    EXPECT_EQ(log.undoCount(), 2u);
    EXPECT_EQ(log.undoName(), L"handler");
    const std::string after = drawing->write();
    ASSERT_TRUE(log.undo()); // the colour, with what the command did at its end
    EXPECT_TRUE(first->isErased());
    EXPECT_TRUE(second->isErased());
    EXPECT_FALSE(area->isErased());
    EXPECT_EQ(area->colorIndex(), 256);
    EXPECT_FALSE(drawing->dictionaryEntry("SETTINGS", "KEY"));
    ASSERT_TRUE(log.undo());
    EXPECT_EQ(drawing->write(), before);
    EXPECT_FALSE(log.canUndo());
    EXPECT_TRUE(log.redo());
    EXPECT_TRUE(log.redo());
    EXPECT_EQ(drawing->write(), after);
    EXPECT_TRUE(first->isErased());
}

TEST_F(ChangeLogTest, AnAidThatStaysIsAnEntityLikeAnyOther)
{
    log.begin(L"command");
    log.begin(L"handler");
    AcDbLine &line = addLine(*drawing, 1);
    log.noteAid(line);
    log.keepForGood();
    log.keep();
    ASSERT_EQ(log.undoCount(), 1u);
    log.undo();
    EXPECT_TRUE(line.isErased());
    log.redo();
    EXPECT_FALSE(line.isErased());
}

TEST_F(ChangeLogTest, ARunOfNothingButAidsIsNoStepAndGivesItsNumbersBack)
{
    const std::string before = drawing->write();
    log.begin(L"command");
    for (int i = 0; i < 3; ++i) {
        log.begin(L"handler");
        AcDbLine &line = addLine(*drawing, i);
        log.noteAid(line);
        handleOf(line);
        log.keepForGood();
        drawing->erase(line);
    }
    log.keep();
    EXPECT_FALSE(log.canUndo());
    EXPECT_EQ(drawing->write(), before);
}

TEST_F(ChangeLogTest, AidsGoWithACommandThatFailsAlsoThoseOfHandlersThatStay)
{
    log.begin(L"command");
    log.begin(L"handler");
    AcDbLine &area = addLine(*drawing, 1), &aid = addLine(*drawing, 2), &erased = addLine(*drawing, 3);
    EXPECT_TRUE(log.noteAid(aid));
    EXPECT_TRUE(log.noteAid(erased));
    drawing->setData(aid, "STAMP", {{1, L"on the aid"}});
    log.keepForGood();
    drawing->erase(erased); // as a destructor does while the failure is under way
    log.takeBack();
    EXPECT_FALSE(area.isErased());
    EXPECT_TRUE(aid.isErased());
    EXPECT_TRUE(erased.isErased());
    EXPECT_THAT(drawing->entitiesWithData("STAMP"), IsEmpty());
    EXPECT_EQ(log.undoCount(), 1u);
    log.undo();
    log.redo();
    EXPECT_FALSE(area.isErased());
    EXPECT_TRUE(aid.isErased());
}

TEST_F(ChangeLogTest, AnObserverThatFailsOverAnAidKeepsNoneOfThem)
{
    struct Failing final : DrawingObserver {
        void entityErased(AcDbEntity &, bool) override { throw std::runtime_error("the view is gone"); }
    } failing;
    log.begin(L"command");
    log.begin(L"handler");
    AcDbLine &first = addLine(*drawing, 1), &second = addLine(*drawing, 2);
    log.noteAid(first);
    log.noteAid(second);
    log.keepForGood();
    drawing->addObserver(failing);
    EXPECT_THROW(log.takeBack(), std::runtime_error);
    drawing->removeObserver(failing);
    EXPECT_TRUE(first.isErased() && second.isErased());
    EXPECT_FALSE(log.isRunning());
    EXPECT_FALSE(log.canUndo());
}

TEST_F(ChangeLogTest, AHandlerThatFailsTakesItsAidsBackAndBringsBackThoseItErased)
{
    log.begin(L"command");
    log.begin(L"handler");
    AcDbLine &standing = addLine(*drawing, 1);
    log.noteAid(standing);
    const std::uint64_t handle = handleOf(standing);
    log.keepForGood();
    log.begin(L"handler");
    drawing->erase(standing);
    AcDbLine &failed = addLine(*drawing, 2);
    log.noteAid(failed);
    log.takeBack();
    EXPECT_FALSE(standing.isErased());
    EXPECT_TRUE(failed.isErased());
    log.begin(L"handler");
    EXPECT_NE(handleOf(addLine(*drawing, 3)), handle) << "the aid that stands has it";
    log.keepForGood();
    drawing->erase(standing);
    log.keep();
    EXPECT_EQ(log.undoCount(), 1u);
}

TEST_F(ChangeLogTest, OnlyWhatTheWorkAtHandMadeCanBeItsAid)
{
    AcDbLine &before = addLine(*drawing, 1);
    EXPECT_FALSE(log.noteAid(before)) << "nothing runs";
    log.begin(L"command");
    EXPECT_FALSE(log.noteAid(before));
    log.begin(L"handler");
    AcDbLine &ofStep = addLine(*drawing, 2);
    log.keepForGood();
    EXPECT_FALSE(log.noteAid(ofStep)) << "a step knows it";
    log.keep();
}

TEST_F(ChangeLogTest, NoFileThatIsWrittenMeanwhileHoldsAnAid)
{
    drawing->write();
    log.begin(L"command");
    addLine(*drawing, 1);
    const std::size_t lines = Drawing::read(drawing->write()).drawing->modelSpace().entities().size();
    AcDbLine &aid = addLine(*drawing, 2);
    drawing->setData(aid, "STAMP", {{1, L"on the aid"}});
    log.noteAid(aid);
    const auto written = Drawing::read(drawing->write()).drawing;
    EXPECT_EQ(written->modelSpace().entities().size(), lines);
    EXPECT_THAT(written->entitiesWithData("STAMP"), IsEmpty());
    log.takeBack();
}
