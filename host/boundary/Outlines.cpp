#include "host/boundary/Outlines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace velmor::boundary::detail {

namespace {

/// Half-edges that a walk takes before it first looks whether it is outside: outlines up to here are known whole.
constexpr std::size_t kWalkedWhole = 8192;

} // namespace

void Outlines::reset()
{
    m_outlines.clear();
}

std::uint32_t Outlines::of(HalfEdge h)
{
    const std::uint32_t known = m_arrangement.outlineOf(h);
    return known != 0 ? known : walk(h);
}

std::uint32_t Outlines::walk(HalfEdge start)
{
    const auto number = static_cast<std::uint32_t>(m_outlines.size() + 1);
    m_outlines.emplace_back();
    Outline &outline = m_outlines.back();
    outline.rightX = -std::numeric_limits<double>::infinity();
    m_path.clear();
    std::size_t lookAt = kWalkedWhole;
    HalfEdge h = start;
    // Where tolerance makes the order around nodes contradict itself a walk may run into itself elsewhere than at its
    // start; it ends there.
    while (m_arrangement.outlineOf(h) == 0) {
        m_arrangement.outlineOf(h) = number;
        m_path.push_back(h);
        const Curve c = m_arrangement.curve(h);
        if (c.x0 > outline.rightX) {
            outline.rightX = c.x0;
            outline.rightY = c.y0;
        }
        if (c.bulge != 0.0) {
            const Stored turned = c.x0 > c.x1 || (c.x0 == c.x1 && c.y0 > c.y1)
                                      ? Stored{-c.x0, -c.y0, -c.x1, -c.y1, c.bulge, 0, 0}
                                      : Stored{-c.x1, -c.y1, -c.x0, -c.y0, -c.bulge, 0, 0};
            const Extreme e = leftmost(turned);
            if (-e.x > outline.rightX) {
                outline.rightX = -e.x;
                outline.rightY = -e.y;
            }
        }
        const HalfEdge following = m_arrangement.next(h);
        if (following == twin(h))
            outline.looseEnds.push_back(h);
        h = following;
        if (m_path.size() == lookAt) {
            lookAt *= 2;
            if (looksOutside(number)) {
                outline.isPart = true;
                outline.around = Outline::kOutside;
                return number;
            }
        }
    }
    const std::uint32_t met = m_arrangement.outlineOf(h);
    if (met != number && m_outlines[met - 1].isPart) {
        outline.isPart = true; // the rest of one that was left
        outline.around = Outline::kOutside;
    } else {
        cutRings(outline);
    }
    return number;
}

bool Outlines::looksOutside(std::uint32_t number) const
{
    // What reaches farthest is the first to look out.
    const std::vector<Arrangement::Node> &nodes = m_arrangement.nodes();
    std::array<std::uint32_t, 4> farthest;
    farthest.fill(m_arrangement.startNode(m_path.front()));
    for (const HalfEdge h : m_path) {
        const std::uint32_t n = m_arrangement.startNode(h);
        if (nodes[n].x > nodes[farthest[0]].x)
            farthest[0] = n;
        if (nodes[n].y > nodes[farthest[1]].y)
            farthest[1] = n;
        if (nodes[n].x < nodes[farthest[2]].x)
            farthest[2] = n;
        if (nodes[n].y < nodes[farthest[3]].y)
            farthest[3] = n;
    }
    constexpr Vector kAxes[4] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    for (std::size_t i = 0; i < 4; ++i) {
        if (m_outlook(number, farthest[i], kAxes[i]))
            return true;
    }
    return false;
}

