// The cells of the display index: where items come in, move and are divided.
#include "host/editor/DisplayIndex.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace velmor {

namespace {

constexpr std::size_t kMostInNode = 1024; ///< items, before a cell is divided
constexpr double kSmallestHalf = 1e-6;    ///< of a cell, drawing units; smaller ones are not divided
constexpr double kFloatLimit = 3e38;

float floatBelow(double value)
{
    const auto rounded = static_cast<float>(std::clamp(value, -kFloatLimit, kFloatLimit));
    return static_cast<double>(rounded) > value ? std::nextafter(rounded, -static_cast<float>(kFloatLimit)) : rounded;
}

float floatAbove(double value)
{
    return -floatBelow(-value);
}

bool drawnBefore(const DisplayIndex::Item &a, const DisplayIndex::Item &b)
{
    return a.entity != b.entity ? a.entity < b.entity : a.first < b.first;
}

} // namespace

void DisplayIndex::put(std::uint32_t index, const Loose &loose)
{
    Node &node = m_nodes[index];
    Item item = loose.item;
    item.gone = false;
    if (index == kOutside && item.kind == ItemKind::Line)
        item.kind = ItemKind::Entity;
    if (item.kind == ItemKind::Line) {
        const auto &line = static_cast<const AcDbLine &>(*m_entities[item.entity]);
        item.shape[0] = static_cast<float>(line.startPoint().x - node.x);
        item.shape[1] = static_cast<float>(line.startPoint().y - node.y);
        item.shape[2] = static_cast<float>(line.endPoint().x - node.x);
        item.shape[3] = static_cast<float>(line.endPoint().y - node.y);
    } else {
        item.shape[0] = floatBelow(loose.box.minX - node.x);
        item.shape[1] = floatBelow(loose.box.minY - node.y);
        item.shape[2] = floatAbove(loose.box.maxX - node.x);
        item.shape[3] = floatAbove(loose.box.maxY - node.y);
    }
    node.box.add(boxOf(node, item));
    node.hasHatches = node.hasHatches || item.kind == ItemKind::Hatch;
    if (node.items.empty() || !drawnBefore(item, node.items.back()))
        node.items.push_back(item);
    else
        node.items.insert(std::ranges::upper_bound(node.items, item, drawnBefore), item);
    noteNode(item.entity, index);
}

std::uint32_t DisplayIndex::childFor(const Node &node, const Extents &box)
{
    if (std::max(box.maxX - box.minX, box.maxY - box.minY) > node.half)
        return kStays;
    return (0.5 * (box.minX + box.maxX) >= node.x ? 1u : 0u) + (0.5 * (box.minY + box.maxY) >= node.y ? 2u : 0u);
}

std::uint32_t DisplayIndex::childOf(std::uint32_t index, std::uint32_t quadrant)
{
    if (const std::uint32_t known = m_nodes[index].children[quadrant])
        return known;
    const auto made = static_cast<std::uint32_t>(m_nodes.size());
    Node child;
    child.half = 0.5 * m_nodes[index].half;
    child.x = m_nodes[index].x + (quadrant & 1 ? child.half : -child.half);
    child.y = m_nodes[index].y + (quadrant & 2 ? child.half : -child.half);
    m_nodes[index].children[quadrant] = made;
    m_nodes.push_back(std::move(child));
    return made;
}

void DisplayIndex::insert(const Loose &loose)
{
    if (!isOnMap(loose.box))
        return put(kOutside, loose);
    growRoot(loose.box);
    std::uint32_t index = kRoot;
    while (m_nodes[index].divided) {
        m_nodes[index].box.add(loose.box);
        const std::uint32_t quadrant = childFor(m_nodes[index], loose.box);
        if (quadrant == kStays)
            break;
        index = childOf(index, quadrant);
    }
    put(index, loose);
    if (!m_nodes[index].divided && m_nodes[index].items.size() > kMostInNode && m_nodes[index].half > kSmallestHalf)
        divide(index);
}

