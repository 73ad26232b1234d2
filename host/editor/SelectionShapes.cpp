#include "host/editor/SelectionShapes.h"

#include "host/editor/CurvePieces.h"
#include "host/editor/DisplayIndex.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

using boundary::Piece;
using boundary::Point;

double sideOf(Point a, Point b, Point p)
{
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

bool isBetween(Point a, Point b, Point p)
{
    return p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) && p.y >= std::min(a.y, b.y) &&
           p.y <= std::max(a.y, b.y);
}

/// Whether two segments have a point in common, ends included.
bool meet(Point a, Point b, Point c, Point d)
{
    const double abc = sideOf(a, b, c), abd = sideOf(a, b, d), cda = sideOf(c, d, a), cdb = sideOf(c, d, b);
    if (((abc > 0.0) != (abd > 0.0)) && ((cda > 0.0) != (cdb > 0.0)) && abc != 0.0 && abd != 0.0 && cda != 0.0 &&
        cdb != 0.0)
        return true;
    return (abc == 0.0 && isBetween(a, b, c)) || (abd == 0.0 && isBetween(a, b, d)) ||
           (cda == 0.0 && isBetween(c, d, a)) || (cdb == 0.0 && isBetween(c, d, b));
}

class Shape {
public:
    Shape(SelectedBy how, std::span<const AcGePoint3d> points) : m_how(how)
    {
        for (const AcGePoint3d &p : points) {
            m_points.push_back({p.x, p.y});
            m_extents.add(p.x, p.y);
        }
        if (how != SelectedBy::Fence && m_points.size() > 1)
            m_points.push_back(m_points.front());
    }

    const Extents &extents() const { return m_extents; }

    bool selects(const Extents &extents) const
    {
        return !extents.isEmpty() && extents.minX <= m_extents.maxX && extents.maxX >= m_extents.minX &&
               extents.minY <= m_extents.maxY && extents.maxY >= m_extents.minY &&
               (m_how != SelectedBy::Inside ||
                (m_extents.contains(extents.minX, extents.minY) && m_extents.contains(extents.maxX, extents.maxY)));
    }

    /// With all the segments that an entity draws.
    template <class Segments>
    bool selects(const Segments &segments) const
    {
        const auto crosses = [this](const auto &s) {
            for (std::size_t i = 0; i + 1 < m_points.size(); ++i)
                if (meet(m_points[i], m_points[i + 1], s.first, s.second))
                    return true;
            return false;
        };
        const bool isCrossed = std::ranges::any_of(segments, crosses);
        if (m_how == SelectedBy::Fence)
            return isCrossed;
        const auto liesIn = [this](const auto &s) { return contains(s.first); };
        if (m_how == SelectedBy::Crossing)
            return isCrossed || std::ranges::any_of(segments, liesIn);
        return !segments.empty() && !isCrossed && std::ranges::all_of(segments, liesIn);
    }

private:
    bool contains(Point p) const
    {
        bool inside = false;
        for (std::size_t i = 0; i + 1 < m_points.size(); ++i) {
            const Point a = m_points[i], b = m_points[i + 1];
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * ((p.y - a.y) / (b.y - a.y)))
                inside = !inside;
        }
        return inside;
    }

    SelectedBy m_how;
    std::vector<Point> m_points;
    Extents m_extents;
};

using Segments = std::vector<std::pair<Point, Point>>;

/// Arcs in steps of at most a degree.
void append(Segments &segments, const Piece &piece)
{
    if (piece.bulge == 0.0) {
        segments.emplace_back(piece.a, piece.b);
        return;
    }
    const double chordX = piece.b.x - piece.a.x, chordY = piece.b.y - piece.a.y;
    const double offset = (1.0 - piece.bulge * piece.bulge) / (4.0 * piece.bulge);
    const Point center{(piece.a.x + piece.b.x) / 2.0 - offset * chordY,
                       (piece.a.y + piece.b.y) / 2.0 + offset * chordX};
    const double radius = std::hypot(piece.a.x - center.x, piece.a.y - center.y);
    const double start = std::atan2(piece.a.y - center.y, piece.a.x - center.x), sweep = 4.0 * std::atan(piece.bulge);
    const int steps = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) * 180.0 / std::numbers::pi)));
    Point previous = piece.a;
    for (int i = 1; i <= steps; ++i) {
        const double angle = start + sweep * i / steps;
        const Point next =
            i == steps ? piece.b : Point{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
        segments.emplace_back(previous, next);
        previous = next;
    }
}

void append(Segments &segments, const Extents &box)
{
    const std::array<Point, 4> corners{
        {{box.minX, box.minY}, {box.maxX, box.minY}, {box.maxX, box.maxY}, {box.minX, box.maxY}}};
    for (std::size_t i = 0; i < corners.size(); ++i)
        segments.emplace_back(corners[i], corners[(i + 1) % corners.size()]);
}

/// Numbers of the visible entities of which something stands in a box, in the drawing's order.
std::vector<std::uint32_t> entitiesNear(DisplayIndex &index, const Extents &box)
{
    std::vector<std::uint32_t> numbers;
    index.visitItems(box, [&](const DisplayIndex::Item &item) {
        numbers.push_back(item.entity);
        return true;
    });
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end()); // polylines come in runs
    return numbers;
}

} // namespace

AcDbObjectIdArray entitiesBy(SelectedBy how, Drawing &drawing, std::span<const AcGePoint3d> points)
{
    AcDbObjectIdArray found;
    if (points.size() < 2)
        return found;
    const Shape shape(how, points);
    auto &index = drawing.component<DisplayIndex>();
    PieceMaker pieceMaker(drawing, [&](std::size_t layer) { return drawing.layer(layer).visible(); });
    std::vector<Piece> pieces;
    Segments segments;
    for (const std::uint32_t number : entitiesNear(index, shape.extents())) {
        const AcDbEntity *entity = &index.entity(number);
        const Extents extents = extentsOf(*entity);
        if (!shape.selects(extents))
            continue;
        pieces.clear();
        segments.clear();
        if (PieceMaker::isLinework(*entity))
            pieceMaker.append(*entity, 0, pieces);
        for (const Piece &piece : pieces)
            append(segments, piece);
        if (segments.empty())
            append(segments, extents);
        if (shape.selects(segments))
            found.push_back(idOf(index.entity(number)));
    }
    return found;
}

} // namespace velmor
