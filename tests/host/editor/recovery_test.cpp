// What a program that died leaves behind can be recovered, and the user's own file is never touched.
#include "host/drawing/DrawingData.h"
#include "tests/host/editor/RecoveryFixture.h"

#include <unistd.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(RecoveryTest, EveryStepComesBackUnderTheDrawingsOwnPathAndTheFileIsAsItWas)
{
    open();
    for (int i = 0; i < 50; ++i)
        step();
    const std::string text = drawing().write();
    crash();

    const auto left = recovery().left();
    ASSERT_THAT(left, SizeIs(1));
    EXPECT_EQ(left[0].path, m_file);
    EXPECT_EQ(left[0].steps, 50u);
    EXPECT_EQ(left[0].time, fs::last_write_time(left[0].folder / "steps"));
    RecoveredDrawing recovered = recovery().recover(left[0]);
    ASSERT_TRUE(recovered.drawing) << recovered.message;
    EXPECT_TRUE(recovered.complete);
    EXPECT_FALSE(recovered.fromAutosave);
    EXPECT_EQ(recovered.path, m_file);
    EXPECT_TRUE(recovered.drawing->isModified());
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    EXPECT_EQ(bytesOfFile(m_file), m_bytes);
    EXPECT_THAT(m_told, IsEmpty());
    // And what was recovered can be undone.
    auto &steps = recovered.drawing->component<ChangeLog>();
    EXPECT_EQ(steps.undoCount(), 50u);
    while (steps.undo())
        ;
    EXPECT_EQ(recovered.drawing->write(), Drawing::load(m_file).drawing->write());
}

TEST_F(RecoveryTest, WhatWasUndoneAndRedoneIsSoAfterIt)
{
    open();
    for (int i = 0; i < 10; ++i)
        step();
    for (int i = 0; i < 6; ++i)
        log().undo();
    log().redo();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    EXPECT_EQ(recovered.drawing->component<ChangeLog>().redoCount(), 5u);
}

TEST_F(RecoveryTest, ANewDrawingThatWasNeverSavedComesBackWithoutAPath)
{
    m_session->setDrawing(Drawing::createNew());
    step();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(recovered.path, fs::path());
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, WhatWasDoneBeforeTheSessionTookTheDrawingIsAStepToo)
{
    auto imported = Drawing::createNew();
    auto &steps = imported->component<ChangeLog>();
    steps.begin(L"import");
    imported->append(std::make_unique<AcDbLine>(AcGePoint3d(1, 2), AcGePoint3d(3, 4)));
    steps.keep();
    m_session->setDrawing(std::move(imported));
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, ADrawingThatIsClosedOrUnchangedLeavesNothing)
{
    open();
    step();
    m_session->setDrawing(nullptr);
    EXPECT_TRUE(fs::is_empty(m_state));
    open();
    crash();
    EXPECT_THAT(recovery().left(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(m_state));
}

TEST_F(RecoveryTest, ADrawingWhoseSessionIsTornDownByAnExceptionIsLeftBehind)
{
    open();
    step();
    const std::string text = drawing().write();
    try {
        const std::unique_ptr<Session> session = std::move(m_session);
        throw std::bad_alloc();
    } catch (const std::bad_alloc &) {
    }
    start();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, ObserversAndFollowersThatFailKeepNoStepFromTheJournal)
{
    struct Failing final : DrawingObserver, StepFollower {
        void entityErased(AcDbEntity &, bool) override { throw std::runtime_error("the view is gone"); }
        void stepDone(const ChangeStep &) override { throw std::runtime_error("the menu is gone"); }
    } failing;
    auto loaded = Drawing::load(m_file).drawing;
    loaded->component<ChangeLog>().addFollower(failing); // told before the journal
    m_session->setDrawing(std::move(loaded), m_file);
    for (int i = 0; i < 3; ++i)
        EXPECT_THROW(step(), std::runtime_error);
    log().removeFollower(failing);
    drawing().addObserver(failing);
    EXPECT_THROW(log().undo(), std::runtime_error);
    EXPECT_THROW(log().undo(), std::runtime_error);
    EXPECT_THROW(log().redo(), std::runtime_error);
    drawing().removeObserver(failing);
    step();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.complete);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

/// A command whose dialog draws an outline to help, saves an area and draws the next outline.
class RecoveryOfADialog : public RecoveryTest {
protected:
    AcDbEntity *append(double x)
    {
        auto line = std::make_unique<AcDbLine>(AcGePoint3d(x, 7777), AcGePoint3d(x, 8888));
        AcDbEntity *entity = line.get();
        drawing().append(std::move(line));
        return entity;
    }
    void handler(const std::function<void()> &work)
    {
        log().begin(L"handler");
        work();
        log().keepForGood();
    }
    void outline(double x)
    {
        handler([&] {
            if (m_outline)
                drawing().erase(*m_outline);
            m_outline = append(x);
            ASSERT_TRUE(log().noteAid(*m_outline));
        });
    }
    void defineTwoAreas()
    {
        log().begin(L"DEFINE");
        outline(1);
        handler([&] { append(100); });
        outline(2);
        handler([&] {
            append(200);
            drawing().setData(*m_outline, "STAMP", {{1, L"area"}});
        });
        outline(3);
    }
    void endDialog()
    {
        drawing().erase(*std::exchange(m_outline, nullptr));
        drawing().setDictionaryEntry("SETTINGS", "KEY", {{1, std::to_wstring(++m_seed)}});
        log().keep();
    }
    static std::vector<double> linesOf(Drawing &drawing)
    {
        std::vector<double> found;
        for (const AcDbEntity *entity : drawing.modelSpace().entities()) {
            const auto *line = dynamic_cast<const AcDbLine *>(entity);
            if (line && !line->isErased() && line->startPoint().y == 7777)
                found.push_back(line->startPoint().x);
        }
        return found;
    }
    AcDbEntity *m_outline = nullptr;
};

TEST_F(RecoveryOfADialog, WhatItSavedComesBackAndNothingOfWhatItDrewToHelp)
{
    open();
    defineTwoAreas();
    EXPECT_THAT(linesOf(drawing()), ElementsAre(100, 200, 3));
    crash();
    m_outline = nullptr;
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.complete);
    EXPECT_EQ(recovered.steps, 2u);
    EXPECT_THAT(linesOf(*recovered.drawing), ElementsAre(100, 200));
    EXPECT_THAT(recovered.drawing->entitiesWithData("STAMP"), IsEmpty());
    EXPECT_TRUE(recovered.drawing->component<ChangeLog>().undo());
    EXPECT_THAT(linesOf(*recovered.drawing), ElementsAre(100));
}

