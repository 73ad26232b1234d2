#include "catalog/MarkupFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace fs = std::filesystem;

namespace MarkupFile {

namespace {

/// Bytes converted at a time: small enough for the stack, and to stay near the processor.
constexpr std::size_t kPiece = std::size_t{1} << 16;

std::string NativePath(std::wstring_view path)
{
    std::string bytes(path.size() * 4, '\0');
    bytes.resize(static_cast<std::size_t>(Narrow(path, bytes.data()) - bytes.data()));
    return bytes;
}

Result Failed(int error)
{
    return {false, 0, SystemText(error)};
}

/// An open file; -1 when it could not be opened.
class File {
public:
    explicit File(int file) : m_file(file) {}
    ~File() { Close(); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    explicit operator bool() const { return m_file >= 0; }
    int Number() const { return m_file; }
    /// errno stays that of an earlier failure.
    bool Close()
    {
        if (m_file < 0)
            return true;
        const int error = errno;
        const bool isGood = ::close(std::exchange(m_file, -1)) == 0;
        if (isGood)
            errno = error;
        return isGood;
    }
    bool Write(const char *p, std::size_t count) const
    {
        while (count > 0) {
            const ssize_t written = ::write(m_file, p, count);
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0) {
                errno = written == 0 ? ENOSPC : errno;
                return false;
            }
            p += written;
            count -= static_cast<std::size_t>(written);
        }
        return true;
    }
    /// Bytes read, less than count at the end only; -1 on failure.
    ssize_t Read(char *p, std::size_t count) const
    {
        std::size_t total = 0;
        while (total < count) {
            const ssize_t got = ::read(m_file, p + total, count - total);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return -1;
            if (got == 0)
                break;
            total += static_cast<std::size_t>(got);
        }
        return static_cast<ssize_t>(total);
    }

private:
    int m_file;
};

/// Follows symbolic links by name, so that a link to a file that is not there yet can be written through. Gives what
/// stands at the end; errno is that of looking there, 0 when there is something.
std::string FollowLinks(std::string path, struct stat &status)
{
    for (int i = 0; i < 40; ++i) {
        errno = 0;
        if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode))
            break;
        std::error_code error;
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            break;
        path = (target.is_absolute() ? target : fs::path(path).parent_path() / target).string();
        errno = ELOOP;
    }
    return path;
}

/// Writes the text in pieces; adds its bytes to the result's.
bool WriteText(const File &file, std::wstring_view text, std::size_t &bytes)
{
    constexpr std::size_t kCharacters = 4096;
    char buffer[kPiece];
    char *p = buffer;
    while (!text.empty()) {
        const std::wstring_view part = text.substr(0, kCharacters);
        p = Narrow(part, p);
        text.remove_prefix(part.size());
        const auto count = static_cast<std::size_t>(p - buffer);
        if (!text.empty() && kPiece - count >= kCharacters * 4)
            continue;
        if (!file.Write(buffer, count))
            return false;
        bytes += count;
        p = buffer;
    }
    return true;
}

std::size_t CountBytes(std::wstring_view text)
{
    std::size_t bytes = 0;
    char buffer[4 * 256];
    for (std::size_t at = 0; at < text.size(); at += 256)
        bytes += static_cast<std::size_t>(Narrow(text.substr(at, 256), buffer) - buffer);
    return bytes;
}

/// A plain file is made long enough before its first byte is touched, so that a full disk leaves it as it was.
Result WriteInPlace(const std::string &path, std::wstring_view text, bool isPlain)
{
    File file(::open(path.c_str(), O_WRONLY | O_CLOEXEC | (isPlain ? 0 : O_NONBLOCK)));
    if (!file)
        return Failed(errno);
    if (!isPlain && ::fcntl(file.Number(), F_SETFL, 0) != 0)
        return Failed(errno);
    Result result;
    if (isPlain) {
        const auto needed = static_cast<off_t>(CountBytes(text));
        struct stat old {};
        if (::fstat(file.Number(), &old) != 0)
            return Failed(errno);
        if (needed > 0) {
            const int error = ::posix_fallocate(file.Number(), 0, needed);
            if (error != 0 && error != EOPNOTSUPP && error != EINVAL) {
                if (::ftruncate(file.Number(), old.st_size) != 0)
                    return Failed(errno);
                return Failed(error);
            }
        }
    }
    if (!WriteText(file, text, result.bytes))
        return Failed(errno);
    if (isPlain && (::ftruncate(file.Number(), static_cast<off_t>(result.bytes)) != 0 || ::fsync(file.Number()) != 0))
        return Failed(errno);
    if (!file.Close())
        return Failed(errno);
    result.isGood = true;
    return result;
}

