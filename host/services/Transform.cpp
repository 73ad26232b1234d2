// Polygons as text. The only place that knows GEOS.
#include "contracts/CoreServices.h"
#include "host/drawing/Journal.h"
#include "host/services/Text.h"

#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateSequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Polygon.h>

#include <charconv>
#include <cmath>

namespace ZEMGis::Utility {

namespace {

using geos::geom::Coordinate;
using geos::geom::GeometryFactory;
using geos::geom::Polygon;

std::vector<Coordinate> closedRing(const AcGePoint3dArray &points)
{
    std::vector<Coordinate> ring;
    for (const AcGePoint3d &point : points) {
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            return {};
        ring.emplace_back(point.x, point.y);
    }
    if (!ring.empty() && !ring.front().equals2D(ring.back()))
        ring.push_back(ring.front());
    // Three corners and the closing repeat make the smallest ring.
    return ring.size() >= 4 ? ring : std::vector<Coordinate>();
}

void appendNumber(std::string &text, double value)
{
    char digits[40];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void appendRing(std::string &text, const geos::geom::LineString &ring)
{
    const auto &coordinates = *ring.getCoordinatesRO();
    text += '(';
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        if (i != 0)
            text += ", ";
        appendNumber(text, coordinates.getAt(i).x);
        text += ' ';
        appendNumber(text, coordinates.getAt(i).y);
    }
    text += ')';
}

} // namespace

Polygon *CTransform::AcadPoly2GeosPoly(const AcGePoint3dArray &points)
{
    velmor::journal("CTransform::AcadPoly2GeosPoly", points.size());
    static std::unique_ptr<Polygon> last;
    const GeometryFactory &factory = *GeometryFactory::getDefaultInstance();
    last = factory.createPolygon();
    if (std::vector<Coordinate> ring = closedRing(points); !ring.empty()) {
        try {
            last = factory.createPolygon(std::move(ring));
        } catch (const std::exception &) {
            // What makes no ring stays the empty polygon.
        }
    }
    return last.get();
}

std::wstring CTransform::PolygonText(const Polygon *polygon)
{
    if (!polygon || polygon->isEmpty())
        return L"POLYGON EMPTY";
    std::string text = "POLYGON (";
    appendRing(text, *polygon->getExteriorRing());
    for (std::size_t i = 0; i < polygon->getNumInteriorRing(); ++i) {
        text += ", ";
        appendRing(text, *polygon->getInteriorRingN(i));
    }
    return velmor::wide(text + ')');
}

} // namespace ZEMGis::Utility
