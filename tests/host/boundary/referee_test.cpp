// Regions against the referee, over thousands of seeded points on made linework.
#include "tests/host/boundary/Referee.h"
#include "tests/host/boundary/Shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <set>
#include <tuple>

using namespace velmor::boundary;
using namespace velmor::boundary::testing;

namespace {

struct Made {
    std::vector<Piece> pieces;
    std::vector<Point> points;
};

double between(std::mt19937_64 &random, double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(random);
}

Made pointsFor(std::mt19937_64 &random, std::vector<Piece> pieces, double size, int count)
{
    Made made{std::move(pieces), {}};
    for (int i = 0; i < count; ++i)
        made.points.push_back({between(random, -0.05 * size, 1.05 * size), between(random, -0.05 * size, 1.05 * size)});
    return made;
}

/// Segments of very different lengths in a square of 100.
Made scribble(std::mt19937_64 &random, int segments)
{
    std::vector<Piece> pieces;
    for (int i = 0; i < segments; ++i) {
        const Point a{between(random, 0, 100), between(random, 0, 100)};
        const double length = std::exp(between(random, std::log(2.0), std::log(80.0)));
        const double angle = between(random, 0, 2 * std::numbers::pi);
        pieces.push_back({a, {a.x + length * std::cos(angle), a.y + length * std::sin(angle)}, 0, 0});
    }
    return pointsFor(random, pieces, 100, 100);
}

/// Segments between points of a coarse lattice: collinear overlaps, repeats and T-junctions everywhere.
Made lattice(std::mt19937_64 &random, int segments, int size)
{
    std::uniform_int_distribution<int> at(0, size), step(-4, 4);
    std::vector<Piece> pieces;
    for (int i = 0; i < segments; ++i) {
        const int x = at(random), y = at(random);
        // Two of three along an axis or a diagonal.
        int dx = step(random), dy = step(random);
        if (i % 3 != 0)
            (i % 6 < 3 ? dx : dy) = i % 2 == 0 ? 0 : dx == 0 ? dx : dy;
        pieces.push_back({{double(x), double(y)}, {double(x + dx), double(y + dy)}, 0, 0});
    }
    return pointsFor(random, pieces, size, 100);
}

/// Closed loops of all sizes, many within others: islands and islands of islands.
Made islands(std::mt19937_64 &random, int count)
{
    std::vector<Piece> pieces;
    for (int i = 0; i < count; ++i) {
        const Point c{between(random, 0, 100), between(random, 0, 100)};
        const double radius = std::exp(between(random, std::log(0.5), std::log(25.0)));
        const int sides = 3 + i % 6;
        const double turn = between(random, 0, 6);
        std::vector<Point> corners;
        for (int k = 0; k < sides; ++k) {
            const double angle = turn + 2 * std::numbers::pi * k / sides;
            corners.push_back({c.x + radius * std::cos(angle), c.y + radius * std::sin(angle)});
        }
        for (int k = 0; k < sides; ++k)
            pieces.push_back({corners[k], corners[(k + 1) % sides], 0, 0});
    }
    return pointsFor(random, pieces, 100, 150);
}

/// Lines, arcs of all sweeps and circles.
Made curves(std::mt19937_64 &random, int count)
{
    std::vector<Piece> pieces;
    for (int i = 0; i < count; ++i) {
        const Point a{between(random, 0, 100), between(random, 0, 100)};
        const double length = std::exp(between(random, std::log(4.0), std::log(70.0)));
        const double angle = between(random, 0, 2 * std::numbers::pi);
        const Point b{a.x + length * std::cos(angle), a.y + length * std::sin(angle)};
        if (i % 5 == 0) {
            pieces.push_back({a, {a.x + length / 3, a.y}, 1, 0});
            pieces.push_back({{a.x + length / 3, a.y}, a, 1, 0});
        } else {
            pieces.push_back({a, b, i % 5 < 3 ? std::tan(between(random, -1.3, 1.3)) : 0.0, 0});
        }
    }
    return pointsFor(random, pieces, 100, 100);
}

/// Halves and quarters of circles and lines on a lattice: equal arcs, arcs that overlap in part, tangents. Radii are 1
/// and 2 and lines level, upright or at 45 degrees, so that more than two meet only in lattice points or in mirror
/// axes: elsewhere the referee's chords would miss what the arcs meet.
Made curvedLattice(std::mt19937_64 &random, int count, int size)
{
    std::uniform_int_distribution<int> at(0, size), step(-3, 3), radius(1, 2), kind(0, 5);
    const double quarter = std::tan(std::numbers::pi / 8);
    std::vector<Piece> pieces;
    for (int i = 0; i < count; ++i) {
        const Point a{double(at(random)), double(at(random))};
        const int d = step(random), k = kind(random), r = i % 2 == 0 ? radius(random) : -radius(random);
        if (k < 3)
            pieces.push_back({a,
                              {a.x + (k != 1 ? d : 0), a.y + (k == 0   ? (i % 2 == 0 ? d : -d)
                                                              : k == 1 ? d
                                                                       : 0)},
                              0,
                              0});
        else if (k == 3) // half a circle between lattice points an even way apart
            pieces.push_back({a, {a.x + 2 * r, a.y}, i % 4 < 2 ? 1.0 : -1.0, 0});
        else if (k == 4)
            pieces.push_back({a, {a.x, a.y + 2 * r}, i % 4 < 2 ? 1.0 : -1.0, 0});
        else // a quarter around a lattice point
            pieces.push_back({a, {a.x + r, a.y + (i % 8 < 4 ? r : -r)}, i % 4 < 2 ? quarter : -quarter, 0});
    }
    return pointsFor(random, pieces, size, 100);
}

struct Sum {
    std::size_t points = 0, found = 0, wrong = 0, islands = 0;
    double worst = 0;
};

template <class Make>
Sum judge(std::uint64_t seed, int rounds, Make make, const Chords &chords = {})
{
    Sum sum;
    for (int round = 0; round < rounds; ++round) {
        std::mt19937_64 random(seed + round);
        const Made made = make(random);
        const Referee referee(made.pieces, chords);
        Linework lines(made.pieces);
        const Verdict v = compare(lines, referee, made.points);
        EXPECT_EQ(v.wrong, 0U) << "seed " << seed + round << ' ' << v.firstWrong;
        sum.points += v.points;
        sum.found += v.found;
        sum.wrong += v.wrong;
        sum.worst = std::max(sum.worst, v.worst);
    }
    std::printf("points %zu, found %zu, wrong %zu, worst difference %.2e\n", sum.points, sum.found, sum.wrong,
                sum.worst);
    return sum;
}

} // namespace

