#include "tests/host/boundary/Referee.h"

#include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LineString.h>
#include <geos/geom/MultiLineString.h>
#include <geos/geom/Point.h>
#include <geos/geom/Polygon.h>
#include <geos/index/strtree/TemplateSTRtree.h>
#include <geos/operation/overlayng/OverlayNGRobust.h>
#include <geos/operation/polygonize/Polygonizer.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <sstream>

namespace velmor::boundary::testing {

namespace gg = geos::geom;
using geos::algorithm::locate::IndexedPointInAreaLocator;

namespace {

double radiusOf(Point a, Point b, double bulge)
{
    return std::hypot(b.x - a.x, b.y - a.y) * (1 + bulge * bulge) / (4 * std::abs(bulge));
}

/// The angle that a chord spans.
double stepOf(double radius, const Chords &chords)
{
    const double step = std::numbers::pi / 2 / chords.perQuarter;
    return chords.rise > 0.0 ? std::min(step, std::sqrt(8.0 * chords.rise / radius)) : step;
}

double riseOf(double radius, const Chords &chords)
{
    const double step = stepOf(radius, chords);
    return radius * step * step / 8;
}

/// The side from a to b with its bulge as chords; b itself is left out.
void addChords(std::vector<gg::Coordinate> &out, Point a, Point b, double bulge, const Chords &chords,
               double grid = 0.0)
{
    out.emplace_back(a.x, a.y);
    if (bulge == 0.0)
        return;
    const double sweep = 4.0 * std::atan(bulge);
    const int n = std::max(2, static_cast<int>(std::ceil(std::abs(sweep) / stepOf(radiusOf(a, b, bulge), chords))));
    const double t = (1.0 - bulge * bulge) / (4.0 * bulge);
    const double cx = (a.x + b.x) * 0.5 - (b.y - a.y) * t, cy = (a.y + b.y) * 0.5 + (b.x - a.x) * t;
    const auto round = [grid](double v) { return grid > 0.0 ? std::round(v / grid) * grid : v; };
    for (int i = 1; i < n; ++i) {
        const double angle = sweep * i / n;
        out.emplace_back(round(cx + (a.x - cx) * std::cos(angle) - (a.y - cy) * std::sin(angle)),
                         round(cy + (a.x - cx) * std::sin(angle) + (a.y - cy) * std::cos(angle)));
    }
}

std::unique_ptr<gg::LinearRing> toRing(const gg::GeometryFactory &factory, const Ring &ring, const Chords &chords)
{
    std::vector<gg::Coordinate> points;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const RingVertex &p = ring[i], &q = ring[(i + 1) % ring.size()];
        addChords(points, {p.x, p.y}, {q.x, q.y}, p.bulge, chords);
    }
    points.push_back(points.front());
    return factory.createLinearRing(std::make_unique<gg::CoordinateArraySequence>(std::move(points)));
}

std::unique_ptr<gg::Polygon> toPolygon(const gg::GeometryFactory &factory, const Region &region, const Chords &chords)
{
    std::vector<std::unique_ptr<gg::LinearRing>> holes;
    for (const Ring &island : region.islands)
        holes.push_back(toRing(factory, island, chords));
    return factory.createPolygon(toRing(factory, region.outer, chords), std::move(holes));
}

} // namespace

namespace {

/// Calls use(radius, sweep) for each arc of a region.
template <class Use>
void eachArc(const Region &region, Use use)
{
    const auto walk = [&use](const Ring &ring) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const RingVertex &p = ring[i], &q = ring[(i + 1) % ring.size()];
            if (p.bulge != 0.0)
                use(radiusOf({p.x, p.y}, {q.x, q.y}, p.bulge), 4 * std::abs(std::atan(p.bulge)));
        }
    };
    walk(region.outer);
    for (const Ring &island : region.islands)
        walk(island);
}

} // namespace

struct Referee::Private {
    gg::GeometryFactory::Ptr factory = gg::GeometryFactory::create();
    Chords chords;
    double largestRise = 0.0;
    std::vector<std::unique_ptr<gg::Polygon>> polygons;
    mutable std::vector<std::unique_ptr<IndexedPointInAreaLocator>> locators;
    mutable geos::index::strtree::TemplateSTRtree<std::size_t> tree;
    mutable std::map<const gg::Polygon *, std::pair<Region, double>> compared;

