// A town for benchmarks: streets with sewer sections, blocks of parcels with houses, made from a seed.
//
// What makes it like a surveyed one: parcel walls end on each other (T-junctions), some are drawn twice, block corners
// are round, some houses are round or have a courtyard, manholes are circles in the streets, fences end loose, cables
// cross everything without being split, and the drawing stands at coordinates of seven digits, turned by an odd angle.
// Every street between two crossings is a closed region of its own, except on the avenues, which are open to the
// outside: sections there lie in no region.
#pragma once

#include "host/boundary/Regions.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace velmor::bench {

struct MadeTown {
    std::vector<boundary::Piece> pieces;
    std::vector<boundary::Point> sections;     ///< middles of sections in closed streets, in random order
    std::vector<boundary::Point> openSections; ///< middles of sections on avenues, in random order
};

class TownMaker {
public:
    TownMaker(std::size_t segments, std::uint64_t seed) : m_random(seed), m_segments(segments) {}

    MadeTown make()
    {
        constexpr double kSegmentsPerBlock = 190.0;
        const int side = std::max(2, static_cast<int>(std::sqrt(m_segments / kSegmentsPerBlock)));
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                block(column, row);
                street(column, row, false);
                street(column, row, true);
            }
        }
        const double extent = side * kPitch;
        for (int i = 0; i < side * side / 12; ++i)
            cable(extent);
        while (m_town.pieces.size() < m_segments)
            fence({uniform(0, extent), uniform(0, extent)});
        m_town.pieces.resize(m_segments);
        for (boundary::Piece &p : m_town.pieces) {
            p.a = place(p.a);
            p.b = place(p.b);
        }
        for (auto *points : {&m_town.sections, &m_town.openSections}) {
            for (boundary::Point &p : *points)
                p = place(p);
            std::shuffle(points->begin(), points->end(), m_random);
        }
        return std::move(m_town);
    }