TEST(RegionsAgainstTheReferee, RandomSegments)
{
    const Sum sum = judge(1000, 40, [](auto &random) { return scribble(random, 250); });
    EXPECT_GT(sum.found * 5, sum.points);
}

TEST(RegionsAgainstTheReferee, CollinearOverlapsAndRepeats)
{
    const Sum sum = judge(2000, 60, [](auto &random) { return lattice(random, 220, 14); });
    EXPECT_GT(sum.found * 5, sum.points);
}

TEST(RegionsAgainstTheReferee, IslandsWithinIslands)
{
    const Sum sum = judge(3000, 40, [](auto &random) { return islands(random, 60); });
    EXPECT_GT(sum.found * 5, sum.points);
}

TEST(RegionsAgainstTheReferee, LinesAndArcs)
{
    const Sum sum = judge(4000, 50, [](auto &random) { return curves(random, 110); }, {.perQuarter = 64});
    EXPECT_GT(sum.found * 5, sum.points);
}

TEST(RegionsAgainstTheReferee, EqualAndOverlappingArcsAndTangents)
{
    const Sum sum = judge(5000, 30, [](auto &random) { return curvedLattice(random, 150, 12); },
                          {.perQuarter = 64, .grid = 0x1p-30});
    EXPECT_GT(sum.found * 5, sum.points);
}

// ---- Properties: what must not matter does not matter.

