#include "host/drawing/HatchPattern.h"

#include "host/drawing/PatternLibrary.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmor {

namespace {

using Vertex = AcDbPolyline::Vertex;
constexpr double kPi = std::numbers::pi;
constexpr double kDegree = kPi / 180.0;

/// The frame of a family: u along its lines, v across them, counted in lines.
struct Frame {
    double cosine, sine, base, spacing;
    explicit Frame(const HatchFamily &family)
        : cosine(std::cos(family.angle)), sine(std::sin(family.angle)),
          base(family.baseY * cosine - family.baseX * sine),
          spacing(std::abs(family.offsetY * cosine - family.offsetX * sine))
    {
    }
    double u(double x, double y) const { return x * cosine + y * sine; }
    double v(double x, double y) const { return (y * cosine - x * sine - base) / spacing; }
    double across(double v) const { return v * spacing + base; }
};

/// Gathers where the lines of one family cross the rings.
class Crossings {
public:
    Crossings(const HatchFamily &family, std::span<const std::vector<Vertex>> rings, const PatternView *view);
    void appendInside(std::vector<PatternLine> &lines);

private:
    void addSegment(double u1, double v1, double u2, double v2);
    void addArc(const Vertex &from, const Vertex &to);
    template <class Place>
    void addMonotone(double v1, double v2, Place place);
    void appendPiece(std::vector<PatternLine> &lines, double line, double u1, double u2) const;
    void cutTo(const PatternView &view, double &low, double &high);

    Frame m_frame;
    const HatchFamily &m_family;
    double m_period = 0.0;                         ///< length of the dashes and gaps together; 0 for unbroken lines
    double m_first = 0.0;                          ///< number of the first line that may cross
    double m_step = 1.0;                           ///< every how many-th line is drawn
    double m_left = -HUGE_VAL, m_right = HUGE_VAL; ///< u of what is looked at
    std::vector<std::vector<double>> m_places;     ///< u of the crossings, by line
};

/// Leaves of the lines from low to high those that the view may show.
void Crossings::cutTo(const PatternView &view, double &low, double &high)
{
    const Extents &part = view.part;
    double bottom = HUGE_VAL, top = -HUGE_VAL;
    m_left = HUGE_VAL;
    m_right = -HUGE_VAL;
    for (const auto &[x, y] : {std::pair{part.minX, part.minY}, std::pair{part.maxX, part.minY},
                               std::pair{part.maxX, part.maxY}, std::pair{part.minX, part.maxY}}) {
        m_left = std::min(m_left, m_frame.u(x, y));
        m_right = std::max(m_right, m_frame.u(x, y));
        bottom = std::min(bottom, m_frame.v(x, y));
        top = std::max(top, m_frame.v(x, y));
    }
    low = std::max(low, bottom);
    high = std::min(high, top);
    if (!(view.finest > 0.0))
        return;
    if (m_period < view.finest)
        m_period = 0.0;
    while (m_frame.spacing * m_step < view.finest)
        m_step *= 2.0;
}

Crossings::Crossings(const HatchFamily &family, std::span<const std::vector<Vertex>> rings, const PatternView *view)
    : m_frame(family), m_family(family)
{
    for (const double dash : family.dashes)
        m_period += std::abs(dash);
    double low = HUGE_VAL, high = -HUGE_VAL;
    const auto cover = [&](double x, double y, double reach) {
        const double v = m_frame.v(x, y);
        low = std::min(low, v - reach / m_frame.spacing);
        high = std::max(high, v + reach / m_frame.spacing);
    };
    for (const auto &ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Vertex &a = ring[i], &b = ring[(i + 1) % ring.size()];
            const double chord = std::hypot(b.x - a.x, b.y - a.y);
            // A flat arc stays within its height of the chord, a wide one within its circle.
            const double height = chord * std::abs(a.bulge) / 2.0;
            const double reach = std::abs(a.bulge) <= 1.0 ? height : height + chord / (2.0 * std::abs(a.bulge));
            cover(a.x, a.y, reach);
            cover(b.x, b.y, reach);
        }
    if (!(m_frame.spacing > 0.0) || !std::isfinite(m_frame.spacing) || !std::isfinite(low) || !std::isfinite(high))
        return;
    if (view)
        cutTo(*view, low, high);
    while ((high - low) / m_step > kMostPatternLines)
        m_step *= 2.0;
    m_first = std::ceil(low / m_step);
    // So far from the origin, for such a spacing, lines can't be told apart any more.
    if (!(std::abs(m_first) < 1e15))
        return;
    m_places.resize(static_cast<std::size_t>(std::max(0.0, std::floor(high / m_step) - m_first + 1.0)));
    for (const auto &ring : rings)
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const Vertex &a = ring[i], &b = ring[(i + 1) % ring.size()];
            if (a.bulge == 0.0)
                addSegment(m_frame.u(a.x, a.y), m_frame.v(a.x, a.y), m_frame.u(b.x, b.y), m_frame.v(b.x, b.y));
            else
                addArc(a, b);
        }
}

