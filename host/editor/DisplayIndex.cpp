#include "host/editor/DisplayIndex.h"

#include "host/drawing/ObjectAccess.h"
#include "host/drawing/Visibility.h"
#include "host/editor/EntityParts.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace velmor {

namespace {

constexpr double kMapLimit = 1e12; ///< coordinates beyond this lie in no cell
constexpr std::size_t kRunSegments = 32;
constexpr std::size_t kKeptChanges = 256;
/// How far, as a fraction of a cell's size, rounding to float can move a coordinate in it.
constexpr double kFloatError = 4e-7;
constexpr int kDeepestOvershoot = 3; ///< references inside one another whose letters are looked at

/// Segments of a polyline; 0 for other kinds.
std::size_t segmentsOf(const AcDbEntity &entity)
{
    const auto count = [](const auto &polyline) {
        const std::size_t vertices = polyline.vertices().size();
        return vertices < 2 ? 0 : vertices - (polyline.isClosed() ? 0 : 1);
    };
    switch (kindOf(entity)) {
    case EntityKind::LwPolyline:
        return count(static_cast<const AcDbPolyline &>(entity));
    case EntityKind::Polyline2d:
        return count(static_cast<const AcDb2dPolyline &>(entity));
    case EntityKind::Polyline3d: {
        const auto &polyline = static_cast<const AcDb3dPolyline &>(entity);
        // Two vertices have one segment there and back.
        return polyline.vertices().size() == 2 ? 1 : count(polyline);
    }
    default:
        return 0;
    }
}

/// Extents of some segments of a polyline.
Extents runExtents(const AcDbEntity &entity, std::size_t first, std::size_t segments)
{
    Extents box;
    const auto bulged = [&](const std::vector<AcDbPolyline::Vertex> &vertices) {
        for (std::size_t i = first; i < first + segments; ++i) {
            const auto &a = vertices[i], &b = vertices[(i + 1) % vertices.size()];
            box.add(a.x, a.y);
            box.add(b.x, b.y);
            if (a.bulge != 0.0 && (a.x != b.x || a.y != b.y))
                box.add(extentsOf(boundary::Piece{{a.x, a.y}, {b.x, b.y}, a.bulge, 0}));
        }
    };
    switch (kindOf(entity)) {
    case EntityKind::LwPolyline:
        bulged(static_cast<const AcDbPolyline &>(entity).vertices());
        break;
    case EntityKind::Polyline2d:
        bulged(static_cast<const AcDb2dPolyline &>(entity).vertices());
        break;
    default: {
        const auto &vertices = static_cast<const AcDb3dPolyline &>(entity).vertices();
        for (std::size_t i = first; i <= first + segments; ++i)
            box.add(vertices[i % vertices.size()].x, vertices[i % vertices.size()].y);
    }
    }
    return box;
}

/// How far letters may stand out of the box by which a text is measured.
double overshootOf(const TextShape &shape)
{
    return 0.5 * std::abs(shape.height) * std::max(1.0, std::abs(shape.widthFactor));
}

/// How far what is drawn of an entity may lie outside of its extents: letters, and half of a line's width.
double overshootOf(const AcDbEntity &entity, int depth = 0)
{
    switch (kindOf(entity)) {
    case EntityKind::Text:
    case EntityKind::MText:
    case EntityKind::Attribute:
        return overshootOf(static_cast<const TextEntity &>(entity).shape());
    case EntityKind::LwPolyline:
        return static_cast<const AcDbPolyline &>(entity).constantWidth();
    case EntityKind::BlockReference: {
        const auto &reference = static_cast<const AcDbBlockReference &>(entity);
        double most = 0.0;
        for (const AttributeEntity *attribute : attributesOf(reference))
            most = std::max(most, overshootOf(*attribute, depth));
        const auto *block = static_cast<const BlockRecord *>(ObjectAccess::object(reference.blockTableRecord()));
        if (!block || depth >= kDeepestOvershoot)
            return most;
        const auto &placement = reference.placement();
        const double scale = std::max(std::abs(placement.scaleX), std::abs(placement.scaleY));
        for (const AcDbEntity *inside : block->entities())
            most = std::max(most, scale * overshootOf(*inside, depth + 1));
        return most;
    }
    default:
        return 0.0;
    }
}

Extents shiftedBox(const DisplayIndex::Node &node, const float *shape)
{
    return {node.x + static_cast<double>(shape[0]), node.y + static_cast<double>(shape[1]),
            node.x + static_cast<double>(shape[2]), node.y + static_cast<double>(shape[3])};
}

} // namespace