namespace {

struct Motion {
    double angle = 0, dx = 0, dy = 0, scale = 1;
    Point operator()(Point p) const
    {
        const double c = scale * std::cos(angle), s = scale * std::sin(angle);
        return {p.x * c - p.y * s + dx, p.x * s + p.y * c + dy};
    }
};

std::vector<Piece> moved(std::vector<Piece> pieces, const Motion &motion)
{
    for (Piece &p : pieces) {
        p.a = motion(p.a);
        p.b = motion(p.b);
    }
    return pieces;
}

std::vector<Piece> shuffledAndReversed(std::vector<Piece> pieces, std::mt19937_64 &random)
{
    std::shuffle(pieces.begin(), pieces.end(), random);
    for (Piece &p : pieces) {
        if (random() % 2 == 0) {
            std::swap(p.a, p.b);
            p.bulge = -p.bulge;
        }
    }
    return pieces;
}

/// Whether every vertex of the one lies near a vertex of the other.
bool sameVertices(const Ring &a, const Ring &b, double tolerance)
{
    return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const RingVertex &v) {
               return std::any_of(b.begin(), b.end(), [&](const RingVertex &w) {
                   return std::hypot(v.x - w.x, v.y - w.y) <= tolerance && std::abs(v.bulge - w.bulge) <= 1e-6;
               });
           });
}

const std::vector<Made> &linework()
{
    static const std::vector<Made> all = [] {
        std::vector<Made> made;
        for (std::uint64_t seed = 1; seed <= 12; ++seed) {
            std::mt19937_64 random(seed);
            made.push_back(scribble(random, 150));
            made.push_back(lattice(random, 200, 14));
            made.push_back(islands(random, 50));
            made.push_back(curves(random, 100));
            made.push_back(curvedLattice(random, 150, 12));
        }
        return made;
    }();
    return all;
}

/// Points clear of the linework by far more than any tolerance.
template <class Check>
void eachClearPoint(const Made &made, Linework &lines, Check check)
{
    std::size_t used = 0;
    for (const Point &p : made.points) {
        const Region region = lines.regionAt(p, {.islands = true});
        if (region.status == Status::OnEdge)
            continue;
        ++used;
        check(p, region);
    }
    EXPECT_GT(used * 5, made.points.size());
}

} // namespace

TEST(RegionProperties, ShuffledAndReversedLineworkGivesTheSameRings)
{
    std::mt19937_64 random(77);
    for (const Made &made : linework()) {
        Linework lines(made.pieces), other(shuffledAndReversed(made.pieces, random));
        eachClearPoint(made, lines, [&](const Point &p, const Region &region) {
            const Region again = other.regionAt(p, {.islands = true});
            EXPECT_EQ(again.outer, region.outer) << p.x << ' ' << p.y;
            EXPECT_EQ(again.islands, region.islands) << p.x << ' ' << p.y;
        });
    }
}

TEST(RegionProperties, EveryPointOfARegionGivesTheSameRing)
{
    // Fresh linework for each point, so that nothing is remembered; in a different order of questions it must not
    // matter.
    for (const Made &made : linework()) {
        Linework lines(made.pieces);
        std::vector<Region> known;
        eachClearPoint(made, lines, [&](const Point &p, const Region &region) {
            Linework fresh(made.pieces);
            const Region again = fresh.regionAt(p, {.islands = true});
            EXPECT_EQ(again.outer, region.outer) << p.x << ' ' << p.y;
            EXPECT_EQ(again.islands, region.islands) << p.x << ' ' << p.y;
        });
    }
}

