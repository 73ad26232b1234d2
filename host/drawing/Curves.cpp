// The curves of the contract: construction, areas, vertices.
#include "host/drawing/Journal.h"
#include "host/drawing/ObjectAccess.h"

#include <numbers>

namespace {

using Vertex = AcDbPolyline::Vertex;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

double sweepOf(double start, double end)
{
    double sweep = std::fmod(end - start, kTwoPi);
    if (sweep <= 0.0)
        sweep += kTwoPi;
    return sweep;
}

/// Signed area between a chord and its arc, positive when the arc lies to the right of the chord.
double segmentArea(double chord, double bulge)
{
    if (bulge == 0.0 || chord == 0.0)
        return 0.0;
    const double angle = 4.0 * std::atan(bulge);
    const double radius = chord * (1.0 + bulge * bulge) / (4.0 * bulge);
    return radius * radius * 0.5 * (angle - std::sin(angle));
}

/// Relative to the first vertex, so that coordinates of a national grid keep their digits.
double ringArea(const std::vector<Vertex> &vertices, bool closed)
{
    const std::size_t n = vertices.size();
    if (n < 2)
        return 0.0;
    const Vertex &origin = vertices.front();
    double twice = 0.0, arcs = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const Vertex &a = vertices[i], &b = vertices[i + 1 == n ? 0 : i + 1];
        twice += (a.x - origin.x) * (b.y - origin.y) - (b.x - origin.x) * (a.y - origin.y);
        if (closed || i + 1 < n)
            arcs += segmentArea(std::hypot(b.x - a.x, b.y - a.y), a.bulge);
    }
    return std::abs(0.5 * twice + arcs);
}

} // namespace

Acad::ErrorStatus AcDbCurve::getArea(double &) const
{
    return Acad::eNotAvailable;
}
bool AcDbCurve::isClosed() const
{
    return false;
}

AcDbLine::AcDbLine(const AcGePoint3d &start, const AcGePoint3d &end) : m_start(start), m_end(end) {}

Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d &point)
{
    velmor::journal("AcDbLine::setStartPoint", point);
    return velmor::ObjectAccess::changeLine(*this, m_start, point);
}

Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d &point)
{
    velmor::journal("AcDbLine::setEndPoint", point);
    return velmor::ObjectAccess::changeLine(*this, m_end, point);
}

Acad::ErrorStatus AcDbLine::getArea(double &area) const
{
    area = 0.0;
    return Acad::eOk;
}

AcDbArc::AcDbArc(const AcGePoint3d &center, double radius, double startAngle, double endAngle)
    : m_center(center), m_radius(radius), m_startAngle(startAngle), m_endAngle(endAngle)
{
}

AcGePoint3d AcDbArc::startPoint() const
{
    return {m_center.x + m_radius * std::cos(m_startAngle), m_center.y + m_radius * std::sin(m_startAngle), m_center.z};
}

AcGePoint3d AcDbArc::endPoint() const
{
    return {m_center.x + m_radius * std::cos(m_endAngle), m_center.y + m_radius * std::sin(m_endAngle), m_center.z};
}

Acad::ErrorStatus AcDbArc::getArea(double &area) const
{
    const double sweep = sweepOf(m_startAngle, m_endAngle);
    area = 0.5 * m_radius * m_radius * (sweep - std::sin(sweep));
    return Acad::eOk;
}

AcDbPolyline::AcDbPolyline(std::vector<Vertex> vertices, bool closed, double elevation, double constantWidth)
    : m_vertices(std::move(vertices)), m_elevation(elevation), m_width(constantWidth), m_closed(closed)
{
}

bool AcDbPolyline::isOnlyLines() const
{
    for (const Vertex &v : m_vertices)
        if (v.bulge != 0.0)
            return false;
    return true;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned index, AcGePoint3d &point) const
{
    if (index >= m_vertices.size())
        return Acad::eOutOfRange;
    point = {m_vertices[index].x, m_vertices[index].y, m_elevation};
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned index, double &bulge) const
{
    if (index >= m_vertices.size())
        return Acad::eOutOfRange;
    bulge = m_vertices[index].bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getArea(double &area) const
{
    area = ringArea(m_vertices, m_closed);
    return Acad::eOk;
}

AcDb2dPolyline::AcDb2dPolyline(std::vector<Vertex> vertices, bool closed, double elevation)
    : m_vertices(std::move(vertices)), m_elevation(elevation), m_closed(closed)
{
}

Acad::ErrorStatus AcDb2dPolyline::getArea(double &area) const
{
    area = ringArea(m_vertices, m_closed);
    return Acad::eOk;
}

AcDb3dPolyline::AcDb3dPolyline(std::vector<AcGePoint3d> vertices, bool closed)
    : m_vertices(std::move(vertices)), m_closed(closed)
{
}

/// The area in plan.
Acad::ErrorStatus AcDb3dPolyline::getArea(double &area) const
{
    std::vector<Vertex> plan;
    plan.reserve(m_vertices.size());
    for (const AcGePoint3d &p : m_vertices)
        plan.push_back({p.x, p.y, 0.0});
    area = ringArea(plan, m_closed);
    return Acad::eOk;
}

AcDbBlockReference::AcDbBlockReference(AcDbObjectId definition, const Placement &placement)
    : m_definition(definition), m_placement(placement)
{
}
