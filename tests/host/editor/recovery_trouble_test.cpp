// Keeping the work while things go wrong: a full disk, a broken journal, a second program, an exception.
#include "host/drawing/StepRecorder.h"
#include "host/editor/DrawingKeeper.h"
#include "tests/host/editor/RecoveryFixture.h"

#include <fcntl.h>
#include <future>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(RecoveryTest, AFullDiskIsToldOnceForEachReasonWorkGoesOnAndTheNextAutosaveServes)
{
    open();
    step();
    m_disk.full = true;
    step();
    step();
    recovery().autosave();
    recovery().finishAutosave();
    recovery().autosave();
    recovery().finishAutosave();
    // That the steps can't be kept is one thing, that the whole drawing can't be another.
    ASSERT_THAT(m_told, SizeIs(2));
    EXPECT_THAT(m_told[0], HasSubstr(L"steps"));
    EXPECT_THAT(m_told[1], HasSubstr(L"newest.dxf"));
    m_disk.full = false;
    step();
    recovery().autosave();
    recovery().finishAutosave();
    const std::string autosaved = drawing().write();
    EXPECT_THAT(m_told, SizeIs(2));
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), autosaved), "");
}

TEST_F(RecoveryTest, ASaveAfterTheJournalBrokeLeavesNothingOlderThanTheFile)
{
    open();
    step();
    m_disk.full = true;
    step();
    m_disk.full = false;
    step();
    recovery().autosave();
    recovery().finishAutosave();
    ASSERT_TRUE(fs::exists(fs::directory_iterator(m_state)->path() / "newest.dxf"));
    ASSERT_TRUE(drawing().save(m_file));
    crash();
    EXPECT_THAT(recovery().left(), IsEmpty());

    // The same when the save's own record finds no room.
    open();
    step();
    m_disk.full = true;
    ASSERT_TRUE(drawing().save(m_file));
    m_disk.full = false;
    crash();
    EXPECT_THAT(recovery().left(), IsEmpty());

    // What is done after it is kept again by the next autosave.
    open();
    step();
    m_disk.full = true;
    step();
    m_disk.full = false;
    ASSERT_TRUE(drawing().save(m_file));
    step();
    recovery().autosave();
    recovery().finishAutosave();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, AStateFolderThatCantBeMadeIsToldOnce)
{
    std::ofstream(m_folder / "file") << "no folder";
    recovery().enable(
        m_folder / "file" / "state", [this](const std::wstring &text) { m_told.push_back(text); }, &m_disk);
    open();
    step();
    open();
    step();
    EXPECT_EQ(log().undoCount(), 1u);
    EXPECT_THAT(m_told, ElementsAre(HasSubstr(L"file")));
    // Another drawing is not kept either, which is told for it too.
    m_session->setDrawing(Drawing::createNew());
    EXPECT_THAT(m_told, SizeIs(2));
}

TEST_F(RecoveryTest, TheSecondProgramOnAFileIsTold)
{
    HeldFolder others;
    std::string reason;
    ASSERT_TRUE(others.make(m_state, m_file, reason));
    open();
    ASSERT_THAT(m_told, SizeIs(1));
    EXPECT_THAT(m_told[0], HasSubstr(m_file.wstring()));
    m_told.clear();
    others.release();
    open();
    EXPECT_THAT(m_told, IsEmpty()) << "its owner is gone";
}

