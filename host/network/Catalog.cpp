#include "host/network/Catalog.h"

#include "host/drawing/Journal.h"
#include "host/drawing/Texts.h"
#include "host/drawing/dxf/AtomicFile.h"
#include "host/services/Services.h"
#include "host/services/Text.h"

#include <boost/make_shared.hpp>

#include <array>
#include <charconv>
#include <map>
#include <set>

namespace velmor {

using ZEMGis::Data::CCatalog;

namespace {

constexpr double kSmallestHeight = 0.001, kLargestHeight = 10000.0;
constexpr auto kPlaceholders =
    std::to_array<std::string_view>({"{name}", "{area}", "{net}", "{gross}", "{coeff}", "{density}", "{slope}"});

template <class Number>
bool parseWhole(const std::string &text, Number lowest, Number highest, Number &value)
{
    Number parsed{};
    const char *const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, parsed);
    if (error != std::errc() || rest != end || !(parsed >= lowest && parsed <= highest))
        return false;
    value = parsed;
    return true;
}

/// The first text in braces that is no placeholder; empty when there is none.
std::string unknownPlaceholder(const std::string &line)
{
    for (std::size_t i = line.find('{'); i != std::string::npos; i = line.find('{', i + 1)) {
        const auto end = line.find('}', i);
        if (end == std::string::npos)
            return line.substr(i);
        const std::string word = line.substr(i, end - i + 1);
        if (std::ranges::find(kPlaceholders, word) == kPlaceholders.end())
            return word;
    }
    return {};
}

/// One section of the file while it is read.
struct Section {
    std::size_t line = 0;
    LabelType type;
    std::wstring group;
    bool nameIsOfLanguage = false;
};

} // namespace

LabelCatalog::LabelCatalog(std::string_view text, std::string_view language)
{
    KeyValueText parsed = parseKeyValues(text);
    m_findings = std::move(parsed.findings);
    std::map<std::string, Section> sections;
    for (const KeyValueLine &line : parsed.lines) {
        const auto report = [&](std::string what) {
            m_findings.push_back({Severity::Warning, line.line, std::move(what)});
        };
        if (line.section.empty()) {
            report(drawingText("catalog.before", {line.key}));
            continue;
        }
        Section &section = sections[line.section];
        if (section.line == 0)
            section.line = line.line;
        if (line.key == "name" && !section.nameIsOfLanguage) {
            section.type.name = wide(line.value);
        } else if (line.key == "name." + std::string(language)) {
            section.type.name = wide(line.value);
            section.nameIsOfLanguage = true;
        } else if (line.key == "group") {
            section.group = wide(line.value);
        } else if (line.key == "line") {
            if (const std::string unknown = unknownPlaceholder(line.value); !unknown.empty())
                report(drawingText("catalog.placeholder", {unknown}));
            section.type.lines.push_back(wide(line.value));
        } else if (line.key == "height") {
            if (!parseWhole(line.value, kSmallestHeight, kLargestHeight, section.type.textHeight))
                report(drawingText("catalog.height"));
        } else if (line.key == "color") {
            if (!parseWhole(line.value, 0, 256, section.type.color))
                report(drawingText("catalog.color"));
        } else if (!line.key.starts_with("name")) {
            report(drawingText("catalog.key", {line.key}));
        }
    }
    for (auto &[key, section] : sections) {
        if (!section.group.empty())
            m_elements[wide(key)] = boost::make_shared<CatalogGroup>(std::move(section.group));
        else if (section.type.name.empty() || section.type.lines.empty())
            m_findings.push_back({Severity::Warning, section.line, drawingText("catalog.empty", {key})});
        else
            m_elements[wide(key)] = boost::make_shared<LabelCatalogItem>(std::move(section.type));
    }
}

CCatalog::ElementsMap *LabelCatalog::GetAllElementsMap()
{
    return m_elements.empty() ? nullptr : &m_elements;
}

} // namespace velmor

namespace ZEMGis::Data {

CCatalogItem::~CCatalogItem() = default;
CCatalog::~CCatalog() = default;

CCatalogManager *CCatalogManager::Instance()
{
    static CCatalogManager manager;
    return &manager;
}

boost::shared_ptr<CCatalog> CCatalogManager::GetCatalog(const wchar_t *name, int flag)
{
    velmor::journal("CCatalogManager::GetCatalog", name, flag);
    if (!name || std::wstring_view(name) != L"CA_LABEL_CATALOG")
        return {};
    const velmor::Services &services = velmor::Services::instance();
    const auto file = services.paths().supportFile("CA_LABEL_CATALOG.cfg");
    if (file.empty())
        return {};
    const velmor::ReadFileResult read = velmor::readWholeFile(file);
    // One catalogue for each text that the file has had, so that items which a dialog still holds stay.
    static std::map<std::pair<std::string, std::string>, boost::shared_ptr<velmor::LabelCatalog>> known;
    auto &catalog = known[{services.messages().language(), read.bytes}];
    if (catalog)
        return catalog;
    if (!read && read.status != velmor::FileStatus::Empty) {
        services.notice(velmor::wide(read.message));
        known.erase({services.messages().language(), read.bytes});
        return {};
    }
    catalog = boost::make_shared<velmor::LabelCatalog>(read.bytes, services.messages().language());
    for (const velmor::Finding &finding : catalog->findings())
        services.notice(velmor::wide(velmor::FileFinding{file, finding}.message()));
    return catalog;
}

} // namespace ZEMGis::Data
