#include "host/drawing/PatternLibrary.h"

#include "host/drawing/DrawingData.h"
#include "host/drawing/Findings.h"
#include "host/drawing/OwnPatterns.h"
#include "host/drawing/Utf8.h"
#include "host/drawing/dxf/AtomicFile.h"

#include <algorithm>

namespace velmor {

namespace fs = std::filesystem;

namespace {

/// A name that can be a file's.
bool canBeFile(std::wstring_view name)
{
    return !name.empty() && name.size() < 64 && std::ranges::all_of(name, isNameCharacter) && name.front() != L'.';
}

} // namespace

PatternLibrary::PatternLibrary()
{
    for (Pattern &pattern : readPatterns(ownPatternText()).patterns) {
        std::wstring key = foldedName(pattern.name);
        m_own.emplace(std::move(key), std::move(pattern));
    }
}

PatternLibrary &PatternLibrary::instance()
{
    static PatternLibrary library;
    return library;
}

void PatternLibrary::setSource(std::function<fs::path(const fs::path &)> supportFile)
{
    m_supportFile = std::move(supportFile);
    m_files.clear();
    m_users.clear();
    ++m_revision;
}

PatternLibrary::UserFile PatternLibrary::stateOf(const fs::path &name) const
{
    UserFile file;
    file.path = m_supportFile ? m_supportFile(name) : fs::path();
    if (file.path.empty())
        return file;
    std::error_code error;
    file.time = fs::last_write_time(file.path, error);
    file.size = fs::file_size(file.path, error);
    return file;
}

void PatternLibrary::readUserFile(const fs::path &name)
{
    const UserFile file = stateOf(name);
    m_files[name] = file;
    Patterns &patterns = m_users[name];
    patterns.clear();
    ++m_revision;
    if (file.path.empty())
        return;
    const ReadFileResult read = readWholeFile(file.path);
    if (!read) {
        if (read.status != FileStatus::Empty)
            notice(read.message);
        return;
    }
    PatternFile parsed = readPatterns(read.bytes);
    for (const std::string &line : findingLines(file.path.string(), parsed.findings))
        notice(line);
    for (Pattern &pattern : parsed.patterns) {
        std::wstring key = foldedName(pattern.name);
        patterns.emplace(std::move(key), std::move(pattern));
    }
}

void PatternLibrary::readSharedFile()
{
    if (!m_files.contains(kUserPatternFile))
        readUserFile(kUserPatternFile);
}

void PatternLibrary::refresh()
{
    std::vector<fs::path> changed;
    for (const auto &[name, file] : m_files)
        if (stateOf(name) != file)
            changed.push_back(name);
    for (const fs::path &name : changed)
        readUserFile(name);
}

const Pattern *PatternLibrary::find(std::wstring_view name)
{
    const std::wstring key = foldedName(name);
    readSharedFile();
    const auto in = [&key](const Patterns &patterns) {
        const auto found = patterns.find(key);
        return found == patterns.end() ? nullptr : &found->second;
    };
    if (const Pattern *users = in(m_users[kUserPatternFile]))
        return users;
    if (m_supportFile && canBeFile(name)) {
        const fs::path file = toUtf8(name) + ".pat";
        if (!m_files.contains(file))
            readUserFile(file);
        if (const Pattern *users = in(m_users[file]))
            return users;
    }
    return in(m_own);
}

bool PatternLibrary::isUsers(std::wstring_view name)
{
    const Pattern *pattern = find(name);
    const auto own = m_own.find(foldedName(name));
    return pattern && (own == m_own.end() || pattern != &own->second);
}

std::vector<const Pattern *> PatternLibrary::all()
{
    readSharedFile();
    std::map<std::wstring_view, const Pattern *> byName;
    for (const auto &[key, pattern] : m_own)
        byName[key] = &pattern;
    for (const auto &[file, patterns] : m_users)
        if (file != kUserPatternFile)
            for (const auto &[key, pattern] : patterns)
                byName[key] = &pattern;
    for (const auto &[key, pattern] : m_users[kUserPatternFile])
        byName[key] = &pattern;
    std::vector<const Pattern *> patterns;
    for (const auto &[key, pattern] : byName)
        patterns.push_back(pattern);
    return patterns;
}

} // namespace velmor
