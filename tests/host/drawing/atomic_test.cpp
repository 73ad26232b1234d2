#include "host/drawing/dxf/AtomicFile.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <random>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace velmor;
using testing::HasSubstr;
using testing::Not;

namespace {

/// A folder of its own for each test, gone afterwards.
class AtomicFile : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = (fs::temp_directory_path() / "velmor-atomic-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
        m_file = m_folder / "town.dxf";
    }
    void TearDown() override
    {
        fs::permissions(m_folder, fs::perms::owner_all);
        fs::remove_all(m_folder);
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> found;
        for (const auto &entry : fs::directory_iterator(m_folder))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }
    fs::path m_folder, m_file;
};

std::string contentOf(const fs::path &path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void put(const fs::path &path, std::string_view content)
{
    std::ofstream(path, std::ios::binary) << content;
}

SaveResult save(const fs::path &path, std::string_view content, bool backup = true)
{
    return writeFileAtomically(path, {&content, 1}, backup);
}

/// Fails at one step, by number from 0, with a given error.
class FailingOperations : public FileOperations {
public:
    FailingOperations(int step, int error) : m_step(step), m_error(error) {}
    bool hasFailed() const { return m_failed; }
    std::string failedAt;
    int openNew(const char *path, mode_t mode) override
    {
        return fails("openNew") ? -1 : FileOperations::openNew(path, mode);
    }
    ssize_t write(int file, const char *bytes, std::size_t count) override
    {
        // Short writes, so that a failure comes in the middle of a piece.
        return fails("write") ? -1 : FileOperations::write(file, bytes, std::min<std::size_t>(count, 7));
    }
    int setMode(int file, mode_t mode) override { return fails("setMode") ? -1 : FileOperations::setMode(file, mode); }
    int sync(int file) override { return fails("sync") ? -1 : FileOperations::sync(file); }
    int close(int file) override
    {
        const int result = FileOperations::close(file);
        return fails("close") ? -1 : result;
    }
    int link(const char *existing, const char *name) override
    {
        return fails("link") ? -1 : FileOperations::link(existing, name);
    }
    int rename(const char *from, const char *to) override
    {
        return fails("rename") ? -1 : FileOperations::rename(from, to);
    }
    int syncFolder(const char *path) override { return fails("syncFolder") ? -1 : FileOperations::syncFolder(path); }

private:
    bool fails(const char *step)
    {
        if (m_next++ != m_step)
            return false;
        m_failed = true;
        failedAt = step;
        errno = m_error;
        return true;
    }
    int m_step, m_error, m_next = 0;
    bool m_failed = false;
};

/// Writes a byte into a pipe at every step of a save.
class TellingOperations : public FileOperations {
public:
    explicit TellingOperations(int pipe) : m_pipe(pipe) {}
    int openNew(const char *path, mode_t mode) override { return tell(), FileOperations::openNew(path, mode); }
    ssize_t write(int file, const char *bytes, std::size_t count) override
    {
        return tell(), FileOperations::write(file, bytes, std::min<std::size_t>(count, 100000));
    }
    int setMode(int file, mode_t mode) override { return tell(), FileOperations::setMode(file, mode); }
    int sync(int file) override { return tell(), FileOperations::sync(file); }
    int link(const char *existing, const char *name) override { return tell(), FileOperations::link(existing, name); }
    int rename(const char *from, const char *to) override { return tell(), FileOperations::rename(from, to); }
    int syncFolder(const char *path) override { return tell(), FileOperations::syncFolder(path); }

private:
    void tell()
    {
        if (::write(m_pipe, ".", 1) != 1)
            ::_exit(1);
    }
    int m_pipe;
};

/// As a file system on which a file has one name only.
class NoLinks : public FileOperations {
public:
    int link(const char *, const char *) override
    {
        errno = EPERM;
        return -1;
    }
};

} // namespace

TEST_F(AtomicFile, PiecesAreWrittenInOrderAndNothingElseIsLeft)
{
    const std::array<std::string_view, 3> pieces{"one ", "", "two"};
    EXPECT_TRUE(writeFileAtomically(m_file, pieces, true));
    EXPECT_EQ(contentOf(m_file), "one two");
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf"));
}

