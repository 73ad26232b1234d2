// A drawing whose work is kept beside it, a program that dies, and what the next one finds.
#pragma once

#include "host/drawing/ChangeLog.h"
#include "host/editor/Recovery.h"
#include "host/editor/Session.h"
#include "tests/host/drawing/RandomChanges.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <fstream>

namespace velmor {

using testing::SizeIs;

namespace fs = std::filesystem;

inline std::string bytesOfFile(const fs::path &file)
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

} // namespace velmor
