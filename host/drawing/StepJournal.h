// A file to which records are only ever appended: the journal of an open drawing.
//
// A record is written by one call, behind its length and a checksum, so that a program that is killed at any moment
// leaves a row of whole records and at most one piece of a record behind them, which a reader passes over. What was
// appended outlives the program at once; sync brings it to the disk, for the case that the machine itself fails.
#pragma once

#include "host/drawing/dxf/AtomicFile.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

/// A quick checksum of bytes; not against intent.
std::uint64_t checksumOf(std::string_view bytes);

struct JournalRecordInFile {
    char type = 0;
    std::string bytes;
};

/// Types of the records of a drawing's journal.
namespace journal_record {
inline constexpr char kBase = 'B'; ///< which text the steps stand on
inline constexpr char kStep = 'D'; ///< done
inline constexpr char kUndone = 'U';
inline constexpr char kRedone = 'R';
inline constexpr char kMerged = 'M';  ///< the last two that are done are one
inline constexpr char kHandle = 'H';  ///< given for good
inline constexpr char kNumbers = 'N'; ///< taken for good, below one
inline constexpr char kSaved = 'S';   ///< with the path
} // namespace journal_record
/// The bytes of a kNumbers record.
inline std::string bytesOfNumber(std::uint64_t number)
{
    return {reinterpret_cast<const char *>(&number), sizeof number};
}

class StepJournal {
public:
    StepJournal() = default;
    ~StepJournal();
    StepJournal(const StepJournal &) = delete;
    StepJournal &operator=(const StepJournal &) = delete;

    /// Makes the file, which must not exist. On failure nothing is left of it.
    SaveResult create(const std::filesystem::path &path, FileOperations &operations);
    /// Goes on with a file behind its last whole record.
    SaveResult resume(const std::filesystem::path &path, FileOperations &operations);
    bool isOpen() const { return m_file >= 0; }
    /// After a failure the journal is closed, whole up to the record before; it takes nothing any more.
    SaveResult append(char type, std::string_view bytes);
    SaveResult sync();
    void close();

    /// All whole records. None for a file that can't be read or is no journal. isWhole tells whether they reach to the
    /// end of the file, so that nothing else can have stood in it.
    static std::vector<JournalRecordInFile> read(const std::filesystem::path &path, bool *isWhole = nullptr);

private:
    SaveResult failed(int error);
    std::filesystem::path m_path;
    FileOperations *m_operations = nullptr;
    int m_file = -1;
    std::uint64_t m_length = 0;
};

} // namespace velmor
