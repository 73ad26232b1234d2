#include "host/drawing/StepJournal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace velmor {

namespace {

constexpr std::string_view kTitle = "VELMOR-STEPS-1\n";

struct RecordHead {
    std::uint64_t length = 0, checksum = 0;
    char type = 0;
    char filler[7] = {};
};

std::uint64_t checksumOfRecord(char type, std::string_view bytes)
{
    return checksumOf(bytes) * 31 + static_cast<unsigned char>(type);
}

/// Goes through the whole records; take may be empty. The length up to the end of the last one, 0 for no journal.
template <class Take>
std::size_t walk(std::string_view bytes, Take take)
{
    if (!bytes.starts_with(kTitle))
        return 0;
    std::size_t good = kTitle.size();
    RecordHead head;
    while (bytes.size() - good >= sizeof head) {
        std::memcpy(&head, bytes.data() + good, sizeof head);
        if (head.length > bytes.size() - good - sizeof head)
            break;
        const std::string_view content = bytes.substr(good + sizeof head, head.length);
        if (checksumOfRecord(head.type, content) != head.checksum)
            break;
        take(head.type, content);
        good += sizeof head + head.length;
    }
    return good;
}

} // namespace

std::uint64_t checksumOf(std::string_view bytes)
{
    // Four lanes keep the multiplier busy.
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15ull;
    std::uint64_t lanes[4] = {1, 2, 3, 4};
    std::size_t i = 0;
    for (; i + 32 <= bytes.size(); i += 32)
        for (std::size_t lane = 0; lane < 4; ++lane) {
            std::uint64_t word;
            std::memcpy(&word, bytes.data() + i + lane * 8, 8);
            lanes[lane] = (lanes[lane] ^ word) * kFactor;
            lanes[lane] ^= lanes[lane] >> 29;
        }
    std::uint64_t sum = bytes.size();
    for (const std::uint64_t lane : lanes)
        sum = (sum ^ lane) * kFactor;
    for (; i < bytes.size(); ++i)
        sum = (sum ^ static_cast<unsigned char>(bytes[i])) * kFactor;
    return sum ^ (sum >> 32);
}

StepJournal::~StepJournal()
{
    close();
}

void StepJournal::close()
{
    if (m_file >= 0)
        m_operations->close(m_file);
    m_file = -1;
}

SaveResult StepJournal::failed(int error)
{
    // A piece of a record would hide all that come later.
    if (m_file >= 0 && ::ftruncate(m_file, static_cast<off_t>(m_length)) == 0)
        m_operations->sync(m_file);
    close();
    const bool full = error == ENOSPC || error == EDQUOT || error == EFBIG;
    return {full ? FileStatus::DiskFull : FileStatus::NotWritable, m_path.string() + ": " + std::strerror(error)};
}

SaveResult StepJournal::create(const std::filesystem::path &path, FileOperations &operations)
{
    close();
    m_path = path;
    m_operations = &operations;
    m_length = 0;
    m_file = operations.openNew(path.c_str(), 0600);
    if (m_file < 0)
        return failed(errno);
    const ssize_t written = operations.write(m_file, kTitle.data(), kTitle.size());
    if (written != static_cast<ssize_t>(kTitle.size())) {
        const SaveResult result = failed(written < 0 ? errno : ENOSPC);
        operations.remove(path.c_str());
        return result;
    }
    m_length = kTitle.size();
    return {};
}

SaveResult StepJournal::resume(const std::filesystem::path &path, FileOperations &operations)
{
    close();
    m_path = path;
    m_operations = &operations;
    const ReadFileResult read = readWholeFile(path);
    m_length = read ? walk(read.bytes, [](char, std::string_view) {}) : 0;
    if (m_length == 0)
        return {FileStatus::NotReadable, path.string() + ": " + std::strerror(EINVAL)};
    m_file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (m_file < 0 || ::ftruncate(m_file, static_cast<off_t>(m_length)) != 0 ||
        ::lseek(m_file, 0, SEEK_END) != static_cast<off_t>(m_length))
        return failed(errno);
    return {};
}

SaveResult StepJournal::append(char type, std::string_view bytes)
{
    if (m_file < 0)
        return {FileStatus::NotWritable, m_path.string() + ": " + std::strerror(EBADF)};
    RecordHead head;
    head.length = bytes.size();
    head.checksum = checksumOfRecord(type, bytes);
    head.type = type;
    std::string record(sizeof head, '\0');
    std::memcpy(record.data(), &head, sizeof head);
    record += bytes;
    std::size_t done = 0;
    while (done < record.size()) {
        const ssize_t count = m_operations->write(m_file, record.data() + done, record.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return failed(count < 0 ? errno : ENOSPC);
        done += static_cast<std::size_t>(count);
    }
    m_length += record.size();
    return {};
}

SaveResult StepJournal::sync()
{
    if (m_file < 0)
        return {};
    return m_operations->sync(m_file) == 0 ? SaveResult() : failed(errno);
}

std::vector<JournalRecordInFile> StepJournal::read(const std::filesystem::path &path, bool *isWhole)
{
    std::vector<JournalRecordInFile> records;
    const ReadFileResult file = readWholeFile(path);
    const std::size_t good = file ? walk(file.bytes,
                                         [&](char type, std::string_view content) {
                                             records.push_back({type, std::string(content)});
                                         })
                                  : 0;
    if (isWhole)
        *isWhole = file && good != 0 && good == file.bytes.size();
    return records;
}

} // namespace velmor
