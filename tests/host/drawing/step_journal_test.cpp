// Steps as bytes, and the file that they are appended to.
#include "host/drawing/StepCodec.h"
#include "host/drawing/StepJournal.h"

#include "tests/host/drawing/RandomChanges.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <fstream>
#include <unistd.h>

using namespace velmor;
using testing::SizeIs;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kSteps = 300;
#else
constexpr int kSteps = 3000;
#endif

std::string twentyLinesWithoutHandles()
{
    std::string text = "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1009\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n";
    for (int i = 0; i < 20; ++i)
        text += "0\nLINE\n8\nA\n10\n" + std::to_string(i) + "\n20\n0\n11\n1\n21\n1\n";
    return text + "0\nENDSEC\n0\nEOF\n";
}

std::string somethingOfEverything()
{
    const auto drawing = Drawing::createNew();
    test::RandomChanges changes(*drawing, 7);
    for (int i = 0; i < 400; ++i)
        changes.make();
    return drawing->write();
}

/// Follows a drawing's log and does the same to another drawing that was read from the same text.
class Twin final : StepFollower {
public:
    Twin(Drawing &drawing, Drawing &twin)
        : m_drawing(drawing), m_log(drawing.component<ChangeLog>()), m_twinLog(twin.component<ChangeLog>()),
          m_out(drawing), m_in(twin)
    {
        m_log.addFollower(*this);
    }
    ~Twin() override { m_log.removeFollower(*this); }

private:
    void stepDone(const ChangeStep &step) override
    {
        const auto bytes = m_out.encode(step);
        ASSERT_TRUE(bytes);
        auto read = m_in.decode(*bytes);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->name, step.name);
        m_twinLog.replay(std::move(*read));
    }
    void stepUndone(const ChangeStep &) override { EXPECT_TRUE(m_twinLog.undo()); }
    void stepRedone(const ChangeStep &) override { EXPECT_TRUE(m_twinLog.redo()); }
    void stepsMerged() override { EXPECT_TRUE(m_twinLog.mergeLast()); }
    void handleGiven(const AcDbObject &object) override
    {
        const auto bytes = m_out.encodeHandle(object);
        ASSERT_TRUE(bytes);
        EXPECT_TRUE(m_in.applyHandle(*bytes));
    }
    void numbersKept(std::uint64_t next) override { m_twinLog.keepNumbersBelow(next); }

    Drawing &m_drawing;
    ChangeLog &m_log, &m_twinLog;
    StepCodec m_out, m_in;
};

class StepsOf : public testing::TestWithParam<std::string (*)()> {};

TEST_P(StepsOf, RepeatedFromBytesGiveTheSameTextAtEveryState)
{
    const std::string text = GetParam()();
    auto read = Drawing::read(text), readAgain = Drawing::read(text);
    ASSERT_TRUE(read.drawing && readAgain.drawing);
    Drawing &drawing = *read.drawing, &twin = *readAgain.drawing;
    auto &log = drawing.component<ChangeLog>();
    const Twin follow(drawing, twin);
    test::RandomChanges changes(drawing, 20261121);
    std::mt19937 random(5);
    for (int i = 0; i < kSteps; ++i) {
        log.begin(L"step " + std::to_wstring(i));
        for (unsigned count = 1 + random() % 8; count > 0; --count)
            changes.make();
        if (random() % 20 == 0)
            log.takeBack();
        else
            log.keep();
        if (random() % 10 == 0)
            log.undo();
        if (random() % 10 == 0)
            log.redo();
        if (random() % 30 == 0)
            if (const auto &all = drawing.modelSpace().entities(); !all.empty())
                handleOf(*all[random() % all.size()]);
        if (i % (kSteps / 20) == 0) {
            log.undo(); // closes what stands outside of a step
            log.redo();
            ASSERT_EQ(test::differenceOf(twin.write(), drawing.write()), "") << "at step " << i;
        }
    }
    while (log.undo())
        ;
    EXPECT_EQ(test::differenceOf(twin.write(), drawing.write()), "");
    while (log.redo())
        ;
    EXPECT_EQ(test::differenceOf(twin.write(), drawing.write()), "");
}