TEST_F(AtomicFile, ManySmallAndSomeLargePiecesKeepTheirOrder)
{
    std::vector<std::string> parts;
    std::string expected;
    for (int i = 0; i < 20000; ++i)
        parts.push_back(i % 5000 == 7 ? std::string(100000, static_cast<char>('a' + i % 26))
                                      : std::to_string(i) + "\n");
    for (const std::string &part : parts)
        expected += part;
    class Counting : public FileOperations {
    public:
        int writes = 0;
        ssize_t write(int file, const char *bytes, std::size_t count) override
        {
            ++writes;
            return FileOperations::write(file, bytes, count);
        }
    } operations;
    const std::vector<std::string_view> pieces(parts.begin(), parts.end());
    ASSERT_TRUE(writeFileAtomically(m_file, pieces, true, operations));
    EXPECT_EQ(contentOf(m_file), expected);
    EXPECT_LT(operations.writes, 20);
}

TEST_F(AtomicFile, TheLastVersionStaysAsBackup)
{
    ASSERT_TRUE(save(m_file, "first"));
    ASSERT_TRUE(save(m_file, "second"));
    ASSERT_TRUE(save(m_file, "third"));
    EXPECT_EQ(contentOf(m_file), "third");
    EXPECT_EQ(contentOf(m_folder / "town.dxf.bak"), "second");
    EXPECT_EQ(backupPathOf(m_file), m_folder / "town.dxf.bak");
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf", "town.dxf.bak"));
}

TEST_F(AtomicFile, WithoutBackupNoneIsMade)
{
    ASSERT_TRUE(save(m_file, "first", false));
    ASSERT_TRUE(save(m_file, "second", false));
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf"));
}

TEST_F(AtomicFile, ABackupIsCopiedWhereAFileHasOneNameOnly)
{
    NoLinks operations;
    ASSERT_TRUE(save(m_file, "first"));
    const std::string_view second = "second";
    ASSERT_TRUE(writeFileAtomically(m_file, {&second, 1}, true, operations));
    EXPECT_EQ(contentOf(m_file), "second");
    EXPECT_EQ(contentOf(backupPathOf(m_file)), "first");
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf", "town.dxf.bak"));
}

TEST_F(AtomicFile, ABackupThatIsAnotherNameOfTheFileIsNoTrouble)
{
    ASSERT_TRUE(save(m_file, "first"));
    fs::create_hard_link(m_file, backupPathOf(m_file));
    ASSERT_TRUE(save(m_file, "second"));
    EXPECT_EQ(contentOf(m_file), "second");
    EXPECT_EQ(contentOf(backupPathOf(m_file)), "first");
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf", "town.dxf.bak"));
}

