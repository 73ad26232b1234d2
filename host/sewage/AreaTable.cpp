#include "host/sewage/AreaTable.h"

#include "host/services/Messages.h"
#include "host/services/Text.h"
#include "host/sewage/CatchmentStore.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace velmor {
namespace {

using ZEMGis::Data::CDataBox;

std::wstring textProperty(const AreaRecord &record, std::wstring_view tag)
{
    const CDataBox *box = record.property(tag);
    return box ? static_cast<std::wstring>(*box) : std::wstring();
}

/// A JSON text with its quotes.
std::string jsonText(std::wstring_view text)
{
    std::string result = "\"";
    for (const char c : utf8(text)) {
        switch (c) {
        case '"':
            result += "\\\"";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\t':
            result += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20)
                result += fmt::format("\\u{:04x}", static_cast<unsigned>(c));
            else
                result += c;
        }
    }
    return result + '"';
}

std::string csvField(const std::string &text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"')
            result += '"';
        result += c;
    }
    return result + '"';
}

/// Shortest text that reads back as the same number. A record that was edited elsewhere may hold what is no number.
std::string number(double value)
{
    return std::isfinite(value) ? fmt::format("{}", value) : "null";
}

std::string typeLetters(int type)
{
    std::string letters;
    for (const auto &[bit, letter] : {std::pair{1, 'C'}, {2, 'H'}, {4, 'I'}})
        if (type & bit)
            letters += letter;
    return letters.empty() ? "-" : letters;
}

std::string shareText(const AreaRow::Section &section)
{
    return section.share == ZEMGis::Topology::kUnknownValue ? std::string("?")
                                                            : fmt::format("{:.1f}%", section.share * 100.0);
}

// --- Plain table --------------------------------------------------------------------------------------------

constexpr std::size_t kColumns = 9;
using Cells = std::array<std::string, kColumns>;
/// Numbers stand to the right.
constexpr std::array<bool, kColumns> kRight{false, false, true, true, true, true, true, false, false};
/// The last column names this many sections at most.
constexpr std::size_t kNamedSections = 3;