    const gg::Polygon *around(Point point) const
    {
        const gg::Coordinate at(point.x, point.y);
        const gg::Polygon *found = nullptr;
        tree.query(gg::Envelope(at), [&](std::size_t i) {
            if (!locators[i])
                locators[i] = std::make_unique<IndexedPointInAreaLocator>(*polygons[i]);
            if (locators[i]->locate(&at) == gg::Location::INTERIOR)
                found = polygons[i].get();
        });
        return found;
    }
};

Referee::Referee(const std::vector<Piece> &pieces, const Chords &chords) : d(std::make_unique<Private>())
{
    d->chords = chords;
    std::vector<std::unique_ptr<gg::LineString>> lines;
    lines.reserve(pieces.size());
    for (const Piece &piece : pieces) {
        if (piece.a == piece.b)
            continue;
        if (piece.bulge != 0.0) {
            const double radius = radiusOf(piece.a, piece.b, piece.bulge);
            d->largestRise = std::max(d->largestRise, riseOf(radius, chords));
        }
        std::vector<gg::Coordinate> points;
        addChords(points, piece.a, piece.b, piece.bulge, chords, chords.grid);
        points.emplace_back(piece.b.x, piece.b.y);
        lines.push_back(d->factory->createLineString(std::make_unique<gg::CoordinateArraySequence>(std::move(points))));
    }
    auto all = d->factory->createMultiLineString(std::move(lines));
    const auto noded = geos::operation::overlayng::OverlayNGRobust::Union(all.get());
    all.reset();
    geos::operation::polygonize::Polygonizer polygonizer;
    polygonizer.add(noded.get());
    d->polygons = polygonizer.getPolygons();
    d->locators.resize(d->polygons.size());
    for (std::size_t i = 0; i < d->polygons.size(); ++i)
        d->tree.insert(*d->polygons[i]->getEnvelopeInternal(), std::size_t{i});
}

Referee::~Referee() = default;

std::size_t Referee::faces() const
{
    return d->polygons.size();
}

double Referee::allowance(const Region &region) const
{
    double sum = 0.0;
    eachArc(region, [&](double radius, double sweep) {
        sum += 2.0 * riseOf(radius, d->chords) * (sweep * radius + 4.0 * radius * stepOf(radius, d->chords));
    });
    return sum;
}

double Referee::largestRise(const Region &region) const
{
    double rise = 0.0;
    eachArc(region, [&](double radius, double) { rise = std::max(rise, riseOf(radius, d->chords)); });
    return rise;
}

double Referee::largestRise() const
{
    return d->largestRise;
}

bool Referee::hasFace(Point point) const
{
    return d->around(point) != nullptr;
}

std::vector<Point> Referee::insidePoints(std::size_t most) const
{
    std::vector<Point> out;
    const std::size_t step = d->polygons.size() / std::max<std::size_t>(most, 1) + 1;
    for (std::size_t i = 0; i < d->polygons.size(); i += step) {
        if (2.0 * d->polygons[i]->getArea() <= 8.0 * d->largestRise * d->polygons[i]->getLength())
            continue;
        const auto point = d->polygons[i]->getInteriorPoint();
        if (point && !point->isEmpty())
            out.push_back({point->getX(), point->getY()});
    }
    return out;
}

Referee::Opinion Referee::opinion(Point point, const Region &region) const
{
    Opinion opinion;
    const gg::Polygon *face = d->around(point);
    const std::unique_ptr<gg::Point> at(d->factory->createPoint(gg::Coordinate(point.x, point.y)));
    if (face == nullptr) {
        if (region)
            opinion.clearance = toPolygon(*d->factory, region, d->chords)->getBoundary()->distance(at.get());
        return opinion;
    }
    opinion.found = true;
    opinion.area = face->getArea();
    opinion.perimeter = face->getLength();
    opinion.holes = face->getNumInteriorRing();
    opinion.clearance = face->getBoundary()->distance(at.get());
    if (region) {
        // Many points share a region.
        auto &[known, difference] = d->compared[face];
        if (known.outer == region.outer && known.islands == region.islands) {
            opinion.difference = difference;
            return opinion;
        }
        known = region;
        difference = 0.0;
        std::unique_ptr<gg::Geometry> own = toPolygon(*d->factory, region, d->chords);
        // Chords of an island that touches the outline in a point may cross those of the outline.
        if (!own->isValid())
            own = own->buffer(0);
        // Equal shapes need no overlay.
        if (own->equals(face))
            return opinion;
        difference = geos::operation::overlayng::OverlayNGRobust::SymDifference(own.get(), face)->getArea();
        opinion.difference = difference;
    }
    return opinion;
}

