// What a program that died leaves behind can be recovered, and the user's own file is never touched.
#include "host/editor/Recovery.h"

#include "host/drawing/ChangeLog.h"
#include "host/drawing/DrawingData.h"
#include "host/drawing/StepRecorder.h"
#include "host/editor/DrawingKeeper.h"
#include "host/editor/Session.h"
#include "tests/host/drawing/RandomChanges.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <future>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace velmor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

std::string bytesOfFile(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A disk that can be filled up.
struct Disk final : FileOperations {
    std::atomic<bool> full = false;
    std::atomic<int> failures = 0;    ///< so many writes find no room
    std::atomic<bool> breaks = false; ///< in a way that nobody expects
    std::atomic<int> syncs = 0;
    std::atomic<bool> refusesBase = false;
    int openNew(const char *path, mode_t mode) override
    {
        if (!refusesBase || std::string_view(path).find("base.dxf") == std::string_view::npos)
            return FileOperations::openNew(path, mode);
        errno = EACCES;
        return -1;
    }
    int sync(int file) override
    {
        ++syncs;
        return FileOperations::sync(file);
    }
    ssize_t write(int file, const char *bytes, std::size_t count) override
    {
        if (breaks)
            throw std::runtime_error("the disk is gone");
        if (!full && (failures == 0 || failures-- == 0))
            return FileOperations::write(file, bytes, count);
        errno = ENOSPC;
        return -1;
    }
};

class RecoveryTest : public testing::Test {
protected:
    RecoveryTest()
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-recovery-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        m_state = m_folder / "state";
        m_file = m_folder / "town.dxf";
        const auto town = Drawing::createNew();
        test::RandomChanges changes(*town, 4);
        for (int i = 0; i < 200; ++i)
            changes.make();
        EXPECT_TRUE(town->save(m_file, {.backup = false}));
        m_bytes = bytesOfFile(m_file);
        start();
    }
    ~RecoveryTest() override
    {
        Recovery::instance().disable();
        m_session.reset();
        std::error_code error;
        fs::permissions(m_folder, fs::perms::owner_all, error);
        fs::remove_all(m_folder, error);
    }

    void start()
    {
        m_session = std::make_unique<Session>();
        recovery().enable(
            m_state, [this](const std::wstring &text) { m_told.push_back(text); }, &m_disk);
    }
    /// Everything in memory is gone, and nothing was closed.
    void crash()
    {
        recovery().disable();
        m_session.reset();
        m_told.clear();
        start();
    }
    static Recovery &recovery() { return Recovery::instance(); }
    Drawing &drawing() { return *m_session->drawing(); }
    ChangeLog &log() { return drawing().component<ChangeLog>(); }
    void open() { m_session->setDrawing(Drawing::load(m_file).drawing, m_file); }
    void step()
    {
        log().begin(L"step");
        test::RandomChanges changes(drawing(), ++m_seed);
        for (int i = 0; i < 5; ++i)
            changes.make();
        drawing().append(std::make_unique<AcDbLine>(AcGePoint3d(m_seed, 0), AcGePoint3d(m_seed, 1)));
        log().keep();
    }
    RecoveredDrawing recoverOnly()
    {
        const auto left = recovery().left();
        EXPECT_THAT(left, SizeIs(1));
        return left.empty() ? RecoveredDrawing() : recovery().recover(left.front());
    }

    fs::path m_folder, m_state, m_file;
    std::string m_bytes;
    Disk m_disk;
    std::vector<std::wstring> m_told;
    std::unique_ptr<Session> m_session;
    unsigned m_seed = 100;
};

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
