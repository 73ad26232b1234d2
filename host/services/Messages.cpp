#include "host/services/Messages.h"

#include "host/drawing/Texts.h"
#include "host/drawing/dxf/AtomicFile.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <set>

namespace velmor {

namespace {

/// The drawing takes its texts from here wherever the messages are linked.
[[maybe_unused]] const bool textsAreNamed = (setTextSource(&uiLine), true);

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

std::vector<std::string> placeholdersOf(std::string_view text)
{
    std::vector<std::string> found;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '%')
            continue;
        if (text[i + 1] == '%') {
            ++i;
            continue;
        }
        std::size_t width = i + 1;
        while (width < text.size() && isDigit(text[width]))
            ++width;
        std::size_t end = width;
        if (end < text.size() && text[end] == '.')
            for (++end; end < text.size() && isDigit(text[end]);)
                ++end;
        if (end < text.size() && std::string_view("disufgeExXcp").find(text[end]) != std::string_view::npos)
            found.emplace_back(text.substr(i, end - i + 1));
        else if (width > i + 1)
            found.emplace_back(text.substr(i, width - i));
    }
    std::ranges::sort(found);
    return found;
}

void Messages::load(const Paths &paths, std::string_view language)
{
    m_byNumber.clear();
    m_byName.clear();
    m_findings.clear();
    m_language = language;
    const std::string file = "messages/" + m_language + ".txt";
    if (const auto shipped = paths.resource(file); !shipped.empty())
        readFile(shipped, false);
    else
        m_findings.push_back({file,
                              {Severity::Damage, 0,
                               "the message file is missing; set VELMOR_RESOURCES to the "
                               "folder that holds it"}});
    if (!paths.userFolder().empty())
        readFile(paths.userFolder() / file, true);
}

void Messages::readFile(const std::filesystem::path &file, bool users)
{
    const ReadFileResult read = readWholeFile(file);
    if (read.status == FileStatus::NotFound && users)
        return;
    if (!read) {
        m_findings.push_back({file, {Severity::Damage, 0, read.message}});
        return;
    }
    KeyValueText parsed = parseKeyValues(read.bytes);
    for (Finding &finding : parsed.findings)
        m_findings.push_back({file, std::move(finding)});
    std::set<std::string> seen;
    for (const KeyValueLine &line : parsed.lines) {
        const auto report = [&](std::string what) {
            m_findings.push_back({file, {Severity::Warning, line.line, std::move(what)}});
        };
        const auto refused = [&](const std::wstring &shipped) {
            if (!users || placeholdersOf(utf8(shipped)) == placeholdersOf(line.value))
                return false;
            report(drawingText("text.placeholders", {line.key}));
            return true;
        };
        if (!seen.insert(line.key).second)
            report(drawingText("text.twice", {line.key}));
        if (!isDigit(line.key.front())) {
            const auto known = m_byName.find(line.key);
            if (known == m_byName.end() || !refused(known->second))
                m_byName.insert_or_assign(line.key, wide(line.value));
            continue;
        }
        unsigned number = 0;
        const char *const end = line.key.data() + line.key.size();
        const auto [rest, error] = std::from_chars(line.key.data(), end, number);
        if (error != std::errc() || rest != end) {
            report(drawingText("text.badKey", {line.key}));
            continue;
        }
        const auto known = m_byNumber.find(number);
        if (known != m_byNumber.end() && refused(known->second))
            continue;
        m_byNumber.insert_or_assign(number, wide(line.value));
    }
}

std::wstring Messages::text(unsigned number) const
{
    const auto found = m_byNumber.find(number);
    return found != m_byNumber.end() ? found->second : L"[" + std::to_wstring(number) + L"]";
}

std::wstring Messages::text(std::string_view name) const
{
    const auto found = m_byName.find(name);
    return found != m_byName.end() ? found->second : L"[" + wide(name) + L"]";
}

std::vector<std::string> Messages::names() const
{
    std::vector<std::string> all;
    for (const auto &entry : m_byName)
        all.push_back(entry.first);
    return all;
}

std::string chooseLanguage(std::string_view asked, std::string_view fromSettings)
{
    const auto known = [](std::string_view text) -> std::string {
        const std::string_view letters = text.substr(0, 2);
        const bool whole =
            text.size() == 2 || (text.size() > 2 && (text[2] == '_' || text[2] == '-' || text[2] == '.'));
        for (const std::string_view language : {"hr", "en"})
            if (whole && equalNoCase(letters, language))
                return std::string(language);
        return {};
    };
    for (const std::string_view choice : {asked, fromSettings})
        if (std::string language = known(choice); !language.empty())
            return language;
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char *value = std::getenv(variable);
        if (!value || !*value)
            continue;
        std::string language = known(value);
        return language.empty() ? "en" : language;
    }
    return "en";
}

std::wstring uiText(std::string_view name)
{
    return Services::instance().messages().text(name);
}

std::string uiLine(std::string_view name, std::initializer_list<std::string_view> parts)
{
    const std::string form = utf8(uiText(name));
    std::string line;
    if (!Services::instance().messages().contains(name)) { // what it is about must not be lost with its words
        line = form;
        for (const std::string_view part : parts)
            line.append(" ").append(part);
        return line;
    }
    for (std::size_t i = 0; i < form.size(); ++i) {
        const std::size_t part =
            form[i] == '%' && i + 1 < form.size() ? static_cast<std::size_t>(form[i + 1] - '1') : parts.size();
        if (part < parts.size()) {
            line += parts.begin()[part];
            ++i;
        } else {
            line += form[i];
        }
    }
    return line;
}

} // namespace velmor
