// Whole files in and out, such that a file under its name is at every moment either the old one or the new one.
//
// A save writes a hidden file beside the target, syncs it, keeps the old file as a backup by a second name and renames
// the new one over the old. A process that is killed at any step leaves the old or the new file complete under the
// name, and at most a hidden file, which the next save of that name takes away.
#pragma once

#include "host/drawing/Drawing.h"

#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace velmor {

/// The steps of a save, as the system has them: results and errno are the system's. A test can make any one fail.
class FileOperations {
public:
    virtual ~FileOperations() = default;
    virtual int openNew(const char *path, mode_t mode);
    virtual ssize_t write(int file, const char *bytes, std::size_t count);
    virtual int setMode(int file, mode_t mode);
    virtual int sync(int file);
    virtual int close(int file);
    virtual int link(const char *existing, const char *name);
    virtual int rename(const char *from, const char *to);
    virtual int remove(const char *path);
    /// Syncs the folder's own entries, so that a rename outlives a power cut.
    virtual int syncFolder(const char *path);
};

/// Replaces the file at path by the pieces in order, or makes it. A symbolic link is followed and stays. Permissions of
/// an old file are kept. With backup, the old file is kept as backupPathOf(path).
/// On failure the message says in one line what, where and what to do; the old file is as it was (only when the folder
/// can't be synced at the very end, the new file stands there already), its backup is the former backup or the old
/// file, and no other file is left.
/// A file or folder whose permissions let nobody write is refused (NotWritable), whoever asks.
/// Statuses: Ok, NotFound (no such folder), NotAFile (a folder), NotWritable, DiskFull, Refused (a device or pipe).
SaveResult writeFileAtomically(const std::filesystem::path &path, std::span<const std::string_view> pieces, bool backup,
                               FileOperations &operations);
SaveResult writeFileAtomically(const std::filesystem::path &path, std::span<const std::string_view> pieces,
                               bool backup);

/// "town.dxf" gives "town.dxf.bak", after links are followed.
std::filesystem::path backupPathOf(const std::filesystem::path &path);

struct ReadFileResult {
    FileStatus status = FileStatus::Ok; ///< Ok, NotFound, NotAFile, NotReadable, Empty, Cancelled
    std::string bytes;
    std::string message; ///< one line unless status is Ok
    explicit operator bool() const { return status == FileStatus::Ok; }
};
/// progress is told the part that is read, from 0 to 1, and gives false to end it.
ReadFileResult readWholeFile(const std::filesystem::path &path, const std::function<bool(double)> &progress = {});

} // namespace velmor
