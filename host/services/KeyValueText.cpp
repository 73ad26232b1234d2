#include "host/services/KeyValueText.h"

#include "host/drawing/Texts.h"
#include "host/services/Text.h"

namespace velmor {

namespace {

/// False when an escape is not known; it then stays as it stands.
bool unescape(std::string_view text, std::string &value)
{
    bool known = true;
    value.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            value.push_back(text[i]);
            continue;
        }
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        const std::string_view escapes = "nts\\", characters = "\n\t \\";
        const auto found = escapes.find(next);
        if (found == std::string_view::npos || next == '\0') {
            known = false;
            value.push_back('\\');
            continue;
        }
        value.push_back(characters[found]);
        ++i;
    }
    return known;
}

} // namespace

KeyValueText parseKeyValues(std::string_view text)
{
    KeyValueText result;
    std::string section;
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    for (std::size_t number = 1; !text.empty(); ++number) {
        const auto end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const auto report = [&](std::string what) {
            result.findings.push_back({Severity::Warning, number, std::move(what)});
        };
        if (line.empty() || line.front() == '#')
            continue;
        if (!isUtf8(line) || line.find('\0') != std::string_view::npos) {
            report(drawingText("text.notUtf8"));
            continue;
        }
        if (line.front() == '[' && line.back() == ']') {
            section = trimmed(line.substr(1, line.size() - 2));
            continue;
        }
        const auto equals = line.find('=');
        const std::string key(trimmed(line.substr(0, equals)));
        if (equals == std::string_view::npos || key.empty()) {
            report(drawingText("text.noEquals"));
            continue;
        }
        std::string value;
        if (!unescape(trimmed(line.substr(equals + 1)), value))
            report(drawingText("text.escape", {key}));
        result.lines.push_back({number, section, key, std::move(value)});
    }
    return result;
}

std::string escapedValue(std::string_view value)
{
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool atEnd = i == 0 || i + 1 == value.size();
        if (c == '\n')
            text += "\\n";
        else if (c == '\t')
            text += "\\t";
        else if (c == '\\')
            text += "\\\\";
        else if (c == ' ' && atEnd)
            text += "\\s";
        else if (c != '\r')
            text.push_back(c);
    }
    return text;
}

std::string FileFinding::message() const
{
    std::string text = file.string();
    if (finding.line != 0)
        text += ":" + std::to_string(finding.line);
    return text + ": " + finding.text;
}

} // namespace velmor