TEST(RegionProperties, AMovedAndTurnedDrawingMovesTheResult)
{
    // Turned by an odd angle and moved to coordinates of seven digits, nothing coincides to the bit any more.
    const Motion motions[] = {{0, 583195.159999074, 6133007.509124181, 1},
                              {0.7123, 4853297.9, 657214.6, 1},
                              {1.9, -31, 17, 0.37},
                              {-0.4, 2581405.8, 465834.8, 25}};
    for (const Motion &motion : motions) {
        for (const Made &made : linework()) {
            Linework lines(made.pieces), other(moved(made.pieces, motion));
            eachClearPoint(made, lines, [&](const Point &p, const Region &region) {
                const Region there = other.regionAt(motion(p), {.islands = true});
                ASSERT_EQ(there.status == Status::Found, region.status == Status::Found) << p.x << ' ' << p.y;
                ASSERT_EQ(there.islands.size(), region.islands.size()) << p.x << ' ' << p.y;
                if (!region)
                    return;
                Ring expected = region.outer;
                for (RingVertex &v : expected) {
                    const Point at = motion({v.x, v.y});
                    v = {at.x, at.y, v.bulge};
                }
                EXPECT_TRUE(sameVertices(there.outer, expected, 1e-5 * motion.scale)) << p.x << ' ' << p.y;
                const double area = signedArea(region.outer) * motion.scale * motion.scale;
                EXPECT_NEAR(signedArea(there.outer), area, 1e-6 * area) << p.x << ' ' << p.y;
            });
        }
    }
}

namespace {

/// Points just beside each side of the ring, to its left or to its right: dense, since a neighbour's corner on a side
/// is no vertex of the ring.
std::vector<Point> beside(const Ring &ring, bool left, double offset)
{
    std::vector<Point> out;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const RingVertex &p = ring[i], &q = ring[(i + 1) % ring.size()];
        const double sweep = 4 * std::atan(p.bulge), dx = q.x - p.x, dy = q.y - p.y, length = std::hypot(dx, dy);
        constexpr int kSteps = 60;
        for (int k = 0; k <= kSteps; ++k) {
            const double t = std::clamp(double(k) / kSteps, 1e-5, 1 - 1e-5);
            // In the frame of the chord, then off along the normal.
            double u = t * length, v = 0, nu = 0, nv = 1;
            if (p.bulge != 0) {
                const double radius = length / 2 / std::sin(sweep / 2), angle = sweep * (t - 0.5);
                nu = -std::sin(angle);
                nv = std::cos(angle);
                u = length / 2 - radius * nu;
                v = radius * (std::cos(sweep / 2) - nv);
            }
            u += left ? offset * nu : -offset * nu;
            v += left ? offset * nv : -offset * nv;
            out.push_back({p.x + (dx * u - dy * v) / length, p.y + (dy * u + dx * v) / length});
        }
    }
    return out;
}

} // namespace

TEST(RegionProperties, TheFacesOfADrawingFillItsOutlines)
{
    // From a frame around everything step over each side into the next face, until all are known: their net areas are
    // what the outlines of all parts hold.
    std::size_t faces = 0;
    for (const Made &made : linework()) {
        std::vector<Piece> framed = made.pieces;
        const Point corners[] = {{-300, -300}, {400, -300}, {400, 400}, {-300, 400}};
        for (int i = 0; i < 4; ++i)
            framed.push_back({corners[i], corners[(i + 1) % 4], 0, 0});
        Linework lines(framed);
        const Region outside = lines.regionAt({-299, -299}, {.islands = true});
        ASSERT_EQ(outside.status, Status::Found);
        double whole = 0, sum = 0;
        std::set<std::vector<std::tuple<double, double, double>>> seen;
        const auto isNew = [&seen](const Ring &ring) {
            std::vector<std::tuple<double, double, double>> key;
            for (const RingVertex &v : ring)
                key.emplace_back(v.x, v.y, v.bulge);
            return seen.insert(key).second;
        };
        isNew(outside.outer);
        std::vector<Point> open;
        const auto stepOver = [&open](const Ring &ring, bool left) {
            for (const Point &p : beside(ring, left, 1e-7))
                open.push_back(p);
        };
        for (const Ring &island : outside.islands) {
            whole += signedArea(island);
            stepOver(island, true);
        }
        while (!open.empty()) {
            const Point p = open.back();
            open.pop_back();
            const Region face = lines.regionAt(p, {.islands = true});
            if (!face || !isNew(face.outer))
                continue;
            ++faces;
            sum += signedArea(face.outer);
            stepOver(face.outer, false);
            for (const Ring &island : face.islands) {
                sum -= signedArea(island);
                stepOver(island, true);
            }
        }
        EXPECT_NEAR(sum, whole, 1e-6 * whole);
    }
    EXPECT_GT(faces, 8000U);
}