TEST_P(StepsOf, OfRunsWithAidsGiveTheSameTextToo)
{
    const std::string text = GetParam()();
    auto read = Drawing::read(text), readAgain = Drawing::read(text);
    ASSERT_TRUE(read.drawing && readAgain.drawing);
    Drawing &drawing = *read.drawing, &twin = *readAgain.drawing;
    auto &log = drawing.component<ChangeLog>();
    const Twin follow(drawing, twin);
    test::RandomChanges changes(drawing, 20261122);
    std::mt19937 random(6);
    for (int i = 0; i < kSteps / 10; ++i) {
        const std::string before = drawing.write();
        const std::size_t stepsBefore = log.undoCount();
        std::vector<AcDbLine *> aids;
        const auto drop = [&] {
            for (; !aids.empty(); aids.pop_back())
                drawing.erase(*aids.back());
        };
        log.begin(L"command");
        for (unsigned handlers = random() % 5; handlers > 0; --handlers) {
            const auto standing = aids;
            log.begin(L"handler");
            if (random() % 2 == 0)
                drop();
            for (unsigned count = random() % 3; count > 0; --count) {
                auto line = std::make_unique<AcDbLine>(AcGePoint3d(i, 0), AcGePoint3d(i, 1));
                aids.push_back(line.get());
                drawing.append(std::move(line));
                log.noteAid(*aids.back());
                if (random() % 2 == 0)
                    drawing.setData(*aids.back(), "STAMP", {{1, L"aid"}});
            }
            for (unsigned count = random() % 4; count > 0; --count)
                changes.make();
            if (random() % 5 == 0) {
                log.takeBack();
                aids = standing;
            } else {
                log.keepForGood();
            }
        }
        if (random() % 2 == 0)
            changes.make();
        drop();
        random() % 8 == 0 ? log.takeBack() : log.keep();
        ASSERT_EQ(test::differenceOf(twin.write(), drawing.write()), "") << "at run " << i;
        const std::string after = drawing.write();
        std::size_t undone = 0;
        while (log.undoCount() > stepsBefore && log.undo())
            ++undone;
        ASSERT_EQ(test::differenceOf(drawing.write(), before), "") << "at run " << i;
        ASSERT_EQ(test::differenceOf(twin.write(), before), "") << "at run " << i;
        for (; undone > 0; --undone)
            ASSERT_TRUE(log.redo());
        ASSERT_EQ(test::differenceOf(drawing.write(), after), "") << "at run " << i;
        ASSERT_EQ(test::differenceOf(twin.write(), after), "") << "at run " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Drawings, StepsOf,
                         testing::Values(
                             somethingOfEverything, twentyLinesWithoutHandles,
                             +[] { return Drawing::createNew()->write(); }));

TEST(StepBytes, AnEntityMayStandOnALayerThatCameAfterIt)
{
    const std::string text = Drawing::createNew()->write();
    auto drawing = Drawing::read(text).drawing, twin = Drawing::read(text).drawing;
    {
        const Twin follow(*drawing, *twin);
        auto &log = drawing->component<ChangeLog>();
        log.begin();
        auto line = std::make_unique<AcDbLine>();
        AcDbLine &made = *line;
        drawing->append(std::move(line));
        drawing->setLayerOf(made, drawing->ensureLayer(L"Later", 3));
        drawing->setCurrentLayer(drawing->ensureLayer(L"Last"));
        log.keep();
    }
    EXPECT_EQ(test::differenceOf(twin->write(), drawing->write()), "");
}

TEST(StepBytes, ThatWereCutOrChangedAreRefusedOrStillAStepAndNeverBreakTheDrawing)
{
    const auto drawing = Drawing::createNew();
    auto &log = drawing->component<ChangeLog>();
    StepCodec codec(*drawing);
    test::RandomChanges changes(*drawing, 3);
    log.begin(L"all");
    for (int i = 0; i < 100; ++i)
        changes.make();
    log.keep();
    std::string bytes;
    struct Take final : StepFollower {
        StepCodec &codec;
        std::string &out;
        Take(StepCodec &c, std::string &o) : codec(c), out(o) {}
        void stepRedone(const ChangeStep &step) override { out = codec.encode(step).value_or(""); }
    } take(codec, bytes);
    log.addFollower(take);
    log.undo();
    log.redo();
    log.removeFollower(take);
    ASSERT_FALSE(bytes.empty());

    std::mt19937 random(11);
    int refused = 0;
    for (int i = 0; i < 300; ++i) {
        std::string damaged = bytes;
        if (i % 2 == 0)
            damaged.resize(random() % damaged.size());
        else
            damaged[random() % damaged.size()] = static_cast<char>(random());
        const auto other = Drawing::createNew();
        auto &otherLog = other->component<ChangeLog>();
        StepCodec reader(*other);
        if (auto step = reader.decode(damaged)) {
            otherLog.replay(std::move(*step));
            otherLog.undo();
        } else {
            ++refused;
        }
        EXPECT_TRUE(Drawing::read(other->write()).drawing);
    }
    EXPECT_GE(refused, 150);
}

class StepFile : public testing::Test {
protected:
    StepFile()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "velmor-steps-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        m_file = m_folder / "steps";
    }
    ~StepFile() override { std::filesystem::remove_all(m_folder); }
    void cutTo(std::size_t size) { std::filesystem::resize_file(m_file, size); }

    std::filesystem::path m_folder, m_file;
    FileOperations m_operations;
};