void Outlines::cutRings(Outline &outline)
{
    // Cut the walk at every node that it comes to again: loops of one edge there and back are dangling ends or bridges
    // and go; each other loop is a ring.
    m_stack.clear();
    m_loops.clear();
    m_loopAt.clear();
    std::vector<Arrangement::Node> &nodes = m_arrangement.nodes();
    const auto startOf = [this](HalfEdge h) { return m_arrangement.startNode(h); };
    const auto pop = [&](std::size_t from) {
        const bool thereAndBack = m_stack.size() - from == 2 && m_stack[from] == twin(m_stack[from + 1]);
        if (!thereAndBack) {
            m_loopAt.push_back(m_loops.size());
            m_loops.insert(m_loops.end(), m_stack.begin() + static_cast<std::ptrdiff_t>(from), m_stack.end());
        }
        for (std::size_t i = from; i < m_stack.size(); ++i)
            nodes[startOf(m_stack[i])].mark = 0;
        m_stack.resize(from);
    };
    for (const HalfEdge h : m_path) {
        if (const std::uint32_t mark = nodes[startOf(h)].mark; mark != 0)
            pop(mark - 1);
        m_stack.push_back(h);
        nodes[startOf(h)].mark = static_cast<std::uint32_t>(m_stack.size());
    }
    if (!m_stack.empty()) {
        const std::uint32_t mark = nodes[m_arrangement.endNode(m_stack.back())].mark;
        if (mark != 0)
            pop(mark - 1);
    }
    for (const HalfEdge h : m_stack)
        nodes[startOf(h)].mark = 0;
    m_loopAt.push_back(m_loops.size());

    double total = 0.0, largest = 0.0;
    Ring ring;
    for (std::size_t i = 0; i + 1 < m_loopAt.size(); ++i) {
        HalfEdge *begin = m_loops.data() + m_loopAt[i], *end = m_loops.data() + m_loopAt[i + 1];
        double area = 0.0;
        const Curve first = m_arrangement.curve(*begin);
        for (const HalfEdge *h = begin; h != end; ++h) {
            const Curve c = m_arrangement.curve(*h);
            area += 0.5 * cross(c.x0 - first.x0, c.y0 - first.y0, c.x1 - first.x0, c.y1 - first.y0);
            if (c.bulge != 0.0)
                area += bulgeArea(c.chord(), c.bulge);
        }
        total += area;
        if (area > 0) {
            if (area <= largest)
                continue;
            largest = area;
            makeRing(begin, end, outline.outer);
        } else if (area < 0) {
            std::reverse(begin, end);
            std::transform(begin, end, begin, twin);
            makeRing(begin, end, ring);
            outline.holes.push_back(ring);
        }
    }
    outline.isFace = total > 0;
}

void Outlines::makeRing(const HalfEdge *begin, const HalfEdge *end, Ring &ring)
{
    const auto count = static_cast<std::size_t>(end - begin);
    m_keep.assign(count, 0);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        m_keep[i] = !m_arrangement.runsThrough(begin[i > 0 ? i - 1 : count - 1], begin[i]);
        kept += m_keep[i] != 0;
    }
    if (kept < 2) {
        // Coincident circles that start in different places run through each other's ends.
        kept = 0;
        for (std::size_t i = 0; i < count; ++i) {
            m_keep[i] = m_arrangement.isVertex(m_arrangement.startNode(begin[i]));
            kept += m_keep[i] != 0;
        }
        if (kept < 2)
            m_keep.assign(count, 1);
    }
    std::size_t first = count;
    double lowX = 0.0, lowY = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const Arrangement::Node &n = m_arrangement.nodes()[m_arrangement.startNode(begin[i])];
        if (m_keep[i] != 0 && (first == count || n.y < lowY || (n.y == lowY && n.x < lowX))) {
            first = i;
            lowX = n.x;
            lowY = n.y;
        }
    }
    ring.clear();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = (first + i) % count;
        const Curve c = m_arrangement.curve(begin[at]);
        if (m_keep[at] != 0)
            ring.push_back({c.x0, c.y0, c.bulge});
        else if (c.bulge != 0.0) // tangents of quarter angles add up like this
            ring.back().bulge = (ring.back().bulge + c.bulge) / (1.0 - ring.back().bulge * c.bulge);
    }
}

std::size_t Outlines::memoryBytes() const
{
    std::size_t bytes = m_outlines.size() * sizeof(Outline);
    for (const Outline &o : m_outlines) {
        bytes += (o.outer.capacity()) * sizeof(RingVertex) + o.looseEnds.capacity() * sizeof(std::uint32_t);
        for (const std::vector<Ring> *rings : {&o.holes, &o.islands}) {
            for (const Ring &r : *rings)
                bytes += sizeof(Ring) + r.capacity() * sizeof(RingVertex);
        }
    }
    return bytes;
}

} // namespace velmor::boundary::detail
