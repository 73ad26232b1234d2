#include "host/drawing/dxf/AtomicFile.h"

#include "host/drawing/Texts.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace velmor {

// --- The system's steps
// ------------------------------------------------------------------------------------------------

int FileOperations::openNew(const char *path, mode_t mode)
{
    return ::open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

ssize_t FileOperations::write(int file, const char *bytes, std::size_t count)
{
    return ::write(file, bytes, count);
}

int FileOperations::setMode(int file, mode_t mode)
{
    return ::fchmod(file, mode);
}

int FileOperations::sync(int file)
{
    return ::fsync(file);
}

int FileOperations::close(int file)
{
    return ::close(file);
}

int FileOperations::link(const char *existing, const char *name)
{
    return ::link(existing, name);
}

int FileOperations::rename(const char *from, const char *to)
{
    return ::rename(from, to);
}

int FileOperations::remove(const char *path)
{
    return ::unlink(path);
}

int FileOperations::syncFolder(const char *path)
{
    const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return -1;
    const int result = ::fsync(folder);
    const int error = errno;
    ::close(folder);
    // Some file systems can't sync a folder and have no need of it.
    if (result != 0 && (error == EINVAL || error == ENOTSUP || error == EROFS))
        return 0;
    errno = error;
    return result;
}

namespace {

constexpr std::string_view kTemporarySuffix = ".saving";

std::string quoted(const fs::path &path)
{
    return "'" + path.string() + "'";
}

fs::path folderOf(const fs::path &path)
{
    const fs::path folder = path.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

/// The path that links at path lead to in the end, whether there is a file or not.
fs::path followLinks(fs::path path)
{
    for (int hop = 0; hop < 40; ++hop) {
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(path, error)))
            return path;
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            return path;
        path = target.is_absolute() ? target : folderOf(path) / target;
    }
    return path;
}

/// A hidden name beside path; shortened where a file name would get too long.
fs::path hiddenName(const fs::path &path, int number)
{
    constexpr std::size_t kLongestStem = 200;
    const std::string stem = path.filename().string().substr(0, kLongestStem);
    return folderOf(path) / ("." + stem + "." + std::to_string(::getpid()) + "-" + std::to_string(number) +
                             std::string(kTemporarySuffix));
}

/// Takes away hidden files that saves of this name left when they were killed: their writer's lock is gone with it.
void removeLeftovers(const fs::path &path)
{
    const std::string start = "." + path.filename().string().substr(0, 200) + ".";
    std::error_code error;
    for (fs::directory_iterator entry(folderOf(path), error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(start) || !name.ends_with(kTemporarySuffix))
            continue;
        const auto middle = std::string_view(name).substr(
            start.size(), name.size() - std::min(name.size(), start.size() + kTemporarySuffix.size()));
        if (middle.find_first_not_of("0123456789-") != std::string_view::npos)
            continue;
        const int file = ::open(entry->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (file < 0)
            continue;
        if (::flock(file, LOCK_EX | LOCK_NB) == 0)
            ::unlink(entry->path().c_str());
        ::close(file);
    }
}

FileStatus statusOf(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return FileStatus::DiskFull;
    case ENOENT:
    case ENOTDIR:
        return FileStatus::NotFound;
    case EISDIR:
        return FileStatus::NotAFile;
    default:
        return FileStatus::NotWritable;
    }
}

std::string adviceFor(int error)
{
    switch (error) {
    case ENOSPC:
        return drawingText("file.diskFull");
    case EDQUOT:
        return drawingText("file.quota");
    case EFBIG:
        return drawingText("file.tooLarge");
    case EROFS:
        return drawingText("file.diskReadOnly");
    case EACCES:
    case EPERM:
        return drawingText("file.noRight");
    case ENAMETOOLONG:
        return drawingText("file.longName");
    default:
        return drawingText("file.otherTrouble", {std::strerror(error)});
    }
}

/// One save on its way; takes its hidden file away unless it was renamed.
class Save {
public:
    Save(fs::path shown, FileOperations &operations)
        : m_shown(std::move(shown)), m_path(followLinks(m_shown)), m_operations(operations)
    {
    }
    ~Save()
    {
        if (m_file >= 0)
            m_operations.close(m_file);
        if (!m_temporary.empty())
            m_operations.remove(m_temporary.c_str());
    }
    Save(const Save &) = delete;
    Save &operator=(const Save &) = delete;
    SaveResult run(std::span<const std::string_view> pieces, bool backup);

private:
    SaveResult checkTarget();
    bool openTemporary();
    bool writeAll(std::string_view bytes);
    bool writePieces(std::span<const std::string_view> pieces);
    bool finishTemporary();
    SaveResult keepOld();
    bool copyOld(const fs::path &to);
    SaveResult failed(int error) const
    {
        return {statusOf(error), drawingText("file.cannotSave", {quoted(m_shown), adviceFor(error)})};
    }
    SaveResult refused(FileStatus status, const std::string &why) const
    {
        return {status, drawingText("file.cannotSave", {quoted(m_shown), why})};
    }

    fs::path m_shown, m_path;
    FileOperations &m_operations;
    std::optional<struct stat> m_old;
    fs::path m_temporary;
    int m_file = -1;
};

SaveResult Save::checkTarget()
{
    struct stat folder {};
    if (::stat(folderOf(m_path).c_str(), &folder) != 0)
        return errno == ENOENT || errno == ENOTDIR
                   ? refused(FileStatus::NotFound, drawingText("file.noFolder", {quoted(folderOf(m_path))}))
                   : failed(errno);
    if (!S_ISDIR(folder.st_mode))
        return refused(FileStatus::NotFound, drawingText("file.notFolder", {quoted(folderOf(m_path))}));
    struct stat old {};
    if (::stat(m_path.c_str(), &old) == 0) {
        if (S_ISDIR(old.st_mode))
            return refused(FileStatus::NotAFile, drawingText("file.isFolder"));
        if (!S_ISREG(old.st_mode))
            return refused(FileStatus::Refused, drawingText("file.notPlainSave"));
        // The system lets some users write where nobody may. A file marked read-only was marked so on purpose.
        if ((old.st_mode & 0222) == 0 || ::access(m_path.c_str(), W_OK) != 0)
            return refused(FileStatus::NotWritable, drawingText("file.readOnly"));
        m_old = old;
    } else if (errno != ENOENT) {
        return failed(errno);
    } else if (m_path.filename().empty()) {
        return refused(FileStatus::NotAFile, drawingText("file.isFolder"));
    }
    if ((folder.st_mode & 0222) == 0)
        return refused(FileStatus::NotWritable, drawingText("file.folderReadOnly", {quoted(folderOf(m_path))}));
    return {};
}

bool Save::openTemporary()
{
    // While it is written, nobody may read it who could not read the old file.
    const mode_t mode = m_old ? 0600 : 0666;
    for (int number = 0; number < 100; ++number) {
        const fs::path name = hiddenName(m_path, number);
        m_file = m_operations.openNew(name.c_str(), mode);
        if (m_file >= 0) {
            m_temporary = name;
            ::flock(m_file, LOCK_EX | LOCK_NB); // says that the writer lives; see removeLeftovers
            return true;
        }
        if (errno != EEXIST)
            return false;
    }
    return false;
}

bool Save::writeAll(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = m_operations.write(m_file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        if (count == 0) {
            errno = ENOSPC;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/// Small pieces are gathered, since each call of the system costs as much as copying many of them.
bool Save::writePieces(std::span<const std::string_view> pieces)
{
    constexpr std::size_t kLarge = 1 << 16;
    std::string gathered;
    for (const std::string_view piece : pieces) {
        if (gathered.size() + piece.size() > kLarge) {
            if (!writeAll(gathered))
                return false;
            gathered.clear();
        }
        if (piece.size() > kLarge) {
            if (!writeAll(piece))
                return false;
        } else {
            gathered += piece;
        }
    }
    return writeAll(gathered);
}

bool Save::finishTemporary()
{
    if (m_old) {
        // Owner and group are kept where the system allows it; the mode afterwards, since a change of owner clears
        // bits.
        if ((m_old->st_uid != ::geteuid() || m_old->st_gid != ::getegid()) &&
            ::fchown(m_file, m_old->st_uid, m_old->st_gid) != 0)
            errno = 0;
        if (m_operations.setMode(m_file, m_old->st_mode & 07777) != 0)
            return false;
    }
    if (m_operations.sync(m_file) != 0)
        return false;
    return m_operations.close(std::exchange(m_file, -1)) == 0;
}

/// Writes a synced copy of the old file, for file systems where a file has one name only.
bool Save::copyOld(const fs::path &to)
{
    const int from = ::open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    if (from < 0)
        return false;
    m_file = m_operations.openNew(to.c_str(), m_old->st_mode & 07777);
    bool good = m_file >= 0;
    std::array<char, 65536> buffer;
    for (ssize_t count = 1; good && count != 0;) {
        count = ::read(from, buffer.data(), buffer.size());
        good = count >= 0 && writeAll({buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))});
    }
    const int error = errno;
    ::close(from);
    errno = error;
    good = good && m_operations.sync(m_file) == 0;
    if (m_file >= 0 && m_operations.close(std::exchange(m_file, -1)) != 0)
        good = false;
    return good;
}

SaveResult Save::keepOld()
{
    const fs::path backup = backupPathOf(m_path);
    fs::path second;
    int result = -1;
    for (int number = 100; number < 200 && result != 0; ++number) {
        second = hiddenName(m_path, number);
        result = m_operations.link(m_path.c_str(), second.c_str());
        if (result != 0 && errno != EEXIST)
            break;
    }
    bool kept = result == 0;
    if (!kept && (errno == EPERM || errno == ENOTSUP || errno == ENOSYS || errno == EMLINK))
        kept = copyOld(second);
    if (kept)
        kept = m_operations.rename(second.c_str(), backup.c_str()) == 0;
    const int error = errno;
    // Renaming one name of a file to another name of the same file does nothing, so the first may still stand.
    if (::access(second.c_str(), F_OK) == 0)
        m_operations.remove(second.c_str());
    if (kept)
        return {};
    if (error == EISDIR || error == ENOTEMPTY || error == EEXIST || error == ENOTDIR)
        return refused(FileStatus::NotWritable, drawingText("file.backupFolder", {quoted(backup)}));
    return refused(statusOf(error), drawingText("file.backup", {quoted(backup), adviceFor(error)}));
}

SaveResult Save::run(std::span<const std::string_view> pieces, bool backup)
{
    if (SaveResult wrong = checkTarget(); !wrong)
        return wrong;
    removeLeftovers(m_path);
    if (!openTemporary() || !writePieces(pieces) || !finishTemporary())
        return failed(errno);
    if (m_old && backup)
        if (SaveResult wrong = keepOld(); !wrong)
            return wrong;
    if (m_operations.rename(m_temporary.c_str(), m_path.c_str()) != 0)
        return failed(errno);
    m_temporary.clear();
    if (m_operations.syncFolder(folderOf(m_path).c_str()) != 0)
        return refused(statusOf(errno), drawingText("file.notSure", {std::strerror(errno)}));
    return {};
}

} // namespace

fs::path backupPathOf(const fs::path &path)
{
    fs::path backup = followLinks(path);
    backup += ".bak";
    return backup;
}

SaveResult writeFileAtomically(const fs::path &path, std::span<const std::string_view> pieces, bool backup,
                               FileOperations &operations)
{
    return Save(path, operations).run(pieces, backup);
}

SaveResult writeFileAtomically(const fs::path &path, std::span<const std::string_view> pieces, bool backup)
{
    FileOperations operations;
    return writeFileAtomically(path, pieces, backup, operations);
}

ReadFileResult readWholeFile(const fs::path &path, const std::function<bool(double)> &progress)
{
    const auto failed = [&](FileStatus status, const std::string &why) {
        return ReadFileResult{status, {}, drawingText("file.cannotOpen", {quoted(path), why})};
    };
    // Non-blocking, so that a pipe without a writer does not hang the program.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return failed(FileStatus::NotFound, drawingText("file.none"));
        if (errno == EACCES || errno == EPERM)
            return failed(FileStatus::NotReadable, drawingText("file.noRightToRead"));
        return failed(FileStatus::NotReadable, std::strerror(errno));
    }
    const auto closed = [&](ReadFileResult result) {
        ::close(file);
        return result;
    };
    struct stat info {};
    if (::fstat(file, &info) != 0)
        return closed(failed(FileStatus::NotReadable, std::strerror(errno)));
    if (S_ISDIR(info.st_mode))
        return closed(failed(FileStatus::NotAFile, drawingText("file.isFolder")));
    if (!S_ISREG(info.st_mode))
        return closed(failed(FileStatus::NotAFile, drawingText("file.notPlain")));
    ReadFileResult result;
    result.bytes.resize(static_cast<std::size_t>(info.st_size));
    std::size_t have = 0;
    while (have < result.bytes.size()) {
        constexpr std::size_t kAtOnce = std::size_t{8} << 20;
        const ssize_t count = ::read(file, result.bytes.data() + have, std::min(result.bytes.size() - have, kAtOnce));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return closed(failed(FileStatus::NotReadable, std::strerror(errno)));
        if (count == 0)
            break;
        have += static_cast<std::size_t>(count);
        if (progress && !progress(static_cast<double>(have) / static_cast<double>(result.bytes.size())))
            return closed({FileStatus::Cancelled, {}, drawingText("file.cancelledName", {quoted(path)})});
    }
    result.bytes.resize(have);
    if (have == 0)
        return closed(failed(FileStatus::Empty, drawingText("file.empty")));
    return closed(std::move(result));
}

} // namespace velmor