TEST_F(RecoveryOfADialog, TheSameWhereOnlyWholeDrawingsAreKept)
{
    open();
    step();
    m_disk.full = true;
    step(); // the journal ends here
    m_disk.full = false;
    defineTwoAreas();
    recovery().autosave();
    recovery().finishAutosave();
    recovery().autosave();
    recovery().finishAutosave();
    crash();
    m_outline = nullptr;
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.fromAutosave);
    EXPECT_THAT(linesOf(*recovered.drawing), ElementsAre(100, 200));
}

TEST_F(RecoveryOfADialog, ItsEndBelongsToTheLastStepAfterACrashToo)
{
    open();
    const std::string before = drawing().write();
    defineTwoAreas();
    endDialog();
    ASSERT_EQ(log().undoCount(), 2u);
    log().undo();
    log().redo();
    const std::string text = drawing().write();
    crash();
    ASSERT_THAT(recovery().left(), SizeIs(1));
    EXPECT_EQ(recovery().left()[0].steps, 4u) << "two done, one undone and redone";
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    auto &steps = recovered.drawing->component<ChangeLog>();
    EXPECT_EQ(steps.undoCount(), 2u);
    EXPECT_TRUE(steps.undo());
    EXPECT_FALSE(recovered.drawing->dictionaryEntry("SETTINGS", "KEY"));
    EXPECT_THAT(linesOf(*recovered.drawing), ElementsAre(100));
    EXPECT_TRUE(steps.undo());
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), before), "");
}

TEST_F(RecoveryOfADialog, AStepThatTheFileHoldsStaysAsItIsWhenTheDialogEnds)
{
    open();
    defineTwoAreas();
    ASSERT_TRUE(drawing().save(m_file));
    endDialog();
    EXPECT_EQ(log().undoCount(), 3u);
    EXPECT_TRUE(drawing().isModified());
    log().undo();
    EXPECT_FALSE(drawing().isModified());
    EXPECT_THAT(linesOf(drawing()), ElementsAre(100, 200));
}

TEST_F(RecoveryTest, ASavedDrawingIsNotLostAndWhatCameAfterTheSaveIs)
{
    open();
    step();
    ASSERT_TRUE(drawing().save(m_file));
    crash();
    EXPECT_THAT(recovery().left(), IsEmpty());

    open();
    step();
    ASSERT_TRUE(drawing().save(m_file));
    step();
    const std::string text = drawing().write();
    crash();
    ASSERT_THAT(recovery().left(), SizeIs(1));
    EXPECT_EQ(recovery().left()[0].steps, 1u);
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, ADrawingThatGotANewNameComesBackUnderIt)
{
    open();
    step();
    const fs::path other = m_folder / "other.dxf";
    ASSERT_TRUE(drawing().save(other));
    m_session->setPath(other);
    step();
    crash();
    ASSERT_THAT(recovery().left(), SizeIs(1));
    EXPECT_EQ(recovery().left()[0].path, other);
    EXPECT_EQ(recoverOnly().path, other);
}

TEST_F(RecoveryTest, KeptForLaterItIsThereAgainAndDroppedItIsGone)
{
    open();
    step();
    crash();
    ASSERT_THAT(recovery().left(), SizeIs(1));
    crash();
    ASSERT_THAT(recovery().left(), SizeIs(1));
    recovery().drop(recovery().left()[0]);
    EXPECT_THAT(recovery().left(), IsEmpty());
}