/// A file on its way to be renamed; taken away unless it was. It is locked while its writer lives, so that the next
/// save can tell what a killed one left behind, and takes that away.
class Temporary {
public:
    Temporary(const std::string &target, mode_t mode)
    {
        const std::size_t name = target.rfind('/') + 1; // 0 without a folder
        const std::string start = target.substr(0, name) + '.' + target.substr(name, 200) + '.';
        for (int number = 0; number < 100; ++number) {
            m_path = start + std::to_string(number) + ".new";
            m_number = OpenNew(mode);
            if (m_number < 0 && errno == EEXIST)
                m_number = RemoveLeftover() ? OpenNew(mode) : -1;
            else if (m_number < 0)
                return;
            if (m_number >= 0 && IsLocked(m_number, m_status))
                return;
            if (m_number >= 0)
                ::close(std::exchange(m_number, -1));
        }
        errno = EEXIST;
    }
    ~Temporary()
    {
        if (m_number < 0 || m_isRenamed)
            return;
        const int error = errno;
        ::unlink(m_path.c_str());
        errno = error;
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;
    int Number() const { return m_number; }
    const struct stat &Status() const { return m_status; }
    bool RenameTo(const std::string &target)
    {
        m_isRenamed = ::rename(m_path.c_str(), target.c_str()) == 0;
        return m_isRenamed;
    }

private:
    int OpenNew(mode_t mode) const { return ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode); }
    /// This writer holds the lock of the file that stands under the name. A system without locks has no say.
    bool IsLocked(int file, struct stat &status) const
    {
        if (::flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
            return false;
        struct stat named {};
        return ::fstat(file, &status) == 0 && ::lstat(m_path.c_str(), &named) == 0 && status.st_ino == named.st_ino &&
               status.st_dev == named.st_dev;
    }
    bool RemoveLeftover() const
    {
        const File file(::open(m_path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        struct stat status {};
        return file && IsLocked(file.Number(), status) && ::unlink(m_path.c_str()) == 0;
    }

    std::string m_path;
    int m_number = -1;
    struct stat m_status {};
    bool m_isRenamed = false;
};

/// Owner and group are kept where the system allows it; the mode comes last, since a change of owner clears bits.
bool TakeOver(int file, const struct stat &made, const struct stat &old)
{
    bool isOther = (made.st_mode & 07777) != (old.st_mode & 07777);
    if (made.st_uid != old.st_uid || made.st_gid != old.st_gid)
        isOther = ::fchown(file, old.st_uid, old.st_gid) == 0 || isOther;
    return !isOther || ::fchmod(file, old.st_mode & 07777) == 0;
}

bool CanMakeNoFile(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG;
}

} // namespace

std::wstring SystemText(int error)
{
    const std::string_view bytes = std::strerror(error);
    std::wstring text(bytes.size(), L'\0');
    std::size_t used = 0;
    text.resize(static_cast<std::size_t>(Widen(bytes, true, text.data(), used) - text.data()));
    return text;
}

Result Read(std::wstring_view path, CMarkupText &text)
{
    // Non-blocking, so that a pipe without a writer does not hang the program.
    const File file(::open(NativePath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return Failed(errno);
    struct stat status {};
    if (::fstat(file.Number(), &status) != 0)
        return Failed(errno);
    if (S_ISDIR(status.st_mode))
        return Failed(EISDIR);
    off_t size = status.st_size;
    if (!S_ISREG(status.st_mode) &&
        ((size = ::lseek(file.Number(), 0, SEEK_END)) < 0 || ::lseek(file.Number(), 0, SEEK_SET) < 0))
        return Failed(errno);
    if (static_cast<std::uint64_t>(size) > CMarkupText::kLongest)
        return {false, 0,
                L"A file of " + std::to_wstring(size) + L" bytes is too long: at most " +
                    std::to_wstring(CMarkupText::kLongest) + L" can be read; split it into several files"};

    Result result;
    const auto total = static_cast<std::size_t>(size);
    wchar_t *const pFirst = text.Prepare(total), *pTo = pFirst;
    // A character may begin in one piece and end in the next.
    constexpr std::size_t kRest = 8;
    char buffer[kRest + kPiece];
    std::size_t rest = 0;
    while (result.bytes < total) {
        const std::size_t wanted = std::min(kPiece, total - result.bytes);
        const ssize_t got = file.Read(buffer + rest, wanted);
        if (got < 0)
            return Failed(errno);
        result.bytes += static_cast<std::size_t>(got);
        const bool isLast = result.bytes == total || static_cast<std::size_t>(got) < wanted;
        const std::size_t count = rest + static_cast<std::size_t>(got);
        std::size_t used = 0;
        pTo = Widen({buffer, count}, isLast, pTo, used);
        rest = count - used;
        std::memmove(buffer, buffer + used, rest);
        if (isLast)
            break;
    }
    text.SetSize(static_cast<std::size_t>(pTo - pFirst));
    result.isGood = true;
    return result;
}

Result Write(std::wstring_view path, std::wstring_view text)
{
    struct stat old {};
    const std::string target = FollowLinks(NativePath(path), old);
    const bool isThere = errno == 0;
    if (!isThere && errno != ENOENT)
        return Failed(errno);
    if (isThere ? S_ISDIR(old.st_mode) : target.ends_with('/'))
        return Failed(EISDIR);
    if (target.empty())
        return Failed(ENOENT);
    if (isThere && !S_ISREG(old.st_mode))
        return WriteInPlace(target, text, false);
    // What could not be opened for writing must not be replaced either.
    if (isThere && ::access(target.c_str(), W_OK) != 0)
        return Failed(errno);

    // Nobody may read it meanwhile who could not read the old file.
    Temporary temporary(target, isThere ? old.st_mode & 0777 : 0666);
    if (temporary.Number() < 0) {
        const int error = errno;
        return isThere && CanMakeNoFile(error) ? WriteInPlace(target, text, true) : Failed(error);
    }
    File file(temporary.Number());
    Result result;
    if (!WriteText(file, text, result.bytes) || (isThere && !TakeOver(file.Number(), temporary.Status(), old)) ||
        ::fsync(file.Number()) != 0 || !file.Close() || !temporary.RenameTo(target))
        return Failed(errno);
    result.isGood = true;
    return result;
}

} // namespace MarkupFile
