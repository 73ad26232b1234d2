// Hatches: their loops become rings of vertices with bulges; ellipses and splines in a loop become short chords.
#include "host/drawing/dxf/EntityReader.h"

#include "host/drawing/Texts.h"

#include <algorithm>
#include <numbers>

namespace velmor::dxf {

namespace {

using Vertex = AcDbPolyline::Vertex;
constexpr double kRadians = std::numbers::pi / 180.0;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// Hands out the tags in order; after a wrong one everything it answers is empty.
class Scanner {
public:
    explicit Scanner(std::span<const Tag> tags) : m_tags(tags) {}
    bool good() const { return m_bad == nullptr && !m_ended; }
    const Tag *bad() const { return m_bad; }

    /// The number under the next tag of that code; other tags before it are passed over.
    double real(int code)
    {
        const Tag *tag = find(code);
        double value = 0.0;
        if (tag && !tag->real(value))
            m_bad = tag;
        return value;
    }
    int integer(int code)
    {
        const Tag *tag = find(code);
        return tag ? tag->integer() : 0;
    }
    /// The number of the very next tag when it has that code.
    std::optional<double> optionalReal(int code)
    {
        if (m_next >= m_tags.size() || m_tags[m_next].code != code)
            return std::nullopt;
        return real(code);
    }
    std::optional<int> optionalInteger(int code)
    {
        if (m_next >= m_tags.size() || m_tags[m_next].code != code)
            return std::nullopt;
        return integer(code);
    }
    /// A count, never more than there are tags left.
    std::size_t count(int code)
    {
        return std::min(static_cast<std::size_t>(std::max(0, integer(code))), m_tags.size() - m_next);
    }
    std::span<const Tag> rest() const { return m_tags.subspan(m_next); }

private:
    const Tag *find(int code)
    {
        while (m_next < m_tags.size() && m_tags[m_next].code != code)
            ++m_next;
        if (m_next == m_tags.size()) {
            m_ended = true;
            return nullptr;
        }
        return &m_tags[m_next++];
    }
    std::span<const Tag> m_tags;
    std::size_t m_next = 0;
    const Tag *m_bad = nullptr;
    bool m_ended = false;
};

/// A ring out of edges that follow one another; each adds its points but the last, which the next edge starts at.
void addArc(std::vector<Vertex> &ring, double cx, double cy, double radius, double start, double sweep)
{
    // Bulges grow without bound towards a full turn, so long arcs go in halves.
    const int parts = std::abs(sweep) > std::numbers::pi * 1.5 ? 2 : 1;
    const double part = sweep / parts;
    for (int i = 0; i < parts; ++i) {
        const double angle = start + part * i;
        ring.push_back({cx + radius * std::cos(angle), cy + radius * std::sin(angle), std::tan(part / 4.0)});
    }
}

/// Sweep of an edge in its own sense, 0 to 2 pi.
double sweepOf(double start, double end)
{
    double sweep = end - start;
    if (std::abs(sweep) >= kTwoPi - 1e-9)
        return kTwoPi;
    if (sweep < 0.0)
        sweep += kTwoPi;
    return sweep;
}

void addEdge(Scanner &scan, std::vector<Vertex> &ring)
{
    switch (scan.integer(72)) {
    case 1: {
        const double x = scan.real(10), y = scan.real(20);
        scan.real(11);
        scan.real(21);
        ring.push_back({x, y, 0.0});
        break;
    }
    case 2: {
        const double cx = scan.real(10), cy = scan.real(20), radius = scan.real(40);
        const double start = scan.real(50) * kRadians, end = scan.real(51) * kRadians;
        const double sweep = sweepOf(start, end);
        // A clockwise edge counts its angles clockwise.
        if (scan.integer(73) != 0)
            addArc(ring, cx, cy, radius, start, sweep);
        else
            addArc(ring, cx, cy, radius, -start, -sweep);
        break;
    }
    case 3: {
        EllipseEntity::Shape shape;
        shape.center.x = scan.real(10);
        shape.center.y = scan.real(20);
        shape.majorAxis.x = scan.real(11);
        shape.majorAxis.y = scan.real(21);
        shape.ratio = scan.real(40);
        const double start = scan.real(50) * kRadians, end = scan.real(51) * kRadians;
        const bool counterClockwise = scan.integer(73) != 0;
        const double sweep = counterClockwise ? sweepOf(start, end) : -sweepOf(start, end);
        const double first = counterClockwise ? start : -start;
        const EllipseEntity ellipse(shape);
        constexpr int kSteps = 64;
        for (int i = 0; i < kSteps; ++i) {
            const AcGePoint3d p = ellipse.pointAt(first + sweep * i / kSteps);
            ring.push_back({p.x, p.y, 0.0});
        }
        break;
    }
    case 4: {
        SplineEntity::Shape shape;
        shape.degree = scan.integer(94);
        const bool rational = scan.integer(73) != 0;
        scan.integer(74);
        const std::size_t knots = scan.count(95), points = scan.count(96);
        for (std::size_t i = 0; i < knots && scan.good(); ++i)
            shape.knots.push_back(scan.real(40));
        for (std::size_t i = 0; i < points && scan.good(); ++i) {
            const double x = scan.real(10), y = scan.real(20);
            shape.controlPoints.emplace_back(x, y);
            const auto weight = scan.optionalReal(42);
            if (rational)
                shape.weights.push_back(weight.value_or(1.0));
        }
        // From 2010 on fit data may follow: a number of points, then the points and two tangents.
        if (const auto fit = scan.optionalInteger(97); fit && *fit > 0 && scan.good())
            for (int i = 0; i < *fit && scan.good(); ++i) {
                scan.real(11);
                scan.real(21);
            }
        Extents extents;
        for (const AcGePoint3d &p : shape.controlPoints)
            extents.add(p.x, p.y);
        const double size =
            extents.isEmpty() ? 1.0 : std::max(extents.maxX - extents.minX, extents.maxY - extents.minY);
        auto curve = SplineEntity(std::move(shape)).flatten(size * 1e-4);
        if (!curve.empty())
            curve.pop_back();
        for (const AcGePoint3d &p : curve)
            ring.push_back({p.x, p.y, 0.0});
        break;
    }
    default:
        break;
    }
}

AcDbHatch::Loop readLoop(Scanner &scan)
{
    AcDbHatch::Loop loop;
    const int flags = scan.integer(92);
    loop.type = flags & AcDbHatch::kExternal;
    if (flags & 2) {
        const bool bulges = scan.integer(72) != 0;
        scan.integer(73);
        const std::size_t count = scan.count(93);
        for (std::size_t i = 0; i < count && scan.good(); ++i) {
            const double x = scan.real(10), y = scan.real(20);
            const auto bulge = bulges ? scan.optionalReal(42) : std::nullopt;
            loop.vertices.push_back({x, y, bulge.value_or(0.0)});
        }
    } else {
        const std::size_t count = scan.count(93);
        for (std::size_t i = 0; i < count && scan.good(); ++i)
            addEdge(scan, loop.vertices);
    }
    auto &v = loop.vertices;
    if (v.size() > 1 && v.front().x == v.back().x && v.front().y == v.back().y && v.back().bulge == 0.0)
        v.pop_back();
    return loop;
}

/// The lines of a pattern, from their count (group 78) on; none when they are not complete.
std::vector<AcDbHatch::Family> readFamilies(Scanner &scan, bool mirrored)
{
    std::vector<AcDbHatch::Family> families(scan.count(78));
    const double side = mirrored ? -1.0 : 1.0;
    for (AcDbHatch::Family &family : families) {
        const double angle = scan.real(53) * kRadians;
        family.angle = mirrored ? std::numbers::pi - angle : angle;
        family.baseX = side * scan.real(43);
        family.baseY = scan.real(44);
        family.offsetX = side * scan.real(45);
        family.offsetY = scan.real(46);
        family.dashes.resize(scan.count(79));
        for (double &dash : family.dashes)
            dash = scan.real(49);
    }
    return scan.good() ? families : std::vector<AcDbHatch::Family>();
}

} // namespace

EntityReader::Result EntityReader::readHatch(std::span<const Tag> tags, const CommonTags &common)
{
    const auto &[nx, ny, nz] = common.extrusion;
    if (std::abs(nx) > 1e-6 || std::abs(ny) > 1e-6)
        return {};
    const bool mirrored = nz < 0.0;

    Scanner scan(tags);
    double elevation = scan.real(30);
    const Tag *name = nullptr;
    int associative = 0;
    for (const Tag &tag : tags) {
        if (tag.code == 2 && !name)
            name = &tag;
        if (tag.code == 71)
            associative = tag.integer();
        if (tag.code == 91)
            break;
    }
    const std::size_t count = scan.count(91);
    std::vector<AcDbHatch::Loop> loops;
    for (std::size_t i = 0; i < count && scan.good(); ++i)
        loops.push_back(readLoop(scan));
    if (!scan.good()) {
        if (scan.bad())
            return {nullptr, drawingText("dxf.groupNoNumber", {std::to_string(scan.bad()->code)}), scan.bad()};
        return {nullptr, drawingText("dxf.loops"), nullptr};
    }

    AcDbHatch &hatch = *m_arena.make<AcDbHatch>();
    const auto parts = ObjectAccess::parts(hatch);
    for (const Tag &tag : scan.rest()) {
        double number = 0.0;
        if (tag.code == 78) // the pattern's lines follow, and angles of their own
            break;
        if (tag.code == 75)
            parts.style = tag.integer();
        else if (tag.code == 76)
            parts.patternType = tag.integer(1);
        else if (tag.code == 52 && tag.real(number))
            parts.angle = number * kRadians;
        else if (tag.code == 41 && tag.real(number))
            parts.scale = number;
    }
    // A gradient or a solid fill has no lines.
    if (std::any_of(scan.rest().begin(), scan.rest().end(), [](const Tag &tag) { return tag.code == 78; }))
        parts.families = readFamilies(scan, mirrored);
    if (mirrored) {
        for (AcDbHatch::Loop &loop : loops)
            for (Vertex &v : loop.vertices) {
                v.x = -v.x;
                v.bulge = -v.bulge;
            }
        elevation = -elevation;
        parts.angle = std::numbers::pi - parts.angle;
    }
    parts.elevation = elevation;
    parts.pattern = decode(name);
    parts.associative = associative != 0;
    parts.loops = std::move(loops);
    return {&hatch, {}, nullptr};
}

} // namespace velmor::dxf