TEST_F(RecoveryTest, AJournalThatCantBeReadToItsEndIsNoProofThatNothingIsLost)
{
    const auto stepsOf = [&] { return fs::directory_iterator(m_state)->path() / "steps"; };
    open();
    step();
    recovery().autosave();
    recovery().finishAutosave();
    const std::string text = drawing().write();
    crash();
    // Its head is damaged: the autosave is all there is.
    {
        std::fstream damaged(stepsOf(), std::ios::in | std::ios::out | std::ios::binary);
        damaged << "?";
    }
    const auto left = recovery().left();
    ASSERT_THAT(left, SizeIs(1));
    EXPECT_EQ(left[0].steps, 0u);
    EXPECT_GE(left[0].time, fs::last_write_time(left[0].folder / "autosave.dxf"));
    RecoveredDrawing recovered = recovery().recover(left[0]);
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.fromAutosave);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    recovered.drawing.reset();
    crash();

    // It can't be read at all.
    const fs::path steps = stepsOf();
    fs::remove(steps);
    fs::create_directory(steps);
    EXPECT_THAT(recovery().left(), SizeIs(1));
    crash();
    fs::remove_all(fs::directory_iterator(m_state)->path());

    // It is cut behind the record of a save.
    open();
    step();
    ASSERT_TRUE(drawing().save(m_file));
    step();
    const fs::path cut = stepsOf();
    crash();
    fs::resize_file(cut, fs::file_size(cut) - 7);
    EXPECT_THAT(recovery().left(), SizeIs(1));
}

TEST_F(RecoveryTest, ARecoveredDrawingGoesOnBeingKept)
{
    open();
    step();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    m_session->setDrawing(std::move(recovered.drawing), recovered.path);
    EXPECT_THAT(recovery().left(), IsEmpty()) << "it is ours now";
    EXPECT_THAT(m_told, IsEmpty()) << "and no other program has it";
    step();
    log().undo();
    step();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing again = recoverOnly();
    ASSERT_TRUE(again.drawing);
    EXPECT_EQ(test::differenceOf(again.drawing->write(), text), "");
    // Saved at last, nothing is left.
    m_session->setDrawing(std::move(again.drawing), again.path);
    ASSERT_TRUE(drawing().save(m_file));
    crash();
    EXPECT_THAT(recovery().left(), IsEmpty());
}

TEST_F(RecoveryTest, APieceOfAStepAtTheEndIsPassedOver)
{
    open();
    step();
    const std::string text = drawing().write();
    step();
    const fs::path steps = recovery().left().empty() ? fs::directory_iterator(m_state)->path() / "steps" : fs::path();
    crash();
    fs::resize_file(steps, fs::file_size(steps) - 7);
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.complete);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    m_session->setDrawing(std::move(recovered.drawing), recovered.path);
    step();
    const std::string later = drawing().write();
    crash();
    EXPECT_EQ(test::differenceOf(recoverOnly().drawing->write(), later), "");
}

TEST_F(RecoveryTest, WithoutTheKeptTextTheUnchangedFileServesAndElseTheAutosave)
{
    open();
    step();
    recovery().autosave();
    recovery().finishAutosave();
    const std::string autosaved = drawing().write();
    step();
    const std::string text = drawing().write();
    const fs::path folder = fs::directory_iterator(m_state)->path();
    crash();
    fs::remove(folder / "base.dxf");
    {
        RecoveredDrawing recovered = recoverOnly();
        ASSERT_TRUE(recovered.drawing);
        EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    }
    crash();
    std::ofstream(m_file, std::ios::app) << "999\nanother program was here\n";
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_TRUE(recovered.fromAutosave);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), autosaved), "");
    EXPECT_EQ(recovered.path, fs::path()) << "that file is another program's";
}

TEST_F(RecoveryTest, AFileThatSomebodyHasWrittenSinceIsToldAndNotWrittenOver)
{
    open();
    step();
    ASSERT_TRUE(drawing().save(m_file)); // our own save is no change of somebody else's
    step();
    std::string text = drawing().write();
    crash();
    ASSERT_THAT(recovery().left(), SizeIs(1));
    EXPECT_FALSE(recovery().left()[0].fileChanged);

    std::ofstream(m_file, std::ios::app) << "999\nanother program was here\n";
    const auto left = recovery().left();
    ASSERT_THAT(left, SizeIs(1));
    EXPECT_TRUE(left[0].fileChanged);
    EXPECT_EQ(left[0].path, m_file);
    RecoveredDrawing recovered = recovery().recover(left[0]);
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(recovered.path, fs::path());
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
    // It has no file after the next crash either, though the journal was begun for one.
    m_session->setDrawing(std::move(recovered.drawing), recovered.path);
    step();
    text = drawing().write();
    crash();
    RecoveredDrawing again = recoverOnly();
    ASSERT_TRUE(again.drawing);
    EXPECT_EQ(again.path, fs::path());
    EXPECT_EQ(test::differenceOf(again.drawing->write(), text), "");
}

} // namespace
} // namespace velmor