/// A piece on which v only grows or only falls crosses each line between its ends once; an end that lies on a line
/// counts for the piece above it, so that two pieces that meet there cross the line together once or not at all.
template <class Place>
void Crossings::addMonotone(double v1, double v2, Place place)
{
    const auto [low, high] = std::minmax(v1, v2);
    const double first = std::max(std::ceil(low / m_step), m_first);
    for (double line = first; line * m_step < high; line += 1.0) {
        const auto index = static_cast<std::size_t>(line - m_first);
        if (index >= m_places.size())
            return;
        m_places[index].push_back(place(line * m_step));
    }
}

void Crossings::addSegment(double u1, double v1, double u2, double v2)
{
    addMonotone(v1, v2, [&](double v) { return u1 + (u2 - u1) * ((v - v1) / (v2 - v1)); });
}

void Crossings::addArc(const Vertex &from, const Vertex &to)
{
    const AcGeCircArc2d arc({from.x, from.y}, {to.x, to.y}, from.bulge);
    const double radius = arc.radius();
    if (!std::isfinite(radius) || radius == 0.0)
        return addSegment(m_frame.u(from.x, from.y), m_frame.v(from.x, from.y), m_frame.u(to.x, to.y),
                          m_frame.v(to.x, to.y));
    const double centerU = m_frame.u(arc.center().x, arc.center().y);
    const double centerAcross = m_frame.across(m_frame.v(arc.center().x, arc.center().y));
    const double start =
        std::atan2(m_frame.across(m_frame.v(from.x, from.y)) - centerAcross, m_frame.u(from.x, from.y) - centerU);
    const double sweep = 4.0 * std::atan(from.bulge);
    // Cut where the arc is highest and lowest; in between, it lies to one side of the centre.
    const double low = std::min(start, start + sweep), high = std::max(start, start + sweep);
    std::vector<double> cuts{low};
    for (double turn = std::ceil((low - kPi / 2.0) / kPi); turn * kPi + kPi / 2.0 < high; turn += 1.0)
        if (turn * kPi + kPi / 2.0 > low)
            cuts.push_back(turn * kPi + kPi / 2.0);
    cuts.push_back(high);
    const auto height = [&](double angle) {
        // At the ends, the vertices themselves, so that neighbours agree on which side of a line they lie.
        if (angle == start)
            return m_frame.v(from.x, from.y);
        if (angle == start + sweep)
            return m_frame.v(to.x, to.y);
        return (centerAcross + radius * std::sin(angle) - m_frame.base) / m_frame.spacing;
    };
    for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
        const double side = std::cos((cuts[i] + cuts[i + 1]) / 2.0) < 0.0 ? -1.0 : 1.0;
        addMonotone(height(cuts[i]), height(cuts[i + 1]), [&](double v) {
            const double rise = m_frame.across(v) - centerAcross;
            return centerU + side * std::sqrt(std::max(0.0, radius * radius - rise * rise));
        });
    }
}

void Crossings::appendInside(std::vector<PatternLine> &lines)
{
    double length = 0.0;
    for (auto &places : m_places) {
        std::sort(places.begin(), places.end());
        for (double &place : places)
            place = std::clamp(place, m_left, m_right);
        for (std::size_t k = 0; k + 1 < places.size(); k += 2)
            length += places[k + 1] - places[k];
    }
    const double dashes = m_period > 0.0 ? length / m_period * static_cast<double>(m_family.dashes.size()) : 0.0;
    if (!(dashes <= kMostDashes))
        m_period = 0.0;
    for (std::size_t i = 0; i < m_places.size(); ++i)
        for (std::size_t k = 0; k + 1 < m_places[i].size(); k += 2)
            if (m_places[i][k] < m_places[i][k + 1])
                appendPiece(lines, (m_first + static_cast<double>(i)) * m_step, m_places[i][k], m_places[i][k + 1]);
}

