#include "host/boundary/RegionFinder.h"

#include "host/boundary/Gaps.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmor::boundary::detail {

namespace {

constexpr Vector kDirections[4] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};

} // namespace

RegionFinder::RegionFinder(const PieceIndex &index)
    : m_index(index), m_arrangement(index),
      m_outlines(m_arrangement, [this](std::uint32_t number, std::uint32_t node, const Vector &direction) {
          return seesOutside(number, node, direction);
      })
{
}

bool RegionFinder::seesOutside(std::uint32_t number, std::uint32_t node, const Vector &direction)
{
    const Vector from{m_arrangement.nodes()[node].x, m_arrangement.nodes()[node].y};
    const Box &all = m_index.bounds();
    const HalfEdge h = m_arrangement.leaving(node, direction, std::max(all.x1 - all.x0, all.y1 - all.y0));
    if (h == kNoHalfEdge || m_arrangement.outlineOf(h) != number)
        return false; // it is another face that lies there
    const std::optional<Hit> hit = look(from, direction, 2.0 * m_tolerance);
    if (!hit)
        return true;
    const HalfEdge across = m_arrangement.facing(hit->piece, hit->x, hit->y, from.x, from.y);
    const std::uint32_t other = across == kNoHalfEdge ? 0 : m_arrangement.outlineOf(across);
    return other != 0 && other != number && !m_outlines[other].isFace && m_outlines[other].around == Outline::kOutside;
}

void RegionFinder::reset(double tolerance)
{
    m_tolerance = tolerance;
    m_arrangement.reset(tolerance);
    m_outlines.reset();
}

bool RegionFinder::isOnEdge(const Vector &p) const
{
    bool on = false;
    m_index.inBox({p.x - m_tolerance, p.y - m_tolerance, p.x + m_tolerance, p.y + m_tolerance},
                  [&](std::uint32_t n) { on = on || distance(m_index.pieces()[n], p.x, p.y) <= m_tolerance; });
    return on;
}

std::optional<RegionFinder::Hit> RegionFinder::look(const Vector &from, const Vector &d, double beyond) const
{
    const Box &all = m_index.bounds();
    const double toX = d.x > 0 ? (all.x1 - from.x) / d.x : d.x < 0 ? (all.x0 - from.x) / d.x : HUGE_VAL;
    const double toY = d.y > 0 ? (all.y1 - from.y) / d.y : d.y < 0 ? (all.y0 - from.y) / d.y : HUGE_VAL;
    return look(from, d, beyond, std::min(toX, toY) + 2.0 * m_tolerance);
}

std::optional<RegionFinder::Hit> RegionFinder::look(const Vector &from, const Vector &d, double beyond,
                                                    double within) const
{
    const double pad = 2.0 * m_tolerance;
    double nearest = within;
    std::optional<Hit> hit;
    double begin = beyond;
    // In steps that double, so that a near piece is found without asking for the far ones.
    for (double step = 2.0 * m_index.spacing(); begin <= nearest; step *= 2.0) {
        const double stop = std::min(begin + step, within);
        const double ax = from.x + begin * d.x, ay = from.y + begin * d.y;
        const double bx = from.x + stop * d.x, by = from.y + stop * d.y;
        m_index.inBox({std::min(ax, bx) - pad, std::min(ay, by) - pad, std::max(ax, bx) + pad, std::max(ay, by) + pad},
                      [&](std::uint32_t n) {
                          const LineHits hits = lineHits(m_index.pieces()[n], from, d, pad);
                          for (int i = 0; i < hits.count; ++i) {
                              const double t = hits.at[static_cast<std::size_t>(i)];
                              if (t > beyond && t <= nearest) {
                                  nearest = t;
                                  hit = {n, from.x + t * d.x, from.y + t * d.y};
                              }
                          }
                      });
        if (stop >= within)
            break;
        begin = stop;
    }
    return hit;
}

std::uint32_t RegionFinder::outlineAt(const Hit &hit, const Vector &from)
{
    const HalfEdge h = m_arrangement.facing(hit.piece, hit.x, hit.y, from.x, from.y);
    return h == kNoHalfEdge ? 0 : m_outlines.of(h);
}

std::uint32_t RegionFinder::faceAround(const Vector &point, const Vector &direction)
{
    std::vector<std::uint32_t> passed;
    std::uint32_t face = Outline::kOutside;
    Vector from = point;
    double beyond = 0.0;
    for (std::optional<Hit> hit = look(from, direction, beyond); hit; hit = look(from, kDirections[0], beyond)) {
        const std::uint32_t number = outlineAt(*hit, from);
        if (number == 0) {
            from = {hit->x, hit->y}; // a piece that vanished in a node
            beyond = 2.0 * m_tolerance;
            continue;
        }
        const Outline &outline = m_outlines[number];
        if (outline.isFace) {
            face = number;
            break;
        }
        if (outline.around != Outline::kUnknown) {
            face = outline.around;
            break;
        }
        if (std::find(passed.begin(), passed.end(), number) != passed.end())
            break;
        passed.push_back(number);
        // Go on from the rightmost point: nothing of this part lies beyond it, but the face around it does.
        from = {outline.rightX, outline.rightY};
        beyond = 2.0 * m_tolerance;
    }
    for (const std::uint32_t number : passed)
        m_outlines[number].around = face;
    return face;
}

