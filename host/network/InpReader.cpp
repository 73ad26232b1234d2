#include "host/network/InpReader.h"

#include "host/drawing/dxf/TextCodec.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <unordered_map>

namespace velmor {

namespace {

/// A table of the file that is read; what a node or a link is called in findings.
enum class Table { Options, Node, Conduit, OtherLink, Subcatchment, Coordinates, Vertices, Polygons, None };

struct TableName {
    std::string_view prefix; ///< SWMM takes a table by the first letters of its name
    Table table;
    const char *kind;
};
constexpr auto kTables = std::to_array<TableName>({
    {"[OPTION", Table::Options, ""},
    {"[JUNC", Table::Node, "junction"},
    {"[OUTF", Table::Node, "outfall"},
    {"[STOR", Table::Node, "storage"},
    {"[DIVI", Table::Node, "divider"},
    {"[COND", Table::Conduit, "conduit"},
    {"[PUMP", Table::OtherLink, "pump"},
    {"[ORIF", Table::OtherLink, "orifice"},
    {"[WEIR", Table::OtherLink, "weir"},
    {"[OUTL", Table::OtherLink, "outlet"},
    {"[SUBC", Table::Subcatchment, "subcatchment"},
    {"[COOR", Table::Coordinates, ""},
    {"[VERT", Table::Vertices, ""},
    {"[POLY", Table::Polygons, ""},
});

/// Farther out no drawing lies; a number beyond it is a slip.
constexpr double kFarthest = 1e12;

struct Row {
    std::size_t line = 0;
    const TableName *table = nullptr;
    std::vector<std::string_view> words;
};

std::vector<std::string_view> splitRow(std::string_view line)
{
    constexpr std::string_view kBlanks = " \t\r\f\v";
    std::vector<std::string_view> words;
    for (std::size_t i = 0; i < line.size();) {
        if (line[i] == ';')
            break;
        if (kBlanks.find(line[i]) != std::string_view::npos) {
            ++i;
            continue;
        }
        std::size_t end;
        if (line[i] == '"') {
            const auto closing = line.find('"', i + 1);
            end = closing == std::string_view::npos ? line.size() : closing;
            words.push_back(line.substr(i + 1, end - i - 1));
            i = end + 1;
            continue;
        }
        end = std::min(line.find_first_of(" \t\r\f\v;", i), line.size());
        words.push_back(line.substr(i, end - i));
        i = end;
    }
    return words;
}

std::optional<double> parseNumber(std::string_view word)
{
    if (word.starts_with('+'))
        word.remove_prefix(1);
    double value = 0.0;
    const auto [rest, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || rest != word.data() + word.size() || !(std::abs(value) <= kFarthest))
        return std::nullopt;
    return value;
}

std::string upper(std::string_view text)
{
    std::string folded(text);
    for (char &c : folded)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    return folded;
}

/// Names with their numbers. A name that fits exactly comes before one that fits but for its case.
class Names {
public:
    /// False when the very name is taken.
    bool add(std::string_view name, std::size_t number)
    {
        m_folded.emplace(upper(name), number);
        return m_exact.emplace(name, number).second;
    }
    std::optional<std::size_t> find(std::string_view name) const
    {
        if (const auto exact = m_exact.find(name); exact != m_exact.end())
            return exact->second;
        const auto folded = m_folded.find(upper(name));
        return folded == m_folded.end() ? std::nullopt : std::optional(folded->second);
    }

private:
    std::unordered_map<std::string_view, std::size_t> m_exact;
    std::unordered_map<std::string, std::size_t> m_folded;
};

std::string kindText(const char *kind)
{
    return uiLine(std::string("ui.inp.kind.") + kind);
}

struct ReadingCancelled {};

class Reader {
public:
    Reader(std::string_view text, bool withPolygons, const std::function<bool(double)> &progress)
        : m_withPolygons(withPolygons), m_progress(progress)
    {
        if (!isUtf8(text)) {
            m_codec = TextCodec::forDrawing("AC1015", "ANSI_1250");
            note(0, uiLine("ui.inp.codePage"));
        }
        splitTables(text);
    }