private:
    using Point = boundary::Point;
    static constexpr double kWidth = 96.0, kStreet = 12.0, kPitch = kWidth + kStreet, kRound = 5.0;
    static constexpr int kParcels = 8, kAvenueEvery = 15;
    static constexpr double kQuarter = 0.41421356237309503; // bulge of a quarter of a circle

    double uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(m_random); }
    bool chance(double part) { return uniform(0, 1) < part; }

    static Point place(Point p)
    {
        constexpr double kCos = 0.95533648912560601, kSin = 0.29552020666133958;
        return {583195.159999074 + p.x * kCos - p.y * kSin, 5033007.509124181 + p.x * kSin + p.y * kCos};
    }

    void add(Point a, Point b, double bulge = 0.0) { m_town.pieces.push_back({a, b, bulge, m_source++}); }

    void loop(std::initializer_list<Point> corners)
    {
        for (auto p = corners.begin(); p != corners.end(); ++p)
            add(*p, p + 1 != corners.end() ? *(p + 1) : *corners.begin());
    }

    void circle(Point centre, double radius)
    {
        add({centre.x - radius, centre.y}, {centre.x + radius, centre.y}, 1.0);
        add({centre.x + radius, centre.y}, {centre.x - radius, centre.y}, 1.0);
    }

    void fence(Point from)
    {
        const double angle = uniform(0, 6.28), length = uniform(1, 6);
        add(from, {from.x + length * std::cos(angle), from.y + length * std::sin(angle)});
    }

    void cable(double extent)
    {
        Point at{uniform(0, extent), uniform(0, extent)};
        const double angle = uniform(0, 6.28);
        for (int i = 0; i < 5; ++i) {
            const double turned = angle + uniform(-0.3, 0.3), length = uniform(60, 200);
            const Point to{at.x + length * std::cos(turned), at.y + length * std::sin(turned)};
            // Avenues stay open: nothing runs across them.
            const auto district = [](double v) { return std::floor((v + kStreet) / (kPitch * kAvenueEvery)); };
            if (district(at.x) == district(to.x) && district(at.y) == district(to.y))
                add(at, to);
            at = to;
        }
    }

    /// Two rows of parcels back to back, their fronts along the streets.
    void block(int column, int row)
    {
        const double x0 = column * kPitch, y0 = row * kPitch, x1 = x0 + kWidth, y1 = y0 + kWidth;
        const double middle = y0 + kWidth / 2 + uniform(-8, 8);
        std::vector<double> cuts{x0};
        for (int i = 1; i < kParcels; ++i)
            cuts.push_back(x0 + kWidth * (i + uniform(-0.2, 0.2)) / kParcels);
        cuts.push_back(x1);
        for (int i = 0; i < kParcels; ++i) {
            const bool first = i == 0, last = i + 1 == kParcels;
            const double left = cuts[i] + (first ? kRound : 0), right = cuts[i + 1] - (last ? kRound : 0);
            add({left, y0}, {right, y0});
            add({right, y1}, {left, y1});
            add({cuts[i], middle}, {cuts[i + 1], middle});
            if (!first) {
                const int copies = chance(0.2) ? 2 : 1;
                for (int k = 0; k < copies; ++k) {
                    add({cuts[i], y0}, {cuts[i], middle});
                    add({cuts[i], middle}, {cuts[i], y1});
                }
            }
            house(cuts[i], y0, cuts[i + 1], middle);
            house(cuts[i], middle, cuts[i + 1], y1);
        }
        add({x0, y0 + kRound}, {x0 + kRound, y0}, kQuarter);
        add({x1 - kRound, y0}, {x1, y0 + kRound}, kQuarter);
        add({x1, y1 - kRound}, {x1 - kRound, y1}, kQuarter);
        add({x0 + kRound, y1}, {x0, y1 - kRound}, kQuarter);
        add({x0, y0 + kRound}, {x0, middle});
        add({x0, middle}, {x0, y1 - kRound});
        add({x1, y0 + kRound}, {x1, middle});
        add({x1, middle}, {x1, y1 - kRound});
    }

    void house(double x0, double y0, double x1, double y1)
    {
        const double cx = (x0 + x1) / 2, cy = (y0 + y1) / 2, w = (x1 - x0) * uniform(0.2, 0.33),
                     h = (y1 - y0) * uniform(0.15, 0.3);
        if (chance(0.1)) {
            circle({cx, cy}, w);
        } else if (chance(0.3)) { // with a bay window
            add({cx - w, cy - h}, {cx + w, cy - h}, 0.2);
            add({cx + w, cy - h}, {cx + w, cy + h});
            add({cx + w, cy + h}, {cx - w, cy + h});
            add({cx - w, cy + h}, {cx - w, cy - h});
        } else {
            loop({{cx - w, cy - h},
                  {cx + w, cy - h},
                  {cx + w, cy + h},
                  {cx, cy + h},
                  {cx, cy + h * 0.5},
                  {cx - w, cy + h * 0.5}});
        }
        if (chance(0.15)) // a courtyard
            loop({{cx - w / 2, cy - h / 2},
                  {cx + w / 2, cy - h / 2},
                  {cx + w / 2, cy + h / 4},
                  {cx - w / 2, cy + h / 4}});
        if (chance(0.25))
            fence({x0, uniform(y0 + 1, y1 - 1)});
    }

    /// The street below (or to the left of) a block, its section's middle, and what closes it.
    void street(int column, int row, bool upright)
    {
        const auto at = [upright](double along, double across) {
            return upright ? Point{across, along} : Point{along, across};
        };
        const int line = upright ? column : row, place = upright ? row : column;
        const double begin = place * kPitch, across = line * kPitch;
        const bool isAvenue = line % kAvenueEvery == 0;
        if (!isAvenue) {
            for (const double along : {begin + kRound, begin + kWidth - kRound})
                add(at(along, across - kStreet), at(along, across));
        }
        for (const double part : {0.25, 0.75})
            manhole(at(begin + kWidth * part, across - kStreet * 0.4));
        const Point middle = at(begin + kWidth * 0.5, across - kStreet * 0.55);
        (isAvenue ? m_town.openSections : m_town.sections).push_back(middle);
    }

    void manhole(Point centre) { circle(centre, 0.4); }

    std::mt19937_64 m_random;
    std::size_t m_segments;
    MadeTown m_town;
    std::uint32_t m_source = 1;
};

inline MadeTown makeTown(std::size_t segments, std::uint64_t seed)
{
    return TownMaker(segments, seed).make();
}

} // namespace velmor::bench
