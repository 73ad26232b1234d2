// What CZEMCBoundary draws and measures: one polyline at a time.
#include "geometry/ZEMCBoundary.h"

#include "contracts/NetworkTopology.h"
#include "geometry/Polygon.h"
#include "geometry/Trace.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr char kIsPointInside[] = "CZEMCBoundary::IsPointInside";
constexpr char kIsSectionInside[] = "CZEMCBoundary::IsSectionInside";

template <class Wrapper>
AcGePoint3dArray VerticesThrough(AcDbObjectId id)
{
    AcGePoint3dArray points;
    Wrapper(id, AcDb::kForRead).getVertexPoints(points);
    return points;
}

/// Vertices of a polyline of one of the two plane classes by exact class (and of the 3D one when spatial is set);
/// none for any other. False when id can't be opened.
bool ReadVertices(AcDbObjectId id, bool spatial, AcGePoint3dArray &points)
{
    const CZEMCEntityPtr entity(id, AcDb::kForRead);
    if (!entity.isOpen())
        return false;
    const AcRxClass *const kind = entity->isA();
    if (kind == AcDb2dPolyline::desc())
        points = VerticesThrough<CZEMC2dPolylinePtr>(id);
    else if (kind == AcDbPolyline::desc())
        points = VerticesThrough<CZEMCPolylineLWPtr>(id);
    else if (spatial && kind == AcDb3dPolyline::desc())
        points = VerticesThrough<CZEMC3dPolylinePtr>(id);
    return true;
}

void Fill(CPolygon &polygon, const AcGePoint3dArray &points)
{
    if (!polygon.SetSize(static_cast<int>(points.size())))
        return;
    for (int i = 0; i < polygon.GetSize(); ++i)
        polygon[i] = {points[i].x, points[i].y, points[i].z};
}

bool Contains(const AcGePoint3dArray &vertices, const AcGePoint3d &point)
{
    CPolygon polygon;
    Fill(polygon, vertices);
    return polygon.GetSize() > 0 && polygon.Contains(point.x, point.y) != 0;
}

AcDbObjectId DrawClosed(const AcGePoint3dArray &points)
{
    return CZEMCDraw::polylineLW(points, 0.0, 1, nullptr);
}

double SegmentLength(double chord, double bulge)
{
    if (bulge == 0.0)
        return chord;
    const double radius = std::abs(0.25 * chord * (bulge + 1.0 / bulge));
    return std::abs(4.0 * std::atan(bulge) * radius);
}

} // namespace

CBoundaryRing::CBoundaryRing(AcDbObjectId polyline)
{
    m_bCurve = CZEMCCurvePtr(polyline, AcDb::kForRead).isOpen();
    AcGePoint3dArray vertices;
    if (!m_bCurve || !ReadVertices(polyline, false, vertices) || vertices.empty())
        return;
    Fill(m_polygon, vertices);
    m_dMinX = m_dMaxX = vertices.front().x;
    m_dMinY = m_dMaxY = vertices.front().y;
    bool finite = true;
    for (const AcGePoint3d &vertex : vertices) {
        finite = finite && std::isfinite(vertex.x) && std::isfinite(vertex.y);
        m_dMinX = std::min(m_dMinX, vertex.x);
        m_dMinY = std::min(m_dMinY, vertex.y);
        m_dMaxX = std::max(m_dMaxX, vertex.x);
        m_dMaxY = std::max(m_dMaxY, vertex.y);
    }
    if (!finite) {
        m_dMinX = m_dMinY = -std::numeric_limits<double>::infinity();
        m_dMaxX = m_dMaxY = std::numeric_limits<double>::infinity();
    }
}

bool CBoundaryRing::Contains(const AcGePoint3d &point) const
{
    // Beside the box no edge is crossed, or an even number of them.
    if (m_polygon.GetSize() == 0 || point.x < m_dMinX || point.x > m_dMaxX || point.y < m_dMinY || point.y > m_dMaxY)
        return false;
    return m_polygon.Contains(point.x, point.y) != 0;
}