DisplayIndex::DisplayIndex(Drawing &drawing) : m_drawing(drawing)
{
    m_drawing.addObserver(*this);
}

DisplayIndex::~DisplayIndex()
{
    m_drawing.removeObserver(*this);
}

// --- Questions

std::uint64_t DisplayIndex::revision()
{
    bringUpToDate();
    return m_revision;
}

std::optional<Extents> DisplayIndex::changedSince(std::uint64_t revision) const
{
    if (revision < m_allSince || revision < m_forgotten)
        return std::nullopt;
    Extents all;
    for (auto change = m_changes.rbegin(); change != m_changes.rend() && change->first > revision; ++change)
        all.add(change->second);
    return all;
}

Extents DisplayIndex::boxOf(const Node &node, const Item &item)
{
    Extents box = shiftedBox(node, item.shape);
    if (item.kind == ItemKind::Line) {
        if (box.minX > box.maxX)
            std::swap(box.minX, box.maxX);
        if (box.minY > box.maxY)
            std::swap(box.minY, box.maxY);
        box.grow(node.half * kFloatError);
    }
    return box;
}

Extents DisplayIndex::visibleExtents()
{
    // The boxes are a little too large, so those at the edge are measured exactly.
    Extents rough, everything{-1e308, -1e308, 1e308, 1e308};
    double error = m_largestOvershoot;
    visitNodes(everything, [&](const Node &node) {
        error = std::max(error, m_largestOvershoot + node.half * 4.0 * kFloatError);
        for (const Item &item : node.items)
            if (!item.gone && isVisible(item))
                rough.add(boxOf(node, item));
        return true;
    });
    if (rough.isEmpty())
        return rough;
    const auto isAtEdge = [&](const Extents &box) {
        return box.minX <= rough.minX + error || box.minY <= rough.minY + error || box.maxX >= rough.maxX - error ||
               box.maxY >= rough.maxY - error;
    };
    Extents exact;
    const AcDbEntity *last = nullptr;
    visitNodes(everything, [&](const Node &node) {
        if (!isAtEdge(node.box))
            return false;
        for (const Item &item : node.items) {
            if (item.gone || !isVisible(item) || !isAtEdge(boxOf(node, item)))
                continue;
            if (const AcDbEntity *it = m_entities[item.entity]; it != last)
                exact.add(extentsOf(*(last = it)));
        }
        return true;
    });
    return exact;
}

std::optional<std::uint32_t> DisplayIndex::numberOf(const AcDbEntity &entity) const
{
    const auto found = std::ranges::lower_bound(
        m_byAddress, &entity, std::less<>(), [this](std::uint32_t n) -> const AcDbEntity * { return m_entities[n]; });
    if (found != m_byAddress.end() && m_entities[*found] == &entity)
        return *found;
    const auto later = m_later.find(&entity);
    return later == m_later.end() ? std::nullopt : std::optional(later->second);
}

std::size_t DisplayIndex::memoryBytes() const
{
    std::size_t bytes = m_nodes.capacity() * sizeof(Node) + m_entities.capacity() * sizeof(AcDbEntity *) +
                        (m_where.capacity() + m_byAddress.capacity()) * sizeof(std::uint32_t) + m_later.size() * 48 +
                        m_several.capacity() * sizeof(m_several.front());
    for (const Node &node : m_nodes)
        bytes += node.items.capacity() * sizeof(Item);
    for (const auto &nodes : m_several)
        bytes += nodes.capacity() * sizeof(std::uint32_t);
    return bytes;
}

// --- Keeping up

void DisplayIndex::bringUpToDate()
{
    // A drawing that is put together from a file tells no observer.
    if (!m_built || m_entities.size() != m_drawing.modelSpace().entities().size())
        build();
    if (m_referencesStale)
        measureReferences();
    if (m_checkedRevision != m_drawing.revision())
        checkLayers();
}

void DisplayIndex::checkLayers()
{
    m_checkedRevision = m_drawing.revision();
    std::vector<LayerState> states;
    for (const Layer &layer : m_drawing.layers())
        states.push_back({layer.visible(), layer.color});
    // New layers come at the end and change nothing that was there.
    if (states.size() < m_layers.size() || !std::equal(m_layers.begin(), m_layers.end(), states.begin()))
        changedAll();
    m_layers = std::move(states);
}

