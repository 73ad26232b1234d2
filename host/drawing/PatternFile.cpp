#include "host/drawing/PatternFile.h"

#include "host/drawing/DrawingData.h"
#include "host/drawing/Texts.h"
#include "host/drawing/Utf8.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <unordered_set>

namespace velmor {

namespace {

constexpr double kLargest = 1e9; ///< of a length; beyond, lines can't be told apart

std::string_view trimmedText(std::string_view text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

class Reader {
public:
    PatternFile read(std::string_view text)
    {
        if (text.starts_with("\xEF\xBB\xBF"))
            text.remove_prefix(3);
        while (!text.empty()) {
            ++m_line;
            const auto end = text.find('\n');
            std::string_view line = text.substr(0, end);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            line = trimmedText(line.substr(0, line.find(';')));
            if (line.empty())
                continue;
            if (line.front() == '*')
                begin(line.substr(1));
            else
                add(line);
        }
        finish();
        return std::move(m_file);
    }

private:
    void find(std::string text) { m_file.findings.push_back({Severity::Warning, m_line, std::move(text)}); }

    void begin(std::string_view line)
    {
        finish();
        const auto comma = line.find(',');
        m_open = m_good = true;
        m_pattern = {};
        m_pattern.line = m_line;
        m_pattern.name = fromUtf8(trimmedText(line.substr(0, comma)));
        if (comma != std::string_view::npos)
            m_pattern.description = fromUtf8(trimmedText(line.substr(comma + 1)));
        if (m_pattern.name.empty())
            refuse(drawingText("pattern.nameless"));
        else if (!m_names.insert(foldedName(m_pattern.name)).second)
            refuse(drawingText("pattern.twice", {nameText()}));
    }

    void add(std::string_view line)
    {
        if (!m_open) {
            find(drawingText("pattern.stray"));
            return;
        }
        if (!m_good)
            return;
        std::vector<double> numbers;
        for (std::string_view rest = line;;) {
            const auto comma = rest.find(',');
            const std::string_view text = trimmedText(rest.substr(0, comma));
            double number = 0.0;
            const char *const first = text.data() + (text.starts_with('+') ? 1 : 0), *const last =
                                                                                         text.data() + text.size();
            const auto [end, error] = std::from_chars(first, last, number);
            if (error != std::errc() || end != last || !(std::abs(number) <= kLargest))
                return refuse(drawingText("pattern.number", {nameText(), std::string(text.substr(0, 40))}));
            numbers.push_back(number);
            if (comma == std::string_view::npos)
                break;
            rest.remove_prefix(comma + 1);
        }
        if (numbers.size() < 5)
            return refuse(drawingText("pattern.few", {nameText()}));
        if (numbers.size() - 5 > kMostPatternDashes || m_pattern.families.size() == kMostPatternFamilies)
            return refuse(drawingText("pattern.many", {nameText()}));
        if (numbers[4] == 0.0)
            return refuse(drawingText("pattern.flat", {nameText()}));
        PatternFamily family{numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], {}};
        family.dashes.assign(numbers.begin() + 5, numbers.end());
        double length = 0.0;
        for (const double dash : family.dashes)
            length += std::abs(dash);
        if (!family.dashes.empty() && length == 0.0)
            return refuse(drawingText("pattern.dots", {nameText()}));
        m_pattern.families.push_back(std::move(family));
    }

    void refuse(std::string text)
    {
        find(std::move(text));
        m_good = false;
    }

    void finish()
    {
        if (m_open && m_good && m_pattern.families.empty() && foldedName(m_pattern.name) != L"SOLID") {
            const std::size_t line = std::exchange(m_line, m_pattern.line);
            refuse(drawingText("pattern.empty", {nameText()}));
            m_line = line;
        }
        if (m_open && m_good)
            m_file.patterns.push_back(std::move(m_pattern));
        m_open = false;
    }

    std::string nameText() const { return toUtf8(m_pattern.name); }

    PatternFile m_file;
    Pattern m_pattern;
    std::unordered_set<std::wstring> m_names;
    std::size_t m_line = 0;
    bool m_open = false, m_good = false;
};

} // namespace

PatternFile readPatterns(std::string_view text)
{
    return Reader().read(text);
}

std::string patternText(const Pattern &pattern)
{
    std::string text = "*" + toUtf8(pattern.name);
    if (!pattern.description.empty())
        text += ", " + toUtf8(pattern.description);
    text += '\n';
    for (const PatternFamily &family : pattern.families) {
        text += fmt::format("{}, {},{}, {},{}", family.degrees, family.x, family.y, family.along, family.across);
        for (std::size_t i = 0; i < family.dashes.size(); ++i)
            text += fmt::format("{}{}", i == 0 ? ", " : ",", family.dashes[i]);
        text += '\n';
    }
    return text;
}

} // namespace velmor