void Crossings::appendPiece(std::vector<PatternLine> &lines, double line, double u1, double u2) const
{
    const double across = m_frame.across(line);
    const auto add = [&](double from, double to) {
        const auto x = [&](double u) { return u * m_frame.cosine - across * m_frame.sine; };
        const auto y = [&](double u) { return u * m_frame.sine + across * m_frame.cosine; };
        lines.push_back({x(from), y(from), x(to), y(to)});
    };
    if (!(m_period > 0.0))
        return add(u1, u2);
    // Each line starts its dashes anew, moved by the offset along the lines.
    const double offsetAcross = m_family.offsetY * m_frame.cosine - m_family.offsetX * m_frame.sine;
    const double number = offsetAcross < 0.0 ? -line : line;
    const double start =
        m_frame.u(m_family.baseX, m_family.baseY) + number * m_frame.u(m_family.offsetX, m_family.offsetY);
    const double first = std::floor((u1 - start) / m_period), count = (u2 - u1) / m_period + 2.0;
    for (double turn = 0.0; turn < count; turn += 1.0) {
        double at = start + (first + turn) * m_period;
        for (const double dash : m_family.dashes) {
            const double end = at + std::abs(dash);
            if (dash >= 0.0 && end >= u1 && at <= u2)
                add(std::max(at, u1), std::min(end, u2));
            at = end;
        }
    }
}

} // namespace

bool isHatchPattern(std::wstring_view name)
{
    auto &library = PatternLibrary::instance();
    library.refresh();
    return name.empty() || library.find(name) != nullptr;
}

std::vector<HatchFamily> hatchFamilies(std::wstring_view pattern, double angle, double scale)
{
    if (pattern.empty())
        return {};
    auto &library = PatternLibrary::instance();
    const Pattern *found = library.find(pattern);
    if (!found)
        found = library.find(L"ANSI31");
    return found ? hatchFamilies(*found, angle, scale) : std::vector<HatchFamily>();
}

std::vector<HatchFamily> hatchFamilies(const Pattern &pattern, double angle, double scale)
{
    if (!(scale > 0.0) || !std::isfinite(scale))
        scale = 1.0;
    const double cosine = std::cos(angle) * scale, sine = std::sin(angle) * scale;
    std::vector<HatchFamily> families;
    for (const PatternFamily &shape : pattern.families) {
        HatchFamily family;
        family.angle = angle + shape.degrees * kDegree;
        family.baseX = shape.x * cosine - shape.y * sine;
        family.baseY = shape.x * sine + shape.y * cosine;
        const double alongX = std::cos(family.angle) * scale, alongY = std::sin(family.angle) * scale;
        family.offsetX = shape.along * alongX - shape.across * alongY;
        family.offsetY = shape.along * alongY + shape.across * alongX;
        for (const double dash : shape.dashes)
            family.dashes.push_back(dash * scale);
        families.push_back(std::move(family));
    }
    return families;
}

namespace {

std::vector<PatternLine> linesOf(std::span<const std::vector<Vertex>> rings, std::span<const HatchFamily> families,
                                 const PatternView *view)
{
    std::vector<PatternLine> lines;
    for (const HatchFamily &family : families)
        Crossings(family, rings, view).appendInside(lines);
    return lines;
}

} // namespace

std::vector<PatternLine> patternLines(std::span<const std::vector<Vertex>> rings, std::span<const HatchFamily> families)
{
    return linesOf(rings, families, nullptr);
}

std::vector<PatternLine> patternLines(std::span<const std::vector<Vertex>> rings, std::span<const HatchFamily> families,
                                      const PatternView &view)
{
    return linesOf(rings, families, &view);
}

std::vector<PatternLine> patternLines(std::span<const std::vector<Vertex>> rings, std::wstring_view pattern,
                                      double angle, double scale)
{
    return patternLines(rings, hatchFamilies(pattern, angle, scale));
}

} // namespace velmor