Region RegionFinder::regionAt(Point at, const RegionOptions &options)
{
    Region region;
    if (!std::isfinite(at.x) || !std::isfinite(at.y) || m_index.size() == 0)
        return region;
    const Vector point{at.x, at.y};
    if (isOnEdge(point)) {
        region.status = Status::OnEdge;
        return region;
    }
    for (const Vector &direction : kDirections) {
        const std::uint32_t face = faceAround(point, direction);
        if (face == Outline::kOutside)
            break;
        // Where tolerance bent the linework a ray may have been misled; another one sees other pieces.
        if (RingLocator(m_outlines[face].outer, 0.0).locate(point.x, point.y) == RingLocator::Place::Outside)
            continue;
        if (options.islands && !m_outlines[face].islandsKnown)
            findIslands(face);
        const Outline &outline = m_outlines[face];
        region.status = Status::Found;
        region.outer = outline.outer;
        if (options.islands)
            region.islands = outline.islands;
        return region;
    }
    explain(point, region);
    return region;
}

void RegionFinder::findIslands(std::uint32_t face)
{
    const double pad = 2.0 * m_tolerance;
    const RingLocator outer(m_outlines[face].outer, pad);
    std::vector<RingLocator> holes;
    for (const Ring &hole : m_outlines[face].holes)
        holes.emplace_back(hole, pad);

    struct Candidate {
        Extreme left;
        double px, py; ///< a point well on the piece
        std::uint32_t piece;
    };
    std::vector<Candidate> inside;
    const Box &box = outer.box();
    m_index.within(box, [&](std::uint32_t n) {
        const Stored &piece = m_index.pieces()[n];
        const Box own = boxOf(piece);
        if (own.x0 < box.x0 || own.y0 < box.y0 || own.x1 > box.x1 || own.y1 > box.y1)
            return;
        bool isOfFace = false;
        m_arrangement.outlinesOfPiece(n, [&](std::uint32_t number) { isOfFace = isOfFace || number == face; });
        if (isOfFace)
            return;
        const double px = piece.ax + (piece.bx - piece.ax) * 0.5 + piece.bulge * 0.5 * (piece.by - piece.ay);
        const double py = piece.ay + (piece.by - piece.ay) * 0.5 - piece.bulge * 0.5 * (piece.bx - piece.ax);
        if (outer.locate(px, py) != RingLocator::Place::Inside)
            return;
        for (const RingLocator &hole : holes) {
            if (hole.locate(px, py) != RingLocator::Place::Outside)
                return;
        }
        inside.push_back({leftmost(piece), px, py, n});
    });
    // From the left: the leftmost point of what is left over lies on the outline of its part.
    std::sort(inside.begin(), inside.end(), [](const Candidate &a, const Candidate &b) {
        return std::tie(a.left.x, a.left.y, a.piece) < std::tie(b.left.x, b.left.y, b.piece);
    });
    std::vector<Ring> islands = m_outlines[face].holes;
    std::vector<std::uint32_t> seen;
    std::vector<RingLocator> open; // islands that reach farther right
    for (const Candidate &c : inside) {
        const auto isSeen = [&](std::uint32_t number) {
            return number == face || std::find(seen.begin(), seen.end(), number) != seen.end();
        };
        bool isDone = false;
        m_arrangement.outlinesOfPiece(c.piece, [&](std::uint32_t number) { isDone = isDone || isSeen(number); });
        if (isDone)
            continue;
        std::erase_if(open, [&](const RingLocator &r) { return r.box().x1 < c.left.x - pad; });
        for (const RingLocator &ring : open)
            isDone = isDone || ring.locate(c.px, c.py) != RingLocator::Place::Outside;
        if (isDone)
            continue;
        // It may coincide with a piece that was walked in its place.
        m_arrangement.outlinesAlongPiece(c.piece, [&](std::uint32_t number) { isDone = isDone || isSeen(number); });
        if (isDone)
            continue;
        const double west = std::max(box.x1 - box.x0, box.y1 - box.y0);
        const HalfEdge h = m_arrangement.facing(c.piece, c.left.x, c.left.y, c.left.x - west, c.left.y);
        if (h == kNoHalfEdge)
            continue;
        const std::uint32_t number = m_outlines.of(h);
        if (m_outlines[number].isFace || isSeen(number))
            continue;
        seen.push_back(number);
        if (m_outlines[number].holes.empty())
            continue;
        const RingVertex &corner = m_outlines[number].holes[0][0];
        if (outer.locate(corner.x, corner.y) != RingLocator::Place::Inside)
            continue;
        m_outlines[number].around = face;
        for (const Ring &ring : m_outlines[number].holes) {
            islands.push_back(ring);
            open.emplace_back(ring, pad);
        }
    }
    std::sort(islands.begin(), islands.end(), [](const Ring &a, const Ring &b) {
        return std::tie(a[0].y, a[0].x, a[0].bulge) < std::tie(b[0].y, b[0].x, b[0].bulge);
    });
    m_outlines[face].islands = std::move(islands);
    m_outlines[face].islandsKnown = true;
}

