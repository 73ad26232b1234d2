#include "host/services/Settings.h"

#include "host/drawing/dxf/AtomicFile.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace velmor {

namespace {

constexpr double kLargest = 1e9;

const std::vector<SettingSpec> &table()
{
    static const std::vector<SettingSpec> specs = {
        {"DECIMAL_PLACES_CATCHMENT", kGroupReview, 4, 0, 8, "ui.setting.decimals"},
        {"DEFAULT_ZOOM", kGroupDefinition | kGroupReview, 1.5, 0.0001, 9999.0, "ui.setting.zoom", 2.0},
        {"ZOOM_ONOFF", kGroupDefinition, 0, 0, 1, "ui.setting.zoomOn"},
        {"MARK_COLOR", kGroupDefinition, 2, 1, 255, "ui.setting.markColor"},
        {"CATCH_HATCH_SCALE", kGroupDefinition, 2.0, 0.0001, kLargest, "ui.setting.hatchScale"},
        {"CATCH_HATCH_COLOR_DEFINED", kGroupDefinition, 3, 1, 255, "ui.setting.colorDefined"},
        {"CATCH_HATCH_COLOR_TEMP", kGroupDefinition, 4, 1, 255, "ui.setting.colorTemp"},
        {"CATCH_NAME_PREFIX", kGroupDefinition, std::wstring(), 0, 0, "ui.setting.prefix"},
        {"CATCH_NAME_SUFIX", kGroupDefinition, std::wstring(), 0, 0, "ui.setting.suffix"},
        {"CATCH_COUNTER_DELIMITER", kGroupDefinition, std::wstring(L"_"), 0, 0, "ui.setting.delimiter"},
        {"HIGHLIGHT_COLOR", kGroupDefinition | kGroupReview, 6, 1, 255, "ui.setting.highlight"},
        {"LABEL_SCALE", kGroupDefinition | kGroupReview, 1000, 1, 1000000, "ui.setting.labelScale"},
        {"ANSI_CODE_PAGE", kGroupProgram, 1250, 1250, 1258, "ui.setting.codePage"},
        {"LANGUAGE", kGroupProgram, std::wstring(), 0, 0, "ui.setting.language"},
        {"AUTOSAVE_MINUTES", kGroupProgram, 5, 0, 240, "ui.setting.autosave"},
        {"THEME", kGroupProgram, std::wstring(), 0, 0, "ui.setting.theme"},
        {"SUPPORT_PATH", kGroupProgram, std::wstring(), 0, 0, "ui.setting.support"},
        {"SYMBOL_PATH", kGroupProgram, std::wstring(), 0, 0, "ui.setting.symbols"},
        {"LOGGING", kGroupProgram, 0, 0, 1, "ui.setting.logging"},
        {"LOG_FILE", kGroupProgram, std::wstring(), 0, 0, "ui.setting.logFile"},
    };
    return specs;
}

bool withinLimits(const SettingSpec &spec, const SettingValue &value)
{
    if (value.index() != spec.standard.index())
        return false;
    if (const int *number = std::get_if<int>(&value))
        return *number >= spec.lowest && *number <= spec.highest;
    if (const double *number = std::get_if<double>(&value))
        return *number >= spec.lowest && *number <= spec.highest;
    return true;
}

std::string typeAndLimits(const SettingSpec &spec)
{
    if (std::holds_alternative<std::wstring>(spec.standard))
        return uiLine("settings.text");
    return uiLine(std::holds_alternative<int>(spec.standard) ? "settings.whole" : "settings.number",
                  {fmt::format("{}", spec.lowest), fmt::format("{}", spec.highest)});
}

/// The whole text as a number, with a point or a comma before the fraction.
template <class Number>
std::optional<SettingValue> parseNumber(std::string text)
{
    std::ranges::replace(text, ',', '.');
    Number number{};
    const char *const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end)
        return std::nullopt;
    return number;
}

std::optional<SettingValue> parse(const SettingSpec *spec, const std::string &text)
{
    if (!spec || std::holds_alternative<std::wstring>(spec->standard))
        return wide(text);
    const auto value = std::holds_alternative<int>(spec->standard) ? parseNumber<int>(text) : parseNumber<double>(text);
    return value && withinLimits(*spec, *value) ? value : std::nullopt;
}