    InpNetwork read(const std::string &name)
    {
        if (!m_sawTable) {
            fail(FileStatus::NotADrawing, uiLine("ui.inp.noTable", {name}));
            return std::move(m_result);
        }
        readUnits();
        readNodes();
        readCoordinates();
        if (m_result.status == FileStatus::Ok && m_placed.empty()) {
            fail(FileStatus::NotADrawing, uiLine(m_nodes.empty() ? "ui.inp.noNodes" : "ui.inp.noCoordinates", {name}));
            return std::move(m_result);
        }
        readConduits();
        if (m_result.conduits.empty())
            warn(0, uiLine("ui.inp.noConduit"));
        readVertices();
        if (m_withPolygons)
            readPolygons();
        std::ranges::stable_sort(m_result.findings, {}, &Finding::line);
        return std::move(m_result);
    }

private:
    struct NodeRow {
        std::string_view name;
        std::size_t line;
        const char *kind;
        std::optional<std::size_t> placed; ///< number in the result
    };

    void note(std::size_t line, std::string text)
    {
        m_result.findings.push_back({Severity::Note, line, std::move(text)});
    }
    void warn(std::size_t line, std::string text)
    {
        m_result.findings.push_back({Severity::Warning, line, std::move(text)});
    }
    void fail(FileStatus status, std::string message)
    {
        m_result = InpNetwork();
        m_result.status = status;
        m_result.message = std::move(message);
    }
    std::wstring decoded(std::string_view word) const { return m_codec ? m_codec->decode(word) : wide(word); }
    /// A name as it stands in a finding.
    std::string shown(std::string_view word) const { return utf8(decoded(word)); }

    /// One more line was looked at. Each is looked at twice: when it is split, and in its table.
    void tick()
    {
        constexpr std::size_t kBetween = 2048;
        if (++m_looks % kBetween != 0 || !m_progress)
            return;
        if (!m_progress(std::min(static_cast<double>(m_looks) / (2.0 * static_cast<double>(m_lines)), 1.0)))
            throw ReadingCancelled();
    }

    void splitTables(std::string_view text)
    {
        m_lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
        if (text.starts_with("\xEF\xBB\xBF"))
            text.remove_prefix(3);
        const TableName *table = nullptr;
        for (std::size_t number = 1; !text.empty(); ++number) {
            tick();
            const auto end = text.find('\n');
            const std::string_view line = text.substr(0, end);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            std::vector<std::string_view> words = splitRow(line);
            if (words.empty())
                continue;
            if (words.front().starts_with('[')) {
                const std::string title = upper(words.front());
                const auto found =
                    std::ranges::find_if(kTables, [&](const TableName &t) { return title.starts_with(t.prefix); });
                table = found == kTables.end() ? nullptr : &*found;
                m_sawTable = true;
                continue;
            }
            if (table)
                m_rows[static_cast<std::size_t>(table->table)].push_back({number, table, std::move(words)});
        }
    }

    const std::vector<Row> &rows(Table table) const { return m_rows[static_cast<std::size_t>(table)]; }

    void readUnits()
    {
        constexpr auto kFeet = std::to_array<std::string_view>({"CFS", "GPM", "MGD"});
        constexpr auto kMetres = std::to_array<std::string_view>({"CMS", "LPS", "MLD"});
        m_result.inFeet = true; // SWMM's own default is CFS
        bool told = false;
        for (const Row &row : rows(Table::Options)) {
            if (!equalNoCase(row.words[0], "FLOW_UNITS"))
                continue;
            const std::string unit = row.words.size() > 1 ? upper(row.words[1]) : std::string();
            const bool feet = std::ranges::find(kFeet, unit) != kFeet.end();
            told = feet || std::ranges::find(kMetres, unit) != kMetres.end();
            if (told)
                m_result.inFeet = feet;
            else
                warn(row.line, uiLine("ui.inp.units", {shown(unit)}));
        }
        if (!told)
            warn(0, uiLine("ui.inp.noUnits"));
    }

