#include "host/boundary/Arrangement.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <tuple>

namespace velmor::boundary::detail {

namespace {

/// Directions nearer than this (radians, roughly) are told apart by their edges' ends, not by their tangents.
constexpr double kNearDirections = 0.08;

/// Angle from one direction clockwise to another, from 0 to 4, growing with the true angle.
double clockwise(const Vector &from, const Vector &to)
{
    const double c = dot(from.x, from.y, to.x, to.y), s = -cross(from.x, from.y, to.x, to.y);
    const double sum = std::abs(c) + std::abs(s);
    if (sum == 0.0)
        return 0.0;
    const double part = s / sum;
    return c < 0 ? 2.0 - part : s < 0 ? 4.0 + part : part;
}

bool within(double ax, double ay, double bx, double by, double reach)
{
    return (ax - bx) * (ax - bx) + (ay - by) * (ay - by) <= reach * reach;
}

bool isNear(const Stored &piece, double x, double y, double reach)
{
    if (piece.bulge != 0.0) {
        return within(piece.ax, piece.ay, x, y, reach) || within(piece.bx, piece.by, x, y, reach) ||
               distance(piece, x, y) <= reach;
    }
    if (x < piece.ax - reach || x > piece.bx + reach || y < std::min(piece.ay, piece.by) - reach ||
        y > std::max(piece.ay, piece.by) + reach) {
        return false;
    }
    const double ux = piece.bx - piece.ax, uy = piece.by - piece.ay, wx = x - piece.ax, wy = y - piece.ay;
    const double uu = ux * ux + uy * uy, s = ux * wx + uy * wy, rr = reach * reach;
    if (s < 0)
        return wx * wx + wy * wy <= rr;
    if (s > uu)
        return (wx - ux) * (wx - ux) + (wy - uy) * (wy - uy) <= rr;
    const double c = cross(ux, uy, wx, wy);
    return c * c <= rr * uu;
}

/// Along the piece from a to b, of any length.
Vector tangentAt(const Stored &piece, const Arrangement::Node &node)
{
    if (piece.bulge == 0.0)
        return {piece.bx - piece.ax, piece.by - piece.ay};
    return Frame(piece).tangent(node.x, node.y);
}

double curvatureOf(const Stored &piece)
{
    const double length = lengthOf(piece.bx - piece.ax, piece.by - piece.ay);
    return 4.0 * std::abs(piece.bulge) / (length * (1.0 + piece.bulge * piece.bulge));
}

} // namespace

void Arrangement::reset(double tolerance)
{
    m_tolerance = tolerance;
    m_perCell = 1.0 / (16.0 * tolerance);
    for (const List &l : m_lists)
        m_listOf[l.piece] = 0;
    m_listOf.resize(m_index.pieces().size(), 0);
    m_lists.clear();
    m_slots.clear();
    m_nodes.clear();
    m_stars.clear();
    m_cells.assign(1024, 0);
}

Curve Arrangement::curve(HalfEdge h) const
{
    const std::uint32_t s = h >> 1;
    const Slot &slot = m_slots[s];
    const Node &a = m_nodes[slot.node], &b = m_nodes[m_slots[s + 1].node];
    const Stored &piece = m_index.pieces()[slot.piece];
    double bulge = 0.0;
    if (piece.bulge != 0.0) {
        const List &l = m_lists[m_listOf[slot.piece] - 1];
        bulge = l.count == 2
                    ? piece.bulge
                    : std::copysign(bulgeOfChord(lengthOf(b.x - a.x, b.y - a.y), curvatureOf(piece)), piece.bulge);
    }
    return (h & 1U) == 0 ? Curve{a.x, a.y, b.x, b.y, bulge} : Curve{b.x, b.y, a.x, a.y, -bulge};
}

// ---- Nodes

double Arrangement::cell(double v) const
{
    // Adding and taking away so much rounds to whole numbers, without a call; adding 0 makes both zeros the same bits.
    constexpr double kRound = 6755399441055744.0;
    return (v * m_perCell + kRound) - kRound + 0.0;
}

std::size_t Arrangement::cellOf(double column, double row) const
{
    std::uint64_t key = std::bit_cast<std::uint64_t>(column) * 0x9e3779b97f4a7c15ULL;
    key ^= (std::bit_cast<std::uint64_t>(row) + (key >> 29)) * 0xbf58476d1ce4e5b9ULL;
    key ^= key >> 32;
    return static_cast<std::size_t>(key) & (m_cells.size() - 1);
}

std::uint32_t Arrangement::findNode(double x, double y) const
{
    const double c0 = cell(x - m_tolerance), c1 = cell(x + m_tolerance);
    const double r0 = cell(y - m_tolerance), r1 = cell(y + m_tolerance);
    std::uint32_t found = 0;
    const auto search = [&](double column, double row) {
        for (std::uint32_t n = m_cells[cellOf(column, row)]; n != 0; n = m_nodes[n - 1].nextInCell) {
            const Node &node = m_nodes[n - 1];
            // The eldest: it stays the same however many nodes come later.
            if (within(node.x, node.y, x, y, m_tolerance) && (found == 0 || n < found))
                found = n;
        }
    };
    search(c0, r0);
    if (c1 != c0)
        search(c1, r0);
    if (r1 != r0) {
        search(c0, r1);
        if (c1 != c0)
            search(c1, r1);
    }
    return found;
}

void Arrangement::growCells()
{
    m_cells.assign(m_cells.size() * 4, 0);
    for (std::uint32_t i = 0; i < m_nodes.size(); ++i) {
        Node &node = m_nodes[i];
        std::uint32_t &first = m_cells[cellOf(cell(node.x), cell(node.y))];
        node.nextInCell = first;
        first = i + 1;
    }
}

Vector Arrangement::settledPlace(double x, double y, const std::vector<std::uint32_t> &near) const
{
    // The place must not depend on which piece was reached first: a vertex goes before a crossing, the smaller
    // before the larger.
    Vector best{x, y};
    bool isVertex = false;
    const auto take = [&best](double px, double py) {
        if (std::tie(px, py) < std::tie(best.x, best.y))
            best = {px, py};
    };
    const std::vector<Stored> &pieces = m_index.pieces();
    int members = 0;
    for (const std::uint32_t n : near) {
        const Stored &p = pieces[n];
        if (!isNear(p, x, y, m_tolerance))
            continue;
        ++members;
        for (const auto &[px, py] : {Vector{p.ax, p.ay}, Vector{p.bx, p.by}}) {
            if (!within(px, py, x, y, m_tolerance))
                continue;
            if (isVertex)
                take(px, py);
            else
                best = {px, py};
            isVertex = true;
        }
    }
    if (isVertex || members < 3)
        return best;
    for (std::size_t i = 0; i < near.size(); ++i) {
        for (std::size_t j = i + 1; j < near.size(); ++j) {
            const Contacts c = contacts(pieces[near[i]], pieces[near[j]], m_tolerance);
            for (int m = 0; m < c.count; ++m) {
                const Vector &at = c.at[static_cast<std::size_t>(m)];
                if (within(at.x, at.y, x, y, m_tolerance))
                    take(at.x, at.y);
            }
        }
    }
    return best;
}

std::uint32_t Arrangement::nodeAt(double x, double y, std::uint32_t piece)
{
    if (const std::uint32_t known = findNode(x, y))
        return known - 1;
    const std::vector<Stored> &pieces = m_index.pieces();
    const double reach = 4.0 * m_tolerance;
    m_nearNode.clear();
    if (m_near.size() > 32) {
        m_index.inBox({x - reach, y - reach, x + reach, y + reach}, [&](std::uint32_t n) {
            if (isNear(pieces[n], x, y, reach))
                m_nearNode.push_back(n);
        });
    } else {
        if (isNear(pieces[piece], x, y, reach))
            m_nearNode.push_back(piece);
        for (const std::uint32_t n : m_near) {
            if (isNear(pieces[n], x, y, reach))
                m_nearNode.push_back(n);
        }
    }
    const Vector at = settledPlace(x, y, m_nearNode);
    if (m_nodes.size() * 2 >= m_cells.size())
        growCells();
    const auto number = static_cast<std::uint32_t>(m_nodes.size());
    std::uint32_t &first = m_cells[cellOf(cell(at.x), cell(at.y))];
    Node node{at.x, at.y, 0, static_cast<std::uint32_t>(m_stars.size()), 0, first};
    first = number + 1;
    for (const std::uint32_t n : m_nearNode) {
        if (isNear(pieces[n], at.x, at.y, 2.0 * m_tolerance))
            m_stars.push_back(n);
    }
    node.starCount = static_cast<std::uint32_t>(m_stars.size()) - node.starAt;
    m_nodes.push_back(node);
    return number;
}

// ---- Lists of pieces

void Arrangement::collectNear(const Stored &piece, std::uint32_t number)
{
    const double pad = 6.0 * m_tolerance;
    m_near.clear();
    const auto take = [this, number](std::uint32_t n) {
        if (n == number)
            return;
        m_near.push_back(n);
        __builtin_prefetch(&m_index.pieces()[n]);
        __builtin_prefetch(&m_index.pieces()[n].bulge);
        __builtin_prefetch(&m_listOf[n]);
    };
    Box box = boxOf(piece);
    const double width = box.x1 - box.x0, height = box.y1 - box.y0;
    if (piece.bulge == 0.0 && std::min(width, height) > 4.0 * m_index.spacing()) {
        m_index.alongLine(piece.ax, piece.ay, piece.bx, piece.by, pad, take);
    } else {
        m_index.inBox({box.x0 - pad, box.y0 - pad, box.x1 + pad, box.y1 + pad}, take);
    }
}

Arrangement::List Arrangement::list(std::uint32_t number)
{
    if (m_listOf[number] != 0)
        return m_lists[m_listOf[number] - 1];
    const Stored &piece = m_index.pieces()[number];
    collectNear(piece, number);
    const Frame frame(piece);
    m_meetings.clear();
    const auto meet = [this, &frame](double x, double y) {
        m_meetings.push_back({frame.along(x, y), x, y});
        // The places of nodes are spread over memory: ask for all of them before the first is needed.
        __builtin_prefetch(&m_cells[cellOf(cell(x), cell(y))]);
    };
    meet(piece.ax, piece.ay);
    meet(piece.bx, piece.by);
    for (const std::uint32_t n : m_near) {
        const Contacts c = contacts(piece, m_index.pieces()[n], m_tolerance);
        for (int i = 0; i < c.count; ++i)
            meet(c.at[static_cast<std::size_t>(i)].x, c.at[static_cast<std::size_t>(i)].y);
    }
    std::sort(m_meetings.begin(), m_meetings.end(), [](const Meeting &a, const Meeting &b) {
        return std::tie(a.along, a.x, a.y) < std::tie(b.along, b.x, b.y);
    });

    List made{number, static_cast<std::uint32_t>(m_slots.size()), 0};
    for (std::size_t i = 0; i < m_meetings.size(); ++i) {
        const Meeting &m = m_meetings[i];
        if (i > 0 && m.x == m_meetings[i - 1].x && m.y == m_meetings[i - 1].y)
            continue; // most pieces share their ends with others
        const std::uint32_t node = nodeAt(m.x, m.y, number);
        // The same node may come again after another one that lies within tolerance: the piece stays in it.
        for (std::size_t back = m_slots.size();
             back > made.first && m.along - m_slots[back - 1].along <= 8 * m_tolerance; --back) {
            if (m_slots[back - 1].node == node) {
                m_slots.resize(back - 1);
                break;
            }
        }
        m_slots.push_back({m.along, node, number, {0, 0}});
    }
    made.count = static_cast<std::uint32_t>(m_slots.size()) - made.first;
    m_lists.push_back(made);
    m_listOf[number] = static_cast<std::uint32_t>(m_lists.size());
    return made;
}

std::pair<HalfEdge, HalfEdge> Arrangement::halvesAt(std::uint32_t piece, std::uint32_t node)
{
    const List l = list(piece);
    std::uint32_t at = l.first;
    const std::uint32_t end = l.first + l.count;
    if (l.count > 16) {
        const Frame frame(m_index.pieces()[piece]);
        const double along = frame.along(m_nodes[node].x, m_nodes[node].y) - 16.0 * m_tolerance;
        at = static_cast<std::uint32_t>(std::lower_bound(m_slots.begin() + l.first, m_slots.begin() + end, along,
                                                         [](const Slot &s, double v) { return s.along < v; }) -
                                        m_slots.begin());
    }
    while (at < end && m_slots[at].node != node)
        ++at;
    if (at == end)
        return {kNoHalfEdge, kNoHalfEdge};
    return {at + 1 < end ? at << 1 : kNoHalfEdge, at > l.first ? ((at - 1) << 1) | 1U : kNoHalfEdge};
}

// ---- Edges around a node

Arrangement::Leaf Arrangement::leaf(HalfEdge h) const
{
    const Curve c = curve(h);
    return {h, endNode(h), c, c.startTangent()};
}

void Arrangement::collectLeaves(std::uint32_t node)
{
    m_leaves.clear();
    // Lists made on the way add nodes and stars: keep numbers, not references.
    const std::uint32_t begin = m_nodes[node].starAt, end = begin + m_nodes[node].starCount;
    for (std::uint32_t i = begin; i < end; ++i) {
        const auto [forward, backward] = halvesAt(m_stars[i], node);
        if (forward != kNoHalfEdge)
            m_leaves.push_back(leaf(forward));
        if (backward != kNoHalfEdge)
            m_leaves.push_back(leaf(backward));
    }
}

bool Arrangement::coincide(const Leaf &a, const Leaf &b) const
{
    return a.endNode == b.endNode &&
           std::abs(a.curve.bulge - b.curve.bulge) * a.curve.chord() * 0.5 <= 2.0 * m_tolerance;
}

double Arrangement::turn(const Leaf &a, const Leaf &b) const
{
    if (a.endNode == b.endNode)
        return a.curve.bulge - b.curve.bulge; // the rounder to the left runs to the right of its chord
    const double reach = std::min(a.curve.chord(), b.curve.chord());
    const Vector u = a.curve.towards(reach), v = b.curve.towards(reach);
    return cross(u.x, u.y, v.x, v.y);
}

bool Arrangement::comesFirst(HalfEdge a, HalfEdge b) const
{
    const std::uint32_t i = pieceOf(a), j = pieceOf(b);
    const Stored &p = m_index.pieces()[i], &q = m_index.pieces()[j];
    if (canonicalLess(p, q))
        return true;
    if (canonicalLess(q, p))
        return false;
    return std::tie(p.origin, i) < std::tie(q.origin, j);
}

HalfEdge Arrangement::firstClockwise(const Leaf &from, bool fromIsEdge)
{
    const Leaf *best = nullptr;
    double bestAngle = 0.0;
    for (const Leaf &l : m_leaves) {
        if (fromIsEdge && (l.half == from.half || coincide(l, from)))
            continue;
        double angle = clockwise(from.tangent, l.tangent);
        if (angle < kNearDirections || angle > 4.0 - kNearDirections)
            angle = turn(from, l) > 0 ? 4.0 : 0.0;
        if (best != nullptr && std::abs(angle - bestAngle) < kNearDirections) {
            if (coincide(l, *best)) {
                if (!comesFirst(l.half, best->half))
                    continue;
            } else if (turn(*best, l) <= 0) {
                continue;
            }
        } else if (best != nullptr && angle > bestAngle) {
            continue;
        }
        best = &l;
        bestAngle = angle;
    }
    return best != nullptr ? best->half : kNoHalfEdge;
}

HalfEdge Arrangement::quickNext(HalfEdge h)
{
    // Most nodes are corners of a few pieces in clearly different directions; only the piece that is taken needs its
    // list then.
    const std::uint32_t at = endNode(h), piece = pieceOf(h);
    const Node &node = m_nodes[at];
    if (node.starCount > 8)
        return kNoHalfEdge;
    const bool forward = (h & 1U) == 0;
    Vector from = tangentAt(m_index.pieces()[piece], node);
    if (forward)
        from = {-from.x, -from.y};
    double angles[16];
    int count = 0;
    double bestAngle = 5.0;
    std::uint32_t best = 0;
    bool bestForward = false;
    for (std::uint32_t i = node.starAt; i < node.starAt + node.starCount; ++i) {
        const std::uint32_t number = m_stars[i];
        const Stored &p = m_index.pieces()[number];
        const bool atA = within(p.ax, p.ay, node.x, node.y, 2.0 * m_tolerance);
        const bool atB = within(p.bx, p.by, node.x, node.y, 2.0 * m_tolerance);
        if (atA && atB)
            return kNoHalfEdge;
        const Vector t = tangentAt(p, node);
        const auto consider = [&](const Vector &direction, bool goesForward) {
            if (number == piece && goesForward != forward)
                return;
            const double angle = clockwise(from, direction);
            angles[count++] = angle;
            if (angle < bestAngle) {
                bestAngle = angle;
                best = number;
                bestForward = goesForward;
            }
        };
        if (!atB)
            consider(t, true);
        if (!atA)
            consider({-t.x, -t.y}, false);
    }
    if (count == 0)
        return twin(h);
    int close = 0;
    for (int i = 0; i < count; ++i) {
        if (angles[i] < kNearDirections || angles[i] > 4.0 - kNearDirections)
            return kNoHalfEdge;
        close += angles[i] < bestAngle + kNearDirections ? 1 : 0;
    }
    if (close > 1)
        return kNoHalfEdge;
    const auto [ahead, back] = halvesAt(best, at);
    return bestForward ? ahead : back;
}

HalfEdge Arrangement::next(HalfEdge h)
{
    const HalfEdge quick = quickNext(h);
    if (quick != kNoHalfEdge)
        return quick;
    collectLeaves(endNode(h));
    const HalfEdge found = firstClockwise(leaf(twin(h)), true);
    return found != kNoHalfEdge ? found : twin(h);
}

bool Arrangement::isEndAt(const Stored &piece, const Node &node) const
{
    return within(piece.ax, piece.ay, node.x, node.y, 2.0 * m_tolerance) ||
           within(piece.bx, piece.by, node.x, node.y, 2.0 * m_tolerance);
}

bool Arrangement::standsAlone(HalfEdge h) const
{
    const Node &node = m_nodes[startNode(h)];
    const std::uint32_t piece = pieceOf(h);
    Vector own = tangentAt(m_index.pieces()[piece], node);
    if ((h & 1U) != 0)
        own = {-own.x, -own.y};
    for (std::uint32_t i = node.starAt; i < node.starAt + node.starCount; ++i) {
        if (m_stars[i] == piece)
            continue;
        const Stored &other = m_index.pieces()[m_stars[i]];
        const Vector t = tangentAt(other, node);
        const double angle = clockwise(own, t);
        const bool isAlong = angle < kNearDirections || angle > 4.0 - kNearDirections;
        const bool isAgainst = std::abs(angle - 2.0) < kNearDirections;
        if ((isAlong && !within(other.bx, other.by, node.x, node.y, 2.0 * m_tolerance)) ||
            (isAgainst && !within(other.ax, other.ay, node.x, node.y, 2.0 * m_tolerance)))
            return false;
    }
    return true;
}

HalfEdge Arrangement::representative(HalfEdge h)
{
    if (standsAlone(h))
        return h;
    collectLeaves(startNode(h));
    const Leaf own = leaf(h);
    HalfEdge best = h;
    for (const Leaf &l : m_leaves) {
        if (l.half != h && coincide(l, own) && comesFirst(l.half, best))
            best = l.half;
    }
    return best;
}

HalfEdge Arrangement::leaving(std::uint32_t node, Vector direction, double reach)
{
    const double length = lengthOf(direction.x, direction.y);
    const Vector unit{direction.x / length, direction.y / length};
    const Node &n = m_nodes[node];
    const Leaf from{kNoHalfEdge, 0xffffffffU, {n.x, n.y, n.x + unit.x * reach, n.y + unit.y * reach, 0.0}, unit};
    collectLeaves(node);
    return firstClockwise(from, false);
}

HalfEdge Arrangement::facing(std::uint32_t number, double x, double y, double fromX, double fromY)
{
    const List l = list(number);
    if (l.count < 2)
        return kNoHalfEdge;
    const Stored &piece = m_index.pieces()[number];
    const Frame frame(piece);
    const double along = frame.along(x, y);
    std::uint32_t s =
        static_cast<std::uint32_t>(std::upper_bound(m_slots.begin() + l.first, m_slots.begin() + l.first + l.count,
                                                    along, [](double v, const Slot &slot) { return v < slot.along; }) -
                                   m_slots.begin());
    s = std::clamp(s, l.first + 1, l.first + l.count - 1) - 1;
    for (const std::uint32_t end : {s, s + 1}) {
        const std::uint32_t number2 = m_slots[end].node;
        const Node &n = m_nodes[number2];
        if (within(n.x, n.y, x, y, 4.0 * m_tolerance)) {
            const Vector direction{fromX - n.x, fromY - n.y};
            return leaving(number2, direction, lengthOf(direction.x, direction.y));
        }
    }
    bool isLeft = frame.beside(fromX, fromY) > 0;
    if (piece.bulge != 0.0) {
        const Vector t = frame.tangent(x, y);
        const double side = cross(t.x, t.y, fromX - x, fromY - y);
        // A glance along the tangent comes from outside of the circle.
        isLeft = std::abs(side) > 1e-6 * lengthOf(fromX - x, fromY - y) ? side > 0 : piece.bulge < 0;
    }
    return representative((s << 1) | (isLeft ? 0U : 1U));
}

bool Arrangement::endsLoose(std::uint32_t piece, bool atA)
{
    const List l = list(piece);
    if (l.count < 2)
        return false;
    const HalfEdge h = atA ? (l.first << 1) | 1U : (l.first + l.count - 2) << 1;
    return next(h) == twin(h);
}

bool Arrangement::mayRunThrough(std::uint32_t number, const Vector &direction) const
{
    // A piece in that direction that does not end here, or that was cut here.
    const Node &node = m_nodes[number];
    const std::vector<Stored> &pieces = m_index.pieces();
    for (std::uint32_t i = node.starAt; i < node.starAt + node.starCount; ++i) {
        const std::uint32_t n = m_stars[i];
        const Vector t = tangentAt(pieces[n], node);
        if (std::abs(cross(t.x, t.y, direction.x, direction.y)) > kNearDirections * std::sqrt(dot(t.x, t.y, t.x, t.y)))
            continue;
        if (!isEndAt(pieces[n], node))
            return true;
        for (std::uint32_t j = node.starAt; j < node.starAt + node.starCount; ++j) {
            if (j != i && pieces[m_stars[j]].origin == pieces[n].origin)
                return true;
        }
    }
    return false;
}

bool Arrangement::runsThrough(HalfEdge first, HalfEdge second)
{
    const std::uint32_t p = pieceOf(first), q = pieceOf(second);
    if (p == q)
        return (first & 1U) == (second & 1U);
    const Stored &a = m_index.pieces()[p], &b = m_index.pieces()[q];
    if (a.origin == b.origin)
        return true;
    const Leaf back = leaf(twin(first)), ahead = leaf(second);
    if (dot(back.tangent.x, back.tangent.y, ahead.tangent.x, ahead.tangent.y) > -0.999)
        return false;
    if (!mayRunThrough(startNode(second), ahead.tangent))
        return false;
    collectLeaves(startNode(second));
    for (const Leaf &l : m_leaves) {
        if (!coincide(l, back))
            continue;
        for (const Leaf &m : m_leaves) {
            if (l.half != m.half && coincide(m, ahead) &&
                m_index.pieces()[pieceOf(l.half)].origin == m_index.pieces()[pieceOf(m.half)].origin)
                return true;
        }
    }
    return false;
}

bool Arrangement::isVertex(std::uint32_t number) const
{
    const Node &node = m_nodes[number];
    for (std::uint32_t i = 0; i < node.starCount; ++i) {
        const Stored &p = m_index.pieces()[m_stars[node.starAt + i]];
        if (!isEndAt(p, node))
            continue;
        bool isCut = false;
        for (std::uint32_t j = 0; j < node.starCount; ++j) {
            const Stored &q = m_index.pieces()[m_stars[node.starAt + j]];
            isCut = isCut || (i != j && p.origin == q.origin && isEndAt(q, node));
        }
        if (!isCut)
            return true;
    }
    return false;
}

std::size_t Arrangement::memoryBytes() const
{
    return (m_listOf.capacity() + m_stars.capacity() + m_cells.capacity()) * sizeof(std::uint32_t) +
           m_lists.capacity() * sizeof(List) + m_slots.capacity() * sizeof(Slot) + m_nodes.capacity() * sizeof(Node);
}

} // namespace velmor::boundary::detail