void DisplayIndex::changed(const Extents &box)
{
    ++m_revision;
    m_changes.emplace_back(m_revision, box);
    if (m_changes.size() > kKeptChanges) {
        m_forgotten = m_changes.front().first;
        m_changes.pop_front();
    }
}

void DisplayIndex::changedAll()
{
    m_allSince = ++m_revision;
    m_changes.clear();
}

void DisplayIndex::build()
{
    ++m_builds;
    m_built = true;
    m_nodes.assign(3, {});
    m_entities.clear();
    m_where.clear();
    m_several.clear();
    m_freeSeveral.clear();
    m_later.clear();
    m_referencesStale = false;
    const auto &all = m_drawing.modelSpace().entities();
    m_entities.reserve(all.size());
    m_where.reserve(all.size());
    std::vector<Loose> items;
    items.reserve(all.size());
    Extents extents;
    for (AcDbEntity *entity : all) {
        const auto number = static_cast<std::uint32_t>(m_entities.size());
        m_entities.push_back(entity);
        m_where.push_back(kNowhere);
        if (!entity->isErased())
            looseItems(number, items);
    }
    m_byAddress.resize(m_entities.size());
    for (std::uint32_t i = 0; i < m_byAddress.size(); ++i)
        m_byAddress[i] = i;
    std::ranges::sort(m_byAddress, std::less<>(), [this](std::uint32_t n) { return m_entities[n]; });
    const auto beyond = std::partition(items.begin(), items.end(), [](const Loose &l) { return isOnMap(l.box); });
    for (auto loose = beyond; loose != items.end(); ++loose)
        put(kOutside, *loose);
    items.erase(beyond, items.end());
    for (const Loose &loose : items)
        extents.add(loose.box);
    Node &root = m_nodes[kRoot];
    root.half = 1.0;
    if (!extents.isEmpty()) {
        root.x = 0.5 * (extents.minX + extents.maxX);
        root.y = 0.5 * (extents.minY + extents.maxY);
        const double size = std::max(extents.maxX - extents.minX, extents.maxY - extents.minY);
        while (2.0 * root.half < size)
            root.half *= 2.0;
    }
    fill(kRoot, items, 0, items.size());
    changedAll();
}

void DisplayIndex::measureReferences()
{
    m_referencesStale = false;
    for (std::uint32_t number = 0; number < m_entities.size(); ++number) {
        if (kindOf(*m_entities[number]) != EntityKind::BlockReference || m_entities[number]->isErased())
            continue;
        takeOut(number);
        place(number);
    }
    changedAll();
}

bool DisplayIndex::noteBlockChange(const AcDbEntity &entity)
{
    const BlockRecord *owner = ownerOf(entity);
    if (owner == &m_drawing.modelSpace())
        return false;
    m_referencesStale = m_referencesStale || (owner && !owner->isLayout());
    return true;
}

void DisplayIndex::entityAppended(AcDbEntity &entity)
{
    if (!m_built || noteBlockChange(entity))
        return;
    const auto number = static_cast<std::uint32_t>(m_entities.size());
    m_entities.push_back(&entity);
    m_where.push_back(kNowhere);
    m_later.emplace(&entity, number);
    place(number);
}

void DisplayIndex::entityModified(AcDbEntity &entity)
{
    if (!m_built || noteBlockChange(entity))
        return;
    const auto number = numberOf(entity);
    if (!number || entity.isErased())
        return;
    takeOut(*number);
    place(*number);
}

void DisplayIndex::entityErased(AcDbEntity &entity, bool erased)
{
    if (!m_built || noteBlockChange(entity))
        return;
    if (const auto number = numberOf(entity)) {
        takeOut(*number);
        if (!erased)
            place(*number);
    }
}

// --- Items

std::uint32_t DisplayIndex::penOf(const AcDbEntity &entity)
{
    const Pen pen{static_cast<std::uint32_t>(layerIndexOf(entity)), ObjectAccess::host(entity).color};
    const std::uint64_t key = std::uint64_t{pen.layer} << 16 | static_cast<std::uint16_t>(pen.color);
    const auto [found, isNew] = m_penNumbers.try_emplace(key, static_cast<std::uint32_t>(m_pens.size()));
    if (isNew)
        m_pens.push_back(pen);
    return found->second;
}

