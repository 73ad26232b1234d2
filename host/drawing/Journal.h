// A record of contract calls that a test can switch on and read.
//
// Every operation of the contracts that does something for its caller or reads a setting (not: opens, closes, class
// tests, iterator steps, getters of values) writes one entry: name and arguments as text, and of a read its success.
#pragma once

#include "contracts/HostTypes.h"

#include <string>
#include <string_view>
#include <vector>

class AcDbObjectId;

namespace velmor {

struct JournalEntry {
    std::string operation; ///< as declared, with its class: "acedSetVar", "CCatchmentAreaManager::CreateCA"
    std::vector<std::string> arguments; ///< UTF-8; numbers in shortest form, points "x,y,z", ids as handle text
    bool operator==(const JournalEntry &) const = default;
};

class ZEMX_CONTRACT Journal {
public:
    static Journal &instance();
    /// Starts an empty record (true), or stops recording and keeps what was written (false).
    void setRecording(bool on);
    bool isRecording() const { return m_recording && m_pauses == 0; }
    const std::vector<JournalEntry> &entries() const { return m_entries; }
    void clear() { m_entries.clear(); }
    void add(JournalEntry entry) { m_entries.push_back(std::move(entry)); }

private:
    friend class JournalPause;
    bool m_recording = false;
    int m_pauses = 0;
    std::vector<JournalEntry> m_entries;
};

/// Keeps the operations that another operation works through out of the record, for its own life; nests.
class JournalPause {
public:
    JournalPause() { ++Journal::instance().m_pauses; }
    ~JournalPause() { --Journal::instance().m_pauses; }
    JournalPause(const JournalPause &) = delete;
    JournalPause &operator=(const JournalPause &) = delete;
};

std::string journalText(std::string_view text);
std::string journalText(std::wstring_view text);
std::string journalText(const wchar_t *text);
std::string journalText(double value);
std::string journalText(const AcGePoint3d &point);
std::string journalText(const AcDbObjectId &id); ///< handle text, "0" for none
template <class Int>
requires std::is_integral_v<Int> std::string journalText(Int value)
{
    return std::to_string(value);
}

/// Writes one entry when recording is on; costs one test when it is off.
template <class... Arguments>
void journal(const char *operation, const Arguments &...arguments)
{
    if (Journal::instance().isRecording()) [[unlikely]]
        Journal::instance().add({operation, {journalText(arguments)...}});
}

} // namespace velmor