TEST_F(AtomicFile, PermissionsOfTheOldFileAreKept)
{
    ASSERT_TRUE(save(m_file, "first"));
    ASSERT_EQ(::chmod(m_file.c_str(), 0640), 0);
    ASSERT_TRUE(save(m_file, "second"));
    struct stat info {};
    ASSERT_EQ(::stat(m_file.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}

TEST_F(AtomicFile, ALinkIsFollowedAndStaysALink)
{
    fs::create_directory(m_folder / "store");
    put(m_folder / "store" / "real.dxf", "old");
    fs::create_symlink("store/real.dxf", m_folder / "middle.dxf");
    fs::create_symlink("middle.dxf", m_file);
    ASSERT_TRUE(save(m_file, "new"));
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(contentOf(m_folder / "store" / "real.dxf"), "new");
    EXPECT_EQ(contentOf(m_folder / "store" / "real.dxf.bak"), "old");
    EXPECT_EQ(backupPathOf(m_file), m_folder / "store/real.dxf.bak");
}

TEST_F(AtomicFile, ALinkToNothingMakesItsTarget)
{
    fs::create_symlink("later.dxf", m_file);
    ASSERT_TRUE(save(m_file, "new"));
    EXPECT_TRUE(fs::is_symlink(m_file));
    EXPECT_EQ(contentOf(m_folder / "later.dxf"), "new");
}

TEST_F(AtomicFile, ARingOfLinksIsRefused)
{
    fs::create_symlink("b.dxf", m_folder / "a.dxf");
    fs::create_symlink("a.dxf", m_folder / "b.dxf");
    EXPECT_FALSE(save(m_folder / "a.dxf", "new"));
    EXPECT_THAT(names(), testing::ElementsAre("a.dxf", "b.dxf"));
}

TEST_F(AtomicFile, AReadOnlyFileIsRefusedWhoeverAsks)
{
    put(m_file, "old");
    ASSERT_EQ(::chmod(m_file.c_str(), 0444), 0);
    const SaveResult result = save(m_file, "new");
    EXPECT_EQ(result.status, FileStatus::NotWritable);
    EXPECT_THAT(result.message, HasSubstr("read-only"));
    EXPECT_THAT(result.message, HasSubstr(m_file.string()));
    EXPECT_THAT(result.message, Not(HasSubstr("\n")));
    EXPECT_EQ(contentOf(m_file), "old");
}

TEST_F(AtomicFile, AReadOnlyFolderIsRefused)
{
    put(m_file, "old");
    ASSERT_EQ(::chmod(m_folder.c_str(), 0555), 0);
    EXPECT_EQ(save(m_file, "new").status, FileStatus::NotWritable);
    EXPECT_EQ(contentOf(m_file), "old");
}

TEST_F(AtomicFile, FoldersPipesAndMissingFoldersAreRefusedClearly)
{
    const SaveResult folder = save(m_folder, "new");
    EXPECT_EQ(folder.status, FileStatus::NotAFile);
    EXPECT_THAT(folder.message, HasSubstr("folder"));
    EXPECT_EQ(save(m_folder / "", "new").status, FileStatus::NotAFile);

    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(save(m_folder / "pipe", "new").status, FileStatus::Refused);

    const SaveResult missing = save(m_folder / "nowhere" / "town.dxf", "new");
    EXPECT_EQ(missing.status, FileStatus::NotFound);
    EXPECT_THAT(missing.message, HasSubstr("nowhere"));

    put(m_file, "old");
    EXPECT_EQ(save(m_file / "town.dxf", "new").status, FileStatus::NotFound);
}

TEST_F(AtomicFile, ABackupNameTakenByAFolderStopsTheSave)
{
    put(m_file, "old");
    fs::create_directories(backupPathOf(m_file) / "inside");
    const SaveResult result = save(m_file, "new");
    EXPECT_EQ(result.status, FileStatus::NotWritable);
    EXPECT_THAT(result.message, HasSubstr("town.dxf.bak"));
    EXPECT_EQ(contentOf(m_file), "old");
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf", "town.dxf.bak"));
}

TEST_F(AtomicFile, AVeryLongNameCanBeSaved)
{
    const fs::path file = m_folder / (std::string(247, 'n') + ".dxf");
    EXPECT_TRUE(save(file, "first"));
    EXPECT_TRUE(save(file, "second"));
    EXPECT_EQ(contentOf(file), "second");
}

TEST_F(AtomicFile, AFailureAtAnyStepLeavesTheOldFileAndNoOther)
{
    for (const int error : {EIO, ENOSPC}) {
        int failures = 0;
        for (int step = 0;; ++step) {
            ASSERT_TRUE(save(m_file, "the old content", false));
            FailingOperations operations(step, error);
            const std::array<std::string_view, 2> pieces{"a new content ", "in two pieces"};
            const SaveResult result = writeFileAtomically(m_file, pieces, true, operations);
            if (!operations.hasFailed()) {
                EXPECT_TRUE(result);
                EXPECT_EQ(contentOf(m_file), "a new content in two pieces");
                EXPECT_EQ(contentOf(backupPathOf(m_file)), "the old content");
                break;
            }
            ++failures;
            EXPECT_FALSE(result) << operations.failedAt;
            EXPECT_FALSE(result.message.empty());
            EXPECT_EQ(result.status, error == ENOSPC ? FileStatus::DiskFull : FileStatus::NotWritable)
                << operations.failedAt;
            EXPECT_EQ(contentOf(m_file),
                      operations.failedAt == "syncFolder" ? "a new content in two pieces" : "the old content")
                << operations.failedAt;
            for (const std::string &name : names())
                EXPECT_TRUE(name == "town.dxf" || name == "town.dxf.bak") << name << " after " << operations.failedAt;
        }
        EXPECT_GE(failures, 10); // open, writes, mode, sync, close, link, two renames, folder
    }
}

TEST_F(AtomicFile, AFullDiskIsSaidAndTheOldFileIsWhole)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "mounting a small file system needs the superuser";
    if (::mount("none", m_folder.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "this machine does not let us mount a small file system";
    ASSERT_TRUE(save(m_file, "old"));
    const std::string large(1 << 20, 'x');
    const SaveResult result = save(m_file, large);
    const auto left = names();
    const std::string content = contentOf(m_file);
    const bool afterwards = static_cast<bool>(save(m_file, "small again"));
    ::umount(m_folder.c_str());
    EXPECT_EQ(result.status, FileStatus::DiskFull);
    EXPECT_THAT(result.message, HasSubstr("disk is full"));
    EXPECT_EQ(content, "old");
    EXPECT_THAT(left, testing::ElementsAre("town.dxf"));
    EXPECT_TRUE(afterwards);
}

TEST_F(AtomicFile, AKillAtAnyMomentLeavesTheOldOrTheNewFileWhole)
{
    // Each version is one letter many times over, so that a mixture or a part is seen.
    constexpr std::size_t kSize = 300000;
    ASSERT_TRUE(save(m_file, std::string(kSize, 'a')));
    std::mt19937 random(12);
    int changed = 0;
    char last = 'a';
    for (int run = 0; run < 200; ++run) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            TellingOperations operations(pipe[1]);
            for (unsigned turn = 0;; ++turn) {
                const std::string content(kSize, static_cast<char>('a' + turn % 26));
                const std::string_view piece = content;
                writeFileAtomically(m_file, {&piece, 1}, true, operations);
            }
        }
        // The kill falls somewhere around the step that was told last, while the child runs on.
        ::close(pipe[1]);
        char told = 0;
        for (auto steps = 1 + random() % 100; steps > 0; --steps)
            ASSERT_EQ(::read(pipe[0], &told, 1), 1);
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
        ::close(pipe[0]);
        ASSERT_TRUE(fs::exists(m_file));
        for (const fs::path &path : {m_file, backupPathOf(m_file)}) {
            if (!fs::exists(path))
                continue;
            const std::string content = contentOf(path);
            ASSERT_EQ(content.size(), kSize) << path << " run " << run;
            ASSERT_EQ(content.find_first_not_of(content[0]), std::string::npos) << path << " run " << run;
        }
        changed += contentOf(m_file)[0] != last;
        last = contentOf(m_file)[0];
    }
    EXPECT_GT(changed, 20) << "too few of the kills came after a save had begun";
    ASSERT_TRUE(save(m_file, "done"));
    EXPECT_THAT(names(), testing::ElementsAre("town.dxf", "town.dxf.bak")) << "leftovers of killed saves";
}

TEST_F(AtomicFile, WholeFilesAreReadAsTheyAre)
{
    std::string bytes = "line\r\n";
    bytes.push_back('\0');
    bytes += "\xFF tail";
    put(m_file, bytes);
    const auto result = readWholeFile(m_file);
    EXPECT_TRUE(result);
    EXPECT_EQ(result.bytes, bytes);
}

TEST_F(AtomicFile, WhatCanNotBeReadIsNamed)
{
    const auto missing = readWholeFile(m_folder / "none.dxf");
    EXPECT_EQ(missing.status, FileStatus::NotFound);
    EXPECT_THAT(missing.message, HasSubstr("none.dxf"));
    EXPECT_EQ(readWholeFile(m_folder).status, FileStatus::NotAFile);
    put(m_file, "");
    EXPECT_EQ(readWholeFile(m_file).status, FileStatus::Empty);
    ASSERT_EQ(::mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readWholeFile(m_folder / "pipe").status, FileStatus::NotAFile);
    EXPECT_EQ(readWholeFile(m_file / "below").status, FileStatus::NotFound);
    if (::geteuid() != 0) {
        put(m_file, "x");
        ASSERT_EQ(::chmod(m_file.c_str(), 0), 0);
        EXPECT_EQ(readWholeFile(m_file).status, FileStatus::NotReadable);
    }
}