std::string textOf(const SettingValue &value)
{
    if (const int *number = std::get_if<int>(&value))
        return std::to_string(*number);
    if (const double *number = std::get_if<double>(&value)) {
        char digits[40];
        return {digits, std::to_chars(digits, digits + sizeof digits, *number).ptr};
    }
    return escapedValue(utf8(std::get<std::wstring>(value)));
}

} // namespace

std::span<const SettingSpec> settingTable()
{
    return table();
}

const SettingSpec *findSetting(std::string_view key)
{
    const auto found = std::ranges::find(table(), key, [](const SettingSpec &s) { return std::string_view(s.key); });
    return found == table().end() ? nullptr : &*found;
}

unsigned settingGroup(std::wstring_view name)
{
    return name == L"TCE1" ? kGroupDefinition : name == L"TCE2" ? kGroupReview : 0u;
}

void Settings::load(const std::filesystem::path &file)
{
    m_file = file;
    m_values.clear();
    m_findings.clear();
    if (file.empty())
        return;
    const ReadFileResult read = readWholeFile(file);
    if (read.status == FileStatus::NotFound || read.status == FileStatus::Empty)
        return;
    if (!read) {
        m_findings.push_back({file, {Severity::Damage, 0, read.message}});
        return;
    }
    KeyValueText parsed = parseKeyValues(read.bytes);
    for (Finding &finding : parsed.findings)
        m_findings.push_back({file, std::move(finding)});
    for (const KeyValueLine &line : parsed.lines) {
        const SettingSpec *spec = findSetting(line.key);
        if (auto value = parse(spec, line.value))
            m_values.insert_or_assign(line.key, std::move(*value));
        else
            m_findings.push_back({file,
                                  {Severity::Warning, line.line,
                                   uiLine("settings.badLine", {line.key, typeAndLimits(*spec), line.value})}});
    }
}

std::optional<SettingValue> Settings::value(std::string_view key) const
{
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

SettingValue Settings::valueOrStandard(std::string_view key, SettingGroup shownIn) const
{
    if (auto set = value(key))
        return *std::move(set);
    const SettingSpec &spec = *findSetting(key);
    return shownIn == kGroupReview && spec.reviewStandard ? *spec.reviewStandard : spec.standard;
}

SaveResult Settings::set(std::string_view key, const SettingValue &value)
{
    const SettingSpec *spec = findSetting(key);
    if (spec && !withinLimits(*spec, value))
        return {FileStatus::Refused, uiLine("settings.bad", {key, typeAndLimits(*spec)})};
    if (trimmed(key).empty() || trimmed(key) != key || key.find_first_of("=#[\n\r") != std::string_view::npos)
        return {FileStatus::Refused, uiLine("settings.badName", {key})};
    const std::string line = fmt::format("{} = {}", key, textOf(value));
    const bool isText = std::holds_alternative<std::wstring>(value);
    m_values.insert_or_assign(std::string(key), spec || isText ? value : SettingValue(wide(textOf(value))));
    return writeLine(key, &line);
}

SaveResult Settings::reset(std::string_view key)
{
    if (const auto found = m_values.find(key); found != m_values.end())
        m_values.erase(found);
    return writeLine(key, nullptr);
}

/// Puts the line in the place of the key's last one, or at the end. The file is read anew, so that what another running
/// program or an editor wrote to it stays.
SaveResult Settings::writeLine(std::string_view key, const std::string *line)
{
    if (m_file.empty())
        return {FileStatus::NotFound, uiLine("settings.noFolder")};
    const ReadFileResult read = readWholeFile(m_file);
    if (!read && read.status != FileStatus::NotFound && read.status != FileStatus::Empty)
        return {read.status, read.message};
    std::string text;
    bool written = line == nullptr;
    std::string_view rest = read.bytes;
    const KeyValueText parsed = parseKeyValues(rest);
    std::size_t last = 0;
    for (const KeyValueLine &l : parsed.lines)
        if (l.key == key)
            last = l.line;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const auto end = rest.find('\n');
        const std::string_view old = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (number == last && line)
            text.append(*line).push_back('\n');
        else if (number != last)
            text.append(old).push_back('\n');
        written = written || number == last;
    }
    if (!written)
        text.append(*line).push_back('\n');
    if (read.status == FileStatus::NotFound && !line)
        return {};
    std::error_code error;
    std::filesystem::create_directories(m_file.parent_path(), error);
    const std::string_view pieces[] = {text};
    return writeFileAtomically(m_file, pieces, false);
}

} // namespace velmor