TEST_F(RecoveryTest, WhatTheJournalCantTakeIsWrittenAsAWholeAtOnce)
{
    open();
    step();
    EXPECT_FALSE(recovery().needsAutosave());
    m_disk.failures = 1;
    step();
    EXPECT_TRUE(recovery().needsAutosave());
    recovery().finishAutosave();
    std::string text = drawing().write();
    {
        crash();
        RecoveredDrawing recovered = recoverOnly();
        ASSERT_TRUE(recovered.drawing);
        EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
        m_session->setDrawing(std::move(recovered.drawing), recovered.path);
    }
    // What is recovered from the whole has no journal either.
    step();
    recovery().finishAutosave();
    text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, WhatBreaksBetweenStepsIsWrittenAtTheEndOfTheNext)
{
    // An old file, whose entities get their handles when somebody asks for them.
    std::ofstream(m_file, std::ios::trunc)
        << "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n0\n20\n0\n11\n9\n21\n9\n0\nENDSEC\n0\nEOF\n";
    open();
    const fs::path newest = fs::directory_iterator(m_state)->path() / "newest.dxf";
    m_disk.failures = 1;
    drawing().priv().giveHandle(*drawing().modelSpace().entities().front());
    ASSERT_TRUE(recovery().needsAutosave());
    recovery().finishAutosave();
    EXPECT_FALSE(fs::exists(newest)) << "it may be in the middle of something";
    step();
    recovery().finishAutosave();
    EXPECT_TRUE(fs::exists(newest));
    // The next ones come with the autosaves, or when something goes wrong.
    step();
    recovery().finishAutosave();
    const std::string text = drawing().write();
    m_session->alertFailure(L"a command failed");
    recovery().finishAutosave();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, WhatWasRecoveredInPartIsWrittenAsAWholeWithItsFirstStep)
{
    open();
    step();
    const fs::path steps = fs::directory_iterator(m_state)->path() / "steps";
    crash();
    {
        FileOperations operations;
        StepJournal journal;
        ASSERT_TRUE(journal.resume(steps, operations));
        ASSERT_TRUE(journal.append(journal_record::kStep, "no step of this drawing"));
    }
    RecoveredDrawing part = recoverOnly();
    ASSERT_TRUE(part.drawing);
    ASSERT_FALSE(part.complete);
    m_session->setDrawing(std::move(part.drawing), part.path);
    step();
    recovery().finishAutosave();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

/// A file whose text is written beside the work, since it is long.
void makeLong(const fs::path &file, const std::string &bytes)
{
    std::ofstream stream(file, std::ios::binary);
    for (int i = 0; i < 60000; ++i)
        stream << "999\n" << std::string(90, 'x') << '\n';
    stream << bytes;
}

TEST_F(RecoveryTest, ATextThatCouldNotBeKeptBesideTheWorkIsKnownAtTheSave)
{
    makeLong(m_file, m_bytes);
    m_disk.refusesBase = true;
    open();
    step();
    ASSERT_TRUE(drawing().save(m_file)); // and the file is no longer what the steps stand on
    ASSERT_THAT(m_told, SizeIs(1));
    EXPECT_THAT(m_told[0], HasSubstr(L"base.dxf"));
    step();
    recovery().finishAutosave();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, ATextThatCouldNotBeKeptBesideTheWorkIsKnownAtOneOfTheNextSteps)
{
    makeLong(m_file, m_bytes);
    m_disk.refusesBase = true;
    open();
    step();
    for (int i = 0; i < 5000 && m_told.empty(); ++i) {
        std::this_thread::yield();
        step();
    }
    ASSERT_THAT(m_told, SizeIs(1));
    EXPECT_THAT(m_told[0], HasSubstr(L"base.dxf"));
}

TEST_F(RecoveryTest, TheLastStepBeforeAPauseIsBroughtToTheDisk)
{
    int asked = 0;
    recovery().onUnsynced([&] { ++asked; });
    open();
    for (int i = 0; i < 20 && asked == 0; ++i)
        step();
    EXPECT_GE(asked, 1) << "else nobody syncs before the next step comes";
    const int before = m_disk.syncs;
    recovery().sync();
    EXPECT_GT(m_disk.syncs, before);
}

TEST_F(RecoveryTest, AnImportIsNotDoneOnceMoreForTheJournal)
{
    auto imported = Drawing::createNew();
    imported->component<StepRecorder>();
    auto &steps = imported->component<ChangeLog>();
    steps.begin(L"import");
    test::RandomChanges changes(*imported, 7);
    for (int i = 0; i < 100; ++i)
        changes.make();
    steps.keep();
    steps.undo();
    steps.redo();
    struct Watch final : DrawingObserver {
        int events = 0;
        void entityModified(AcDbEntity &) override { ++events; }
        void entityErased(AcDbEntity &, bool) override { ++events; }
    } watch;
    imported->addObserver(watch);
    Drawing &taken = *imported;
    m_session->setDrawing(std::move(imported));
    taken.removeObserver(watch);
    EXPECT_EQ(watch.events, 0);
    step();
    log().undo();
    const std::string text = drawing().write();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(test::differenceOf(recovered.drawing->write(), text), "");
}

TEST_F(RecoveryTest, WhateverFailsWhileADrawingIsTakenItIsTakenAndTheFailureTold)
{
    auto imported = Drawing::createNew();
    imported->component<StepRecorder>();
    auto &steps = imported->component<ChangeLog>();
    steps.begin(L"import");
    imported->append(std::make_unique<AcDbLine>(AcGePoint3d(1, 2), AcGePoint3d(3, 4)));
    steps.keep();
    Drawing *taken = imported.get();
    m_disk.breaks = true;
    EXPECT_NO_THROW(m_session->setDrawing(std::move(imported)));
    EXPECT_EQ(m_session->drawing(), taken);
    ASSERT_THAT(m_told, SizeIs(1));
    EXPECT_THAT(m_told[0], HasSubstr(L"the disk is gone"));
    m_disk.breaks = false;
    step(); // nobody follows any more
    EXPECT_TRUE(fs::is_empty(m_state));
    open();
    step();
    EXPECT_THAT(m_told, SizeIs(1));
}

TEST_F(RecoveryTest, TheFormerDrawingLivesWhileTheViewMayShowIt)
{
    struct View final : SessionView {
        bool fails = false;
        Drawing *shown = nullptr;
        void showDrawing(Drawing *drawing) override
        {
            if (fails)
                throw std::bad_alloc();
            shown = drawing;
        }
        void redraw() override {}
        void zoomTo(const Extents &) override {}
        void showAlert(const std::wstring &) override {}
        void showStatus(const std::wstring &) override {}
    } view;
    struct Life {
        explicit Life(Drawing &) {}
        ~Life() { *ended = true; }
        bool *ended = nullptr;
    };
    m_session->setView(&view);
    open();
    bool ended = false;
    drawing().component<Life>().ended = &ended;
    view.fails = true;
    EXPECT_THROW(m_session->setDrawing(Drawing::createNew()), std::bad_alloc);
    EXPECT_FALSE(ended) << "the view shows it still";
    EXPECT_NE(m_session->drawing(), view.shown);
    step(); // and the new one is kept
    view.fails = false;
    m_session->setDrawing(Drawing::createNew());
    EXPECT_TRUE(ended);
    m_session->setView(nullptr);
}

TEST_F(RecoveryTest, AFolderThatIsJustBeingMadeIsNoOneElsesToTakeAway)
{
    // Another program has made its folder and does not hold it yet.
    fs::create_directories(m_state / "open-1-1");
    const int lock = ::open(m_state.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    auto looking = std::async(std::launch::async, [] { return recovery().left(); });
    HeldFolder ours;
    std::string reason;
    auto making = std::async(std::launch::async, [&] { return ours.make(m_state, m_file, reason); });
    // Both wait for it, whatever time it takes within a second.
    constexpr std::chrono::milliseconds kMoment{200};
    EXPECT_EQ(looking.wait_for(kMoment), std::future_status::timeout);
    EXPECT_TRUE(fs::exists(m_state / "open-1-1"));
    EXPECT_EQ(making.wait_for(kMoment), std::future_status::timeout);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_state), fs::directory_iterator()), 1);
    HeldFolder others;
    EXPECT_TRUE(others.take(m_state / "open-1-1"));
    ::close(lock);
    EXPECT_THAT(looking.get(), IsEmpty());
    EXPECT_TRUE(making.get());
    EXPECT_TRUE(fs::exists(others.path() / "owner"));
    EXPECT_TRUE(fs::exists(ours.path() / "owner"));
    others.remove();
    ours.remove();
}

TEST_F(RecoveryTest, AFileThatAnotherProgramHasOpenIsKnown)
{
    open();
    EXPECT_FALSE(recovery().isOpenElsewhere(m_file)) << "it is open here";
    HeldFolder others;
    std::string reason;
    ASSERT_TRUE(others.make(m_state, m_folder / "other.dxf", reason));
    EXPECT_TRUE(recovery().isOpenElsewhere(m_folder / "." / "other.dxf"));
    EXPECT_FALSE(recovery().isOpenElsewhere(m_file));
    others.release();
    EXPECT_FALSE(recovery().isOpenElsewhere(m_folder / "other.dxf"));
}

TEST_F(RecoveryTest, ADamagedFileIsNotWrittenOverAfterRecoveryEither)
{
    fs::resize_file(m_file, fs::file_size(m_file) * 2 / 3);
    open();
    ASSERT_TRUE(drawing().loadReport().damaged());
    step();
    crash();
    RecoveredDrawing recovered = recoverOnly();
    ASSERT_TRUE(recovered.drawing);
    EXPECT_EQ(recovered.drawing->save(m_file).status, FileStatus::Refused);
}

} // namespace
} // namespace velmor