CSectionPoint::CSectionPoint(AcDbObjectId section)
{
    using namespace ZEMGis::Topology;
    const boost::shared_ptr<CSection> found = CTopologyMultiStorage::Instance()->GetTopology()->GetSectionById(section);
    m_bFound = found != nullptr;
    if (!found || found->GetType() != kSectionStraight)
        return;
    const AcGePoint3d start = found->GetStartPoint(), end = found->GetEndPoint();
    const ads_point from = {start.x, start.y, start.z}, to = {end.x, end.y, end.z};
    ads_point centre, middle;
    acutPolar(from, acutAngle(from, to), start.distanceTo(end) / 2.0, centre);
    acutPolar(centre, 90.0, 0.0, middle);
    m_point = {middle[0], middle[1], middle[2]};
}

bool CZEMCBoundary::CopyToPolylineLW(AcDbObjectId source, AcDbObjectId &copy)
{
    AcGePoint3dArray points;
    if (!ReadVertices(source, false, points))
        return false;
    copy = DrawClosed(points);
    return true;
}

bool CZEMCBoundary::DrawPolygon(const AcGePoint3dArray &points, AcDbObjectId &polygon)
{
    if (points.size() <= 2)
        return false;
    polygon = DrawClosed(points);
    return !polygon.isNull() && polygon.isValid();
}

bool CZEMCBoundary::GetCentroid(AcGePoint3d &centroid, AcDbObjectId polyline)
{
    AcGePoint3dArray points;
    if (!ReadVertices(polyline, true, points) || points.empty())
        return false;
    CPolygon polygon;
    Fill(polygon, points);
    const CVertex centre = polygon.Centroid();
    centroid = {centre.x, centre.y, centre.z};
    return true;
}

bool CZEMCBoundary::GetArea(double &area, AcDbObjectId curve)
{
    const CZEMCCurvePtr opened(curve, AcDb::kForRead);
    return opened.isOpen() && opened.curve()->getArea(area) == Acad::eOk;
}

bool CZEMCBoundary::GetLength(double &length, AcDbObjectId polyline)
{
    const CZEMCPolylineLWPtr opened(polyline, AcDb::kForRead);
    length = 0.0;
    if (!opened.isOpen())
        return false;
    AcGePoint3dArray points;
    opened.getVertexPoints(points);
    if (opened.polyline()->isOnlyLines() && !points.empty()) {
        for (std::size_t i = 1; i < points.size(); ++i)
            length += points[i - 1].distanceTo(points[i]);
        return true;
    }
    for (std::size_t i = 0; i < points.size(); ++i) {
        double bulge = 0.0;
        opened.polyline()->getBulgeAt(static_cast<unsigned>(i), bulge);
        length += SegmentLength(points[i].distanceTo(points[(i + 1) % points.size()]), bulge);
    }
    return false;
}

bool CZEMCBoundary::IsPointInside(AcDbObjectId polyline, const AcGePoint3d &point)
{
    CTraceFrame frame(__FILE__, __LINE__, kIsPointInside);
    AcGePoint3dArray vertices;
    ReadVertices(polyline, false, vertices);
    return Contains(vertices, point);
}

bool CZEMCBoundary::IsPointInside(const CZEMCPolylineLWPtr &polyline, const AcGePoint3d &point)
{
    CTraceFrame frame(__FILE__, __LINE__, kIsPointInside);
    AcGePoint3dArray vertices;
    if (polyline.isOpen()) // for reading or for writing
        polyline.getVertexPoints(vertices);
    return Contains(vertices, point);
}

bool CZEMCBoundary::IsSectionInside(AcDbObjectId polyline, AcDbObjectId section)
{
    return IsSectionInside(CBoundaryRing(polyline), CSectionPoint(section));
}

bool CZEMCBoundary::IsSectionInside(const CBoundaryRing &ring, const CSectionPoint &section)
{
    CTraceFrame frame(__FILE__, __LINE__, kIsSectionInside);
    if (!ring.IsCurve() || !section.m_bFound)
        return false;
    CTraceFrame pointFrame(__FILE__, __LINE__, kIsPointInside);
    return ring.Contains(section.m_point);
}