/// Width of a text on a terminal, taken as one column for each character.
std::size_t widthOf(const std::string &text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

Cells cellsOf(const AreaRow &row)
{
    std::string sections;
    for (std::size_t i = 0; i < std::min(row.sections.size(), kNamedSections); ++i)
        sections += (i ? ", " : "") + utf8(row.sections[i].name) + ' ' + shareText(row.sections[i]);
    if (row.sections.size() > kNamedSections)
        sections += fmt::format(", +{}", row.sections.size() - kNamedSections);
    const std::string kind = row.hidden ? "hidden" : row.island ? "island" : "main";
    return {utf8(row.name),
            typeLetters(row.type),
            fmt::format("{:.4f}", row.areaHectares),
            fmt::format("{:.4f}", row.netAreaHectares),
            fmt::format("{:.2f}", row.coefficient),
            fmt::format("{:.2f}", row.population),
            fmt::format("{:.2f}", row.slope),
            utf8(uiText("ui.areas.kind." + kind)),
            sections};
}

void addLine(std::string &text, const Cells &cells, const std::array<std::size_t, kColumns> &widths)
{
    std::string line;
    for (std::size_t i = 0; i < kColumns; ++i) {
        const std::string fill(widths[i] - widthOf(cells[i]), ' ');
        line += (i ? "  " : "") + (kRight[i] ? fill + cells[i] : cells[i] + fill);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
}

} // namespace

std::vector<AreaRow> areaTable(Drawing &drawing)
{
    auto &store = drawing.component<CatchmentStore>();
    std::vector<AreaRow> rows;
    for (const CatchmentStore::AreaPtr &area : store.areas()) {
        const AreaRecord &record = area->record();
        AreaRow row;
        row.guid = record.guid;
        row.name = record.name;
        row.type = record.type;
        row.hidden = record.hidden;
        row.areaHectares = area->GetArea();
        row.netAreaHectares = store.netHectares(*area);
        row.coefficient = area->GetFlowCoeff();
        row.population = area->GetPopulation();
        row.slope = record.number(L"CA_SLOPE");
        row.island = record.number(L"CA_TYPE_ISLAND") != 0.0;
        row.mainArea = textProperty(record, L"CA_MAIN_AREA");
        row.centre = area->GetCenterPoint();
        ZEMGis::Sewage::SectionShares sections;
        area->GetConnectedSections(sections);
        for (const auto &[section, share] : sections)
            row.sections.push_back({section->GetName(), section->GetHandleText(), share});
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string areasJson(const std::vector<AreaRow> &rows)
{
    std::string text = "[";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const AreaRow &row = rows[i];
        text += i ? ",\n " : "\n ";
        text += fmt::format(R"({{"guid": {}, "name": {}, "type": {}, "hidden": {}, "area_ha": {}, "coefficient": {}, )"
                            R"("population": {}, "slope": {}, "island": {}, "main_area": {}, "centre": [{}, {}], )"
                            R"("sections": [)",
                            jsonText(row.guid), jsonText(row.name), row.type, row.hidden, number(row.areaHectares),
                            number(row.coefficient), number(row.population), number(row.slope), row.island ? 1 : 0,
                            row.mainArea.empty() ? std::string("null") : jsonText(row.mainArea), number(row.centre.x),
                            number(row.centre.y));
        for (std::size_t s = 0; s < row.sections.size(); ++s) {
            const AreaRow::Section &section = row.sections[s];
            text += fmt::format(R"({}{{"name": {}, "handle": {}, "share": {}}})", s ? ", " : "", jsonText(section.name),
                                jsonText(section.handle), number(section.share));
        }
        text += "]}";
    }
    return text + (rows.empty() ? "]\n" : "\n]\n");
}

std::string areasCsv(const std::vector<AreaRow> &rows)
{
    std::string text = "guid,name,type,hidden,area_ha,net_area_ha,coefficient,population,slope,island,main_area,"
                       "centre_x,centre_y,sections\n";
    for (const AreaRow &row : rows) {
        std::string sections;
        for (const AreaRow::Section &section : row.sections)
            sections += (sections.empty() ? "" : " ") + utf8(section.name) + ':' + number(section.share);
        text += fmt::format("{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", csvField(utf8(row.guid)),
                            csvField(utf8(row.name)), row.type, row.hidden ? 1 : 0, number(row.areaHectares),
                            number(row.netAreaHectares), number(row.coefficient), number(row.population),
                            number(row.slope), row.island ? 1 : 0, csvField(utf8(row.mainArea)), number(row.centre.x),
                            number(row.centre.y), csvField(sections));
    }
    return text;
}

std::string areasText(const std::vector<AreaRow> &rows)
{
    std::vector<Cells> lines;
    Cells head;
    constexpr std::array<std::string_view, kColumns> names{"name",    "type",  "gross", "net",     "coefficient",
                                                           "density", "slope", "kind",  "sections"};
    for (std::size_t i = 0; i < kColumns; ++i)
        head[i] = utf8(uiText("ui.areas.head." + std::string(names[i])));
    lines.push_back(head);
    double gross = 0.0, net = 0.0;
    for (const AreaRow &row : rows) {
        lines.push_back(cellsOf(row));
        gross += row.areaHectares;
        net += row.netAreaHectares;
    }
    Cells total;
    total[0] = fmt::format("{} ({})", utf8(uiText("ui.areas.total")), rows.size());
    total[2] = fmt::format("{:.4f}", gross);
    total[3] = fmt::format("{:.4f}", net);
    lines.push_back(total);

    std::array<std::size_t, kColumns> widths{};
    std::size_t all = 2 * (kColumns - 1);
    for (std::size_t i = 0; i < kColumns; ++i) {
        for (const Cells &line : lines)
            widths[i] = std::max(widths[i], widthOf(line[i]));
        all += widths[i];
    }
    std::string text;
    addLine(text, lines.front(), widths);
    text += std::string(all, '-') + '\n';
    for (std::size_t i = 1; i + 1 < lines.size(); ++i)
        addLine(text, lines[i], widths);
    text += std::string(all, '-') + '\n';
    addLine(text, lines.back(), widths);
    return text;
}

} // namespace velmor