std::string Referee::text(Point point) const
{
    const gg::Polygon *face = d->around(point);
    return face != nullptr ? face->toText() : "none";
}

std::string Referee::text(const Region &region)
{
    const auto factory = gg::GeometryFactory::create();
    return region ? toPolygon(*factory, region, {.perQuarter = 16})->toText() : "none";
}

std::vector<Piece> welded(std::vector<Piece> pieces, double tolerance)
{
    std::vector<Point> ends;
    const auto weld = [&](Point &p) {
        for (const Point &known : ends) {
            if (std::hypot(known.x - p.x, known.y - p.y) <= tolerance) {
                p = known;
                return;
            }
        }
        ends.push_back(p);
    };
    for (Piece &piece : pieces) {
        weld(piece.a);
        weld(piece.b);
    }
    std::vector<Piece> out;
    for (const Piece &piece : pieces) {
        // Places along the piece as parts of its sweep or length.
        const double dx = piece.b.x - piece.a.x, dy = piece.b.y - piece.a.y, chord = std::hypot(dx, dy);
        const double sweep = 4.0 * std::atan(piece.bulge);
        std::vector<std::pair<double, Point>> cuts{{0.0, piece.a}, {1.0, piece.b}};
        for (const Point &p : ends) {
            const double u = ((p.x - piece.a.x) * dx + (p.y - piece.a.y) * dy) / chord - chord / 2;
            const double v = ((p.y - piece.a.y) * dx - (p.x - piece.a.x) * dy) / chord;
            double part = u / chord + 0.5, away = std::abs(v);
            if (piece.bulge != 0.0) {
                const double radius = chord / 2 / std::sin(sweep / 2), centre = radius * std::cos(sweep / 2);
                away = std::abs(std::hypot(u, v - centre) - std::abs(radius));
                const double side = piece.bulge > 0 ? 1.0 : -1.0;
                part = std::atan2(u * side, (centre - v) * side) * side / sweep + 0.5;
            }
            const double margin = tolerance / chord;
            if (away <= tolerance && part > margin && part < 1.0 - margin)
                cuts.emplace_back(part, p);
        }
        std::sort(cuts.begin(), cuts.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
            const double bulge =
                cuts.size() == 2 ? piece.bulge : std::tan(sweep * (cuts[i + 1].first - cuts[i].first) / 4);
            if (!(cuts[i].second == cuts[i + 1].second))
                out.push_back({cuts[i].second, cuts[i + 1].second, bulge, piece.source});
        }
    }
    return out;
}

Verdict compare(Linework &lines, const Referee &referee, const std::vector<Point> &points, double part)
{
    Verdict verdict;
    for (const Point &point : points) {
        const Region region = lines.regionAt(point, {.islands = true});
        ++verdict.points;
        if (region.status == Status::OnEdge) {
            ++verdict.onEdge;
            continue;
        }
        const Referee::Opinion opinion = referee.opinion(point, region);
        const double rise = region ? referee.largestRise(region) : referee.largestRise();
        if ((opinion.found || region) && opinion.clearance <= 4.0 * lines.nodeTolerance() + 2.0 * rise) {
            ++verdict.unjudged;
            continue;
        }
        verdict.found += region ? 1 : 0;
        bool wrong = opinion.found != static_cast<bool>(region);
        double difference = 0.0;
        if (!wrong && region) {
            const double beside = opinion.difference - referee.allowance(region);
            difference = std::max(0.0, beside - 2.0 * lines.nodeTolerance() * opinion.perimeter) / opinion.area;
            if (beside > part * opinion.area) {
                ++verdict.moved;
                verdict.widestMoved = std::max(verdict.widestMoved, 2.0 * opinion.area / opinion.perimeter);
            }
            verdict.worst = std::max(verdict.worst, difference);
            wrong = !(difference <= part) || opinion.holes != region.islands.size();
        }
        if (!wrong)
            continue;
        if (++verdict.wrong == 1) {
            std::ostringstream what;
            what.precision(17);
            what << "at " << point.x << ' ' << point.y << ": difference " << difference << ", islands "
                 << region.islands.size() << " instead of " << opinion.holes << ", clearance " << opinion.clearance
                 << "\nours   " << Referee::text(region).substr(0, 1500) << "\ntheirs "
                 << referee.text(point).substr(0, 1500);
            verdict.firstWrong = what.str();
        }
    }
    return verdict;
}

} // namespace velmor::boundary::testing