    void readNodes()
    {
        for (const Row &row : rows(Table::Node)) {
            tick();
            if (m_nodeNames.add(row.words[0], m_nodes.size()))
                m_nodes.push_back({row.words[0], row.line, row.table->kind, std::nullopt});
            else
                warn(row.line, uiLine("ui.inp.nodeTwice", {shown(row.words[0]), kindText(row.table->kind)}));
        }
    }

    /// The point in the second and third word of a row; told and nothing when it is none.
    std::optional<InpPoint> pointOf(const Row &row, std::string_view message)
    {
        const auto x = row.words.size() > 1 ? parseNumber(row.words[1]) : std::nullopt;
        const auto y = row.words.size() > 2 ? parseNumber(row.words[2]) : std::nullopt;
        if (x && y)
            return InpPoint{*x, *y};
        warn(row.line, uiLine(message, {shown(row.words[0])}));
        return std::nullopt;
    }

    void readCoordinates()
    {
        std::vector<std::optional<InpPoint>> places(m_nodes.size());
        for (const Row &row : rows(Table::Coordinates)) {
            tick();
            const auto node = m_nodeNames.find(row.words[0]);
            if (!node) {
                note(row.line, uiLine("ui.inp.noNode", {shown(row.words[0])}));
                continue;
            }
            const auto point = pointOf(row, "ui.inp.place");
            if (point && places[*node])
                warn(row.line, uiLine("ui.inp.placedTwice", {shown(row.words[0])}));
            if (point)
                places[*node] = point;
        }
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            NodeRow &node = m_nodes[i];
            if (!places[i]) {
                warn(node.line, uiLine("ui.inp.unplaced", {kindText(node.kind), shown(node.name)}));
                continue;
            }
            node.placed = m_result.nodes.size();
            m_result.nodes.push_back({decoded(node.name), node.line, *places[i]});
            m_placed.push_back(i);
        }
    }

    /// The drawn node of that name; told and nothing when there is none.
    std::optional<std::size_t> endOf(const Row &row, std::size_t word)
    {
        const auto node = m_nodeNames.find(row.words[word]);
        if (node && m_nodes[*node].placed)
            return m_nodes[*node].placed;
        warn(row.line,
             uiLine(node ? "ui.inp.endUnplaced" : "ui.inp.endUnknown", {shown(row.words[0]), shown(row.words[word])}));
        return std::nullopt;
    }

    void readConduits()
    {
        for (const Row &row : rows(Table::Conduit)) {
            tick();
            const std::string_view name = row.words[0];
            if (row.words.size() < 3) {
                warn(row.line, uiLine("ui.inp.twoNodes", {shown(name)}));
                m_otherLinks.add(name, 0);
                continue;
            }
            const auto from = endOf(row, 1);
            const auto to = from ? endOf(row, 2) : std::nullopt;
            if (!from || !to) {
                m_otherLinks.add(name, 0);
                continue;
            }
            if (!m_conduitNames.add(name, m_result.conduits.size())) {
                warn(row.line, uiLine("ui.inp.conduitTwice", {shown(name)}));
                continue;
            }
            double length = 0.0;
            if (const auto given = row.words.size() > 3 ? parseNumber(row.words[3]) : 0.0; !given || *given < 0.0)
                warn(row.line, uiLine("ui.inp.badLength", {shown(row.words[3]), shown(name)}));
            else if (*given == 0.0)
                note(row.line, uiLine("ui.inp.noLength", {shown(name)}));
            else
                length = *given;
            m_result.conduits.push_back({decoded(name), row.line, *from, *to, length, {}});
        }
        for (const Row &row : rows(Table::OtherLink)) {
            note(row.line, uiLine("ui.inp.otherLink", {kindText(row.table->kind), shown(row.words[0])}));
            m_otherLinks.add(row.words[0], 0);
        }
    }

