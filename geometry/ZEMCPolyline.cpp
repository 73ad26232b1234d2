// What CZEMCBoundary draws and measures: one polyline at a time.
#include "geometry/ZEMCBoundary.h"

#include "contracts/NetworkTopology.h"
#include "geometry/Polygon.h"
#include "geometry/Trace.h"

#include <cmath>

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

void AddPoints(CPolygon &polygon, const AcGePoint3dArray &points)
{
    for (const AcGePoint3d &point : points)
        polygon.AddPoint({point.x, point.y, point.z});
}

bool Contains(const AcGePoint3dArray &vertices, const AcGePoint3d &point)
{
    if (vertices.empty())
        return false;
    CPolygon polygon;
    AddPoints(polygon, vertices);
    return polygon.Contains(point.x, point.y) != 0;
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
    AddPoints(polygon, points);
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
    using namespace ZEMGis::Topology;
    CTraceFrame frame(__FILE__, __LINE__, kIsSectionInside);
    const boost::shared_ptr<CSection> found = CTopologyMultiStorage::Instance()->GetTopology()->GetSectionById(section);
    const CZEMCCurvePtr opened(polyline, AcDb::kForRead);
    if (!opened.isOpen() || !found)
        return false;

    ads_point middle = {0.0, 0.0, 0.0}; // where a section of any other type is tested
    if (found->GetType() == kSectionStraight) {
        const AcGePoint3d start = found->GetStartPoint(), end = found->GetEndPoint();
        const ads_point from = {start.x, start.y, start.z}, to = {end.x, end.y, end.z};
        ads_point centre;
        acutPolar(from, acutAngle(from, to), start.distanceTo(end) / 2.0, centre);
        acutPolar(centre, 90.0, 0.0, middle);
    }
    return IsPointInside(polyline, AcGePoint3d(middle[0], middle[1], middle[2]));
}