std::vector<HalfEdge> RegionFinder::looseEndsSeen(const Vector &point)
{
    // What stands in the four directions, closed parts that hide nothing but what is behind them passed over.
    constexpr int kPassedMost = 8, kSidesLeast = 3;
    std::vector<std::uint32_t> seen;
    int sides = 0;
    for (const Vector &direction : kDirections) {
        double beyond = 0.0;
        bool isSide = false;
        for (int passed = 0; passed < kPassedMost; ++passed) {
            const std::optional<Hit> hit = look(point, direction, beyond);
            if (!hit)
                break;
            isSide = true;
            const double away = dot(hit->x - point.x, hit->y - point.y, direction.x, direction.y);
            const Vector before{hit->x - direction.x * std::min(away, m_index.spacing()),
                                hit->y - direction.y * std::min(away, m_index.spacing())};
            const std::uint32_t number = outlineAt(*hit, passed == 0 ? point : before);
            beyond = away + 2.0 * m_tolerance;
            if (number == 0 || m_outlines[number].isFace)
                continue;
            if (std::find(seen.begin(), seen.end(), number) == seen.end())
                seen.push_back(number);
            if (!m_outlines[number].looseEnds.empty())
                break;
        }
        sides += isSide ? 1 : 0;
    }
    std::vector<HalfEdge> ends;
    if (sides >= kSidesLeast) {
        for (const std::uint32_t number : seen)
            ends.insert(ends.end(), m_outlines[number].looseEnds.begin(), m_outlines[number].looseEnds.end());
    }
    return ends;
}

void RegionFinder::explain(const Vector &point, Region &region)
{
    constexpr std::size_t kMostGaps = 8;
    std::vector<HalfEdge> ends = looseEndsSeen(point);
    const auto place = [this](HalfEdge h) {
        const Arrangement::Node &n = m_arrangement.nodes()[m_arrangement.endNode(h)];
        return Point{n.x, n.y};
    };
    const auto apart = [](const Point &a, const Point &b) { return lengthOf(a.x - b.x, a.y - b.y); };
    std::sort(ends.begin(), ends.end(), [&](HalfEdge a, HalfEdge b) {
        const Point p = place(a), q = place(b);
        const double toP = apart(p, {point.x, point.y}), toQ = apart(q, {point.x, point.y});
        return std::tie(toP, p.x, p.y) < std::tie(toQ, q.x, q.y);
    });
    for (const HalfEdge h : ends) {
        if (region.gaps.size() >= kMostGaps)
            break;
        Gap gap{place(h), {}, HUGE_VAL};
        for (const HalfEdge other : ends) {
            const double width = apart(gap.from, place(other));
            if (other != h && width < gap.width) {
                gap.to = place(other);
                gap.width = width;
            }
        }
        const Vector back = m_arrangement.curve(twin(h)).startTangent(), ahead{-back.x, -back.y};
        const Vector from{gap.from.x, gap.from.y};
        const std::optional<Hit> wall = std::isinf(gap.width) ? look(from, ahead, 2.0 * m_tolerance)
                                                              : look(from, ahead, 2.0 * m_tolerance, gap.width);
        if (wall) {
            gap.to = {wall->x, wall->y};
            gap.width = apart(gap.from, gap.to);
        }
        const bool isKnown = std::any_of(region.gaps.begin(), region.gaps.end(),
                                         [&gap](const Gap &g) { return g.to == gap.from && g.from == gap.to; });
        if (!std::isinf(gap.width) && !isKnown)
            region.gaps.push_back(gap);
    }
    region.status = region.gaps.empty() ? Status::NotEnclosed : Status::Open;
}

std::vector<Piece> RegionFinder::jointsFor(double gapTolerance)
{
    return joints(m_index, m_arrangement, gapTolerance);
}

std::size_t RegionFinder::memoryBytes() const
{
    return m_arrangement.memoryBytes() + m_outlines.memoryBytes();
}

} // namespace velmor::boundary::detail