    void readVertices()
    {
        for (const Row &row : rows(Table::Vertices)) {
            tick();
            const auto conduit = m_conduitNames.find(row.words[0]);
            if (!conduit) {
                // The bends of a link that was left out went with it, and that was told.
                if (!m_otherLinks.find(row.words[0]))
                    note(row.line, uiLine("ui.inp.strayBend", {shown(row.words[0])}));
                continue;
            }
            if (const auto point = pointOf(row, "ui.inp.bend"))
                m_result.conduits[*conduit].bends.push_back(*point);
        }
        for (InpConduit &conduit : m_result.conduits)
            dropRepeats(conduit);
    }

    /// Bends that stand on their neighbour (or on the node at the end) make no way.
    void dropRepeats(InpConduit &conduit)
    {
        const InpPoint &from = m_result.nodes[conduit.from].at, &to = m_result.nodes[conduit.to].at;
        auto &bends = conduit.bends;
        bends.erase(std::unique(bends.begin(), bends.end()), bends.end());
        if (!bends.empty() && bends.front() == from)
            bends.erase(bends.begin());
        if (!bends.empty() && bends.back() == to)
            bends.pop_back();
        if (bends.empty() && from == to)
            note(conduit.line, uiLine("ui.inp.point", {utf8(conduit.name)}));
    }

    void readPolygons()
    {
        Names names;
        for (const Row &row : rows(Table::Polygons)) {
            tick();
            auto number = names.find(row.words[0]);
            if (!number) {
                number = m_result.polygons.size();
                names.add(row.words[0], *number);
                m_result.polygons.push_back({decoded(row.words[0]), row.line, {}});
            }
            if (const auto point = pointOf(row, "ui.inp.corner"))
                m_result.polygons[*number].ring.push_back(*point);
        }
        for (const Row &row : rows(Table::Subcatchment))
            if (!names.find(row.words[0]))
                note(row.line, uiLine("ui.inp.noPolygon", {shown(row.words[0])}));
        std::erase_if(m_result.polygons, [&](InpPolygon &polygon) {
            auto &ring = polygon.ring;
            ring.erase(std::unique(ring.begin(), ring.end()), ring.end());
            while (ring.size() > 1 && ring.front() == ring.back())
                ring.pop_back();
            if (ring.size() >= 3)
                return false;
            warn(polygon.line, uiLine("ui.inp.fewCorners", {utf8(polygon.name)}));
            return true;
        });
    }

    bool m_withPolygons;
    const std::function<bool(double)> &m_progress;
    std::size_t m_looks = 0, m_lines = 1;
    bool m_sawTable = false;
    std::optional<TextCodec> m_codec; ///< none: UTF-8
    std::array<std::vector<Row>, static_cast<std::size_t>(Table::None)> m_rows;
    std::vector<NodeRow> m_nodes;
    std::vector<std::size_t> m_placed;
    Names m_nodeNames, m_conduitNames, m_otherLinks;
    InpNetwork m_result;
};

} // namespace

InpNetwork readInp(std::string_view text, const std::string &name, bool withPolygons,
                   const std::function<bool(double)> &progress)
try {
    InpNetwork refused;
    if (text.empty()) {
        refused.status = FileStatus::Empty;
        refused.message = uiLine("ui.inp.empty", {name});
        return refused;
    }
    if (text.find('\0') != std::string_view::npos) {
        refused.status = FileStatus::NotADrawing;
        refused.message = uiLine("ui.inp.binary", {name});
        return refused;
    }
    return Reader(text, withPolygons, progress).read(name);
} catch (const ReadingCancelled &) {
    InpNetwork cancelled;
    cancelled.status = FileStatus::Cancelled;
    cancelled.message = uiLine("ui.inp.cancelled", {name});
    return cancelled;
}

} // namespace velmor
