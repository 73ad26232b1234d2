#include "host/network/SpatialIndex.h"

#include "contracts/CatchmentArea.h"
#include "host/drawing/Journal.h"

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/make_shared.hpp>

#include <cmath>
#include <limits>
#include <optional>

namespace velmor {

namespace bg = boost::geometry;
using ZEMGis::Topology::CEntity;

namespace {

using Vertex = AcDbPolyline::Vertex;
using TreePoint = bg::model::d2::point_xy<double>;
using TreeBox = bg::model::box<TreePoint>;

/// Chords of ellipses and splines stay this near to the curve, relative to its size.
constexpr double kChordTolerance = 1e-3;
/// How many boxes a search looks at first, and how many times as many each further time.
constexpr std::size_t kFewNeighbours = 16;

struct Circle {
    double x = 0.0, y = 0.0, radius = 0.0;
};

Circle circleOf(const Vertex &a, const Vertex &b)
{
    // The centre stands on the chord's bisector, at half the chord times (1 - b^2) / 2b to its left.
    const double offset = (1.0 - a.bulge * a.bulge) / (4.0 * a.bulge);
    const double dx = b.x - a.x, dy = b.y - a.y;
    return {(a.x + b.x) / 2 - dy * offset, (a.y + b.y) / 2 + dx * offset,
            std::hypot(dx, dy) * (1.0 + a.bulge * a.bulge) / (4.0 * std::abs(a.bulge))};
}

/// Greater than 0 to the left of the way from a to b.
double sideOf(const Vertex &a, const Vertex &b, double x, double y)
{
    return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

/// On the side of the chord on which the arc runs.
bool onArcSide(const Vertex &a, const Vertex &b, double x, double y)
{
    return a.bulge > 0.0 ? sideOf(a, b, x, y) < 0.0 : sideOf(a, b, x, y) > 0.0;
}

double distanceToSide(const Vertex &a, const Vertex &b, double x, double y)
{
    const double toEnds = std::min(std::hypot(x - a.x, y - a.y), std::hypot(x - b.x, y - b.y));
    const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
    if (square == 0.0)
        return toEnds;
    if (a.bulge == 0.0) {
        const double along = ((x - a.x) * dx + (y - a.y) * dy) / square;
        return along <= 0.0 || along >= 1.0 ? toEnds : std::abs(sideOf(a, b, x, y)) / std::sqrt(square);
    }
    const Circle circle = circleOf(a, b);
    const double fromCentre = std::hypot(x - circle.x, y - circle.y);
    if (fromCentre == 0.0)
        return circle.radius;
    const double onCircleX = circle.x + (x - circle.x) * circle.radius / fromCentre;
    const double onCircleY = circle.y + (y - circle.y) * circle.radius / fromCentre;
    return onArcSide(a, b, onCircleX, onCircleY) ? std::min(toEnds, std::abs(fromCentre - circle.radius)) : toEnds;
}

/// Even-odd rule over the chords, turned over once for each piece of circle between chord and arc that holds the point.
bool isInside(const std::vector<Vertex> &ring, double x, double y)
{
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Vertex &a = ring[i], &b = ring[(i + 1) % ring.size()];
        if ((a.y > y) != (b.y > y) && (sideOf(a, b, x, y) > 0.0) == (b.y > a.y))
            inside = !inside;
        if (a.bulge == 0.0 || !onArcSide(a, b, x, y))
            continue;
        const Circle circle = circleOf(a, b);
        if (std::hypot(x - circle.x, y - circle.y) < circle.radius)
            inside = !inside;
    }
    return inside;
}

struct Item {
    CEntity *entity = nullptr;
    AcDbObjectId id; ///< null for one that stands at a point
    CurvePath path;
    double area = std::numeric_limits<double>::infinity(); ///< of a closed path
};

} // namespace

double distanceTo(const CurvePath &path, double x, double y)
{
    const auto &vertices = path.vertices;
    if (path.closed && vertices.size() > 1 && isInside(vertices, x, y))
        return 0.0;
    double nearest = std::numeric_limits<double>::infinity();
    if (vertices.size() == 1)
        return std::hypot(x - vertices[0].x, y - vertices[0].y);
    const std::size_t sides = path.closed ? vertices.size() : vertices.size() - 1;
    for (std::size_t i = 0; i < sides; ++i)
        nearest = std::min(nearest, distanceToSide(vertices[i], vertices[(i + 1) % vertices.size()], x, y));
    return nearest;
}

struct SpatialIndex::Private {
    using Entry = std::pair<TreeBox, std::size_t>;
    std::vector<Item> items;
    bg::index::rtree<Entry, bg::index::rstar<16>> tree;
};

SpatialIndex::SpatialIndex(const std::vector<CEntity *> &entities) : d(std::make_unique<Private>())
{
    std::vector<Private::Entry> entries;
    for (CEntity *entity : entities) {
        if (!entity)
            continue;
        Item item{.entity = entity, .id = entity->GetObjectId(), .path = {}};
        Extents extents;
        AcDbEntity *drawn = nullptr;
        if (acdbOpenAcDbEntity(drawn, item.id, AcDb::kForRead) == Acad::eOk) {
            extents = extentsOf(*drawn);
            const double size = std::max(extents.maxX - extents.minX, extents.maxY - extents.minY);
            if (auto path =
                    extents.isEmpty() || !(size > 0.0) ? std::nullopt : curvePathOf(*drawn, size * kChordTolerance))
                item.path = std::move(*path);
            else if (!extents.isEmpty()) // a point, a text, a block: its extents are its outline
                item.path = {{{extents.minX, extents.minY},
                              {extents.maxX, extents.minY},
                              {extents.maxX, extents.maxY},
                              {extents.minX, extents.maxY}},
                             true};
            drawn->close();
        } else if (const auto *area = dynamic_cast<const ZEMGis::Sewage::CCatchmentArea *>(entity);
                   area && area->IsHidden()) {
            const AcGePoint3d centre = area->GetCenterPoint();
            extents.add(centre.x, centre.y);
            item.path = {{{centre.x, centre.y}}, false};
            item.id.setNull();
        }
        if (extents.isEmpty())
            continue;
        if (item.path.closed)
            item.area = std::abs(ringAreaOf(item.path.vertices));
        entries.emplace_back(TreeBox({extents.minX, extents.minY}, {extents.maxX, extents.maxY}), d->items.size());
        d->items.push_back(std::move(item));
    }
    d->tree = decltype(d->tree)(entries);
}

SpatialIndex::~SpatialIndex() = default;

CEntity *SpatialIndex::GetClosestEntity(const AcGePoint3d &point, double *radius) const
{
    const double allowed = radius ? *radius : std::numeric_limits<double>::infinity();
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || std::isnan(allowed) || d->tree.empty())
        return nullptr;
    const TreePoint place(point.x, point.y);
    const Item *best = nullptr;
    double nearest = allowed;
    // Boxes come nearest first, so the walk ends at the first box beyond the best distance. A query makes room for as
    // many as it may give, so it begins with few, and begins anew with more when they were not enough.
    for (std::size_t most = kFewNeighbours;; most *= kFewNeighbours) {
        auto at = d->tree.qbegin(bg::index::nearest(place, static_cast<unsigned>(std::min(most, d->items.size()))));
        for (; at != d->tree.qend() && bg::distance(place, at->first) <= nearest; ++at) {
            const Item &item = d->items[at->second];
            if (!item.id.isNull() && item.id.isErased())
                continue;
            const double distance = distanceTo(item.path, point.x, point.y);
            if (distance < nearest || (distance == nearest && (!best || item.area < best->area))) {
                nearest = distance;
                best = &item;
            }
        }
        if (at != d->tree.qend() || most >= d->items.size())
            break;
    }
    if (!best)
        return nullptr;
    if (radius)
        *radius = nearest;
    return best->entity;
}

} // namespace velmor

namespace ZEMGis::Topology {

CSpatialIndex::~CSpatialIndex() = default;

CTopoEditor *CTopoEditor::Instance()
{
    static CTopoEditor editor;
    return &editor;
}

boost::shared_ptr<CSpatialIndex> CTopoEditor::CreateCustomSpatialIndex(std::vector<CEntity *> &entities)
{
    velmor::journal("CTopoEditor::CreateCustomSpatialIndex", entities.size());
    return boost::make_shared<velmor::SpatialIndex>(entities);
}

} // namespace ZEMGis::Topology