void DisplayIndex::looseItems(std::uint32_t number, std::vector<Loose> &items)
{
    const AcDbEntity &entity = *m_entities[number];
    const EntityKind kind = kindOf(entity);
    if (kind == EntityKind::AttributeDefinition || kind == EntityKind::Unknown || isInvisible(entity))
        return; // nothing of them is drawn
    Item item{{}, number, penOf(entity), 0, 0, ItemKind::Entity, false};
    const double overshoot = std::min(overshootOf(entity), kMapLimit);
    m_largestOvershoot = std::max(m_largestOvershoot, overshoot);
    const std::size_t segments = segmentsOf(entity);
    if (segments > kRunSegments) {
        item.kind = ItemKind::Run;
        for (std::size_t first = 0; first < segments; first += kRunSegments) {
            const std::size_t count = std::min(kRunSegments, segments - first);
            item.first = static_cast<std::uint32_t>(first);
            item.count = static_cast<std::uint8_t>(count);
            Extents box = runExtents(entity, first, count);
            box.grow(overshoot);
            if (!box.isEmpty())
                items.push_back({box, item});
        }
        return;
    }
    if (kind == EntityKind::Line)
        item.kind = ItemKind::Line;
    else if (kind == EntityKind::Point)
        item.kind = ItemKind::Mark;
    else if (kind == EntityKind::Text || kind == EntityKind::MText)
        item.kind = ItemKind::Text;
    else if (kind == EntityKind::Hatch)
        item.kind = ItemKind::Hatch;
    Extents box;
    if (kind == EntityKind::Line) {
        const auto &line = static_cast<const AcDbLine &>(entity);
        box.add(line.startPoint().x, line.startPoint().y);
        box.add(line.endPoint().x, line.endPoint().y);
        if (!std::isfinite(line.startPoint().x + line.startPoint().y + line.endPoint().x + line.endPoint().y))
            return;
    } else {
        box = extentsOf(entity);
    }
    box.grow(overshoot);
    if (!box.isEmpty())
        items.push_back({box, item});
}

bool DisplayIndex::isOnMap(const Extents &box)
{
    return box.minX >= -kMapLimit && box.minY >= -kMapLimit && box.maxX <= kMapLimit && box.maxY <= kMapLimit;
}

void DisplayIndex::place(std::uint32_t number)
{
    std::vector<Loose> items;
    looseItems(number, items);
    Extents all;
    for (const Loose &loose : items) {
        all.add(loose.box);
        insert(loose);
    }
    if (!all.isEmpty())
        changed(all);
}

void DisplayIndex::noteNode(std::uint32_t number, std::uint32_t node)
{
    std::uint32_t &where = m_where[number];
    if (where == kNowhere || where == node) {
        where = node;
        return;
    }
    if ((where & kSeveral) == 0) {
        std::uint32_t place = static_cast<std::uint32_t>(m_several.size());
        if (m_freeSeveral.empty()) {
            m_several.emplace_back();
        } else {
            place = m_freeSeveral.back();
            m_freeSeveral.pop_back();
        }
        m_several[place] = {where};
        where = kSeveral | place;
    }
    auto &nodes = m_several[where & ~kSeveral];
    if (std::ranges::find(nodes, node) == nodes.end())
        nodes.push_back(node);
}

void DisplayIndex::takeOut(std::uint32_t number)
{
    const std::uint32_t where = std::exchange(m_where[number], kNowhere);
    if (where == kNowhere)
        return;
    Extents box;
    if ((where & kSeveral) == 0) {
        box = takeOutOf(where, number);
    } else {
        const auto nodes = std::exchange(m_several[where & ~kSeveral], {});
        m_freeSeveral.push_back(where & ~kSeveral);
        for (const std::uint32_t node : nodes)
            box.add(takeOutOf(node, number));
    }
    changed(box);
}

Extents DisplayIndex::takeOutOf(std::uint32_t index, std::uint32_t number)
{
    Node &node = m_nodes[index];
    Extents box;
    auto item = std::ranges::lower_bound(node.items, number, std::less<>(), &Item::entity);
    for (; item != node.items.end() && item->entity == number; ++item) {
        if (item->gone)
            continue;
        box.add(boxOf(node, *item));
        item->gone = true;
        ++node.gone;
    }
    if (2 * node.gone > node.items.size()) {
        std::erase_if(node.items, [](const Item &it) { return it.gone; });
        node.gone = 0;
    }
    return box;
}

} // namespace velmor
