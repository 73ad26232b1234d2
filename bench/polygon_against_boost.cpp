// Point in ring and centroid of CPolygon against Boost.Geometry's within and centroid on rings of 10 and 100 vertices.
// Both run in turns in one process; the figures are the best of many rounds in time of the processor, the ratios are of
// ours to theirs.
#include "geometry/Polygon.h"

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

namespace bg = boost::geometry;

namespace {

using BoostPoint = bg::model::d2::point_xy<double>;
using BoostRing = bg::model::ring<BoostPoint, false, true>; // counter-clockwise, its first point repeated

constexpr int kRounds = 60, kPoints = 20000;

double now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Best seconds of each of the two, which are run in turns.
template <class Ours, class Theirs>
std::pair<double, double> inTurns(Ours ours, Theirs theirs)
{
    std::pair<double, double> best{1e9, 1e9};
    for (int round = 0; round < kRounds; ++round) {
        double start = now();
        ours();
        best.first = std::min(best.first, now() - start);
        start = now();
        theirs();
        best.second = std::min(best.second, now() - start);
    }
    return best;
}

/// The same uneven, counter-clockwise ring in both forms, around a place on a map.
struct Rings {
    CPolygon own;
    BoostRing theirs;

    explicit Rings(int vertices)
    {
        std::mt19937_64 random(5);
        std::uniform_real_distribution<double> reach(30.0, 60.0);
        for (int i = 0; i < vertices; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / vertices, r = reach(random);
            const double x = 462000.0 + r * std::cos(angle), y = 5073000.0 + r * std::sin(angle);
            own.AddPoint({x, y, 0.0});
            theirs.emplace_back(x, y);
        }
        theirs.push_back(theirs.front());
    }
};

std::vector<BoostPoint> pointsAround()
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> away(-65.0, 65.0);
    std::vector<BoostPoint> points;
    for (int i = 0; i < kPoints; ++i)
        points.emplace_back(462000.0 + away(random), 5073000.0 + away(random));
    return points;
}

void print(const char *what, int vertices, std::pair<double, double> seconds, int calls)
{
    std::printf("%-9s %3d vertices: %7.1f ns, Boost.Geometry %7.1f ns: ratio %.3f\n", what, vertices,
                seconds.first / calls * 1e9, seconds.second / calls * 1e9, seconds.first / seconds.second);
}

/// False when the two disagree about a point or a centroid.
bool compare(int vertices)
{
    const Rings rings(vertices);
    const std::vector<BoostPoint> points = pointsAround();
    int own = 0, theirs = 0;
    const auto within = inTurns(
        [&] {
            own = 0;
            for (const BoostPoint &p : points)
                own += rings.own.Contains(p.x(), p.y());
        },
        [&] {
            theirs = 0;
            for (const BoostPoint &p : points)
                theirs += bg::within(p, rings.theirs) ? 1 : 0;
        });
    print("Contains", vertices, within, kPoints);

    constexpr int kCentroids = 2000;
    CVertex centre{};
    BoostPoint other;
    const auto centroid = inTurns(
        [&] {
            for (int i = 0; i < kCentroids; ++i)
                centre = rings.own.Centroid();
        },
        [&] {
            for (int i = 0; i < kCentroids; ++i)
                bg::centroid(rings.theirs, other);
        });
    print("Centroid", vertices, centroid, kCentroids);
    return own == theirs && std::hypot(centre.x - other.x(), centre.y - other.y()) < 1e-6;
}

} // namespace

int main()
{
    bool isSame = true;
    for (const int vertices : {10, 100})
        isSame = compare(vertices) && isSame;
    if (!isSame)
        std::fprintf(stderr, "the two disagree\n");
    return isSame ? 0 : 1;
}