void DisplayIndex::growRoot(const Extents &box)
{
    const double x = 0.5 * (box.minX + box.maxX), y = 0.5 * (box.minY + box.maxY);
    const double size = std::max(box.maxX - box.minX, box.maxY - box.minY);
    for (;;) {
        const Node &root = m_nodes[kRoot];
        if (size <= 2.0 * root.half && std::abs(x - root.x) <= root.half && std::abs(y - root.y) <= root.half)
            return;
        // The root becomes the corner of a larger one that lies away from the box.
        const std::uint32_t quadrant = (x < root.x ? 1u : 0u) + (y < root.y ? 2u : 0u);
        const auto moved = static_cast<std::uint32_t>(m_nodes.size());
        Node larger;
        larger.half = 2.0 * root.half;
        larger.x = root.x + (quadrant & 1 ? -root.half : root.half);
        larger.y = root.y + (quadrant & 2 ? -root.half : root.half);
        larger.box = root.box;
        larger.divided = true;
        larger.children[quadrant] = moved;
        m_nodes.push_back(std::exchange(m_nodes[kRoot], std::move(larger)));
        for (const Item &item : m_nodes[moved].items)
            if (!item.gone)
                moveTo(kRoot, moved, item.entity);
    }
}

void DisplayIndex::moveTo(std::uint32_t from, std::uint32_t to, std::uint32_t number)
{
    std::uint32_t &where = m_where[number];
    if (where == from) {
        where = to;
    } else if ((where & kSeveral) != 0) {
        auto &nodes = m_several[where & ~kSeveral];
        std::erase(nodes, from);
        if (std::ranges::find(nodes, to) == nodes.end())
            nodes.push_back(to);
    }
}

void DisplayIndex::divide(std::uint32_t index)
{
    std::vector<Loose> loose;
    for (const Item &item : m_nodes[index].items)
        if (!item.gone)
            loose.push_back({boxOf(m_nodes[index], item), item});
    m_nodes[index].items.clear();
    m_nodes[index].gone = 0;
    for (const Loose &it : loose) {
        std::uint32_t &where = m_where[it.item.entity];
        if (where == index)
            where = kNowhere;
        else if ((where & kSeveral) != 0)
            std::erase(m_several[where & ~kSeveral], index);
    }
    fill(index, loose, 0, loose.size());
}

void DisplayIndex::fill(std::uint32_t index, std::vector<Loose> &items, std::size_t begin, std::size_t end)
{
    for (std::size_t i = begin; i < end; ++i)
        m_nodes[index].box.add(items[i].box);
    std::size_t stays = end;
    if (end - begin > kMostInNode && m_nodes[index].half > kSmallestHalf) {
        m_nodes[index].divided = true;
        const auto partition = [&](std::size_t from, auto belongs) {
            return static_cast<std::size_t>(std::partition(items.begin() + static_cast<std::ptrdiff_t>(from),
                                                           items.begin() + static_cast<std::ptrdiff_t>(end), belongs) -
                                            items.begin());
        };
        const auto isIn = [&](std::uint32_t quadrant) {
            return [this, index, quadrant](const Loose &it) { return childFor(m_nodes[index], it.box) == quadrant; };
        };
        stays = partition(begin, isIn(kStays));
        std::size_t from = stays;
        for (std::uint32_t quadrant = 0; quadrant < 4; ++quadrant) {
            const std::size_t to = partition(from, isIn(quadrant));
            if (to > from)
                fill(childOf(index, quadrant), items, from, to);
            from = to;
        }
    }
    const auto first = items.begin() + static_cast<std::ptrdiff_t>(begin);
    const auto last = items.begin() + static_cast<std::ptrdiff_t>(stays);
    std::sort(first, last, [](const Loose &a, const Loose &b) { return drawnBefore(a.item, b.item); });
    m_nodes[index].items.reserve(m_nodes[index].items.size() + stays - begin);
    for (auto loose = first; loose != last; ++loose)
        put(index, *loose);
}

} // namespace velmor
