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

/// The side from a to b with its bulge as chords; b itself is left out.
void addChords(std::vector<gg::Coordinate> &out, Point a, Point b, double bulge, int chordsPerQuarter,
               double grid = 0.0)
{
    out.emplace_back(a.x, a.y);
    if (bulge == 0.0)
        return;
    const double sweep = 4.0 * std::atan(bulge);
    const int n = std::max(2, static_cast<int>(std::ceil(std::abs(sweep) / (std::numbers::pi / 2) * chordsPerQuarter)));
    const double t = (1.0 - bulge * bulge) / (4.0 * bulge);
    const double cx = (a.x + b.x) * 0.5 - (b.y - a.y) * t, cy = (a.y + b.y) * 0.5 + (b.x - a.x) * t;
    const auto round = [grid](double v) { return grid > 0.0 ? std::round(v / grid) * grid : v; };
    for (int i = 1; i < n; ++i) {
        const double angle = sweep * i / n;
        out.emplace_back(round(cx + (a.x - cx) * std::cos(angle) - (a.y - cy) * std::sin(angle)),
                         round(cy + (a.x - cx) * std::sin(angle) + (a.y - cy) * std::cos(angle)));
    }
}

std::unique_ptr<gg::LinearRing> toRing(const gg::GeometryFactory &factory, const Ring &ring, int chordsPerQuarter)
{
    std::vector<gg::Coordinate> points;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const RingVertex &p = ring[i], &q = ring[(i + 1) % ring.size()];
        addChords(points, {p.x, p.y}, {q.x, q.y}, p.bulge, chordsPerQuarter);
    }
    points.push_back(points.front());
    return factory.createLinearRing(std::make_unique<gg::CoordinateArraySequence>(std::move(points)));
}

std::unique_ptr<gg::Polygon> toPolygon(const gg::GeometryFactory &factory, const Region &region, int chordsPerQuarter)
{
    std::vector<std::unique_ptr<gg::LinearRing>> holes;
    for (const Ring &island : region.islands)
        holes.push_back(toRing(factory, island, chordsPerQuarter));
    return factory.createPolygon(toRing(factory, region.outer, chordsPerQuarter), std::move(holes));
}

} // namespace

struct Referee::Private {
    gg::GeometryFactory::Ptr factory = gg::GeometryFactory::create();
    int chordsPerQuarter = 0;
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

Referee::Referee(const std::vector<Piece> &pieces, int chordsPerQuarter, double grid) : d(std::make_unique<Private>())
{
    d->chordsPerQuarter = chordsPerQuarter;
    std::vector<std::unique_ptr<gg::LineString>> lines;
    lines.reserve(pieces.size());
    for (const Piece &piece : pieces) {
        if (piece.a == piece.b)
            continue;
        if (piece.bulge != 0.0) {
            const double step = std::numbers::pi / 2 / chordsPerQuarter;
            const double radius = std::hypot(piece.b.x - piece.a.x, piece.b.y - piece.a.y) *
                                  (1 + piece.bulge * piece.bulge) / (4 * std::abs(piece.bulge));
            d->largestRise = std::max(d->largestRise, radius * step * step / 8);
        }
        std::vector<gg::Coordinate> points;
        addChords(points, piece.a, piece.b, piece.bulge, chordsPerQuarter, grid);
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
    const double step = std::numbers::pi / 2 / d->chordsPerQuarter;
    double sum = 0.0;
    const auto add = [&](const Ring &ring) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const RingVertex &p = ring[i], &q = ring[(i + 1) % ring.size()];
            if (p.bulge == 0.0)
                continue;
            const double radius = std::hypot(q.x - p.x, q.y - p.y) * (1 + p.bulge * p.bulge) / (4 * std::abs(p.bulge));
            const double length = 4 * std::abs(std::atan(p.bulge)) * radius, rise = radius * step * step / 8;
            sum += 2.0 * rise * (length + 4.0 * radius * step);
        }
    };
    add(region.outer);
    for (const Ring &island : region.islands)
        add(island);
    return sum;
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
    if (face == nullptr)
        return opinion;
    opinion.found = true;
    opinion.area = face->getArea();
    opinion.perimeter = face->getLength();
    opinion.holes = face->getNumInteriorRing();
    const std::unique_ptr<gg::Point> at(d->factory->createPoint(gg::Coordinate(point.x, point.y)));
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
        std::unique_ptr<gg::Geometry> own = toPolygon(*d->factory, region, d->chordsPerQuarter);
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
    return region ? toPolygon(*factory, region, 16)->toText() : "none";
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
        if (opinion.found && opinion.clearance <= 4.0 * lines.nodeTolerance() + 2.0 * referee.largestRise()) {
            ++verdict.unjudged;
            continue;
        }
        verdict.found += region ? 1 : 0;
        bool wrong = opinion.found != static_cast<bool>(region);
        double difference = 0.0;
        if (!wrong && region) {
            const double allowed = referee.allowance(region) + 2.0 * lines.nodeTolerance() * opinion.perimeter;
            difference = std::max(0.0, opinion.difference - allowed) / opinion.area;
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
