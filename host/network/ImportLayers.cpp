// Linework that is in a drawing already becomes a network: sections on the curves, nodes at their ends.
#include "contracts/CoreServices.h"
#include "host/network/Network.h"
#include "host/network/NetworkData.h"
#include "host/services/Messages.h"
#include "host/services/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace velmor {

namespace {

constexpr int kNodeColor = 1;

/// Points in square cells, for those that are near a place.
class PointGrid {
public:
    explicit PointGrid(double cell) : m_cell(cell) {}

    void add(const AcGePoint3d &point, std::size_t number)
    {
        m_cells[keyOf(cellOf(point.x), cellOf(point.y))].push_back({point.x, point.y, number});
    }
    /// Calls found(number, distance) for every point within the cell's size of the place.
    template <class Found>
    void near(const AcGePoint3d &place, Found found) const
    {
        const std::int64_t column = cellOf(place.x), row = cellOf(place.y);
        for (std::int64_t x = column - 1; x <= column + 1; ++x)
            for (std::int64_t y = row - 1; y <= row + 1; ++y)
                if (const auto cell = m_cells.find(keyOf(x, y)); cell != m_cells.end())
                    for (const Entry &entry : cell->second)
                        if (const double distance = std::hypot(entry.x - place.x, entry.y - place.y);
                            distance <= m_cell)
                            found(entry.number, distance);
    }

private:
    struct Entry {
        double x, y;
        std::size_t number;
    };
    std::int64_t cellOf(double value) const
    {
        // Beyond this, cells are as good as one: a drawing that far out has no such detail.
        constexpr double kFarthest = 4e18;
        return static_cast<std::int64_t>(std::clamp(std::floor(value / m_cell), -kFarthest, kFarthest));
    }
    static std::uint64_t keyOf(std::int64_t x, std::int64_t y)
    {
        return static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15ull ^ static_cast<std::uint64_t>(y);
    }
    double m_cell;
    std::unordered_map<std::uint64_t, std::vector<Entry>> m_cells;
};

/// A text that may name a node.
struct NameText {
    AcGePoint3d place;
    std::wstring text;
    const AcDbBlockReference *block = nullptr; ///< the manhole symbol that carries it
};

struct FoundNode {
    AcGePoint3d place;
    AcDbEntity *entity = nullptr; ///< a node that the drawing has, or the symbol that becomes one
    std::wstring guid, name;      ///< guid set: the drawing's node
};

struct FoundSection {
    AcDbEntity *entity = nullptr;
    std::size_t from = 0, to = 0;
};

std::wstring oneLine(std::wstring text)
{
    for (wchar_t &c : text)
        c = c == L'\n' || c == L'\t' ? L' ' : c;
    const auto first = text.find_first_not_of(L' ');
    return first == std::wstring::npos ? std::wstring() : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

class LayerImport {
public:
    LayerImport(Drawing &drawing, const LayerImportOptions &options)
        : m_drawing(drawing), m_options(options), m_network(drawing.component<Network>()),
          m_nodeGrid(std::max(options.endTolerance, kSmallestTolerance))
    {
    }

    NetworkImportResult run()
    {
        std::set<std::size_t> sectionLayers, nameLayers;
        if (!layersOf(m_options.sectionLayers, sectionLayers) || !layersOf(m_options.nameLayers, nameLayers))
            return std::move(m_result);
        collect(sectionLayers, nameLayers);
        if (m_curves.empty()) {
            m_result.status = FileStatus::NotFound;
            m_result.message = uiLine("ui.layers.nothing");
            return std::move(m_result);
        }
        findEnds();
        nameNodes();
        write();
        return std::move(m_result);
    }

private:
    static constexpr double kSmallestTolerance = 1e-9;

    void tell(Severity severity, std::string text) { m_result.findings.push_back({severity, 0, std::move(text)}); }

    bool layersOf(const std::vector<std::wstring> &names, std::set<std::size_t> &layers)
    {
        for (const std::wstring &name : names) {
            const auto layer = m_drawing.findLayer(name);
            if (!layer) {
                m_result.status = FileStatus::NotFound;
                m_result.message = uiLine("ui.layers.unknown", {utf8(name)});
                return false;
            }
            layers.insert(*layer);
        }
        return true;
    }

    void collect(const std::set<std::size_t> &sectionLayers, const std::set<std::size_t> &nameLayers)
    {
        for (AcDbEntity *entity : m_drawing.modelSpace().entities()) {
            if (entity->isErased())
                continue;
            const std::size_t layer = layerIndexOf(*entity);
            if (sectionLayers.contains(layer))
                takeCurve(*entity);
            if (nameLayers.empty() || nameLayers.contains(layer))
                takeName(*entity);
        }
    }

    void takeCurve(AcDbEntity &entity)
    {
        const auto ends = endsOf(entity);
        if (!ends)
            return;
        const auto *curve = static_cast<const AcDbCurve *>(&entity);
        const std::string what = typeNameOf(entity) + " " + utf8(handleText(entity));
        if (m_drawing.data(entity, kSectionKey))
            tell(Severity::Note, uiLine("ui.layers.already", {what}));
        else if (curve->isClosed() || ends->start.isEqualTo(ends->end, kSmallestTolerance))
            tell(Severity::Warning, uiLine("ui.layers.closed", {what}));
        else
            m_curves.push_back({&entity, *ends});
    }

    void takeName(AcDbEntity &entity)
    {
        switch (kindOf(entity)) {
        case EntityKind::Text:
        case EntityKind::MText: {
            const TextShape &shape = static_cast<const TextEntity &>(entity).shape();
            if (std::wstring text = oneLine(shape.text); !text.empty())
                m_names.push_back({shape.position, std::move(text), nullptr});
            break;
        }
        case EntityKind::BlockReference: {
            const auto &reference = static_cast<const AcDbBlockReference &>(entity);
            m_symbols.push_back(&entity);
            // The symbol's first attribute with a text names it.
            for (const AttributeEntity *attribute : attributesOf(reference)) {
                if (std::wstring text = oneLine(attribute->shape().text); !text.empty()) {
                    m_names.push_back({reference.placement().position, std::move(text), &reference});
                    break;
                }
            }
            break;
        }
        default:
            break;
        }
    }

    void findEnds()
    {
        for (const auto &node : m_network.nodes()) {
            AcDbEntity *entity =
                dynamic_cast<AcDbEntity *>(m_drawing.findByHandle(node->GetObjectId().handle().value()));
            if (const auto place = entity ? positionOf(*entity) : std::nullopt)
                addNode({*place, entity, node->GetGuid(), node->GetName()});
        }
        PointGrid symbols(std::max(m_options.endTolerance, kSmallestTolerance));
        for (std::size_t i = 0; i < m_symbols.size(); ++i)
            if (!m_drawing.data(*m_symbols[i], kNodeKey))
                symbols.add(*positionOf(*m_symbols[i]), i);
        for (const auto &[entity, ends] : m_curves) {
            const std::size_t from = nodeAt(ends.start, symbols), to = nodeAt(ends.end, symbols);
            m_sections.push_back({entity, from, to});
        }
    }

    std::size_t addNode(FoundNode node)
    {
        m_nodeGrid.add(node.place, m_nodes.size());
        m_nodes.push_back(std::move(node));
        return m_nodes.size() - 1;
    }

    std::size_t nodeAt(const AcGePoint3d &place, const PointGrid &symbols)
    {
        double nearest = std::max(m_options.endTolerance, kSmallestTolerance);
        std::optional<std::size_t> found;
        m_nodeGrid.near(place, [&](std::size_t node, double distance) {
            if (!found || distance < nearest) {
                found = node;
                nearest = distance;
            }
        });
        if (found)
            return *found;
        std::optional<std::size_t> symbol;
        symbols.near(place, [&](std::size_t number, double distance) {
            if (!symbol || distance < nearest) {
                symbol = number;
                nearest = distance;
            }
        });
        AcDbEntity *entity = symbol ? m_symbols[*symbol] : nullptr;
        return addNode({entity ? *positionOf(*entity) : place, entity, {}, {}});
    }

    /// A symbol's own attribute names its node. Then the nearest pairs of node and text find each other, each node and
    /// each text once.
    void nameNodes()
    {
        std::unordered_map<const AcDbEntity *, std::size_t> nodeOfSymbol;
        for (std::size_t i = 0; i < m_nodes.size(); ++i)
            if (m_nodes[i].entity)
                nodeOfSymbol.emplace(m_nodes[i].entity, i);
        PointGrid texts(std::max(m_options.nameDistance, kSmallestTolerance));
        std::vector<bool> used(m_names.size());
        for (std::size_t i = 0; i < m_names.size(); ++i) {
            const auto node = nodeOfSymbol.find(m_names[i].block);
            if (m_names[i].block && node != nodeOfSymbol.end()) {
                used[i] = true;
                if (m_nodes[node->second].name.empty())
                    m_nodes[node->second].name = m_names[i].text;
            } else {
                texts.add(m_names[i].place, i);
            }
        }
        struct Pair {
            double distance;
            std::size_t node, text;
            auto operator<=>(const Pair &) const = default;
        };
        std::vector<Pair> pairs;
        for (std::size_t node = 0; node < m_nodes.size(); ++node)
            if (m_nodes[node].name.empty())
                texts.near(m_nodes[node].place, [&](std::size_t text, double distance) {
                    pairs.push_back({distance, node, text});
                });
        std::ranges::sort(pairs);
        for (const Pair &pair : pairs) {
            if (used[pair.text] || !m_nodes[pair.node].name.empty())
                continue;
            used[pair.text] = true;
            m_nodes[pair.node].name = m_names[pair.text].text;
        }
        nameTheRest();
    }

    void nameTheRest()
    {
        std::unordered_set<std::wstring> taken;
        for (const FoundNode &node : m_nodes)
            if (!node.name.empty() && !taken.insert(node.name).second)
                tell(Severity::Note, uiLine("ui.layers.sameName", {utf8(node.name)}));
        for (std::size_t i = 0, number = 1; i < m_nodes.size(); ++i) {
            FoundNode &node = m_nodes[i];
            if (!node.name.empty())
                continue;
            do
                node.name = L"N" + std::to_wstring(number++);
            while (!taken.insert(node.name).second);
            tell(Severity::Note, uiLine("ui.layers.noName", {fmt::format("{:.3f}", node.place.x),
                                                             fmt::format("{:.3f}", node.place.y), utf8(node.name)}));
        }
    }

    void write()
    {
        const std::size_t layer = m_drawing.ensureLayer(kNodeLayer, kNodeColor);
        for (FoundNode &node : m_nodes) {
            if (!node.guid.empty())
                continue;
            if (!node.entity) {
                auto made = std::make_unique<PointEntity>(node.place);
                node.entity = made.get();
                m_drawing.append(std::move(made));
                m_drawing.setLayerOf(*node.entity, layer);
            }
            node.guid = ZEMGis::Utility::CUtility::CreateGUID();
            m_drawing.setData(*node.entity, kNodeKey, itemsOf(NodeData{node.guid, node.name}));
            ++m_result.nodes;
        }
        std::unordered_set<std::wstring> taken;
        for (const auto &section : m_network.sections())
            taken.insert(section->GetName());
        for (const FoundSection &section : m_sections) {
            const FoundNode &from = m_nodes[section.from], &to = m_nodes[section.to];
            const std::wstring base = from.name + L"-" + to.name;
            std::wstring name = base;
            for (int number = 2; !taken.insert(name).second; ++number)
                name = base + L"-" + std::to_wstring(number);
            m_drawing.setData(
                *section.entity, kSectionKey,
                itemsOf(SectionData{ZEMGis::Utility::CUtility::CreateGUID(), name, 0.0, from.guid, to.guid}));
            ++m_result.sections;
        }
    }

    struct Curve {
        AcDbEntity *entity;
        CurveEnds ends;
    };

    Drawing &m_drawing;
    const LayerImportOptions &m_options;
    const Network &m_network;
    NetworkImportResult m_result;
    std::vector<Curve> m_curves;
    std::vector<NameText> m_names;
    std::vector<AcDbEntity *> m_symbols;
    std::vector<FoundNode> m_nodes;
    PointGrid m_nodeGrid;
    std::vector<FoundSection> m_sections;
};

} // namespace

NetworkImportResult importLayers(Drawing &drawing, const LayerImportOptions &options)
{
    if (options.sectionLayers.empty() || !(options.endTolerance >= 0.0) || !(options.nameDistance >= 0.0) ||
        !std::isfinite(options.endTolerance) || !std::isfinite(options.nameDistance)) {
        NetworkImportResult refused;
        refused.status = FileStatus::Refused;
        refused.message = uiLine(options.sectionLayers.empty() ? "ui.layers.none" : "ui.layers.numbers");
        return refused;
    }
    return LayerImport(drawing, options).run();
}

} // namespace velmor