TEST_F(StepFile, HoldsItsRecordsInOrder)
{
    StepJournal journal;
    ASSERT_TRUE(journal.create(m_file, m_operations));
    EXPECT_TRUE(journal.append('A', "first"));
    EXPECT_TRUE(journal.append('B', ""));
    EXPECT_TRUE(journal.append('C', std::string(100000, 'c')));
    EXPECT_TRUE(journal.sync());
    const auto records = StepJournal::read(m_file);
    ASSERT_THAT(records, SizeIs(3));
    EXPECT_EQ(records[0].type, 'A');
    EXPECT_EQ(records[0].bytes, "first");
    EXPECT_EQ(records[1].bytes, "");
    EXPECT_EQ(records[2].bytes.size(), 100000u);
}

TEST_F(StepFile, CutAnywhereGivesTheWholeRecordsBeforeAndIsGoneOnWith)
{
    {
        StepJournal journal;
        ASSERT_TRUE(journal.create(m_file, m_operations));
        for (int i = 0; i < 5; ++i)
            ASSERT_TRUE(journal.append('A', "record " + std::to_string(i)));
    }
    std::ifstream stream(m_file, std::ios::binary);
    const std::string whole((std::istreambuf_iterator<char>(stream)), {});
    std::size_t before = 5;
    for (std::size_t size = whole.size(); size-- > 0;) {
        std::ofstream(m_file, std::ios::binary) << whole.substr(0, size);
        const auto records = StepJournal::read(m_file);
        ASSERT_LE(records.size(), before);
        ASSERT_GE(records.size() + 1, before);
        before = records.size();
        for (std::size_t i = 0; i < records.size(); ++i)
            ASSERT_EQ(records[i].bytes, "record " + std::to_string(i));
    }
    EXPECT_EQ(before, 0u);

    std::ofstream(m_file, std::ios::binary) << whole.substr(0, whole.size() - 3);
    StepJournal journal;
    ASSERT_TRUE(journal.resume(m_file, m_operations));
    ASSERT_TRUE(journal.append('A', "after"));
    const auto records = StepJournal::read(m_file);
    ASSERT_THAT(records, SizeIs(5));
    EXPECT_EQ(records[4].bytes, "after");
}

TEST_F(StepFile, AChangedByteEndsItThere)
{
    StepJournal journal;
    ASSERT_TRUE(journal.create(m_file, m_operations));
    ASSERT_TRUE(journal.append('A', "first"));
    const auto good = std::filesystem::file_size(m_file);
    ASSERT_TRUE(journal.append('A', "second"));
    {
        std::fstream stream(m_file, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(static_cast<std::streamoff>(good) + 26);
        stream.put('X');
    }
    EXPECT_THAT(StepJournal::read(m_file), SizeIs(1));
}

TEST_F(StepFile, AFullDiskLeavesWhatWasWrittenBefore)
{
    struct FullDisk final : FileOperations {
        std::size_t room = 100;
        ssize_t write(int file, const char *bytes, std::size_t count) override
        {
            if (room == 0) {
                errno = ENOSPC;
                return -1;
            }
            const std::size_t fits = std::min(count, room);
            room -= fits;
            return FileOperations::write(file, bytes, fits);
        }
    } disk;
    StepJournal journal;
    ASSERT_TRUE(journal.create(m_file, disk));
    ASSERT_TRUE(journal.append('A', "fits"));
    const SaveResult result = journal.append('A', std::string(1000, 'x'));
    EXPECT_EQ(result.status, FileStatus::DiskFull);
    EXPECT_FALSE(journal.isOpen());
    const auto records = StepJournal::read(m_file);
    ASSERT_THAT(records, SizeIs(1));
    EXPECT_EQ(records[0].bytes, "fits");
}

TEST_F(StepFile, NoJournalGivesNoRecords)
{
    EXPECT_THAT(StepJournal::read(m_file), SizeIs(0));
    std::ofstream(m_file) << "0\nSECTION\n";
    EXPECT_THAT(StepJournal::read(m_file), SizeIs(0));
    StepJournal journal;
    EXPECT_FALSE(journal.resume(m_file, m_operations));
}

} // namespace
